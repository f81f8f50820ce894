#pragma once

#include "Components/ActorComponent.h"
#include "Containers/Set.h"
#include "Engine/EngineTypes.h"
#include "Actor.generated.h"

class APawn;
class UInputComponent;
class ULevel;
class USceneComponent;

DECLARE_DYNAMIC_MULTICAST_DELEGATE_OneParam(FActorDestroyedSignature, AActor*, DestroyedActor);
DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(
	FActorEndPlaySignature, AActor*, Actor, EEndPlayReason::Type, EndPlayReason);
DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(
	FActorBeginOverlapSignature, AActor*, OverlappedActor, AActor*, OtherActor);
DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(FActorEndOverlapSignature, AActor*, OverlappedActor, AActor*, OtherActor);

/**
 * Something that can be put into a world. Its place is that of its root component.
 *
 * UWorld::SpawnActor makes one: constructor, OnConstruction, components registered and initialized, and BeginPlay as
 * soon as the world is in play. It ends with Destroy.
 */
UCLASS(BlueprintType, Blueprintable, Config = Engine, meta = (ShortTooltip = "An Actor can be placed in the world."))
class ENGINE_API AActor : public UObject
{
	GENERATED_BODY()

public:
	AActor();
	AActor(const FObjectInitializer& ObjectInitializer);

	UPROPERTY(EditDefaultsOnly, Category = "Tick")
	FActorTickFunction PrimaryActorTick;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Actor", AdvancedDisplay)
	TArray<FName> Tags;

	/** Seconds from BeginPlay until the actor destroys itself; 0: never. */
	UPROPERTY(EditDefaultsOnly, BlueprintReadOnly, Category = "Actor")
	float InitialLifeSpan = 0.0f;

	UPROPERTY(BlueprintAssignable, Category = "Collision")
	FActorBeginOverlapSignature OnActorBeginOverlap;

	UPROPERTY(BlueprintAssignable, Category = "Collision")
	FActorEndOverlapSignature OnActorEndOverlap;

	UPROPERTY(BlueprintAssignable, Category = "Game")
	FActorDestroyedSignature OnDestroyed;

	UPROPERTY(BlueprintAssignable, Category = "Game")
	FActorEndPlaySignature OnEndPlay;

	/** Null for an actor outside of a world, such as a default object. */
	UWorld* GetWorld() const override;
	ULevel* GetLevel() const;
	/** True: nothing is replicated here. */
	UFUNCTION(BlueprintCallable, Category = "Networking")
	bool HasAuthority() const { return true; }
	UFUNCTION(BlueprintCallable, Category = "Actor")
	AActor* GetOwner() const { return Owner; }
	UFUNCTION(BlueprintCallable, Category = "Actor")
	virtual void SetOwner(AActor* NewOwner) { Owner = NewOwner; }
	UFUNCTION(BlueprintCallable, Category = "Game")
	APawn* GetInstigator() const { return Instigator; }
	void SetInstigator(APawn* InInstigator) { Instigator = InInstigator; }
	UFUNCTION(BlueprintCallable, Category = "Actor")
	bool ActorHasTag(FName Tag) const { return Tags.Contains(Tag); }

	/** As the editor shows it: the actor's own label or its name. */
	const FString GetActorLabel(bool bCreateIfNone = true) const;
	void SetActorLabel(const FString& NewActorLabel, bool bMarkDirty = true) { ActorLabel = NewActorLabel; }

	// The place, that of the root component. Without one: the origin, and setting it answers false.
	USceneComponent* GetRootComponent() const { return RootComponent; }
	/** Null, or a component of this actor. */
	bool SetRootComponent(USceneComponent* NewRootComponent);
	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Get Actor Transform"))
	FTransform GetTransform() const;
	FTransform GetActorTransform() const { return GetTransform(); }
	FVector GetActorLocation() const { return GetTransform().GetLocation(); }
	FRotator GetActorRotation() const { return GetTransform().Rotator(); }
	FQuat GetActorQuat() const { return GetTransform().GetRotation(); }
	UFUNCTION(BlueprintCallable, Category = "Transformation")
	FVector GetActorScale3D() const { return GetTransform().GetScale3D(); }
	UFUNCTION(BlueprintCallable, Category = "Transformation")
	FVector GetActorForwardVector() const { return GetActorQuat().GetForwardVector(); }
	UFUNCTION(BlueprintCallable, Category = "Transformation")
	FVector GetActorRightVector() const { return GetActorQuat().GetRightVector(); }
	UFUNCTION(BlueprintCallable, Category = "Transformation")
	FVector GetActorUpVector() const { return GetActorQuat().GetUpVector(); }
	bool SetActorLocation(const FVector& NewLocation, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);
	bool SetActorRotation(FRotator NewRotation, ETeleportType Teleport = ETeleportType::None);
	bool SetActorLocationAndRotation(FVector NewLocation, FRotator NewRotation, bool bSweep = false,
		FHitResult* OutSweepHitResult = nullptr, ETeleportType Teleport = ETeleportType::None);
	bool SetActorTransform(const FTransform& NewTransform, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);
	UFUNCTION(BlueprintCallable, Category = "Transformation")
	void SetActorScale3D(FVector NewScale3D);
	void AddActorWorldOffset(FVector DeltaLocation, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);
	/** Centimetres between the two places; 0 for no actor. */
	UFUNCTION(BlueprintCallable, Category = "Utilities|Transformation")
	float GetDistanceTo(const AActor* OtherActor) const;
	UFUNCTION(BlueprintCallable, Category = "Transformation")
	virtual FVector GetVelocity() const;

