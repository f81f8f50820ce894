#pragma once

#include "CoreMinimal.h"

struct FKestrelToolPlan;

/** What becomes of the call of another assistant. */
enum class EKestrelMcpDecision : uint8
{
	Run,
	/** A person decides, in the panel. */
	Ask,
	/** Nobody is there to be asked. */
	Refuse,
	/** A rule of the user's or the project's is against it. */
	Deny,
};

/**
 * Whether a plan may run without being asked about: in the editor, what only reads within the project, and what rules
 * allow. Rules deny for all clients. An editor that a
 * client has started for itself, -KestrelMcp=read or -KestrelMcp=change, has nobody to ask: "change" also lets through
 * what changes the project, but neither scripts nor what lies in its version control.
 */
namespace KestrelMcpApproval
{
/** What the command line lets clients do; empty in an editor with a person at it. */
KESTREL_API FString GetAllowedByCommandLine();
KESTREL_API EKestrelMcpDecision Decide(const FKestrelToolPlan& Plan);
}
