#include "Combat/HealthComponent.h"

UHealthComponent::UHealthComponent()
{
	PrimaryComponentTick.bCanEverTick = true;
}

void UHealthComponent::BeginPlay()
{
	Super::BeginPlay();
	Health = MaxHealth;
}

void UHealthComponent::TickComponent(
	float DeltaTime, ELevelTick TickType, FActorComponentTickFunction* ThisTickFunction)
{
	Super::TickComponent(DeltaTime, TickType, ThisTickFunction);

	SecondsSinceWound += DeltaTime;
	if (SecondsSinceWound >= RegenerationDelaySeconds)
	{
		Heal(RegenerationPerSecond * DeltaTime);
	}
}

float UHealthComponent::TakeDamage(float Amount)
{
	if (IsDead() || Amount <= 0.0f)
	{
		return 0.0f;
	}

	const float Taken = FMath::Min(Amount, Health);
	SecondsSinceWound = 0.0f;
	ChangeHealth(-Taken);
	if (IsDead())
	{
		OnDied.Broadcast();
	}
	return Taken;
}

float UHealthComponent::Heal(float Amount)
{
	const float Given = FMath::Min(Amount, MaxHealth - Health);
	if (IsDead() || Given <= 0.0f)
	{
		return 0.0f;
	}
	ChangeHealth(Given);
	return Given;
}

void UHealthComponent::ChangeHealth(float Change)
{
	Health += Change;
	OnHealthChanged.Broadcast(Health, Change);
}
