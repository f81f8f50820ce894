#pragma once

#include "Engine/EngineTypes.h"
#include "Templates/Casts.h"
#include "Templates/SubclassOf.h"
#include "UObject/Object.h"
#include "World.generated.h"

class AActor;
class AGameModeBase;
class APawn;
class APlayerController;
class ULevel;

struct FActorSpawnParameters
{
	enum class ESpawnActorNameMode : uint8
	{
		Required_Fatal,              // a name that is taken ends the process
		Required_ErrorAndReturnNull, // ... is an error in the log, and nothing is spawned
		Required_ReturnNull,         // ... and nothing is spawned
		Requested,                   // ... gets a number
	};

	FName Name;                 // none: the class's, with a number
	AActor* Template = nullptr; // what the values are copied from
	AActor* Owner = nullptr;
	APawn* Instigator = nullptr;
	ULevel* OverrideLevel = nullptr; // none: the world's own
	ESpawnActorCollisionHandlingMethod SpawnCollisionHandlingOverride = ESpawnActorCollisionHandlingMethod::Undefined;
	ESpawnActorNameMode NameMode = ESpawnActorNameMode::Required_Fatal;
	EObjectFlags ObjectFlags = RF_Transactional;
	uint8 bNoFail : 1 = false;
	uint8 bDeferConstruction : 1 = false; // the caller ends with FinishSpawning
};

/**
 * Where actors live and time passes.
 *
 * CreateWorld, InitializeActorsForPlay, BeginPlay, any number of Ticks, DestroyWorld: the editor's host plays no game
 * by itself, tests do.
 */
UCLASS(Config = Engine)
class ENGINE_API UWorld : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(Transient)
	TObjectPtr<ULevel> PersistentLevel;

	EWorldType::Type WorldType = EWorldType::None;

	/** The world is kept until DestroyWorld. Without a name it is called after its package, "/Temp/Untitled_<n>". */
	static UWorld* CreateWorld(const EWorldType::Type InWorldType, bool bInformEngineOfWorld,
		FName WorldName = NAME_None, UPackage* InWorldPackage = nullptr);
	/** Ends the play of all actors. Garbage collection frees it all. */
	void DestroyWorld(bool bInformEngineOfWorld, UWorld* NewWorld = nullptr);

	/**
	 * Spawns the game mode: that of the option "game=" of the URL, or else the project's, which is
	 * GlobalDefaultGameMode in [/Script/EngineSettings.GameMapsSettings] of its engine configuration, or else
	 * AGameModeBase.
	 *
	 * @return whether it is there
	 */
	bool SetGameMode(const FURL& InURL);
	/** Registers and initializes what is in the world already. */
	void InitializeActorsForPlay(const FURL& InURL, bool bResetTime = true);
	void BeginPlay();
	bool HasBegunPlay() const { return bBegunPlay; }
	bool AreActorsInitialized() const { return bActorsInitialized; }
	void Tick(ELevelTick TickType, float DeltaSeconds);

	/** Seconds since play began, as it passes for actors. */
	double GetTimeSeconds() const { return TimeSeconds; }
	float GetDeltaSeconds() const { return DeltaTimeSeconds; }
	bool IsGameWorld() const;
	ULevel* GetCurrentLevel() const { return PersistentLevel; }

	AGameModeBase* GetAuthGameMode() const { return AuthorityGameMode; }
	template <class T>
	T* GetAuthGameMode() const
	{
		return Cast<T>(AuthorityGameMode);
	}
	/** Null when there is none. */
	APlayerController* GetFirstPlayerController() const;

	/**
	 * @param Class  null, abstract, or not an actor's: an error in the log, and null
	 * @return null too when the world is being destroyed
	 */
	AActor* SpawnActor(UClass* Class, const FTransform* Transform,
		const FActorSpawnParameters& SpawnParameters = FActorSpawnParameters());
	AActor* SpawnActor(UClass* Class, const FVector* Location = nullptr, const FRotator* Rotation = nullptr,
		const FActorSpawnParameters& SpawnParameters = FActorSpawnParameters());
	template <class T>
	T* SpawnActor(const FActorSpawnParameters& SpawnParameters = FActorSpawnParameters())
	{
		return Cast<T>(SpawnActor(T::StaticClass(), nullptr, nullptr, SpawnParameters));
	}
	template <class T>
	T* SpawnActor(const FVector& Location, const FRotator& Rotation,
		const FActorSpawnParameters& SpawnParameters = FActorSpawnParameters())
	{
		return SpawnActor<T>(T::StaticClass(), Location, Rotation, SpawnParameters);
	}
	template <class T>
	T* SpawnActor(UClass* Class, const FActorSpawnParameters& SpawnParameters = FActorSpawnParameters())
	{
		return Class ? Cast<T>(SpawnActor(Class, nullptr, nullptr, SpawnParameters)) : nullptr;
	}
	template <class T>
	T* SpawnActor(UClass* Class, const FVector& Location, const FRotator& Rotation,
		const FActorSpawnParameters& SpawnParameters = FActorSpawnParameters())
	{
		return Cast<T>(SpawnActor(Class, &Location, &Rotation, SpawnParameters));
	}
	template <class T>
	T* SpawnActor(UClass* Class, const FTransform& Transform,
		const FActorSpawnParameters& SpawnParameters = FActorSpawnParameters())
	{
		return Cast<T>(SpawnActor(Class, &Transform, SpawnParameters));
	}
	/** @return whether it is destroyed, or was being so already */
	bool DestroyActor(AActor* Actor, bool bNetForce = false, bool bShouldModifyLevel = true);

	UWorld* GetWorld() const override { return const_cast<UWorld*>(this); }
	void PostInitProperties() override;

private:
	friend struct FTickFunction;
	friend class AGameModeBase;

	/** Null too when the names in use forbid it. */
	AActor* MakeActor(UClass* Class, const FActorSpawnParameters& SpawnParameters);
	/** A copy, since actors come and go while it is gone through. */
	TArray<AActor*> GetActors() const;
	void BeginPlayOfActors();
	void RunTickFunctions(ELevelTick TickType, float DeltaSeconds);
	/** Actors that a hot reload has recreated become part of the world again. */
	void AdoptRemadeActors();

	UPROPERTY(Transient)
	TObjectPtr<AGameModeBase> AuthorityGameMode;

	TArray<FTickFunction*> TickFunctions;
	double TimeSeconds = 0.0;
	float DeltaTimeSeconds = 0.0f;
	bool bActorsInitialized = false;
	bool bBegunPlay = false;
	bool bIsTearingDown = false;
};
