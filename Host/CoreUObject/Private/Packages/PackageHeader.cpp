#include "UObject/PackageHeader.h"

#include "Containers/StringConv.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "HAL/UnrealMemory.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Templates/UniquePtr.h"

#define RAPIDJSON_ASSERT(x) check(x)
#define RAPIDJSON_NOEXCEPT noexcept
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <sys/stat.h>

namespace PackageHeader
{
constexpr uint8 BinaryMagic[] = { 0xC1, 0x83, 0x2A, 0x9E };
// One read takes most headers whole; those that are longer take a second one.
constexpr int64 FirstReadBytes = 4096;

FString ToText(const char* Text, rapidjson::SizeType Length)
{
	const FUTF8ToTCHAR Wide(Text, static_cast<int32>(Length));
	return FString(FStringView(Wide.Get(), Wide.Length()));
}

/** Fills in the header; members that it does not know are passed over. */
class FCollector : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, FCollector>
{
public:
	explicit FCollector(FPackageHeader& InHeader)
		: Header(InHeader)
	{
	}

	int32 Format = FPackageHeader::CurrentFormat;

	bool Default() { return true; }
	bool Uint(unsigned Number)
	{
		if (Levels.Num() == 1 && Key0.Equals(TEXT("Format")))
		{
			Format = static_cast<int32>(FMath::Min(Number, 1000u));
		}
		return true;
	}
	bool Key(const char* Text, rapidjson::SizeType Length, bool)
	{
		LastKey = ToText(Text, Length);
		if (Levels.Num() == 1)
		{
			Key0 = LastKey;
		}
		return true;
	}
	bool String(const char* Text, rapidjson::SizeType Length, bool)
	{
		if (Levels.Num() == 1 && Key0.Equals(TEXT("Package")))
		{
			Header.PackageName = ToText(Text, Length);
		}
		else if (Levels.Num() == 2 && Key0.Equals(TEXT("Needs")))
		{
			Header.Needs.Add(ToText(Text, Length));
		}
		else if (IsInAsset() && Levels.Num() == 3)
		{
			SetMember(ToText(Text, Length));
		}
		else if (IsInAsset() && Levels.Num() == 4 && Levels.Last().Equals(TEXT("Tags")))
		{
			Header.Assets.Last().Tags.Emplace(LastKey, ToText(Text, Length));
		}
		return true;
	}
	bool StartObject()
	{
		Levels.Add(LastKey);
		if (Levels.Num() == 3 && Key0.Equals(TEXT("Assets")))
		{
			Header.Assets.AddDefaulted();
		}
		return Levels.Num() < MaxDepth;
	}
	bool EndObject(rapidjson::SizeType)
	{
		Levels.Pop(EAllowShrinking::No);
		return true;
	}
	bool StartArray()
	{
		bHasAssets |= Levels.Num() == 1 && Key0.Equals(TEXT("Assets"));
		Levels.Add(LastKey);
		return Levels.Num() < MaxDepth;
	}
	bool EndArray(rapidjson::SizeType Length) { return EndObject(Length); }

	bool bHasAssets = false;

private:
	static constexpr int32 MaxDepth = 32;

	bool IsInAsset() const { return Key0.Equals(TEXT("Assets")) && !Header.Assets.IsEmpty(); }
	void SetMember(FString&& Text)
	{
		FPackageHeader::FAsset& Asset = Header.Assets.Last();
		if (LastKey.Equals(TEXT("Name")))
		{
			Asset.Name = MoveTemp(Text);
		}
		else if (LastKey.Equals(TEXT("Class")))
		{
			Asset.Class = MoveTemp(Text);
		}
	}

	FPackageHeader& Header;
	TArray<FString> Levels; // the keys of the objects and arrays around the present place
	FString Key0;           // of the root's present member
	FString LastKey;
};

int32 FindLineEnd(TArrayView<const uint8> Bytes)
{
	int32 Index = 0;
	while (Index < Bytes.Num() && Bytes[Index] != '\n')
	{
		++Index;
	}
	return Index;
}

bool IsBinary(TArrayView<const uint8> Bytes)
{
	return Bytes.Num() >= static_cast<int32>(sizeof(BinaryMagic)) &&
		   FMemory::Memcmp(Bytes.GetData(), BinaryMagic, sizeof(BinaryMagic)) == 0;
}

FString Quote(const FString& Text)
{
	FString Result = TEXT("\"");
	for (const TCHAR C : Text)
	{
		if (C == u'"' || C == u'\\')
		{
			Result.AppendChar(u'\\');
			Result.AppendChar(C);
		}
		else if (C < 0x20)
		{
			Result += FString::Printf(TEXT("\\u%04x"), static_cast<uint32>(C));
		}
		else
		{
			Result.AppendChar(C);
		}
	}
	return Result + TEXT("\"");
}
}

