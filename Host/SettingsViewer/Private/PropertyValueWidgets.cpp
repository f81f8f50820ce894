#include "PropertyValueWidgets.h"

#include "Framework/Application/SlateApplication.h"
#include "HostPropertyEdit.h"
#include "SettingsPage.h"
#include "Styling/AppStyle.h"
#include "UObject/EnumProperty.h"
#include "UObject/UnrealType.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SCheckBox.h"
#include "Widgets/Input/SComboButton.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SettingsViewer"

namespace PropertyValueWidgets
{
// Slate units.
constexpr float TextWidth = 360.0f;
constexpr float NumberWidth = 120.0f;
constexpr float EnumWidth = 240.0f;

static const UEnum* FindEnum(const FProperty& Property)
{
	if (const FEnumProperty* const EnumProperty = CastField<FEnumProperty>(&Property))
	{
		return EnumProperty->GetEnum();
	}
	const FByteProperty* const ByteProperty = CastField<FByteProperty>(&Property);
	return ByteProperty != nullptr ? ByteProperty->Enum : nullptr;
}

/** Without what is there for programmers alone. */
static bool IsOffered(const UEnum& Enum, int32 Index)
{
	const bool bIsGeneratedMax =
		Index == Enum.NumEnums() - 1 && Enum.GetNameStringByIndex(Index).EndsWith(TEXT("_MAX"));
	return !bIsGeneratedMax && !Enum.HasMetaData(TEXT("Hidden"), Index);
}

static FText GetEnumText(const UEnum& Enum, const FString& ValueText)
{
	const int32 Index = Enum.GetIndexByNameString(ValueText);
	return Index != INDEX_NONE ? Enum.GetDisplayNameTextByIndex(Index) : FText::FromString(ValueText);
}

static TSharedRef<SWidget> MakeSmallButton(
	const FText& Sign, const FText& Name, const FText& ToolTip, const FOnClicked& OnClicked)
{
	// clang-format off
	return SNew(SButton)
		.ButtonStyle(&FAppStyle::Get().GetWidgetStyle<FButtonStyle>("SimpleButton"))
		.ContentPadding(FMargin(6.0f, 2.0f))
		.AccessibleText(Name)
		.ToolTipText(ToolTip)
		.Text(Sign)
		.OnClicked(OnClicked);
	// clang-format on
}
}

bool FPropertyValueWidgets::IsSecret(const FProperty& Property)
{
	return Property.HasMetaData("PasswordField");
}

TSharedRef<SWidget> FPropertyValueWidgets::MakeValue(
	const FProperty& Property, const FString& Path, const FText& Name) const
{
	const UEnum* const Enum = PropertyValueWidgets::FindEnum(Property);
	const TSharedRef<SWidget> Widget = Enum != nullptr                 ? MakeEnumBox(*Enum, Path, Name)
									   : Property.IsA<FBoolProperty>() ? MakeCheckBox(Path, Name)
																	   : MakeTextBox(Property, Path, Name);
	// An element is as editable as its array.
	const FProperty* const Owner = const_cast<FProperty&>(Property).GetOwnerProperty();
	Widget->SetEnabled(!Owner->HasAnyPropertyFlags(CPF_EditConst | CPF_DisableEditOnTemplate));
	return Widget;
}

TSharedRef<SWidget> FPropertyValueWidgets::MakeCheckBox(const FString& Path, const FText& Name) const
{
	const TSharedRef<FSettingsPage> Kept = Page;
	// clang-format off
	return SNew(SBox).HAlign(HAlign_Left)
		[
			SNew(SCheckBox)
			.AccessibleText(Name)
			.IsChecked_Lambda([Kept, Path] {
				return Kept->GetValue(Path) == TEXT("True") ? ECheckBoxState::Checked : ECheckBoxState::Unchecked;
			})
			.OnCheckStateChanged_Lambda([Kept, Path](ECheckBoxState State) {
				Kept->SetValue(Path, State == ECheckBoxState::Checked ? TEXT("True") : TEXT("False"));
			})
		];
	// clang-format on
}

TSharedRef<SWidget> FPropertyValueWidgets::MakeEnumBox(const UEnum& Enum, const FString& Path, const FText& Name) const
{
	const TSharedRef<FSettingsPage> Kept = Page;
	const UEnum* const EnumPtr = &Enum;
	// clang-format off
	return SNew(SBox).HAlign(HAlign_Left)
		[
			SNew(SBox).MinDesiredWidth(PropertyValueWidgets::EnumWidth)
			[
				SNew(SComboButton)
				.AccessibleText(Name)
				.OnGetMenuContent_Lambda([Kept, EnumPtr, Path] {
					return FPropertyValueWidgets(Kept).MakeEnumMenu(*EnumPtr, Path);
				})
				.ButtonContent()
				[
					SNew(STextBlock).Text_Lambda([Kept, EnumPtr, Path] {
						return PropertyValueWidgets::GetEnumText(*EnumPtr, Kept->GetValue(Path));
					})
				]
			]
		];
	// clang-format on
}

