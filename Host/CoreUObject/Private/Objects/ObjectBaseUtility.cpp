#include "UObject/UObjectBaseUtility.h"

#include "Objects/ObjectTable.h"
#include "Packages/PackageLoader.h"
#include "UObject/Class.h"
#include "UObject/Package.h"

namespace ObjectBaseUtility
{
const UObject* AsObject(const UObjectBaseUtility* Object)
{
	return static_cast<const UObject*>(Object);
}

bool IsPackage(const UObject* Object)
{
	return Object && Object->IsA(UPackage::StaticClass());
}
}

void UObjectBaseUtility::AddToRoot()
{
	FObjectTable::Get().GetEntry(*this).bRoot = true;
}

void UObjectBaseUtility::RemoveFromRoot()
{
	FObjectTable::Get().GetEntry(*this).bRoot = false;
}

bool UObjectBaseUtility::IsRooted() const
{
	return FObjectTable::Get().GetEntry(*this).bRoot;
}

void UObjectBaseUtility::MarkAsGarbage()
{
	checkf(!IsRooted(), TEXT("%s is in the root set and cannot be garbage"), *GetFullName());
	FObjectTable::Get().GetEntry(*this).bGarbage = true;
}

bool UObjectBaseUtility::IsUnreachable() const
{
	return !FObjectTable::Get().GetEntry(*this).bReachable;
}

bool IsValid(const UObject* Test)
{
	return Test && !FObjectTable::Get().GetEntry(*Test).bGarbage;
}

FString UObjectBaseUtility::GetPathName(const UObject* StopOuter) const
{
	const UObject* const Outer = GetOuter();
	if (!Outer || Outer == StopOuter)
	{
		return GetName();
	}
	const bool bSubobject = !ObjectBaseUtility::IsPackage(Outer) && ObjectBaseUtility::IsPackage(Outer->GetOuter());
	return Outer->GetPathName(StopOuter) + (bSubobject ? SUBOBJECT_DELIMITER : TEXT(".")) + GetName();
}

FString UObjectBaseUtility::GetFullName(const UObject* StopOuter) const
{
	return GetClass()->GetName() + TEXT(" ") + GetPathName(StopOuter);
}

FString UObjectBaseUtility::GetExportPath() const
{
	return GetClass()->GetPathName() + TEXT("'") + GetPathName() + TEXT("'");
}

UPackage* UObjectBaseUtility::GetPackage() const
{
	const UObject* Top = ObjectBaseUtility::AsObject(this);
	while (Top->GetOuter())
	{
		Top = Top->GetOuter();
	}
	return ObjectBaseUtility::IsPackage(Top) ? static_cast<UPackage*>(const_cast<UObject*>(Top)) : nullptr;
}

UObject* UObjectBaseUtility::GetTypedOuter(const UClass* Target) const
{
	UObject* Outer = GetOuter();
	while (Outer && !Outer->IsA(Target))
	{
		Outer = Outer->GetOuter();
	}
	return Outer;
}

bool UObjectBaseUtility::IsIn(const UObject* SomeOuter) const
{
	const UObject* Outer = GetOuter();
	while (Outer && Outer != SomeOuter)
	{
		Outer = Outer->GetOuter();
	}
	return Outer && SomeOuter;
}

bool UObjectBaseUtility::MarkPackageDirty() const
{
	UPackage* Package = GetPackage();
	if (!Package || FPackageLoader::IsLoading() || HasAnyFlags(RF_Transient) || Package == GetTransientPackage() ||
		Package->HasAnyPackageFlags(PKG_CompiledIn | PKG_PlayInEditor))
	{
		return false;
	}
	Package->SetDirtyFlag(true);
	return true;
}

bool UObjectBaseUtility::IsA(const UClass* SomeBase) const
{
	return GetClass()->IsChildOf(SomeBase);
}

bool UObjectBaseUtility::ImplementsInterface(const UClass* InterfaceClass) const
{
	return GetClass()->ImplementsInterface(InterfaceClass);
}

void* UObjectBaseUtility::GetNativeInterfaceAddress(const UClass* InterfaceClass) const
{
	for (const UClass* Class = GetClass(); Class; Class = Class->GetSuperClass())
	{
		for (const FImplementedInterface& Each : Class->Interfaces)
		{
			if (!Each.bImplementedByK2 && Each.Class && Each.Class->IsChildOf(InterfaceClass))
			{
				return reinterpret_cast<uint8*>(const_cast<UObjectBaseUtility*>(this)) + Each.PointerOffset;
			}
		}
	}
	return nullptr;
}

bool UObjectBaseUtility::IsTemplate(EObjectFlags TemplateTypes) const
{
	for (const UObject* Object = ObjectBaseUtility::AsObject(this); Object; Object = Object->GetOuter())
	{
		if (Object->HasAnyFlags(TemplateTypes))
		{
			return true;
		}
	}
	return false;
}
