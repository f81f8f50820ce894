#pragma once

#include "Templates/SubclassOf.h"
#include "UObject/Object.h"
#include "DataAsset.generated.h"

/** An asset that is one object of a class written in C++: a table, a set of settings. */
UCLASS(Abstract, BlueprintType)
class ENGINE_API UDataAsset : public UObject
{
	GENERATED_BODY()

public:
	UDataAsset(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	void PostInitProperties() override;

private:
	UPROPERTY(AssetRegistrySearchable)
	TSubclassOf<UDataAsset> NativeClass;
};
