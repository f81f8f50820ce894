#pragma once

#include "Containers/EnumAsByte.h"
#include "CoreMinimal.h"
#include "GameFramework/Actor.h"
#include "Templates/SubclassOf.h"
#include "UObject/NoExportTypes.h"
#include "UObject/ObjectPtr.h"
#include "UObject/SoftObjectPtr.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "BlueprintGraphTestTypes.generated.h"

UENUM(BlueprintType)
enum class EGraphTestMood : uint8
{
	Calm,
	Wild,
};

UENUM()
enum class EGraphTestWide : int32
{
	Near,
	Far = 70000,
};

USTRUCT(BlueprintType)
struct FGraphTestSpot
{
	GENERATED_BODY()

	UPROPERTY(EditAnywhere, Category = "Test")
	int32 Row = 0;
};

DECLARE_DYNAMIC_DELEGATE_OneParam(FGraphTestAnswer, int32, Answer);
DECLARE_DYNAMIC_MULTICAST_DELEGATE_OneParam(FGraphTestSignal, int32, Strength);

/** One variable of each kind that a pin can or cannot carry. */
UCLASS(BlueprintType)
class UGraphTestKinds : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY()
	bool bFlag = false;

	UPROPERTY()
	uint8 bBit : 1;

	UPROPERTY()
	uint8 Byte = 0;

	UPROPERTY()
	EGraphTestMood Mood = EGraphTestMood::Calm;

	UPROPERTY()
	EGraphTestWide Wide = EGraphTestWide::Near;

	UPROPERTY()
	int32 Int = 0;

	UPROPERTY(meta = (Bitmask))
	int32 Mask = 0;

	UPROPERTY()
	int64 Int64 = 0;

	UPROPERTY()
	uint32 UInt32 = 0;

	UPROPERTY()
	int16 Int16 = 0;

	UPROPERTY()
	float Float = 0.0f;

	UPROPERTY()
	double Double = 0.0;

	UPROPERTY()
	FName Name;

	UPROPERTY()
	FString String;

	UPROPERTY()
	FText Text;

	UPROPERTY()
	FVector Vector = FVector::ZeroVector;

	UPROPERTY()
	FGraphTestSpot Spot;

	UPROPERTY()
	TObjectPtr<AActor> Actor;

	UPROPERTY()
	TWeakObjectPtr<AActor> WeakActor;

	UPROPERTY()
	TSoftObjectPtr<AActor> SoftActor;

	UPROPERTY()
	TSubclassOf<AActor> ActorClass;

	UPROPERTY()
	TSoftClassPtr<AActor> SoftActorClass;

	UPROPERTY()
	FGraphTestAnswer Answer;

	UPROPERTY()
	FGraphTestSignal Signal;

	UPROPERTY()
	TArray<int32> Ints;

	UPROPERTY()
	TSet<FName> Names;

	UPROPERTY()
	TMap<FName, TObjectPtr<AActor>> ActorsByName;

	UPROPERTY()
	TArray<TSubclassOf<AActor>> ActorClasses;

	UPROPERTY()
	TMap<FName, uint32> UnsignedByName;
};

/** An actor with functions of each shape that nodes stand for. */
UCLASS()
class AGraphTestActor : public AActor
{
	GENERATED_BODY()

public:
	UPROPERTY(BlueprintReadWrite, Category = "Test")
	double Speed = 2.5;

	/** Adds up what it gets. */
	UFUNCTION(BlueprintCallable, Category = "Test")
	int32 AddUp(int32 First, int32 Second = 7, EGraphTestMood Mood = EGraphTestMood::Calm) { return First + Second; }

	UFUNCTION(BlueprintCallable, Category = "Test")
	void Split(
		const FString& Source, const TArray<int32>& Numbers, UPARAM(ref) FString& Both, FString& OutLeft, int32 Count)
	{
	}

	UFUNCTION(BlueprintPure, Category = "Test", meta = (DisplayName = "Weight (kg)"))
	double GetWeight() const { return 1.0; }

	UFUNCTION(BlueprintCallable, Category = "Test", meta = (WorldContext = "Context"))
	static void Announce(const UObject* Context, const FText& What) {}

	UFUNCTION(BlueprintImplementableEvent, Category = "Test")
	void OnKnocked(AActor* By, double Force);

	UFUNCTION(BlueprintImplementableEvent, Category = "Test")
	bool MayPass(AActor* Who, FString& OutReason);
};
