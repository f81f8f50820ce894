#include "Engine/World.h"

#include "Components/SceneComponent.h"
#include "Engine/Level.h"
#include "EngineUtils.h"
#include "GameFramework/GameModeBase.h"
#include "GameFramework/Pawn.h"
#include "GameFramework/PlayerController.h"
#include "Misc/ConfigCacheIni.h"
#include "UObject/Package.h"
#include "UObject/UnrealType.h"

DEFINE_LOG_CATEGORY_STATIC(LogWorld, Log, All);
DEFINE_LOG_CATEGORY_STATIC(LogSpawn, Log, All);

UWorld* UWorld::CreateWorld(const EWorldType::Type InWorldType, bool, FName WorldName, UPackage* InWorldPackage)
{
	static int32 UntitledCount = 0;
	UPackage* const Package =
		InWorldPackage ? InWorldPackage : CreatePackage(*FString::Printf(TEXT("/Temp/Untitled_%d"), UntitledCount++));
	const FName Name = WorldName.IsNone() ? FName(*FString::Printf(TEXT("Untitled_%d"), UntitledCount - 1)) : WorldName;
	UWorld* const World = NewObject<UWorld>(Package, Name, RF_Transactional);
	World->WorldType = InWorldType;
	World->PersistentLevel = NewObject<ULevel>(World, TEXT("PersistentLevel"), RF_Transactional);
	World->PersistentLevel->OwningWorld = World;
	World->AddToRoot();
	return World;
}

void UWorld::PostInitProperties()
{
	Super::PostInitProperties();
	if (!IsTemplate())
	{
		FCoreUObjectDelegates::ReloadCompleteDelegate.AddWeakLambda(
			this, [this](EReloadCompleteReason) { AdoptRemadeActors(); });
	}
}

void UWorld::DestroyWorld(bool, UWorld*)
{
	bIsTearingDown = true;
	for (AActor* Actor : GetActors())
	{
		Actor->RouteEndPlay(EEndPlayReason::LevelTransition);
		Actor->UnregisterAllComponents();
	}
	TickFunctions.Empty();
	bBegunPlay = false;
	RemoveFromRoot();
}

bool UWorld::IsGameWorld() const
{
	return WorldType == EWorldType::Game || WorldType == EWorldType::PIE || WorldType == EWorldType::GamePreview ||
		   WorldType == EWorldType::GameRPC;
}

TArray<AActor*> UWorld::GetActors() const
{
	TArray<AActor*> Actors;
	for (AActor* Actor : PersistentLevel->Actors)
	{
		if (IsValid(Actor))
		{
			Actors.Add(Actor);
		}
	}
	return Actors;
}

bool UWorld::SetGameMode(const FURL& InURL)
{
	FString ClassName = InURL.GetOption(TEXT("game="), TEXT(""));
	if (ClassName.IsEmpty() && GConfig)
	{
		GConfig->GetString(
			TEXT("/Script/EngineSettings.GameMapsSettings"), TEXT("GlobalDefaultGameMode"), ClassName, GEngineIni);
	}
	UClass* Class = ClassName.IsEmpty() ? nullptr : FindObject<UClass>(nullptr, *ClassName);
	if (!Class || !Class->IsChildOf<AGameModeBase>())
	{
		UE_CLOG(!ClassName.IsEmpty(), LogWorld, Warning, TEXT("There is no game mode %s"), *ClassName);
		Class = AGameModeBase::StaticClass();
	}
	AuthorityGameMode = SpawnActor<AGameModeBase>(Class);
	return AuthorityGameMode != nullptr;
}

void UWorld::InitializeActorsForPlay(const FURL&, bool bResetTime)
{
	if (bResetTime)
	{
		TimeSeconds = 0.0;
	}
	bActorsInitialized = true;
	for (AActor* Actor : GetActors())
	{
		Actor->InitializeForPlay();
	}
}

void UWorld::BeginPlay()
{
	checkf(bActorsInitialized, TEXT("InitializeActorsForPlay comes before BeginPlay"));
	if (AuthorityGameMode)
	{
		AuthorityGameMode->StartPlay();
	}
	else
	{
		BeginPlayOfActors();
	}
}

void UWorld::BeginPlayOfActors()
{
	bBegunPlay = true;
	for (AActor* Actor : GetActors())
	{
		Actor->DispatchBeginPlay();
	}
}

void UWorld::Tick(ELevelTick TickType, float DeltaSeconds)
{
	DeltaTimeSeconds = DeltaSeconds;
	if (TickType != LEVELTICK_PauseTick)
	{
		TimeSeconds += DeltaSeconds;
	}
	if (TickType != LEVELTICK_TimeOnly && bBegunPlay)
	{
		RunTickFunctions(TickType, DeltaSeconds);
		for (AActor* Actor : GetActors())
		{
			Actor->TickLifeSpan(TickType == LEVELTICK_PauseTick ? 0.0f : DeltaSeconds);
		}
	}
	PersistentLevel->Actors.RemoveAll([](const TObjectPtr<AActor>& Actor) { return !Actor; });
}

void UWorld::RunTickFunctions(ELevelTick TickType, float DeltaSeconds)
{
	TArray<FTickFunction*> Due = TickFunctions;
	Due.StableSort(
		[](const FTickFunction& A, const FTickFunction& B) { return A.TickGroup.GetValue() < B.TickGroup.GetValue(); });
	for (FTickFunction* Function : Due)
	{
		if (TickFunctions.Contains(Function)) // not gone in the meantime
		{
			Function->RunIfDue(DeltaSeconds, TickType);
		}
	}
}

