#include "AssetRegistry/AssetData.h"

#include "Misc/PackageName.h"
#include "UObject/AssetRegistryTagsContext.h"
#include "UObject/Class.h"
#include "UObject/Package.h"

FAssetData::FAssetData(const UObject* InAsset)
{
	if (!InAsset)
	{
		return;
	}
	const FString Package = InAsset->GetPackage()->GetName();
	PackageName = FName(*Package);
	PackagePath = FName(*FPackageName::GetLongPackagePath(Package));
	AssetName = InAsset->GetFName();
	AssetClassPath = InAsset->GetClass()->GetClassPathName();

	FAssetRegistryTagsContextData Data(InAsset);
	InAsset->GetAssetRegistryTags(FAssetRegistryTagsContext(Data));
	FAssetDataTagMap Tags;
	for (const auto& Pair : Data.Tags)
	{
		if (Pair.Value.IsValid())
		{
			Tags.Add(Pair.Key, Pair.Value.Value);
		}
	}
	TagsAndValues = FAssetDataTagMapSharedView(MoveTemp(Tags));
}

FString FAssetData::GetExportTextName() const
{
	return AssetClassPath.ToString() + TEXT("'") + GetObjectPathString() + TEXT("'");
}

UObject* FAssetData::GetAsset() const
{
	return IsValid() ? GetSoftObjectPath().TryLoad() : nullptr;
}

UClass* FAssetData::GetClass(EResolveClass ResolveClass) const
{
	const FString Path = AssetClassPath.ToString();
	UClass* const Found = IsValid() ? FindObject<UClass>(nullptr, *Path) : nullptr;
	return Found || !IsValid() || ResolveClass == EResolveClass::No ? Found : LoadObject<UClass>(nullptr, *Path);
}

bool FAssetData::IsAssetLoaded() const
{
	return IsValid() && GetSoftObjectPath().ResolveObject() != nullptr;
}

bool FAssetData::GetTagValue(FName InTagName, FString& OutTagValue) const
{
	const FAssetTagValueRef Value = TagsAndValues.FindTag(InTagName);
	if (Value.IsSet())
	{
		OutTagValue = Value.GetValue();
	}
	return Value.IsSet();
}
