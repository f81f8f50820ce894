#pragma once

#include "CoreMinimal.h"

namespace ETextJustify
{
enum Type : int
{
	Left,
	Center,
	Right,
};
}

/** A place in a text: between two characters of a line. */
class FTextLocation
{
public:
	FTextLocation() = default;
	/** @param InLineIndex  from 0  @param InOffset  how many UTF-16 units of the line lie before the place */
	FTextLocation(const int32 InLineIndex, const int32 InOffset = 0)
		: LineIndex(InLineIndex)
		, Offset(InOffset)
	{
	}

	int32 GetLineIndex() const { return LineIndex; }
	int32 GetOffset() const { return Offset; }

	bool operator==(const FTextLocation& Other) const = default;
	bool operator<(const FTextLocation& Other) const
	{
		return LineIndex != Other.LineIndex ? LineIndex < Other.LineIndex : Offset < Other.Offset;
	}

private:
	int32 LineIndex = 0;
	int32 Offset = 0;
};

enum class ETextLocation : uint8
{
	BeginningOfDocument,
	EndOfDocument,
	BeginningOfLine,
	EndOfLine,
};
