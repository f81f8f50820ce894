#include "SOutputLog.h"

#include "OutputLogHistory.h"
#include "SLogView.h"
#include "Styling/AppStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SCheckBox.h"
#include "Widgets/Input/SComboButton.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Layout/SScrollBar.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "OutputLog"

void SOutputLog::Construct(const FArguments& InArgs, const TSharedRef<const FOutputLogHistory>& InHistory)
{
	History = InHistory;
	// clang-format off
	ChildSlot
	[
		SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight().Padding(4.0f)
		[
			MakeToolBar()
		]
		+ SVerticalBox::Slot().FillHeight(1.0f)
		[
			SNew(SBorder).BorderImage(FAppStyle::GetBrush("Brushes.Recessed")).Padding(0.0f, 4.0f)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().FillWidth(1.0f)
				[
					SAssignNew(View, SLogView, InHistory)
					.OnViewMoved(this, &SOutputLog::OnViewMoved)
					.OnViewMovedSideways(this, &SOutputLog::OnViewMovedSideways)
				]
				+ SHorizontalBox::Slot().AutoWidth()
				[
					SAssignNew(ScrollBar, SScrollBar)
					.OnUserScrolled(this, &SOutputLog::OnScrolled)
				]
			]
		]
		+ SVerticalBox::Slot().AutoHeight()
		[
			SAssignNew(SidewaysBar, SScrollBar)
			.Orientation(Orient_Horizontal)
			.OnUserScrolled(this, &SOutputLog::OnScrolledSideways)
		]
	];
	// clang-format on
}

TSharedRef<SWidget> SOutputLog::MakeToolBar()
{
	// clang-format off
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().FillWidth(1.0f)
		[
			SNew(SEditableTextBox)
			.HintText(LOCTEXT("Filter", "Search Log"))
			.ClearKeyboardFocusOnCommit(false)
			.OnTextChanged(this, &SOutputLog::OnFilterChanged)
		]
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(8.0f, 0.0f, 0.0f, 0.0f)
		[
			MakeLevelSwitch(ELogVerbosity::Log, LOCTEXT("Messages", "Messages"))
		]
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(8.0f, 0.0f, 0.0f, 0.0f)
		[
			MakeLevelSwitch(ELogVerbosity::Warning, LOCTEXT("Warnings", "Warnings"))
		]
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(8.0f, 0.0f, 8.0f, 0.0f)
		[
			MakeLevelSwitch(ELogVerbosity::Error, LOCTEXT("Errors", "Errors"))
		]
		+ SHorizontalBox::Slot().AutoWidth()
		[
			SNew(SComboButton)
			.AccessibleText(LOCTEXT("Categories", "Categories"))
			.OnGetMenuContent(this, &SOutputLog::MakeCategoryMenu)
			.ButtonContent()
			[
				SNew(STextBlock).Text(LOCTEXT("Categories", "Categories"))
			]
		]
		+ SHorizontalBox::Slot().AutoWidth().Padding(4.0f, 0.0f, 0.0f, 0.0f)
		[
			SNew(SButton)
			.ContentPadding(FMargin(8.0f, 3.0f))
			.Text(LOCTEXT("Clear", "Clear Log"))
			.ToolTipText(LOCTEXT("ClearTip", "Takes the lines off this view; the log file keeps them"))
			.OnClicked(this, &SOutputLog::OnClearClicked)
		];
	// clang-format on
}

TSharedRef<SWidget> SOutputLog::MakeLevelSwitch(ELogVerbosity::Type Level, const FText& Label)
{
	// clang-format off
	return SNew(SCheckBox)
		.IsChecked_Lambda([this, Level] {
			return View->IsLevelShown(Level) ? ECheckBoxState::Checked : ECheckBoxState::Unchecked;
		})
		.OnCheckStateChanged_Lambda([this, Level](ECheckBoxState State) {
			View->SetLevelShown(Level, State == ECheckBoxState::Checked);
		})
		[
			SNew(STextBlock).Text(Label).Margin(FMargin(4.0f, 0.0f, 0.0f, 0.0f))
		];
	// clang-format on
}

TSharedRef<SWidget> SOutputLog::MakeCategorySwitch(FName Category)
{
	// clang-format off
	return SNew(SCheckBox)
		.IsChecked_Lambda([this, Category] {
			return View->IsCategoryShown(Category) ? ECheckBoxState::Checked : ECheckBoxState::Unchecked;
		})
		.OnCheckStateChanged_Lambda([this, Category](ECheckBoxState State) {
			View->SetCategoryShown(Category, State == ECheckBoxState::Checked);
		})
		[
			SNew(STextBlock).Text(FText::FromName(Category)).Margin(FMargin(4.0f, 0.0f, 0.0f, 0.0f))
		];
	// clang-format on
}

TSharedRef<SWidget> SOutputLog::MakeCategoryMenu()
{
	constexpr float MaxHeight = 400.0f;
	TArray<FName> Categories = History->GetCategories();
	Categories.Sort([](const FName& A, const FName& B) { return A.ToString() < B.ToString(); });
	const TSharedRef<SScrollBox> Column = SNew(SScrollBox);
	for (const FName& Category : Categories)
	{
		Column->AddSlot().Padding(4.0f, 2.0f)[MakeCategorySwitch(Category)];
	}
	// clang-format off
	return SNew(SBorder).BorderImage(FAppStyle::GetBrush("Menu.Background")).Padding(4.0f)
		[
			SNew(SBox).MaxDesiredHeight(MaxHeight)
			[
				Column
			]
		];
	// clang-format on
}

void SOutputLog::OnFilterChanged(const FText& Text)
{
	View->SetFilter(Text.ToString());
}

void SOutputLog::OnViewMoved(float OffsetFraction, float ViewFraction)
{
	ScrollBar->SetState(OffsetFraction, ViewFraction);
}

void SOutputLog::OnScrolled(float OffsetFraction)
{
	View->ScrollTo(OffsetFraction);
}

void SOutputLog::OnViewMovedSideways(float OffsetFraction, float ViewFraction)
{
	SidewaysBar->SetState(OffsetFraction, ViewFraction);
	SidewaysBar->SetVisibility(SidewaysBar->IsNeeded() ? EVisibility::Visible : EVisibility::Collapsed);
}

void SOutputLog::OnScrolledSideways(float OffsetFraction)
{
	View->ScrollSidewaysTo(OffsetFraction);
}

FReply SOutputLog::OnClearClicked()
{
	View->Clear();
	return FReply::Handled();
}

#undef LOCTEXT_NAMESPACE
