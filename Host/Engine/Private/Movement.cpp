#include "GameFramework/Character.h"
#include "GameFramework/CharacterMovementComponent.h"

UMovementComponent::UMovementComponent(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
{
	PrimaryComponentTick.TickGroup = TG_PrePhysics;
	PrimaryComponentTick.bCanEverTick = true;
}

void UMovementComponent::OnRegister()
{
	Super::OnRegister();
	if (!UpdatedComponent && GetOwner())
	{
		SetUpdatedComponent(GetOwner()->GetRootComponent());
	}
}

void UMovementComponent::SetUpdatedComponent(USceneComponent* NewUpdatedComponent)
{
	UpdatedComponent = NewUpdatedComponent;
}

bool UMovementComponent::MoveUpdatedComponent(
	const FVector& Delta, const FRotator& NewRotation, bool bSweep, FHitResult* OutHit)
{
	if (!UpdatedComponent)
	{
		return false;
	}
	UpdatedComponent->SetWorldLocationAndRotation(
		UpdatedComponent->GetComponentLocation() + Delta, NewRotation, bSweep, OutHit);
	return true;
}

APawn* UPawnMovementComponent::GetPawnOwner() const
{
	return GetOwner<APawn>();
}

void UPawnMovementComponent::AddInputVector(FVector WorldVector, bool bForce)
{
	if (APawn* const Pawn = GetPawnOwner())
	{
		Pawn->AddMovementInput(WorldVector, 1.0f, bForce);
	}
}

FVector UPawnMovementComponent::GetPendingInputVector() const
{
	const APawn* const Pawn = GetPawnOwner();
	return Pawn ? Pawn->GetPendingMovementInputVector() : FVector::ZeroVector;
}

FVector UPawnMovementComponent::ConsumeInputVector()
{
	APawn* const Pawn = GetPawnOwner();
	return Pawn ? Pawn->ConsumeMovementInputVector() : FVector::ZeroVector;
}

UCharacterMovementComponent::UCharacterMovementComponent(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bOrientRotationToMovement(false)
{
}

ACharacter* UCharacterMovementComponent::GetCharacterOwner() const
{
	return GetOwner<ACharacter>();
}

void UCharacterMovementComponent::RequestDirectMove(const FVector& MoveVelocity, bool bForceMaxSpeed)
{
	RequestedVelocity = bForceMaxSpeed ? MoveVelocity.GetSafeNormal() * MaxWalkSpeed : MoveVelocity;
}

FRotator UCharacterMovementComponent::TurnTowardsVelocity(const FRotator& Rotation, float DeltaTime) const
{
	if (!bOrientRotationToMovement || Velocity.IsNearlyZero())
	{
		return Rotation;
	}
	const double Left = FRotator::NormalizeAxis(Velocity.Rotation().Yaw - Rotation.Yaw);
	const double Step = RotationRate.Yaw * DeltaTime;
	return FRotator(Rotation.Pitch, Rotation.Yaw + FMath::Clamp(Left, -Step, Step), Rotation.Roll);
}

void UCharacterMovementComponent::TickComponent(
	float DeltaTime, ELevelTick TickType, FActorComponentTickFunction* ThisTickFunction)
{
	Super::TickComponent(DeltaTime, TickType, ThisTickFunction);
	const FVector Input = ConsumeInputVector().GetClampedToMaxSize(1.0) * MaxWalkSpeed;
	if (!UpdatedComponent)
	{
		return;
	}
	Velocity = Input + RequestedVelocity;
	Velocity.Z = 0.0;
	Velocity = Velocity.GetClampedToMaxSize(MaxWalkSpeed);
	RequestedVelocity = FVector::ZeroVector;
	MoveUpdatedComponent(
		Velocity * DeltaTime, TurnTowardsVelocity(UpdatedComponent->GetComponentRotation(), DeltaTime), true);
}
