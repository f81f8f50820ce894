#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Project/KestrelFindUtils.h"
#include "Agent/Text/JsonText.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Dom/JsonObject.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "Engine/BlueprintGeneratedClass.h"
#include "GameFramework/Actor.h"
#include "HAL/FileManager.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Support/TestBlueprint.h"
#include "Support/TestContent.h"
#include "UObject/Package.h"

namespace BlueprintLookupTest
{
using FUtils = FKestrelBlueprintUtils;

FString GetMember(const FString& Json, const TCHAR* Field)
{
	FString Text;
	KestrelJson::ParseObject(Json)->TryGetStringField(Field, Text);
	return Text;
}

/** Saved, and no longer in memory. */
void MakeSaved(const FKestrelTestContent& Content, const TCHAR* Name)
{
	FUtils::SaveBlueprint(Content.CreateBlueprint(Name));
	Content.Unload();
}

/** The registry forgets the asset, whose file is there, as when it could not read the file for a moment. */
void Forget(const FKestrelTestContent& Content, const TCHAR* Name)
{
	const FString File = Content.GetFile(Name);
	IFileManager::Get().Move(*(File + TEXT(".aside")), *File);
	IAssetRegistry::Get()->ScanPathsSynchronous({ Content.Path }, true);
	IFileManager::Get().Move(*File, *(File + TEXT(".aside")));
}

bool IsKnown(const FKestrelTestContent& Content, const TCHAR* Name)
{
	TArray<FAssetData> Assets;
	return IAssetRegistry::Get()->GetAssetsByPackageName(FName(*(Content.Path / Name)), Assets);
}

FString GetTypeOf(const UBlueprint& Blueprint, const TCHAR* Variable)
{
	const int32 Index = FBlueprintEditorUtils::FindNewVariableIndex(&Blueprint, Variable);
	const UObject* Type =
		Index == INDEX_NONE ? nullptr : Blueprint.NewVariables[Index].VarType.PinSubCategoryObject.Get();
	return Type ? Type->GetPathName() : FString();
}
}

