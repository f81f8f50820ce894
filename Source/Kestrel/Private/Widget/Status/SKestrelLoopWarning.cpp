#include "Widget/Status/SKestrelLoopWarning.h"

#include "Agent/Agent.h"
#include "Agent/RunStatus.h"
#include "Layout/Visibility.h"
#include "Misc/Attribute.h"
#include "Styling/CoreStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widget/Answer/MarkdownStyle.h"
#include "Widget/KestrelStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelLoopWarning"

namespace KestrelLoopWarning
{
constexpr float Padding = 8.0f;
constexpr float Gap = 8.0f;
}

void SKestrelLoopWarning::Construct(const FArguments& InArgs)
{
	OnPause = InArgs._OnPause;
	SetVisibility(MakeAttributeSP(this, &SKestrelLoopWarning::GetWarningVisibility));
	// clang-format off
	ChildSlot
	[
		SNew(SBorder)
		.BorderImage(FKestrelStyle::Get().GetBrush("Kestrel.Approval"))
		.Padding(KestrelLoopWarning::Padding)
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot()
			.FillWidth(1.0f)
			.VAlign(VAlign_Center)
			[
				MakeWords()
			]
			+ SHorizontalBox::Slot()
			.AutoWidth()
			.VAlign(VAlign_Center)
			.Padding(KestrelLoopWarning::Gap, 0.0f, 0.0f, 0.0f)
			[
				SNew(SButton)
				.Text(LOCTEXT("Pause", "Pause now"))
				.ToolTipText(LOCTEXT("PauseToolTip", "Pause before the next tool runs, and tell the assistant what to do"))
				.Visibility(this, &SKestrelLoopWarning::GetPauseVisibility)
				.OnClicked(this, &SKestrelLoopWarning::OnPauseClicked)
			]
		]
	];
	// clang-format on
}

TSharedRef<SWidget> SKestrelLoopWarning::MakeWords() const
{
	const FTextBlockStyle Small = KestrelMarkdownStyle::MakeSmallStyle();
	// clang-format off
	return SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(STextBlock)
			.Text(this, &SKestrelLoopWarning::GetHeading)
			.AutoWrapText(true)
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(STextBlock)
			.TextStyle(&Small)
			.Text(this, &SKestrelLoopWarning::GetFailure)
			.AutoWrapText(true)
		];
	// clang-format on
}

EVisibility SKestrelLoopWarning::GetWarningVisibility() const
{
	return FKestrelRunStatus::Get().IsInLoop() ? EVisibility::Visible : EVisibility::Collapsed;
}

EVisibility SKestrelLoopWarning::GetPauseVisibility() const
{
	return FKestrelRunStatus::IsWorking() && !FAgent::Get().WasPaused() ? EVisibility::Visible : EVisibility::Collapsed;
}

FText SKestrelLoopWarning::GetHeading() const
{
	return FText::Format(LOCTEXT("Heading", "\u26A0 The same action has failed {0} times in a row."),
		FText::AsNumber(FKestrelRunStatus::Get().GetNumSameFailures()));
}

FText SKestrelLoopWarning::GetFailure() const
{
	return FKestrelRunStatus::Get().DescribeLastFailure();
}

FReply SKestrelLoopWarning::OnPauseClicked() const
{
	OnPause.ExecuteIfBound();
	return FReply::Handled();
}

#undef LOCTEXT_NAMESPACE
