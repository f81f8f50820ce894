#include "Agent/Tools/AssetView.h"

#include "Agent/Blueprints/Assets/BlueprintPackage.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Engine/Blueprint.h"
#include "HAL/FileManager.h"
#include "Misc/Crc.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UObjectIterator.h"

namespace AssetView
{
constexpr int64 MaxChecksumBytes = 8 * 1024 * 1024;

/** A variable has no property before the Blueprint is compiled. */
FString DescribeVariable(const FBPVariableDescription& Variable)
{
	const TSharedPtr<FJsonObject> Type = FKestrelBlueprintUtils::ConvertEdGraphPinTypeToJson(Variable.VarType);
	return FString::Printf(TEXT("%s %s %s %llu %s\n"), *Variable.VarName.ToString(),
		*KestrelJson::ToCondensedText(Type.ToSharedRef()), *Variable.DefaultValue, Variable.PropertyFlags,
		*Variable.RepNotifyFunc.ToString());
}

uint32 ComputeChecksum(const UBlueprint& Blueprint)
{
	FString Text = FKestrelBlueprintUtils::ReadBlueprint({ Blueprint.GetName(), Blueprint.GetPathName() }, TEXT("All"));
	for (const FBPVariableDescription& Variable : Blueprint.NewVariables)
	{
		Text += DescribeVariable(Variable);
	}
	return FCrc::MemCrc32(*Text, Text.Len() * static_cast<int32>(sizeof(TCHAR)));
}

uint32 ComputeChecksum(const FString& FileName)
{
	TArray<uint8> Bytes;
	return KestrelNativeFile::IsRegularFile(FileName) && FFileHelper::LoadFileToArray(Bytes, *FileName)
			   ? FCrc::MemCrc32(Bytes.GetData(), Bytes.Num())
			   : 0;
}
}

FKestrelAssetWatch::FKestrelAssetWatch(const FString& InObjectPath)
	: ObjectPath(InObjectPath)
	, FileName(KestrelBlueprintPackage::GetFileName(FPackageName::ObjectPathToPackageName(InObjectPath)))
	, Seen(Look())
{
}

bool FKestrelAssetWatch::FState::operator==(const FState& Other) const
{
	return FileSize == Other.FileSize && ModificationTime == Other.ModificationTime &&
		   FileChecksum == Other.FileChecksum && bIsUnsaved == Other.bIsUnsaved &&
		   UnsavedChecksum == Other.UnsavedChecksum;
}

FKestrelAssetWatch::FState FKestrelAssetWatch::Look() const
{
	FState State;
	if (IFileManager::Get().FileExists(*FileName))
	{
		State.FileSize = IFileManager::Get().FileSize(*FileName);
		const bool bIsLarge = State.FileSize > AssetView::MaxChecksumBytes;
		State.ModificationTime = bIsLarge ? IFileManager::Get().GetTimeStamp(*FileName) : FDateTime();
		State.FileChecksum = bIsLarge ? 0 : AssetView::ComputeChecksum(FileName);
	}
	const UObject* Asset = FindObject<UObject>(nullptr, *ObjectPath);
	State.bIsUnsaved = Asset && (Asset->GetOutermost()->IsDirty() || State.FileSize < 0);
	const UBlueprint* Blueprint = State.bIsUnsaved ? Cast<UBlueprint>(Asset) : nullptr;
	State.UnsavedChecksum = Blueprint ? AssetView::ComputeChecksum(*Blueprint) : 0;
	return State;
}

bool FKestrelAssetWatch::IsUnchanged() const
{
	return Look() == Seen;
}

bool FKestrelAssetWatch::InheritsFrom(const FKestrelAssetWatch& Other) const
{
	const UBlueprint* Blueprint = FindObject<UBlueprint>(nullptr, *ObjectPath);
	const UBlueprint* Parent = FindObject<UBlueprint>(nullptr, *Other.ObjectPath);
	return Blueprint && Parent && Blueprint->GeneratedClass && Parent->GeneratedClass &&
		   Blueprint->GeneratedClass->IsChildOf(Parent->GeneratedClass);
}

void FKestrelAssetWatch::LookAgain()
{
	Seen = Look();
}

FKestrelAssetAddress FKestrelAssetView::Find(const UClass& Class, const FString& Name)
{
	const FKestrelAssetAddress Address = Finder->Find(Class, Name);
	if (Address.IsFound() || &Class != UBlueprint::StaticClass())
	{
		return Address;
	}
	const FKestrelAssetAddress* Coming = Created.Find(Name);
	return Coming ? FKestrelAssetAddress{ Name, Coming->ObjectPath } : Address;
}

void FKestrelAssetView::Create(const FKestrelAssetAddress& Address)
{
	if (!Created.Contains(Address.Name))
	{
		Created.Add(Address.Name, Address);
	}
}

TSharedRef<FKestrelAssetWatch> FKestrelAssetView::Watch(const FString& ObjectPath)
{
	const TSharedRef<FKestrelAssetWatch>* Known = Watches->Find(ObjectPath);
	return Known ? *Known : Watches->Add(ObjectPath, MakeShared<FKestrelAssetWatch>(ObjectPath));
}

TArray<FString> FKestrelAssetView::ListUnsaved() const
{
	TSet<FString> Packages;
	for (TObjectIterator<UBlueprint> It; It; ++It)
	{
		if (KestrelBlueprintPackage::IsUnsaved(**It))
		{
			Packages.Add(It->GetOutermost()->GetName());
		}
	}
	for (const auto& Pair : Created)
	{
		Packages.Add(Pair.Value.GetPackageName());
	}
	TArray<FString> Sorted = Packages.Array();
	Sorted.Sort();
	return Sorted;
}
