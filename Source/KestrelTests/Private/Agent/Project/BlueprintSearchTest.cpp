#include "Agent/Project/BlueprintSearch.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Project/KestrelFindUtils.h"
#include "Agent/Project/PackageIndex.h"
#include "Agent/Project/SearchWords.h"
#include "Agent/Text/JsonText.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphNode_Comment.h"
#include "Engine/Blueprint.h"
#include "GameFramework/Actor.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "K2Node_CallFunction.h"
#include "K2Node_CustomEvent.h"
#include "K2Node_VariableGet.h"
#include "Kismet/KismetSystemLibrary.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Misc/FileHelper.h"
#include "Support/Dice.h"
#include "Support/KestrelTest.h"
#include "Support/TestBlueprint.h"
#include "Support/TestContent.h"

/** The search of Blueprints that are not in memory, held against one that loads them all. */
namespace BlueprintSearchTest
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

constexpr double AtOnce = 1e300; // a deadline that never comes

FString Describe(const FValues& References)
{
	FString Text;
	for (const TSharedPtr<FJsonValue>& Reference : References)
	{
		Text += KestrelJson::ToCondensedText(Reference->AsObject().ToSharedRef()) + TEXT("\n");
	}
	return Text;
}

/** All that there is to it. */
FString SearchPlainly(const FString& Text)
{
	TArray<FAssetData> Assets;
	IAssetRegistry::Get()->GetAssetsByClass(UBlueprint::StaticClass()->GetClassPathName(), Assets, true);
	FValues References;
	for (const FAssetData& Asset : Assets)
	{
		if (Asset.PackageName.ToString().StartsWith(TEXT("/Game/")))
		{
			FKestrelFindUtils::FindInBlueprint(Cast<UBlueprint>(Asset.GetAsset()), Text, References);
		}
	}
	return Describe(References);
}

FString Report(const FKestrelBlueprintSearch& Search)
{
	FJsonObject Result;
	Search.Report(Result);
	return Describe(Result.GetArrayField(TEXT("blueprint_references")));
}

const TCHAR* const OddNames[] = { TEXT("Health"), TEXT("bIsOpen"), TEXT("Door_12"), TEXT("K2_Odd"), TEXT("X"),
	TEXT("\u00dcber\u6bbf"), TEXT("HTTPServer2D"), TEXT("a_b__c") };
const TCHAR* const OddTexts[] = { TEXT("two\nlines \"quoted\" \\ back"), TEXT("tabs\tand Tsch\u00fc\u00df"),
	TEXT("print the STRING"), TEXT("\u6bbf\u6bbf"), TEXT("x1y2z3"), TEXT("") };
const TCHAR* const Functions[] = { TEXT("PrintString"), TEXT("IsValid"), TEXT("IsServer"), TEXT("PrintText"),
	TEXT("GetDisplayName") };

FString MakeName(FKestrelDice& Dice)
{
	return FString(Dice.Pick(OddNames)) + (Dice.Roll(2) ? FString::Printf(TEXT("_%d"), Dice.Roll(30)) : FString());
}

template <typename NodeType>
NodeType* AddNode(UEdGraph& Graph, TFunctionRef<void(NodeType&)> SetUp)
{
	FGraphNodeCreator<NodeType> Creator(Graph);
	NodeType* Node = Creator.CreateNode();
	SetUp(*Node);
	Creator.Finalize();
	return Node;
}

