#pragma once

#include "Engine/MemberReference.h"
#include "K2Node.h"
#include "K2Node_CallFunction.generated.h"

/** Calls a function. */
UCLASS()
class BLUEPRINTGRAPH_API UK2Node_CallFunction : public UK2Node
{
	GENERATED_BODY()

public:
	UPROPERTY()
	FMemberReference FunctionReference;

	UPROPERTY()
	uint8 bIsPureFunc : 1;

	UPROPERTY()
	uint8 bIsConstFunc : 1;

	UK2Node_CallFunction(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** Before the pins are made. The function is looked up by name from then on. */
	virtual void SetFromFunction(const UFunction* Function);
	/** Null when there is no such function. */
	UFunction* GetTargetFunction() const;
	/** NAME_None when unbound. */
	FName GetFunctionName() const { return FunctionReference.GetMemberName(); }
	static FText GetUserFacingFunctionName(
		const UFunction* Function, ENodeTitleType::Type NodeTitleType = ENodeTitleType::EditableTitle);

	bool IsNodePure() const override { return bIsPureFunc; }
	void AllocateDefaultPins() override;
	FLinearColor GetNodeTitleColor() const override;
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;
	FText GetTooltipText() const override;

private:
	void CreateExecPins();
	void CreateSelfPin(const UFunction& Function);
	void CreateParameterPin(const UFunction& Function, const FProperty& Parameter);
	/** The class that the call is made on, for the second line of the title. */
	FText GetTargetName() const;
};
