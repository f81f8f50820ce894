#pragma once

#include "Engine/EngineBaseTypes.h"
#include "Engine/HitResult.h"
#include "UObject/CoreNetTypes.h"
#include "EngineTypes.generated.h"

/** How a part of a transform is chosen when something is attached. */
UENUM()
enum class EAttachmentRule : uint8
{
	/** The value becomes one relative to the new parent. */
	KeepRelative,
	/** The relative value is recomputed, so that nothing moves. */
	KeepWorld,
	/** It goes to where the parent is. */
	SnapToTarget,
};

UENUM()
enum class EDetachmentRule : uint8
{
	/** What was relative to the parent is relative to the world. */
	KeepRelative,
	/** Nothing moves. */
	KeepWorld,
};

struct FAttachmentTransformRules
{
	static const FAttachmentTransformRules KeepRelativeTransform;
	static const FAttachmentTransformRules KeepWorldTransform;
	static const FAttachmentTransformRules SnapToTargetNotIncludingScale;
	static const FAttachmentTransformRules SnapToTargetIncludingScale;

	constexpr FAttachmentTransformRules(EAttachmentRule InRule, bool bInWeldSimulatedBodies)
		: FAttachmentTransformRules(InRule, InRule, InRule, bInWeldSimulatedBodies)
	{
	}
	constexpr FAttachmentTransformRules(EAttachmentRule InLocationRule, EAttachmentRule InRotationRule,
		EAttachmentRule InScaleRule, bool bInWeldSimulatedBodies)
		: LocationRule(InLocationRule)
		, RotationRule(InRotationRule)
		, ScaleRule(InScaleRule)
		, bWeldSimulatedBodies(bInWeldSimulatedBodies)
	{
	}

	EAttachmentRule LocationRule;
	EAttachmentRule RotationRule;
	EAttachmentRule ScaleRule;
	bool bWeldSimulatedBodies; // there are no simulated bodies here
};

struct FDetachmentTransformRules
{
	static const FDetachmentTransformRules KeepRelativeTransform;
	static const FDetachmentTransformRules KeepWorldTransform;

	constexpr FDetachmentTransformRules(EDetachmentRule InRule, bool bInCallModify)
		: FDetachmentTransformRules(InRule, InRule, InRule, bInCallModify)
	{
	}
	constexpr FDetachmentTransformRules(
		EDetachmentRule InLocationRule, EDetachmentRule InRotationRule, EDetachmentRule InScaleRule, bool bInCallModify)
		: LocationRule(InLocationRule)
		, RotationRule(InRotationRule)
		, ScaleRule(InScaleRule)
		, bCallModify(bInCallModify)
	{
	}

	EDetachmentRule LocationRule;
	EDetachmentRule RotationRule;
	EDetachmentRule ScaleRule;
	bool bCallModify;
};

UENUM(BlueprintType)
namespace EComponentMobility
{
enum Type : int
{
	Static,
	Stationary,
	Movable,
};
}

/** Which origin a transform is given for. */
UENUM()
enum ERelativeTransformSpace : int
{
	RTS_World,
	RTS_Actor,
	RTS_Component,
	RTS_ParentBoneSpace,
};

/** What becomes of speed when something is put elsewhere. Nothing has a simulated speed here. */
enum class ETeleportType : uint8
{
	None,
	TeleportPhysics,
	ResetPhysics,
};

/** What to do when a new actor would stand inside another. Nothing collides here: all spawn where they are told. */
UENUM(BlueprintType)
enum class ESpawnActorCollisionHandlingMethod : uint8
{
	Undefined UMETA(DisplayName = "Default"),
	AlwaysSpawn UMETA(DisplayName = "Always Spawn, Ignore Collisions"),
	AdjustIfPossibleButAlwaysSpawn UMETA(DisplayName = "Try To Adjust Location, But Always Spawn"),
	AdjustIfPossibleButDontSpawnIfColliding UMETA(
		DisplayName = "Try To Adjust Location, Don't Spawn If Still Colliding"),
	DontSpawnIfColliding UMETA(DisplayName = "Do Not Spawn"),
};

/** What a world is for. */
namespace EWorldType
{
enum Type
{
	None,
	Game,
	Editor,
	PIE,
	EditorPreview,
	GamePreview,
	GameRPC,
	Inactive,
};
}
