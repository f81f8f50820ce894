#pragma once

#include "CoreMinimal.h"
#include "UObject/NoExportTypes.h"
#include "SettingsEditorTestTypes.generated.h"

UENUM()
enum class ESettingsEditorTestNest : uint8
{
	Tree UMETA(DisplayName = "In a Tree"),
	Barn UMETA(DisplayName = "In a Barn"),
	Nowhere UMETA(Hidden),
};

UCLASS(config = SettingsEditorTest)
class USettingsEditorTestObject : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(config, EditAnywhere, Category = "Owl|Secrets", meta = (DisplayName = "Nest Key", PasswordField = true))
	FString NestKey;

	/** How many there are. */
	UPROPERTY(config, EditAnywhere, Category = "Owl | Body")
	int32 Feathers = 12;

	UPROPERTY(EditAnywhere, Category = "Owl|Body|Buttons")
	bool bReset = false;

	UPROPERTY(config, EditAnywhere, Category = "Owl|Body")
	ESettingsEditorTestNest Nest = ESettingsEditorTestNest::Tree;

	/** A name alone makes no secret. */
	UPROPERTY(config, EditAnywhere, Category = "Owl|Food")
	FString LarderKey;

	UPROPERTY(config, EditAnywhere, Category = "Owl|Food")
	TArray<FString> Prey = { TEXT("mouse"), TEXT("vole") };

	UPROPERTY(config, VisibleAnywhere, Category = "Owl|Body")
	int32 Age = 3;

	UPROPERTY(config)
	int32 Unseen = 4;

	virtual void PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent) override;

	int32 NumEdits = 0;
};
