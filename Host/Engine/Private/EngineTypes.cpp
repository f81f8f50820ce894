#include "Engine/EngineTypes.h"

#include "Components/PrimitiveComponent.h"
#include "GameFramework/Actor.h"

constexpr FAttachmentTransformRules FAttachmentTransformRules::KeepRelativeTransform(
	EAttachmentRule::KeepRelative, false);
constexpr FAttachmentTransformRules FAttachmentTransformRules::KeepWorldTransform(EAttachmentRule::KeepWorld, false);
constexpr FAttachmentTransformRules FAttachmentTransformRules::SnapToTargetNotIncludingScale(
	EAttachmentRule::SnapToTarget, EAttachmentRule::SnapToTarget, EAttachmentRule::KeepWorld, false);
constexpr FAttachmentTransformRules FAttachmentTransformRules::SnapToTargetIncludingScale(
	EAttachmentRule::SnapToTarget, false);
constexpr FDetachmentTransformRules FDetachmentTransformRules::KeepRelativeTransform(
	EDetachmentRule::KeepRelative, true);
constexpr FDetachmentTransformRules FDetachmentTransformRules::KeepWorldTransform(EDetachmentRule::KeepWorld, true);

FHitResult::FHitResult()
	: bBlockingHit(false)
	, bStartPenetrating(false)
{
}

FHitResult::FHitResult(float InTime)
	: FHitResult()
{
	Time = InTime;
}

FHitResult::FHitResult(const FVector& Start, const FVector& End)
	: FHitResult()
{
	TraceStart = Start;
	TraceEnd = End;
}

FHitResult::FHitResult(AActor* InActor, UPrimitiveComponent* InComponent, const FVector& HitLoc, const FVector& HitNorm)
	: FHitResult()
{
	Location = HitLoc;
	ImpactPoint = HitLoc;
	Normal = HitNorm;
	ImpactNormal = HitNorm;
	HitActor = InActor;
	Component = InComponent;
}

AActor* FHitResult::GetActor() const
{
	return HitActor.Get();
}

UPrimitiveComponent* FHitResult::GetComponent() const
{
	return Component.Get();
}
