#pragma once

#include "CoreMinimal.h"
#include "Templates/SubclassOf.h"
#include "UObject/Object.h"
#include "Factory.generated.h"

class FFeedbackContext;

/** Makes new assets of one class. */
UCLASS(Abstract)
class UFactory : public UObject
{
	GENERATED_BODY()

public:
	/** The class of what is made, or the parent of all such classes. */
	UPROPERTY(BlueprintReadWrite, Category = "Misc")
	TSubclassOf<UObject> SupportedClass;

	/** Whether assets can be made from nothing. */
	UPROPERTY(BlueprintReadWrite, Category = "Misc")
	uint8 bCreateNew : 1;

	/** Whether an editor is opened for a new asset. */
	UPROPERTY(BlueprintReadWrite, Category = "Misc")
	uint8 bEditAfterNew : 1;

	/** The new asset in its package; null when it cannot be made. */
	virtual UObject* FactoryCreateNew(UClass* InClass, UObject* InParent, FName InName, EObjectFlags Flags,
		UObject* Context, FFeedbackContext* Warn, FName CallingContext)
	{
		return FactoryCreateNew(InClass, InParent, InName, Flags, Context, Warn);
	}
	virtual UObject* FactoryCreateNew(
		UClass* InClass, UObject* InParent, FName InName, EObjectFlags Flags, UObject* Context, FFeedbackContext* Warn)
	{
		return nullptr;
	}
	UClass* GetSupportedClass() const;
};
