#pragma once

#include "CoreMinimal.h"
#include "GameFramework/Character.h"
#include "GameFramework/CharacterMovementComponent.h"
#include "GameFramework/GameModeBase.h"
#include "EngineTestTypes.generated.h"

class USphereComponent;
class USpringArmComponent;

/** Notes down what happens to it. */
UCLASS()
class UDiaryComponent : public USceneComponent
{
	GENERATED_BODY()

public:
	UDiaryComponent(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get())
		: Super(ObjectInitializer)
	{
		PrimaryComponentTick.bCanEverTick = true;
		bWantsInitializeComponent = true;
	}

	void InitializeComponent() override
	{
		Super::InitializeComponent();
		Write(TEXT("init"));
	}
	void BeginPlay() override
	{
		Super::BeginPlay();
		Write(TEXT("begin"));
	}
	void TickComponent(float DeltaTime, ELevelTick TickType, FActorComponentTickFunction* ThisTickFunction) override
	{
		Super::TickComponent(DeltaTime, TickType, ThisTickFunction);
		Write(FString::Printf(TEXT("tick %.1f"), DeltaTime));
	}
	void EndPlay(const EEndPlayReason::Type EndPlayReason) override
	{
		Super::EndPlay(EndPlayReason);
		Write(StaticEnum<EEndPlayReason::Type>()->GetNameStringByValue(EndPlayReason));
	}
	void OnUnregister() override
	{
		Super::OnUnregister();
		Write(TEXT("out"));
	}

	void Write(const FString& What) { Diary += What + TEXT(";"); }

	UPROPERTY(EditAnywhere, Category = "Diary")
	int32 Pages = 10;

	FString Diary;
};

/** An actor with a tree of parts: Root, and Diary 100 cm in front of it. */
UCLASS()
class ADiaryActor : public AActor
{
	GENERATED_BODY()

public:
	ADiaryActor();

	void PostInitializeComponents() override
	{
		Super::PostInitializeComponents();
		Diary->Write(TEXT("actor init"));
	}
	void OnConstruction(const FTransform& Transform) override { Diary->Write(TEXT("construct")); }
	void BeginPlay() override
	{
		Diary->Write(TEXT("actor begin"));
		Super::BeginPlay();
	}
	void Tick(float DeltaSeconds) override
	{
		Super::Tick(DeltaSeconds);
		Diary->Write(TEXT("actor tick"));
	}

	UPROPERTY(VisibleAnywhere, Category = "Diary")
	TObjectPtr<USceneComponent> Root;

	UPROPERTY(VisibleAnywhere, Category = "Diary")
	TObjectPtr<UDiaryComponent> Diary;

	UPROPERTY(VisibleAnywhere, Category = "Diary")
	TArray<TObjectPtr<USceneComponent>> Further;
};

UCLASS()
class USlowMovementComponent : public UCharacterMovementComponent
{
	GENERATED_BODY()

public:
	float GetMaxSpeed() const override { return 1.0f; }
};

/** A character with another movement, and no mesh. */
UCLASS()
class ABareCharacter : public ACharacter
{
	GENERATED_BODY()

public:
	ABareCharacter(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	void SetupPlayerInputComponent(UInputComponent* PlayerInputComponent) override;
	void MoveForward(float Value) { AddMovementInput(FVector::ForwardVector, Value); }
	void Jump() { ++Jumps; }

	int32 Jumps = 0;
};

UCLASS()
class ATestGameMode : public AGameModeBase
{
	GENERATED_BODY()

public:
	ATestGameMode() { DefaultPawnClass = ABareCharacter::StaticClass(); }
};
