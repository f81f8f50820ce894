#pragma once

#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema.generated.h"

enum ECanCreateConnectionResponse
{
	CONNECT_RESPONSE_MAKE,
	CONNECT_RESPONSE_DISALLOW,
	CONNECT_RESPONSE_BREAK_OTHERS_A,
	CONNECT_RESPONSE_BREAK_OTHERS_B,
	CONNECT_RESPONSE_BREAK_OTHERS_AB,
};

/** Whether a link can be made, what else it does, and a text about it for the user. */
struct ENGINE_API FPinConnectionResponse
{
	FText Message;
	ECanCreateConnectionResponse Response = CONNECT_RESPONSE_MAKE;

	FPinConnectionResponse() = default;
	FPinConnectionResponse(const ECanCreateConnectionResponse InResponse, const FText& InMessage)
		: Message(InMessage)
		, Response(InResponse)
	{
	}
	bool CanSafeConnect() const { return Response == CONNECT_RESPONSE_MAKE; }
};

/** The rules of one kind of graph. Without state: the default object serves all graphs. */
UCLASS(Abstract)
class ENGINE_API UEdGraphSchema : public UObject
{
	GENERATED_BODY()

public:
	virtual const FPinConnectionResponse CanCreateConnection(const UEdGraphPin* A, const UEdGraphPin* B) const;
	/** Links the two when that is allowed, and breaks what it excludes. True when the graph changed. */
	virtual bool TryCreateConnection(UEdGraphPin* A, UEdGraphPin* B) const;
	virtual void TrySetDefaultValue(
		UEdGraphPin& Pin, const FString& NewDefaultValue, bool bMarkAsModified = true) const;
	virtual void BreakPinLinks(UEdGraphPin& TargetPin, bool bSendsNodeNotifcation) const;
	virtual void BreakSinglePinLink(UEdGraphPin* SourcePin, UEdGraphPin* TargetPin) const;
	/** Adds the nodes that a new graph of the kind starts with. */
	virtual void CreateDefaultNodesForGraph(UEdGraph& Graph) const {}
	virtual FText GetPinDisplayName(const UEdGraphPin* Pin) const;
	virtual FLinearColor GetPinTypeColor(const FEdGraphPinType& PinType) const { return FLinearColor::White; }
};
