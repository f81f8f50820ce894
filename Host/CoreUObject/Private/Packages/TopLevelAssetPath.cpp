#include "UObject/TopLevelAssetPath.h"

bool FTopLevelAssetPath::TrySetPath(const FString& Path)
{
	Reset();
	FString Package = Path;
	FString Asset;
	Path.Split(TEXT("."), &Package, &Asset);
	if (!Package.StartsWith(TEXT("/")) || Package.Len() < 2 || Asset.Contains(TEXT(".")) || Asset.Contains(TEXT(":")))
	{
		return false;
	}
	PackageName = FName(*Package);
	AssetName = Asset.IsEmpty() ? FName() : FName(*Asset);
	return true;
}

FString FTopLevelAssetPath::ToString() const
{
	if (IsNull())
	{
		return FString();
	}
	return AssetName.IsNone() ? PackageName.ToString() : PackageName.ToString() + TEXT(".") + AssetName.ToString();
}