TSharedRef<SWidget> FPropertyValueWidgets::MakeEnumMenu(const UEnum& Enum, const FString& Path) const
{
	const TSharedRef<FSettingsPage> Kept = Page;
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	for (int32 Index = 0; Index < Enum.NumEnums(); ++Index)
	{
		if (!PropertyValueWidgets::IsOffered(Enum, Index))
		{
			continue;
		}
		const FString ValueText = Enum.GetNameStringByIndex(Index);
		const FOnClicked OnClicked = FOnClicked::CreateLambda([Kept, Path, ValueText] {
			FSlateApplication::Get().DismissAllMenus();
			Kept->SetValue(Path, ValueText);
			return FReply::Handled();
		});
		// clang-format off
		Column->AddSlot().AutoHeight()
		[
			SNew(SButton)
			.ButtonStyle(&FAppStyle::Get().GetWidgetStyle<FButtonStyle>("Menu.Button"))
			.ContentPadding(FMargin(6.0f, 3.0f))
			.Text(Enum.GetDisplayNameTextByIndex(Index))
			.ToolTipText(Enum.GetToolTipTextByIndex(Index))
			.OnClicked(OnClicked)
		];
		// clang-format on
	}
	return SNew(SBorder).BorderImage(FAppStyle::GetBrush("Menu.Background")).Padding(3.0f)[Column];
}

TSharedRef<SWidget> FPropertyValueWidgets::MakeTextBox(
	const FProperty& Property, const FString& Path, const FText& Name) const
{
	const TSharedRef<FSettingsPage> Kept = Page;
	const bool bIsNumber = Property.IsA<FNumericProperty>();
	// clang-format off
	return SNew(SBox).HAlign(HAlign_Left)
		[
			SNew(SBox)
			.WidthOverride(bIsNumber ? PropertyValueWidgets::NumberWidth : PropertyValueWidgets::TextWidth)
			[
				SNew(SEditableTextBox)
				.AccessibleText(Name)
				.IsPassword(IsSecret(Property))
				.SelectAllTextWhenFocused(bIsNumber)
				.RevertTextOnEscape(true)
				.ClearKeyboardFocusOnCommit(false)
				.Text_Lambda([Kept, Path] { return FText::FromString(Kept->GetValue(Path)); })
				.OnTextCommitted_Lambda([Kept, Path](const FText& Text, ETextCommit::Type) {
					Kept->SetValue(Path, Text.ToString());
				})
			]
		];
	// clang-format on
}

TSharedRef<SWidget> FPropertyValueWidgets::MakeArrayHeader(
	const FArrayProperty& Property, const FString& Path, int32 NumElements) const
{
	const TSharedRef<FSettingsPage> Kept = Page;
	const FText Name = Property.GetDisplayNameText();
	const FOnClicked OnAdd = FOnClicked::CreateLambda([Kept, Path] {
		Kept->AddElement(Path);
		return FReply::Handled();
	});
	const FOnClicked OnClear = FOnClicked::CreateLambda([Kept, Path] {
		Kept->ClearElements(Path);
		return FReply::Handled();
	});
	const FText Count = FText::Format(LOCTEXT("NumElements", "{0} elements"), FText::AsNumber(NumElements));
	const TSharedRef<SHorizontalBox> Row = SNew(SHorizontalBox);
	Row->AddSlot().AutoWidth().VAlign(VAlign_Center).Padding(0.0f, 0.0f, 8.0f, 0.0f)[SNew(STextBlock).Text(Count)];
	Row->AddSlot().AutoWidth()[PropertyValueWidgets::MakeSmallButton(
		INVTEXT("+"), FText::Format(LOCTEXT("Add", "Add to {0}"), Name), LOCTEXT("AddTip", "Adds an element"), OnAdd)];
	Row->AddSlot().AutoWidth()[PropertyValueWidgets::MakeSmallButton(LOCTEXT("ClearSign", "Clear"),
		FText::Format(LOCTEXT("Clear", "Clear {0}"), Name), LOCTEXT("ClearTip", "Removes all elements"), OnClear)];
	Row->SetEnabled(FHostPropertyEdit::IsEditable(Property));
	return Row;
}

TSharedRef<SWidget> FPropertyValueWidgets::MakeElement(
	const FArrayProperty& Property, const FString& ArrayPath, int32 Index, const FText& Name) const
{
	const TSharedRef<FSettingsPage> Kept = Page;
	const FOnClicked OnInsert = FOnClicked::CreateLambda([Kept, ArrayPath, Index] {
		Kept->InsertElement(ArrayPath, Index);
		return FReply::Handled();
	});
	const FOnClicked OnRemove = FOnClicked::CreateLambda([Kept, ArrayPath, Index] {
		Kept->RemoveElement(ArrayPath, Index);
		return FReply::Handled();
	});
	const FString Path = FString::Printf(TEXT("%s[%d]"), *ArrayPath, Index);
	const TSharedRef<SHorizontalBox> Row = SNew(SHorizontalBox);
	// In a narrow window the value gives way to the buttons.
	// The members of a struct have rows of their own.
	const bool bIsStruct = Property.Inner->IsA<FStructProperty>();
	Row->AddSlot().FillWidth(1.0f).MaxWidth(
		PropertyValueWidgets::TextWidth)[bIsStruct ? SNullWidget::NullWidget : MakeValue(*Property.Inner, Path, Name)];
	Row->AddSlot().AutoWidth().VAlign(VAlign_Center)[PropertyValueWidgets::MakeSmallButton(
		LOCTEXT("InsertSign", "Insert"), FText::Format(LOCTEXT("Insert", "Insert before {0}"), Name),
		LOCTEXT("InsertTip", "Puts an empty element in front of this one"), OnInsert)];
	Row->AddSlot().AutoWidth().VAlign(
		VAlign_Center)[PropertyValueWidgets::MakeSmallButton(LOCTEXT("RemoveSign", "Remove"),
		FText::Format(LOCTEXT("Remove", "Remove {0}"), Name), LOCTEXT("RemoveTip", "Removes this element"), OnRemove)];
	Row->SetEnabled(FHostPropertyEdit::IsEditable(Property));
	return Row;
}

#undef LOCTEXT_NAMESPACE
