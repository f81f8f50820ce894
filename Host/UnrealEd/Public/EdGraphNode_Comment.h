#pragma once

#include "EdGraph/EdGraphNode.h"
#include "EdGraphNode_Comment.generated.h"

/** A box with a text, behind other nodes. It has no pins. */
UCLASS()
class UNREALED_API UEdGraphNode_Comment : public UEdGraphNode
{
	GENERATED_BODY()

public:
	UPROPERTY()
	FLinearColor CommentColor = FLinearColor::White;

	UPROPERTY()
	int32 FontSize = 18;

	UEdGraphNode_Comment(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	void PostPlacedNewNode() override;
	FLinearColor GetNodeTitleColor() const override { return CommentColor; }
	/** The comment. */
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;
};