DEFINE_SPEC(FKestrelBlueprintLookupSpec, "Kestrel.BlueprintLookup", KestrelTest::Flags)
void FKestrelBlueprintLookupSpec::Define()
{
	using namespace BlueprintLookupTest;

	It("finds the class that an asset makes, and the asset's own where it makes none", [this]() {
		const FKestrelTestContent Content;
		MakeSaved(Content, TEXT("BP_Made"));
		TArray<FAssetData> Assets;
		IAssetRegistry::Get()->GetAssetsByPackageName(FName(*(Content.Path / TEXT("BP_Made"))), Assets);
		const UClass* Class = Assets.IsEmpty() ? nullptr : FUtils::GetBlueprintClassFromAssetData(Assets[0]);
		KestrelTest::TestSameText(
			*this, TEXT("made"), Class ? Class->GetPathName() : FString(), Content.Path / TEXT("BP_Made.BP_Made_C"));
		TestTrue(TEXT("own"),
			FUtils::GetBlueprintClassFromAssetData(FAssetData(AActor::StaticClass())) == UClass::StaticClass());
		TestNull(TEXT("none"), FUtils::GetBlueprintClassFromAssetData(FAssetData()));
		TestNull(TEXT("no such tree"), FUtils::GetBehaviorTreeFromBehaviorTreeName(TEXT("BT_NoSuch")));
	});

	It("finds Blueprints of derived classes with every tool", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Derived = FKismetEditorUtilities::CreateBlueprint(AActor::StaticClass(),
			CreatePackage(*(Content.Path / TEXT("BP_Derived"))), TEXT("BP_Derived"), BPTYPE_Normal,
			UKestrelTestBlueprint::StaticClass(), UBlueprintGeneratedClass::StaticClass());
		FAssetRegistryModule::AssetCreated(Derived);
		Derived->MarkPackageDirty();
		KestrelTest::TestSameText(*this, TEXT("modified"),
			GetMember(FUtils::ModifyBlueprint(TEXT("bp_derived"),
						  TEXT("{\"Variables\":{\"SoughtMana\":{\"Type\":{\"Category\":\"int\"}}}}")),
				TEXT("Success")),
			TEXT("Blueprint modified, compiled, and saved successfully."));
		TestTrue(TEXT("read"),
			FUtils::ReadBlueprint(TEXT("BP_Derived"), TEXT("Variables")).Contains(TEXT("\"SoughtMana\"")));
		Derived->MarkPackageDirty();
		TestTrue(TEXT("saved and compiled"),
			FUtils::SaveAndCompileAllDirtyBlueprints().Contains(TEXT("Blueprint 'BP_Derived' saved successfully.")));
		TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
		FKestrelFindUtils::FindInAllBlueprintFiles(TEXT("SoughtMana"), Result);
		TestEqual(TEXT("found"), Result->GetArrayField(TEXT("blueprint_references")).Num(), 1);
		FUtils::CreateBlueprintAsset(Content.Path, TEXT("BP_Child"), TEXT("BP_Derived"));
		const UBlueprint* Child = FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Child"));
		TestTrue(TEXT("parent"), Child && Child->ParentClass == Derived->GeneratedClass);
	});

	It("waits for the asset registry when it is scanning", [this]() {
		const FKestrelTestContent Content;
		MakeSaved(Content, TEXT("BP_Late"));
		Forget(Content, TEXT("BP_Late"));
		IAssetRegistry::Get()->SearchAllAssets(false);
		TestTrue(TEXT("scanning"), IAssetRegistry::Get()->IsLoadingAssets() && !IsKnown(Content, TEXT("BP_Late")));
		KestrelTest::TestSameText(*this, TEXT("read"),
			GetMember(FUtils::ReadBlueprint(TEXT("BP_Late"), TEXT("Variables")), TEXT("Name")), TEXT("BP_Late"));
	});

	It("saves a dirty Blueprint that the registry has lost", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Lost"));
		FUtils::SaveBlueprint(Blueprint);
		Forget(Content, TEXT("BP_Lost"));
		Blueprint->MarkPackageDirty();
		TestTrue(TEXT("in the result"),
			FUtils::SaveAndCompileAllDirtyBlueprints().Contains(TEXT("Blueprint 'BP_Lost' saved successfully.")));
		TestFalse(TEXT("dirty"), Blueprint->GetOutermost()->IsDirty());
		Forget(Content, TEXT("BP_Lost"));
		KestrelTest::TestSameText(*this, TEXT("read"),
			GetMember(FUtils::ReadBlueprint(TEXT("BP_Lost"), TEXT("Variables")), TEXT("Name")), TEXT("BP_Lost"));
	});

	It("says that an asset exists and why it cannot be loaded", [this]() {
		const FKestrelTestContent Content;
		const auto TestAnswer = [this, &Content](const TCHAR* What, const FString& Result, const TCHAR* Kind) {
			const FString Expected =
				FString::Printf(TEXT("%s 'BP_Binary' could not be loaded from '%s/BP_Binary'. "), Kind, *Content.Path);
			const FString Error = GetMember(Result, TEXT("Error"));
			KestrelTest::TestSameText(*this, What, Error.Left(Expected.Len()), Expected);
			TestTrue(TEXT("reason"), Error.Len() > Expected.Len());
		};
		// The magic number of binary packages, and nothing behind it.
		FFileHelper::SaveArrayToFile(
			TArray<uint8>{ 0xC1, 0x83, 0x2A, 0x9E, 0, 1 }, *Content.GetFile(TEXT("BP_Binary")));
		IAssetRegistry::Get()->ScanPathsSynchronous({ Content.Path }, true);
		TestAnswer(TEXT("read"), FUtils::ReadBlueprint(TEXT("BP_Binary"), TEXT("All")), TEXT("Blueprint"));
		TestAnswer(TEXT("modify"), FUtils::ModifyBlueprint(TEXT("BP_Binary"), TEXT("{}")), TEXT("Blueprint"));
		TestAnswer(TEXT("tree"), FUtils::ReadBehaviorTree(TEXT("BP_Binary")), TEXT("BehaviorTree"));
		KestrelTest::TestSameText(*this, TEXT("no pattern"),
			GetMember(FUtils::ReadBlueprint(TEXT("BP_*"), TEXT("All")), TEXT("Error")),
			TEXT("Blueprint 'BP_*' not found."));

		MakeSaved(Content, TEXT("BP_Known"));
		FFileHelper::SaveStringToFile(TEXT("damaged"), *Content.GetFile(TEXT("BP_Known")));
		TestTrue(TEXT("known to the registry"),
			GetMember(FUtils::ReadBlueprint(TEXT("BP_Known"), TEXT("All")), TEXT("Error"))
				.StartsWith(TEXT("Blueprint 'BP_Known' could not be loaded from '")));
		TestTrue(TEXT("told when all are saved"),
			FUtils::SaveAndCompileAllDirtyBlueprints().Contains(
				TEXT("\"NotLoaded\":[{\"BlueprintPath\":\"") + Content.Path + TEXT("/BP_Known.BP_Known\"")));
	});

	It("loads the Blueprints that types and parents are named after", [this]() {
		const FKestrelTestContent Content;
		MakeSaved(Content, TEXT("BP_Part"));
		const FString PartPath = Content.Path + TEXT("/BP_Part");
		for (const FString& Name :
			{ FString(TEXT("BP_Part")), FString(TEXT("bp_part_c")), PartPath, PartPath + TEXT(".BP_Part_C") })
		{
			const UBlueprint* Whole = Content.CreateBlueprint(TEXT("BP_Whole"));
			FUtils::ModifyBlueprint(
				TEXT("BP_Whole"), FString::Printf(TEXT("{\"Variables\":{\"Part\":{\"Type\":{\"Category\":\"object\","
													   "\"SubCategoryObject\":\"%s\"}}}}"),
									  *Name));
			KestrelTest::TestSameText(*this, Name, GetTypeOf(*Whole, TEXT("Part")), PartPath + TEXT(".BP_Part_C"));
			IFileManager::Get().Delete(*Content.GetFile(TEXT("BP_Whole")));
			Content.Unload();
			IAssetRegistry::Get()->ScanPathsSynchronous({ Content.Path }, true);
		}
		for (const FString& Parent : { PartPath, FString(TEXT("/Script/Engine.Pawn")) })
		{
			const FString Name = TEXT("BP_Of") + FPaths::GetCleanFilename(Parent).Replace(TEXT("."), TEXT(""));
			TestTrue(Parent, FUtils::CreateBlueprintAsset(Content.Path, Name, Parent).StartsWith(TEXT("Success: ")));
		}
	});

	It("reads an enum's first value by its name", [this]() {
		const FKestrelTestContent Content;
		Content.CreateBlueprint(TEXT("BP_Enum"));
		FUtils::ModifyBlueprint(TEXT("BP_Enum"),
			TEXT(
				"{\"Variables\":{\"Group\":{\"Type\":{\"Category\":\"enum\",\"SubCategoryObject\":\"ETickingGroup\"}}}}"));
		TestTrue(TEXT("name"),
			FUtils::ReadBlueprint(TEXT("BP_Enum"), TEXT("Variables")).Contains(TEXT("\"Value\":\"TG_PrePhysics\"")));
	});
}
