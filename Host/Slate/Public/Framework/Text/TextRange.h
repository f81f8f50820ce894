#pragma once

#include "CoreMinimal.h"

/** A stretch of a text in UTF-16 units, the end not included. */
struct FTextRange
{
	FTextRange() = default;
	FTextRange(const int32 InBeginIndex, const int32 InEndIndex)
		: BeginIndex(InBeginIndex)
		, EndIndex(InEndIndex)
	{
	}

	int32 Len() const { return EndIndex - BeginIndex; }
	bool IsEmpty() const { return Len() <= 0; }
	bool operator==(const FTextRange& Other) const = default;

	/** The lines of a text, at least one, without what ends them: "\r\n", "\n" or "\r". They are added to LineRanges.
	 */
	static void CalculateLineRangesFromString(const FString& Input, TArray<FTextRange>& LineRanges);

	int32 BeginIndex = INDEX_NONE;
	int32 EndIndex = INDEX_NONE;
};
