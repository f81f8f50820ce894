#include "UObject/Object.h"

#include "ObjectTable.h"
#include "UObject/Class.h"
#include "UObject/Package.h"
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

bool UObject::Rename(const TCHAR* NewName, UObject* NewOuter, uint32 Flags)
{
	UObject* const Outer = NewOuter ? NewOuter : GetOuter();
	const FName Name = NewName ? FName(NewName) : NewOuter ? MakeUniqueObjectName(Outer, GetClass()) : GetFName();
	const UObject* Taken = FObjectTable::Get().Find(Outer, Name);
	if (Taken && Taken != this)
	{
		return false;
	}
	FObjectTable::Get().SetIdentity(*this, GetClass(), Outer, Name);
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
