#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Blueprints/Read/BlueprintRead.h"
#include "Agent/Text/JsonText.h"
#include "Components/ActorComponent.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "Engine/Blueprint.h"
#include "Engine/BlueprintGeneratedClass.h"
#include "GameFramework/Actor.h"
#include "HAL/PlatformTime.h"
#include "Templates/Casts.h"
#include "Templates/SubclassOf.h"
#include "Templates/TypeHash.h"
#include "UObject/Interface.h"
#include "UObject/ObjectMacros.h"
#include "UObject/ObjectPtr.h"
#include "UObject/UnrealType.h"

namespace BlueprintReader
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

constexpr int32 MaxStarts = 3; // somebody who edits the Blueprint all the time gets it in one step

TSharedRef<FJsonObject> MakeParameter(const FProperty& Property)
{
	const TSharedRef<FJsonObject> Parameter = MakeShared<FJsonObject>();
	Parameter->SetStringField(TEXT("Name"), Property.GetName());
	Parameter->SetObjectField(TEXT("Type"), FKestrelBlueprintUtils::GetVarJSonObjectFromProperty(&Property));
	return Parameter;
}

const UEdGraph* FindFunctionGraph(const UBlueprint& Blueprint, const UFunction& Function)
{
	const TObjectPtr<UEdGraph>* Found = Blueprint.FunctionGraphs.FindByPredicate([&Function](const UEdGraph* Graph) {
		return Graph && Graph->GetFName() == Function.GetFName(); // names compare without letter case
	});
	return Found ? Found->Get() : nullptr;
}

/** Room that is too small is made larger at the cost of a copy. */
int32 EstimateLength(const UEdGraph& Graph)
{
	constexpr int64 NodeLength = 140;
	constexpr int64 PinLength = 110;
	constexpr int64 LinkLength = 60;
	int64 Length = 0;
	for (const UEdGraphNode* Node : Graph.Nodes)
	{
		Length += NodeLength;
		for (int32 Index = 0; Node && Index < Node->Pins.Num(); ++Index)
		{
			const UEdGraphPin* Pin = Node->Pins[Index];
			Length += PinLength + LinkLength * (Pin ? Pin->LinkedTo.Num() : 0);
		}
	}
	return static_cast<int32>(FMath::Min<int64>(Length, MAX_int32 / 8));
}

/** A node that takes the place of another leaves their number as it is. */
uint32 HashNodes(const UEdGraph& Graph)
{
	uint32 Hash = 0;
	for (const UEdGraphNode* Node : Graph.Nodes)
	{
		Hash = HashCombine(Hash, GetTypeHash(Node));
	}
	return Hash;
}

TArray<FString> GetKeys(const FString& DataSubset)
{
	// "ParentClass" is no section: the super class is told only when "SuperClass" itself is asked for.
	TArray<FString> Keys = { TEXT("Name"), TEXT("Path"), TEXT("ParentClass") };
	if (DataSubset.Equals(TEXT("All"), ESearchCase::IgnoreCase))
	{
		Keys.Append({ TEXT("Variables"), TEXT("Functions"), TEXT("Components"), TEXT("Interfaces"), TEXT("Graphs") });
	}
	else
	{
		Keys.Add(DataSubset);
	}
	return Keys;
}
}

/** Writes the sections of a Blueprint's document, with places for its graphs. */
class FKestrelBlueprintSections
{
public:
	FKestrelBlueprintSections(
		FKestrelBlueprintRead& InRead, const UBlueprint& InBlueprint, const UBlueprintGeneratedClass& InClass)
		: Read(InRead)
		, Blueprint(InBlueprint)
		, Class(InClass)
	{
	}

	/** @return the document without its graphs */
	FString Write(const TArray<FString>& Keys)
	{
		// The object finds out which of two keys that differ in letter case stays, and where.
		FJsonObject Selected;
		for (const FString& Key : Keys)
		{
			if (FindSection(Key))
			{
				Selected.SetField(Key, MakeShared<FJsonValueNull>());
			}
		}
		Json.Open('{');
		for (const auto& Pair : Selected.Values)
		{
			const FString Key(*Pair.Key);
			const FKestrelJsonBuilder::FMark Before = Json.GetMark();
			Json.Key(Key);
			if (!(this->*FindSection(Key)->Write)())
			{
				Json.GoBackTo(Before);
			}
		}
		Json.Close('}');
		return Json.TakeText();
	}

private:
	struct FSection
	{
		const TCHAR* Key;
		bool (FKestrelBlueprintSections::*Write)(); // false for nothing, which is left out
	};

	static const FSection* FindSection(const FString& Key)
	{
		static const FSection Sections[] = {
			{ TEXT("Name"), &FKestrelBlueprintSections::WriteName },
			{ TEXT("Path"), &FKestrelBlueprintSections::WritePath },
			{ TEXT("SuperClass"), &FKestrelBlueprintSections::WriteSuperClass },
			{ TEXT("Variables"), &FKestrelBlueprintSections::WriteVariables },
			{ TEXT("Functions"), &FKestrelBlueprintSections::WriteFunctions },
			{ TEXT("Components"), &FKestrelBlueprintSections::WriteComponents },
			{ TEXT("Interfaces"), &FKestrelBlueprintSections::WriteInterfaces },
			{ TEXT("Graphs"), &FKestrelBlueprintSections::WriteEventGraphs },
		};
		for (const FSection& Section : Sections)
		{
			if (Key.Equals(Section.Key, ESearchCase::IgnoreCase))
			{
				return &Section;
			}
		}
		return nullptr;
	}