	bool AttachToActor(
		AActor* ParentActor, const FAttachmentTransformRules& AttachmentRules, FName SocketName = NAME_None);
	bool AttachToComponent(
		USceneComponent* Parent, const FAttachmentTransformRules& AttachmentRules, FName SocketName = NAME_None);
	void DetachFromActor(const FDetachmentTransformRules& DetachmentRules);
	UFUNCTION(BlueprintCallable, Category = "Actor")
	AActor* GetAttachParentActor() const;

	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Get Actor Location"))
	FVector K2_GetActorLocation() const { return GetActorLocation(); }
	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Get Actor Rotation"))
	FRotator K2_GetActorRotation() const { return GetActorRotation(); }
	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Get Root Component"))
	USceneComponent* K2_GetRootComponent() const { return RootComponent; }
	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Set Actor Location"))
	bool K2_SetActorLocation(FVector NewLocation, bool bSweep, FHitResult& SweepHitResult, bool bTeleport);
	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Set Actor Rotation"))
	bool K2_SetActorRotation(FRotator NewRotation, bool bTeleportPhysics) { return SetActorRotation(NewRotation); }
	UFUNCTION(BlueprintCallable, Category = "Actor", meta = (Keywords = "Delete", DisplayName = "Destroy Actor"))
	void K2_DestroyActor() { Destroy(); }

	UFUNCTION(BlueprintCallable, Category = "Rendering", meta = (DisplayName = "Set Actor Hidden In Game"))
	virtual void SetActorHiddenInGame(bool bNewHidden) { bHidden = bNewHidden; }
	bool IsHidden() const { return bHidden; }

	// Components. Those of a Blueprint's own are in no default object, so there only the constructors' are.
	const TSet<UActorComponent*>& GetComponents() const { return OwnedComponents; }
	template <class AllocatorType = void>
	void GetComponents(TArray<UActorComponent*>& OutComponents, bool bIncludeFromChildActors = false) const
	{
		GetComponents(TSubclassOf<UActorComponent>(UActorComponent::StaticClass()), OutComponents);
	}
	template <class T>
	void GetComponents(TArray<T*>& OutComponents, bool bIncludeFromChildActors = false) const
	{
		GetComponents(TSubclassOf<UActorComponent>(T::StaticClass()), OutComponents);
	}
	template <class T>
	void GetComponents(TArray<TObjectPtr<T>>& OutComponents, bool bIncludeFromChildActors = false) const
	{
		TArray<T*> Components;
		GetComponents(Components, bIncludeFromChildActors);
		OutComponents.Reset();
		OutComponents.Append(Components);
	}
	template <class T>
	void GetComponents(TSubclassOf<UActorComponent> ComponentClass, TArray<T*>& OutComponents,
		bool bIncludeFromChildActors = false) const
	{
		OutComponents.Reset();
		for (UActorComponent* Component : OwnedComponents)
		{
			if (Component && Component->IsA(ComponentClass) && Component->IsA(T::StaticClass()))
			{
				OutComponents.Add(static_cast<T*>(Component));
			}
		}
	}
	virtual UActorComponent* FindComponentByClass(const TSubclassOf<UActorComponent> ComponentClass) const;
	template <class T>
	T* FindComponentByClass() const
	{
		return static_cast<T*>(FindComponentByClass(T::StaticClass()));
	}
	UFUNCTION(BlueprintCallable, Category = "Actor", meta = (ComponentClass = "/Script/Engine.ActorComponent"))
	UActorComponent* GetComponentByClass(TSubclassOf<UActorComponent> ComponentClass) const
	{
		return FindComponentByClass(ComponentClass);
	}
	void AddOwnedComponent(UActorComponent* Component);
	void RemoveOwnedComponent(UActorComponent* Component);
	virtual void RegisterAllComponents();
	virtual void UnregisterAllComponents(bool bForReregister = false);

