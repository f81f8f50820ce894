#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Dom/JsonObject.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "GameFramework/Actor.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "K2Node_CallFunction.h"
#include "Kismet/KismetSystemLibrary.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "UObject/Package.h"

namespace BlueprintToolsTest
{
using FUtils = FKestrelBlueprintUtils;

FString GetMember(const FString& Json, const TCHAR* Field)
{
	FString Text;
	KestrelJson::ParseObject(Json)->TryGetStringField(Field, Text);
	return Text;
}

/** The names of the members, in their order. */
FString GetKeys(const FString& Json)
{
	TArray<FString> Keys;
	KestrelJson::ParseObject(Json)->Values.GetKeys(Keys);
	return FString::Join(Keys, TEXT(" "));
}

struct FRefusedCreation
{
	const TCHAR* What;
	const TCHAR* Path;
	const TCHAR* Name;
	const TCHAR* Parent;
};

/** Nothing is asked and nothing is made. */
const FRefusedCreation RefusedCreations[] = {
	{ TEXT("a folder outside of all content"), TEXT("/NoSuchRoot/Folder"), TEXT("BP_A"), TEXT("Actor") },
	{ TEXT("a path that is none"), TEXT("Blueprints"), TEXT("BP_A"), TEXT("Actor") },
	{ TEXT("a name with a dot"), TEXT("/Game"), TEXT("BP.A"), TEXT("Actor") },
	{ TEXT("a name with a space"), TEXT("/Game"), TEXT("BP A"), TEXT("Actor") },
	{ TEXT("no name"), TEXT("/Game"), TEXT(""), TEXT("Actor") },
	{ TEXT("the name that stands for none"), TEXT("/Game"), TEXT("none"), TEXT("Actor") },
	{ TEXT("a folder of native types"), TEXT("/Script/Engine"), TEXT("BP_A"), TEXT("Actor") },
	{ TEXT("a class that Blueprints cannot have as parent"), TEXT("/Game"), TEXT("BP_A"), TEXT("Blueprint") },
};

UK2Node_CallFunction* AddCall(UBlueprint& Blueprint, const TCHAR* Function)
{
	FGraphNodeCreator<UK2Node_CallFunction> Creator(*Blueprint.UbergraphPages[0]);
	UK2Node_CallFunction* Node = Creator.CreateNode();
	Node->FunctionReference.SetExternalMember(Function, UKismetSystemLibrary::StaticClass());
	Creator.Finalize();
	return Node;
}

/** A value on a pin that is no longer there gives a warning alone. */
void PutWarning(UBlueprint& Blueprint)
{
	UEdGraphNode* First = AddCall(Blueprint, TEXT("PrintString"));
	UEdGraphNode* Second = AddCall(Blueprint, TEXT("PrintString"));
	UEdGraphPin* Orphan = First->CreatePin(EGPD_Output, UEdGraphSchema_K2::PC_Exec, TEXT("Old"));
	Orphan->MakeLinkTo(Second->FindPin(UEdGraphSchema_K2::PN_Execute));
	Orphan->bOrphanedPin = true;
	FBlueprintEditorUtils::MarkBlueprintAsModified(&Blueprint);
}

void PutError(UBlueprint& Blueprint)
{
	AddCall(Blueprint, TEXT("NoSuchFunction"));
	FBlueprintEditorUtils::MarkBlueprintAsModified(&Blueprint);
}
}

