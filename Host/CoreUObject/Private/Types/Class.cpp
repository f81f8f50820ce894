#include "UObject/Class.h"

#include "CoreGlobals.h"
#include "Properties/DeferredConfig.h"
#include "UObject/Package.h"
#include "UObject/UnrealType.h"

const TCHAR* UClass::GetPrefixCPP() const
{
	static const FName ActorName(TEXT("Actor"));
	for (const UClass* Class = this; Class; Class = Class->GetSuperClass())
	{
		if (Class->GetFName() == ActorName && Class->IsNative())
		{
			return TEXT("A");
		}
	}
	return TEXT("U");
}

void UClass::SetSuperStruct(UStruct* NewSuperStruct)
{
	Super::SetSuperStruct(NewSuperStruct);
	if (const UClass* SuperClass = GetSuperClass())
	{
		ClassFlags |= SuperClass->ClassFlags & CLASS_Inherit;
		ClassConfigName = ClassConfigName.IsNone() ? SuperClass->ClassConfigName : ClassConfigName;
		ClassAddReferencedObjects =
			ClassAddReferencedObjects ? ClassAddReferencedObjects : SuperClass->ClassAddReferencedObjects;
	}
}

FName UClass::GetDefaultObjectName() const
{
	return FName(*(TEXT("Default__") + GetName()));
}

UObject* UClass::GetDefaultObject(bool bCreateIfNeeded) const
{
	return ClassDefaultObject || !bCreateIfNeeded ? ClassDefaultObject
												  : const_cast<UClass*>(this)->CreateDefaultObject();
}

UObject* UClass::CreateDefaultObject()
{
	if (GetSuperClass())
	{
		GetSuperClass()->GetDefaultObject();
	}
	const FName Name = GetDefaultObjectName();
	ClassDefaultObject = StaticConstructObject(
		this, GetOuter(), Name, RF_Public | RF_ClassDefaultObject | RF_ArchetypeObject | RF_Transactional);
	if (HasAnyClassFlags(CLASS_Config) && !GConfig)
	{
		LoadConfigOfDefaultObjectLater(this);
	}
	return ClassDefaultObject;
}

UFunction* UClass::FindFunctionByName(FName InName, EIncludeSuperFlag::Type IncludeSuper) const
{
	for (const UClass* Class = this; Class; Class = Class->GetSuperClass())
	{
		if (UFunction* const* Found = Class->FunctionMap.Find(InName))
		{
			return *Found;
		}
		if (IncludeSuper == EIncludeSuperFlag::ExcludeSuper)
		{
			return nullptr;
		}
		for (const FImplementedInterface& Each : Class->Interfaces)
		{
			if (UFunction* const Found = Each.Class ? Each.Class->FindFunctionByName(InName) : nullptr)
			{
				return Found;
			}
		}
	}
	return nullptr;
}

bool UClass::ImplementsInterface(const UClass* SomeInterface) const
{
	const auto IsWanted = [SomeInterface](const FImplementedInterface& Each) {
		return Each.Class && Each.Class->IsChildOf(SomeInterface);
	};
	for (const UClass* Class = SomeInterface ? this : nullptr; Class; Class = Class->GetSuperClass())
	{
		if (Class->Interfaces.ContainsByPredicate(IsWanted))
		{
			return true;
		}
	}
	return false;
}

FTopLevelAssetPath UClass::GetClassPathName() const
{
	return FTopLevelAssetPath(GetPackage()->GetFName(), GetFName());
}

void UClass::AddFunction(UFunction* Function)
{
	UField** Last = &Children;
	while (*Last)
	{
		Last = &(*Last)->Next;
	}
	*Last = Function;
	FunctionMap.Add(Function->GetFName(), Function);
}

void UClass::ClearFunctions()
{
	Children = nullptr;
	FunctionMap.Empty();
}

void UClass::AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector)
{
	Super::AddReferencedObjects(InThis, Collector);
	UClass* const This = static_cast<UClass*>(InThis);
	Collector.AddReferencedObject(This->ClassDefaultObject);
	Collector.AddReferencedObject(This->ClassGeneratedBy);
	for (FImplementedInterface& Each : This->Interfaces)
	{
		Collector.AddReferencedObject(Each.Class);
	}
}

UObject* UClass::TryFindType(UClass* TypeClass, const FString& TypeName, EFindFirstObjectOptions Options)
{
	return TypeName.IsEmpty() ? nullptr : StaticFindFirstObject(TypeClass, *TypeName, Options);
}

FProperty* UFunction::GetReturnProperty() const
{
	for (TFieldIterator<FProperty> It(this, EFieldIterationFlags::None); It; ++It)
	{
		if (It->HasAnyPropertyFlags(CPF_ReturnParm))
		{
			return *It;
		}
	}
	return nullptr;
}

void UFunction::Invoke(UObject* Object, void* Parms) const
{
	if (Call)
	{
		Call(Object, Parms);
	}
}

void UFunction::StaticLink(bool bRelinkExistingProperties)
{
	Super::StaticLink(bRelinkExistingProperties);
	NumParms = 0;
	ParmsSize = 0;
	ReturnValueOffset = MAX_uint16_ReturnValue;
	for (TFieldIterator<FProperty> It(this, EFieldIterationFlags::None); It; ++It)
	{
		if (!It->HasAnyPropertyFlags(CPF_Parm))
		{
			continue;
		}
		++NumParms;
		ParmsSize = static_cast<uint16>(It->GetOffset_ForInternal() + It->GetSize());
		if (It->HasAnyPropertyFlags(CPF_ReturnParm))
		{
			ReturnValueOffset = static_cast<uint16>(It->GetOffset_ForInternal());
		}
	}
}
