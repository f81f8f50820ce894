#include "Framework/Text/TextLayout.h"

#include "Framework/Text/SlateTextLayout.h"

void FTextRange::CalculateLineRangesFromString(const FString& Input, TArray<FTextRange>& LineRanges)
{
	int32 Begin = 0;
	for (int32 Index = 0; Index < Input.Len(); ++Index)
	{
		if (Input[Index] != TEXT('\n') && Input[Index] != TEXT('\r'))
		{
			continue;
		}
		LineRanges.Add(FTextRange(Begin, Index));
		if (Input[Index] == TEXT('\r') && Index + 1 < Input.Len() && Input[Index + 1] == TEXT('\n'))
		{
			++Index;
		}
		Begin = Index + 1;
	}
	LineRanges.Add(FTextRange(Begin, Input.Len()));
}

namespace TextLayout
{
static bool HasLineBreak(const FString& Text)
{
	int32 Index = 0;
	return Text.FindChar(TEXT('\n'), Index) || Text.FindChar(TEXT('\r'), Index);
}
}

void FTextLayout::AddLine(const FNewLineData& NewLine)
{
	checkf(NewLine.Runs.Num() > 0, TEXT("A line needs a run, even an empty one."));
	checkf(!TextLayout::HasLineBreak(*NewLine.Text), TEXT("A line holds a line break."));
	FLineModel& Model = LineModels[LineModels.Add(FLineModel{ NewLine.Text, {}, {} })];
	Model.Runs.Reserve(NewLine.Runs.Num());
	int32 End = 0;
	for (const TSharedRef<IRun>& Run : NewLine.Runs)
	{
		const FTextRange Range = Run->GetTextRange();
		checkf(&Run->GetLineText().Get() == &NewLine.Text.Get(), TEXT("A run is not of its line's own string."));
		checkf(Range.BeginIndex == End, TEXT("A run does not begin where the one before it ends."));
		checkf(!Range.IsEmpty() || (Range.Len() == 0 && NewLine.Text->IsEmpty() && NewLine.Runs.Num() == 1),
			TEXT("A run is empty, but not its line."));
		End = Range.EndIndex;
		Model.Runs.Add(FRunModel(Run));
	}
	checkf(End == NewLine.Text->Len(), TEXT("The runs do not end where their line does."));
}

void FTextLayout::AddLines(const TArray<FNewLineData>& NewLines)
{
	for (const FNewLineData& NewLine : NewLines)
	{
		AddLine(NewLine);
	}
}

void FTextLayout::GetAsText(FString& DisplayText) const
{
	DisplayText.Empty();
	for (int32 Index = 0; Index < LineModels.Num(); ++Index)
	{
		DisplayText += Index > 0 ? LINE_TERMINATOR : TEXT("");
		for (const FRunModel& Run : LineModels[Index].Runs)
		{
			Run.AppendTextTo(DisplayText);
		}
	}
}

void FTextLayout::AddLineHighlight(const FTextLineHighlight& Highlight)
{
	checkf(LineModels.IsValidIndex(Highlight.LineIndex), TEXT("A highlight is of a line that is not there."));
	FLineModel& Model = LineModels[Highlight.LineIndex];
	checkf(
		Highlight.Range.BeginIndex >= 0 && !Highlight.Range.IsEmpty() && Highlight.Range.EndIndex <= Model.Text->Len(),
		TEXT("A highlight is not within its line."));
	Model.LineHighlights.Add(Highlight);
}

TSharedRef<FSlateTextLayout> FSlateTextLayout::Create(SWidget* InOwner, FTextBlockStyle InDefaultTextStyle)
{
	return MakeShareable(new FSlateTextLayout(MoveTemp(InDefaultTextStyle)));
}

FSlateTextLayout::FSlateTextLayout(FTextBlockStyle InDefaultTextStyle)
	: DefaultTextStyle(MoveTemp(InDefaultTextStyle))
{
}
