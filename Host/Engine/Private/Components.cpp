#include "Components/CapsuleComponent.h"
#include "Components/InputComponent.h"
#include "Components/SphereComponent.h"
#include "GameFramework/Pawn.h"
#include "GameFramework/SpringArmComponent.h"

float USphereComponent::GetScaledSphereRadius() const
{
	const FVector Scale = GetComponentScale();
	return SphereRadius *
		   static_cast<float>(FMath::Min(FMath::Abs(Scale.X), FMath::Min(FMath::Abs(Scale.Y), FMath::Abs(Scale.Z))));
}

void UCapsuleComponent::SetCapsuleSize(float InRadius, float InHalfHeight, bool)
{
	CapsuleRadius = FMath::Max(0.0f, InRadius);
	CapsuleHalfHeight = FMath::Max(CapsuleRadius, InHalfHeight);
}

FInputActionBinding& UInputComponent::AddActionBinding(FInputActionBinding Binding)
{
	ActionBindings.Add(MakeShared<FInputActionBinding>(MoveTemp(Binding)));
	return *ActionBindings.Last();
}

float UInputComponent::GetAxisValue(const FName AxisName) const
{
	float Value = 0.0f;
	for (const FInputAxisBinding& Binding : AxisBindings)
	{
		Value += Binding.AxisName == AxisName ? Binding.AxisValue : 0.0f;
	}
	return Value;
}

const FName USpringArmComponent::SocketName(TEXT("SpringEndpoint"));

USpringArmComponent::USpringArmComponent(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bUsePawnControlRotation(false)
{
}

FRotator USpringArmComponent::GetTargetRotation() const
{
	const APawn* const Pawn = bUsePawnControlRotation ? GetOwner<APawn>() : nullptr;
	return Pawn && Pawn->IsPawnControlled() ? Pawn->GetControlRotation() : GetComponentRotation();
}

FTransform USpringArmComponent::GetSocketTransform(FName InSocketName, ERelativeTransformSpace TransformSpace) const
{
	const FRotator Rotation = GetTargetRotation();
	const FVector Origin = GetComponentLocation() + TargetOffset;
	const FVector End = Origin + Rotation.RotateVector(FVector(-TargetArmLength, 0.0, 0.0) + SocketOffset);
	const FTransform World(Rotation, End);
	switch (TransformSpace)
	{
	case RTS_Component:
		return World.GetRelativeTransform(GetComponentTransform());
	case RTS_Actor:
		return GetOwner() ? World.GetRelativeTransform(GetOwner()->GetTransform()) : World;
	default:
		return World;
	}
}
