#pragma once

#include "CoreMinimal.h"

class FJsonObject;

/**
 * Puts a condensed JSON text together piece by piece. The text is that of KestrelJson::ToCondensedText for the same
 * values; without an object for each of them it takes a fraction of the time and of the memory.
 */
class FKestrelJsonBuilder
{
public:
	/** A place to go back to. */
	struct FMark
	{
		int32 Length = 0;
		bool bNeedsComma = false;
	};

	/** @param Plain  a name without characters that are escaped */
	void Key(FStringView Plain);
	void Open(TCHAR Bracket);
	void Close(TCHAR Bracket);
	void String(const FString& Value);
	void Object(const TSharedRef<FJsonObject>& Value);
	/** A value that is JSON already, as of Quote. */
	void Raw(FStringView Json);

	/** Text that begins and ends where the one before and the one behind need no comma of ours. */
	void Paste(FStringView Piece);

	/** In characters. */
	int32 Len() const { return Text.Len() + NumPending; }
	/** Makes room for as many characters. */
	void Reserve(int32 NumCharacters);
	FMark GetMark() const { return { Len(), bNeedsComma }; }
	/** Removes all that has come since. */
	void GoBackTo(const FMark& Mark);

	FString TakeText();

	/** As a JSON string, with its quotes. */
	static FString Quote(const FString& Value);

private:
	void BeginValue()
	{
		if (bNeedsComma)
		{
			Put(',');
		}
		bNeedsComma = true;
	}
	void Put(TCHAR Character)
	{
		if (NumPending == MaxPending)
		{
			Flush();
		}
		Pending[NumPending++] = Character;
	}
	void Put(FStringView Characters);
	void Flush();
	void Append(const TCHAR* Characters, int32 Num);

	// Most pieces are a few characters; a string takes as long for one of them as for hundreds.
	static constexpr int32 MaxPending = 2048;

	FString Text;
	int32 Capacity = 0;
	TCHAR Pending[MaxPending]; // what comes behind the text
	int32 NumPending = 0;
	bool bNeedsComma = false; // before a further value
};
