#include "Player/HarrierCharacter.h"

#include "Camera/CameraComponent.h"
#include "Combat/HealthComponent.h"
#include "Components/InputComponent.h"
#include "GameFramework/CharacterMovementComponent.h"
#include "GameFramework/SpringArmComponent.h"
#include "Harrier.h"

AHarrierCharacter::AHarrierCharacter()
{
	CameraArm = CreateDefaultSubobject<USpringArmComponent>(TEXT("CameraArm"));
	CameraArm->SetupAttachment(RootComponent);
	CameraArm->TargetArmLength = 400.0f;
	CameraArm->bUsePawnControlRotation = true;

	Camera = CreateDefaultSubobject<UCameraComponent>(TEXT("Camera"));
	Camera->SetupAttachment(CameraArm);

	Health = CreateDefaultSubobject<UHealthComponent>(TEXT("Health"));
}

void AHarrierCharacter::BeginPlay()
{
	Super::BeginPlay();
	SetRunning(false);
	Health->OnDied.AddDynamic(this, &AHarrierCharacter::OnDied);
}

void AHarrierCharacter::SetupPlayerInputComponent(UInputComponent* PlayerInputComponent)
{
	Super::SetupPlayerInputComponent(PlayerInputComponent);
	PlayerInputComponent->BindAxis(TEXT("MoveForward"), this, &AHarrierCharacter::MoveForward);
	PlayerInputComponent->BindAxis(TEXT("MoveRight"), this, &AHarrierCharacter::MoveRight);
	PlayerInputComponent->BindAxis(TEXT("Turn"), this, &APawn::AddControllerYawInput);
	PlayerInputComponent->BindAction(TEXT("Run"), IE_Pressed, this, &AHarrierCharacter::StartRunning);
	PlayerInputComponent->BindAction(TEXT("Run"), IE_Released, this, &AHarrierCharacter::StopRunning);
}

int32 AHarrierCharacter::AddFeathers(int32 Count)
{
	const int32 Added = FMath::Clamp(Count, 0, MaxFeathers - Feathers);
	Feathers += Added;
	return Added;
}

void AHarrierCharacter::MoveForward(float Value)
{
	AddMovementInput(GetActorForwardVector(), Value);
}

void AHarrierCharacter::MoveRight(float Value)
{
	AddMovementInput(GetActorRightVector(), Value);
}

void AHarrierCharacter::StartRunning()
{
	SetRunning(true);
}

void AHarrierCharacter::StopRunning()
{
	SetRunning(false);
}

void AHarrierCharacter::SetRunning(bool bRun)
{
	GetCharacterMovement()->MaxWalkSpeed = bRun ? RunSpeed : WalkSpeed;
}

void AHarrierCharacter::OnDied()
{
	UE_LOG(LogHarrier, Log, TEXT("%s has died with %d feathers"), *GetName(), Feathers);
	DetachFromControllerPendingDestroy();
}
