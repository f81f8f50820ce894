#pragma once

#include "Engine/Blueprint.h"
#include "Factories/Factory.h"
#include "BlueprintFactory.generated.h"

/** Makes Blueprints. ParentClass is to be set before; without one that can have a Blueprint, nothing is made. */
UCLASS()
class UNREALED_API UBlueprintFactory : public UFactory
{
	GENERATED_BODY()

public:
	UBlueprintFactory(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = BlueprintFactory)
	TEnumAsByte<EBlueprintType> BlueprintType = BPTYPE_Normal;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = BlueprintFactory)
	TSubclassOf<UObject> ParentClass;

	bool bSkipClassPicker = false;

	UObject* FactoryCreateNew(UClass* InClass, UObject* InParent, FName InName, EObjectFlags InFlags,
		UObject* InContext, FFeedbackContext* Warn, FName CallingContext) override;
	UObject* FactoryCreateNew(UClass* InClass, UObject* InParent, FName InName, EObjectFlags InFlags,
		UObject* InContext, FFeedbackContext* Warn) override;
};
