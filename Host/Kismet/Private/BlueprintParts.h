#pragma once

#include "CoreMinimal.h"
#include "EdGraph/EdGraph.h"
#include "UObject/WeakObjectPtrTemplates.h"

class UBlueprint;

enum class EBlueprintPart : uint8
{
	Heading,
	Graph,
	Function,
	Macro,
	Variable,
	Component,
	Interface,
};

/** What a Blueprint consists of, as a line of a list. */
struct FBlueprintPart
{
	EBlueprintPart Kind = EBlueprintPart::Heading;
	FString Name;
	FString Type; // of a variable or component, as a user reads it
	FLinearColor Color = FLinearColor::White;
	int32 Depth = 0;                // 0 for headings; components below what they are attached to
	TWeakObjectPtr<UEdGraph> Graph; // of what has one

	bool operator==(const FBlueprintPart& Other) const;
};

/** Lists the parts of Blueprints. */
class FBlueprintParts
{
public:
	/** Under headings; a kind of which there is nothing has none. */
	static TArray<FBlueprintPart> Of(const UBlueprint& Blueprint);
};
