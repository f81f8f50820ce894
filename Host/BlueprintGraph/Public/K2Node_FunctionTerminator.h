#pragma once

#include "Engine/MemberReference.h"
#include "K2Node_EditablePinBase.h"
#include "K2Node_FunctionTerminator.generated.h"

/** Where a function begins or ends. */
UCLASS(Abstract)
class BLUEPRINTGRAPH_API UK2Node_FunctionTerminator : public UK2Node_EditablePinBase
{
	GENERATED_BODY()

public:
	/** The function that gives the signature: one of a parent or an interface, or the graph's own. */
	UPROPERTY()
	FMemberReference FunctionReference;

	FLinearColor GetNodeTitleColor() const override;

protected:
	/** The function of a parent that the graph overrides; null for one that is new. */
	UFunction* FindSignatureFunction() const;
	/** Adds a pin for each parameter of that side. */
	void CreatePinsFromSignature(const UFunction* Function, EEdGraphPinDirection PinDirection);
};
