#include "Widget/Answer/SKestrelAnswer.h"

#include "HAL/PlatformApplicationMisc.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widget/Answer/LinkMenu.h"
#include "Widget/Answer/MarkdownStyle.h"
#include "Widget/Answer/SKestrelMarkdown.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelAnswer"

void SKestrelAnswer::Construct(const FArguments& InArgs)
{
	Source = InArgs._Source;
	constexpr float HeadingGap = 4.0f;
	// clang-format off
	ChildSlot
	[
		SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 0.0f, 0.0f, HeadingGap)
		[
			MakeHeading()
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(SKestrelMarkdown)
			.Source(Source)
			.OnLinkChosen(this, &SKestrelAnswer::OnLinkChosen)
			.OnPartShown(InArgs._OnPartShown)
		]
	];
	// clang-format on
}

TSharedRef<SWidget> SKestrelAnswer::MakeHeading()
{
	const FTextBlockStyle Style = KestrelMarkdownStyle::MakeSmallStyle();
	// clang-format off
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot()
		.FillWidth(1.0f)
		.VAlign(VAlign_Center)
		[
			SNew(STextBlock)
			.Text(LOCTEXT("Speaker", "Kestrel"))
			.TextStyle(&Style)
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		[
			SNew(SButton)
			.Text(LOCTEXT("Copy", "Copy answer"))
			.ToolTipText(LOCTEXT("CopyToolTip", "Copy the answer as it was written, with its Markdown"))
			.OnClicked(this, &SKestrelAnswer::OnCopyClicked)
		];
	// clang-format on
}

FReply SKestrelAnswer::OnCopyClicked() const
{
	FPlatformApplicationMisc::ClipboardCopy(*Source);
	return FReply::Handled();
}

void SKestrelAnswer::OnLinkChosen(const FKestrelLink& Link, const FVector2D& ScreenPosition)
{
	KestrelLinkMenu::Show(AsShared(), Link, ScreenPosition);
}

#undef LOCTEXT_NAMESPACE