void AddNodes(UBlueprint& Blueprint, FKestrelDice& Dice)
{
	UEdGraph& Graph = *Blueprint.UbergraphPages[0];
	for (int32 Index = Dice.Roll(4); Index >= 0; --Index)
	{
		AddNode<UK2Node_CustomEvent>(Graph, [&Dice](UK2Node_CustomEvent& Event) {
			// No two of a kind, nor one like a variable: that would not compile.
			Event.CustomFunctionName = FName(*FString::Printf(TEXT("%s_E%d"), *MakeName(Dice), Event.GetUniqueID()));
			Event.NodeComment = Dice.Pick(OddTexts);
		});
		AddNode<UK2Node_CallFunction>(Graph,
			[&Dice](UK2Node_CallFunction& Call) {
				Call.SetFromFunction(UKismetSystemLibrary::StaticClass()->FindFunctionByName(Dice.Pick(Functions)));
			})
			->Pins.Last()
			->DefaultValue = Dice.Pick(OddTexts);
	}
	// A function that is inherited: the title names the class that has it.
	AddNode<UK2Node_CallFunction>(
		Graph, [](UK2Node_CallFunction& Call) { Call.FunctionReference.SetSelfMember(TEXT("K2_DestroyActor")); });
	if (Dice.Roll(3) == 0)
	{
		AddNode<UEdGraphNode_Comment>(
			Graph, [&Dice](UEdGraphNode_Comment& Node) { Node.NodeComment = Dice.Pick(OddTexts); });
	}
}

/** @param Parent  null for actors */
UBlueprint* MakeBlueprint(
	const FKestrelTestContent& Content, int32 Number, const UBlueprint* Parent, FKestrelDice& Dice)
{
	const FString Name = FString::Printf(TEXT("BP_%d_%s"), Number, *MakeName(Dice));
	UBlueprint* Blueprint =
		Content.CreateBlueprint(*Name, Parent ? *Parent->GeneratedClass->GetPathName() : TEXT("Actor"));
	TSharedPtr<FJsonObject> Ignored = MakeShared<FJsonObject>();
	const FString Variable = FString::Printf(TEXT("Own%d%s"), Number, *MakeName(Dice));
	FKestrelBlueprintUtils::ModifyBlueprintVariables(Blueprint,
		*KestrelJson::ParseObject(TEXT("{\"") + Variable + TEXT("\":{\"Type\":{\"Category\":\"int\"}}}")), Ignored);
	const FString Function = FString::Printf(TEXT("[{\"Name\":\"Do%dThing\",\"InParams\":[{\"Name\":\"With%d\","
												  "\"Type\":\"IntProperty\"}]}]"),
		Number, Number);
	FKestrelBlueprintUtils::ModifyBlueprintFunctions(
		Blueprint, KestrelJson::ParseObject(TEXT("{\"F\":") + Function + TEXT("}"))->GetArrayField(TEXT("F")), Ignored);
	AddNodes(*Blueprint, Dice);
	if (Parent)
	{
		for (const FBPVariableDescription& Inherited : Parent->NewVariables)
		{
			AddNode<UK2Node_VariableGet>(*Blueprint->UbergraphPages[0],
				[&Inherited](UK2Node_VariableGet& Get) { Get.VariableReference.SetSelfMember(Inherited.VarName); });
		}
	}
	FKestrelBlueprintUtils::CompileBlueprint(Blueprint);
	FKestrelBlueprintUtils::SaveBlueprint(Blueprint);
	return Blueprint;
}

void MakeBlueprints(const FKestrelTestContent& Content, int32 Num, FKestrelDice& Dice)
{
	const UBlueprint* Last = nullptr;
	UBlueprint* Odd = MakeBlueprint(Content, Num, nullptr, Dice);
	AddNode<UKestrelTestOddNode>(*Odd->UbergraphPages[0], [](UKestrelTestOddNode&) {});
	FKestrelBlueprintUtils::SaveBlueprint(Odd);
	for (int32 Number = 0; Number < Num; ++Number)
	{
		Last = MakeBlueprint(Content, Number, Dice.Roll(2) ? Last : nullptr, Dice);
	}
}

