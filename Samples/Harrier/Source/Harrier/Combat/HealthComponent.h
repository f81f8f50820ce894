#pragma once

#include "Components/ActorComponent.h"
#include "CoreMinimal.h"
#include "HealthComponent.generated.h"

DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(FOnHealthChanged, float, Health, float, Change);
DECLARE_DYNAMIC_MULTICAST_DELEGATE(FOnDied);

/** How much an actor can still take. Health stays between 0 and MaxHealth; at 0 the owner is dead and stays so. */
UCLASS(ClassGroup = (Harrier), meta = (BlueprintSpawnableComponent))
class HARRIER_API UHealthComponent : public UActorComponent
{
	GENERATED_BODY()

public:
	UHealthComponent();

	virtual void BeginPlay() override;
	virtual void TickComponent(
		float DeltaTime, ELevelTick TickType, FActorComponentTickFunction* ThisTickFunction) override;

	/** Takes Amount off; a dead owner or an amount below zero changes nothing. @return what was really taken */
	UFUNCTION(BlueprintCallable, Category = "Health")
	float TakeDamage(float Amount);

	/** Gives Amount back, up to MaxHealth. The dead are not healed. @return what was really given */
	UFUNCTION(BlueprintCallable, Category = "Health")
	float Heal(float Amount);

	UFUNCTION(BlueprintPure, Category = "Health")
	bool IsDead() const { return Health <= 0.0f; }

	/** From 0 to 1. */
	UFUNCTION(BlueprintPure, Category = "Health")
	float GetHealthFraction() const { return MaxHealth > 0.0f ? Health / MaxHealth : 0.0f; }

	UPROPERTY(BlueprintAssignable, Category = "Health")
	FOnHealthChanged OnHealthChanged;

	UPROPERTY(BlueprintAssignable, Category = "Health")
	FOnDied OnDied;

protected:
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Health")
	float MaxHealth = 100.0f;

	/** Points a second that come back by themselves; 0 switches it off. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Health")
	float RegenerationPerSecond = 2.0f;

	/** Seconds without a wound before regeneration begins. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Health")
	float RegenerationDelaySeconds = 5.0f;

private:
	void ChangeHealth(float Change);

	UPROPERTY(VisibleAnywhere, Category = "Health")
	float Health = 0.0f;

	float SecondsSinceWound = 0.0f;
};
