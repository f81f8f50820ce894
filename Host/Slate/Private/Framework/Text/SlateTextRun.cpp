#include "Framework/Text/SlateTextRun.h"

TSharedRef<FSlateTextRun> FSlateTextRun::Create(
	const FRunInfo& InRunInfo, const TSharedRef<const FString>& InText, const FTextBlockStyle& Style)
{
	return Create(InRunInfo, InText, Style, FTextRange(0, InText->Len()));
}

TSharedRef<FSlateTextRun> FSlateTextRun::Create(const FRunInfo& InRunInfo, const TSharedRef<const FString>& InText,
	const FTextBlockStyle& Style, const FTextRange& InRange)
{
	return MakeShareable(new FSlateTextRun(InRunInfo, InText, Style, InRange));
}

FSlateTextRun::FSlateTextRun(const FRunInfo& InRunInfo, const TSharedRef<const FString>& InText,
	const FTextBlockStyle& InStyle, const FTextRange& InRange)
	: RunInfo(InRunInfo)
	, Text(InText)
	, Style(InStyle)
	, Range(InRange)
{
}

void FSlateTextRun::AppendTextTo(FString& AppendToText, const FTextRange& PartOfRange) const
{
	checkf(PartOfRange.BeginIndex >= Range.BeginIndex && PartOfRange.EndIndex <= Range.EndIndex,
		TEXT("The range is not within that of the run."));
	AppendToText += Text->Mid(PartOfRange.BeginIndex, PartOfRange.Len());
}
