#pragma once

#include "Containers/EnumAsByte.h"
#include "Containers/UnrealString.h"
#include "Internationalization/Text.h"
#include "Math/Color.h"
#include "Misc/Guid.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "EdGraphNode.generated.h"

class UEdGraph;
class UEdGraphPin;
class UEdGraphSchema;
struct FEdGraphPinType;

UENUM()
enum EEdGraphPinDirection : int
{
	EGPD_Input,
	EGPD_Output,
	EGPD_MAX,
};

UENUM()
enum class EPinContainerType : uint8
{
	None,
	Array,
	Set,
	Map, // the pin's own type is the key's
};

/** The type of a map's values, without a container of its own. */
USTRUCT(BlueprintType)
struct ENGINE_API FEdGraphTerminalType
{
	GENERATED_BODY()

	UPROPERTY()
	FName TerminalCategory;

	UPROPERTY()
	FName TerminalSubCategory;

	UPROPERTY()
	TWeakObjectPtr<UObject> TerminalSubCategoryObject;

	UPROPERTY()
	bool bTerminalIsConst = false;

	UPROPERTY()
	bool bTerminalIsWeakPointer = false;

	UPROPERTY()
	bool bTerminalIsUObjectWrapper = false;

	bool operator==(const FEdGraphTerminalType& Other) const;
	bool operator!=(const FEdGraphTerminalType& Other) const { return !(*this == Other); }

	/** The type of a pin, without its container. */
	static FEdGraphTerminalType FromPinType(const FEdGraphPinType& PinType);
};

namespace ENodeTitleType
{
enum Type : int
{
	FullTitle, // can have several lines
	ListView,
	EditableTitle,
	MenuTitle,
	MAX_TitleTypes,
};
}

UENUM()
enum class ENodeEnabledState : uint8
{
	Enabled,
	Disabled, // the compiler passes over it
	DevelopmentOnly,
};

/** A node of a graph. It owns its pins. */
UCLASS()
class ENGINE_API UEdGraphNode : public UObject
{
	GENERATED_BODY()

public:
	/** What CreatePin can be told beyond names. */
	struct FCreatePinParams
	{
		FCreatePinParams()
			: ContainerType(EPinContainerType::None)
			, bIsReference(false)
			, bIsConst(false)
			, Index(INDEX_NONE)
		{
		}

		EPinContainerType ContainerType;
		bool bIsReference;
		bool bIsConst;
		int32 Index; // among the pins; INDEX_NONE: behind the last
		FEdGraphTerminalType ValueTerminalType;
	};

	/** In the order that the reader of the graph sees. */
	TArray<UEdGraphPin*> Pins;

	// In units of the graph; right and down are positive.
	UPROPERTY()
	int32 NodePosX = 0;

	UPROPERTY()
	int32 NodePosY = 0;

	UPROPERTY()
	int32 NodeWidth = 0;

	UPROPERTY()
	int32 NodeHeight = 0;

	UPROPERTY()
	FString NodeComment;

	UPROPERTY()
	FGuid NodeGuid;

	UPROPERTY()
	uint8 bCommentBubbleVisible : 1;

	// What the last compile said about the node.
	UPROPERTY(Transient, NonTransactional)
	uint8 bHasCompilerMessage : 1;

	UPROPERTY(Transient, NonTransactional)
	int32 ErrorType = 0; // EMessageSeverity::Type

	UPROPERTY(Transient, NonTransactional)
	FString ErrorMsg;