	bool WriteName()
	{
		Json.String(Blueprint.GetName());
		return true;
	}

	bool WritePath()
	{
		Json.String(Blueprint.GetPathName());
		return true;
	}

	bool WriteSuperClass()
	{
		const UClass* SuperClass = Class.GetSuperClass();
		Json.String(SuperClass ? SuperClass->GetName() : FString(TEXT("None")));
		return true;
	}

	bool WriteVariables()
	{
		Json.Object(KestrelBlueprintDocument::DescribeVariables(*Class.GetDefaultObject()));
		return true;
	}

	bool WriteFunctions()
	{
		bool bAny = false;
		Json.Open('[');
		for (TFieldIterator<UFunction> It(&Class); It; ++It)
		{
			if (KestrelBlueprintDocument::IsWanted(**It))
			{
				WriteFunction(**It);
				bAny = true;
			}
		}
		Json.Close(']');
		return bAny;
	}

	void WriteFunction(const UFunction& Function)
	{
		Json.Open('{');
		Json.Key(TEXT("Name"));
		Json.String(Function.GetName());
		Json.Key(TEXT("ReturnType"));
		WriteReturnType(Function);
		WriteParameters(Function, TEXT("InParams"), CPF_None);
		WriteParameters(Function, TEXT("OutParams"), CPF_OutParm);
		if (const UEdGraph* Graph = BlueprintReader::FindFunctionGraph(Blueprint, Function))
		{
			Json.Key(TEXT("EdGraph"));
			LeavePlace(*Graph);
		}
		Json.Close('}');
	}

	void WriteReturnType(const UFunction& Function)
	{
		const FProperty* Property = Function.GetReturnProperty();
		if (!Property)
		{
			Json.String(TEXT("void"));
			return;
		}
		const TSharedRef<FJsonObject> ReturnType = MakeShared<FJsonObject>();
		ReturnType->SetStringField(TEXT("Name"), TEXT("ReturnValue"));
		ReturnType->SetObjectField(TEXT("Type"), FKestrelBlueprintUtils::GetVarJSonObjectFromProperty(Property));
		Json.Object(ReturnType);
	}

	/** @param OutFlag  CPF_OutParm for outputs, or none for inputs */
	void WriteParameters(const UFunction& Function, const TCHAR* Key, EPropertyFlags OutFlag)
	{
		const FKestrelJsonBuilder::FMark Before = Json.GetMark();
		bool bAny = false;
		Json.Key(Key);
		Json.Open('[');
		for (TFieldIterator<FProperty> It(&Function); It; ++It)
		{
			// Local variables and what the compiler keeps between nodes are properties of the function, too.
			const bool bParameter = It->HasAnyPropertyFlags(CPF_Parm) && !It->HasAnyPropertyFlags(CPF_ReturnParm);
			if (bParameter && It->HasAnyPropertyFlags(CPF_OutParm) == (OutFlag != CPF_None))
			{
				Json.Object(BlueprintReader::MakeParameter(**It));
				bAny = true;
			}
		}
		Json.Close(']');
		if (!bAny)
		{
			Json.GoBackTo(Before);
		}
	}

	/** Those that the class default object has; what the Blueprint adds exists as templates alone. */
	bool WriteComponents()
	{
		TArray<UActorComponent*> Owned;
		if (const AActor* Actor = Cast<AActor>(Class.GetDefaultObject()))
		{
			Actor->GetComponents(Owned);
		}
		Json.Open('[');
		for (const UActorComponent* Component : Owned)
		{
			Json.Open('{');
			Json.Key(TEXT("Name"));
			Json.String(Component->GetName());
			Json.Key(TEXT("ClassName"));
			Json.String(Component->GetClass()->GetName());
			Json.Close('}');
		}
		Json.Close(']');
		return !Owned.IsEmpty();
	}

	bool WriteInterfaces()
	{
		bool bAny = false;
		Json.Open('[');
		for (const FBPInterfaceDescription& Description : Blueprint.ImplementedInterfaces)
		{
			const UClass* Interface = Description.Interface;
			if (Interface && Interface->IsChildOf(UInterface::StaticClass()))
			{
				Json.Open('{');
				Json.Key(TEXT("Name"));
				Json.String(Interface->GetName());
				Json.Key(TEXT("Graphs"));
				WriteGraphs(Description.Graphs);
				Json.Close('}');
				bAny = true;
			}
		}
		Json.Close(']');
		return bAny;
	}

	bool WriteEventGraphs()
	{
		WriteGraphs(Blueprint.UbergraphPages);
		return true;
	}

