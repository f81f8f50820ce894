#include "Factories/BlueprintFactory.h"

#include "Kismet2/KismetEditorUtilities.h"

DEFINE_LOG_CATEGORY_STATIC(LogBlueprintFactory, Log, All);

UBlueprintFactory::UBlueprintFactory(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
{
	SupportedClass = UBlueprint::StaticClass();
	bCreateNew = true;
	bEditAfterNew = true;
}

UObject* UBlueprintFactory::FactoryCreateNew(
	UClass* InClass, UObject* InParent, FName InName, EObjectFlags, UObject*, FFeedbackContext*, FName CallingContext)
{
	if (!FKismetEditorUtilities::CanCreateBlueprintOfClass(ParentClass))
	{
		// An editor with a person before it asks and tells in a dialog; here nobody is stopped.
		UE_LOG(LogBlueprintFactory, Warning, TEXT("Cannot create a Blueprint based on the class '%s'."),
			ParentClass ? *ParentClass->GetName() : TEXT("(null)"));
		return nullptr;
	}
	return FKismetEditorUtilities::CreateBlueprint(ParentClass, InParent, InName, BlueprintType, CallingContext);
}

UObject* UBlueprintFactory::FactoryCreateNew(
	UClass* InClass, UObject* InParent, FName InName, EObjectFlags InFlags, UObject* InContext, FFeedbackContext* Warn)
{
	return FactoryCreateNew(InClass, InParent, InName, InFlags, InContext, Warn, NAME_None);
}
