#pragma once

#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"
#include "Misc/Guid.h"
#include "UObject/Object.h"
#include "UObject/SoftObjectPath.h"

#ifndef CPP
#define CPP 1
#endif

// Types that are declared without reflection, described for HeaderTool. The compiler sees none of this: members have
// the names and the order of the real ones.
#if !CPP

UCLASS(abstract, intrinsic)
class UObject
{
};

UCLASS(abstract, intrinsic)
class UField : public UObject
{
};

UCLASS(abstract, intrinsic)
class UStruct : public UField
{
};

UCLASS(intrinsic)
class UClass : public UStruct
{
};

UCLASS(intrinsic)
class UScriptStruct : public UStruct
{
};

UCLASS(intrinsic)
class UFunction : public UStruct
{
};

UCLASS(intrinsic)
class UDelegateFunction : public UFunction
{
};

UCLASS(intrinsic)
class UEnum : public UField
{
};

UCLASS(intrinsic)
class UPackage : public UObject
{
};

UCLASS(abstract, intrinsic)
class UInterface : public UObject
{
};

/** A point or vector in the plane. */
USTRUCT(immutable, noexport, BlueprintType)
struct FVector2D
{
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Vector2D, SaveGame)
	double X;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Vector2D, SaveGame)
	double Y;
};

/** A point or vector in space. */
USTRUCT(immutable, noexport, BlueprintType)
struct FVector
{
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Vector, SaveGame)
	double X;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Vector, SaveGame)
	double Y;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Vector, SaveGame)
	double Z;
};

/** A rotation in degrees. */
USTRUCT(immutable, noexport, BlueprintType)
struct FRotator
{
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Rotator, SaveGame)
	double Pitch;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Rotator, SaveGame)
	double Yaw;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Rotator, SaveGame)
	double Roll;
};

/** A rotation as a quaternion. */
USTRUCT(immutable, noexport, BlueprintType)
struct FQuat
{
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Quat, SaveGame)
	double X;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Quat, SaveGame)
	double Y;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Quat, SaveGame)
	double Z;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Quat, SaveGame)
	double W;
};

/** A scale, a rotation and a move, in this order. */
USTRUCT(immutable, noexport, BlueprintType)
struct FTransform
{
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Transform, SaveGame)
	FQuat Rotation;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Transform, SaveGame)
	FVector Translation;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Transform, SaveGame)
	FVector Scale3D;
};

/** A point on a grid. */
USTRUCT(immutable, noexport, BlueprintType)
struct FIntPoint
{
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = IntPoint, SaveGame)
	int32 X;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = IntPoint, SaveGame)
	int32 Y;
};

/** A colour with 8 bits a channel. */
USTRUCT(immutable, noexport, BlueprintType)
struct FColor
{
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Color, SaveGame)
	uint8 B;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Color, SaveGame)
	uint8 G;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Color, SaveGame)
	uint8 R;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = Color, SaveGame)
	uint8 A;
};

/** A colour whose channels are linear in light. */
USTRUCT(immutable, noexport, BlueprintType)
struct FLinearColor
{
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = LinearColor, SaveGame)
	float R;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = LinearColor, SaveGame)
	float G;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = LinearColor, SaveGame)
	float B;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = LinearColor, SaveGame)
	float A;
};

/** A 128-bit identifier. */
USTRUCT(immutable, noexport, BlueprintType)
struct FGuid
{
	UPROPERTY(EditAnywhere, SaveGame, Category = Guid)
	uint32 A;

	UPROPERTY(EditAnywhere, SaveGame, Category = Guid)
	uint32 B;

	UPROPERTY(EditAnywhere, SaveGame, Category = Guid)
	uint32 C;

	UPROPERTY(EditAnywhere, SaveGame, Category = Guid)
	uint32 D;
};

/** The path of an object that need not be in memory. */
USTRUCT(noexport, BlueprintType)
struct FSoftObjectPath
{
};

/** An object that lies directly in a package. */
USTRUCT(noexport, BlueprintType)
struct FTopLevelAssetPath
{
	UPROPERTY(BlueprintReadOnly, Category = "Asset")
	FName PackageName;

	UPROPERTY(BlueprintReadOnly, Category = "Asset")
	FName AssetName;
};

/** What is known of an asset without loading it. */
USTRUCT(noexport, BlueprintType)
struct FAssetData
{
	UPROPERTY(BlueprintReadOnly, Category = "Asset")
	FName PackageName;

	UPROPERTY(BlueprintReadOnly, Category = "Asset")
	FName PackagePath;

	UPROPERTY(BlueprintReadOnly, Category = "Asset")
	FName AssetName;

	UPROPERTY(BlueprintReadOnly, Category = "Asset")
	FTopLevelAssetPath AssetClassPath;
};

/** The path of a class that need not be in memory. */
USTRUCT(noexport, BlueprintType)
struct FSoftClassPath : public FSoftObjectPath
{
};

#endif