const TCHAR* const Sought[] = { TEXT("health"), TEXT("HEALTH_1"), TEXT("door 1"), TEXT("_1"), TEXT("12"), TEXT("e"),
	TEXT("print st"), TEXT("Print String"), TEXT("target is"), TEXT("is actor"), TEXT("custom event"), TEXT("get own"),
	TEXT("do1thing"), TEXT("With2"), TEXT("TSCH\u00fc"), TEXT("\u6bbf"), TEXT("\u6bbf_"), TEXT("x1Y2"), TEXT("a_B__c"),
	TEXT("destroy"), TEXT("destroy actor"), TEXT("lines \"quoted\""), TEXT("nowhere at all"), TEXT("durati"),
	TEXT("Object"), TEXT("is server"), TEXT("userconstruction"), TEXT("is open"), TEXT("2D"), TEXT("shown from else") };

FString Write(const FKestrelTestFolder& Folder, const TArray<uint8>& Bytes)
{
	const FString File = Folder.Full(TEXT("Thing.uasset"));
	FFileHelper::SaveArrayToFile(Bytes, *File);
	return File;
}

/** As if it had been written long ago. */
void LetSettle(const FString& File)
{
	FPlatformFileManager::Get().GetPlatformFile().SetTimeStamp(*File, FDateTime::UtcNow() - FTimespan::FromHours(1.0));
}

TArray<uint8> ToBytes(const char* Text, int32 Num)
{
	return TArray<uint8>(reinterpret_cast<const uint8*>(Text), Num);
}

struct FBytesCase
{
	const TCHAR* What;
	const TCHAR* Text;
	const char* Bytes;
	int32 Num;
	bool bFound;
};

#define KESTREL_BYTES(Text) Text, static_cast<int32>(sizeof(Text) - 1)

const FBytesCase BytesCases[] = {
	{ TEXT("a name with its length"), TEXT("takedamage"), KESTREL_BYTES("\x0b\0\0\0TakeDamage\0\x11\x22"), true },
	{ TEXT("a name in UTF-16"), TEXT("TAKEdamage"), KESTREL_BYTES("\xf5\xff\xff\xffT\0a\0k\0e\0D\0a\0m\0a\0g\0e\0\0\0"),
		true },
	{ TEXT("words apart from each other"), TEXT("damage taken"), KESTREL_BYTES("TakenX\0SomeDamage\0"), true },
	{ TEXT("one of two words"), TEXT("damage health"), KESTREL_BYTES("SomeDamage\0"), false },
	{ TEXT("a word in two pieces"), TEXT("damage"), KESTREL_BYTES("dam\1age\0dama ge"), false },
	{ TEXT("a number, which is held apart"), TEXT("damage_12"), KESTREL_BYTES("\x07\0\0\0Damage\0\x0d\0\0\0"), true },
	{ TEXT("another name for it"), TEXT("destroy actor"), KESTREL_BYTES("\x10\0\0\0K2_DestroyActor\0"), true },
	{ TEXT("a node of which nobody knows what it shows"), TEXT("nowhere"),
		KESTREL_BYTES("\x17\0\0\0KestrelTestOddNode\0"), true },
	{ TEXT("a base class of nodes"), TEXT("nowhere"), KESTREL_BYTES("NSLOCTEXT(\"K2Node\"\0)"), false },
	{ TEXT("nothing"), TEXT("damage"), KESTREL_BYTES(""), false },
};
}

