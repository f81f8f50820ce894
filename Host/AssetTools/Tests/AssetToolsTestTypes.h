#pragma once

#include "CoreMinimal.h"
#include "Factories/Factory.h"
#include "AssetToolsTestTypes.generated.h"

UCLASS()
class UToolsTestAsset : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY()
	TObjectPtr<UObject> Other;
};

UCLASS()
class UToolsTestFactory : public UFactory
{
	GENERATED_BODY()

public:
	UToolsTestFactory()
	{
		SupportedClass = UToolsTestAsset::StaticClass();
		bCreateNew = true;
	}
	using UFactory::FactoryCreateNew;
	UObject* FactoryCreateNew(UClass* InClass, UObject* InParent, FName InName, EObjectFlags Flags, UObject* Context,
		FFeedbackContext* Warn) override
	{
		return NewObject<UObject>(InParent, InClass, InName, Flags);
	}
};
