#include "Components/ActorComponent.h"

#include "Components/SceneComponent.h"
#include "Engine/Level.h"
#include "Engine/World.h"
#include "GameFramework/Actor.h"

DEFINE_LOG_CATEGORY_STATIC(LogActorComponent, Log, All);

UActorComponent::UActorComponent(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bAutoActivate(false)
	, bWantsInitializeComponent(false)
	, bIsActive(false)
{
	PrimaryComponentTick.TickGroup = TG_DuringPhysics;
}

void UActorComponent::PostInitProperties()
{
	Super::PostInitProperties();
	PrimaryComponentTick.Target = this;
	if (AActor* const Owner = GetOwner())
	{
		Owner->AddOwnedComponent(this);
	}
}

void UActorComponent::BeginDestroy()
{
	PrimaryComponentTick.UnRegisterTickFunction();
	Super::BeginDestroy();
}

AActor* UActorComponent::GetOwner() const
{
	return GetTypedOuter<AActor>();
}

UWorld* UActorComponent::GetWorld() const
{
	const AActor* const Owner = GetOwner();
	return Owner ? Owner->GetWorld() : Super::GetWorld();
}

void UActorComponent::RegisterComponent()
{
	RegisterComponentWithWorld(GetWorld());
}

void UActorComponent::RegisterComponentWithWorld(UWorld* InWorld)
{
	if (bRegistered || bIsBeingDestroyed)
	{
		UE_LOG(LogActorComponent, Log, TEXT("RegisterComponentWithWorld: (%s) Already registered. Aborting."),
			*GetPathName());
		return;
	}
	if (!InWorld)
	{
		UE_LOG(
			LogActorComponent, Log, TEXT("RegisterComponentWithWorld: (%s) No world to register with"), *GetPathName());
		return;
	}
	OnRegister();
	const AActor* const Owner = GetOwner();
	if (Owner && Owner->IsActorInitialized())
	{
		if (bWantsInitializeComponent && !bHasBeenInitialized)
		{
			InitializeComponent();
		}
		if (Owner->HasActorBegunPlay() && !bHasBegunPlay)
		{
			PrimaryComponentTick.RegisterTickFunction(Owner->GetLevel());
			BeginPlay();
		}
	}
}

void UActorComponent::UnregisterComponent()
{
	if (bRegistered)
	{
		PrimaryComponentTick.UnRegisterTickFunction();
		OnUnregister();
	}
}

void UActorComponent::DestroyComponent(bool bPromoteChildren)
{
	if (bIsBeingDestroyed)
	{
		return;
	}
	bIsBeingDestroyed = true;
	if (bHasBegunPlay)
	{
		EndPlay(EEndPlayReason::Destroyed);
	}
	if (bHasBeenInitialized)
	{
		UninitializeComponent();
	}
	UnregisterComponent();
	if (AActor* const Owner = GetOwner())
	{
		if (Owner->GetRootComponent() == this)
		{
			Owner->SetRootComponent(nullptr);
		}
		Owner->RemoveOwnedComponent(this);
	}
	OnComponentDestroyed(false);
	MarkAsGarbage();
}

void UActorComponent::OnRegister()
{
	bRegistered = true;
	if (bAutoActivate)
	{
		Activate(true);
	}
}

void UActorComponent::OnUnregister()
{
	bRegistered = false;
}

void UActorComponent::BeginPlay()
{
	checkf(bRegistered && !bHasBegunPlay, TEXT("%s begins play without being registered, or twice"), *GetFullName());
	bHasBegunPlay = true;
	ReceiveBeginPlay();
}

void UActorComponent::EndPlay(const EEndPlayReason::Type EndPlayReason)
{
	check(bHasBegunPlay);
	ReceiveEndPlay(EndPlayReason);
	bHasBegunPlay = false;
}

void UActorComponent::TickComponent(float DeltaTime, ELevelTick, FActorComponentTickFunction*)
{
	ReceiveTick(DeltaTime);
}

void UActorComponent::SetComponentTickEnabled(bool bEnabled)
{
	PrimaryComponentTick.SetTickFunctionEnable(bEnabled);
}

bool UActorComponent::IsComponentTickEnabled() const
{
	return PrimaryComponentTick.IsTickFunctionEnabled();
}

void UActorComponent::Activate(bool bReset)
{
	if (bReset || !bIsActive)
	{
		bIsActive = true;
		SetComponentTickEnabled(true);
		OnComponentActivated.Broadcast(this, bReset);
	}
}

void UActorComponent::Deactivate()
{
	if (bIsActive)
	{
		bIsActive = false;
		SetComponentTickEnabled(false);
		OnComponentDeactivated.Broadcast(this);
	}
}

void UActorComponent::SetActive(bool bNewActive, bool bReset)
{
	bNewActive ? Activate(bReset) : Deactivate();
}
