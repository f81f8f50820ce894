#pragma once

#include "CoreMinimal.h"
#include "UObject/Class.h"

#include "KestrelApprovalRule.generated.h"

/** What becomes of the actions that a rule is about. */
UENUM()
enum class EKestrelApproval : uint8
{
	Ask UMETA(DisplayName = "Ask"),
	Allow UMETA(DisplayName = "Allow"),
	/** Also what the approval list marks: deletions, scripts, build files, places outside the project, ... */
	AllowRisky UMETA(DisplayName = "Allow, even if risky"),
	Deny UMETA(DisplayName = "Deny")
};

/** Lets tools run without asking, makes them ask, or keeps them from running. */
USTRUCT()
struct KESTREL_API FKestrelApprovalRule
{
	GENERATED_BODY()

	UPROPERTY(config, EditAnywhere, Category = "Rule",
		meta = (ToolTip = "Deny beats Ask, and Ask beats Allow, whatever their order"))
	EKestrelApproval Decision = EKestrelApproval::Ask;

	UPROPERTY(config, EditAnywhere, Category = "Rule",
		meta = (ToolTip =
					"read, create, change, delete, run or compile, or the name of a tool, with * for any letters; empty for all tools"))
	FString Tool;

	UPROPERTY(config, EditAnywhere, Category = "Rule",
		meta = (ToolTip =
					"Files and assets, as in Source/**, *.h or /Game/Doors/*; ** is any number of folders; empty for everything in the project"))
	FString Path;
};
