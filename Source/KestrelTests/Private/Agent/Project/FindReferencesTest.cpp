#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Project/KestrelFindUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "Engine/Blueprint.h"
#include "Misc/App.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "UObject/Package.h"

namespace FindReferencesTest
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

/** "Type: Name" of each match, in its order. */
TArray<FString> Search(UBlueprint* Blueprint, const FString& Text)
{
	FValues Results;
	FKestrelFindUtils::FindInBlueprint(Blueprint, Text, Results);
	TArray<FString> Lines;
	for (const TSharedPtr<FJsonValue>& Result : Results)
	{
		FString Name;
		const bool bNamed = Result->AsObject()->TryGetStringField(TEXT("Name"), Name);
		Lines.Add(Result->AsObject()->GetStringField(TEXT("Type")) + (bNamed ? TEXT(": ") + Name : FString()));
	}
	return Lines;
}

int32 CountNames(const UBlueprint& Blueprint)
{
	int32 Count = 1 + Blueprint.FunctionGraphs.Num() + Blueprint.NewVariables.Num();
	for (const TArray<TObjectPtr<UEdGraph>>* Graphs : { &Blueprint.UbergraphPages, &Blueprint.FunctionGraphs })
	{
		for (const UEdGraph* Graph : *Graphs)
		{
			for (const UEdGraphNode* Node : Graph->Nodes)
			{
				Count += 2 + Node->Pins.Num();
			}
		}
	}
	return Count;
}
}

DEFINE_SPEC(FKestrelFindReferencesSpec, "Kestrel.FindReferences", KestrelTest::Flags)
void FKestrelFindReferencesSpec::Define()
{
	using namespace FindReferencesTest;

	It("finds what a Blueprint has in it, in whatever letters", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Sought"));
		TSharedPtr<FJsonObject> Ignored = MakeShared<FJsonObject>();
		FKestrelBlueprintUtils::ModifyBlueprintVariables(Blueprint,
			*KestrelJson::ParseObject(TEXT("{\"SoughtHealth\":{\"Type\":{\"Category\":\"int\"}}}")), Ignored);
		TestEqual(TEXT("matches of a name"), FString::Join(Search(Blueprint, TEXT("sOUGHT")), TEXT("|")),
			FString(TEXT("Blueprint File|Variable: SoughtHealth")));
		TestEqual(TEXT("the empty text is everywhere"), Search(Blueprint, FString()).Num(), CountNames(*Blueprint));
		TestEqual(TEXT("nothing"), Search(Blueprint, TEXT("sought health")).Num(), 0);
		TestEqual(TEXT("in no Blueprint"), Search(nullptr, FString()).Num(), 0);

		TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
		FKestrelFindUtils::FindInAllBlueprintFiles(TEXT("soughtHEALTH"), Result);
		const FValues Matches = Result->GetArrayField(TEXT("blueprint_references"));
		if (TestEqual(TEXT("in the project"), Matches.Num(), 1))
		{
			KestrelTest::TestSameText(*this, TEXT("match"),
				KestrelJson::ToCondensedText(Matches[0]->AsObject().ToSharedRef()),
				FString::Printf(TEXT("{\"Type\":\"Variable\",\"Name\":\"SoughtHealth\",\"Blueprint\":\"BP_Sought\","
									 "\"Path\":\"%s\"}"),
					*FKestrelFindUtils::GetBlueprintFilePath(Blueprint)));
		}
	});

	It("names the asset's file, whatever the folder is called", [this]() {
		KestrelTest::TestSameText(
			*this, TEXT("no Blueprint"), FKestrelFindUtils::GetBlueprintFilePath(nullptr), TEXT("Invalid Blueprint"));
		const FKestrelTestContent Content;
		const FString Folder = Content.Path / TEXT("Game");
		FKestrelBlueprintUtils::CreateBlueprintAsset(Folder, TEXT("BP_Deep"), TEXT("Actor"));
		UBlueprint* Blueprint = FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Deep"));
		FKestrelBlueprintUtils::SaveBlueprint(Blueprint);
		TestTrue(TEXT("a file"), FPaths::FileExists(FKestrelFindUtils::GetBlueprintFilePath(Blueprint)));
		UPackage* Elsewhere = CreatePackage(TEXT("/Elsewhere/Folder/BP_Far"));
		const UBlueprint* Far = NewObject<UBlueprint>(Elsewhere, TEXT("BP_Far"));
		KestrelTest::TestSameText(*this, TEXT("outside of the project's content"),
			FKestrelFindUtils::GetBlueprintFilePath(Far),
			FPaths::ProjectContentDir() / TEXT("Elsewhere/Folder/BP_Far.uasset"));
	});
}

DEFINE_SPEC(FKestrelSampleReferencesSpec, "Kestrel.SampleContent.References", KestrelTest::Flags)
void FKestrelSampleReferencesSpec::Define()
{
	using namespace FindReferencesTest;
	// The assets are those of the sample project; Tools/content.py opens it.
	if (!FString(FApp::GetProjectName()).Equals(TEXT("Harrier")))
	{
		return;
	}
	It("finds titles, comments, pins, functions and variables in their order", [this]() {
		FString Text;
		FFileHelper::LoadFileToString(Text, *(KestrelTest::PluginDir() / TEXT("Tests/Documents/References.json")));
		const TSharedPtr<FJsonObject> Searches = KestrelJson::ParseObject(Text);
		if (!TestTrue(TEXT("document"), Searches.IsValid()))
		{
			return;
		}
		for (const auto& Pair : Searches->Values)
		{
			FString Blueprint;
			FString Sought;
			FString(*Pair.Key).Split(TEXT(": "), &Blueprint, &Sought);
			TArray<FString> Expected;
			for (const TSharedPtr<FJsonValue>& Line : Pair.Value->AsArray())
			{
				Expected.Add(Line->AsString());
			}
			KestrelTest::TestSameText(*this, FString(*Pair.Key),
				FString::Join(
					Search(FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(Blueprint), Sought), TEXT("|")),
				FString::Join(Expected, TEXT("|")));
		}
	});
}
