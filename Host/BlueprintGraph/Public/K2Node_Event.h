#pragma once

#include "Engine/MemberReference.h"
#include "K2Node_EditablePinBase.h"
#include "K2Node_Event.generated.h"

/** Where execution starts when something happens: an event of a parent class or of an interface. */
UCLASS()
class BLUEPRINTGRAPH_API UK2Node_Event : public UK2Node_EditablePinBase
{
	GENERATED_BODY()

public:
	static const FName DelegateOutputName;

	UPROPERTY()
	FMemberReference EventReference;

	UPROPERTY()
	uint8 bOverrideFunction : 1;

	UPROPERTY()
	uint8 bInternalEvent : 1;

	UPROPERTY()
	FName CustomFunctionName;

	/** FUNC_ flags of the compiled function. */
	UPROPERTY()
	uint32 FunctionFlags = 0;

	UK2Node_Event(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** The name of the compiled function. */
	virtual FName GetFunctionName() const;
	/** The function that gives the signature; null for a custom event or a function that is gone. */
	UFunction* FindEventSignatureFunction() const;
	bool IsInterfaceEventNode() const;

	void AllocateDefaultPins() override;
	FLinearColor GetNodeTitleColor() const override;
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;

protected:
	EEdGraphPinDirection GetUserPinDirection() const override { return EGPD_Output; }
};
