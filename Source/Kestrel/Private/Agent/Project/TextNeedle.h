#pragma once

#include "CoreMinimal.h"

/**
 * A text that is looked for in many files, without regard to case.
 *
 * Nearly all sources are UTF-8 and nearly all names are ASCII: then the bytes are searched as they are, with Horspool's
 * algorithm (R. N. Horspool, "Practical fast searching in strings", 1980), which is several times faster than decoding
 * each file first. Any thread may use it.
 */
class FKestrelTextNeedle
{
public:
	explicit FKestrelTextNeedle(const FString& InText);

	/** @param Bytes  a whole file */
	bool OccursIn(const TArray<uint8>& Bytes) const;
	/** Of a text in ASCII: whether it is in the bytes as they are. */
	bool OccursInBytes(TConstArrayView<uint8> Bytes) const;

private:
	bool IsAt(const uint8* Place) const;

	FString Text;
	bool bIsAscii = false;
	TArray<uint8> Lower; // the text in lower case, when it is ASCII
	int32 Steps[256];    // how far to go on when a byte stands under the last place; set when it is ASCII
};
