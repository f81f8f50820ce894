#include "EdGraph/EdGraphPin.h"

#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphSchema.h"

bool FEdGraphTerminalType::operator==(const FEdGraphTerminalType& Other) const
{
	return TerminalCategory == Other.TerminalCategory && TerminalSubCategory == Other.TerminalSubCategory &&
		   TerminalSubCategoryObject == Other.TerminalSubCategoryObject && bTerminalIsConst == Other.bTerminalIsConst &&
		   bTerminalIsWeakPointer == Other.bTerminalIsWeakPointer &&
		   bTerminalIsUObjectWrapper == Other.bTerminalIsUObjectWrapper;
}

FEdGraphTerminalType FEdGraphTerminalType::FromPinType(const FEdGraphPinType& PinType)
{
	FEdGraphTerminalType Result;
	Result.TerminalCategory = PinType.PinCategory;
	Result.TerminalSubCategory = PinType.PinSubCategory;
	Result.TerminalSubCategoryObject = PinType.PinSubCategoryObject;
	Result.bTerminalIsConst = PinType.bIsConst;
	Result.bTerminalIsWeakPointer = PinType.bIsWeakPointer;
	Result.bTerminalIsUObjectWrapper = PinType.bIsUObjectWrapper;
	return Result;
}

FEdGraphPinType::FEdGraphPinType()
	: bIsReference(false)
	, bIsConst(false)
	, bIsWeakPointer(false)
	, bIsUObjectWrapper(false)
	, bSerializeAsSinglePrecisionFloat(false)
{
}

FEdGraphPinType::FEdGraphPinType(FName InPinCategory, FName InPinSubCategory, UObject* InPinSubCategoryObject,
	EPinContainerType InPinContainerType, bool bInIsReference, const FEdGraphTerminalType& InValueTerminalType)
	: PinCategory(InPinCategory)
	, PinSubCategory(InPinSubCategory)
	, PinSubCategoryObject(InPinSubCategoryObject)
	, PinValueType(InValueTerminalType)
	, ContainerType(InPinContainerType)
	, bIsReference(bInIsReference)
	, bIsConst(false)
	, bIsWeakPointer(false)
	, bIsUObjectWrapper(false)
	, bSerializeAsSinglePrecisionFloat(false)
{
}

bool FEdGraphPinType::operator==(const FEdGraphPinType& Other) const
{
	return PinCategory == Other.PinCategory && PinSubCategory == Other.PinSubCategory &&
		   PinSubCategoryObject == Other.PinSubCategoryObject && PinValueType == Other.PinValueType &&
		   ContainerType == Other.ContainerType && bIsReference == Other.bIsReference && bIsConst == Other.bIsConst &&
		   bIsWeakPointer == Other.bIsWeakPointer && bIsUObjectWrapper == Other.bIsUObjectWrapper &&
		   PinSubCategoryMemberReference == Other.PinSubCategoryMemberReference;
}

FEdGraphPinType FEdGraphPinType::GetPinTypeForTerminalType(const FEdGraphTerminalType& TerminalType)
{
	FEdGraphPinType Result;
	Result.PinCategory = TerminalType.TerminalCategory;
	Result.PinSubCategory = TerminalType.TerminalSubCategory;
	Result.PinSubCategoryObject = TerminalType.TerminalSubCategoryObject;
	Result.bIsConst = TerminalType.bTerminalIsConst;
	Result.bIsWeakPointer = TerminalType.bTerminalIsWeakPointer;
	Result.bIsUObjectWrapper = TerminalType.bTerminalIsUObjectWrapper;
	return Result;
}

FEdGraphPinType FEdGraphPinType::GetTerminalTypeForContainer(const FEdGraphPinType& ContainerType)
{
	FEdGraphPinType Result = ContainerType;
	Result.ContainerType = EPinContainerType::None;
	Result.PinValueType = FEdGraphTerminalType();
	return Result;
}

UEdGraphPin::UEdGraphPin(UEdGraphNode* InOwningNode)
	: bHidden(false)
	, bNotConnectable(false)
	, bDefaultValueIsReadOnly(false)
	, bDefaultValueIsIgnored(false)
	, bAdvancedView(false)
	, bOrphanedPin(false)
	, OwningNode(InOwningNode)
{
}

UEdGraphPin::~UEdGraphPin()
{
	for (UEdGraphPin* const Other : LinkedTo)
	{
		Other->LinkedTo.Remove(this);
	}
	if (ParentPin)
	{
		ParentPin->SubPins.Remove(this);
	}
	for (UEdGraphPin* const SubPin : SubPins)
	{
		SubPin->ParentPin = nullptr;
	}
}

UEdGraphPin* UEdGraphPin::CreatePin(UEdGraphNode* InOwningNode)
{
	return new UEdGraphPin(InOwningNode);
}

void UEdGraphPin::MakeLinkTo(UEdGraphPin* ToPin, bool bAlwaysMarkDirty)
{
	if (!ToPin || LinkedTo.Contains(ToPin))
	{
		return;
	}
	checkf(ToPin != this, TEXT("A pin cannot be linked to itself"));
	checkf(GetOwningNode()->GetOuter() == ToPin->GetOwningNode()->GetOuter(), TEXT("Links do not leave their graph"));
	Modify(bAlwaysMarkDirty);
	ToPin->Modify(bAlwaysMarkDirty);
	LinkedTo.Add(ToPin);
	ToPin->LinkedTo.Add(this);
	GetOwningNode()->EnableNode();
	ToPin->GetOwningNode()->EnableNode();
}

