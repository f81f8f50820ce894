#pragma once

#include "K2Node.h"
#include "K2Node_EditablePinBase.generated.h"

/** A pin that was added by hand, for when the pins are recreated. */
USTRUCT()
struct BLUEPRINTGRAPH_API FUserPinInfo
{
	GENERATED_BODY()

	UPROPERTY()
	FName PinName;

	UPROPERTY()
	FEdGraphPinType PinType;

	UPROPERTY()
	TEnumAsByte<EEdGraphPinDirection> DesiredPinDirection = EGPD_MAX;

	UPROPERTY()
	FString PinDefaultValue;
};

/** A node to which pins can be added: the parameters of a function or a custom event. */
UCLASS(Abstract)
class BLUEPRINTGRAPH_API UK2Node_EditablePinBase : public UK2Node
{
	GENERATED_BODY()

public:
	/** Whether the user may change the pins. */
	UPROPERTY()
	uint8 bIsEditable : 1;

	TArray<TSharedPtr<FUserPinInfo>> UserDefinedPins;

	UK2Node_EditablePinBase(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/**
	 * Adds a pin and remembers it. The node decides on the direction when it allows but one.
	 * @param bUseUniqueName  whether a name that a pin has already gets a number
	 */
	UEdGraphPin* CreateUserDefinedPin(const FName InPinName, const FEdGraphPinType& InPinType,
		EEdGraphPinDirection InDesiredDirection, bool bUseUniqueName = true);
	virtual UEdGraphPin* CreatePinFromUserDefinition(const TSharedPtr<FUserPinInfo> NewPinInfo);
	FName CreateUniquePinName(FName SourcePinName) const;
	bool IsEditable() const { return bIsEditable; }

	void AllocateDefaultPins() override;
	void PreEditUndo() override;
	void ExportCustomProperties(FOutputDevice& Out, uint32 Indent) override;
	void ImportCustomProperties(const TCHAR* SourceText, FFeedbackContext* Warn) override;
	static void AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector);

protected:
	/** The one direction that the node's own pins have; EGPD_MAX: either. */
	virtual EEdGraphPinDirection GetUserPinDirection() const { return EGPD_MAX; }
};
