#include "Widget/Prompt/SKestrelCompletionList.h"

#include "Agent/Text/DisplayText.h"
#include "Layout/Margin.h"
#include "Misc/Paths.h"
#include "Styling/AppStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateBrush.h"
#include "Styling/SlateColor.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widget/KestrelStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

namespace KestrelCompletionList
{
constexpr float Padding = 4.0f;
constexpr float ColumnGap = 8.0f;
constexpr float RowPadding = 2.0f;
}

void SKestrelCompletionList::Construct(const FArguments& InArgs)
{
	OnChosen = InArgs._OnChosen;
	// clang-format off
	ChildSlot
	[
		SNew(SBorder)
		.BorderImage(FKestrelStyle::Get().GetBrush("Kestrel.Completion"))
		.Padding(KestrelCompletionList::Padding)
		[
			SAssignNew(Rows, SVerticalBox)
		]
	];
	// clang-format on
}

void SKestrelCompletionList::SetNames(const TArray<FString>& InNames)
{
	if (Names == InNames)
	{
		return;
	}
	const FString Selected = SelectedIndex > 0 ? GetSelected() : FString();
	Names = InNames;
	SelectedIndex =
		FMath::Max(Names.IndexOfByPredicate([&Selected](const FString& Name) { return Name.Equals(Selected); }), 0);
	Rows->ClearChildren();
	for (int32 Index = 0; Index < Names.Num(); ++Index)
	{
		Rows->AddSlot().AutoHeight()[MakeRow(Index)];
	}
}

TSharedRef<SWidget> SKestrelCompletionList::MakeRow(int32 Index)
{
	constexpr int32 MaxFileLength = 48;
	constexpr int32 MaxFolderLength = 32;
	const FString& Name = Names[Index];
	// clang-format off
	return SNew(SBorder)
		.BorderImage(this, &SKestrelCompletionList::GetRowBrush, Index)
		.Padding(0.0f)
		[
			SNew(SButton)
			.ButtonStyle(&FAppStyle::Get().GetWidgetStyle<FButtonStyle>("SimpleButton"))
			.ContentPadding(FMargin(KestrelCompletionList::Padding, KestrelCompletionList::RowPadding))
			// The prompt keeps the focus, and with it its cursor.
			.IsFocusable(false)
			// A press beside what has the focus may take it away before the button is released.
			.ClickMethod(EButtonClickMethod::MouseDown)
			.ToolTipText(FText::FromString(Name))
			.AccessibleText(FText::FromString(Name))
			.OnClicked(this, &SKestrelCompletionList::OnRowClicked, Index)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot()
				.AutoWidth()
				[
					SNew(STextBlock)
					.Text(FText::FromString(KestrelDisplayText::Elide(FPaths::GetCleanFilename(Name), MaxFileLength)))
				]
				+ SHorizontalBox::Slot()
				.AutoWidth()
				.Padding(KestrelCompletionList::ColumnGap, 0.0f, 0.0f, 0.0f)
				[
					SNew(STextBlock)
					.Text(FText::FromString(KestrelDisplayText::Elide(FPaths::GetPath(Name), MaxFolderLength)))
					.ColorAndOpacity(FKestrelStyle::Get().GetSlateColor("Kestrel.Text.Quiet"))
				]
			]
		];
	// clang-format on
}

const FSlateBrush* SKestrelCompletionList::GetRowBrush(int32 Index) const
{
	return FKestrelStyle::Get().GetBrush(
		Index == SelectedIndex ? FName("Kestrel.Completion.Selected") : FName("Kestrel.Completion.Row"));
}

void SKestrelCompletionList::MoveSelection(int32 Step)
{
	if (!Names.IsEmpty())
	{
		SelectedIndex = (SelectedIndex + Step + Names.Num()) % Names.Num();
	}
}

FString SKestrelCompletionList::GetSelected() const
{
	return Names.IsValidIndex(SelectedIndex) ? Names[SelectedIndex] : FString();
}

FReply SKestrelCompletionList::OnRowClicked(int32 Index)
{
	if (Names.IsValidIndex(Index))
	{
		// A copy: what is chosen may close the list.
		const FString Name = Names[Index];
		OnChosen.ExecuteIfBound(Name);
	}
	return FReply::Handled();
}
