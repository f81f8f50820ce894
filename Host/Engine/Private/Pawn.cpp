#include "GameFramework/Pawn.h"

#include "Components/CapsuleComponent.h"
#include "Components/InputComponent.h"
#include "Components/SkeletalMeshComponent.h"
#include "GameFramework/Character.h"
#include "GameFramework/CharacterMovementComponent.h"
#include "GameFramework/PlayerController.h"

APawn::APawn(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bUseControllerRotationPitch(false)
	, bUseControllerRotationYaw(true)
	, bUseControllerRotationRoll(false)
{
	PrimaryActorTick.bCanEverTick = true;
}

FRotator APawn::GetControlRotation() const
{
	return Controller ? Controller->GetControlRotation() : FRotator::ZeroRotator;
}

bool APawn::IsPlayerControlled() const
{
	return Controller && Controller->IsA<APlayerController>();
}

void APawn::PossessedBy(AController* NewController)
{
	SetOwner(NewController);
	Controller = NewController;
	ReceivePossessed(NewController);
}

void APawn::UnPossessed()
{
	AController* const OldController = Controller;
	Controller = nullptr;
	SetOwner(nullptr);
	ReceiveUnpossessed(OldController);
}

void APawn::DetachFromControllerPendingDestroy()
{
	if (Controller)
	{
		Controller->PawnPendingDestroy(this);
	}
}

void APawn::Destroyed()
{
	DetachFromControllerPendingDestroy();
	Super::Destroyed();
}

void APawn::FaceRotation(FRotator NewControlRotation, float)
{
	if (!bUseControllerRotationPitch && !bUseControllerRotationYaw && !bUseControllerRotationRoll)
	{
		return;
	}
	const FRotator Present = GetActorRotation();
	SetActorRotation(FRotator(bUseControllerRotationPitch ? NewControlRotation.Pitch : Present.Pitch,
		bUseControllerRotationYaw ? NewControlRotation.Yaw : Present.Yaw,
		bUseControllerRotationRoll ? NewControlRotation.Roll : Present.Roll));
}

void APawn::PawnClientRestart()
{
	if (!InputComponent && GetWorld())
	{
		InputComponent = NewObject<UInputComponent>(this, TEXT("PawnInputComponent0"));
		SetupPlayerInputComponent(InputComponent);
		InputComponent->RegisterComponent();
	}
}

UPawnMovementComponent* APawn::GetMovementComponent() const
{
	return FindComponentByClass<UPawnMovementComponent>();
}

void APawn::AddMovementInput(FVector WorldDirection, float ScaleValue, bool)
{
	ControlInputVector += WorldDirection * ScaleValue;
}

FVector APawn::ConsumeMovementInputVector()
{
	LastControlInputVector = ControlInputVector;
	ControlInputVector = FVector::ZeroVector;
	return LastControlInputVector;
}

void APawn::AddControllerPitchInput(float Val)
{
	if (APlayerController* const Player = GetController<APlayerController>())
	{
		Player->AddPitchInput(Val);
	}
}

void APawn::AddControllerYawInput(float Val)
{
	if (APlayerController* const Player = GetController<APlayerController>())
	{
		Player->AddYawInput(Val);
	}
}

FVector APawn::GetVelocity() const
{
	const UPawnMovementComponent* const Movement = GetMovementComponent();
	return Movement ? Movement->Velocity : Super::GetVelocity();
}

const FName ACharacter::MeshComponentName(TEXT("CharacterMesh0"));
const FName ACharacter::CharacterMovementComponentName(TEXT("CharMoveComp"));
const FName ACharacter::CapsuleComponentName(TEXT("CollisionCylinder"));

ACharacter::ACharacter(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
{
	CapsuleComponent = CreateDefaultSubobject<UCapsuleComponent>(CapsuleComponentName);
	CapsuleComponent->InitCapsuleSize(34.0f, 88.0f);
	RootComponent = CapsuleComponent;
	CharacterMovement = CreateDefaultSubobject<UCharacterMovementComponent>(CharacterMovementComponentName);
	CharacterMovement->UpdatedComponent = CapsuleComponent;
	Mesh = ObjectInitializer.CreateOptionalDefaultSubobject<USkeletalMeshComponent>(this, MeshComponentName);
	if (Mesh)
	{
		Mesh->SetupAttachment(CapsuleComponent);
	}
}

UPawnMovementComponent* ACharacter::GetMovementComponent() const
{
	return CharacterMovement;
}
