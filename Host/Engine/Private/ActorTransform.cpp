#include "Components/SceneComponent.h"
#include "GameFramework/Actor.h"

bool AActor::SetRootComponent(USceneComponent* NewRootComponent)
{
	if (NewRootComponent && NewRootComponent->GetOwner() != this)
	{
		return false;
	}
	RootComponent = NewRootComponent;
	return true;
}

FTransform AActor::GetTransform() const
{
	return RootComponent ? RootComponent->GetComponentTransform() : FTransform::Identity;
}

bool AActor::SetActorLocation(const FVector& NewLocation, bool bSweep, FHitResult* OutHit, ETeleportType Teleport)
{
	if (RootComponent)
	{
		RootComponent->SetWorldLocation(NewLocation, bSweep, OutHit, Teleport);
	}
	return RootComponent != nullptr;
}

bool AActor::SetActorRotation(FRotator NewRotation, ETeleportType Teleport)
{
	if (RootComponent)
	{
		RootComponent->SetWorldRotation(NewRotation, false, nullptr, Teleport);
	}
	return RootComponent != nullptr;
}

bool AActor::SetActorLocationAndRotation(
	FVector NewLocation, FRotator NewRotation, bool bSweep, FHitResult* OutHit, ETeleportType Teleport)
{
	return SetActorLocation(NewLocation, bSweep, OutHit, Teleport) && SetActorRotation(NewRotation, Teleport);
}

bool AActor::SetActorTransform(const FTransform& NewTransform, bool bSweep, FHitResult* OutHit, ETeleportType Teleport)
{
	if (RootComponent)
	{
		RootComponent->SetWorldTransform(NewTransform, bSweep, OutHit, Teleport);
	}
	return RootComponent != nullptr;
}

void AActor::SetActorScale3D(FVector NewScale3D)
{
	if (RootComponent)
	{
		RootComponent->SetWorldScale3D(NewScale3D);
	}
}

void AActor::AddActorWorldOffset(FVector DeltaLocation, bool bSweep, FHitResult* OutHit, ETeleportType Teleport)
{
	SetActorLocation(GetActorLocation() + DeltaLocation, bSweep, OutHit, Teleport);
}

float AActor::GetDistanceTo(const AActor* OtherActor) const
{
	return OtherActor ? static_cast<float>(FVector::Dist(GetActorLocation(), OtherActor->GetActorLocation())) : 0.0f;
}

FVector AActor::GetVelocity() const
{
	return FVector::ZeroVector;
}

bool AActor::K2_SetActorLocation(FVector NewLocation, bool, FHitResult& SweepHitResult, bool)
{
	SweepHitResult = FHitResult();
	return SetActorLocation(NewLocation);
}

bool AActor::AttachToActor(AActor* ParentActor, const FAttachmentTransformRules& AttachmentRules, FName SocketName)
{
	return ParentActor && AttachToComponent(ParentActor->GetRootComponent(), AttachmentRules, SocketName);
}

bool AActor::AttachToComponent(
	USceneComponent* Parent, const FAttachmentTransformRules& AttachmentRules, FName SocketName)
{
	return RootComponent && RootComponent->AttachToComponent(Parent, AttachmentRules, SocketName);
}

void AActor::DetachFromActor(const FDetachmentTransformRules& DetachmentRules)
{
	if (RootComponent)
	{
		RootComponent->DetachFromComponent(DetachmentRules);
	}
}

AActor* AActor::GetAttachParentActor() const
{
	const USceneComponent* const Parent = RootComponent ? RootComponent->GetAttachParent() : nullptr;
	return Parent ? Parent->GetOwner() : nullptr;
}
