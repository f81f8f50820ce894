#pragma once

#include "AIController.h"
#include "CoreMinimal.h"
#include "WardenController.generated.h"

/** What a warden is about. */
UENUM(BlueprintType)
enum class EWardenMood : uint8
{
	Patrolling,
	Chasing,
	Searching,
};

/** Drives a warden: it walks its rounds, chases a walker that it sees, and searches a while when it has lost one. */
UCLASS()
class HARRIER_API AWardenController : public AAIController
{
	GENERATED_BODY()

public:
	AWardenController();

	virtual void Tick(float DeltaTime) override;

	UFUNCTION(BlueprintPure, Category = "Warden")
	EWardenMood GetMood() const { return Mood; }

protected:
	/** Centimetres; a walker farther off is not seen. */
	UPROPERTY(EditAnywhere, Category = "Warden")
	float SightRange = 1500.0f;

	/** How long it looks around where the walker was seen last. */
	UPROPERTY(EditAnywhere, Category = "Warden")
	float SearchSeconds = 8.0f;

private:
	/** The walker, if it is near enough and nothing stands between. */
	APawn* FindVisibleWalker() const;
	void Chase(APawn* Walker);
	void Search(float DeltaTime);

	EWardenMood Mood = EWardenMood::Patrolling;
	FVector LastSeen = FVector::ZeroVector;
	float SearchSecondsLeft = 0.0f;
};
