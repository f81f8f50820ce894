#include "CoreMinimal.h"
#include "Modules/ModuleManager.h"
#include "UObject/Package.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>

TEST(LoadedModule, BringsItsReflectedTypes)
{
	const TCHAR* const ClassPath = TEXT("/Script/CoreUObjectTestModule.LoadedTestObject");
	EXPECT_EQ(FindObject<UClass>(nullptr, ClassPath), nullptr);
	const FName ModuleName(TEXT("CoreUObjectTestModule"));
	FModuleManager::Get().AddModuleLibrary(ModuleName, TEXT(TEST_MODULE_PATH));
	IModuleInterface* Module = FModuleManager::Get().LoadModule(ModuleName);
	ASSERT_TRUE(Module);
	EXPECT_TRUE(Module->IsGameModule()) << "the types are there when the module starts";

	UClass* Class = FindObject<UClass>(nullptr, ClassPath);
	ASSERT_TRUE(Class);
	ASSERT_TRUE(Class->GetDefaultObject(false));
	const FProperty* Values = Class->FindPropertyByName(TEXT("Values"));
	FString Text;
	const void* Value = Values->ContainerPtrToValuePtr<void>(Class->GetDefaultObject());
	Values->ExportText_Direct(Text, Value, Value, nullptr, PPF_None);
	EXPECT_TRUE(Text.Equals(TEXT("(Second)")));

	UObject* Object = NewObject<UObject>(GetTransientPackage(), Class);
	int32 Parms[] = { 21, 0 };
	Object->ProcessEvent(Object->FindFunctionChecked(TEXT("Double")), Parms);
	EXPECT_EQ(Parms[1], 42);
}