	virtual void Tick(float DeltaSeconds);
	UFUNCTION(BlueprintCallable, Category = "Actor|Tick")
	void SetActorTickEnabled(bool bEnabled);
	UFUNCTION(BlueprintCallable, Category = "Actor|Tick")
	bool IsActorTickEnabled() const { return PrimaryActorTick.IsTickFunctionEnabled(); }
	UFUNCTION(BlueprintCallable, Category = "Actor|Tick")
	void SetActorTickInterval(float TickInterval) { PrimaryActorTick.TickInterval = TickInterval; }

	/** @return whether it is destroyed, or is being so. An actor in no world cannot be. */
	bool Destroy(bool bNetForce = false, bool bShouldModifyLevel = true);
	UFUNCTION(BlueprintCallable, Category = "Game")
	bool IsActorBeingDestroyed() const { return bActorIsBeingDestroyed; }
	/** Seconds from now until the actor destroys itself; 0: never. */
	UFUNCTION(BlueprintCallable, Category = "Actor", meta = (Keywords = "delete destroy"))
	virtual void SetLifeSpan(float InLifespan) { LifeSpanLeft = InLifespan; }
	UFUNCTION(BlueprintCallable, Category = "Actor", meta = (Keywords = "delete destroy"))
	virtual float GetLifeSpan() const { return LifeSpanLeft; }
	UFUNCTION(BlueprintCallable, Category = "Actor")
	float GetGameTimeSinceCreation() const;

	UFUNCTION(
		BlueprintImplementableEvent, meta = (BlueprintInternalUseOnly = "true", DisplayName = "Construction Script"))
	void UserConstructionScript();
	virtual void PostActorCreated() {}
	virtual void OnConstruction(const FTransform& Transform) {}
	virtual void PreInitializeComponents() {}
	virtual void PostInitializeComponents() { bActorInitialized = true; }
	virtual void EndPlay(const EEndPlayReason::Type EndPlayReason);
	virtual void Destroyed();
	bool IsActorInitialized() const { return bActorInitialized; }
	bool HasActorBegunPlay() const { return bHasBegunPlay; }

	/** For the world, and for who spawns with bDeferConstruction: construction, and all that the world's play has
	 * reached. */
	void FinishSpawning(const FTransform& Transform, bool bIsDefaultTransform = false);
	void DispatchBeginPlay();
	void RouteEndPlay(const EEndPlayReason::Type EndPlayReason);

	static void AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector);

	/** Made for whoever has input for the actor; null until then. */
	UPROPERTY(DuplicateTransient)
	TObjectPtr<UInputComponent> InputComponent;

protected:
	virtual void BeginPlay();

	UFUNCTION(BlueprintImplementableEvent, meta = (DisplayName = "BeginPlay"))
	void ReceiveBeginPlay();
	UFUNCTION(BlueprintImplementableEvent, meta = (DisplayName = "Tick"))
	void ReceiveTick(float DeltaSeconds);
	UFUNCTION(BlueprintImplementableEvent, meta = (Keywords = "delete", DisplayName = "End Play"))
	void ReceiveEndPlay(EEndPlayReason::Type EndPlayReason);
	UFUNCTION(BlueprintImplementableEvent, meta = (Keywords = "delete", DisplayName = "Destroyed"))
	void ReceiveDestroyed();
	UFUNCTION(BlueprintImplementableEvent, meta = (DisplayName = "ActorBeginOverlap"), Category = "Collision")
	void ReceiveActorBeginOverlap(AActor* OtherActor);
	UFUNCTION(BlueprintImplementableEvent, meta = (DisplayName = "ActorEndOverlap"), Category = "Collision")
	void ReceiveActorEndOverlap(AActor* OtherActor);

	UPROPERTY(BlueprintGetter = K2_GetRootComponent, Category = "Transformation")
	TObjectPtr<USceneComponent> RootComponent;

private:
	friend class UWorld;
	friend struct FActorTickFunction;

	/** Initializes the components and, in a world that is in play, begins play. */
	void InitializeForPlay();
	/** The actor's own tick, and those of its components. */
	void RegisterTickFunctions();
	void TickLifeSpan(float DeltaSeconds);

	UPROPERTY(Interp, EditAnywhere, Category = "Rendering", BlueprintReadOnly,
		meta = (AllowPrivateAccess = "true", DisplayName = "Actor Hidden In Game"))
	uint8 bHidden : 1;

	UPROPERTY()
	TObjectPtr<AActor> Owner;

	UPROPERTY(BlueprintReadOnly, Category = "Actor", meta = (AllowPrivateAccess = "true"))
	TObjectPtr<APawn> Instigator;

	UPROPERTY()
	FString ActorLabel;

	TSet<UActorComponent*> OwnedComponents;
	bool bHasFinishedSpawning = false;
	bool bActorInitialized = false;
	bool bHasBegunPlay = false;
	bool bActorIsBeingDestroyed = false;
	double CreationTime = 0.0; // of the world, seconds
	float LifeSpanLeft = 0.0f; // seconds
};
