#include "Engine/MemberReference.h"

#include "Engine/Blueprint.h"

void FMemberReference::SetSelfMember(FName InMemberName)
{
	SetSelfMember(InMemberName, FGuid());
}

void FMemberReference::SetSelfMember(FName InMemberName, const FGuid& InMemberGuid)
{
	MemberName = InMemberName;
	MemberGuid = InMemberGuid;
	MemberParent = nullptr;
	MemberScope.Empty();
	bSelfContext = true;
}

void FMemberReference::SetExternalMember(FName InMemberName, TSubclassOf<UObject> InMemberParentClass)
{
	SetExternalMember(InMemberName, InMemberParentClass, FGuid());
}

void FMemberReference::SetExternalMember(
	FName InMemberName, TSubclassOf<UObject> InMemberParentClass, const FGuid& InMemberGuid)
{
	MemberName = InMemberName;
	MemberGuid = InMemberGuid;
	MemberParent = InMemberParentClass.Get();
	MemberScope.Empty();
	bSelfContext = false;
}

void FMemberReference::SetLocalMember(FName InMemberName, const FString& InScopeName, const FGuid InMemberGuid)
{
	MemberName = InMemberName;
	MemberGuid = InMemberGuid;
	MemberParent = nullptr;
	MemberScope = InScopeName;
	bSelfContext = false;
}

void FMemberReference::SetLocalMember(FName InMemberName, const UStruct* InScope, const FGuid InMemberGuid)
{
	SetLocalMember(InMemberName, InScope->GetName(), InMemberGuid);
}

void FMemberReference::InvalidateScope()
{
	if (IsSelfContext())
	{
		MemberParent = nullptr;
	}
	else if (IsLocalScope())
	{
		MemberScope.Empty();
		bSelfContext = true;
	}
}

void FMemberReference::SetFromOwner(FName InMemberName, UClass* OwnerClass, bool bIsSelf)
{
	if (bIsSelf)
	{
		SetSelfMember(InMemberName);
		return;
	}
	// The class of a Blueprint is referred to as it is compiled, whatever the skeleton that the field was found in.
	const UBlueprint* const Blueprint = UBlueprint::GetBlueprintFromClass(OwnerClass);
	SetExternalMember(
		InMemberName, Blueprint && Blueprint->GeneratedClass ? Blueprint->GeneratedClass.Get() : OwnerClass);
}

const UClass* FMemberReference::GetSkeletonOf(const UClass& Class)
{
	const UBlueprint* const Blueprint = UBlueprint::GetBlueprintFromClass(&Class);
	return Blueprint ? Blueprint->SkeletonGeneratedClass.Get() : nullptr;
}

UClass* FMemberReference::GetMemberParentClass(UClass* SelfScope) const
{
	return bSelfContext ? SelfScope : Cast<UClass>(MemberParent.Get());
}

bool FMemberReference::operator==(const FMemberReference& Other) const
{
	return MemberName == Other.MemberName && MemberParent == Other.MemberParent && MemberScope == Other.MemberScope &&
		   bSelfContext == Other.bSelfContext;
}