	void WriteGraphs(const TArray<TObjectPtr<UEdGraph>>& Graphs)
	{
		Json.Open('[');
		for (const UEdGraph* Graph : Graphs)
		{
			if (Graph)
			{
				LeavePlace(*Graph);
			}
		}
		Json.Close(']');
	}

	void LeavePlace(const UEdGraph& Graph)
	{
		Json.Raw(FStringView());
		Read.Places.Add({ Json.Len(), &Graph, BlueprintReader::HashNodes(Graph) });
		Read.NumNodes += Graph.Nodes.Num();
		Read.NumCharacters += BlueprintReader::EstimateLength(Graph);
	}

	FKestrelBlueprintRead& Read;
	FKestrelJsonBuilder Json;
	const UBlueprint& Blueprint;
	const UBlueprintGeneratedClass& Class;
};

FKestrelBlueprintRead::FKestrelBlueprintRead(const FKestrelAssetAddress& InAddress, const FString& InDataSubset)
	: Address(InAddress)
	, DataSubset(InDataSubset)
{
}

bool FKestrelBlueprintRead::Step(double Deadline)
{
	Graphs.ForgetNodes(); // whatever happened since the last step
	if (!bDone && (NumStarts == 0 || !AreGraphsAsBefore()))
	{
		Start();
	}
	const bool bMayStop = NumStarts < BlueprintReader::MaxStarts;
	while (!bDone)
	{
		bDone = !WriteNext();
		if (bMayStop && FPlatformTime::Seconds() >= Deadline)
		{
			break;
		}
	}
	return bDone;
}

float FKestrelBlueprintRead::GetProgress() const
{
	return bDone ? 1.0f : static_cast<float>(NumWritten) / static_cast<float>(FMath::Max(NumNodes, 1));
}

FString FKestrelBlueprintRead::TakeText()
{
	return Json.TakeText();
}

void FKestrelBlueprintRead::Fail(const FString& Error)
{
	Json.Object(KestrelBlueprintDocument::MakeError(Error));
	bDone = true;
}

void FKestrelBlueprintRead::Reset()
{
	Json.GoBackTo({});
	Places.Empty();
	NextPlace = 0;
	NextNode = INDEX_NONE;
	NumNodes = 0;
	NumCharacters = 0;
	NumWritten = 0;
}

void FKestrelBlueprintRead::Start()
{
	++NumStarts;
	Reset();
	FString Error;
	const UBlueprint* Blueprint = KestrelBlueprintLookup::LoadBlueprint(Address, Error);
	if (!Blueprint)
	{
		Fail(Error);
		return;
	}
	const UBlueprintGeneratedClass* Class = Cast<UBlueprintGeneratedClass>(Blueprint->GeneratedClass.Get());
	if (!Class)
	{
		Fail(FString::Printf(TEXT("Loaded asset is not a Blueprint: %s"), *Address.Name));
		return;
	}
	Frame = FKestrelBlueprintSections(*this, *Blueprint, *Class).Write(BlueprintReader::GetKeys(DataSubset));
	Json.Reserve(Frame.Len() + NumCharacters);
}

bool FKestrelBlueprintRead::AreGraphsAsBefore() const
{
	for (int32 Index = NextPlace; Index < Places.Num(); ++Index)
	{
		const UEdGraph* Graph = Places[Index].Graph.Get();
		if (!Graph || BlueprintReader::HashNodes(*Graph) != Places[Index].NodesHash)
		{
			return false;
		}
	}
	return true;
}

bool FKestrelBlueprintRead::WriteNext()
{
	const FStringView Text(Frame);
	const int32 Start = NextPlace == 0 ? 0 : Places[NextPlace - 1].Offset;
	if (NextPlace == Places.Num())
	{
		Json.Paste(Text.RightChop(Start));
		return false;
	}
	const FPlace& Place = Places[NextPlace];
	const UEdGraph& Graph = *Place.Graph.Get();
	if (NextNode < 0)
	{
		Json.Paste(Text.Mid(Start, Place.Offset - Start));
		Graphs.Begin(Graph);
		NextNode = 0;
	}
	else if (NextNode < Graph.Nodes.Num())
	{
		Graphs.WriteNode(Graph.Nodes[NextNode++]);
		++NumWritten;
	}
	else
	{
		Graphs.End();
		++NextPlace;
		NextNode = INDEX_NONE;
	}
	return true;
}

FString FKestrelBlueprintUtils::ReadBlueprint(const FString& BlueprintName, FString DataSubset)
{
	return ReadBlueprint(FKestrelAssetFinder().Find(*UBlueprint::StaticClass(), BlueprintName), DataSubset);
}

FString FKestrelBlueprintUtils::ReadBlueprint(const FKestrelAssetAddress& Address, const FString& DataSubset)
{
	FKestrelBlueprintRead Read(Address, DataSubset);
	while (!Read.Step(FPlatformTime::Seconds() + 1.0))
	{
	}
	return Read.TakeText();
}

FString FKestrelBlueprintUtils::SerializeJson(const TSharedPtr<FJsonObject>& Object)
{
	return KestrelJson::ToCondensedText(Object.ToSharedRef());
}