APlayerController* UWorld::GetFirstPlayerController() const
{
	const TActorIterator<APlayerController> First(this);
	return First ? *First : nullptr;
}

AActor* UWorld::SpawnActor(
	UClass* Class, const FVector* Location, const FRotator* Rotation, const FActorSpawnParameters& SpawnParameters)
{
	const FTransform Transform(
		Rotation ? *Rotation : FRotator::ZeroRotator, Location ? *Location : FVector::ZeroVector);
	return SpawnActor(Class, &Transform, SpawnParameters);
}

AActor* UWorld::SpawnActor(UClass* Class, const FTransform* UserTransform, const FActorSpawnParameters& SpawnParameters)
{
	AActor* const Actor = MakeActor(Class, SpawnParameters);
	if (!Actor)
	{
		return nullptr;
	}
	Actor->CreationTime = TimeSeconds;
	Actor->SetOwner(SpawnParameters.Owner);
	Actor->SetInstigator(SpawnParameters.Instigator);
	PersistentLevel->Actors.Add(Actor);
	const FTransform Transform = UserTransform ? *UserTransform : FTransform::Identity;
	if (Actor->GetRootComponent())
	{
		// A root that does not stand at the origin of its class stays there, relative to the new place.
		const FTransform OfClass = Actor->GetRootComponent()->GetRelativeTransform();
		Actor->GetRootComponent()->SetWorldTransform(OfClass * Transform);
	}
	Actor->PostActorCreated();
	if (!SpawnParameters.bDeferConstruction)
	{
		Actor->FinishSpawning(Actor->GetTransform());
	}
	return Actor;
}

AActor* UWorld::MakeActor(UClass* Class, const FActorSpawnParameters& SpawnParameters)
{
	using ENameMode = FActorSpawnParameters::ESpawnActorNameMode;
	if (!Class || !Class->IsChildOf<AActor>() || Class->HasAnyClassFlags(CLASS_Abstract | CLASS_NewerVersionExists))
	{
		UE_LOG(LogSpawn, Warning, TEXT("SpawnActor failed because %s"),
			Class ? *(Class->GetName() + TEXT(" is not an actor class, abstract or out of date"))
				  : TEXT("no class was specified"));
		return nullptr;
	}
	if (bIsTearingDown)
	{
		UE_LOG(LogSpawn, Warning, TEXT("SpawnActor failed because we are in the process of tearing down the world"));
		return nullptr;
	}
	FName Name = SpawnParameters.Name;
	if (!Name.IsNone() && StaticFindObjectFast(nullptr, PersistentLevel, Name))
	{
		checkf(SpawnParameters.NameMode != ENameMode::Required_Fatal,
			TEXT("Cannot generate unique name for '%s' in level '%s'."), *Name.ToString(),
			*PersistentLevel->GetFullName());
		UE_CLOG(SpawnParameters.NameMode == ENameMode::Required_ErrorAndReturnNull, LogSpawn, Error,
			TEXT("An actor of name '%s' already exists in level '%s'."), *Name.ToString(),
			*PersistentLevel->GetFullName());
		if (SpawnParameters.NameMode != ENameMode::Requested)
		{
			return nullptr;
		}
		Name = MakeUniqueObjectName(PersistentLevel, Class, Name);
	}
	return NewObject<AActor>(PersistentLevel, Class, Name, SpawnParameters.ObjectFlags, SpawnParameters.Template);
}

bool UWorld::DestroyActor(AActor* Actor, bool, bool)
{
	check(Actor && Actor->GetWorld() == this);
	if (Actor->IsActorBeingDestroyed())
	{
		return true;
	}
	Actor->bActorIsBeingDestroyed = true;
	Actor->Destroyed();
	for (TObjectPtr<AActor>& Each : PersistentLevel->Actors)
	{
		if (Each == Actor)
		{
			Each = nullptr;
		}
	}
	Actor->DetachFromActor(FDetachmentTransformRules::KeepWorldTransform);
	Actor->UnregisterAllComponents();
	Actor->MarkAsGarbage();
	TArray<UActorComponent*> Components;
	Actor->GetComponents(Components);
	for (UActorComponent* Component : Components)
	{
		Component->MarkAsGarbage();
	}
	return true;
}

namespace WorldImpl
{
TArray<UActorComponent*> GetComponents(const AActor& Actor)
{
	TArray<UActorComponent*> Components;
	Actor.GetComponents(Components);
	return Components;
}

void Unbind(const TArray<UObject*>& Targets, UObject& From)
{
	for (TFieldIterator<FMulticastInlineDelegateProperty> It(From.GetClass()); It; ++It)
	{
		for (UObject* Target : Targets)
		{
			It->GetPropertyValuePtr_InContainer(&From)->RemoveAll(Target);
		}
	}
}
}

void UWorld::AdoptRemadeActors()
{
	const TArray<AActor*> Actors = bActorsInitialized && !bIsTearingDown ? GetActors() : TArray<AActor*>();
	TArray<UObject*> Remade;
	for (AActor* Actor : Actors)
	{
		if (!Actor->IsActorInitialized())
		{
			Remade.Add(Actor);
			Remade.Append(WorldImpl::GetComponents(*Actor));
		}
	}
	// They begin play again, and bind again what they bound there.
	for (AActor* Actor : Actors)
	{
		WorldImpl::Unbind(Remade, *Actor);
		for (UActorComponent* Component : WorldImpl::GetComponents(*Actor))
		{
			WorldImpl::Unbind(Remade, *Component);
		}
	}
	for (AActor* Actor : Actors)
	{
		Actor->bHasFinishedSpawning = true;
		Actor->RegisterAllComponents();
		Actor->InitializeForPlay();
	}
}
