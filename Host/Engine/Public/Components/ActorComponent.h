#pragma once

#include "Engine/EngineTypes.h"
#include "Templates/Casts.h"
#include "Templates/SubclassOf.h"
#include "UObject/Object.h"
#include "ActorComponent.generated.h"

class AActor;
class UActorComponent;

DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(
	FActorComponentActivatedSignature, UActorComponent*, Component, bool, bReset);
DECLARE_DYNAMIC_MULTICAST_DELEGATE_OneParam(FActorComponentDeactivateSignature, UActorComponent*, Component);

/**
 * A part of an actor. It is made by the actor's constructor or by NewObject with the actor as outer, and lives in three
 * steps: registered with the world, initialized, in play.
 */
UCLASS(DefaultToInstanced, BlueprintType, Abstract, meta = (ShowWorldContextPin), Config = Engine)
class ENGINE_API UActorComponent : public UObject
{
	GENERATED_BODY()

public:
	UActorComponent(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UPROPERTY(EditDefaultsOnly, Category = "ComponentTick")
	FActorComponentTickFunction PrimaryComponentTick;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Tags")
	TArray<FName> ComponentTags;

	/** Whether the component is active as soon as it is registered. */
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Activation")
	uint8 bAutoActivate : 1;

	/** For constructors: InitializeComponent is called for those alone that ask for it. */
	uint8 bWantsInitializeComponent : 1;

	UPROPERTY(BlueprintAssignable, Category = "Components|Activation")
	FActorComponentActivatedSignature OnComponentActivated;

	UPROPERTY(BlueprintAssignable, Category = "Components|Activation")
	FActorComponentDeactivateSignature OnComponentDeactivated;

	/** Null for a component that no actor is around. */
	UFUNCTION(BlueprintCallable, Category = "Components", meta = (Keywords = "Actor Owning Parent"))
	AActor* GetOwner() const;
	template <class T>
	T* GetOwner() const
	{
		return Cast<T>(GetOwner());
	}
	UWorld* GetWorld() const override;

	UFUNCTION(BlueprintCallable, Category = "Components")
	bool ComponentHasTag(FName Tag) const { return ComponentTags.Contains(Tag); }

	/** Makes a component that was made by NewObject part of the world. What its actor's play has reached, it does, too.
	 */
	void RegisterComponent();
	void RegisterComponentWithWorld(UWorld* InWorld);
	void UnregisterComponent();
	bool IsRegistered() const { return bRegistered; }
	/** Ends play, takes the component out of its actor and marks it as garbage. */
	virtual void DestroyComponent(bool bPromoteChildren = false);
	bool IsBeingDestroyed() const { return bIsBeingDestroyed; }

	virtual void OnComponentCreated() {}
	virtual void OnComponentDestroyed(bool bDestroyingHierarchy) {}
	virtual void OnRegister();
	virtual void OnUnregister();
	virtual void InitializeComponent() { bHasBeenInitialized = true; }
	virtual void UninitializeComponent() { bHasBeenInitialized = false; }
	virtual void BeginPlay();
	virtual void EndPlay(const EEndPlayReason::Type EndPlayReason);
	bool HasBeenInitialized() const { return bHasBeenInitialized; }
	bool HasBegunPlay() const { return bHasBegunPlay; }

	virtual void TickComponent(
		float DeltaTime, enum ELevelTick TickType, FActorComponentTickFunction* ThisTickFunction);
	UFUNCTION(BlueprintCallable, Category = "Components|Tick")
	virtual void SetComponentTickEnabled(bool bEnabled);
	UFUNCTION(BlueprintCallable, Category = "Components|Tick")
	virtual bool IsComponentTickEnabled() const;
	UFUNCTION(BlueprintCallable, Category = "Components|Tick")
	void SetComponentTickInterval(float TickInterval) { PrimaryComponentTick.TickInterval = TickInterval; }

	UFUNCTION(BlueprintCallable, Category = "Components|Activation")
	virtual void Activate(bool bReset = false);
	UFUNCTION(BlueprintCallable, Category = "Components|Activation")
	virtual void Deactivate();
	UFUNCTION(BlueprintCallable, Category = "Components|Activation")
	virtual void SetActive(bool bNewActive, bool bReset = false);
	UFUNCTION(BlueprintCallable, Category = "Components|Activation")
	virtual bool IsActive() const { return bIsActive; }

	void PostInitProperties() override;
	void BeginDestroy() override;

protected:
	UFUNCTION(BlueprintImplementableEvent, meta = (DisplayName = "Begin Play"))
	void ReceiveBeginPlay();
	UFUNCTION(BlueprintImplementableEvent, meta = (Keywords = "delete", DisplayName = "End Play"))
	void ReceiveEndPlay(EEndPlayReason::Type EndPlayReason);
	UFUNCTION(BlueprintImplementableEvent, meta = (DisplayName = "Tick"))
	void ReceiveTick(float DeltaSeconds);

private:
	friend struct FActorComponentTickFunction;

	UPROPERTY(Transient)
	uint8 bIsActive : 1;

	bool bRegistered = false;
	bool bHasBeenInitialized = false;
	bool bHasBegunPlay = false;
	bool bIsBeingDestroyed = false;
};
