#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "KestrelSettings.h"
#include "Misc/App.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Support/KestrelTest.h"
#include "UObject/Class.h"

/**
 * Compares documents with those in Tests/Documents, which were written by hand. To keep them readable, what comes again
 * and again is folded into a line there, and Tests/Documents/Ledger.json alone is compared exactly:
 *
 * - a type: "byte </Script/Harrier.EWardenMood> Array Const", a map's value behind "of";
 * - a variable: "<type> = <value>";
 * - a parameter: "<name>: <type>";
 * - a pin: "Input <name>: <category> <sub-category object> = <value> -> <node>.<pin> -> ...".
 */
namespace BlueprintDocumentTest
{
FString FoldTerminal(const FJsonObject& Type)
{
	FString Text = Type.GetStringField(TEXT("Category"));
	const FString SubCategory = Type.GetStringField(TEXT("SubCategory"));
	FString Object;
	if (!SubCategory.IsEmpty())
	{
		Text += TEXT(".") + SubCategory;
	}
	if (Type.TryGetStringField(TEXT("SubCategoryObject"), Object))
	{
		Text += TEXT(" <") + Object + TEXT(">");
	}
	return Text;
}

FString FoldType(const FJsonObject& Type)
{
	FString Text = FoldTerminal(Type);
	const FString Container = Type.GetStringField(TEXT("Container"));
	const TSharedPtr<FJsonObject>* Value = nullptr;
	if (!Container.Equals(TEXT("None")))
	{
		Text += TEXT(" ") + Container;
	}
	if (Type.TryGetObjectField(TEXT("ValueType"), Value))
	{
		Text += TEXT(" of ") + FoldTerminal(**Value);
	}
	for (const TSharedPtr<FJsonValue>& Flag : Type.GetArrayField(TEXT("Flags")))
	{
		Text += TEXT(" ") + Flag->AsString();
	}
	return Text;
}

FString FoldPin(const FJsonObject& Pin)
{
	FString Text = Pin.GetStringField(TEXT("Direction")) + TEXT(" ") + Pin.GetStringField(TEXT("Name")) + TEXT(": ") +
				   Pin.GetStringField(TEXT("Category"));
	FString Object;
	if (Pin.TryGetStringField(TEXT("SubCategoryObject"), Object))
	{
		Text += TEXT(" <") + Object + TEXT(">");
	}
	if (!Pin.GetStringField(TEXT("Value")).IsEmpty())
	{
		Text += TEXT(" = ") + Pin.GetStringField(TEXT("Value"));
	}
	for (const TSharedPtr<FJsonValue>& Link : Pin.GetArrayField(TEXT("Connections")))
	{
		const TSharedPtr<FJsonObject> End = Link->AsObject();
		Text += TEXT(" -> ") + End->GetStringField(TEXT("Node")) + TEXT(".") + End->GetStringField(TEXT("Pin"));
	}
	return Text;
}

TSharedPtr<FJsonValue> Fold(const TSharedPtr<FJsonValue>& Value);

TSharedRef<FJsonObject> FoldMembers(const FJsonObject& Object)
{
	const TSharedRef<FJsonObject> Folded = MakeShared<FJsonObject>();
	for (const auto& Member : Object.Values)
	{
		Folded->SetField(Member.Key, Fold(Member.Value));
	}
	return Folded;
}

TSharedPtr<FJsonValue> FoldObject(const FJsonObject& Object)
{
	const auto MakeText = [](const FString& Text) { return MakeShared<FJsonValueString>(Text); };
	const TSharedPtr<FJsonObject>* Type = nullptr;
	if (Object.HasField(TEXT("Category")) && Object.HasField(TEXT("Flags")))
	{
		return MakeText(FoldType(Object));
	}
	if (Object.HasField(TEXT("Direction")))
	{
		return MakeText(FoldPin(Object));
	}
	if (Object.Values.Num() == 2 && Object.TryGetObjectField(TEXT("Type"), Type))
	{
		FString Text;
		return Object.TryGetStringField(TEXT("Value"), Text)
				   ? MakeText(FoldType(**Type) + TEXT(" = ") + Text)
				   : MakeText(Object.GetStringField(TEXT("Name")) + TEXT(": ") + FoldType(**Type));
	}
	return MakeShared<FJsonValueObject>(FoldMembers(Object));
}

TSharedPtr<FJsonValue> Fold(const TSharedPtr<FJsonValue>& Value)
{
	if (Value->Type == EJson::Object)
	{
		return FoldObject(*Value->AsObject());
	}
	if (Value->Type != EJson::Array)
	{
		return Value;
	}
	TArray<TSharedPtr<FJsonValue>> Folded;
	for (const TSharedPtr<FJsonValue>& Element : Value->AsArray())
	{
		Folded.Add(Fold(Element));
	}
	return MakeShared<FJsonValueArray>(Folded);
}

TSharedPtr<FJsonObject> ReadDocument(const TCHAR* Name)
{
	FString Text;
	FFileHelper::LoadFileToString(Text, *(KestrelTest::PluginDir() / TEXT("Tests/Documents") / Name));
	return KestrelJson::ParseObject(Text);
}

/** Sets what of Blueprints is told, for as long as it lives. */
class FScopedFilter
{
public:
	explicit FScopedFilter(EKestrelBlueprintContentFilter Filter)
	{
		GetMutableDefault<UKestrelSettings>()->BlueprintContentFilter = Filter;
	}
	~FScopedFilter() { GetMutableDefault<UKestrelSettings>()->BlueprintContentFilter = Usual; }
	UE_NONCOPYABLE(FScopedFilter)

private:
	const EKestrelBlueprintContentFilter Usual = GetDefault<UKestrelSettings>()->BlueprintContentFilter;
};

struct FFoldedCase
{
	const TCHAR* What;
	const TCHAR* File;
	const TCHAR* Blueprint; // null: the behavior tree
	const TCHAR* Subset;
	EKestrelBlueprintContentFilter Filter;
};

using EFilter = EKestrelBlueprintContentFilter;

const FFoldedCase FoldedCases[] = {
	{ TEXT("reads all of a child Blueprint that Blueprints declare"), TEXT("NightWarden.json"), TEXT("bp_nightwarden"),
		TEXT("aLL"), EFilter::UseOnlyBlueprintClassContent },
	{ TEXT("reads an event graph with its links"), TEXT("WardenEvents.json"), TEXT("BP_Warden"), TEXT("GRAPHS"),
		EFilter::UseOnlyBlueprintVisibleContent },
	{ TEXT("reads functions with their graphs"), TEXT("WardenFunctions.json"), TEXT("BP_Warden"), TEXT("functionS"),
		EFilter::UseOnlyBlueprintClassContent },
	{ TEXT("reads the graphs of an interface"), TEXT("WardenInterfaces.json"), TEXT("BP_Warden"), TEXT("interFaces"),
		EFilter::UseOnlyBlueprintVisibleContent },
	{ TEXT("reads the components that the default object has"), TEXT("WardenComponents.json"), TEXT("BP_WARDEN"),
		TEXT("components"), EFilter::UseOnlyBlueprintVisibleContent },
	{ TEXT("reads a behavior tree with its blackboard"), TEXT("WardenTree.json"), nullptr, nullptr,
		EFilter::UseOnlyBlueprintVisibleContent },
};
}

