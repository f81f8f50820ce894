#pragma once

#include "Containers/EnumAsByte.h"
#include "CoreMinimal.h"
#include "Templates/SubclassOf.h"
#include "UObject/NoExportTypes.h"
#include "UObject/Object.h"
#include "UObject/ObjectPtr.h"
#include "UObject/SoftObjectPtr.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "ReflectedTestTypes.generated.h"

/** What a test may be. */
UENUM(BlueprintType)
enum class ETestState : uint8
{
	None, // nothing yet
	/** The test is running. */
	Running UMETA(DisplayName = "In Progress"),
	KeepLast30Days = 7,
};

UENUM()
enum ETestOldEnum : int
{
	TOE_First,
	TOE_Second,
	TOE_MAX
};

USTRUCT(BlueprintType)
struct FTestPoint
{
	GENERATED_BODY()

	UPROPERTY(EditAnywhere, Category = "Test")
	int32 X = 3;

	UPROPERTY(EditAnywhere, Category = "Test")
	FString Label = TEXT("origin");

	int32 NotReflected = 0;

	bool operator==(const FTestPoint& Other) const { return X == Other.X && Label.Equals(Other.Label); }
	friend uint32 GetTypeHash(const FTestPoint& Point) { return GetTypeHash(Point.X); }
};

USTRUCT()
struct FTestNamedPoint : public FTestPoint
{
	GENERATED_BODY()

	UPROPERTY()
	FName Name;

	UPROPERTY()
	TObjectPtr<UObject> Object;
};

/** One variable of each kind. */
UCLASS(BlueprintType, meta = (DisplayName = "Every Kind"))
class UTestKinds : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(EditAnywhere, Category = "Numbers | Whole")
	int32 Int = 0;

	UPROPERTY()
	bool bFlag = false;

	UPROPERTY()
	uint8 bFirstBit : 1;

	UPROPERTY()
	uint8 bSecondBit : 1;

	UPROPERTY()
	uint8 Byte = 0;

	UPROPERTY()
	int8 Int8 = 0;

	UPROPERTY()
	int16 Int16 = 0;

	UPROPERTY()
	int64 Int64 = 0;

	UPROPERTY()
	uint16 UInt16 = 0;

	UPROPERTY()
	uint32 UInt32 = 0;

	UPROPERTY()
	uint64 UInt64 = 0;

	UPROPERTY()
	float Float = 0.0f;

	UPROPERTY()
	double Double = 0.0;

	/** What the object is called. */
	UPROPERTY(EditAnywhere, Category = "Texts", meta = (DisplayName = "Given Name"))
	FString Text;

	UPROPERTY()
	FName Name;

	UPROPERTY()
	FText Caption;

	UPROPERTY()
	ETestState State = ETestState::None;

	UPROPERTY()
	TEnumAsByte<ETestOldEnum> OldState;

	UPROPERTY()
	UObject* RawObject = nullptr;

	UPROPERTY()
	TObjectPtr<UTestKinds> Object;

	UPROPERTY()
	TSubclassOf<UTestKinds> Class;

	UPROPERTY()
	TSoftObjectPtr<UObject> SoftObject;

	UPROPERTY()
	TSoftClassPtr<UObject> SoftClass;

	UPROPERTY()
	TWeakObjectPtr<UObject> WeakObject;

	UPROPERTY()
	FTestPoint Point;

	UPROPERTY()
	FVector2D Vector = FVector2D(0.0, 0.0);

	UPROPERTY()
	FLinearColor Color = FLinearColor(0.0f, 0.0f, 0.0f, 0.0f);

	UPROPERTY()
	TArray<FString> Texts;

	UPROPERTY()
	TArray<FTestPoint> Points;

	UPROPERTY()
	TArray<TObjectPtr<UObject>> Objects;

	UPROPERTY()
	TSet<FName> Names;

	UPROPERTY()
	TMap<FString, int32> Counts;

	UPROPERTY()
	TMap<ETestState, FTestNamedPoint> PointsByState;

	UPROPERTY()
	int32 Numbers[3] = { 0, 0, 0 };

	// Keeps nothing alive: the collection does not see it.
	UObject* Unreflected = nullptr;

	UFUNCTION(BlueprintCallable, Category = "Test")
	int32 AddUp(int32 A, const TArray<int32>& Others, FString& OutText);

	UFUNCTION(BlueprintPure)
	static FString Shout(const FString& Whisper) { return Whisper + TEXT("!"); }

	UFUNCTION(BlueprintCallable, Category = "Test")
	int32 Count() const { return 2; }

	UFUNCTION(BlueprintCallable, BlueprintPure = false, Category = "Test")
	int32 Weigh() const { return 3; }

	UFUNCTION(BlueprintNativeEvent)
	int32 Ask(int32 Question) const;

	UFUNCTION(BlueprintImplementableEvent)
	void Tell(const FString& What);

private:
	UPROPERTY()
	int32 Hidden = 11;
};

UCLASS()
class UTestKindsChild : public UTestKinds
{
	GENERATED_BODY()

public:
	UPROPERTY()
	int32 Own = 5;

	UPROPERTY()
	int32 Old_DEPRECATED = 6;

	int32 Ask_Implementation(int32 Question) const override { return Question * 100; }
};

UCLASS(config = TestUserSettings)
class UTestSettings : public UObject
{
	GENERATED_BODY()

public:
	UTestSettings();

	UPROPERTY(config, EditAnywhere, Category = "Test")
	FString ApiKey;

	UPROPERTY(config, EditAnywhere, Category = "Test")
	bool bDisplay = true;

	UPROPERTY(EditAnywhere, Category = "Test")
	bool bReset = false;

	UPROPERTY(config, EditAnywhere, Category = "Test")
	TArray<FString> Extensions;

	UPROPERTY(config, EditAnywhere, Category = "Test")
	ETestState Policy = ETestState::Running;

	UPROPERTY(config)
	FTestPoint Point;

	UPROPERTY(config, Transient)
	int32 Forgotten = 1;

#if WITH_EDITOR
	void PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent) override;
#endif

	TArray<FName> Changes;
};

UCLASS(config = TestUserSettings)
class UTestSettingsChild : public UTestSettings
{
	GENERATED_BODY()

public:
	UPROPERTY(config)
	int32 Extra = 1;
};

UCLASS(config = TestDefaults, defaultconfig)
class UTestDefaultConfig : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(config)
	int32 Level = 1;
};

UCLASS(config = TestEarly)
class UTestEarlySettings : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(config)
	int32 Level = 1;
};

UCLASS(Abstract)
class UTestAbstract : public UObject
{
	GENERATED_BODY()
};

/** Counts what happens to it, and has a part of its own. */
UCLASS()
class UTestLife : public UObject
{
	GENERATED_BODY()

public:
	UTestLife(const FObjectInitializer& ObjectInitializer);
	~UTestLife() override;
	void PostInitProperties() override;
	void BeginDestroy() override;

	UPROPERTY()
	TObjectPtr<UTestKinds> Part;

	int32 NumInits = 0;
	inline static int32 NumBegun = 0;
	inline static int32 NumDestroyed = 0;
};
