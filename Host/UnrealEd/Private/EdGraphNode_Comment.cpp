#include "EdGraphNode_Comment.h"

UEdGraphNode_Comment::UEdGraphNode_Comment(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
{
	NodeWidth = 400;
	NodeHeight = 100;
}

void UEdGraphNode_Comment::PostPlacedNewNode()
{
	if (NodeComment.IsEmpty())
	{
		NodeComment = NSLOCTEXT("K2Node", "CommentBlock_NewEmptyComment", "Comment").ToString();
	}
}

FText UEdGraphNode_Comment::GetNodeTitle(ENodeTitleType::Type) const
{
	return FText::FromString(NodeComment);
}
