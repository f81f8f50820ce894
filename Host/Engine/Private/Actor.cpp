#include "GameFramework/Actor.h"

#include "Components/SceneComponent.h"
#include "Engine/Level.h"
#include "Engine/World.h"
#include "GameFramework/Pawn.h"

AActor::AActor()
	: AActor(FObjectInitializer::Get())
{
}

AActor::AActor(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bHidden(false)
{
	PrimaryActorTick.Target = this;
	PrimaryActorTick.TickGroup = TG_PrePhysics;
}

UWorld* AActor::GetWorld() const
{
	const ULevel* const Level = GetLevel();
	return Level ? Level->GetWorld() : nullptr;
}

ULevel* AActor::GetLevel() const
{
	return GetTypedOuter<ULevel>();
}

const FString AActor::GetActorLabel(bool) const
{
	return ActorLabel.IsEmpty() ? GetName() : ActorLabel;
}

float AActor::GetGameTimeSinceCreation() const
{
	return GetWorld() ? static_cast<float>(GetWorld()->GetTimeSeconds() - CreationTime) : 0.0f;
}

void AActor::AddOwnedComponent(UActorComponent* Component)
{
	check(Component->GetOwner() == this);
	OwnedComponents.Add(Component);
}

void AActor::RemoveOwnedComponent(UActorComponent* Component)
{
	OwnedComponents.Remove(Component);
}

UActorComponent* AActor::FindComponentByClass(const TSubclassOf<UActorComponent> ComponentClass) const
{
	for (UActorComponent* Component : OwnedComponents)
	{
		if (ComponentClass && Component && Component->IsA(ComponentClass))
		{
			return Component;
		}
	}
	return nullptr;
}

void AActor::RegisterAllComponents()
{
	TArray<UActorComponent*> Components;
	GetComponents(Components);
	for (UActorComponent* Component : Components)
	{
		if (!Component->IsRegistered())
		{
			Component->RegisterComponent();
		}
	}
}

void AActor::UnregisterAllComponents(bool)
{
	TArray<UActorComponent*> Components;
	GetComponents(Components);
	for (UActorComponent* Component : Components)
	{
		Component->UnregisterComponent();
	}
}

void AActor::FinishSpawning(const FTransform& Transform, bool)
{
	if (!ensureAlwaysMsgf(!bHasFinishedSpawning, TEXT("%s has finished spawning already"), *GetFullName()))
	{
		return;
	}
	bHasFinishedSpawning = true;
	if (RootComponent)
	{
		RootComponent->SetWorldTransform(Transform);
	}
	OnConstruction(Transform);
	UserConstructionScript();
	RegisterAllComponents();
	if (GetWorld()->AreActorsInitialized())
	{
		InitializeForPlay();
	}
}

void AActor::InitializeForPlay()
{
	if (bActorInitialized)
	{
		return;
	}
	PreInitializeComponents();
	TArray<UActorComponent*> Components;
	GetComponents(Components);
	for (UActorComponent* Component : Components)
	{
		if (Component->bWantsInitializeComponent && Component->IsRegistered())
		{
			Component->InitializeComponent();
		}
	}
	PostInitializeComponents();
	checkf(bActorInitialized, TEXT("%s failed to route PostInitializeComponents"), *GetFullName());
	if (GetWorld()->HasBegunPlay())
	{
		DispatchBeginPlay();
	}
}

void AActor::RegisterTickFunctions()
{
	PrimaryActorTick.RegisterTickFunction(GetLevel());
	for (UActorComponent* Component : OwnedComponents)
	{
		if (Component->IsRegistered())
		{
			Component->PrimaryComponentTick.RegisterTickFunction(GetLevel());
		}
	}
}

void AActor::DispatchBeginPlay()
{
	if (!bHasBegunPlay && !bActorIsBeingDestroyed)
	{
		BeginPlay();
		checkf(bHasBegunPlay || bActorIsBeingDestroyed, TEXT("%s failed to route BeginPlay"), *GetFullName());
	}
}

void AActor::BeginPlay()
{
	SetLifeSpan(InitialLifeSpan);
	RegisterTickFunctions();
	TArray<UActorComponent*> Components;
	GetComponents(Components);
	for (UActorComponent* Component : Components)
	{
		if (Component->IsRegistered() && !Component->HasBegunPlay())
		{
			Component->BeginPlay();
			checkf(Component->HasBegunPlay() || !IsValid(Component), TEXT("%s failed to route BeginPlay"),
				*Component->GetFullName());
		}
	}
	bHasBegunPlay = true;
	ReceiveBeginPlay();
}

void AActor::Tick(float DeltaSeconds)
{
	ReceiveTick(DeltaSeconds);
}

void AActor::TickLifeSpan(float DeltaSeconds)
{
	if (LifeSpanLeft > 0.0f)
	{
		LifeSpanLeft -= DeltaSeconds;
		if (LifeSpanLeft <= 0.0f)
		{
			Destroy();
		}
	}
}

void AActor::SetActorTickEnabled(bool bEnabled)
{
	PrimaryActorTick.SetTickFunctionEnable(bEnabled);
}

bool AActor::Destroy(bool bNetForce, bool bShouldModifyLevel)
{
	UWorld* const World = bActorIsBeingDestroyed ? nullptr : GetWorld();
	return bActorIsBeingDestroyed || (World && World->DestroyActor(this, bNetForce, bShouldModifyLevel));
}

void AActor::Destroyed()
{
	RouteEndPlay(EEndPlayReason::Destroyed);
	ReceiveDestroyed();
	OnDestroyed.Broadcast(this);
}

void AActor::RouteEndPlay(const EEndPlayReason::Type EndPlayReason)
{
	if (bHasBegunPlay)
	{
		EndPlay(EndPlayReason);
		checkf(!bHasBegunPlay, TEXT("%s failed to route EndPlay"), *GetFullName());
	}
	PrimaryActorTick.UnRegisterTickFunction();
	TArray<UActorComponent*> Components;
	GetComponents(Components);
	for (UActorComponent* Component : Components)
	{
		if (Component->HasBeenInitialized())
		{
			Component->UninitializeComponent();
		}
	}
}

void AActor::EndPlay(const EEndPlayReason::Type EndPlayReason)
{
	ReceiveEndPlay(EndPlayReason);
	OnEndPlay.Broadcast(this, EndPlayReason);
	TArray<UActorComponent*> Components;
	GetComponents(Components);
	for (UActorComponent* Component : Components)
	{
		if (Component->HasBegunPlay())
		{
			Component->EndPlay(EndPlayReason);
		}
	}
	bHasBegunPlay = false;
}

void AActor::AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector)
{
	Super::AddReferencedObjects(InThis, Collector);
	TSet<UActorComponent*>& Components = static_cast<AActor*>(InThis)->OwnedComponents;
	TSet<UActorComponent*> Replaced;
	for (UActorComponent* Component : Components)
	{
		Collector.AddReferencedObject(Component);
		Replaced.Add(Component);
	}
	if (Collector.ReplacesReferences())
	{
		Components = MoveTemp(Replaced);
	}
}
