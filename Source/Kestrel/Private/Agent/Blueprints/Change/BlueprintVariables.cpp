#include "Agent/Blueprints/Change/BlueprintVariables.h"

#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/Change/BlueprintMembers.h"
#include "Agent/Blueprints/Change/BlueprintMessages.h"
#include "Agent/Blueprints/Change/BlueprintReport.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Blueprints/Types/JsonImportText.h"
#include "AssetRegistry/AssetData.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Misc/PackageName.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"
#include "UObject/UnrealType.h"

namespace BlueprintVariables
{
using KestrelBlueprintVariables::FOutcome;

/** The variable of a Blueprint that an entry of the document is about. */
struct FTarget
{
	/** Looked up each time: whatever the engine changes may move it. */
	FBPVariableDescription& Describe() const { return Blueprint.NewVariables[Index]; }
	FName GetName() const { return Describe().VarName; }

	UBlueprint& Blueprint;
	const int32 Index;
};

void SetReplication(const FTarget& Target, const FJsonValue& Value)
{
	Target.Describe().PropertyFlags &= ~(CPF_Net | CPF_RepNotify);
	Target.Describe().RepNotifyFunc = NAME_None;
	const FString Mode = Value.AsString();
	if (Mode.Equals(TEXT("Replicated"), ESearchCase::IgnoreCase))
	{
		Target.Describe().PropertyFlags |= CPF_Net;
	}
	else if (Mode.Equals(TEXT("RepNotify"), ESearchCase::IgnoreCase))
	{
		const FName Function =
			KestrelBlueprintDocument::ToName(FString::Printf(TEXT("OnRep_%s"), *Target.GetName().ToString()));
		Target.Describe().PropertyFlags |= CPF_Net | CPF_RepNotify;
		Target.Describe().RepNotifyFunc = Function;
		if (!Function.IsNone()) // the variable's name leaves room for it
		{
			FKestrelBlueprintUtils::CreateRepNotifyFunction(&Target.Blueprint, Function);
		}
	}
}

void SetCategory(const FTarget& Target, const FJsonValue& Value)
{
	constexpr bool bDontRecompile = true; // all is marked once, in the end
	FBlueprintEditorUtils::SetBlueprintVariableCategory(
		&Target.Blueprint, Target.GetName(), nullptr, FText::FromString(Value.AsString()), bDontRecompile);
}

void SetTooltip(const FTarget& Target, const FJsonValue& Value)
{
	Target.Describe().SetMetaData(TEXT("Tooltip"), Value.AsString());
}

void SetValue(const FTarget& Target, const FJsonValue& Value)
{
	Target.Describe().DefaultValue = KestrelJson::ToDefaultText(Value, Target.Describe().VarType);
}

template <uint64 Flag>
void SetFlag(const FTarget& Target, const FJsonValue& Value)
{
	uint64& Flags = Target.Describe().PropertyFlags;
	Flags = Value.AsBool() ? Flags | Flag : Flags & ~Flag;
}

bool IsText(const FJsonValue& Value)
{
	FString Text;
	return Value.TryGetString(Text);
}

bool IsBoolean(const FJsonValue& Value)
{
	bool bValue = false;
	return Value.TryGetBool(bValue);
}

bool IsAnything(const FJsonValue& Value)
{
	return true;
}

struct FValueKind
{
	bool (*Accepts)(const FJsonValue& Value);
	const TCHAR* Name;
};

const FValueKind TextKind = { IsText, TEXT("a string") };
const FValueKind BooleanKind = { IsBoolean, TEXT("true or false") };
const FValueKind AnyKind = { IsAnything, TEXT("a value") };

/** What an entry may say beside the type, in the order in which it is applied. */
struct FSetting
{
	const TCHAR* Key;
	const FValueKind& Kind;
	void (*Apply)(const FTarget& Target, const FJsonValue& Value);
};

const TCHAR* const TypeKey = TEXT("Type");
const TCHAR* const ValueKey = TEXT("Value");

const FSetting Settings[] = {
	{ TEXT("Replication"), TextKind, SetReplication },
	{ TEXT("Category"), TextKind, SetCategory },
	{ TEXT("Tooltip"), TextKind, SetTooltip },
	{ ValueKey, AnyKind, SetValue },
	{ TEXT("ExposeOnSpawn"), BooleanKind, SetFlag<CPF_ExposeOnSpawn> },
	{ TEXT("Private"), BooleanKind, SetFlag<CPF_DisableEditOnInstance> },
	{ TEXT("SaveGame"), BooleanKind, SetFlag<CPF_SaveGame> },
};

bool IsSetting(const FString& Key)
{
	for (const FSetting& Setting : Settings)
	{
		if (Key.Equals(Setting.Key, ESearchCase::IgnoreCase))
		{
			return true;
		}
	}
	return Key.Equals(TypeKey, ESearchCase::IgnoreCase);
}

/** Applies the section of one document to one Blueprint. */
class FWriter
{
public:
	FWriter(UBlueprint& InBlueprint, FKestrelBlueprintReport& InReport)
		: Blueprint(InBlueprint)
		, Report(InReport)
	{
	}

