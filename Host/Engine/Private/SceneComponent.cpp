#include "Components/SceneComponent.h"

#include "GameFramework/Actor.h"

USceneComponent::USceneComponent(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bVisible(true)
	, bHiddenInGame(false)
{
}

void USceneComponent::SetupAttachment(USceneComponent* InParent, FName InSocketName)
{
	const bool bIsTooLate = IsRegistered();
	if (!ensureAlwaysMsgf(!bIsTooLate,
			TEXT("SetupAttachment should only be used to initialize AttachParent and AttachSocketName for a future "
				 "AttachToComponent. Once a component is registered you must use AttachToComponent. Owner [%s], "
				 "InParent [%s]"),
			GetOwner() ? *GetOwner()->GetName() : TEXT("None"), InParent ? *InParent->GetName() : TEXT("None")) ||
		!ensureAlwaysMsgf(InParent != this, TEXT("Cannot attach a component to itself.")) ||
		!ensureAlwaysMsgf(
			!InParent || !InParent->IsAttachedTo(this), TEXT("Setting up attachment would create a cycle.")))
	{
		return;
	}
	AttachParent = InParent;
	AttachSocketName = InSocketName;
}

bool USceneComponent::AttachToComponent(
	USceneComponent* InParent, const FAttachmentTransformRules& AttachmentRules, FName InSocketName)
{
	if (!InParent || InParent == this || InParent->IsAttachedTo(this))
	{
		return false;
	}
	const FTransform Before = GetComponentTransform();
	if (AttachParent)
	{
		AttachParent->AttachChildren.Remove(this);
	}
	AttachParent = InParent;
	AttachSocketName = InSocketName;
	InParent->AttachChildren.AddUnique(this);

	const FTransform Kept = Before.GetRelativeTransform(GetParentTransform());
	if (AttachmentRules.LocationRule != EAttachmentRule::KeepRelative)
	{
		const bool bKeepWorld = AttachmentRules.LocationRule == EAttachmentRule::KeepWorld;
		RelativeLocation = bKeepWorld ? Kept.GetLocation() : FVector::ZeroVector;
	}
	if (AttachmentRules.RotationRule != EAttachmentRule::KeepRelative)
	{
		const bool bKeepWorld = AttachmentRules.RotationRule == EAttachmentRule::KeepWorld;
		RelativeRotation = bKeepWorld ? Kept.Rotator() : FRotator::ZeroRotator;
	}
	if (AttachmentRules.ScaleRule != EAttachmentRule::KeepRelative)
	{
		const bool bKeepWorld = AttachmentRules.ScaleRule == EAttachmentRule::KeepWorld;
		RelativeScale3D = bKeepWorld ? Kept.GetScale3D() : FVector::OneVector;
	}
	return true;
}

void USceneComponent::DetachFromComponent(const FDetachmentTransformRules& DetachmentRules)
{
	if (!AttachParent)
	{
		return;
	}
	const FTransform Before = GetComponentTransform();
	AttachParent->AttachChildren.Remove(this);
	AttachParent = nullptr;
	AttachSocketName = NAME_None;
	if (DetachmentRules.LocationRule == EDetachmentRule::KeepWorld)
	{
		RelativeLocation = Before.GetLocation();
	}
	if (DetachmentRules.RotationRule == EDetachmentRule::KeepWorld)
	{
		RelativeRotation = Before.Rotator();
	}
	if (DetachmentRules.ScaleRule == EDetachmentRule::KeepWorld)
	{
		RelativeScale3D = Before.GetScale3D();
	}
}

USceneComponent* USceneComponent::GetChildComponent(int32 ChildIndex) const
{
	return AttachChildren.IsValidIndex(ChildIndex) ? AttachChildren[ChildIndex].Get() : nullptr;
}

void USceneComponent::GetChildrenComponents(bool bIncludeAllDescendants, TArray<USceneComponent*>& Children) const
{
	Children.Reset();
	Children.Append(AttachChildren);
	for (int32 Index = 0; bIncludeAllDescendants && Index < Children.Num(); ++Index)
	{
		const TArray<TObjectPtr<USceneComponent>> Further = Children[Index]->AttachChildren;
		Children.Append(Further);
	}
}

USceneComponent* USceneComponent::GetAttachmentRoot() const
{
	const USceneComponent* Root = this;
	while (Root->AttachParent)
	{
		Root = Root->AttachParent;
	}
	return const_cast<USceneComponent*>(Root);
}

bool USceneComponent::IsAttachedTo(const USceneComponent* TestComp) const
{
	const USceneComponent* Parent = TestComp ? AttachParent.Get() : nullptr;
	while (Parent && Parent != TestComp)
	{
		Parent = Parent->AttachParent;
	}
	return Parent != nullptr;
}

FTransform USceneComponent::GetParentTransform() const
{
	return AttachParent ? AttachParent->GetSocketTransform(AttachSocketName) : FTransform::Identity;
}

FTransform USceneComponent::GetRelativeTransform() const
{
	return FTransform(RelativeRotation, RelativeLocation, RelativeScale3D);
}

FTransform USceneComponent::GetComponentTransform() const
{
	return GetRelativeTransform() * GetParentTransform();
}

FTransform USceneComponent::GetSocketTransform(FName, ERelativeTransformSpace TransformSpace) const
{
	switch (TransformSpace)
	{
	case RTS_Actor:
		return GetOwner() ? GetComponentTransform().GetRelativeTransform(GetOwner()->GetTransform()) : FTransform();
	case RTS_Component:
	case RTS_ParentBoneSpace:
		return FTransform::Identity;
	default:
		return GetComponentTransform();
	}
}

void USceneComponent::SetRelativeLocation(FVector NewLocation, bool, FHitResult*, ETeleportType)
{
	RelativeLocation = NewLocation;
}

void USceneComponent::SetRelativeRotation(FRotator NewRotation, bool, FHitResult*, ETeleportType)
{
	RelativeRotation = NewRotation;
}

void USceneComponent::SetRelativeLocationAndRotation(
	FVector NewLocation, FRotator NewRotation, bool, FHitResult*, ETeleportType)
{
	RelativeLocation = NewLocation;
	RelativeRotation = NewRotation;
}

void USceneComponent::SetRelativeScale3D(FVector NewScale3D)
{
	RelativeScale3D = NewScale3D;
}

void USceneComponent::SetRelativeTransform(const FTransform& NewTransform, bool, FHitResult*, ETeleportType)
{
	RelativeLocation = NewTransform.GetLocation();
	RelativeRotation = NewTransform.Rotator();
	RelativeScale3D = NewTransform.GetScale3D();
}

void USceneComponent::AddRelativeLocation(FVector DeltaLocation, bool, FHitResult*, ETeleportType)
{
	RelativeLocation += DeltaLocation;
}

void USceneComponent::AddRelativeRotation(FRotator DeltaRotation, bool, FHitResult*, ETeleportType)
{
	RelativeRotation += DeltaRotation;
}

void USceneComponent::SetWorldLocation(FVector NewLocation, bool, FHitResult*, ETeleportType)
{
	RelativeLocation = GetParentTransform().InverseTransformPosition(NewLocation);
}

void USceneComponent::SetWorldRotation(FRotator NewRotation, bool, FHitResult*, ETeleportType)
{
	RelativeRotation = AttachParent
						   ? (GetParentTransform().GetRotation().Inverse() * NewRotation.Quaternion()).Rotator()
						   : NewRotation;
}

void USceneComponent::SetWorldLocationAndRotation(
	FVector NewLocation, FRotator NewRotation, bool, FHitResult*, ETeleportType)
{
	SetWorldLocation(NewLocation);
	SetWorldRotation(NewRotation);
}

void USceneComponent::SetWorldScale3D(FVector NewScale)
{
	RelativeScale3D = FTransform(FQuat::Identity, FVector::ZeroVector, NewScale)
						  .GetRelativeTransform(GetParentTransform())
						  .GetScale3D();
}

void USceneComponent::SetWorldTransform(const FTransform& NewTransform, bool, FHitResult*, ETeleportType)
{
	SetRelativeTransform(NewTransform.GetRelativeTransform(GetParentTransform()));
}

void USceneComponent::AddWorldOffset(FVector DeltaLocation, bool, FHitResult*, ETeleportType)
{
	SetWorldLocation(GetComponentLocation() + DeltaLocation);
}

void USceneComponent::AddLocalOffset(FVector DeltaLocation, bool, FHitResult*, ETeleportType)
{
	SetWorldLocation(GetComponentLocation() + GetComponentQuat().RotateVector(DeltaLocation));
}

void USceneComponent::K2_SetRelativeLocation(FVector NewLocation, bool, FHitResult& SweepHitResult, bool)
{
	SweepHitResult = FHitResult();
	SetRelativeLocation(NewLocation);
}

void USceneComponent::K2_SetRelativeRotation(FRotator NewRotation, bool, FHitResult& SweepHitResult, bool)
{
	SweepHitResult = FHitResult();
	SetRelativeRotation(NewRotation);
}

void USceneComponent::K2_SetWorldLocation(FVector NewLocation, bool, FHitResult& SweepHitResult, bool)
{
	SweepHitResult = FHitResult();
	SetWorldLocation(NewLocation);
}

void USceneComponent::SetVisibility(bool bNewVisibility, bool bPropagateToChildren)
{
	bVisible = bNewVisibility;
	for (USceneComponent* Child : bPropagateToChildren ? AttachChildren : TArray<TObjectPtr<USceneComponent>>())
	{
		Child->SetVisibility(bNewVisibility, true);
	}
}

void USceneComponent::SetHiddenInGame(bool NewHidden, bool bPropagateToChildren)
{
	bHiddenInGame = NewHidden;
	for (USceneComponent* Child : bPropagateToChildren ? AttachChildren : TArray<TObjectPtr<USceneComponent>>())
	{
		Child->SetHiddenInGame(NewHidden, true);
	}
}

void USceneComponent::OnRegister()
{
	if (AttachParent)
	{
		AttachParent->AttachChildren.AddUnique(this);
	}
	Super::OnRegister();
}

void USceneComponent::DestroyComponent(bool bPromoteChildren)
{
	USceneComponent* const Parent = AttachParent;
	for (USceneComponent* Child : TArray<TObjectPtr<USceneComponent>>(AttachChildren))
	{
		if (bPromoteChildren && Parent)
		{
			Child->AttachToComponent(Parent, FAttachmentTransformRules::KeepWorldTransform);
		}
		else
		{
			Child->DetachFromComponent(FDetachmentTransformRules::KeepWorldTransform);
		}
	}
	DetachFromComponent(FDetachmentTransformRules::KeepRelativeTransform);
	Super::DestroyComponent(bPromoteChildren);
}
