#include "Agent/Files/TextFile.h"

#include "Agent/Files/NativeFile.h"
#include "Containers/StringConv.h"
#include "Misc/FileHelper.h"

namespace KestrelTextFile
{
/** Written without a way out of the loop, so that the compiler makes wide steps of it: files may be large. */
bool IsPlainAscii(const TArray<uint8>& Bytes)
{
	const uint8* const Begin = Bytes.GetData();
	const int32 Num = Bytes.Num();
	uint8 AllBits = 0;
	uint8 HasNul = 0;
	for (int32 Index = 0; Index < Num; ++Index)
	{
		AllBits |= Begin[Index];
		HasNul |= Begin[Index] == 0 ? 1 : 0;
	}
	return AllBits < 0x80 && HasNul == 0;
}

bool IsPlainAsciiOf(const FString& Text, const TArray<uint8>& Bytes)
{
	if (Text.Len() != Bytes.Num() || !IsPlainAscii(Bytes))
	{
		return false;
	}
	const TCHAR* const Characters = *Text;
	const uint8* const Begin = Bytes.GetData();
	uint32 Difference = 0;
	for (int32 Index = 0; Index < Bytes.Num(); ++Index)
	{
		Difference |= static_cast<uint32>(Characters[Index]) ^ Begin[Index];
	}
	return Difference == 0;
}

constexpr uint8 Utf8Mark[] = { 0xEF, 0xBB, 0xBF };
constexpr uint8 LittleEndianMark[] = { 0xFF, 0xFE };
constexpr uint8 BigEndianMark[] = { 0xFE, 0xFF };

bool HasMark(const TArray<uint8>& Bytes, TArrayView<const uint8> Mark)
{
	return Bytes.Num() >= Mark.Num() && FMemory::Memcmp(Bytes.GetData(), Mark.GetData(), Mark.Num()) == 0;
}

/** Whether the text, written as UTF-8, is what the bytes hold from an offset on. */
bool IsUtf8Of(const FString& Text, const TArray<uint8>& Bytes, int32 Offset)
{
	const FTCHARToUTF8 Utf8(*Text, Text.Len());
	return Utf8.Length() == Bytes.Num() - Offset &&
		   FMemory::Memcmp(Utf8.Get(), Bytes.GetData() + Offset, Utf8.Length()) == 0;
}

/** Half of a surrogate pair is no character: it would be written as something else. */
bool IsWholeUtf16(const FString& Text, const TArray<uint8>& Bytes)
{
	const FTCHARToUTF8 Utf8(*Text, Text.Len());
	const FUTF8ToTCHAR Back(Utf8.Get(), Utf8.Length());
	return Text.Len() * 2 == Bytes.Num() - static_cast<int32>(sizeof(LittleEndianMark)) &&
		   Text.Equals(FString::ConstructFromPtrSize(Back.Get(), Back.Length()));
}

EContent Load(const FString& FullPath, FString& OutText, TArray<uint8>& OutBytes)
{
	if (!KestrelNativeFile::IsRegularFile(FullPath) || !FFileHelper::LoadFileToArray(OutBytes, *FullPath))
	{
		return EContent::Unreadable;
	}
	FFileHelper::BufferToString(OutText, OutBytes.GetData(), OutBytes.Num());
	if (IsPlainAscii(OutBytes))
	{
		return EContent::PlainAscii;
	}
	const bool bUtf16 = HasMark(OutBytes, LittleEndianMark) || HasMark(OutBytes, BigEndianMark);
	const int32 Utf8Offset = HasMark(OutBytes, Utf8Mark) ? sizeof(Utf8Mark) : 0;
	const bool bWhole = bUtf16 ? IsWholeUtf16(OutText, OutBytes) : IsUtf8Of(OutText, OutBytes, Utf8Offset);
	return bWhole ? EContent::Text : EContent::Binary;
}
}
