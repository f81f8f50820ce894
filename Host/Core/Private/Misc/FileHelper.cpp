#include "Misc/FileHelper.h"

#include "Containers/StringConvBuffers.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"
#include "Templates/UniquePtr.h"

namespace FileHelper
{
bool StartsWith(const uint8* Buffer, int32 Size, std::initializer_list<uint8> Mark)
{
	return Size >= static_cast<int32>(Mark.size()) && std::equal(Mark.begin(), Mark.end(), Buffer);
}

FString DecodeUtf16(const uint8* Buffer, int32 Size, bool bLittleEndian)
{
	TArray<TCHAR> Units;
	Units.Reserve(Size / 2);
	for (int32 Index = 0; Index + 1 < Size; Index += 2)
	{
		const uint8 Low = Buffer[Index + (bLittleEndian ? 0 : 1)];
		const uint8 High = Buffer[Index + (bLittleEndian ? 1 : 0)];
		Units.Add(static_cast<TCHAR>(Low | (High << 8)));
	}
	return FString(FStringView(Units.GetData(), Units.Num()));
}

FString Decode(const uint8* Buffer, int32 Size)
{
	if (Size % 2 == 0 && StartsWith(Buffer, Size, { 0xFF, 0xFE }))
	{
		return DecodeUtf16(Buffer + 2, Size - 2, true);
	}
	if (Size % 2 == 0 && StartsWith(Buffer, Size, { 0xFE, 0xFF }))
	{
		return DecodeUtf16(Buffer + 2, Size - 2, false);
	}
	const int32 MarkSize = StartsWith(Buffer, Size, { 0xEF, 0xBB, 0xBF }) ? 3 : 0;
	FString Result;
	// In place, since files may be large.
	TArray<TCHAR>& Units = Result.GetCharArray();
	Units.SetNumUninitialized(Size - MarkSize + 1);
	const int32 Length =
		StringConv::DecodeUtf8(reinterpret_cast<const ANSICHAR*>(Buffer) + MarkSize, Size - MarkSize, Units.GetData());
	Units[Length] = 0;
	Units.SetNum(Length > 0 ? Length + 1 : 0);
	return Result;
}

bool IsPureAnsi(FStringView String)
{
	// Without a way out of the loop, the compiler takes wide steps.
	TCHAR AllBits = 0;
	for (const TCHAR C : String)
	{
		AllBits |= C;
	}
	return AllBits < 0x80;
}

TArray<uint8> EncodeUtf8(FStringView String, std::initializer_list<uint8> Mark)
{
	TArray<uint8> Bytes(Mark);
	const int32 MarkSize = Bytes.Num();
	const int64 BytesOfUnit = IsPureAnsi(String) ? 1 : StringConv::MaxBytesOfUnit;
	const int64 MaxSize = MarkSize + String.Len() * BytesOfUnit;
	checkf(MaxSize <= MAX_int32, TEXT("A text of %d characters is too long to be written"), String.Len());
	Bytes.SetNumUninitialized(static_cast<int32>(MaxSize));
	ANSICHAR* const Text = reinterpret_cast<ANSICHAR*>(Bytes.GetData() + MarkSize);
	Bytes.SetNum(MarkSize + StringConv::EncodeUtf8(String.GetData(), String.Len(), Text), EAllowShrinking::No);
	return Bytes;
}

TArray<uint8> Encode(FStringView String, FFileHelper::EEncodingOptions Options)
{
	using EOptions = FFileHelper::EEncodingOptions;
	if (Options == EOptions::AutoDetect)
	{
		Options = IsPureAnsi(String) ? EOptions::ForceUTF8WithoutBOM : EOptions::ForceUnicode;
	}
	if (Options == EOptions::ForceUTF8 || Options == EOptions::ForceUTF8WithoutBOM)
	{
		return Options == EOptions::ForceUTF8 ? EncodeUtf8(String, { 0xEF, 0xBB, 0xBF }) : EncodeUtf8(String, {});
	}
	TArray<uint8> Bytes;
	if (Options == EOptions::ForceUnicode)
	{
		Bytes = { 0xFF, 0xFE };
	}
	for (const TCHAR C : String)
	{
		if (Options == EOptions::ForceAnsi)
		{
			Bytes.Add(C < 0x100 ? static_cast<uint8>(C) : static_cast<uint8>('?'));
			continue;
		}
		Bytes.Add(static_cast<uint8>(C & 0xFF));
		Bytes.Add(static_cast<uint8>(C >> 8));
	}
	return Bytes;
}
}

void FFileHelper::BufferToString(FString& Result, const uint8* Buffer, int32 Size)
{
	Result = FileHelper::Decode(Buffer, Size);
	int32 Nul = INDEX_NONE;
	if (Result.FindChar(u'\0', Nul))
	{
		Result.LeftInline(Nul);
	}
}

bool FFileHelper::LoadFileToArray(TArray<uint8>& Result, const TCHAR* Filename, uint32 Flags)
{
	const TUniquePtr<IFileHandle> File(FPlatformFileManager::Get().GetPlatformFile().OpenRead(Filename));
	if (!File || File->Size() < 0 || File->Size() >= MAX_int32)
	{
		return false;
	}
	Result.SetNumUninitialized(static_cast<int32>(File->Size()));
	return File->Read(Result.GetData(), Result.Num());
}

bool FFileHelper::LoadFileToString(FString& Result, const TCHAR* Filename, EHashOptions VerifyFlags, uint32 ReadFlags)
{
	TArray<uint8> Bytes;
	if (!LoadFileToArray(Bytes, Filename, ReadFlags))
	{
		return false;
	}
	BufferToString(Result, Bytes.GetData(), Bytes.Num());
	return true;
}

bool FFileHelper::LoadFileToStringArray(TArray<FString>& Result, const TCHAR* Filename, EHashOptions VerifyFlags)
{
	FString Text;
	if (!LoadFileToString(Text, Filename, VerifyFlags))
	{
		return false;
	}
	Text.ParseIntoArrayLines(Result, false);
	if (Result.Num() > 0 && Result.Last().IsEmpty())
	{
		Result.Pop();
	}
	return true;
}

bool FFileHelper::SaveArrayToFile(
	TArrayView<const uint8> Array, const TCHAR* Filename, IFileManager* FileManager, uint32 WriteFlags)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	if (Files.IsReadOnly(Filename) && (WriteFlags & FILEWRITE_EvenIfReadOnly) == 0)
	{
		return false;
	}
	FileManager->MakeDirectory(*FPaths::GetPath(Filename), true);
	const TUniquePtr<IFileHandle> File(Files.OpenWrite(Filename, (WriteFlags & FILEWRITE_Append) != 0));
	return File && File->Write(Array.GetData(), Array.Num());
}

bool FFileHelper::SaveStringToFile(FStringView String, const TCHAR* Filename, EEncodingOptions EncodingOptions,
	IFileManager* FileManager, uint32 WriteFlags)
{
	return SaveArrayToFile(FileHelper::Encode(String, EncodingOptions), Filename, FileManager, WriteFlags);
}

bool FFileHelper::SaveStringArrayToFile(const TArray<FString>& Lines, const TCHAR* Filename,
	EEncodingOptions EncodingOptions, IFileManager* FileManager, uint32 WriteFlags)
{
	FString Text;
	for (const FString& Line : Lines)
	{
		Text += Line;
		Text += LINE_TERMINATOR;
	}
	return SaveStringToFile(Text, Filename, EncodingOptions, FileManager, WriteFlags);
}
