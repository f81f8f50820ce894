#pragma once

#include "CoreMinimal.h"
#include "KestrelApprovalRule.h"
#include "UObject/Object.h"

#include "KestrelProjectSettings.generated.h"

/** What everybody who works on the project shares: it is kept in the project's Config/DefaultKestrel.ini. */
UCLASS(config = Kestrel, defaultconfig)
class KESTREL_API UKestrelProjectSettings : public UObject
{
	GENERATED_BODY()

public:
	/** A project cannot allow more than the service could have asked for: its rules do not allow what is risky. */
	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Approval",
		meta = (DisplayName = "Approval Rules",
			ToolTip = "Rules for everybody who works on this project; they cannot allow what is risky"))
	TArray<FKestrelApprovalRule> ApprovalRules;
};
