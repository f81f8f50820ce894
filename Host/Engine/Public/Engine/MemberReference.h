#pragma once

#include "EdGraph/EdGraphPin.h"
#include "UObject/UnrealType.h"
#include "MemberReference.generated.h"

/**
 * Names a variable or function of a class: of the one that the reference is used in (self), of another, or of a
 * function's scope. It is looked up each time, since classes are recompiled.
 */
USTRUCT()
struct ENGINE_API FMemberReference
{
	GENERATED_BODY()

	void SetSelfMember(FName InMemberName);
	void SetSelfMember(FName InMemberName, const FGuid& InMemberGuid);
	void SetExternalMember(FName InMemberName, TSubclassOf<UObject> InMemberParentClass);
	void SetExternalMember(FName InMemberName, TSubclassOf<UObject> InMemberParentClass, const FGuid& InMemberGuid);
	void SetLocalMember(FName InMemberName, const FString& InScopeName, const FGuid InMemberGuid);
	void SetLocalMember(FName InMemberName, const UStruct* InScope, const FGuid InMemberGuid);
	void InvalidateScope();

	/** The field's owner becomes the parent, unless the reference is one to self. */
	template <class TFieldType>
	void SetFromField(const typename TFieldType::BaseFieldClass* InField, const bool bIsConsideredSelfContext,
		UClass* OwnerClass = nullptr)
	{
		SetFromOwner(InField->GetFName(), OwnerClass ? OwnerClass : InField->GetOwnerClass(), bIsConsideredSelfContext);
	}
	/** Self when SelfScope is a child of the field's owner. */
	template <class TFieldType>
	void SetFromField(const typename TFieldType::BaseFieldClass* InField, UClass* SelfScope)
	{
		UClass* const Owner = InField->GetOwnerClass();
		SetFromOwner(InField->GetFName(), Owner, Owner && SelfScope && SelfScope->IsChildOf(Owner));
	}

	FName GetMemberName() const { return MemberName; }
	FGuid GetMemberGuid() const { return MemberGuid; }
	/** Of a reference to self, SelfScope. */
	UClass* GetMemberParentClass(UClass* SelfScope = nullptr) const;
	bool IsSelfContext() const { return bSelfContext; }
	bool IsLocalScope() const { return !MemberScope.IsEmpty(); }
	const FString& GetMemberScopeName() const { return MemberScope; }

	/** Null when there is no such member, be it of this class or a parent. */
	template <class TFieldType>
	TFieldType* ResolveMember(UClass* SelfScope = nullptr) const
	{
		UClass* const Scope = GetMemberParentClass(SelfScope);
		if (!Scope || MemberName.IsNone())
		{
			return nullptr;
		}
		if (TFieldType* const Member = FindMember<TFieldType>(*Scope))
		{
			return Member;
		}
		// The class of another Blueprint may lag behind its skeleton.
		const UClass* const Skeleton = GetSkeletonOf(*Scope);
		return Skeleton ? FindMember<TFieldType>(*Skeleton) : nullptr;
	}

	bool operator==(const FMemberReference& Other) const;

private:
	template <class TFieldType>
	TFieldType* FindMember(const UClass& Scope) const
	{
		if constexpr (std::is_same_v<TFieldType, UFunction>)
		{
			return Scope.FindFunctionByName(MemberName);
		}
		else
		{
			return CastField<TFieldType>(Scope.FindPropertyByName(MemberName));
		}
	}
	static const UClass* GetSkeletonOf(const UClass& Class);
	void SetFromOwner(FName InMemberName, UClass* OwnerClass, bool bIsSelf);

	UPROPERTY()
	TObjectPtr<UObject> MemberParent;

	/** The function that a local variable belongs to. */
	UPROPERTY()
	FString MemberScope;

	UPROPERTY()
	FName MemberName;

	UPROPERTY()
	FGuid MemberGuid;

	UPROPERTY()
	bool bSelfContext = false;
};
