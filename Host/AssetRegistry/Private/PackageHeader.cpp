#include "PackageHeader.h"

#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "HAL/UnrealMemory.h"
#include "Misc/PackageName.h"
#include "Templates/UniquePtr.h"

#define RAPIDJSON_ASSERT(x) check(x)
#define RAPIDJSON_NOEXCEPT noexcept
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

namespace PackageHeader
{
/** Names and classes of a package's assets are at its beginning, and few. */
constexpr int64 MaxHeaderBytes = 256 * 1024;
constexpr uint8 BinaryMagic[] = { 0xC1, 0x83, 0x2A, 0x9E };

/** Collects the assets, and stops the parser behind them. */
class FAssetCollector : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, FAssetCollector>
{
public:
	struct FAsset
	{
		FString Name;
		FString Class;
	};

	TArray<FAsset> Assets;
	bool bComplete = false;

	bool Default() { return true; }
	bool Key(const char* Text, rapidjson::SizeType Length, bool)
	{
		LastKey = ToText(Text, Length);
		return true;
	}
	bool String(const char* Text, rapidjson::SizeType Length, bool)
	{
		if (bInAssets && Depth == AssetDepth)
		{
			FAsset& Asset = Assets.Last();
			if (LastKey.Equals(TEXT("Name")))
			{
				Asset.Name = ToText(Text, Length);
			}
			else if (LastKey.Equals(TEXT("Class")))
			{
				Asset.Class = ToText(Text, Length);
			}
		}
		return true;
	}
	bool StartObject()
	{
		if (++Depth == AssetDepth && bInAssets)
		{
			Assets.AddDefaulted();
		}
		return true;
	}
	bool EndObject(rapidjson::SizeType)
	{
		--Depth;
		return true;
	}
	bool StartArray()
	{
		bInAssets |= ++Depth == AssetDepth - 1 && LastKey.Equals(TEXT("Assets"));
		return true;
	}
	bool EndArray(rapidjson::SizeType)
	{
		bComplete = bInAssets && Depth == AssetDepth - 1;
		--Depth;
		return !bComplete;
	}

private:
	static FString ToText(const char* Text, rapidjson::SizeType Length)
	{
		const FUTF8ToTCHAR Wide(Text, static_cast<int32>(Length));
		return FString(FStringView(Wide.Get(), Wide.Length()));
	}

	static constexpr int32 AssetDepth = 3; // the package, its array, an asset in it
	FString LastKey;
	int32 Depth = 0;
	bool bInAssets = false;
};

bool LoadBeginning(const FString& FileName, TArray<uint8>& OutBytes)
{
	const TUniquePtr<IFileHandle> File(FPlatformFileManager::Get().GetPlatformFile().OpenRead(*FileName));
	if (!File)
	{
		return false;
	}
	OutBytes.SetNumUninitialized(static_cast<int32>(FMath::Min(File->Size(), MaxHeaderBytes)));
	return File->Read(OutBytes.GetData(), OutBytes.Num());
}

EResult Load(const FString& FileName, const FString& PackageName, TArray<FAssetData>& OutAssets)
{
	TArray<uint8> Bytes;
	if (!LoadBeginning(FileName, Bytes))
	{
		return EResult::Unreadable;
	}
	if (Bytes.Num() >= static_cast<int32>(sizeof(BinaryMagic)) &&
		FMemory::Memcmp(Bytes.GetData(), BinaryMagic, sizeof(BinaryMagic)) == 0)
	{
		return EResult::Binary;
	}
	FAssetCollector Collector;
	rapidjson::MemoryStream Stream(reinterpret_cast<const char*>(Bytes.GetData()), static_cast<size_t>(Bytes.Num()));
	rapidjson::Reader Reader;
	Reader.Parse<rapidjson::kParseIterativeFlag>(Stream, Collector);
	if (!Collector.bComplete)
	{
		return EResult::Unreadable;
	}
	for (const FAssetCollector::FAsset& Asset : Collector.Assets)
	{
		FTopLevelAssetPath Class;
		if (!Asset.Name.IsEmpty() && Class.TrySetPath(Asset.Class))
		{
			OutAssets.Add(FAssetData(
				FName(*PackageName), FName(*FPackageName::GetLongPackagePath(PackageName)), FName(*Asset.Name), Class));
		}
	}
	return EResult::Read;
}
}
