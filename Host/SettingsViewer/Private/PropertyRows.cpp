#include "PropertyRows.h"

#include "HostPropertyEdit.h"
#include "PropertyValueWidgets.h"
#include "SettingsPage.h"
#include "Styling/AppStyle.h"
#include "UObject/UnrealType.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

namespace PropertyRows
{
// Slate units.
constexpr float Indent = 16.0f;
constexpr float NameWidth = 300.0f;

static TArray<FString> SplitCategory(const FProperty& Property)
{
	TArray<FString> Names;
	Property.GetMetaData("Category").ParseIntoArray(Names, TEXT("|"));
	for (FString& Name : Names)
	{
		Name.TrimStartAndEndInline();
	}
	return Names;
}

static bool Matches(const FProperty& Property, const FString& Filter)
{
	return Filter.IsEmpty() || Property.GetDisplayNameText().ToString().Contains(Filter) ||
		   Property.GetMetaData("Category").Contains(Filter) || Property.GetToolTipText().ToString().Contains(Filter);
}
}

FCategoryNode& FCategoryNode::FindOrAdd(const FString& ChildName)
{
	for (const TUniquePtr<FCategoryNode>& Child : Children)
	{
		if (Child->Name == ChildName)
		{
			return *Child;
		}
	}
	TUniquePtr<FCategoryNode> NewChild = MakeUnique<FCategoryNode>();
	NewChild->Name = ChildName;
	return *Children[Children.Add(MoveTemp(NewChild))];
}

FPropertyRows::FPropertyRows(const TSharedRef<FSettingsPage>& InPage, const FString& InFilter)
	: Page(InPage)
	, Filter(InFilter)
{
}

TUniquePtr<FCategoryNode> FPropertyRows::CollectCategories(const UStruct& Struct, const FString& Filter)
{
	TUniquePtr<FCategoryNode> Root = MakeUnique<FCategoryNode>();
	for (TFieldIterator<FProperty> It(&Struct); It; ++It)
	{
		if (!FHostPropertyEdit::IsShown(**It) || !PropertyRows::Matches(**It, Filter))
		{
			continue;
		}
		FCategoryNode* Node = Root.Get();
		for (const FString& Name : PropertyRows::SplitCategory(**It))
		{
			Node = &Node->FindOrAdd(Name);
		}
		Node->Properties.Add(*It);
	}
	return Root;
}

int32 FPropertyRows::AddTo(SVerticalBox& Box) const
{
	const UObject* const Object = Page->GetObject();
	if (Object == nullptr)
	{
		return 0;
	}
	const TUniquePtr<FCategoryNode> Root = CollectCategories(*Object->GetClass(), Filter);
	return AddCategory(Box, *Root, 0);
}

int32 FPropertyRows::AddCategory(SVerticalBox& Box, const FCategoryNode& Node, int32 Depth) const
{
	int32 NumShown = Node.Properties.Num();
	if (!Node.Name.IsEmpty())
	{
		const float Left = 6.0f + static_cast<float>(Depth - 1) * PropertyRows::Indent;
		// clang-format off
		Box.AddSlot().AutoHeight().Padding(0.0f, Depth == 1 ? 8.0f : 2.0f, 0.0f, 1.0f)
		[
			SNew(SBorder)
			.BorderImage(FAppStyle::GetBrush(Depth == 1 ? "Brushes.Header" : "Brushes.Recessed"))
			.Padding(Left, 4.0f, 6.0f, 4.0f)
			[
				SNew(STextBlock).Text(FText::FromString(Node.Name)).Font(FAppStyle::GetFontStyle("BoldFont"))
			]
		];
		// clang-format on
	}
	for (FProperty* const Property : Node.Properties)
	{
		AddProperty(Box, *Property, Property->GetName(), Depth);
	}
	for (const TUniquePtr<FCategoryNode>& Child : Node.Children)
	{
		NumShown += AddCategory(Box, *Child, Depth + 1);
	}
	return NumShown;
}

void FPropertyRows::AddProperty(SVerticalBox& Box, FProperty& Property, const FString& Path, int32 Depth) const
{
	if (const FArrayProperty* const ArrayProperty = CastField<FArrayProperty>(&Property))
	{
		AddArray(Box, *ArrayProperty, Path, Depth);
		return;
	}
	const FStructProperty* const StructProperty = CastField<FStructProperty>(&Property);
	if (StructProperty != nullptr)
	{
		AddRow(Box, Property.GetDisplayNameText(), Property.GetToolTipText(), SNullWidget::NullWidget, Depth);
		AddMembers(Box, *StructProperty, Path, Depth + 1);
		return;
	}
	AddRow(Box, Property.GetDisplayNameText(), Property.GetToolTipText(),
		FPropertyValueWidgets(Page).MakeValue(Property, Path, Property.GetDisplayNameText()), Depth);
}

void FPropertyRows::AddMembers(
	SVerticalBox& Box, const FStructProperty& Property, const FString& Path, int32 Depth) const
{
	for (TFieldIterator<FProperty> It(Property.Struct); It; ++It)
	{
		AddProperty(Box, **It, Path + TEXT(".") + It->GetName(), Depth);
	}
}

void FPropertyRows::AddArray(SVerticalBox& Box, const FArrayProperty& Property, const FString& Path, int32 Depth) const
{
	UObject* const Object = Page->GetObject();
	const FScriptArrayHelper Array(&Property, Property.ContainerPtrToValuePtr<void>(Object));
	const FPropertyValueWidgets Widgets(Page);
	const FText Name = Property.GetDisplayNameText();
	AddRow(Box, Name, Property.GetToolTipText(), Widgets.MakeArrayHeader(Property, Path, Array.Num()), Depth);
	for (int32 Index = 0; Index < Array.Num(); ++Index)
	{
		const FText ElementName =
			FText::Format(NSLOCTEXT("SettingsViewer", "Element", "Index [{0}]"), FText::AsNumber(Index));
		const FText SpokenName =
			FText::Format(NSLOCTEXT("SettingsViewer", "SpokenElement", "{0} [{1}]"), Name, FText::AsNumber(Index));
		AddRow(Box, ElementName, FText::GetEmpty(), Widgets.MakeElement(Property, Path, Index, SpokenName), Depth + 1);
		if (const FStructProperty* const Struct = CastField<FStructProperty>(Property.Inner))
		{
			AddMembers(Box, *Struct, FString::Printf(TEXT("%s[%d]"), *Path, Index), Depth + 2);
		}
	}
}

void FPropertyRows::AddRow(
	SVerticalBox& Box, const FText& Name, const FText& ToolTip, const TSharedRef<SWidget>& Value, int32 Depth) const
{
	const float Left = 6.0f + static_cast<float>(FMath::Max(Depth, 0)) * PropertyRows::Indent;
	// clang-format off
	Box.AddSlot().AutoHeight().Padding(Left, 2.0f, 6.0f, 2.0f)
	[
		SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)
		[
			SNew(SBox).WidthOverride(FMath::Max(PropertyRows::NameWidth - Left, 0.0f))
			[
				// A text alone lets the pointer through, and the tool tip with it.
				SNew(SBorder).BorderImage(FAppStyle::GetNoBrush()).Padding(0.0f).ToolTipText(ToolTip)
				[
					SNew(STextBlock).Text(Name)
				]
			]
		]
		+ SHorizontalBox::Slot().FillWidth(1.0f).VAlign(VAlign_Center)
		[
			Value
		]
	];
	// clang-format on
}