DEFINE_SPEC(FKestrelBlueprintSearchSpec, "Kestrel.BlueprintSearch", KestrelTest::Flags)
void FKestrelBlueprintSearchSpec::Define()
{
	using namespace BlueprintSearchTest;

	It("finds in packages that are not loaded what it finds in loaded ones", [this]() {
		constexpr int32 NumBlueprints = 8;
		const FKestrelTestContent Content;
		FKestrelDice Dice;
		MakeBlueprints(Content, NumBlueprints, Dice);
		for (const TCHAR* Text : Sought)
		{
			Content.Unload();
			FKestrelBlueprintSearch Search(Text);
			int32 NumSteps = 1;
			while (!Search.Step(0.0)) // no time at all: as little as possible in each
			{
				++NumSteps;
			}
			TestTrue(TEXT("slices"), NumSteps > NumBlueprints);
			const FString Found = Report(Search);
			KestrelTest::TestSameText(*this, Text, Found, SearchPlainly(Text));
			TSharedPtr<FJsonObject> Whole = MakeShared<FJsonObject>();
			FKestrelFindUtils::FindInAllBlueprintFiles(Text, Whole);
			KestrelTest::TestSameText(*this, TEXT("at once"),
				BlueprintSearchTest::Describe(Whole->GetArrayField(TEXT("blueprint_references"))), Found);
		}
	});

	It("loads no package in which the text cannot be", [this]() {
		constexpr int32 NumBlueprints = 5;
		const FKestrelTestContent Content;
		FKestrelDice Dice;
		for (int32 Number = 0; Number < NumBlueprints; ++Number)
		{
			MakeBlueprint(Content, Number, nullptr, Dice);
		}
		for (int32 Round = 0; Round < 2; ++Round) // the second time from what was kept of the first
		{
			Content.Unload();
			FKestrelBlueprintSearch Nothing(TEXT("nowhere at all"));
			FKestrelBlueprintSearch One(TEXT("do3thing"));
			while (!Nothing.Step(AtOnce) || !One.Step(AtOnce))
			{
			}
			TestEqual(TEXT("loaded for nothing"), Nothing.GetNumLoaded(), 0);
			TestEqual(TEXT("loaded for one"), One.GetNumLoaded(), 1);
		}
	});

	It("goes on when Blueprints come and go between two slices", [this]() {
		const FKestrelTestContent Content;
		FKestrelDice Dice;
		MakeBlueprints(Content, 4, Dice);
		Content.Unload();
		FKestrelBlueprintSearch Search(TEXT("Do2Thing"));
		for (int32 Step = 0; !Search.Step(0.0); ++Step)
		{
			if (Step % 3 == 0)
			{
				SearchPlainly(TEXT("x"));
			}
			else
			{
				Content.Unload();
			}
		}
		KestrelTest::TestSameText(*this, TEXT("matches"), Report(Search), SearchPlainly(TEXT("do2thing")));
	});

	for (const FBytesCase& Case : BytesCases)
	{
		It(FString(TEXT("tells from a package's bytes: ")) + Case.What, [this, &Case]() {
			const FKestrelTestFolder Folder;
			const FString File = Write(Folder, ToBytes(Case.Bytes, Case.Num));
			FKestrelSearchWords Words(Case.Text);
			Words.AddNamesOf(*AActor::StaticClass()->FindFunctionByName(TEXT("K2_DestroyActor")));
			FKestrelPackageIndex Index;
			const bool bFound = Index.FindWords(TEXT("Thing"), File, Words) == Words.GetAllBits();
			TestEqual(TEXT("found"), bFound, Case.bFound);
			// What is kept of the file, once nobody writes it any more, says the same.
			LetSettle(File);
			for (int32 Round = 0; Round < 2; ++Round)
			{
				TestEqual(TEXT("again"), Index.FindWords(TEXT("Thing"), File, Words) == Words.GetAllBits(), bFound);
			}
			TestTrue(TEXT("kept"), Index.GetKeptBytes() > 0);
		});
	}

	It("reads a package again that has changed, and never takes what it cannot read for empty", [this]() {
		const FKestrelTestFolder Folder;
		const FKestrelSearchWords Words(TEXT("damage"));
		FKestrelPackageIndex Index;
		const FString File = Write(Folder, ToBytes(KESTREL_BYTES("Nothing here")));
		LetSettle(File);
		TestEqual(TEXT("before"), Index.FindWords(TEXT("Thing"), File, Words), 0u);
		Write(Folder, ToBytes(KESTREL_BYTES("Damage  here")));
		TestEqual(TEXT("after"), Index.FindWords(TEXT("Thing"), File, Words), Words.GetAllBits());
		IFileManager::Get().Delete(*File);
		TestEqual(TEXT("gone"), Index.FindWords(TEXT("Thing"), File, Words), Words.GetAllBits());
	});
}
