#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "RegistryTestTypes.generated.h"

UCLASS()
class USavedTestAsset : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(AssetRegistrySearchable)
	FString Flavour = TEXT("sweet");
};
