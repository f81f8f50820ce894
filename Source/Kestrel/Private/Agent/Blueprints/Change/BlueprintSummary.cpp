#include "Agent/Blueprints/Change/BlueprintSummary.h"

#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Serialization/JsonTypes.h"
#include "UObject/ObjectPtr.h"

namespace BlueprintSummary
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

/** What stands before a line. */
const TCHAR* MarkOf(bool bIsLoaded, bool bExists)
{
	return !bIsLoaded ? TEXT("*") : bExists ? TEXT("~") : TEXT("+");
}

FString GetString(const FJsonObject& Object, const TCHAR* Field)
{
	FString Text;
	Object.TryGetStringField(Field, Text);
	return Text;
}

const FValues& GetArray(const FJsonObject& Object, const TCHAR* Field)
{
	static const FValues Empty;
	const FValues* Values = nullptr;
	return Object.TryGetArrayField(Field, Values) ? *Values : Empty;
}

FString DescribeValue(const TSharedRef<FJsonValue>& Value)
{
	FString Text;
	if (Value->Type == EJson::String && Value->TryGetString(Text))
	{
		return TEXT("\"") + Text + TEXT("\"");
	}
	if (Value->TryGetString(Text)) // numbers, true and false
	{
		return Text;
	}
	const TSharedRef<FJsonObject> Holder = MakeShared<FJsonObject>();
	Holder->SetField(TEXT("V"), Value);
	return KestrelJson::ToCondensedText(Holder).LeftChop(1).RightChop(5); // less {"V": and }
}

/** As the editor names it: "Integer", "Actor"; without looking for what it refers to, which may not be loaded. */
FString DescribeType(const FString& Category, const FString& SubCategory, const FString& Object)
{
	if (!Object.IsEmpty())
	{
		int32 Dot = INDEX_NONE;
		return Object.FindLastChar(TEXT('.'), Dot) ? Object.RightChop(Dot + 1) : Object;
	}
	FEdGraphPinType Type;
	Type.PinCategory = Category.Len() < NAME_SIZE ? FName(*Category) : NAME_None;
	Type.PinSubCategory = SubCategory.Len() < NAME_SIZE ? FName(*SubCategory) : NAME_None;
	return UEdGraphSchema_K2::TypeToText(Type).ToString();
}

FString DescribePinType(const FJsonObject& Type)
{
	const FString Inner = DescribeType(GetString(Type, TEXT("Category")), GetString(Type, TEXT("SubCategory")),
		GetString(Type, TEXT("SubCategoryObject")));
	const FString Container = GetString(Type, TEXT("Container"));
	if (Container.Equals(TEXT("Map"), ESearchCase::IgnoreCase))
	{
		const TSharedPtr<FJsonObject>* Value = nullptr;
		const bool bHasValue = Type.TryGetObjectField(TEXT("ValueType"), Value);
		return FString::Printf(
			TEXT("Map of %s to %s"), *Inner, bHasValue ? *DescribePinType(**Value) : TEXT("nothing"));
	}
	const bool bIsContainer = Container.Equals(TEXT("Array"), ESearchCase::IgnoreCase) ||
							  Container.Equals(TEXT("Set"), ESearchCase::IgnoreCase);
	return bIsContainer ? Container + TEXT(" of ") + Inner : Inner;
}

/** Of a parameter. */
FString DescribePropertyType(const TSharedPtr<FJsonObject>& Description)
{
	const TSharedPtr<FJsonObject>* Inner = nullptr;
	if (Description->TryGetObjectField(TEXT("InnerType"), Inner))
	{
		return TEXT("Array of ") + DescribePropertyType(*Inner);
	}
	for (const TCHAR* Field : { TEXT("EnumType"), TEXT("StructType"), TEXT("PropertyClass") })
	{
		const FString Name = GetString(*Description, Field);
		if (!Name.IsEmpty())
		{
			return DescribeType(FString(), FString(), Name);
		}
	}
	return UEdGraphSchema_K2::TypeToText(FKestrelBlueprintUtils::GetVarEdGraphPinTypeFromJSonObject(&Description))
		.ToString();
}

FString DescribeVariable(const FString& Name, const FJsonObject& Entry, const UBlueprint* Blueprint)
{
	const bool bExists = Blueprint && Name.Len() < NAME_SIZE &&
						 FBlueprintEditorUtils::FindNewVariableIndex(Blueprint, FName(*Name)) != INDEX_NONE;
	FString Line = FString::Printf(TEXT("%s variable %s"), MarkOf(Blueprint != nullptr, bExists), *Name);
	const TSharedPtr<FJsonObject>* Type = nullptr;
	if (Entry.TryGetObjectField(TEXT("Type"), Type))
	{
		Line += TEXT(": ") + DescribePinType(**Type);
	}
	if (const TSharedPtr<FJsonValue> Value = Entry.TryGetField(TEXT("Value")))
	{
		Line += TEXT(" = ") + DescribeValue(Value.ToSharedRef());
	}
	TArray<FString> Settings;
	for (const TCHAR* Key : { TEXT("Replication"), TEXT("Category"), TEXT("Tooltip"), TEXT("ExposeOnSpawn"),
			 TEXT("Private"), TEXT("SaveGame") })
	{
		if (const TSharedPtr<FJsonValue> Value = Entry.TryGetField(Key))
		{
			Settings.Add(FString::Printf(TEXT("%s %s"), Key, *DescribeValue(Value.ToSharedRef())));
		}
	}
	return Settings.IsEmpty() ? Line : Line + TEXT(" (") + FString::Join(Settings, TEXT(", ")) + TEXT(")");
}

