#pragma once

#include "Engine/Blueprint.h"
#include "K2Node_FunctionTerminator.h"
#include "K2Node_FunctionEntry.generated.h"

/** Where a function begins: its output pins are the function's inputs. */
UCLASS()
class BLUEPRINTGRAPH_API UK2Node_FunctionEntry : public UK2Node_FunctionTerminator
{
	GENERATED_BODY()

public:
	/** A name other than the graph's, as events have. */
	UPROPERTY()
	FName CustomGeneratedFunctionName;

	UPROPERTY()
	TArray<FBPVariableDescription> LocalVariables;

	/** FUNC_ flags that are not part of the signature. */
	void AddExtraFlags(int32 InFlags) { ExtraFlags |= InFlags; }
	int32 GetExtraFlags() const { return ExtraFlags; }

	void AllocateDefaultPins() override;
	FText GetNodeTitle(ENodeTitleType::Type TitleType) const override;

protected:
	EEdGraphPinDirection GetUserPinDirection() const override { return EGPD_Output; }

private:
	UPROPERTY()
	int32 ExtraFlags = 0;
};
