#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "EdGraph/EdGraph.h"
#include "EdGraphSchema_K2.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Editor/Transactor.h"
#include "Engine/Blueprint.h"
#include "K2Node_VariableGet.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Misc/FileHelper.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "UObject/Package.h"
#include "UObject/UnrealType.h"

namespace BlueprintVariablesTest
{
using FUtils = FKestrelBlueprintUtils;

const TCHAR* const Saved = TEXT("Blueprint modified, compiled, and saved successfully.");

/** Single quotes stand for double ones. */
FString Json(const TCHAR* Text)
{
	return FString(Text).Replace(TEXT("'"), TEXT("\""));
}

/** What became of each variable, and the status, a line each. What the result says beyond that is not looked at. */
FString Modify(const UBlueprint& Blueprint, const TCHAR* Request)
{
	const TSharedPtr<FJsonObject> Result =
		KestrelJson::ParseObject(FUtils::ModifyBlueprint(Blueprint.GetName(), Json(Request)));
	TArray<FString> Lines;
	for (const auto& Pair : Result->Values)
	{
		const TArray<TSharedPtr<FJsonValue>>* Messages = nullptr;
		if (!Pair.Value->TryGetArray(Messages))
		{
			Lines.Add(FString(*Pair.Key) + TEXT("=") + Pair.Value->AsString());
			continue;
		}
		for (const TSharedPtr<FJsonValue>& Message : *Messages)
		{
			if (Message->Type == EJson::String)
			{
				Lines.Add(Message->AsString());
			}
		}
	}
	return FString::Join(Lines, TEXT("\n"));
}

const FBPVariableDescription* Find(const UBlueprint& Blueprint, const TCHAR* Name)
{
	const int32 Index = FBlueprintEditorUtils::FindNewVariableIndex(&Blueprint, Name);
	return Index == INDEX_NONE ? nullptr : &Blueprint.NewVariables[Index];
}

FString GetDefault(const UBlueprint& Blueprint, const TCHAR* Name)
{
	const FProperty* Property = Blueprint.GeneratedClass->FindPropertyByName(Name);
	FString Text;
	if (Property)
	{
		const void* Value = Property->ContainerPtrToValuePtr<void>(Blueprint.GeneratedClass->GetDefaultObject());
		Property->ExportText_Direct(Text, Value, Value, nullptr, PPF_None);
	}
	return Text;
}

struct FValueCase
{
	const TCHAR* Name;
	const TCHAR* Type; // the members of "Type"
	const TCHAR* Value;
	const TCHAR* Default; // as the class has it
};

const FValueCase ValueCases[] = {
	{ TEXT("Flag"), TEXT("'Category':'bool'"), TEXT("true"), TEXT("True") },
	{ TEXT("FlagText"), TEXT("'Category':'bool'"), TEXT("'True'"), TEXT("True") },
	{ TEXT("Count"), TEXT("'Category':'int'"), TEXT("42"), TEXT("42") },
	{ TEXT("Big"), TEXT("'Category':'int64'"), TEXT("9007199254740991"), TEXT("9007199254740991") },
	{ TEXT("Small"), TEXT("'Category':'byte'"), TEXT("7"), TEXT("7") },
	{ TEXT("Group"), TEXT("'Category':'enum','SubCategoryObject':'/Script/Engine.ETickingGroup'"),
		TEXT("'TG_PostPhysics'"), TEXT("TG_PostPhysics") },
	{ TEXT("Groups"),
		TEXT("'Category':'name','Container':'Map','ValueType':{'Category':'enum','SubCategoryObject':"
			 "'/Script/Engine.ETickingGroup'}"),
		TEXT("{'Late':'TG_PostPhysics'}"), TEXT("((\"Late\", TG_PostPhysics))") },
	{ TEXT("Speed"), TEXT("'Category':'real','SubCategory':'double'"), TEXT("-1.5"), TEXT("-1.500000") },
	{ TEXT("Line"), TEXT("'Category':'string'"), TEXT("'a, b'"), TEXT("a, b") },
	{ TEXT("Nothing"), TEXT("'Category':'string'"), TEXT("null"), TEXT("") },
	{ TEXT("Place"), TEXT("'Category':'struct','SubCategoryObject':'/Script/CoreUObject.Vector'"),
		TEXT("{'X':1,'Z':-2.25}"), TEXT("(X=1.000000,Y=0.000000,Z=-2.250000)") },
	{ TEXT("PlaceText"), TEXT("'Category':'struct','SubCategoryObject':'/Script/CoreUObject.Vector'"),
		TEXT("'(X=1,Y=2,Z=3)'"), TEXT("(X=1.000000,Y=2.000000,Z=3.000000)") },
	{ TEXT("PlaceNumbers"), TEXT("'Category':'struct','SubCategoryObject':'/Script/CoreUObject.Vector'"),
		TEXT("'1, 2,3'"), TEXT("(X=1.000000,Y=2.000000,Z=3.000000)") },
	{ TEXT("PlaceInOrder"), TEXT("'Category':'struct','SubCategoryObject':'/Script/CoreUObject.Vector'"),
		TEXT("[1,null,3,4]"), TEXT("(X=1.000000,Y=0.000000,Z=3.000000)") },
	{ TEXT("Holes"), TEXT("'Category':'int','Container':'Array'"), TEXT("[null,1]"), TEXT("(0,1)") },
	{ TEXT("Targets"), TEXT("'Category':'object','SubCategoryObject':'/Script/Engine.Actor','Container':'Array'"),
		TEXT("[null,null]"), TEXT("(None,None)") },
	{ TEXT("PlaceTiny"), TEXT("'Category':'struct','SubCategoryObject':'/Script/CoreUObject.Vector'"),
		TEXT("{'X':1e20,'Y':1e-7}"), TEXT("(X=100000000000000000000.000000,Y=0.000000,Z=0.000000)") },
	{ TEXT("Turn"), TEXT("'Category':'struct','SubCategoryObject':'/Script/CoreUObject.Rotator'"),
		TEXT("{'Yaw':90,'Roll':0.25}"), TEXT("(Pitch=0.000000,Yaw=90.000000,Roll=0.250000)") },
	{ TEXT("Stand"), TEXT("'Category':'struct','SubCategoryObject':'/Script/CoreUObject.Transform'"),
		TEXT("{'Translation':{'X':5}}"),
		TEXT("(Rotation=(X=0.000000,Y=0.000000,Z=0.000000,W=1.000000),Translation=(X=5.000000,Y=0.000000,Z=0.000000),"
			 "Scale3D=(X=1.000000,Y=1.000000,Z=1.000000))") },
	{ TEXT("Paint"), TEXT("'Category':'struct','SubCategoryObject':'/Script/CoreUObject.LinearColor'"),
		TEXT("{'R':1,'A':0.5}"), TEXT("(R=1.000000,G=0.000000,B=0.000000,A=0.500000)") },
	{ TEXT("Lines"), TEXT("'Category':'string','Container':'Array'"), TEXT("['one','(2, 3)','42']"),
		TEXT("(\"one\",\"(2, 3)\",\"42\")") },
	{ TEXT("Counts"), TEXT("'Category':'int','Container':'Array'"), TEXT("[1,2,3]"), TEXT("(1,2,3)") },
	{ TEXT("Places"), TEXT("'Category':'struct','SubCategoryObject':'/Script/CoreUObject.Vector','Container':'Array'"),
		TEXT("[{'X':1},'(Y=2)']"), TEXT("((X=1.000000,Y=0.000000,Z=0.000000),(X=0.000000,Y=2.000000,Z=0.000000))") },
	{ TEXT("Names"), TEXT("'Category':'name','Container':'Set'"), TEXT("['a','b']"), TEXT("(\"a\",\"b\")") },
	{ TEXT("Prices"), TEXT("'Category':'string','Container':'Map','ValueType':{'Category':'int'}"),
		TEXT("{'Red apple':3,'Pear':5}"), TEXT("((\"Red apple\", 3),(\"Pear\", 5))") },
	{ TEXT("Kind"), TEXT("'Category':'class','SubCategoryObject':'/Script/Engine.Actor'"),
		TEXT("'/Script/Engine.Pawn'"), TEXT("/Script/CoreUObject.Class'/Script/Engine.Pawn'") },
	{ TEXT("Target"), TEXT("'Category':'object','SubCategoryObject':'/Script/Engine.Actor'"), TEXT("null"),
		TEXT("None") },
};

/** A request that gives these variables the types that a Blueprint's document has them with. */
FString GetTypes(const FString& Document)
{
	const TSharedPtr<FJsonObject> Read = KestrelJson::ParseObject(Document);
	const TSharedPtr<FJsonObject> Types = MakeShared<FJsonObject>();
	for (const FValueCase& Case : ValueCases)
	{
		const TSharedPtr<FJsonObject> Variable = Read->GetObjectField(TEXT("Variables"))->GetObjectField(Case.Name);
		Variable->RemoveField(TEXT("Value"));
		Types->SetObjectField(Case.Name, Variable);
	}
	const TSharedRef<FJsonObject> Request = MakeShared<FJsonObject>();
	Request->SetObjectField(TEXT("Variables"), Types);
	return KestrelJson::ToCondensedText(Request);
}

struct FRefusal
{
	const TCHAR* Entry;
	const TCHAR* Message;
};

const FRefusal Refusals[] = {
	{ TEXT("'A':5"), TEXT("Invalid JSON format for variable: A") },
	{ TEXT("'A':null"), TEXT("Invalid JSON format for variable: A") },
	{ TEXT("'A':{}"), TEXT("Invalid variable type for variable: A") },
	{ TEXT("'A':{'Type':'int'}"), TEXT("Invalid variable type for variable: A") },
	{ TEXT("'A':{'Type':{'Category':'number'}}"), TEXT("Invalid variable type for variable: A") },
	{ TEXT("'A':{'Type':{'Category':'exec'}}"), TEXT("Invalid variable type for variable: A") },
	{ TEXT("'A':{'Type':{'Category':'real','SubCategory':'half'}}"), TEXT("Invalid variable type for variable: A") },
	{ TEXT("'A':{'Type':{'Category':'struct','SubCategoryObject':'/Script/Engine.Actor'}}"),
		TEXT("Invalid variable type for variable: A") },
	{ TEXT("'A':{'Type':{'Category':'object','SubCategoryObject':'/Game/No.No'}}"),
		TEXT("Invalid variable type for variable: A") },
	{ TEXT("'A':{'Type':{'Category':'text','Container':'Set'}}"), TEXT("Invalid variable type for variable: A") },
	{ TEXT("'A':{'Type':{'Category':'struct','SubCategoryObject':'/Script/CoreUObject.Transform','Container':'Set'}}"),
		TEXT("Invalid variable type for variable: A") },
	{ TEXT("'A':{'Type':{'Category':'interface','SubCategoryObject':'/Script/Engine.Actor'}}"),
		TEXT("Invalid variable type for variable: A") },
	{ TEXT("'A':{'Type':{'Category':'int','Container':'Map'}}"), TEXT("Invalid variable type for variable: A") },
	{ TEXT("'a.b':{'Type':{'Category':'int'}}"), TEXT("Failed to create variable: a.b") },
	{ TEXT("'':{'Type':{'Category':'int'}}"), TEXT("Failed to create variable: ") },
	{ TEXT("'Owner':{'Type':{'Category':'int'}}"), TEXT("Failed to create variable: Owner") },
	{ TEXT("'EventGraph':{'Type':{'Category':'int'}}"), TEXT("Failed to create variable: EventGraph") },
	{ TEXT("'UserConstructionScript':{'Type':{'Category':'int'}}"),
		TEXT("Failed to create variable: UserConstructionScript") },
};

struct FFlagCase
{
	const TCHAR* Entry;
	uint64 Flags; // of those that entries set
};

/** Applied one after the other to one variable. */
const FFlagCase FlagCases[] = {
	{ TEXT("'Replication':'replicated'"), CPF_DisableEditOnInstance | CPF_Net },
	{ TEXT("'Replication':'REPNOTIFY','Private':false"), CPF_Net | CPF_RepNotify },
	{ TEXT("'SaveGame':true,'ExposeOnSpawn':true"), CPF_Net | CPF_RepNotify | CPF_SaveGame | CPF_ExposeOnSpawn },
	{ TEXT("'Replication':'None','ExposeOnSpawn':false,'Private':true"), CPF_SaveGame | CPF_DisableEditOnInstance },
	{ TEXT("'SaveGame':[],'Private':{},'Replication':{},'Category':[]"), CPF_SaveGame | CPF_DisableEditOnInstance },
};

constexpr uint64 SettableFlags = CPF_Net | CPF_RepNotify | CPF_SaveGame | CPF_ExposeOnSpawn | CPF_DisableEditOnInstance;
}

