#include "CoreGlobals.h"
#include "Misc/PackageName.h"
#include "Packages/PackageLoader.h"
#include "Properties/PropertyText.h"
#include "UObject/Class.h"
#include "UObject/Package.h"

DEFINE_LOG_CATEGORY_STATIC(LogUObjectGlobals, Log, All);

namespace LoadObjectImpl
{
bool IsQuiet(uint32 LoadFlags)
{
	return (LoadFlags & (LOAD_NoWarn | LOAD_Quiet)) != 0;
}

/** "/Game/A.A" for "/Game/A". */
FString CompletePath(const FString& Path)
{
	int32 Dot = INDEX_NONE;
	return FPackageName::IsShortPackageName(Path) || Path.FindChar(u'.', Dot)
			   ? Path
			   : Path + TEXT(".") + FPackageName::GetShortName(Path);
}
}

UPackage* FindPackage(UObject*, const TCHAR* PackageName)
{
	return FindObjectFast<UPackage>(nullptr, PropertyText::FindName(PackageName));
}

UPackage* LoadPackage(UPackage*, const TCHAR* InLongPackageName, uint32 LoadFlags)
{
	const FString Name(InLongPackageName);
	UPackage* const Existing = FindPackage(nullptr, *Name);
	if (Existing &&
		(Existing->IsFullyLoaded() || Existing->HasAnyPackageFlags(PKG_CompiledIn) || Existing->FindAssetInPackage()))
	{
		return Existing;
	}
	FString FileName;
	if (!FPackageName::DoesPackageExist(Name, &FileName))
	{
		UE_CLOG(!LoadObjectImpl::IsQuiet(LoadFlags), LogUObjectGlobals, Warning,
			TEXT("Failed to load '%s': there is no such package"), *Name);
		return nullptr;
	}
	return FPackageLoader::Load(Name, FileName, LoadFlags);
}

void ResetLoaders(UObject*)
{
}

UObject* StaticLoadObject(UClass* Class, UObject* InOuter, const TCHAR* Name, const TCHAR*, uint32 LoadFlags)
{
	const FString Given = PropertyText::StripExportPath(Name);
	const FString Path = InOuter ? Given : LoadObjectImpl::CompletePath(Given);
	UObject* Found = StaticFindObject(Class, InOuter, *Path);
	const FString PackageName = FPackageName::ObjectPathToPackageName(Path);
	if (!Found && !InOuter && !FPackageName::IsScriptPackage(PackageName) &&
		!FPackageName::IsShortPackageName(PackageName) && LoadPackage(nullptr, *PackageName, LoadFlags))
	{
		Found = StaticFindObject(Class, nullptr, *Path);
	}
	UE_CLOG(!Found && !LoadObjectImpl::IsQuiet(LoadFlags), LogUObjectGlobals, Warning,
		TEXT("Failed to find object '%s %s'"), Class ? *Class->GetName() : TEXT("Object"), *Path);
	return Found;
}

UClass* StaticLoadClass(UClass* BaseClass, UObject* InOuter, const TCHAR* Name, const TCHAR* Filename, uint32 LoadFlags)
{
	UClass* const Class =
		static_cast<UClass*>(StaticLoadObject(UClass::StaticClass(), InOuter, Name, Filename, LoadFlags));
	if (Class && !Class->IsChildOf(BaseClass))
	{
		UE_CLOG(!LoadObjectImpl::IsQuiet(LoadFlags), LogUObjectGlobals, Warning, TEXT("%s is not a child of %s"),
			*Class->GetName(), *BaseClass->GetName());
		return nullptr;
	}
	return Class;
}
