#include "UObject/Object.h"

#include "Misc/ITransaction.h"
#include "Objects/ObjectTable.h"
#include "Packages/PackageLoader.h"
#include "UObject/AssetRegistryTagsContext.h"
#include "UObject/Class.h"
#include "UObject/ObjectSaveContext.h"
#include "UObject/Package.h"
#include "UObject/UObjectHash.h"
#include "UObject/UnrealType.h"

FCoreUObjectDelegates::FOnObjectPropertyChanged FCoreUObjectDelegates::OnObjectPropertyChanged;
FCoreUObjectDelegates::FReloadCompleteDelegate FCoreUObjectDelegates::ReloadCompleteDelegate;

FSimpleMulticastDelegate& FCoreUObjectDelegates::GetPreGarbageCollectDelegate()
{
	static FSimpleMulticastDelegate Delegate;
	return Delegate;
}

FSimpleMulticastDelegate& FCoreUObjectDelegates::GetPostGarbageCollect()
{
	static FSimpleMulticastDelegate Delegate;
	return Delegate;
}

void UObject::BeginDestroy()
{
	SetFlags(RF_BeginDestroyed);
}

void UObject::FinishDestroy()
{
	SetFlags(RF_FinishDestroyed);
}

bool UObject::ConditionalBeginDestroy()
{
	if (HasAnyFlags(RF_BeginDestroyed))
	{
		return false;
	}
	BeginDestroy();
	checkf(HasAnyFlags(RF_BeginDestroyed), TEXT("%s failed to route BeginDestroy"), *GetFullName());
	return true;
}

bool UObject::ConditionalFinishDestroy()
{
	if (HasAnyFlags(RF_FinishDestroyed))
	{
		return false;
	}
	FinishDestroy();
	checkf(HasAnyFlags(RF_FinishDestroyed), TEXT("%s failed to route FinishDestroy"), *GetFullName());
	return true;
}

void UObject::PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent)
{
	FCoreUObjectDelegates::OnObjectPropertyChanged.Broadcast(this, PropertyChangedEvent);
}

void UObject::PostEditChange()
{
	FPropertyChangedEvent Event(nullptr);
	PostEditChangeProperty(Event);
}

bool UObject::IsAsset() const
{
	return HasAnyFlags(RF_Public) && !HasAnyFlags(RF_Transient | RF_ClassDefaultObject) && IsValid(this) &&
		   GetOuter() && GetOuter() == GetPackage();
}

void UObject::PostLoad()
{
	ClearFlags(RF_NeedPostLoad);
}

void UObject::ConditionalPostLoad()
{
	if (HasAnyFlags(RF_NeedPostLoad) && !FPackageLoader::CompletePackageOf(*this))
	{
		ClearFlags(RF_NeedPostLoad);
		PostLoad();
	}
}

void UObject::PreSave(FObjectPreSaveContext)
{
}

bool UObject::Modify(bool bAlwaysMarkDirty)
{
	const UPackage* const Package = GetPackage();
	const bool bRecorded = GUndo && HasAnyFlags(RF_Transactional) && Package &&
						   !Package->HasAnyPackageFlags(PKG_CompiledIn | PKG_PlayInEditor);
	if (bRecorded || bAlwaysMarkDirty)
	{
		MarkPackageDirty();
	}
	if (bRecorded)
	{
		GUndo->SaveObject(this);
	}
	return bRecorded;
}

void UObject::GetAssetRegistryTags(FAssetRegistryTagsContext Context) const
{
	for (TFieldIterator<FProperty> It(GetClass()); It; ++It)
	{
		if (!It->HasAnyPropertyFlags(CPF_AssetRegistrySearchable))
		{
			continue;
		}
		FString Text;
		const void* const Value = It->ContainerPtrToValuePtr<void>(this);
		It->ExportTextItem_Direct(Text, Value, Value, nullptr, PPF_None);
		const bool bNumber = It->IsA<FNumericProperty>();
		Context.AddTag(
			{ It->GetFName(), Text, bNumber ? FAssetRegistryTag::TT_Numerical : FAssetRegistryTag::TT_Alphabetical });
	}
}

bool UObject::Rename(const TCHAR* NewName, UObject* NewOuter, ERenameFlags Flags)
{
	UObject* const OldOuter = GetOuter();
	const FName OldName = GetFName();
	UObject* const Outer = NewOuter ? NewOuter : OldOuter;
	const FName Name = NewName ? FName(NewName) : NewOuter ? MakeUniqueObjectName(Outer, GetClass()) : OldName;
	const UObject* Taken = FObjectTable::Get().Find(Outer, Name);
	if (Taken && Taken != this)
	{
		return false;
	}
	if (Flags & REN_Test)
	{
		return true;
	}
	const bool bMarkDirty = !(Flags & REN_DoNotDirty);
	if (bMarkDirty && !(Flags & REN_NonTransactional))
	{
		Modify();
	}
	FObjectTable::Get().SetIdentity(*this, GetClass(), Outer, Name);
	if (bMarkDirty)
	{
		MarkPackageDirty();
	}
	PostRename(OldOuter, OldName);
	return true;
}

UWorld* UObject::GetWorld() const
{
	return GetOuter() ? GetOuter()->GetWorld() : nullptr;
}

UObject* UObject::GetDefaultSubobjectByName(FName ToFind)
{
	UObject* const Found = FObjectTable::Get().Find(this, ToFind);
	return Found && Found->IsDefaultSubobject() ? Found : nullptr;
}

void UObject::GetArchetypeInstances(TArray<UObject*>& Instances)
{
	Instances.Empty();
	if (HasAnyFlags(RF_ClassDefaultObject))
	{
		constexpr bool bIncludeDerivedClasses = true;
		GetObjectsOfClass(GetClass(), Instances, bIncludeDerivedClasses, RF_NoFlags);
		Instances.Remove(this);
	}
}

UObject* UObject::GetArchetype() const
{
	const UClass* Class = GetClass();
	if (HasAnyFlags(RF_ClassDefaultObject))
	{
		return Class->GetSuperClass() ? Class->GetSuperClass()->GetDefaultObject() : nullptr;
	}
	UObject* const OuterArchetype = IsDefaultSubobject() && GetOuter() ? GetOuter()->GetArchetype() : nullptr;
	UObject* const Part = OuterArchetype ? OuterArchetype->GetDefaultSubobjectByName(GetFName()) : nullptr;
	return Part && Part->IsA(Class) ? Part : Class->GetDefaultObject();
}

UFunction* UObject::FindFunction(FName InName) const
{
	return GetClass()->FindFunctionByName(InName);
}

UFunction* UObject::FindFunctionChecked(FName InName) const
{
	UFunction* Function = FindFunction(InName);
	checkf(Function, TEXT("Failed to find function %s in %s"), *InName.ToString(), *GetFullName());
	return Function;
}

void UObject::ProcessEvent(UFunction* Function, void* Parms)
{
	Function->Invoke(this, Parms);
}
