#include "BlueprintEditorLibrary.h"

#include "AssetRegistry/AssetRegistryModule.h"
#include "BlueprintTestSupport.h"

namespace BlueprintEditorLibraryTest
{
using FLibrary = UBlueprintEditorLibrary;
using K2 = UEdGraphSchema_K2;

class FBlueprintEditorLibraryTest : public BlueprintTest
{
protected:
	~FBlueprintEditorLibraryTest() override { FModuleManager::Get().UnloadModule("AssetRegistry"); }
};

TEST_F(FBlueprintEditorLibraryTest, NoBlueprintGivesNothingAndChangesNothing)
{
	EXPECT_FALSE(FLibrary::GetBlueprintAsset(nullptr));
	EXPECT_FALSE(FLibrary::GetBlueprintAsset(GetTransientPackage()));
	EXPECT_FALSE(FLibrary::GeneratedClass(nullptr));
	FLibrary::CompileBlueprint(nullptr);
	EXPECT_FALSE(FLibrary::FindEventGraph(nullptr));
	EXPECT_FALSE(FLibrary::FindGraph(nullptr, TEXT("EventGraph")));
	EXPECT_FALSE(FLibrary::AddFunctionGraph(nullptr, TEXT("Open")));
	FLibrary::RemoveFunctionGraph(nullptr, TEXT("Open"));
	EXPECT_FALSE(FLibrary::AddMemberVariable(nullptr, TEXT("Health"), FLibrary::GetBasicTypeByName(TEXT("int"))));
	FLibrary::SetBlueprintVariableInstanceEditable(nullptr, TEXT("Health"), true);
}

TEST_F(FBlueprintEditorLibraryTest, CreatesABlueprintOnlyWhereThereIsNone)
{
	UBlueprint* const Made =
		FLibrary::CreateBlueprintAssetWithParent(TEXT("/Game/Doors/BP_Door"), AActor::StaticClass());
	ASSERT_TRUE(Made);
	EXPECT_EQ(ToUtf8(Made->GetPathName()), "/Game/Doors/BP_Door.BP_Door");
	EXPECT_EQ(FLibrary::GeneratedClass(Made)->GetSuperClass(), AActor::StaticClass());
	EXPECT_EQ(FLibrary::GetBlueprintAsset(Made), Made);

	const struct
	{
		const TCHAR* What;
		const TCHAR* Path;
		UClass* Parent;
	} Refused[] = {
		{ TEXT("a name that is taken"), TEXT("/Game/Doors/BP_Door"), AActor::StaticClass() },
		{ TEXT("no path"), TEXT(""), AActor::StaticClass() },
		{ TEXT("a path without a root"), TEXT("BP_Door"), AActor::StaticClass() },
		{ TEXT("a root that is not mounted"), TEXT("/Nowhere/BP_Door"), AActor::StaticClass() },
		{ TEXT("a way out of the content"), TEXT("/Game/../../BP_Door"), AActor::StaticClass() },
		{ TEXT("a name with signs in it"), TEXT("/Game/BP Door?"), AActor::StaticClass() },
		{ TEXT("no parent"), TEXT("/Game/BP_Orphan"), nullptr },
		{ TEXT("a parent that Blueprints cannot have"), TEXT("/Game/BP_Package"), UPackage::StaticClass() },
	};
	for (const auto& Case : Refused)
	{
		EXPECT_FALSE(FLibrary::CreateBlueprintAssetWithParent(Case.Path, Case.Parent)) << ToUtf8(Case.What);
	}
}

TEST_F(FBlueprintEditorLibraryTest, FunctionsGetNamesThatAreFreeAndGoAgain)
{
	UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Functions"));
	EXPECT_EQ(ToUtf8(FLibrary::AddFunctionGraph(Blueprint)->GetName()), "NewFunction");
	UEdGraph* const Open = FLibrary::AddFunctionGraph(Blueprint, TEXT("Open"));
	ASSERT_TRUE(Open);
	UEdGraph* const Second = FLibrary::AddFunctionGraph(Blueprint, TEXT("Open"));
	EXPECT_NE(Second->GetFName(), Open->GetFName());
	EXPECT_TRUE(FLibrary::AddMemberVariable(Blueprint, TEXT("Health"), FLibrary::GetBasicTypeByName(TEXT("int"))));
	EXPECT_NE(FLibrary::AddFunctionGraph(Blueprint, TEXT("Health"))->GetFName(), FName(TEXT("Health")))
		<< "a variable has the name";
	EXPECT_EQ(FLibrary::FindGraph(Blueprint, TEXT("OPEN")), Open);
	EXPECT_EQ(FLibrary::FindGraph(Blueprint, TEXT("EventGraph")), FLibrary::FindEventGraph(Blueprint));
	EXPECT_FALSE(FLibrary::FindGraph(Blueprint, TEXT("Close")));
	FLibrary::CompileBlueprint(Blueprint);
	EXPECT_EQ(Blueprint->Status, BS_UpToDate);
	EXPECT_TRUE(FLibrary::GeneratedClass(Blueprint)->FindFunctionByName(TEXT("Open")));

	FLibrary::RemoveFunctionGraph(Blueprint, TEXT("Open"));
	FLibrary::RemoveFunctionGraph(Blueprint, TEXT("Open"));
	FLibrary::RemoveFunctionGraph(Blueprint, TEXT("EventGraph"));
	FLibrary::RemoveFunctionGraph(Blueprint, K2::FN_UserConstructionScript);
	EXPECT_FALSE(FLibrary::FindGraph(Blueprint, TEXT("Open")));
	EXPECT_TRUE(FLibrary::FindEventGraph(Blueprint)) << "not a function";
	EXPECT_TRUE(FLibrary::FindGraph(Blueprint, K2::FN_UserConstructionScript)) << "cannot be deleted";
	FLibrary::CompileBlueprint(Blueprint);
	EXPECT_FALSE(FLibrary::GeneratedClass(Blueprint)->FindFunctionByName(TEXT("Open")));
}

TEST_F(FBlueprintEditorLibraryTest, VariablesAreOfTheTypesThatItMakes)
{
	UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Variables"));
	const struct
	{
		const TCHAR* Name;
		FEdGraphPinType Type;
		const char* CppType;
	} Cases[] = {
		{ TEXT("Flag"), FLibrary::GetBasicTypeByName(TEXT("bool")), "bool" },
		{ TEXT("Count"), FLibrary::GetBasicTypeByName(TEXT("int")), "int32" },
		{ TEXT("Large"), FLibrary::GetBasicTypeByName(TEXT("int64")), "int64" },
		{ TEXT("Small"), FLibrary::GetBasicTypeByName(TEXT("byte")), "uint8" },
		{ TEXT("Weight"), FLibrary::GetBasicTypeByName(TEXT("real")), "double" },
		{ TEXT("Line"), FLibrary::GetBasicTypeByName(TEXT("string")), "FString" },
		{ TEXT("Label"), FLibrary::GetBasicTypeByName(TEXT("name")), "FName" },
		{ TEXT("Caption"), FLibrary::GetBasicTypeByName(TEXT("text")), "FText" },
		{ TEXT("Place"), FLibrary::GetStructType(TBaseStructure<FVector>::Get()), "FVector" },
		{ TEXT("Friend"), FLibrary::GetObjectReferenceType(AActor::StaticClass()), "AActor*" },
		{ TEXT("Kind"), FLibrary::GetClassReferenceType(AActor::StaticClass()), "TSubclassOf" },
		{ TEXT("Counts"), FLibrary::GetArrayType(FLibrary::GetBasicTypeByName(TEXT("int"))), "TArray" },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_TRUE(FLibrary::AddMemberVariable(Blueprint, Case.Name, Case.Type)) << ToUtf8(Case.Name);
		EXPECT_FALSE(FLibrary::AddMemberVariable(Blueprint, Case.Name, Case.Type)) << ToUtf8(Case.Name);
	}
	FLibrary::CompileBlueprint(Blueprint);
	ASSERT_EQ(Blueprint->Status, BS_UpToDate);
	for (const auto& Case : Cases)
	{
		const FProperty* const Property = FLibrary::GeneratedClass(Blueprint)->FindPropertyByName(Case.Name);
		ASSERT_TRUE(Property) << ToUtf8(Case.Name);
		EXPECT_EQ(ToUtf8(Property->GetCPPType()), Case.CppType) << ToUtf8(Case.Name);
	}
}

TEST_F(FBlueprintEditorLibraryTest, InstancesMaySetOnlyTheVariablesThatSaySo)
{
	UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Editable"));
	FLibrary::AddMemberVariable(Blueprint, TEXT("Health"), FLibrary::GetBasicTypeByName(TEXT("int")));
	const auto IsFixed = [Blueprint] {
		FLibrary::CompileBlueprint(Blueprint);
		const FProperty* const Health = FLibrary::GeneratedClass(Blueprint)->FindPropertyByName(TEXT("Health"));
		return Health->HasAnyPropertyFlags(CPF_DisableEditOnInstance);
	};
	EXPECT_TRUE(IsFixed());
	FLibrary::SetBlueprintVariableInstanceEditable(Blueprint, TEXT("Health"), true);
	EXPECT_FALSE(IsFixed());
	FLibrary::SetBlueprintVariableInstanceEditable(Blueprint, TEXT("Health"), false);
	EXPECT_TRUE(IsFixed());
	FLibrary::SetBlueprintVariableInstanceEditable(Blueprint, TEXT("Missing"), true);
	EXPECT_TRUE(IsFixed());
}
}
