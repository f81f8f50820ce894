#pragma once

#include "Components/ActorComponent.h"
#include "SceneComponent.generated.h"

/**
 * A component with a place: a transform relative to the component that it is attached to, or to the world.
 *
 * Nothing is rendered and nothing collides, so a move always goes all the way: bSweep changes nothing, and no hit comes
 * back.
 */
UCLASS(ClassGroup = (Utility, Common), BlueprintType, HideCategories = (Trigger, PhysicsVolume),
	meta = (BlueprintSpawnableComponent))
class ENGINE_API USceneComponent : public UActorComponent
{
	GENERATED_BODY()

public:
	USceneComponent(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UPROPERTY(Category = "Mobility", EditAnywhere, BlueprintReadOnly)
	TEnumAsByte<EComponentMobility::Type> Mobility = EComponentMobility::Movable;

	/**
	 * For constructors, and before the component is registered: tells what it is to be attached to then. Attaching to
	 * itself, or after that time, is an error that is reported and changes nothing.
	 */
	void SetupAttachment(USceneComponent* InParent, FName InSocketName = NAME_None);
	/** @return false when the parent is null, the component itself or attached to it */
	bool AttachToComponent(
		USceneComponent* InParent, const FAttachmentTransformRules& AttachmentRules, FName InSocketName = NAME_None);
	virtual void DetachFromComponent(const FDetachmentTransformRules& DetachmentRules);

	UFUNCTION(BlueprintCallable, Category = "Transformation")
	USceneComponent* GetAttachParent() const { return AttachParent; }
	UFUNCTION(BlueprintCallable, Category = "Transformation")
	FName GetAttachSocketName() const { return AttachSocketName; }
	const TArray<TObjectPtr<USceneComponent>>& GetAttachChildren() const { return AttachChildren; }
	UFUNCTION(BlueprintCallable, Category = "Components")
	int32 GetNumChildrenComponents() const { return AttachChildren.Num(); }
	/** Null for an index that there is not. */
	UFUNCTION(BlueprintCallable, Category = "Components")
	USceneComponent* GetChildComponent(int32 ChildIndex) const;
	UFUNCTION(BlueprintCallable, Category = "Components")
	void GetChildrenComponents(bool bIncludeAllDescendants, TArray<USceneComponent*>& Children) const;
	USceneComponent* GetAttachmentRoot() const;
	bool IsAttachedTo(const USceneComponent* TestComp) const;

	FVector GetRelativeLocation() const { return RelativeLocation; }
	FRotator GetRelativeRotation() const { return RelativeRotation; }
	FVector GetRelativeScale3D() const { return RelativeScale3D; }
	UFUNCTION(BlueprintCallable, Category = "Transformation")
	FTransform GetRelativeTransform() const;
	void SetRelativeLocation(FVector NewLocation, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);
	void SetRelativeRotation(FRotator NewRotation, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);
	void SetRelativeLocationAndRotation(FVector NewLocation, FRotator NewRotation, bool bSweep = false,
		FHitResult* OutSweepHitResult = nullptr, ETeleportType Teleport = ETeleportType::None);
	UFUNCTION(BlueprintCallable, Category = "Transformation")
	virtual void SetRelativeScale3D(FVector NewScale3D);
	void SetRelativeTransform(const FTransform& NewTransform, bool bSweep = false,
		FHitResult* OutSweepHitResult = nullptr, ETeleportType Teleport = ETeleportType::None);
	void AddRelativeLocation(FVector DeltaLocation, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);
	void AddRelativeRotation(FRotator DeltaRotation, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);

	/** In the world, as all that follows. Computed at each call from the chain of parents. */
	FTransform GetComponentTransform() const;
	FTransform GetComponentToWorld() const { return GetComponentTransform(); }
	FVector GetComponentLocation() const { return GetComponentTransform().GetLocation(); }
	FRotator GetComponentRotation() const { return GetComponentTransform().Rotator(); }
	FQuat GetComponentQuat() const { return GetComponentTransform().GetRotation(); }
	FVector GetComponentScale() const { return GetComponentTransform().GetScale3D(); }
	UFUNCTION(BlueprintPure, Category = "Transformation")
	FVector GetForwardVector() const { return GetComponentQuat().GetForwardVector(); }
	UFUNCTION(BlueprintPure, Category = "Transformation")
	FVector GetRightVector() const { return GetComponentQuat().GetRightVector(); }
	UFUNCTION(BlueprintPure, Category = "Transformation")
	FVector GetUpVector() const { return GetComponentQuat().GetUpVector(); }
	void SetWorldLocation(FVector NewLocation, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);
	void SetWorldRotation(FRotator NewRotation, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);
	void SetWorldLocationAndRotation(FVector NewLocation, FRotator NewRotation, bool bSweep = false,
		FHitResult* OutSweepHitResult = nullptr, ETeleportType Teleport = ETeleportType::None);
	UFUNCTION(BlueprintCallable, Category = "Transformation")
	void SetWorldScale3D(FVector NewScale);
	void SetWorldTransform(const FTransform& NewTransform, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);
	void AddWorldOffset(FVector DeltaLocation, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);
	void AddLocalOffset(FVector DeltaLocation, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr,
		ETeleportType Teleport = ETeleportType::None);

	/** Where what is attached to the socket begins; without sockets of its own, where the component is. */
	virtual FTransform GetSocketTransform(FName InSocketName, ERelativeTransformSpace TransformSpace = RTS_World) const;

	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Get World Location"))
	FVector K2_GetComponentLocation() const { return GetComponentLocation(); }
	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Get World Rotation"))
	FRotator K2_GetComponentRotation() const { return GetComponentRotation(); }
	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Set Relative Location"))
	void K2_SetRelativeLocation(FVector NewLocation, bool bSweep, FHitResult& SweepHitResult, bool bTeleport);
	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Set Relative Rotation"))
	void K2_SetRelativeRotation(FRotator NewRotation, bool bSweep, FHitResult& SweepHitResult, bool bTeleport);
	UFUNCTION(BlueprintCallable, Category = "Transformation", meta = (DisplayName = "Set World Location"))
	void K2_SetWorldLocation(FVector NewLocation, bool bSweep, FHitResult& SweepHitResult, bool bTeleport);

	UFUNCTION(BlueprintCallable, Category = "Rendering")
	void SetVisibility(bool bNewVisibility, bool bPropagateToChildren = false);
	/** Whether it would be seen: visible, and not hidden in the game. */
	UFUNCTION(BlueprintCallable, Category = "Rendering")
	virtual bool IsVisible() const { return bVisible && !bHiddenInGame; }
	UFUNCTION(BlueprintCallable, Category = "Development")
	void SetHiddenInGame(bool NewHidden, bool bPropagateToChildren = false);

	void OnRegister() override;
	void DestroyComponent(bool bPromoteChildren = false) override;

private:
	/** Where relative transforms count from. */
	FTransform GetParentTransform() const;

	UPROPERTY(BlueprintReadOnly, Category = "Transformation", meta = (AllowPrivateAccess = "true"))
	TObjectPtr<USceneComponent> AttachParent;

	UPROPERTY()
	FName AttachSocketName;

	UPROPERTY(Transient)
	TArray<TObjectPtr<USceneComponent>> AttachChildren;

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Transform",
		meta = (AllowPrivateAccess = "true", DisplayName = "Location"))
	FVector RelativeLocation;

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Transform",
		meta = (AllowPrivateAccess = "true", DisplayName = "Rotation"))
	FRotator RelativeRotation;

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Transform",
		meta = (AllowPrivateAccess = "true", DisplayName = "Scale"))
	FVector RelativeScale3D = FVector::OneVector;

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Rendering", meta = (AllowPrivateAccess = "true"))
	uint8 bVisible : 1;

	UPROPERTY(Interp, EditAnywhere, BlueprintReadOnly, Category = "Rendering", meta = (AllowPrivateAccess = "true"))
	uint8 bHiddenInGame : 1;
};
