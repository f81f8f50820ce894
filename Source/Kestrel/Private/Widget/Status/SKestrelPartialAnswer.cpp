#include "Widget/Status/SKestrelPartialAnswer.h"

#include "Framework/Text/TextLayout.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "Widget/Answer/MarkdownStyle.h"
#include "Widget/Answer/SKestrelMarkdown.h"
#include "Widget/HiddenTexts.h"
#include "Widget/KestrelStyle.h"
#include "Widget/Markdown/CodeHighlight.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelPartialAnswer"

namespace KestrelPartialAnswer
{
constexpr float BlockPadding = 8.0f;
constexpr float HeadingGap = 4.0f;
/** Laid out again with each poll: more than anybody reads between two. */
constexpr int32 MaxLength = 8000;

/** From the beginning of a paragraph, if one begins within reach. */
FString KeepEnd(const FString& Text)
{
	if (Text.Len() <= MaxLength)
	{
		return Text;
	}
	const FString End = Text.Right(MaxLength);
	const int32 Paragraph = End.Find(TEXT("\n\n"));
	return TEXT("\u2026\n\n") + (Paragraph == INDEX_NONE ? End : End.Mid(Paragraph + 2));
}
}

void SKestrelPartialAnswer::Construct(const FArguments& InArgs)
{
	bIsFormatted = InArgs._IsFormatted;
	const FTextBlockStyle Style = KestrelMarkdownStyle::MakeSmallStyle();
	// clang-format off
	ChildSlot
	[
		SNew(SBorder)
		.BorderImage(FKestrelStyle::Get().GetBrush("Kestrel.Block.Answer"))
		.Padding(KestrelPartialAnswer::BlockPadding)
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			.Padding(0.0f, 0.0f, 0.0f, KestrelPartialAnswer::HeadingGap)
			[
				SNew(STextBlock)
				.Text(LOCTEXT("Heading", "Kestrel \u00B7 answer so far"))
				.TextStyle(&Style)
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SAssignNew(Content, SBox)
			]
		]
	];
	// clang-format on
}

void SKestrelPartialAnswer::SetSource(const FString& NewSource)
{
	if (!NewSource.Equals(Source) && !HasFocusedDescendants())
	{
		Source = NewSource;
		Content->SetContent(MakeContent());
	}
}

TSharedRef<SWidget> SKestrelPartialAnswer::MakeContent() const
{
	const FString Shown = KestrelPartialAnswer::KeepEnd(Source);
	if (bIsFormatted)
	{
		return SNew(SKestrelMarkdown).Source(Shown);
	}
	const FTextBlockStyle Style = KestrelMarkdownStyle::MakeSmallStyle();
	// clang-format off
	return SNew(SMultiLineEditableText)
		.Text(FText::FromString(KestrelHiddenTexts::Remove(Shown)))
		.TextStyle(&Style)
		.IsReadOnly(true)
		.AutoWrapText(true)
		.WrappingPolicy(ETextWrappingPolicy::AllowPerCharacterWrapping)
		.AccessibleText(LOCTEXT("Partial", "Answer so far"));
	// clang-format on
}

#undef LOCTEXT_NAMESPACE