bool FPackageHeader::IsRegularFile(const FString& FileName)
{
	struct stat Info
	{
	};
	// A relative name is not relative to the folder that the process is in.
	const FString FullPath = FPaths::ConvertRelativePathToFull(FileName);
	return ::stat(TCHAR_TO_UTF8(*FullPath), &Info) == 0 && S_ISREG(Info.st_mode);
}

FPackageHeader::EResult FPackageHeader::Load(const FString& FileName)
{
	if (!IsRegularFile(FileName))
	{
		return EResult::Unreadable;
	}
	const TUniquePtr<IFileHandle> File(FPlatformFileManager::Get().GetPlatformFile().OpenRead(*FileName));
	if (!File)
	{
		return EResult::Unreadable;
	}
	const int64 Size = File->Size();
	TArray<uint8> Bytes;
	for (const int64 Limit : { PackageHeader::FirstReadBytes, static_cast<int64>(MaxBytes) })
	{
		const int32 Start = Bytes.Num();
		const int32 Wanted = static_cast<int32>(FMath::Min(Size, Limit));
		Bytes.SetNumUninitialized(Wanted);
		if (!File->Read(Bytes.GetData() + Start, Wanted - Start))
		{
			return EResult::Unreadable;
		}
		if (PackageHeader::IsBinary(Bytes) || PackageHeader::FindLineEnd(Bytes) < Bytes.Num() || Wanted == Size)
		{
			break;
		}
	}
	return Parse(Bytes);
}

FPackageHeader::EResult FPackageHeader::Parse(TArrayView<const uint8> Bytes)
{
	if (PackageHeader::IsBinary(Bytes))
	{
		return EResult::Binary;
	}
	const int32 Length = PackageHeader::FindLineEnd(Bytes);
	if (Length == 0 || Length >= MaxBytes)
	{
		return EResult::Unreadable;
	}
	PackageHeader::FCollector Collector(*this);
	rapidjson::MemoryStream Stream(reinterpret_cast<const char*>(Bytes.GetData()), static_cast<size_t>(Length));
	rapidjson::Reader Reader;
	const rapidjson::ParseResult Result =
		Reader.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag>(Stream, Collector);
	const bool bRead = !Result.IsError() && Collector.bHasAssets && Collector.Format == CurrentFormat;
	return bRead ? EResult::Read : EResult::Unreadable;
}

FString FPackageHeader::ToText() const
{
	FString Text = FString::Printf(
		TEXT("{\"Package\":%s,\"Format\":%d,\"Needs\":["), *PackageHeader::Quote(PackageName), CurrentFormat);
	for (const FString& Need : Needs)
	{
		Text += (Text.EndsWith(TEXT("[")) ? TEXT("") : TEXT(",")) + PackageHeader::Quote(Need);
	}
	Text += TEXT("],\"Assets\":[");
	for (const FAsset& Asset : Assets)
	{
		Text += Text.EndsWith(TEXT("[")) ? TEXT("") : TEXT(",");
		Text += TEXT("{\"Name\":") + PackageHeader::Quote(Asset.Name) + TEXT(",\"Class\":") +
				PackageHeader::Quote(Asset.Class) + TEXT(",\"Tags\":{");
		for (const TPair<FString, FString>& Tag : Asset.Tags)
		{
			Text += (Text.EndsWith(TEXT("{")) ? TEXT("") : TEXT(",")) + PackageHeader::Quote(Tag.Key) + TEXT(":") +
					PackageHeader::Quote(Tag.Value);
		}
		Text += TEXT("}}");
	}
	return Text + TEXT("]}");
}

FString FPackageHeader::GetMessage(EResult Result, const FString& FileName)
{
	const FString FullName = FPaths::ConvertRelativePathToFull(FileName);
	switch (Result)
	{
	case EResult::Read:
		return FString();
	case EResult::Binary:
		return FString::Printf(
			TEXT(
				"%s was saved by Unreal Editor in its binary format and cannot be read here. Open the project in Unreal "
				"Editor to work with this asset"),
			*FullName);
	case EResult::Unreadable:
		break;
	}
	return FString::Printf(TEXT("%s is no package that can be read."), *FullName);
}

TArray<FAssetData> FPackageHeader::GetAssetData(const FString& InPackageName) const
{
	TArray<FAssetData> Result;
	for (const FAsset& Asset : Assets)
	{
		FTopLevelAssetPath Class;
		if (Asset.Name.IsEmpty() || Asset.Name.Len() >= NAME_SIZE || Asset.Class.Len() >= NAME_SIZE ||
			!Class.TrySetPath(Asset.Class))
		{
			continue;
		}
		FAssetDataTagMap Tags;
		for (const TPair<FString, FString>& Tag : Asset.Tags)
		{
			if (!Tag.Key.IsEmpty() && Tag.Key.Len() < NAME_SIZE)
			{
				Tags.Add(FName(*Tag.Key), Tag.Value);
			}
		}
		Result.Add(FAssetData(FName(*InPackageName), FName(*FPackageName::GetLongPackagePath(InPackageName)),
			FName(*Asset.Name), Class, MoveTemp(Tags)));
	}
	return Result;
}
