#include "Agent/Project/PackageFilter.h"

#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/Assets/BlueprintPackage.h"
#include "Agent/Project/PackageIndex.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Engine/Blueprint.h"
#include "HAL/PlatformTime.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"
#include "UObject/Package.h"
#include "UObject/TopLevelAssetPath.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UObjectHash.h"

namespace PackageFilter
{
/** Beside Blueprints; the engine has moved the first of them. */
const TCHAR* const SourceClasses[] = { TEXT("/Script/CoreUObject.UserDefinedStruct"),
	TEXT("/Script/Engine.UserDefinedStruct"), TEXT("/Script/Engine.UserDefinedEnum") };

/** Types that Blueprints make come from packages, which are read. */
bool IsNative(const UObject& Type)
{
	const UClass* Class = Cast<UClass>(&Type);
	const UClass* Owner = Class ? Class : Type.GetTypedOuter<UClass>();
	return Owner ? Owner->HasAnyClassFlags(CLASS_Native)
				 : Type.GetOutermost()->GetName().StartsWith(TEXT("/Script/"), ESearchCase::CaseSensitive);
}

/** Whether a name is that of a file for sure. */
bool IsPlainName(const FString& Package, int32 Start)
{
	for (int32 Index = Start; Index < Package.Len(); ++Index)
	{
		if (!FChar::IsAlnum(Package[Index]) && Package[Index] != '_')
		{
			return false;
		}
	}
	return Start < Package.Len() && Package.Len() < NAME_SIZE;
}

bool IsUnsaved(FName PackageName)
{
	const UPackage* Package = FindObjectFast<UPackage>(nullptr, PackageName);
	return Package && Package->IsDirty();
}
}

FKestrelPackageFilter::FKestrelPackageFilter(const FString& Text, TConstArrayView<FAssetData> InBlueprints)
	: Words(Text)
	, Blueprints(InBlueprints)
{
}

bool FKestrelPackageFilter::Step(double Deadline)
{
	while (Stage != EStage::Done)
	{
		Advance();
		if (FPlatformTime::Seconds() >= Deadline)
		{
			break;
		}
	}
	return Stage == EStage::Done;
}

float FKestrelPackageFilter::GetProgress() const
{
	if (Stage != EStage::ReadPackages)
	{
		return Stage == EStage::Done || Stage == EStage::FollowReferences ? 1.0f : 0.0f;
	}
	return static_cast<float>(Next) / static_cast<float>(FMath::Max(Sources.Num(), 1));
}

bool FKestrelPackageFilter::MayMatch(FName Package) const
{
	return Words.IsEmpty() || Found.FindRef(Package) == Words.GetAllBits();
}

const FString& FKestrelPackageFilter::GetFile(FName Package)
{
	const FString* Known = Files.Find(Package);
	return Known ? *Known : Files.Add(Package, FindFile(Package.ToString()));
}

/** Packages of a folder lie beside each other, and to convert a path takes longer than all else about it. */
FString FKestrelPackageFilter::FindFile(const FString& Package)
{
	int32 Slash = INDEX_NONE;
	Package.FindLastChar('/', Slash);
	const FString Folder = Package.Left(Slash + 1);
	if (Folder.Equals(LastFolder, ESearchCase::CaseSensitive) && PackageFilter::IsPlainName(Package, Slash + 1))
	{
		return LastFolderFiles / Package.RightChop(Slash + 1) + FPackageName::GetAssetPackageExtension();
	}
	FString File = KestrelBlueprintPackage::GetFileName(Package);
	LastFolder = File.IsEmpty() ? FString() : Folder;
	LastFolderFiles = FPaths::GetPath(File);
	return File;
}

void FKestrelPackageFilter::Advance()
{
	switch (Stage)
	{
	case EStage::LookForUnloaded:
		LookForUnloaded();
		break;
	case EStage::CollectNames:
		CollectNames();
		break;
	case EStage::ReadPackages:
		ReadPackage();
		break;
	case EStage::FollowReferences:
		FollowReferences();
		break;
	case EStage::Done:
		break;
	}
}

void FKestrelPackageFilter::LookForUnloaded()
{
	if (Words.IsEmpty() || Next == Blueprints.Num())
	{
		Stage = EStage::Done; // nothing can be told, or nothing has to be
		return;
	}
	if (Blueprints[Next++].IsAssetLoaded())
	{
		return;
	}
	for (const UClass* Kind : { UStruct::StaticClass(), UEnum::StaticClass() })
	{
		TArray<UObject*> Objects;
		GetObjectsOfClass(Kind, Objects);
		for (UObject* Object : Objects)
		{
			if (PackageFilter::IsNative(*Object))
			{
				Types.Add(Object);
			}
		}
	}
	Words.AddFormerNames();
	Stage = EStage::CollectNames;
	Next = 0;
}

void FKestrelPackageFilter::CollectNames()
{
	if (Next == Types.Num())
	{
		Types.Empty();
		ListSources();
		Stage = EStage::ReadPackages;
		Next = 0;
		return;
	}
	const UObject* Type = Types[Next++].Get();
	if (const UStruct* Struct = Cast<UStruct>(Type))
	{
		Words.AddNamesOf(*Struct);
	}
	else if (const UEnum* Enum = Cast<UEnum>(Type))
	{
		Words.AddNamesOf(*Enum);
	}
}

void FKestrelPackageFilter::ListSources()
{
	TArray<FAssetData> Assets = KestrelBlueprintLookup::ListAssets(*UBlueprint::StaticClass());
	for (const TCHAR* Class : PackageFilter::SourceClasses)
	{
		IAssetRegistry::Get()->GetAssetsByClass(FTopLevelAssetPath(Class), Assets, true);
	}
	Sources.Reserve(Assets.Num());
	for (const FAssetData& Asset : Assets)
	{
		Sources.Add(Asset.PackageName);
	}
	Found.Reserve(Sources.Num());
}

void FKestrelPackageFilter::ReadPackage()
{
	if (Next == Sources.Num())
	{
		Stage = EStage::FollowReferences;
		return;
	}
	const FName Package = Sources[Next++];
	const FString Name = Package.ToString();
	const FString& File = GetFile(Package);
	uint32 Bits = Words.GetAllBits();
	if (!File.IsEmpty() && !PackageFilter::IsUnsaved(Package))
	{
		Bits = FKestrelPackageIndex::Get().FindWords(Package, File, Words);
	}
	for (int32 Index = 0; Index < Words.GetWords().Num(); ++Index)
	{
		Bits |= Words.GetWords()[Index].IsIn(Name) ? 1u << Index : 0u;
	}
	AddBits(Package, Bits);
}

void FKestrelPackageFilter::AddBits(FName Package, uint32 Bits)
{
	uint32& Known = Found.FindOrAdd(Package);
	if ((Known | Bits) != Known)
	{
		Known |= Bits;
		ToFollow.Add(Package);
	}
}

void FKestrelPackageFilter::FollowReferences()
{
	if (ToFollow.IsEmpty())
	{
		Stage = EStage::Done;
		return;
	}
	const FName Package = ToFollow.Pop();
	const uint32 Bits = Found.FindRef(Package);
	TArray<FName> Users;
	IAssetRegistry::Get()->GetReferencers(Package, Users);
	for (const FName User : Users)
	{
		AddBits(User, Bits);
	}
}