	UEdGraphNode(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	/** Behind the last pin unless the parameters say where. The pin belongs to the node. */
	UEdGraphPin* CreatePin(EEdGraphPinDirection Dir, const FName PinCategory, const FName PinName,
		const FCreatePinParams& PinParams = FCreatePinParams());
	UEdGraphPin* CreatePin(EEdGraphPinDirection Dir, const FName PinCategory, const FName PinSubCategory,
		const FName PinName, const FCreatePinParams& PinParams = FCreatePinParams());
	UEdGraphPin* CreatePin(EEdGraphPinDirection Dir, const FName PinCategory, UObject* PinSubCategoryObject,
		const FName PinName, const FCreatePinParams& PinParams = FCreatePinParams());
	UEdGraphPin* CreatePin(EEdGraphPinDirection Dir, const FName PinCategory, const FName PinSubCategory,
		UObject* PinSubCategoryObject, const FName PinName, const FCreatePinParams& PinParams = FCreatePinParams());
	UEdGraphPin* CreatePin(EEdGraphPinDirection InDirection, const FEdGraphPinType& InPinType, const FName InPinName,
		int32 Index = INDEX_NONE);

	/** The first pin of the name, which ignores letter case; EGPD_MAX: in any direction. Null when there is none. */
	UEdGraphPin* FindPin(const FName PinName, const EEdGraphPinDirection Direction = EGPD_MAX) const;
	UEdGraphPin* FindPin(const TCHAR* PinName, const EEdGraphPinDirection Direction = EGPD_MAX) const
	{
		return FindPin(FName(PinName, FNAME_Find), Direction);
	}
	UEdGraphPin* FindPin(const FString& PinName, const EEdGraphPinDirection Direction = EGPD_MAX) const
	{
		return FindPin(*PinName, Direction);
	}
	/** Asserts that there is one. */
	template <typename NameType>
	UEdGraphPin* FindPinChecked(const NameType& PinName, const EEdGraphPinDirection Direction = EGPD_MAX) const
	{
		UEdGraphPin* const Result = FindPin(PinName, Direction);
		checkf(Result, TEXT("%s has not the pin that is asked for"), *GetPathName());
		return Result;
	}
	UEdGraphPin* FindPinById(const FGuid PinId) const;
	/** The pin of that number among those of one direction; null when there are fewer. */
	UEdGraphPin* GetPinWithDirectionAt(int32 PinIndex, EEdGraphPinDirection PinDirection) const;
	/** Unlinks the pin and frees it. False when it is not one of this node. */
	bool RemovePin(UEdGraphPin* Pin);
	void BreakAllNodeLinks();

	UEdGraph* GetGraph() const;
	const UEdGraphSchema* GetSchema() const;
	void CreateNewGuid() { NodeGuid = FGuid::NewGuid(); }
	/** Once, when the node has been put into a graph and not loaded. */
	virtual void PostPlacedNewNode() {}
	/** Adds the pins that a node of this kind has. Twice makes them twice. */
	virtual void AllocateDefaultPins() {}
	/** Recreates the pins; links and values are kept by name. */
	virtual void ReconstructNode() {}
	/** Takes the node out of its graph, with its links. */
	virtual void DestroyNode();
	virtual void NodeConnectionListChanged() {}
	virtual void PinConnectionListChanged(UEdGraphPin* Pin) {}
	virtual void PinDefaultValueChanged(UEdGraphPin* Pin) {}

	/** Localised. Plain nodes are called after their class. */
	virtual FText GetNodeTitle(ENodeTitleType::Type TitleType) const;
	virtual FText GetTooltipText() const;
	/** Of the bar behind the title. */
	virtual FLinearColor GetNodeTitleColor() const;

	ENodeEnabledState GetDesiredEnabledState() const { return EnabledState; }
	bool IsNodeEnabled() const { return EnabledState != ENodeEnabledState::Disabled; }
	bool HasUserSetTheEnabledState() const { return bUserSetEnabledState; }
	void SetEnabledState(const ENodeEnabledState NewEnabledState, bool bUserAction = true);
	/** Placed by the editor as a hint: disabled until something is linked to it. */
	bool IsAutomaticallyPlacedGhostNode() const;
	void MakeAutomaticallyPlacedGhostNode();
	void EnableNode();

	void PostLoad() override;
	void BeginDestroy() override;
	void PreEditUndo() override;
	void PostEditUndo() override;
	void ExportCustomProperties(FOutputDevice& Out, uint32 Indent) override;
	void ImportCustomProperties(const TCHAR* SourceText, FFeedbackContext* Warn) override;
	static void AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector);

private:
	void DestroyPins();
	/** Links the pins as their text said; the other nodes exist by now. */
	void ResolvePinLinks();

	/** Pins of which an undo has not told yet whether they stay: others hold links to them. */
	TArray<UEdGraphPin*> PinsInQuestion;

	UPROPERTY()
	ENodeEnabledState EnabledState = ENodeEnabledState::Enabled;

	UPROPERTY()
	uint8 bUserSetEnabledState : 1;
};
