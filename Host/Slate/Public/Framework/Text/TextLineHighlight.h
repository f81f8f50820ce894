#pragma once

#include "CoreMinimal.h"
#include "Framework/Text/ILineHighlighter.h"
#include "Framework/Text/TextRange.h"

/** That a stretch of a line is marked, and how. */
struct FTextLineHighlight
{
	/** @param InZOrder  below 0: under the text */
	FTextLineHighlight(const int32 InLineIndex, const FTextRange& InRange, const int32 InZOrder,
		const TSharedRef<ILineHighlighter>& InHighlighter)
		: LineIndex(InLineIndex)
		, Range(InRange)
		, ZOrder(InZOrder)
		, Highlighter(InHighlighter)
	{
	}

	int32 LineIndex;
	FTextRange Range;
	int32 ZOrder;
	TSharedRef<ILineHighlighter> Highlighter;
};