	void Write(const FString& Name, const TSharedPtr<FJsonValue>& Value)
	{
		const FKestrelBlueprintReport::FScope Scope(Report, TEXT("Entry"), Name);
		const TSharedPtr<FJsonObject>* Entry = nullptr;
		if (!Value.IsValid() || !Value->TryGetObject(Entry))
		{
			Messages.Add(TEXT("Invalid JSON format for variable: "), Name);
			Report.Skip(TEXT("A variable is described by an object."));
			return;
		}
		const int32 Existing = Find(Name);
		const bool bReady = Existing == INDEX_NONE ? Create(Name, *Entry) : ChangeType(Existing, Name, *Entry);
		if (bReady)
		{
			ApplySettings({ Blueprint, Find(Name) }, **Entry);
			ReportUnknown(**Entry);
		}
	}

	const TArray<TSharedPtr<FJsonValue>>& GetMessages() const { return Messages.GetValues(); }
	const FOutcome& GetOutcome() const { return Outcome; }

private:
	void ApplySettings(const FTarget& Target, const FJsonObject& Entry)
	{
		for (const FSetting& Setting : Settings)
		{
			const TSharedPtr<FJsonValue> Value = Entry.TryGetField(Setting.Key);
			if (!Value.IsValid())
			{
				continue;
			}
			if (!Setting.Kind.Accepts(*Value))
			{
				Report.Skip(TEXT("Setting"), Setting.Key, FString::Printf(TEXT("It has to be %s."), Setting.Kind.Name));
				continue;
			}
			if (Setting.Key == ValueKey)
			{
				Outcome.Values.Add({ Target.GetName(), Target.Describe().DefaultValue });
			}
			Target.Blueprint.Modify(); // before the change, or it cannot be undone
			Setting.Apply(Target, *Value);
			Outcome.bChanged = true;
		}
	}

	void ReportUnknown(const FJsonObject& Entry)
	{
		for (const auto& Pair : Entry.Values)
		{
			const FString Key(*Pair.Key);
			if (!IsSetting(Key))
			{
				Report.Skip(TEXT("Setting"), Key, TEXT("Variables have no such setting."));
			}
		}
	}

	int32 Find(const FString& Name) const
	{
		return Name.Len() < NAME_SIZE ? FBlueprintEditorUtils::FindNewVariableIndex(&Blueprint, FName(*Name))
									  : static_cast<int32>(INDEX_NONE);
	}

	bool ReadType(const FString& Name, const TSharedPtr<FJsonObject>& Entry, FEdGraphPinType& OutType)
	{
		OutType = FKestrelBlueprintUtils::ConvertJsonToEdGraphPinType(Entry);
		const FString Problem = KestrelBlueprintMembers::FindTypeProblem(OutType);
		if (!Problem.IsEmpty())
		{
			Messages.AddInvalidType(Name);
			Report.Skip(Problem);
			return false;
		}
		KestrelBlueprintMembers::StoreEnumsAsBytes(OutType);
		return true;
	}

