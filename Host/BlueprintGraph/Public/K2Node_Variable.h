#pragma once

#include "Engine/MemberReference.h"
#include "K2Node.h"
#include "K2Node_Variable.generated.h"

/** A node about one variable. */
UCLASS(Abstract)
class BLUEPRINTGRAPH_API UK2Node_Variable : public UK2Node
{
	GENERATED_BODY()

public:
	UPROPERTY()
	FMemberReference VariableReference;

	FName GetVarName() const { return VariableReference.GetMemberName(); }
	FString GetVarNameString() const { return GetVarName().ToString(); }
	FText GetVarNameText() const { return FText::FromName(GetVarName()); }
	/** Null when there is no such variable. */
	FProperty* GetPropertyForVariable() const;
	UClass* GetVariableSourceClass() const;
	/** The pin that carries the value; null when the variable is unknown. */
	UEdGraphPin* GetValuePin() const;
	/** That of the variable's type. */
	FLinearColor GetNodeTitleColor() const override;

protected:
	/** The value's pin, when the variable's type is known. */
	UEdGraphPin* CreatePinForVariable(EEdGraphPinDirection Direction, FName InPinName = NAME_None);
	/** What the variable is read from or written to; hidden for self. */
	void CreatePinForSelf();

private:
	bool GetVariableType(FEdGraphPinType& OutType) const;
};
