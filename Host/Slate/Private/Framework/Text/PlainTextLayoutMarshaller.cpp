#include "Framework/Text/PlainTextLayoutMarshaller.h"

#include "Framework/Text/SlateTextLayout.h"
#include "Framework/Text/SlateTextRun.h"

TSharedRef<FPlainTextLayoutMarshaller> FPlainTextLayoutMarshaller::Create()
{
	return MakeShared<FPlainTextLayoutMarshaller>();
}

void FPlainTextLayoutMarshaller::SetText(const FString& SourceString, FTextLayout& TargetTextLayout)
{
	const FTextBlockStyle& Style = static_cast<const FSlateTextLayout&>(TargetTextLayout).GetDefaultTextStyle();
	TArray<FTextRange> Ranges;
	FTextRange::CalculateLineRangesFromString(SourceString, Ranges);
	TArray<FTextLayout::FNewLineData> NewLines;
	NewLines.Reserve(Ranges.Num());
	for (const FTextRange& Range : Ranges)
	{
		const TSharedRef<FString> Line = MakeShared<FString>(SourceString.Mid(Range.BeginIndex, Range.Len()));
		NewLines.Add(FTextLayout::FNewLineData(Line, { FSlateTextRun::Create(FRunInfo(), Line, Style) }));
	}
	TargetTextLayout.AddLines(NewLines);
}

void FPlainTextLayoutMarshaller::GetText(FString& TargetString, const FTextLayout& SourceTextLayout)
{
	SourceTextLayout.GetAsText(TargetString);
}