DEFINE_SPEC(FKestrelBlueprintVariablesSpec, "Kestrel.BlueprintVariables", KestrelTest::Flags)
void FKestrelBlueprintVariablesSpec::Define()
{
	using namespace BlueprintVariablesTest;

	It("are made of every kind, with their values, and read back from the file", [this]() {
		const FKestrelTestContent Content;
		const UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Values"));
		TArray<FString> Entries;
		FString Expected;
		for (const FValueCase& Case : ValueCases)
		{
			Entries.Add(FString::Printf(TEXT("'%s':{'Type':{%s},'Value':%s}"), Case.Name, Case.Type, Case.Value));
			Expected += FString::Printf(TEXT("Created new variable: %s\n"), Case.Name);
		}
		const FString Request = TEXT("{'Variables':{") + FString::Join(Entries, TEXT(",")) + TEXT("}}");
		KestrelTest::TestSameText(
			*this, TEXT("messages"), Modify(*Blueprint, *Request), Expected + TEXT("Success=") + Saved);
		TestTrue(TEXT("compiled and saved"), Blueprint->Status == BS_UpToDate && !Blueprint->GetOutermost()->IsDirty());
		const FString Before = FUtils::ReadBlueprint(TEXT("BP_Values"), TEXT("Variables"));
		Content.Unload();
		KestrelTest::TestSameText(
			*this, TEXT("reopened"), FUtils::ReadBlueprint(TEXT("BP_Values"), TEXT("Variables")), Before);
		Blueprint = FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Values"));
		for (const FValueCase& Case : ValueCases)
		{
			KestrelTest::TestSameText(*this, Case.Name, GetDefault(*Blueprint, Case.Name), Case.Default);
		}
		KestrelTest::TestSameText(*this, TEXT("with the types that were read"), Modify(*Blueprint, *GetTypes(Before)),
			TEXT("Message=No modifications were made to the Blueprint."));
	});

	It("are refused with a message when they would break the Blueprint, and the others are made", [this]() {
		const FKestrelTestContent Content;
		const UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Refused"));
		for (const FRefusal& Case : Refusals)
		{
			KestrelTest::TestSameText(*this, Case.Entry,
				Modify(*Blueprint, *FString::Printf(TEXT("{'Variables':{%s}}"), Case.Entry)),
				Case.Message + FString(TEXT("\nMessage=No modifications were made to the Blueprint.")));
		}
		TestEqual(TEXT("variables"), Blueprint->NewVariables.Num(), 0);
		const FString LongName = FString::ChrN(3000, u'v');
		KestrelTest::TestSameText(*this, TEXT("a good one after bad ones"),
			Modify(*Blueprint, *FString::Printf(TEXT("{'Variables':{'%s':{'Type':{'Category':'int'}},'Bad':1,"
													 "'Good one':{'Type':{'Category':'int'}}}}"),
								   *LongName)),
			FString::Printf(TEXT("Failed to create variable: %s\nInvalid JSON format for variable: Bad\n"
								 "Created new variable: Good one\nSuccess=%s"),
				*LongName, Saved));
		KestrelTest::TestSameText(*this, TEXT("nothing asked for"), Modify(*Blueprint, TEXT("{'Other':1}")),
			TEXT("Message=No modifications were made to the Blueprint."));
	});

	It("get and lose their flags, and a function for their arrival once", [this]() {
		const FKestrelTestContent Content;
		const UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Flags"));
		const int32 NumFunctions = Blueprint->FunctionGraphs.Num();
		Modify(*Blueprint, TEXT("{'Variables':{'Health':{'Type':{'Category':'int'}}}}"));
		for (const FFlagCase& Case : FlagCases)
		{
			Modify(*Blueprint, *FString::Printf(TEXT("{'Variables':{'health':{%s}}}"), Case.Entry));
			const uint64 Flags = Find(*Blueprint, TEXT("Health"))->PropertyFlags;
			TestEqual(Case.Entry, Flags & SettableFlags, Case.Flags);
			TestTrue(Case.Entry, (Flags & (CPF_Edit | CPF_BlueprintVisible)) == (CPF_Edit | CPF_BlueprintVisible));
		}
		TestEqual(TEXT("functions"), Blueprint->FunctionGraphs.Num(), NumFunctions + 1);
		KestrelTest::TestSameText(
			*this, TEXT("name"), Blueprint->FunctionGraphs.Last()->GetName(), TEXT("OnRep_Health"));
		Modify(
			*Blueprint, TEXT("{'Variables':{'Health':{'Replication':'RepNotify','Category':'Life','Tooltip':'HP'}}}"));
		const FBPVariableDescription* Health = Find(*Blueprint, TEXT("Health"));
		TestEqual(TEXT("function"), Health->RepNotifyFunc, FName(TEXT("OnRep_Health")));
		KestrelTest::TestSameText(*this, TEXT("category"), Health->Category.ToString(), TEXT("Life"));
		KestrelTest::TestSameText(*this, TEXT("tooltip"), Health->GetMetaData(TEXT("Tooltip")), TEXT("HP"));
		TestEqual(TEXT("functions after all"), Blueprint->FunctionGraphs.Num(), NumFunctions + 1);
		TestTrue(TEXT("compiles"), Blueprint->Status == BS_UpToDate);
	});

	It("change type and value, in the class, its children and its nodes", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Parent = Content.CreateBlueprint(TEXT("BP_Parent"));
		Modify(*Parent, TEXT("{'Variables':{'Health':{'Type':{'Category':'int'},'Value':100},"
							 "'Speed':{'Type':{'Category':'int'},'Value':5}}}"));
		const UBlueprint* Child = Content.CreateBlueprint(TEXT("BP_Child"), TEXT("BP_Parent"));
		const UBlueprint* Other = Content.CreateBlueprint(TEXT("BP_Other"), TEXT("BP_Parent"));
		const FProperty* Property = Other->GeneratedClass->FindPropertyByName(TEXT("Health"));
		FBlueprintEditorUtils::PropertyValueFromString(
			Property, TEXT("7"), reinterpret_cast<uint8*>(Other->GeneratedClass->GetDefaultObject()));
		FGraphNodeCreator<UK2Node_VariableGet> Creator(*Parent->UbergraphPages[0]);
		UK2Node_VariableGet* Get = Creator.CreateNode();
		Get->VariableReference.SetSelfMember(TEXT("Speed"));
		Creator.Finalize();

		KestrelTest::TestSameText(*this, TEXT("messages"),
			Modify(*Parent, TEXT("{'Variables':{'Health':{'Value':'250'},"
								 "'Speed':{'Type':{'Category':'real','SubCategory':'double'},'Value':7.5},"
								 "'Bad':{'Type':{}}}}")),
			FString(TEXT("Invalid variable type for variable: Bad\nSuccess=")) + Saved);
		KestrelTest::TestSameText(*this, TEXT("value"), GetDefault(*Parent, TEXT("Health")), TEXT("250"));
		KestrelTest::TestSameText(*this, TEXT("new type"), GetDefault(*Parent, TEXT("Speed")), TEXT("7.500000"));
		KestrelTest::TestSameText(*this, TEXT("child"), GetDefault(*Child, TEXT("Health")), TEXT("250"));
		KestrelTest::TestSameText(*this, TEXT("child's own"), GetDefault(*Other, TEXT("Health")), TEXT("7"));
		TestEqual(TEXT("node"), Get->FindPinChecked(TEXT("Speed"))->PinType.PinCategory, UEdGraphSchema_K2::PC_Real);
		Modify(*Parent, TEXT("{'Variables':{'Health':{'Value':null}}}"));
		KestrelTest::TestSameText(*this, TEXT("cleared"), GetDefault(*Parent, TEXT("Health")), TEXT("0"));
		Content.Unload();
		Parent = FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Parent"));
		KestrelTest::TestSameText(*this, TEXT("reopened"), GetDefault(*Parent, TEXT("Speed")), TEXT("7.500000"));
	});

	It("keep the value that the user gave them when their entry is rejected", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Kept"));
		Modify(*Blueprint, TEXT("{'Variables':{'Health':{'Type':{'Category':'int'},'Value':100}}}"));
		// As the details panel does it: the description keeps what the variable started with.
		FBlueprintEditorUtils::PropertyValueFromString(Blueprint->GeneratedClass->FindPropertyByName(TEXT("Health")),
			TEXT("42"), reinterpret_cast<uint8*>(Blueprint->GeneratedClass->GetDefaultObject()));
		Modify(*Blueprint, TEXT("{'Variables':{'Health':{'Type':{'Category':'number'},'Value':7},"
								"'Speed':{'Type':{'Category':'int'}}}}"));
		KestrelTest::TestSameText(*this, TEXT("unknown type"), GetDefault(*Blueprint, TEXT("Health")), TEXT("42"));
		Modify(*Blueprint, TEXT("{'Variables':{'Health':{'Value':'seven'}}}"));
		KestrelTest::TestSameText(*this, TEXT("no number"), GetDefault(*Blueprint, TEXT("Health")), TEXT("42"));
		KestrelTest::TestSameText(
			*this, TEXT("description"), Find(*Blueprint, TEXT("Health"))->DefaultValue, TEXT("100"));
	});

	It("are told apart in documents of any size, depth and order", [this]() {
		const FKestrelTestContent Content;
		const UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Huge"));
		TArray<FString> Entries;
		for (int32 Index = 0; Index < 10000; ++Index)
		{
			const bool bGood = Index % 100 == 0;
			Entries.Add(FString::Printf(TEXT("'V%d':{'Type':{'Category':'%s'},'Tooltip':'%s'}"), Index,
				bGood ? TEXT("int") : TEXT("number"), *FString::ChrN(450, u't')));
		}
		const FString Huge = TEXT("{'Variables':{") + FString::Join(Entries, TEXT(",")) + TEXT("}}");
		TestTrue(TEXT("size"), Huge.Len() > 5000000);
		const FString Messages = Modify(*Blueprint, *Huge);
		TestEqual(TEXT("variables"), Blueprint->NewVariables.Num(), 100);
		TArray<FString> Lines;
		TestEqual(TEXT("messages"), Messages.ParseIntoArrayLines(Lines), 10001);

		const auto Nest = [](int32 Depth) {
			return TEXT("{'Variables':{'V0':{'Value':") + FString::ChrN(Depth, u'[') + TEXT("1") +
				   FString::ChrN(Depth, u']') + TEXT("}}}");
		};
		Modify(*Blueprint, *Nest(200));
		TestTrue(TEXT("cut where nothing nests"), Find(*Blueprint, TEXT("V0"))->DefaultValue.Len() < 100);
		KestrelTest::TestSameText(*this, TEXT("too deep"), Modify(*Blueprint, *Nest(100000)),
			TEXT("Error=Failed to parse modification JSON."));
		Modify(
			*Blueprint, TEXT("{'Variables':{'Twice':{'Type':{'Category':'int'}},'TWICE':{'Type':{'Category':'bool'}}},"
							 "'Variables':{'Last':{'Type':{'Category':'int'}},'LAST':{'Type':{'Category':'bool'}}}}"));
		TestTrue(TEXT("of equal names the last one counts"),
			!Find(*Blueprint, TEXT("Twice")) &&
				Find(*Blueprint, TEXT("Last"))->VarType.PinCategory == UEdGraphSchema_K2::PC_Boolean);
	});

	It("have no trace of an undone value left in children that were loaded in between", [this]() {
		const FKestrelTestContent Content;
		const UBlueprint* Parent = Content.CreateBlueprint(TEXT("BP_Parent"));
		Modify(*Parent, TEXT("{'Variables':{'Health':{'Type':{'Category':'int'},'Value':100}}}"));
		UBlueprint* Child = Content.CreateBlueprint(TEXT("BP_Child"), TEXT("BP_Parent"));
		FUtils::SaveBlueprint(Child);
		FUtils::SaveBlueprint(Content.CreateBlueprint(TEXT("BP_Grandchild"), TEXT("BP_Child")));
		GEditor->ResetTransaction(FText());
		Content.Unload();

		Parent = FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Parent"));
		Modify(*Parent, TEXT("{'Variables':{'HEALTH':{'Value':250}}}"));
		Child = FUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Grandchild"));
		KestrelTest::TestSameText(*this, TEXT("changed"), GetDefault(*Child, TEXT("Health")), TEXT("250"));
		GEditor->UndoTransaction();
		FUtils::CompileDirtyBlueprints();
		KestrelTest::TestSameText(*this, TEXT("undone"), GetDefault(*Child, TEXT("Health")), TEXT("100"));
		GEditor->ResetTransaction(FText());
	});

	It("come back as they were when the one transaction is undone", [this]() {
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Undone"));
		Modify(*Blueprint, TEXT("{'Variables':{'Health':{'Type':{'Category':'int'},'Value':100}}}"));
		FString Before;
		FFileHelper::LoadFileToString(Before, *Content.GetFile(TEXT("BP_Undone")));
		GEditor->ResetTransaction(FText());
		Modify(
			*Blueprint, TEXT("{'Variables':{'Health':{'Value':5,'Type':{'Category':'string'},'Replication':'RepNotify',"
							 "'Tooltip':'t'},'More':{'Type':{'Category':'int'},'Value':5}},"
							 "'Functions':[{'Name':'Heal','InParams':[{'Name':'By','Type':'IntProperty'}]}]}"));
		TestEqual(TEXT("transactions"), GEditor->Trans->GetQueueLength(), 1);
		FString After;
		FFileHelper::LoadFileToString(After, *Content.GetFile(TEXT("BP_Undone")));
		TestFalse(TEXT("changed"), After.Equals(Before));
		GEditor->UndoTransaction();
		FUtils::CompileBlueprint(Blueprint);
		FUtils::SaveBlueprint(Blueprint);
		FFileHelper::LoadFileToString(After, *Content.GetFile(TEXT("BP_Undone")));
		KestrelTest::TestSameText(*this, TEXT("file"), After, Before);
		GEditor->ResetTransaction(FText());
	});
}
