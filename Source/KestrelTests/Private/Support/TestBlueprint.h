#pragma once

#include "CoreMinimal.h"
#include "EdGraph/EdGraphNode.h"
#include "Engine/Blueprint.h"
#include "TestBlueprint.generated.h"

/** As widgets and animations have them: a Blueprint of a class of its own. */
UCLASS()
class UKestrelTestBlueprint : public UBlueprint
{
	GENERATED_BODY()
};

/** As plugins have them: what it shows stands in no package. */
UCLASS()
class UKestrelTestOddNode : public UEdGraphNode
{
	GENERATED_BODY()

public:
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override
	{
		return FText::FromString(TEXT("Shown from elsewhere"));
	}
};
