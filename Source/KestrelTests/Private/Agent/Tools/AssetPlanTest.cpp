#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Tools/ToolPlan.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Dom/JsonObject.h"
#include "Engine/Blueprint.h"
#include "HAL/FileManager.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "UObject/Package.h"

namespace AssetPlanTest
{
using FUtils = FKestrelBlueprintUtils;
using FPlan = TSharedRef<FKestrelToolPlan>;

const TCHAR* const AddMana = TEXT("{\"Variables\":{\"Mana\":{\"Type\":{\"Category\":\"int\"}}}}");
const TCHAR* const AddSpeed = TEXT("{\"Variables\":{\"Speed\":{\"Type\":{\"Category\":\"int\"}}}}");

/** Fields come in pairs. */
FPlan PlanWith(FKestrelToolPlanner& Planner, const TCHAR* Tool, const TArray<FString>& Fields)
{
	const TSharedRef<FJsonObject> Input = MakeShared<FJsonObject>();
	for (int32 Index = 0; Index + 1 < Fields.Num(); Index += 2)
	{
		Input->SetStringField(Fields[Index], Fields[Index + 1]);
	}
	return Planner.Plan(Tool, TEXT("id"), Input);
}

FPlan PlanModification(FKestrelToolPlanner& Planner, const TCHAR* Name, const TCHAR* Updates = AddMana)
{
	return PlanWith(
		Planner, TEXT("modify_blueprint_variables"), { TEXT("blueprint_name"), Name, TEXT("updates"), Updates });
}

FPlan PlanModification(const TCHAR* Name)
{
	FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
	return PlanModification(Planner, Name);
}

FPlan PlanCreation(
	FKestrelToolPlanner& Planner, const FString& Folder, const TCHAR* Name, const TCHAR* Parent = TEXT("Actor"))
{
	return PlanWith(Planner, TEXT("create_blueprint"),
		{ TEXT("BPPath"), Folder, TEXT("BPName"), Name, TEXT("BPParentClassName"), Parent });
}

UBlueprint* MakeSaved(const FKestrelTestContent& Content, const TCHAR* Name)
{
	UBlueprint* Blueprint = Content.CreateBlueprint(Name);
	FUtils::SaveBlueprint(Blueprint);
	return Blueprint;
}

bool HasMana(const UBlueprint* Blueprint)
{
	return Blueprint && FBlueprintEditorUtils::FindNewVariableIndex(Blueprint, TEXT("Mana")) != INDEX_NONE;
}

FString JoinCautions(const FKestrelToolPlan& Plan)
{
	FString Text;
	for (const FText& Caution : Plan.Cautions)
	{
		Text += (Text.IsEmpty() ? TEXT("") : TEXT(", ")) + Caution.ToString();
	}
	return Text;
}

/** A folder of the content that is a link to one beside the project. */
class FLinkedContent
{
public:
	FLinkedContent()
		: Outside(FPaths::ConvertRelativePathToFull(FPaths::ProjectDir() / TEXT("..")) / TEXT("Outside") +
				  FPaths::GetCleanFilename(Content.Path))
		, Link(FPaths::ConvertRelativePathToFull(Content.GetFile(TEXT("Linked"))).LeftChop(7))
	{
		IFileManager::Get().MakeDirectory(*Outside, true);
		IFileManager::Get().MakeDirectory(*FPaths::GetPath(Link), true);
		bMade = KestrelNativeFile::MakeLink(Link, Outside);
	}
	~FLinkedContent()
	{
		Content.Unload();
		IFileManager::Get().Delete(*Link);
		IFileManager::Get().DeleteDirectory(*Outside, false, true);
	}
	UE_NONCOPYABLE(FLinkedContent)

	const FKestrelTestContent Content;
	const FString Outside;
	const FString Link;
	bool bMade = false; // false where the platform has no links
};
}

