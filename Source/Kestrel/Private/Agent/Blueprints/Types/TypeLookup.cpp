#include "Agent/Blueprints/Types/TypeLookup.h"

#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "AssetRegistry/AssetData.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "Misc/PackageName.h"
#include "Templates/Casts.h"
#include "Templates/SubclassOf.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"

namespace TypeLookup
{
const UClass& GetAssetClass(const UClass* TypeClass)
{
	return TypeClass == UClass::StaticClass() ? *UBlueprint::StaticClass() : *TypeClass;
}

/** The object as a type, if it is one that may be used: compiles leave the old classes behind. */
template <typename TypeObject>
TypeObject* ToType(UObject* Object)
{
	const UBlueprint* Blueprint = Cast<UBlueprint>(Object);
	TypeObject* Type = Cast<TypeObject>(Blueprint ? Blueprint->GeneratedClass.Get() : Object);
	const UClass* Class = Cast<UClass>(Type);
	const bool bLeftBehind = Class && Class->HasAnyClassFlags(CLASS_NewerVersionExists);
	return bLeftBehind || (Type && Type->GetOutermost() == GetTransientPackage()) ? nullptr : Type;
}

/** The path of an object for that of a package as well; empty when it can be none. */
FString ToObjectPath(const FString& GivenPath)
{
	FString Path = FPackageName::ExportTextPathToObjectPath(GivenPath);
	int32 Dot = INDEX_NONE;
	if (!Path.FindChar(TEXT('.'), Dot))
	{
		Path += TEXT(".") + FPackageName::GetShortName(Path);
	}
	return KestrelBlueprintDocument::FitsName(Path) ? Path : FString();
}

/** What looks like a path in part is for neither of the searches. */
bool IsName(const FString& Text)
{
	return KestrelBlueprintDocument::FitsName(Text) && FName::IsValidXName(Text, INVALID_OBJECTNAME_CHARACTERS);
}

bool IsPath(const FString& NameOrPath)
{
	return NameOrPath.Contains(TEXT("/"));
}

template <typename TypeObject>
TypeObject* FindInMemory(const FString& NameOrPath)
{
	if (IsPath(NameOrPath))
	{
		const FString Path = ToObjectPath(NameOrPath);
		return Path.IsEmpty() ? nullptr : ToType<TypeObject>(FindObject<UObject>(nullptr, *Path));
	}
	return IsName(NameOrPath)
			   ? ToType<TypeObject>(FindFirstObjectSafe<TypeObject>(*NameOrPath, EFindFirstObjectOptions::NativeFirst))
			   : nullptr;
}

template <typename TypeObject>
TypeObject* LoadByPath(const FString& GivenPath)
{
	const FString Path = ToObjectPath(GivenPath);
	// What is in memory, and is no type of this kind, stays what it is.
	const bool bLoads =
		!Path.IsEmpty() && !FindObject<UObject>(nullptr, *Path) && KestrelBlueprintDocument::CanBeLoaded(Path);
	return bLoads ? ToType<TypeObject>(LoadObject<UObject>(nullptr, *Path, nullptr, LOAD_NoWarn | LOAD_Quiet))
				  : nullptr;
}

template <typename TypeObject>
TypeObject* LoadByName(const FString& Name)
{
	if (!IsName(Name))
	{
		return nullptr;
	}
	// The class of a Blueprint that is not loaded yet goes by either name.
	FString AssetName = Name;
	AssetName.RemoveFromEnd(TEXT("_C"));
	const UClass& AssetClass = GetAssetClass(TypeObject::StaticClass());
	FAssetData Asset;
	const bool bFound =
		KestrelBlueprintLookup::FindAsset(AssetClass, Name, Asset) ||
		(AssetName.Len() < Name.Len() && KestrelBlueprintLookup::FindAsset(AssetClass, AssetName, Asset));
	return bFound ? ToType<TypeObject>(Asset.GetAsset()) : nullptr;
}

template <typename TypeObject>
TypeObject* Find(const FString& NameOrPath)
{
	if (TypeObject* const Type = FindInMemory<TypeObject>(NameOrPath))
	{
		return Type;
	}
	return IsPath(NameOrPath) ? LoadByPath<TypeObject>(NameOrPath) : LoadByName<TypeObject>(NameOrPath);
}
}

UClass* KestrelTypeLookup::FindClass(const FString& NameOrPath)
{
	return TypeLookup::Find<UClass>(NameOrPath);
}

UClass* KestrelTypeLookup::FindClassInMemory(const FString& NameOrPath)
{
	return TypeLookup::FindInMemory<UClass>(NameOrPath);
}

UScriptStruct* KestrelTypeLookup::FindStruct(const FString& NameOrPath)
{
	// "Vector" and the like are the engine's own, whatever else a project calls so.
	const FString CorePath = TEXT("/Script/CoreUObject.") + NameOrPath;
	UScriptStruct* Core = KestrelBlueprintDocument::FitsName(CorePath) && !NameOrPath.Contains(TEXT("/"))
							  ? FindObject<UScriptStruct>(nullptr, *CorePath)
							  : nullptr;
	return Core ? Core : TypeLookup::Find<UScriptStruct>(NameOrPath);
}

UEnum* KestrelTypeLookup::FindEnum(const FString& NameOrPath)
{
	return TypeLookup::Find<UEnum>(NameOrPath);
}

UObject* KestrelTypeLookup::FindForCategory(FName PinCategory, const FString& NameOrPath)
{
	using FSchema = UEdGraphSchema_K2;
	if (PinCategory == FSchema::PC_Byte || PinCategory == FSchema::PC_Enum)
	{
		return FindEnum(NameOrPath);
	}
	if (PinCategory == FSchema::PC_Struct)
	{
		return FindStruct(NameOrPath);
	}
	const FName ClassCategories[] = { FSchema::PC_Object, FSchema::PC_Class, FSchema::PC_Interface,
		FSchema::PC_SoftObject, FSchema::PC_SoftClass };
	for (const FName Category : ClassCategories)
	{
		if (PinCategory == Category)
		{
			return FindClass(NameOrPath);
		}
	}
	return KestrelBlueprintDocument::FitsName(NameOrPath) ? FindObject<UObject>(nullptr, *NameOrPath) : nullptr;
}

UClass* FKestrelBlueprintUtils::GetBlueprintClassFromBlueprintName(const FString& ClassName)
{
	if (UClass* Class = KestrelTypeLookup::FindClass(ClassName))
	{
		return Class;
	}
	FAssetData Asset;
	return KestrelBlueprintLookup::FindAsset(*UBlueprint::StaticClass(), ClassName, Asset)
			   ? GetBlueprintClassFromAssetData(Asset)
			   : nullptr;
}

UClass* FKestrelBlueprintUtils::GetBlueprintClassFromAssetData(const FAssetData& AssetData)
{
	FString ExportPath;
	if (AssetData.GetTagValue(FBlueprintTags::GeneratedClassPath, ExportPath))
	{
		// The tag holds "Class'Path'", which cannot be loaded as it is.
		const FString ClassPath = FPackageName::ExportTextPathToObjectPath(ExportPath);
		UClass* Class =
			KestrelBlueprintDocument::CanBeLoaded(ClassPath) ? LoadObject<UClass>(nullptr, *ClassPath) : nullptr;
		if (Class)
		{
			return Class;
		}
	}
	return AssetData.GetClass();
}
