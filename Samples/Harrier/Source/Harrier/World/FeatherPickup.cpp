#include "World/FeatherPickup.h"

#include "Components/SphereComponent.h"
#include "Engine/World.h"
#include "Game/HarrierGameMode.h"
#include "Player/HarrierCharacter.h"

AFeatherPickup::AFeatherPickup()
{
	constexpr float ReachCentimetres = 80.0f;
	Reach = CreateDefaultSubobject<USphereComponent>(TEXT("Reach"));
	Reach->InitSphereRadius(ReachCentimetres);
	RootComponent = Reach;
}

void AFeatherPickup::BeginPlay()
{
	Super::BeginPlay();
	Reach->OnComponentBeginOverlap.AddDynamic(this, &AFeatherPickup::OnOverlap);
}

void AFeatherPickup::OnOverlap(UPrimitiveComponent* OverlappedComponent, AActor* OtherActor,
	UPrimitiveComponent* OtherComponent, int32 OtherBodyIndex, bool bFromSweep, const FHitResult& SweepResult)
{
	AHarrierCharacter* Walker = Cast<AHarrierCharacter>(OtherActor);
	if (!Walker)
	{
		return;
	}

	const int32 Taken = Walker->AddFeathers(Count);
	Count -= Taken;
	if (AHarrierGameMode* GameMode = GetWorld()->GetAuthGameMode<AHarrierGameMode>())
	{
		GameMode->AddGathered(Taken);
	}
	if (Count == 0)
	{
		Destroy();
	}
}