DEFINE_SPEC(FKestrelAssetPlanSpec, "Kestrel.ToolPlanAssets", KestrelTest::Flags)
void FKestrelAssetPlanSpec::Define()
{
	using namespace AssetPlanTest;

	It("shows which of two assets of one name is meant, and changes that one", [this]() {
		const FKestrelTestContent First;
		const FKestrelTestContent Second;
		MakeSaved(First, TEXT("BP_Twin"));
		MakeSaved(Second, TEXT("BP_Twin"));
		UBlueprint* Meant = FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Twin"));
		const FString MeantPackage = Meant->GetOutermost()->GetName();
		const FPlan Plan = PlanModification(TEXT("bp_twin"));
		KestrelTest::TestSameText(*this, TEXT("shown"), Plan->Target, MeantPackage);
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		KestrelTest::TestSameText(*this, TEXT("shown for reading"),
			PlanWith(Planner, TEXT("read_blueprint"),
				{ TEXT("blueprint_name"), TEXT("BP_Twin"), TEXT("data_subset"), TEXT("All") })
				->Target,
			MeantPackage);
		TestTrue(TEXT("holds"), Plan->StillHolds());

		FAssetRegistryModule::AssetDeleted(Meant);
		UBlueprint* Other = FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Twin"));
		TestTrue(TEXT("another one has the name now"), Other && Other != Meant);
		TestFalse(TEXT("holds with the other one"), Plan->StillHolds());
		Plan->Apply();
		TestTrue(TEXT("changed the one that was shown"), HasMana(Meant) && !HasMana(Other));
	});

	It("marks assets that links lead out of the project to", [this]() {
		const FLinkedContent Linked;
		if (!Linked.bMade)
		{
			return;
		}
		const FString Folder = Linked.Content.Path / TEXT("Linked");
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const FPlan Creation = PlanCreation(Planner, Folder, TEXT("BP_Far"));
		KestrelTest::TestSameText(
			*this, TEXT("creation"), JoinCautions(*Creation), TEXT("cannot be undone, outside the project"));
		KestrelTest::TestSameText(*this, TEXT("created"), JoinCautions(*PlanModification(Planner, TEXT("BP_Far"))),
			TEXT("outside the project"));
		Creation->Apply();
		const FString Saved = FUtils::SaveBlueprint(FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Far")));
		TestTrue(TEXT("saved: ") + Saved, FPaths::FileExists(Linked.Outside / TEXT("BP_Far.uasset")));
		const FPlan Modification = PlanModification(TEXT("BP_Far"));
		KestrelTest::TestSameText(
			*this, TEXT("modification"), JoinCautions(*Modification), TEXT("outside the project"));
		KestrelTest::TestSameText(*this, TEXT("shown"), Modification->Target, Folder / TEXT("BP_Far"));
		KestrelTest::TestSameText(*this, TEXT("shown link"), Modification->LinkTarget,
			FPaths::ConvertRelativePathToFull(Linked.Outside) / TEXT("BP_Far.uasset"));
		FKestrelToolPlanner Reader(EKestrelLookAhead::Limited);
		KestrelTest::TestSameText(*this, TEXT("reading"),
			JoinCautions(*PlanWith(Reader, TEXT("read_blueprint"),
				{ TEXT("blueprint_name"), TEXT("BP_Far"), TEXT("data_subset"), TEXT("All") })),
			TEXT("outside the project"));

		FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Far"))->MarkPackageDirty();
		KestrelTest::TestSameText(*this, TEXT("saving all"),
			JoinCautions(*PlanWith(Reader, TEXT("save_and_compile_all_dirty_blueprints"), {})),
			TEXT("saves your own unsaved changes too, outside the project"));
	});

	It("is planned again when the asset has changed since it was shown", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = MakeSaved(Content, TEXT("BP_Shown"));
		const FString File = Content.GetFile(TEXT("BP_Shown"));

		FPlan Plan = PlanModification(TEXT("BP_Shown"));
		Blueprint->MarkPackageDirty();
		TestFalse(TEXT("unsaved changes"), Plan->StillHolds());
		Plan = PlanModification(TEXT("BP_Shown"));
		TestTrue(TEXT("unsaved changes that were there"), Plan->StillHolds());
		FBlueprintEditorUtils::AddMemberVariable(
			Blueprint, TEXT("Added"), KestrelTest::MakePinType(TEXT("int")), FString());
		TestFalse(TEXT("more unsaved changes"), Plan->StillHolds());

		FUtils::SaveBlueprint(Blueprint);
		Plan = PlanModification(TEXT("BP_Shown"));
		FString Bytes;
		FFileHelper::LoadFileToString(Bytes, *File);
		TestTrue(TEXT("saved"), Plan->StillHolds());
		FFileHelper::SaveStringToFile(Bytes.Replace(TEXT("Added"), TEXT("Adder")), *File); // within the same second
		TestFalse(TEXT("another file of the same size"), Plan->StillHolds());

		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const FPlan Creation = PlanCreation(Planner, Content.Path, TEXT("BP_New"));
		const FPlan Missing = PlanModification(TEXT("BP_Late"));
		TestTrue(TEXT("nothing yet"), Creation->StillHolds() && Missing->StillHolds());
		Content.CreateBlueprint(TEXT("BP_New"));
		Content.CreateBlueprint(TEXT("BP_Late"));
		TestFalse(TEXT("created meanwhile"), Creation->StillHolds());
		TestFalse(TEXT("found meanwhile"), Missing->StillHolds());
	});

	It("runs several tools on one asset as they were approved", [this]() {
		const FKestrelTestContent Content;
		MakeSaved(Content, TEXT("BP_Old"));
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const FPlan Plans[] = {
			PlanModification(Planner, TEXT("BP_Old")),
			PlanCreation(Planner, Content.Path, TEXT("BP_Row")),
			PlanCreation(Planner, Content.Path, TEXT("BP_Child"), TEXT("BP_Row")),
			PlanModification(Planner, TEXT("BP_Row")),
			PlanModification(Planner, TEXT("BP_Row"), AddSpeed),
			PlanModification(Planner, TEXT("BP_Child"), AddSpeed),
			PlanModification(Planner, TEXT("BP_Old"), AddSpeed),
			PlanCreation(Planner, Content.Path, TEXT("BP_Kept")),
			PlanWith(Planner, TEXT("save_and_compile_all_dirty_blueprints"), {}),
			PlanModification(Planner, TEXT("BP_Kept")),
			PlanWith(Planner, TEXT("read_blueprint"),
				{ TEXT("blueprint_name"), TEXT("BP_Kept"), TEXT("data_subset"), TEXT("All") }),
		};
		KestrelTest::TestSameText(
			*this, TEXT("shown before it is there"), Plans[3]->Target, Content.Path / TEXT("BP_Row"));
		for (int32 Index = 0; Index < static_cast<int32>(UE_ARRAY_COUNT(Plans)); ++Index)
		{
			const FString What = FString::Printf(TEXT("tool %d"), Index);
			TestTrue(What, Plans[Index]->StillHolds());
			const FString Result = Plans[Index]->Apply();
			TestFalse(What + TEXT(": ") + Result, FFileUtils::IsError(Result));
		}
		TestTrue(TEXT("changed"), HasMana(FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Kept"))));
	});

	It("asks where names lead once for all tools between two that change something", [this]() {
		const FKestrelTestContent Content;
		const TSharedRef<FKestrelAssetFinder> Finder = MakeShared<FKestrelAssetFinder>();
		const auto PlanReading = [](const TSharedRef<FKestrelAssetFinder>& Each) {
			FKestrelToolPlanner Planner(EKestrelLookAhead::Limited, Each);
			return PlanWith(Planner, TEXT("read_blueprint"),
				{ TEXT("blueprint_name"), TEXT("BP_Late"), TEXT("data_subset"), TEXT("All") });
		};
		const FPlan Plan = PlanReading(Finder);
		FFileHelper::SaveStringToFile(TEXT("x"), *Content.GetFile(TEXT("BP_Late"))); // which the registry does not see
		KestrelTest::TestSameText(*this, TEXT("shared"), PlanReading(Finder)->Target, TEXT("BP_Late"));
		TestTrue(TEXT("holds with the same"), Plan->StillHolds(*Finder));
		TestFalse(TEXT("holds"), Plan->StillHolds());
		KestrelTest::TestSameText(*this, TEXT("asked again"), PlanReading(MakeShared<FKestrelAssetFinder>())->Target,
			Content.Path / TEXT("BP_Late"));
	});

	It("foresees that a Blueprint cannot be created", [this]() {
		const FKestrelTestContent Content;
		MakeSaved(Content, TEXT("BP_Taken"));
		const TPair<FString, const TCHAR*> Cases[] = {
			{ Content.Path, TEXT("BP_Taken") },
			{ Content.Path, TEXT("bp_taken") },
			{ TEXT("/Game/../../out"), TEXT("BP_Out") },
			{ TEXT("/Temp/X"), TEXT("BP_Out") },
			{ TEXT("/Memory/X"), TEXT("BP_Out") },
			{ TEXT("Game/Doors"), TEXT("BP_Out") },
			{ Content.Path, TEXT("BP_Out.BP_Out") },
			{ Content.Path, TEXT("None") },
		};
		for (const TPair<FString, const TCHAR*>& Case : Cases)
		{
			FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
			const FPlan Plan = PlanCreation(Planner, Case.Key, Case.Value);
			KestrelTest::TestSameText(*this, Case.Key / Case.Value, Plan->Refusal, Plan->Apply());
			TestTrue(Case.Key / Case.Value, FFileUtils::IsError(Plan->Refusal));
			KestrelTest::TestSameText(*this, TEXT("those behind do not build on it"),
				PlanModification(Planner, TEXT("BP_Out"))->Target, TEXT("BP_Out"));
		}

		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const FPlan Plan = PlanCreation(Planner, TEXT("/Temp/X"), TEXT("BP_Out"), TEXT("NoSuchClass"));
		KestrelTest::TestSameText(*this, TEXT("a parent that may yet be found"), Plan->Refusal, FString());
		KestrelTest::TestSameText(*this, TEXT("a parent that was not found"), Plan->Apply(),
			TEXT("Error: Parent class 'NoSuchClass' not found or could not be loaded."));
	});

	It("lists all that would be saved where it can be read whole", [this]() {
		const FKestrelTestContent Content;
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		TArray<FString> Packages;
		for (int32 Index = 10; Index < 30; ++Index)
		{
			const FString Name = FString::Printf(TEXT("BP_%s%d"), *FString::ChrN(40, u'x'), Index);
			PlanCreation(Planner, Content.Path, *Name);
			Packages.Add(Content.Path / Name);
		}
		const FPlan Plan = PlanWith(Planner, TEXT("save_and_compile_all_dirty_blueprints"), {});
		KestrelTest::TestSameText(*this, TEXT("lines"), Plan->Change.IsSet() ? Plan->Change->After : FString(),
			FString::Join(Packages, TEXT("\n")));
		KestrelTest::TestSameText(
			*this, TEXT("count"), Plan->Notes.IsEmpty() ? FString() : Plan->Notes[0].ToString(), TEXT("20 packages"));
	});

	It("is planned again when a file that would be saved has become a link", [this]() {
		const FKestrelTestContent Content;
		const FKestrelTestFolder Elsewhere;
		MakeSaved(Content, TEXT("BP_Moved"))->MarkPackageDirty();
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const FPlan Saving = PlanWith(Planner, TEXT("save_and_compile_all_dirty_blueprints"), {});
		TestTrue(TEXT("holds"), Saving->StillHolds());
		const FString File = FPaths::ConvertRelativePathToFull(Content.GetFile(TEXT("BP_Moved")));
		IFileManager::Get().Move(*Elsewhere.Full(TEXT("BP_Moved.uasset")), *File);
		if (KestrelNativeFile::MakeLink(File, Elsewhere.Full(TEXT("BP_Moved.uasset"))))
		{
			TestFalse(TEXT("leads elsewhere"), Saving->StillHolds());
		}
	});

	It("does not take a change of somebody else's for one of its own", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = MakeSaved(Content, TEXT("BP_Shared"));
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		const FPlan First = PlanModification(Planner, TEXT("BP_Shared"));
		const FPlan Saving = PlanWith(Planner, TEXT("save_and_compile_all_dirty_blueprints"), {});
		const FPlan Second = PlanModification(Planner, TEXT("BP_Shared"), AddSpeed);
		First->Apply();
		// As a script between the two would.
		FBlueprintEditorUtils::AddMemberVariable(
			Blueprint, TEXT("Added"), KestrelTest::MakePinType(TEXT("int")), FString());
		TestFalse(TEXT("at once"), Second->StillHolds());
		Saving->Apply();
		TestFalse(TEXT("after all are saved"), Second->StillHolds());
	});
}