void UEdGraphPin::BreakLinkTo(UEdGraphPin* ToPin, bool bAlwaysMarkDirty)
{
	if (!ToPin || !LinkedTo.Contains(ToPin))
	{
		return;
	}
	Modify(bAlwaysMarkDirty);
	ToPin->Modify(bAlwaysMarkDirty);
	LinkedTo.Remove(ToPin);
	ToPin->LinkedTo.Remove(this);
}

void UEdGraphPin::BreakAllPinLinks(bool bNotifyNodes, bool bAlwaysMarkDirty)
{
	const TArray<UEdGraphPin*> Others = LinkedTo;
	for (UEdGraphPin* const Other : Others)
	{
		BreakLinkTo(Other, bAlwaysMarkDirty);
		if (bNotifyNodes)
		{
			Other->GetOwningNode()->PinConnectionListChanged(Other);
		}
	}
	if (bNotifyNodes && Others.Num() > 0)
	{
		GetOwningNode()->PinConnectionListChanged(this);
	}
}

bool UEdGraphPin::Modify(bool bAlwaysMarkDirty)
{
	return OwningNode && OwningNode->Modify(bAlwaysMarkDirty);
}

const UEdGraphSchema* UEdGraphPin::GetSchema() const
{
	return OwningNode ? OwningNode->GetSchema() : nullptr;
}

FText UEdGraphPin::GetDisplayName() const
{
	const UEdGraphSchema* const Schema = GetSchema();
	return Schema ? Schema->GetPinDisplayName(this) : FText::FromName(PinName);
}

FString UEdGraphPin::GetDefaultAsString() const
{
	if (DefaultObject)
	{
		return DefaultObject->GetPathName();
	}
	return DefaultTextValue.IsEmpty() ? DefaultValue : DefaultTextValue.ToString();
}

void UEdGraphPin::ResetDefaultValue()
{
	DefaultValue = AutogeneratedDefaultValue;
	DefaultObject = nullptr;
	DefaultTextValue = FText();
}

FEdGraphPinText UEdGraphPin::ToText() const
{
	FEdGraphPinText Text;
	Text.PinId = PinId;
	Text.PinName = PinName;
	Text.PinFriendlyName = PinFriendlyName;
	Text.Direction = Direction;
	Text.PinType = PinType;
	Text.DefaultValue = DefaultValue;
	Text.AutogeneratedDefaultValue = AutogeneratedDefaultValue;
	Text.DefaultObject = DefaultObject;
	Text.DefaultTextValue = DefaultTextValue;
	for (const UEdGraphPin* const Other : LinkedTo)
	{
		Text.LinkedTo.Add({ Other->GetOwningNode()->GetFName(), Other->PinId });
	}
	Text.ParentPin = ParentPin ? ParentPin->PinId : FGuid();
	Text.bHidden = bHidden;
	Text.bNotConnectable = bNotConnectable;
	Text.bDefaultValueIsReadOnly = bDefaultValueIsReadOnly;
	Text.bDefaultValueIsIgnored = bDefaultValueIsIgnored;
	Text.bAdvancedView = bAdvancedView;
	Text.bOrphanedPin = bOrphanedPin;
	return Text;
}

void UEdGraphPin::FromText(const FEdGraphPinText& Text)
{
	PinId = Text.PinId;
	PinName = Text.PinName;
	PinFriendlyName = Text.PinFriendlyName;
	Direction = Text.Direction;
	PinType = Text.PinType;
	DefaultValue = Text.DefaultValue;
	AutogeneratedDefaultValue = Text.AutogeneratedDefaultValue;
	DefaultObject = Text.DefaultObject;
	DefaultTextValue = Text.DefaultTextValue;
	bLinksUnresolved = true;
	UnresolvedLinks = Text.LinkedTo;
	UnresolvedParent = Text.ParentPin;
	bHidden = Text.bHidden;
	bNotConnectable = Text.bNotConnectable;
	bDefaultValueIsReadOnly = Text.bDefaultValueIsReadOnly;
	bDefaultValueIsIgnored = Text.bDefaultValueIsIgnored;
	bAdvancedView = Text.bAdvancedView;
	bOrphanedPin = Text.bOrphanedPin;
}

void UEdGraphPin::ResolveLinks()
{
	const TArray<UEdGraphPin*> Before = MoveTemp(LinkedTo);
	LinkedTo.Empty();
	for (const FEdGraphPinLink& Link : UnresolvedLinks)
	{
		const UEdGraphNode* const Node = FindObjectFast<UEdGraphNode>(OwningNode->GetOuter(), Link.Node);
		UEdGraphPin* const Other = Node ? Node->FindPinById(Link.PinId) : nullptr;
		if (Other && Other != this)
		{
			LinkedTo.AddUnique(Other);
			(Other->bLinksUnresolved ? Other->BackLinks : Other->LinkedTo).AddUnique(this);
		}
	}
	for (UEdGraphPin* const Other : BackLinks)
	{
		LinkedTo.AddUnique(Other);
	}
	for (UEdGraphPin* const Other : Before)
	{
		if (!LinkedTo.Contains(Other))
		{
			Other->LinkedTo.Remove(this);
		}
	}
	UEdGraphPin* const Parent = UnresolvedParent.IsValid() ? OwningNode->FindPinById(UnresolvedParent) : nullptr;
	if (Parent && Parent != this)
	{
		ParentPin = Parent;
		Parent->SubPins.AddUnique(this);
	}
	bLinksUnresolved = false;
	UnresolvedLinks.Empty();
	BackLinks.Empty();
}
