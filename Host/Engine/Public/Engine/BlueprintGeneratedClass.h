#pragma once

#include "UObject/Class.h"
#include "BlueprintGeneratedClass.generated.h"

class USimpleConstructionScript;

/** Where the event graphs keep their values while they run. */
USTRUCT()
struct FPointerToUberGraphFrame
{
	GENERATED_BODY()
};

/** What a Blueprint is compiled to. ClassGeneratedBy leads back to it. */
UCLASS()
class ENGINE_API UBlueprintGeneratedClass : public UClass
{
	GENERATED_BODY()

public:
	UBlueprintGeneratedClass() = default;

	UPROPERTY()
	TObjectPtr<USimpleConstructionScript> SimpleConstructionScript;

	/** The function that holds the event graphs; null without live events. */
	UPROPERTY(Transient)
	TObjectPtr<UFunction> UberGraphFunction;

	FText GetDisplayNameText() const override;
};