	bool Create(const FString& Name, const TSharedPtr<FJsonObject>& Entry)
	{
		FEdGraphPinType Type;
		if (!ReadType(Name, Entry, Type))
		{
			return false;
		}
		const FString Problem = KestrelBlueprintMembers::FindNameProblem(Blueprint, Name);
		if (!Problem.IsEmpty() || !FBlueprintEditorUtils::AddMemberVariable(&Blueprint, FName(*Name), Type))
		{
			Messages.Add(TEXT("Failed to create variable: "), Name);
			Report.Skip(Problem.IsEmpty() ? FString(TEXT("The editor refuses to add the variable.")) : Problem);
			return false;
		}
		Blueprint.NewVariables[Find(Name)].PropertyFlags |= CPF_Edit | CPF_BlueprintVisible;
		Messages.Add(TEXT("Created new variable: "), Name);
		Outcome.bChanged = true;
		return true;
	}

	/** @return false when a type is given that cannot be one */
	bool ChangeType(int32 Index, const FString& Name, const TSharedPtr<FJsonObject>& Entry)
	{
		if (!Entry->HasField(TypeKey))
		{
			return true;
		}
		FEdGraphPinType Type;
		if (!ReadType(Name, Entry, Type))
		{
			return false;
		}
		// Variables are made without these, too.
		Type.bIsConst = false;
		Type.bIsWeakPointer = false;
		Type.bIsReference = false;
		const FBPVariableDescription& Variable = Blueprint.NewVariables[Index];
		// Properties of classes have it whatever the description says, and what was read of them may come back.
		Type.bIsUObjectWrapper = Variable.VarType.bIsUObjectWrapper;
		if (Variable.VarType != Type)
		{
			FBlueprintEditorUtils::ChangeMemberVariableType(&Blueprint, Variable.VarName, Type);
			Outcome.bChanged = true;
		}
		return true;
	}

	UBlueprint& Blueprint;
	FKestrelBlueprintReport& Report;
	FKestrelBlueprintMessages Messages;
	FOutcome Outcome;
};

/** The Blueprints by the paths of their parent classes. */
TMap<FString, TArray<FAssetData>> ListByParent()
{
	TMap<FString, TArray<FAssetData>> ByParent;
	for (const FAssetData& Asset : KestrelBlueprintLookup::ListAssets(*UBlueprint::StaticClass()))
	{
		FString ParentPath;
		if (Asset.GetTagValue(FBlueprintTags::ParentClassPath, ParentPath))
		{
			ByParent.FindOrAdd(FPackageName::ExportTextPathToObjectPath(ParentPath)).Add(Asset);
		}
	}
	return ByParent;
}

/**
 * Children and other instances of the class that have the default as it was get the new one.
 *
 * @return false, with nothing changed, for a text that is no value of the property
 */
bool WriteDefault(UObject& Defaults, const TArray<UObject*>& Instances, const FProperty& Property, const FString& Text)
{
	const TArray<UObject*> Followers = Instances.FilterByPredicate([&Property, &Defaults](const UObject* Instance) {
		return Property.Identical_InContainer(Instance, &Defaults);
	});
	uint8* Container = reinterpret_cast<uint8*>(&Defaults);
	if (Text.IsEmpty())
	{
		Property.ClearValue_InContainer(Container);
	}
	else if (!FBlueprintEditorUtils::PropertyValueFromString(&Property, Text, Container, &Defaults))
	{
		return false;
	}
	for (UObject* Follower : Followers)
	{
		constexpr bool bAlwaysMarkDirty = false; // what a child inherits is not in its file
		Follower->Modify(bAlwaysMarkDirty);
		Property.CopyCompleteValue_InContainer(Follower, &Defaults);
	}
	return true;
}
}

bool FKestrelBlueprintUtils::ModifyBlueprintVariables(
	UBlueprint* Blueprint, const FJsonObject& Variables, TSharedPtr<FJsonObject>& Result)
{
	check(Result.IsValid());
	if (!Blueprint)
	{
		Result->SetStringField(TEXT("Error"), TEXT("Invalid Blueprint provided."));
		return false;
	}
	FKestrelBlueprintReport Report;
	const bool bChanged = KestrelBlueprintVariables::Modify(*Blueprint, Variables, *Result, Report).bChanged;
	Report.AddTo(*Result);
	return bChanged;
}

