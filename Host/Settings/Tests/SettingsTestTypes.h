#pragma once

#include "CoreMinimal.h"
#include "UObject/NoExportTypes.h"
#include "SettingsTestTypes.generated.h"

USTRUCT()
struct FSettingsTestRange
{
	GENERATED_BODY()

	UPROPERTY(EditAnywhere, Category = "Range")
	int32 Low = 1;

	UPROPERTY(EditAnywhere, Category = "Range")
	int32 High = 2;
};

/** What an event said. */
struct FSettingsTestChange
{
	FName Property;
	FName Member;
	uint32 ChangeType = 0;
};

UCLASS(config = SettingsTest)
class USettingsTestObject : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(config, EditAnywhere, Category = "Test|Texts")
	FString Key;

	UPROPERTY(EditAnywhere, Category = "Test|Lists")
	bool bResetWords = false;

	UPROPERTY(config, EditAnywhere, Category = "Test|Lists")
	TArray<FString> Words = { TEXT("one"), TEXT("two") };

	UPROPERTY(config, EditAnywhere, Category = "Test")
	FSettingsTestRange Range;

	UPROPERTY(config, VisibleAnywhere, Category = "Test")
	int32 Shown = 3;

	UPROPERTY(config)
	int32 Unseen = 4;

	void PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent) override;

	TArray<FSettingsTestChange> Changes;
};

UCLASS(config = SettingsTestProject, defaultconfig)
class USettingsTestProjectObject : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(config, EditAnywhere, Category = "Test")
	int32 Level = 1;
};