DEFINE_SPEC(FKestrelSampleContentSpec, "Kestrel.SampleContent", KestrelTest::Flags)
void FKestrelSampleContentSpec::Define()
{
	using namespace BlueprintDocumentTest;
	// The assets are those of the sample project; Tools/content.py opens it.
	if (!FString(FApp::GetProjectName()).Equals(TEXT("Harrier")))
	{
		return;
	}
	for (const FFoldedCase& Case : FoldedCases)
	{
		It(Case.What, [this, &Case]() {
			const FScopedFilter Filter(Case.Filter);
			const FString Text = Case.Blueprint ? FKestrelBlueprintUtils::ReadBlueprint(Case.Blueprint, Case.Subset)
												: FKestrelBlueprintUtils::ReadBehaviorTree(TEXT("bt_WARDEN"));
			const TSharedPtr<FJsonObject> Actual = KestrelJson::ParseObject(Text);
			const TSharedPtr<FJsonObject> Expected = ReadDocument(Case.File);
			if (TestTrue(TEXT("documents"), Actual.IsValid() && Expected.IsValid()))
			{
				KestrelTest::TestSameText(*this, Case.File, KestrelJson::ToCondensedText(FoldMembers(*Actual)),
					KestrelJson::ToCondensedText(Expected.ToSharedRef()));
			}
		});
	}

	It("writes a document exactly", [this]() {
		const TSharedPtr<FJsonObject> Expected = ReadDocument(TEXT("Ledger.json"));
		if (TestTrue(TEXT("document"), Expected.IsValid()))
		{
			KestrelTest::TestSameText(*this, TEXT("document"),
				FKestrelBlueprintUtils::ReadBlueprint(TEXT("BP_Ledger"), TEXT("All")),
				KestrelJson::ToCondensedText(Expected.ToSharedRef()));
		}
	});

	It("lists what native classes declare as the filter says", [this]() {
		const auto ReadVariables = [](EFilter FilterMode) {
			const FScopedFilter Filter(FilterMode);
			TArray<FString> Names;
			KestrelJson::ParseObject(FKestrelBlueprintUtils::ReadBlueprint(TEXT("BP_NightWarden"), TEXT("variables")))
				->GetObjectField(TEXT("Variables"))
				->Values.GetKeys(Names);
			return Names;
		};
		const TArray<FString> All = ReadVariables(EFilter::UseAllContent);
		const TArray<FString> Visible = ReadVariables(EFilter::UseOnlyBlueprintVisibleContent);
		const TArray<FString> Own = ReadVariables(EFilter::UseOnlyBlueprintClassContent);
		// Native and not for Blueprints, native and visible, of a Blueprint.
		const TCHAR* const Names[] = { TEXT("Owner"), TEXT("Mesh"), TEXT("bLit") };
		const int32 Listed[] = { 1, 2, 3 };
		for (int32 Index = 0; Index < 3; ++Index)
		{
			const int32 Lists =
				All.Contains(Names[Index]) + Visible.Contains(Names[Index]) + Own.Contains(Names[Index]);
			TestEqual(Names[Index], Lists, Listed[Index]);
			TestTrue(Names[Index], All.Contains(Names[Index]));
		}
		TestTrue(TEXT("a child's before its parent's"), All.Find(TEXT("bLit")) < All.Find(TEXT("bAwake")) &&
															All.Find(TEXT("bAwake")) < All.Find(TEXT("Mesh")) &&
															All.Find(TEXT("Mesh")) < All.Find(TEXT("Owner")));
		// The frame of the events is no one's to see.
		TestTrue(TEXT("frame"), All.Contains(TEXT("UberGraphFrame")) && !Visible.Contains(TEXT("UberGraphFrame")));
	});
}