KestrelBlueprintVariables::FOutcome KestrelBlueprintVariables::Modify(
	UBlueprint& Blueprint, const FJsonObject& Variables, FJsonObject& Result, FKestrelBlueprintReport& Report)
{
	BlueprintVariables::FWriter Writer(Blueprint, Report);
	for (const auto& Pair : Variables.Values)
	{
		Writer.Write(FString(*Pair.Key), Pair.Value);
	}
	if (Writer.GetOutcome().bChanged)
	{
		FBlueprintEditorUtils::MarkBlueprintAsStructurallyModified(&Blueprint);
	}
	Result.SetArrayField(TEXT("VariableModifications"), Writer.GetMessages());
	return Writer.GetOutcome();
}

void FKestrelBlueprintUtils::CreateRepNotifyFunction(UBlueprint* Blueprint, const FName& FunctionName)
{
	check(Blueprint);
	if (!KestrelBlueprintMembers::IsNameFree(*Blueprint, FunctionName.ToString()))
	{
		return;
	}
	UEdGraph* Graph = FBlueprintEditorUtils::CreateNewGraph(
		Blueprint, FunctionName, UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
	constexpr bool bUserCreated = false; // as the editor makes them
	FBlueprintEditorUtils::AddFunctionGraph<UClass>(Blueprint, Graph, bUserCreated, nullptr);
}

TArray<FName> KestrelBlueprintVariables::FindCompiled(const UBlueprint& Blueprint, const FJsonObject& Variables)
{
	const UClass* Class = Blueprint.GeneratedClass;
	TArray<FName> Names;
	for (const FBPVariableDescription& Variable : Blueprint.NewVariables)
	{
		const TSharedPtr<FJsonObject>* Entry = nullptr;
		if (Class && Class->FindPropertyByName(Variable.VarName) &&
			Variables.TryGetObjectField(Variable.VarName.ToString(), Entry) && (*Entry)->HasField(TEXT("Value")))
		{
			Names.Add(Variable.VarName);
		}
	}
	return Names;
}

void KestrelBlueprintVariables::LoadChildren(const UClass& Class)
{
	TMap<FString, TArray<FAssetData>> ByParent = BlueprintVariables::ListByParent();
	TArray<FString> Parents = { Class.GetPathName() };
	while (!Parents.IsEmpty())
	{
		// Taken out, since in damaged files a Blueprint can be its own ancestor.
		TArray<FAssetData> Children;
		ByParent.RemoveAndCopyValue(Parents.Pop(), Children);
		for (const FAssetData& Asset : Children)
		{
			const UBlueprint* Child = Cast<UBlueprint>(Asset.GetAsset());
			if (Child && Child->GeneratedClass)
			{
				Parents.Add(Child->GeneratedClass->GetPathName());
			}
		}
	}
}

void KestrelBlueprintVariables::WriteDefaults(UBlueprint& Blueprint, const TArray<FWrittenValue>& Values,
	const TArray<FName>& Compiled, FKestrelBlueprintReport& Report)
{
	const UClass* Class = Blueprint.GeneratedClass;
	const auto WasCompiled = [&Compiled](const FWrittenValue& Value) { return Compiled.Contains(Value.Variable); };
	UObject* Defaults = Class && Values.ContainsByPredicate(WasCompiled) ? Class->GetDefaultObject() : nullptr;
	if (!Defaults)
	{
		return;
	}
	TArray<UObject*> Instances;
	Defaults->GetArchetypeInstances(Instances);
	Defaults->SetFlags(RF_Transactional); // or undo leaves it out
	Defaults->Modify();
	for (const FWrittenValue& Value : Values.FilterByPredicate(WasCompiled))
	{
		const int32 Index = FBlueprintEditorUtils::FindNewVariableIndex(&Blueprint, Value.Variable);
		const FProperty* Property = Class->FindPropertyByName(Value.Variable);
		if (!Property || Index == INDEX_NONE)
		{
			continue;
		}
		FString& Text = Blueprint.NewVariables[Index].DefaultValue;
		if (!BlueprintVariables::WriteDefault(*Defaults, Instances, *Property, Text))
		{
			const FKestrelBlueprintReport::FScope Scope(Report, TEXT("Entry"), Value.Variable.ToString());
			Report.Skip(TEXT("Setting"), BlueprintVariables::ValueKey,
				FString::Printf(TEXT("'%s' is no value of the variable's type."), *Text.Left(200)));
			Text = Value.OldText;
		}
	}
}
