#include "EdGraph/EdGraphNode.h"

#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraph/EdGraphSchema.h"
#include "Misc/FeedbackContext.h"
#include "Misc/OutputDevice.h"
#include "UObject/PropertyPortFlags.h"

#define LOCTEXT_NAMESPACE "EdGraphNode"

namespace EdGraphNodeImpl
{
const FString PinPrefix = TEXT("Pin ");

/** The comment of a node that the editor has placed as a hint. */
FText GetGhostComment()
{
	return LOCTEXT(
		"DisabledNodeComment", "This node is disabled and will not be called.\nDrag off pins to build functionality.");
}
}

UEdGraphNode::UEdGraphNode(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bCommentBubbleVisible(false)
	, bHasCompilerMessage(false)
	, bUserSetEnabledState(false)
{
}

UEdGraphPin* UEdGraphNode::CreatePin(
	EEdGraphPinDirection Dir, const FName PinCategory, const FName PinName, const FCreatePinParams& PinParams)
{
	return CreatePin(Dir, PinCategory, NAME_None, nullptr, PinName, PinParams);
}

UEdGraphPin* UEdGraphNode::CreatePin(EEdGraphPinDirection Dir, const FName PinCategory, const FName PinSubCategory,
	const FName PinName, const FCreatePinParams& PinParams)
{
	return CreatePin(Dir, PinCategory, PinSubCategory, nullptr, PinName, PinParams);
}

UEdGraphPin* UEdGraphNode::CreatePin(EEdGraphPinDirection Dir, const FName PinCategory, UObject* PinSubCategoryObject,
	const FName PinName, const FCreatePinParams& PinParams)
{
	return CreatePin(Dir, PinCategory, NAME_None, PinSubCategoryObject, PinName, PinParams);
}

UEdGraphPin* UEdGraphNode::CreatePin(EEdGraphPinDirection Dir, const FName PinCategory, const FName PinSubCategory,
	UObject* PinSubCategoryObject, const FName PinName, const FCreatePinParams& PinParams)
{
	FEdGraphPinType PinType(PinCategory, PinSubCategory, PinSubCategoryObject, PinParams.ContainerType,
		PinParams.bIsReference, PinParams.ValueTerminalType);
	PinType.bIsConst = PinParams.bIsConst;
	return CreatePin(Dir, PinType, PinName, PinParams.Index);
}

UEdGraphPin* UEdGraphNode::CreatePin(
	EEdGraphPinDirection InDirection, const FEdGraphPinType& InPinType, const FName InPinName, int32 Index)
{
	UEdGraphPin* const Pin = UEdGraphPin::CreatePin(this);
	Pin->PinId = FGuid::NewGuid();
	Pin->PinName = InPinName;
	Pin->Direction = InDirection;
	Pin->PinType = InPinType;
	Modify(false);
	if (Index == INDEX_NONE)
	{
		Pins.Add(Pin);
	}
	else
	{
		Pins.Insert(Pin, Index);
	}
	return Pin;
}

UEdGraphPin* UEdGraphNode::FindPin(const FName PinName, const EEdGraphPinDirection Direction) const
{
	for (UEdGraphPin* const Pin : Pins)
	{
		if (Pin->PinName == PinName && (Direction == EGPD_MAX || Direction == Pin->Direction))
		{
			return Pin;
		}
	}
	return nullptr;
}

UEdGraphPin* UEdGraphNode::FindPinById(const FGuid PinId) const
{
	UEdGraphPin* const* const Found =
		Pins.FindByPredicate([&PinId](const UEdGraphPin* Pin) { return Pin->PinId == PinId; });
	return Found ? *Found : nullptr;
}

UEdGraphPin* UEdGraphNode::GetPinWithDirectionAt(int32 PinIndex, EEdGraphPinDirection PinDirection) const
{
	int32 Index = 0;
	for (UEdGraphPin* const Pin : Pins)
	{
		if (Pin->Direction == PinDirection && Index++ == PinIndex)
		{
			return Pin;
		}
	}
	return nullptr;
}

bool UEdGraphNode::RemovePin(UEdGraphPin* Pin)
{
	if (Pins.Remove(Pin) == 0)
	{
		return false;
	}
	Pin->BreakAllPinLinks();
	delete Pin;
	return true;
}

void UEdGraphNode::BreakAllNodeLinks()
{
	for (UEdGraphPin* const Pin : Pins)
	{
		Pin->BreakAllPinLinks();
	}
}

UEdGraph* UEdGraphNode::GetGraph() const
{
	return Cast<UEdGraph>(GetOuter());
}

const UEdGraphSchema* UEdGraphNode::GetSchema() const
{
	const UEdGraph* const Graph = GetGraph();
	return Graph ? Graph->GetSchema() : nullptr;
}

void UEdGraphNode::DestroyNode()
{
	if (UEdGraph* const Graph = GetGraph())
	{
		Graph->RemoveNode(this);
	}
}

FText UEdGraphNode::GetNodeTitle(ENodeTitleType::Type) const
{
	return FText::FromString(GetClass()->GetName());
}

FText UEdGraphNode::GetTooltipText() const
{
	return GetClass()->GetToolTipText();
}

FLinearColor UEdGraphNode::GetNodeTitleColor() const
{
	return FColor(96, 96, 96);
}

void UEdGraphNode::SetEnabledState(const ENodeEnabledState NewEnabledState, bool bUserAction)
{
	EnabledState = NewEnabledState;
	bUserSetEnabledState = bUserAction;
}

bool UEdGraphNode::IsAutomaticallyPlacedGhostNode() const
{
	return !bUserSetEnabledState && EnabledState == ENodeEnabledState::Disabled;
}

void UEdGraphNode::MakeAutomaticallyPlacedGhostNode()
{
	EnabledState = ENodeEnabledState::Disabled;
	bUserSetEnabledState = false;
	NodeComment = EdGraphNodeImpl::GetGhostComment().ToString();
	bCommentBubbleVisible = true;
}

void UEdGraphNode::EnableNode()
{
	if (!IsAutomaticallyPlacedGhostNode())
	{
		return;
	}
	EnabledState = ENodeEnabledState::Enabled;
	NodeComment.Empty();
	bCommentBubbleVisible = false;
}

void UEdGraphNode::PostLoad()
{
	Super::PostLoad();
	ResolvePinLinks();
}

void UEdGraphNode::BeginDestroy()
{
	DestroyPins();
	Super::BeginDestroy();
}

void UEdGraphNode::PreEditUndo()
{
	Super::PreEditUndo();
	PinsInQuestion.Append(MoveTemp(Pins));
	Pins.Empty();
}

void UEdGraphNode::PostEditUndo()
{
	Super::PostEditUndo();
	for (const UEdGraphPin* const Pin : PinsInQuestion)
	{
		delete Pin;
	}
	PinsInQuestion.Empty();
	ResolvePinLinks();
}

void UEdGraphNode::DestroyPins()
{
	for (const UEdGraphPin* const Pin : Pins)
	{
		delete Pin;
	}
	Pins.Empty();
}

void UEdGraphNode::ExportCustomProperties(FOutputDevice& Out, uint32 Indent)
{
	static const FEdGraphPinText Defaults;
	const UScriptStruct* const Struct = FEdGraphPinText::StaticStruct();
	const FString Start =
		FString::ChrN(static_cast<int32>(Indent), u' ') + TEXT("CustomProperties ") + EdGraphNodeImpl::PinPrefix;
	FString Line;
	for (const UEdGraphPin* const Pin : Pins)
	{
		const FEdGraphPinText Data = Pin->ToText();
		Line.Reset();
		Line += Start;
		Struct->ExportText(Line, &Data, &Defaults, this, PPF_None, nullptr);
		Out.Log(Line);
	}
}

void UEdGraphNode::ImportCustomProperties(const TCHAR* SourceText, FFeedbackContext* Warn)
{
	const FString Text(SourceText);
	if (!Text.StartsWith(EdGraphNodeImpl::PinPrefix))
	{
		return;
	}
	FEdGraphPinText Data;
	const UScriptStruct* const Struct = FEdGraphPinText::StaticStruct();
	const TCHAR* const Start = *Text + EdGraphNodeImpl::PinPrefix.Len();
	if (!Struct->ImportText(Start, &Data, this, PPF_None, Warn, Struct->GetName()))
	{
		Warn->Logf(TEXT("%s: a pin cannot be read: %s"), *GetPathName(), SourceText);
		return;
	}
	UEdGraphPin* const* const Known =
		PinsInQuestion.FindByPredicate([&Data](const UEdGraphPin* Each) { return Each->PinId == Data.PinId; });
	UEdGraphPin* const Pin = Known ? *Known : UEdGraphPin::CreatePin(this);
	PinsInQuestion.Remove(Pin);
	Pin->FromText(Data);
	Pins.Add(Pin);
}

void UEdGraphNode::ResolvePinLinks()
{
	for (UEdGraphPin* const Pin : Pins)
	{
		Pin->ResolveLinks();
	}
}

void UEdGraphNode::AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector)
{
	Super::AddReferencedObjects(InThis, Collector);
	for (UEdGraphPin* const Pin : static_cast<UEdGraphNode*>(InThis)->Pins)
	{
		Collector.AddReferencedObject(Pin->DefaultObject);
	}
}

#undef LOCTEXT_NAMESPACE