FString DescribeParameters(const FJsonObject& Entry, const TCHAR* Field)
{
	TArray<FString> Parameters;
	for (const TSharedPtr<FJsonValue>& Value : GetArray(Entry, Field))
	{
		const TSharedPtr<FJsonObject>* Description = nullptr;
		if (Value.IsValid() && Value->TryGetObject(Description))
		{
			Parameters.Add(GetString(**Description, TEXT("Name")) + TEXT(": ") + DescribePropertyType(*Description));
		}
	}
	return FString::Join(Parameters, TEXT(", "));
}

/** "call PrintString" */
FString DescribeNode(const FJsonObject& Node)
{
	struct FKind
	{
		const TCHAR* Class;
		const TCHAR* Verb;
		const TCHAR* Field;
	};
	static const FKind Kinds[] = {
		{ TEXT("UK2Node_VariableGet"), TEXT("get "), TEXT("VariableName") },
		{ TEXT("UK2Node_VariableSet"), TEXT("set "), TEXT("VariableName") },
		{ TEXT("UK2Node_CallFunction"), TEXT("call "), TEXT("FunctionName") },
	};
	const FString Class = GetString(Node, TEXT("Class"));
	const TSharedPtr<FJsonObject>* Properties = nullptr;
	for (const FKind& Kind : Kinds)
	{
		if (Class.Equals(Kind.Class, ESearchCase::IgnoreCase) && Node.TryGetObjectField(TEXT("Properties"), Properties))
		{
			return Kind.Verb + GetString(**Properties, Kind.Field);
		}
	}
	return Class;
}

FString DescribeNodes(const FJsonObject& Entry)
{
	constexpr int32 MaxNamed = 6;
	const TSharedPtr<FJsonObject>* Graph = nullptr;
	if (!Entry.TryGetObjectField(TEXT("EdGraph"), Graph))
	{
		return FString();
	}
	const FValues& Nodes = GetArray(**Graph, TEXT("Nodes"));
	TArray<FString> Named;
	for (int32 Index = 0; Index < FMath::Min(Nodes.Num(), MaxNamed); ++Index)
	{
		const TSharedPtr<FJsonObject>* Node = nullptr;
		if (Nodes[Index].IsValid() && Nodes[Index]->TryGetObject(Node))
		{
			Named.Add(DescribeNode(**Node));
		}
	}
	if (Nodes.Num() > MaxNamed)
	{
		Named.Add(TEXT("..."));
	}
	return Nodes.IsEmpty() ? FString()
						   : FString::Printf(TEXT(": %d %s added (%s)"), Nodes.Num(),
								 Nodes.Num() == 1 ? TEXT("node") : TEXT("nodes"), *FString::Join(Named, TEXT(", ")));
}

FString DescribeFunction(const FJsonObject& Entry, const UBlueprint* Blueprint)
{
	const FString Name = GetString(Entry, TEXT("Name"));
	const bool bExists =
		Blueprint && Blueprint->FunctionGraphs.ContainsByPredicate([&Name](const TObjectPtr<UEdGraph>& Graph) {
			return Graph && Graph->GetName().Equals(Name, ESearchCase::IgnoreCase);
		});
	FString Line = FString::Printf(TEXT("%s function %s"), MarkOf(Blueprint != nullptr, bExists), *Name);
	if (!bExists)
	{
		const FString Inputs = DescribeParameters(Entry, TEXT("InParams"));
		const FString Outputs = DescribeParameters(Entry, TEXT("OutParams"));
		Line += TEXT("(") + Inputs + TEXT(")") + (Outputs.IsEmpty() ? FString() : TEXT(" -> ") + Outputs);
	}
	return Line + DescribeNodes(Entry);
}
}

TArray<FString> KestrelBlueprintSummary::Describe(const FJsonObject& Request, const UBlueprint* Blueprint)
{
	TArray<FString> Lines;
	const TSharedPtr<FJsonObject>* Variables = nullptr;
	if (Request.TryGetObjectField(TEXT("Variables"), Variables))
	{
		for (const auto& Pair : (*Variables)->Values)
		{
			const TSharedPtr<FJsonObject>* Entry = nullptr;
			if (Pair.Value.IsValid() && Pair.Value->TryGetObject(Entry))
			{
				Lines.Add(BlueprintSummary::DescribeVariable(FString(*Pair.Key), **Entry, Blueprint));
			}
		}
	}
	for (const TSharedPtr<FJsonValue>& Value : BlueprintSummary::GetArray(Request, TEXT("Functions")))
	{
		const TSharedPtr<FJsonObject>* Entry = nullptr;
		if (Value.IsValid() && Value->TryGetObject(Entry) && (*Entry)->HasField(TEXT("Name")))
		{
			Lines.Add(BlueprintSummary::DescribeFunction(**Entry, Blueprint));
		}
	}
	return Lines;
}
