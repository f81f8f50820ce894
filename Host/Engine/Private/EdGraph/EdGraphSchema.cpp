#include "EdGraph/EdGraphSchema.h"

const FPinConnectionResponse UEdGraphSchema::CanCreateConnection(const UEdGraphPin*, const UEdGraphPin*) const
{
	return FPinConnectionResponse(CONNECT_RESPONSE_MAKE, FText());
}

bool UEdGraphSchema::TryCreateConnection(UEdGraphPin* A, UEdGraphPin* B) const
{
	const ECanCreateConnectionResponse Response = CanCreateConnection(A, B).Response;
	if (Response == CONNECT_RESPONSE_DISALLOW)
	{
		return false;
	}
	const bool bBreakAll = Response == CONNECT_RESPONSE_BREAK_OTHERS_AB;
	if (bBreakAll || Response == CONNECT_RESPONSE_BREAK_OTHERS_A)
	{
		A->BreakAllPinLinks(true);
	}
	if (bBreakAll || Response == CONNECT_RESPONSE_BREAK_OTHERS_B)
	{
		B->BreakAllPinLinks(true);
	}
	A->MakeLinkTo(B);
	A->GetOwningNode()->PinConnectionListChanged(A);
	B->GetOwningNode()->PinConnectionListChanged(B);
	return true;
}

void UEdGraphSchema::TrySetDefaultValue(UEdGraphPin& Pin, const FString& NewDefaultValue, bool bMarkAsModified) const
{
	Pin.Modify(bMarkAsModified);
	Pin.DefaultValue = NewDefaultValue;
	Pin.GetOwningNode()->PinDefaultValueChanged(&Pin);
}

void UEdGraphSchema::BreakPinLinks(UEdGraphPin& TargetPin, bool bSendsNodeNotifcation) const
{
	TargetPin.BreakAllPinLinks(bSendsNodeNotifcation);
}

void UEdGraphSchema::BreakSinglePinLink(UEdGraphPin* SourcePin, UEdGraphPin* TargetPin) const
{
	SourcePin->BreakLinkTo(TargetPin);
	SourcePin->GetOwningNode()->PinConnectionListChanged(SourcePin);
	TargetPin->GetOwningNode()->PinConnectionListChanged(TargetPin);
}

FText UEdGraphSchema::GetPinDisplayName(const UEdGraphPin* Pin) const
{
	return Pin->PinFriendlyName.IsEmpty() ? FText::FromName(Pin->PinName) : Pin->PinFriendlyName;
}