DEFINE_SPEC(FKestrelBlueprintToolsSpec, "Kestrel.BlueprintTools", KestrelTest::Flags)
void FKestrelBlueprintToolsSpec::Define()
{
	using namespace BlueprintToolsTest;

	It("create a Blueprint from a native class or from another Blueprint", [this]() {
		const FKestrelTestContent Content;
		KestrelTest::TestSameText(*this, TEXT("native"),
			FUtils::CreateBlueprintAsset(Content.Path, TEXT("BP_Gate"), TEXT("Actor")),
			FString::Printf(TEXT("Success: Blueprint 'BP_Gate' created at '%s'."), *Content.Path));
		const UBlueprint* Gate = FUtils::GetBlueprintFromtBlueprintName(TEXT("bp_gate"));
		TestTrue(TEXT("found at once, whatever the letter case"), Gate != nullptr);
		TestTrue(TEXT("not saved"), Gate && Gate->GetOutermost()->IsDirty());
		TestFalse(TEXT("a file"), FPaths::FileExists(Content.GetFile(TEXT("BP_Gate"))));

		FUtils::CreateBlueprintAsset(Content.Path / TEXT("Deep"), TEXT("BP_Portcullis"), TEXT("BP_Gate"));
		const UBlueprint* Portcullis = FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Portcullis"));
		TestTrue(TEXT("child"), Portcullis && Gate && Portcullis->ParentClass == Gate->GeneratedClass);
		KestrelTest::TestSameText(*this, TEXT("unknown parent"),
			FUtils::CreateBlueprintAsset(Content.Path, TEXT("BP_X"), TEXT("AActor")),
			TEXT("Error: Parent class 'AActor' not found or could not be loaded."));
	});

	It("refuse a place where nothing can be created, without asking", [this]() {
		const FKestrelTestContent Content;
		for (const FRefusedCreation& Case : RefusedCreations)
		{
			KestrelTest::TestSameText(*this, Case.What, FUtils::CreateBlueprintAsset(Case.Path, Case.Name, Case.Parent),
				FString::Printf(
					TEXT("Error: Failed to create Blueprint '%s' at '%s'. Check if the path is valid and the "
						 "name is unique."),
					Case.Name, Case.Path));
		}
		Content.CreateBlueprint(TEXT("BP_Taken"));
		const FString Taken = FString::Printf(
			TEXT("Error: Failed to create Blueprint 'BP_Taken' at '%s'. Check if the path is valid and the "
				 "name is unique."),
			*Content.Path);
		KestrelTest::TestSameText(*this, TEXT("taken in memory"),
			FUtils::CreateBlueprintAsset(Content.Path, TEXT("BP_Taken"), TEXT("Pawn")), Taken);
		FUtils::SaveAndCompileAllDirtyBlueprints();
		Content.Unload();
		KestrelTest::TestSameText(*this, TEXT("taken on disk"),
			FUtils::CreateBlueprintAsset(Content.Path, TEXT("BP_Taken"), TEXT("Pawn")), Taken);
		KestrelTest::TestSameText(*this, TEXT("taken on disk, in other letters"),
			FUtils::CreateBlueprintAsset(Content.Path, TEXT("bp_taken"), TEXT("Pawn")),
			Taken.Replace(TEXT("BP_Taken"), TEXT("bp_taken")));
		FUtils::CreateBlueprintAsset(
			FString::ChrN(3000, u'p'), FString::ChrN(3000, u'n'), FString::ChrN(3000, u'c')); // too long for a name
	});

	It("create no Blueprint that the file system could not hold", [this]() {
		const FKestrelTestContent Content;
		const FString Longest = FString::ChrN(248, u'n'); // with ".uasset" 255 bytes
		const auto Create = [](const FString& Path, const FString& Name) {
			return FUtils::CreateBlueprintAsset(Path, Name, TEXT("Actor")).Left(7);
		};
		KestrelTest::TestSameText(*this, TEXT("too long"), Create(Content.Path, Longest + TEXT("n")), TEXT("Error: "));
		KestrelTest::TestSameText(
			*this, TEXT("too long in its bytes"), Create(Content.Path, FString::ChrN(83, u'\u4E2D')), TEXT("Error: "));
		KestrelTest::TestSameText(*this, TEXT("folder too long"),
			Create(Content.Path / FString::ChrN(256, u'f'), TEXT("BP_A")), TEXT("Error: "));
		TestFalse(TEXT("something left"), FPaths::DirectoryExists(FPaths::GetPath(Content.GetFile(TEXT("A")))));
		KestrelTest::TestSameText(*this, TEXT("as long as can be"), Create(Content.Path, Longest), TEXT("Success"));
		KestrelTest::TestSameText(*this, TEXT("and saved"),
			GetMember(FUtils::SaveBlueprint(FUtils::GetBlueprintFromtBlueprintName(Longest)), TEXT("Error")),
			FString());
	});

	It("read the sections that are asked for", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Sections"));
		FBlueprintEditorUtils::AddMemberVariable(
			Blueprint, TEXT("Weight"), KestrelTest::MakePinType(UEdGraphSchema_K2::PC_Int), TEXT("12"));
		FUtils::CompileBlueprint(Blueprint);
		const auto Read = [](const TCHAR* Subset) { return FUtils::ReadBlueprint(TEXT("BP_Sections"), Subset); };
		KestrelTest::TestSameText(
			*this, TEXT("all"), GetKeys(Read(TEXT("aLL"))), TEXT("Name Path Variables Functions Graphs"));
		KestrelTest::TestSameText(*this, TEXT("one"), GetKeys(Read(TEXT("variables"))), TEXT("Name Path variables"));
		KestrelTest::TestSameText(*this, TEXT("one that is not there"), Read(TEXT("SuperClas")),
			FString::Printf(TEXT("{\"Name\":\"BP_Sections\",\"Path\":\"%s/BP_Sections.BP_Sections\"}"), *Content.Path));
		const TSharedPtr<FJsonObject> Variables =
			KestrelJson::ParseObject(Read(TEXT("Variables")))->GetObjectField(TEXT("Variables"));
		KestrelTest::TestSameText(*this, TEXT("a variable"),
			KestrelJson::ToCondensedText(Variables->GetObjectField(TEXT("Weight")).ToSharedRef()),
			TEXT("{\"Type\":{\"Category\":\"int\",\"SubCategory\":\"\",\"Container\":\"None\",\"Flags\":[]},\"Value\":"
				 "\"12\"}"));
		KestrelTest::TestSameText(*this, TEXT("unknown"), FUtils::ReadBlueprint(TEXT("BP_Nowhere"), TEXT("All")),
			TEXT("{\"Error\":\"Blueprint 'BP_Nowhere' not found.\"}"));
		FUtils::ReadBlueprint(FString::ChrN(5000, u'x'), TEXT("All")); // too long for a name
	});

	It("save and compile what has changed, each for itself", [this]() {
		const FKestrelTestContent Content;
		AddExpectedError(TEXT("Could not find a function named"), EAutomationExpectedErrorFlags::Contains, 0);
		FUtils::SaveAndCompileAllDirtyBlueprints(); // whatever others have left
		KestrelTest::TestSameText(*this, TEXT("nothing to do"), FUtils::SaveAndCompileAllDirtyBlueprints(),
			TEXT("{\"BlueprintResults\":[],\"Success\":\"All dirty Blueprints were processed successfully.\"}"));
		Content.CreateBlueprint(TEXT("BP_Good"));
		PutWarning(*Content.CreateBlueprint(TEXT("BP_Warning")));
		PutError(*Content.CreateBlueprint(TEXT("BP_Broken")));
		UBlueprint* ReadOnly = Content.CreateBlueprint(TEXT("BP_ReadOnly"));
		FUtils::SaveBlueprint(ReadOnly);
		IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
		Files.SetReadOnly(*Content.GetFile(TEXT("BP_ReadOnly")), true);
		ReadOnly->MarkPackageDirty();

		const FString Result = FUtils::SaveAndCompileAllDirtyBlueprints();
		Files.SetReadOnly(*Content.GetFile(TEXT("BP_ReadOnly")), false);
		TMap<FString, FString> Found;
		const TSharedPtr<FJsonObject> Document = KestrelJson::ParseObject(Result);
		for (const TSharedPtr<FJsonValue>& Value : Document->GetArrayField(TEXT("BlueprintResults")))
		{
			const TSharedPtr<FJsonObject> Each = Value->AsObject();
			Found.Add(FPaths::GetExtension(Each->GetStringField(TEXT("BlueprintPath"))),
				KestrelJson::ToCondensedText(Each.ToSharedRef()));
		}
		const auto Test = [&](const TCHAR* Name, const TCHAR* Rest) {
			const FString Expected =
				FString::Printf(TEXT("{\"BlueprintPath\":\"%s/%s.%s\",%s"), *Content.Path, Name, Name,
					*FString(Rest)
						 .Replace(TEXT("'"), TEXT("\""))
						 .Replace(TEXT("%s"), *FString::Printf(TEXT("'%s'"), Name)));
			// What is said in the engine's words follows.
			KestrelTest::TestSameText(*this, Name, Found.FindRef(Name).Left(Expected.Len()), Expected);
		};
		Test(TEXT("BP_Good"),
			TEXT(
				"'SaveResult':'Blueprint %s saved successfully.','CompileResult':'Blueprint %s compiled successfully.'"));
		Test(TEXT("BP_Warning"),
			TEXT("'SaveResult':'Blueprint %s saved successfully.','CompileError':'Failed to compile Blueprint %s.',"
				 "'CompileWarnings'"));
		Test(TEXT("BP_Broken"),
			TEXT("'SaveResult':'Blueprint %s saved successfully.','CompileError':'Failed to compile Blueprint %s.',"
				 "'CompileErrors'"));
		Test(TEXT("BP_ReadOnly"),
			TEXT("'SaveError':'Failed to save Blueprint asset: BP_ReadOnly','CompileResult':'Blueprint %s compiled "
				 "successfully.','Reason'"));
		KestrelTest::TestSameText(*this, TEXT("outcome"), GetMember(Result, TEXT("Error")),
			TEXT("Some Blueprints failed to save or compile."));
		TestTrue(TEXT("what could not be saved stays dirty"), ReadOnly->GetOutermost()->IsDirty());
		KestrelTest::TestSameText(*this, TEXT("no Blueprint"), FUtils::CompileBlueprint(GetTransientPackage()),
			TEXT("{\"Error\":\"Provided asset is not a valid Blueprint.\"}"));
	});

	It("find the same in a Blueprint that was saved and opened again", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Reopened"), TEXT("Character"));
		FBlueprintEditorUtils::AddMemberVariable(
			Blueprint, TEXT("Line"), KestrelTest::MakePinType(UEdGraphSchema_K2::PC_String), TEXT("a, (b) \"c\""));
		UEdGraphNode* Print = AddCall(*Blueprint, TEXT("PrintString"));
		Blueprint->UbergraphPages[0]
			->Nodes[0]
			->FindPin(UEdGraphSchema_K2::PN_Then)
			->MakeLinkTo(Print->FindPin(UEdGraphSchema_K2::PN_Execute));
		FUtils::CompileBlueprint(Blueprint);
		const FString Before = FUtils::ReadBlueprint(TEXT("BP_Reopened"), TEXT("All"));
		TestTrue(TEXT("saved"), GetMember(FUtils::SaveBlueprint(Blueprint), TEXT("Error")).IsEmpty());
		Content.Unload();
		KestrelTest::TestSameText(
			*this, TEXT("reopened"), FUtils::ReadBlueprint(TEXT("BP_Reopened"), TEXT("All")), Before);
	});
}
