#include "SOutputLog.h"

#include "SLogView.h"
#include "Styling/AppStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SScrollBar.h"
#include "Widgets/SBoxPanel.h"

#define LOCTEXT_NAMESPACE "OutputLog"

void SOutputLog::Construct(const FArguments& InArgs, const TSharedRef<const FOutputLogHistory>& InHistory)
{
	// clang-format off
	ChildSlot
	[
		SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight().Padding(4.0f)
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().FillWidth(1.0f)
			[
				SNew(SEditableTextBox)
				.HintText(LOCTEXT("Filter", "Search Log"))
				.ClearKeyboardFocusOnCommit(false)
				.OnTextChanged(this, &SOutputLog::OnFilterChanged)
			]
			+ SHorizontalBox::Slot().AutoWidth().Padding(4.0f, 0.0f, 0.0f, 0.0f)
			[
				SNew(SButton)
				.ContentPadding(FMargin(8.0f, 3.0f))
				.Text(LOCTEXT("Clear", "Clear Log"))
				.ToolTipText(LOCTEXT("ClearTip", "Takes the lines off this view; the log file keeps them"))
				.OnClicked(this, &SOutputLog::OnClearClicked)
			]
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
				]
				+ SHorizontalBox::Slot().AutoWidth()
				[
					SAssignNew(ScrollBar, SScrollBar)
					.OnUserScrolled(this, &SOutputLog::OnScrolled)
				]
			]
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

FReply SOutputLog::OnClearClicked()
{
	View->Clear();
	return FReply::Handled();
}

#undef LOCTEXT_NAMESPACE
