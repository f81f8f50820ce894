#pragma once

#include "CoreMinimal.h"
#include "UObject/NoExportTypes.h"
#include "LoadedTestTypes.generated.h"

UENUM()
enum class ELoadedTestEnum : uint8
{
	First,
	Second
};

/** Lives in a library that is loaded while the program runs. */
UCLASS(config = LoadedTest)
class ULoadedTestObject : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(config)
	TArray<ELoadedTestEnum> Values = { ELoadedTestEnum::Second };

	UPROPERTY()
	TObjectPtr<ULoadedTestObject> Self;

	UFUNCTION()
	int32 Double(int32 Value) const { return Value * 2; }
};
