#include "Agent/Project/TextNeedle.h"

#include "Misc/FileHelper.h"

namespace TextNeedle
{
constexpr int32 AsciiEnd = 0x80;

uint8 ToLowerAscii(uint8 Byte)
{
	return Byte >= 'A' && Byte <= 'Z' ? Byte + ('a' - 'A') : Byte;
}

uint8 ToUpperAscii(uint8 Byte)
{
	return Byte >= 'a' && Byte <= 'z' ? Byte - ('a' - 'A') : Byte;
}
}

FKestrelTextNeedle::FKestrelTextNeedle(const FString& InText)
	: Text(InText)
{
	for (const TCHAR C : Text)
	{
		if (C >= TextNeedle::AsciiEnd)
		{
			return;
		}
	}
	bIsAscii = true;
	for (const TCHAR C : Text)
	{
		Lower.Add(TextNeedle::ToLowerAscii(static_cast<uint8>(C)));
	}
	for (int32& Step : Steps)
	{
		Step = Lower.Num();
	}
	for (int32 Index = 0; Index < Lower.Num() - 1; ++Index)
	{
		Steps[Lower[Index]] = Lower.Num() - 1 - Index;
		Steps[TextNeedle::ToUpperAscii(Lower[Index])] = Lower.Num() - 1 - Index;
	}
}

bool FKestrelTextNeedle::OccursIn(const TArray<uint8>& Bytes) const
{
	const bool bMayBeUtf16 = !Bytes.IsEmpty() && (Bytes[0] == 0xFF || Bytes[0] == 0xFE);
	if (bIsAscii && !bMayBeUtf16)
	{
		return OccursInBytes(Bytes);
	}
	FString FileText;
	FFileHelper::BufferToString(FileText, Bytes.GetData(), Bytes.Num());
	return Text.IsEmpty() || FileText.Contains(Text); // the engine does not find the empty text
}

bool FKestrelTextNeedle::OccursInBytes(TConstArrayView<uint8> Bytes) const
{
	// Plain pointers: the checks of the arrays would take longer than the search.
	const uint8* const Begin = Bytes.GetData();
	const int32 Length = Lower.Num();
	for (int64 At = 0; At + Length <= Bytes.Num();)
	{
		if (IsAt(Begin + At))
		{
			return true;
		}
		At += Steps[Begin[At + Length - 1]];
	}
	return false;
}

bool FKestrelTextNeedle::IsAt(const uint8* Place) const
{
	const uint8* const Wanted = Lower.GetData();
	for (int32 Index = Lower.Num() - 1; Index >= 0; --Index)
	{
		if (TextNeedle::ToLowerAscii(Place[Index]) != Wanted[Index])
		{
			return false;
		}
	}
	return true;
}
