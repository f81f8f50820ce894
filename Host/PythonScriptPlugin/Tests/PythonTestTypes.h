#pragma once

#include "Containers/EnumAsByte.h"
#include "CoreMinimal.h"
#include "Factories/Factory.h"
#include "Templates/SubclassOf.h"
#include "UObject/NoExportTypes.h"
#include "UObject/Object.h"
#include "UObject/ObjectPtr.h"
#include "UObject/SoftObjectPtr.h"
#include "UObject/UnrealType.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "PythonTestTypes.generated.h"

UENUM(BlueprintType)
enum class EPyTestPolicy : uint8
{
	KeepAll,
	KeepLast30Days = 7,
	HTTPOnly,
};

UENUM()
enum EPyTestOld : int
{
	PTO_First,
	PTO_Second,
	PTO_MAX
};

USTRUCT(BlueprintType)
struct FPyTestPoint
{
	GENERATED_BODY()

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Test")
	int32 X = 3;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Test")
	FString Label = TEXT("origin");

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Test")
	TObjectPtr<UObject> Owner;

	bool operator==(const FPyTestPoint& Other) const { return X == Other.X && Label.Equals(Other.Label); }
	friend uint32 GetTypeHash(const FPyTestPoint& Point) { return GetTypeHash(Point.X); }
};

/** What a script can meet. */
UCLASS(BlueprintType)
class UPyTestThing : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Test")
	int32 WalkSpeed = 600;
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Test")
	bool bAutoApprove = false;
	UPROPERTY(EditAnywhere, Category = "Test")
	uint8 bFirstBit : 1;
	UPROPERTY(EditAnywhere, Category = "Test")
	uint8 bSecondBit : 1;
	UPROPERTY(EditAnywhere, Category = "Test")
	uint8 Byte = 0;
	UPROPERTY(EditAnywhere, Category = "Test")
	int8 Int8 = 0;
	UPROPERTY(EditAnywhere, Category = "Test")
	uint64 UInt64 = 0;
	UPROPERTY(EditAnywhere, Category = "Test")
	int64 Int64 = 0;
	UPROPERTY(EditAnywhere, Category = "Test")
	float Float = 0.0f;
	UPROPERTY(EditAnywhere, Category = "Test")
	double Double = 0.0;
	UPROPERTY(EditAnywhere, Category = "Test")
	FString Title;
	UPROPERTY(EditAnywhere, Category = "Test")
	FName Name;
	UPROPERTY(EditAnywhere, Category = "Test")
	FText Caption;
	UPROPERTY(EditAnywhere, Category = "Test")
	EPyTestPolicy Policy = EPyTestPolicy::KeepAll;
	UPROPERTY(EditAnywhere, Category = "Test")
	TEnumAsByte<EPyTestOld> OldPolicy;
	UPROPERTY(EditAnywhere, Category = "Test")
	TObjectPtr<UPyTestThing> Other;
	UPROPERTY(EditAnywhere, Category = "Test")
	TWeakObjectPtr<UObject> Weak;
	UPROPERTY(EditAnywhere, Category = "Test")
	TSoftObjectPtr<UObject> Soft;
	UPROPERTY(EditAnywhere, Category = "Test")
	TSubclassOf<UPyTestThing> ThingClass;
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Test")
	FPyTestPoint Point;
	UPROPERTY(EditAnywhere, Category = "Test")
	FVector2D Vector = FVector2D(0.0, 0.0);
	UPROPERTY(EditAnywhere, Category = "Test")
	TArray<FString> Titles;
	UPROPERTY(EditAnywhere, Category = "Test")
	TArray<FPyTestPoint> Points;
	UPROPERTY(EditAnywhere, Category = "Test")
	TSet<FName> Names;
	UPROPERTY(EditAnywhere, Category = "Test")
	TMap<FString, int32> Counts;
	UPROPERTY(EditAnywhere, Category = "Test")
	int32 Fixed[3] = { 1, 2, 3 };

	UPROPERTY(VisibleAnywhere, BlueprintReadOnly, Category = "Test")
	int32 Seen = 5;
	UPROPERTY(EditDefaultsOnly, Category = "Test")
	int32 OnlyDefault = 6;
	UPROPERTY(EditInstanceOnly, Category = "Test")
	int32 OnlyInstance = 7;
	UPROPERTY()
	int32 Hidden = 11;

	UFUNCTION(BlueprintCallable, Category = "Test")
	int32 AddUp(int32 A, const TArray<int32>& Others, FString& OutText);
	UFUNCTION(BlueprintCallable, Category = "Test")
	bool Split(const FString& Text, FString& OutLeft, FString& OutRight) const
	{
		return Text.Split(TEXT("|"), &OutLeft, &OutRight);
	}
	UFUNCTION(BlueprintCallable, Category = "Test")
	void Grow(UPARAM(ref) FPyTestPoint& Point_, int32 By = 10, bool bLoud = false,
		EPyTestPolicy Policy_ = EPyTestPolicy::HTTPOnly);
	UFUNCTION(BlueprintPure, Category = "Test")
	static FString Shout(const FString& Whisper, const FString& End = TEXT("!")) { return Whisper + End; }
	UFUNCTION(BlueprintCallable, Category = "Test")
	UPyTestThing* GetThing(UPyTestThing* Thing, TSubclassOf<UPyTestThing> OfClass) const;
	UFUNCTION(BlueprintCallable, Category = "Test")
	FString RunCommand(const FString& Text) const;
	UFUNCTION()
	int32 NotForBlueprints() const { return 12; }
	UFUNCTION(BlueprintNativeEvent, BlueprintCallable, Category = "Test")
	int32 Ask(int32 Question) const;

#if WITH_EDITOR
	void PreEditChange(FProperty* PropertyAboutToChange) override;
	void PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent) override;
#endif

	FString Changes;
};

UCLASS(BlueprintType)
class UPyTestChild : public UPyTestThing
{
	GENERATED_BODY()

public:
	int32 Ask_Implementation(int32 Question) const override { return Question * 100; }
};

UCLASS(Abstract)
class UPyTestAbstract : public UObject
{
	GENERATED_BODY()
};

/** What scripts make an asset of. */
UCLASS(BlueprintType)
class UScriptTestAsset : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Test")
	int32 Count = 1;
};

UCLASS(BlueprintType)
class UScriptTestFactory : public UFactory
{
	GENERATED_BODY()

public:
	UScriptTestFactory() { SupportedClass = UScriptTestAsset::StaticClass(); }
	using UFactory::FactoryCreateNew;
	UObject* FactoryCreateNew(UClass* InClass, UObject* InParent, FName InName, EObjectFlags Flags, UObject* Context,
		FFeedbackContext* Warn) override
	{
		return NewObject<UObject>(InParent, InClass, InName, Flags);
	}
};
