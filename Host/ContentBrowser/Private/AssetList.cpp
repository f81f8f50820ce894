#include "AssetList.h"

#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/HostForeignPackages.h"
#include "Misc/PackageName.h"

namespace AssetList
{
const FName GameRoot("/Game");

bool IsOfGame(FName PackageName)
{
	return PackageName.ToString().StartsWith(TEXT("/Game/"));
}

FString MakeKey(const FString& AssetName, const FString& PackageName)
{
	return (AssetName + TEXT(" ") + PackageName).ToLower();
}

FString MakeKey(const FAssetData& Asset)
{
	return MakeKey(Asset.AssetName.ToString(), Asset.PackageName.ToString());
}

bool IsBefore(const FString& A, const FString& B)
{
	return A.Compare(B) < 0;
}
}

FAssetListItem::FAssetListItem(const FAssetData& InData)
	: Data(InData)
	, ClassName(FName::NameToDisplayString(InData.AssetClassPath.GetAssetName().ToString(), false))
	, Key(AssetList::MakeKey(InData))
{
}

FAssetListItem::FAssetListItem(FName ForeignPackage)
	: FAssetListItem(FAssetData(ForeignPackage, FName(*FPackageName::GetLongPackagePath(ForeignPackage.ToString())),
		  FName(*FPackageName::GetShortName(ForeignPackage.ToString())), FTopLevelAssetPath()))
{
	ClassName = TEXT("Unreal Editor");
	bForeign = true;
}

FAssetList::FAssetList()
{
	IAssetRegistry& Registry = FAssetRegistryModule::GetRegistry();
	TArray<FAssetData> Assets;
	Registry.GetAssetsByPath(AssetList::GameRoot, Assets, true);
	for (const FAssetData& Asset : Assets)
	{
		Items.Add(MakeShared<FAssetListItem>(Asset));
	}
	for (const FName Package : FHostForeignPackages::Get().GetNames())
	{
		if (AssetList::IsOfGame(Package))
		{
			Items.Add(MakeShared<FAssetListItem>(Package));
		}
	}
	Items.Sort([](const FItem& A, const FItem& B) { return AssetList::IsBefore(A->Key, B->Key); });
	AddedHandle = Registry.OnAssetAdded().AddRaw(this, &FAssetList::OnAdded);
	RemovedHandle = Registry.OnAssetRemoved().AddRaw(this, &FAssetList::OnRemoved);
	ForeignHandle = FHostForeignPackages::Get().OnChanged().AddRaw(this, &FAssetList::OnForeignChanged);
	RenamedHandle = Registry.OnAssetRenamed().AddRaw(this, &FAssetList::OnRenamed);
}

FAssetList::~FAssetList()
{
	FHostForeignPackages::Get().OnChanged().Remove(ForeignHandle);
	if (IAssetRegistry* const Registry = IAssetRegistry::Get())
	{
		Registry->OnAssetAdded().Remove(AddedHandle);
		Registry->OnAssetRemoved().Remove(RemovedHandle);
		Registry->OnAssetRenamed().Remove(RenamedHandle);
	}
}

int32 FAssetList::FindPlace(const FString& Key) const
{
	int32 Low = 0;
	int32 High = Items.Num();
	while (Low < High)
	{
		const int32 Middle = (Low + High) / 2;
		const bool bBefore = AssetList::IsBefore(Items[Middle]->Key, Key);
		Low = bBefore ? Middle + 1 : Low;
		High = bBefore ? High : Middle;
	}
	return Low;
}

void FAssetList::OnAdded(const FAssetData& Asset)
{
	if (AssetList::IsOfGame(Asset.PackageName))
	{
		Add(MakeShared<FAssetListItem>(Asset));
	}
}

void FAssetList::OnForeignChanged(FName PackageName, bool bForeign)
{
	const FItem Item = MakeShared<FAssetListItem>(PackageName);
	if (AssetList::IsOfGame(PackageName) && bForeign)
	{
		Add(Item);
	}
	else if (!bForeign)
	{
		Remove(Item->Key);
	}
}

void FAssetList::Add(const FItem& Item)
{
	// Once saved, an asset may be told of again.
	Remove(Item->Key);
	Items.Insert(Item, FindPlace(Item->Key));
	bChanged = true;
}

void FAssetList::OnRemoved(const FAssetData& Asset)
{
	Remove(AssetList::MakeKey(Asset));
}

void FAssetList::OnRenamed(const FAssetData& Asset, const FString& OldObjectPath)
{
	FString PackageName;
	FString AssetName;
	if (OldObjectPath.Split(TEXT("."), &PackageName, &AssetName))
	{
		Remove(AssetList::MakeKey(AssetName, PackageName));
	}
	OnAdded(Asset);
}

void FAssetList::Remove(const FString& Key)
{
	const int32 Place = FindPlace(Key);
	if (Items.IsValidIndex(Place) && Items[Place]->Key.Equals(Key))
	{
		Items.RemoveAt(Place);
		bChanged = true;
	}
}

void FAssetList::SetFilter(const FString& Text)
{
	FilterWords.Empty();
	Text.ParseIntoArrayWS(FilterWords);
	bChanged = true;
}

bool FAssetList::Matches(const FAssetListItem& Item) const
{
	for (const FString& Word : FilterWords)
	{
		if (!Item.Key.Contains(Word) && !Item.ClassName.Contains(Word))
		{
			return false;
		}
	}
	return true;
}

bool FAssetList::Update()
{
	if (!bChanged)
	{
		return false;
	}
	bChanged = false;
	Shown.Empty(Items.Num());
	for (const FItem& Item : Items)
	{
		if (Matches(*Item))
		{
			Shown.Add(Item);
		}
	}
	return true;
}
