#pragma once

#include "CoreMinimal.h"

/** What a user can do about a failure, with one click. */
enum class EKestrelRemedy : uint8
{
	OpenSettings,
	TestConnection,
	ShowLog,
	/** The file in which the project names its service. */
	OpenServiceFile,
};

/** What stands beside a failure on the panel: what happened, in one sentence, and what to do. */
struct FKestrelFailureHelp
{
	FText Sentence;
	EKestrelRemedy Remedy = EKestrelRemedy::ShowLog;
};

namespace KestrelFailureHelp
{
/** @return unset for a message that tells of no failure */
KESTREL_API TOptional<FKestrelFailureHelp> Find(const FString& Message);
}
