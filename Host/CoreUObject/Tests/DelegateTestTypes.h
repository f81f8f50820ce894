#pragma once

#include "CoreMinimal.h"
#include "UObject/NoExportTypes.h"
#include "UObject/Object.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "DelegateTestTypes.generated.h"

/** The bell has rung. */
DECLARE_DYNAMIC_MULTICAST_DELEGATE(FOnRung);
DECLARE_DYNAMIC_MULTICAST_DELEGATE_ThreeParams(
	FOnHeard, uint8, Loudness, const FString&, Who, FVector, Where); // a small value, to be laid out before large ones
DECLARE_DYNAMIC_DELEGATE_RetVal_TwoParams(int32, FCountPeals, int32, Peals, FString&, OutNote);

UENUM(BlueprintType)
namespace EBellMetal
{
enum Type : int
{
	Bronze,
	Iron,
};
}

UCLASS()
class UTestBell : public UObject
{
	GENERATED_BODY()

public:
	DECLARE_DYNAMIC_MULTICAST_DELEGATE_OneParam(FOnCast, EBellMetal::Type, Metal);

	UPROPERTY(BlueprintAssignable, Category = "Bell")
	FOnRung OnRung;

	UPROPERTY(BlueprintAssignable)
	FOnHeard OnHeard;

	UPROPERTY()
	FOnCast OnCast;

	UPROPERTY()
	FCountPeals CountPeals;
};

UCLASS()
class UTestListener : public UObject
{
	GENERATED_BODY()

public:
	UFUNCTION()
	virtual void Ring() { Heard += TEXT("ring "); }
	UFUNCTION()
	void RingTwice() { Heard += TEXT("ring-ring "); }
	UFUNCTION()
	void Listen(uint8 Loudness, const FString& Who, FVector Where)
	{
		Heard += FString::Printf(TEXT("%d %s %s "), Loudness, *Who, *Where.ToString());
	}
	UFUNCTION()
	int32 Count(int32 Peals, FString& OutNote)
	{
		OutNote = TEXT("counted");
		return 2 * Peals;
	}
	UFUNCTION()
	void Cast(EBellMetal::Type Metal) { Heard += Metal == EBellMetal::Iron ? TEXT("iron ") : TEXT("bronze "); }
	void NotReflected() {}

	FString Heard;
};

UCLASS()
class UTestLoudListener : public UTestListener
{
	GENERATED_BODY()

public:
	void Ring() override { Heard += TEXT("RING "); }
};
