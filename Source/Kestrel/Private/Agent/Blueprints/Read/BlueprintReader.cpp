#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "Components/ActorComponent.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "Engine/Blueprint.h"
#include "Engine/BlueprintGeneratedClass.h"
#include "GameFramework/Actor.h"
#include "Templates/Casts.h"
#include "Templates/SubclassOf.h"
#include "UObject/Interface.h"
#include "UObject/ObjectMacros.h"
#include "UObject/ObjectPtr.h"
#include "UObject/UnrealType.h"

namespace BlueprintReader
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

void SetUnlessEmpty(FJsonObject& Object, const TCHAR* Field, const FValues& Values)
{
	if (Values.Num() > 0)
	{
		Object.SetArrayField(Field, Values);
	}
}

TSharedRef<FJsonObject> MakeParameter(const FProperty& Property)
{
	const TSharedRef<FJsonObject> Parameter = MakeShared<FJsonObject>();
	Parameter->SetStringField(TEXT("Name"), Property.GetName());
	Parameter->SetObjectField(TEXT("Type"), FKestrelBlueprintUtils::GetVarJSonObjectFromProperty(&Property));
	return Parameter;
}

void AddReturnType(const UFunction& Function, FJsonObject& Object)
{
	if (const FProperty* ReturnProperty = Function.GetReturnProperty())
	{
		const TSharedRef<FJsonObject> ReturnType = MakeShared<FJsonObject>();
		ReturnType->SetStringField(TEXT("Name"), TEXT("ReturnValue"));
		ReturnType->SetObjectField(TEXT("Type"), FKestrelBlueprintUtils::GetVarJSonObjectFromProperty(ReturnProperty));
		Object.SetObjectField(TEXT("ReturnType"), ReturnType);
		return;
	}
	Object.SetStringField(TEXT("ReturnType"), TEXT("void"));
}

void AddParameters(const UFunction& Function, FJsonObject& Object)
{
	FValues InParams;
	FValues OutParams;
	for (TFieldIterator<FProperty> It(&Function); It; ++It)
	{
		// Local variables and what the compiler keeps between nodes are properties of the function, too.
		if (It->HasAnyPropertyFlags(CPF_Parm) && !It->HasAnyPropertyFlags(CPF_ReturnParm))
		{
			FValues& Params = It->HasAnyPropertyFlags(CPF_OutParm) ? OutParams : InParams;
			Params.Add(MakeShared<FJsonValueObject>(MakeParameter(**It)));
		}
	}
	SetUnlessEmpty(Object, TEXT("InParams"), InParams);
	SetUnlessEmpty(Object, TEXT("OutParams"), OutParams);
}

const UEdGraph* FindFunctionGraph(const UBlueprint& Blueprint, const UFunction& Function)
{
	const TObjectPtr<UEdGraph>* Found = Blueprint.FunctionGraphs.FindByPredicate([&Function](const UEdGraph* Graph) {
		return Graph && Graph->GetFName() == Function.GetFName(); // names compare without letter case
	});
	return Found ? Found->Get() : nullptr;
}

FValues DescribeFunctions(const UBlueprint& Blueprint, const UClass& Class)
{
	FValues Functions;
	for (TFieldIterator<UFunction> It(&Class); It; ++It)
	{
		if (!KestrelBlueprintDocument::IsWanted(**It))
		{
			continue;
		}
		const TSharedRef<FJsonObject> Function = MakeShared<FJsonObject>();
		Function->SetStringField(TEXT("Name"), It->GetName());
		AddReturnType(**It, *Function);
		AddParameters(**It, *Function);
		if (const UEdGraph* Graph = FindFunctionGraph(Blueprint, **It))
		{
			Function->SetObjectField(TEXT("EdGraph"), FKestrelBlueprintUtils::ReadEdGraph(Graph));
		}
		Functions.Add(MakeShared<FJsonValueObject>(Function));
	}
	return Functions;
}

/** Those that the class default object has; what the Blueprint adds exists as templates alone. */
FValues DescribeComponents(const UClass& Class)
{
	FValues Components;
	const AActor* Actor = Cast<AActor>(Class.GetDefaultObject());
	if (!Actor)
	{
		return Components;
	}
	TArray<UActorComponent*> Owned;
	Actor->GetComponents(Owned);
	for (const UActorComponent* Component : Owned)
	{
		const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
		Object->SetStringField(TEXT("Name"), Component->GetName());
		Object->SetStringField(TEXT("ClassName"), Component->GetClass()->GetName());
		Components.Add(MakeShared<FJsonValueObject>(Object));
	}
	return Components;
}

FValues DescribeGraphs(const TArray<TObjectPtr<UEdGraph>>& Graphs)
{
	FValues Documents;
	for (const UEdGraph* Graph : Graphs)
	{
		if (Graph)
		{
			Documents.Add(MakeShared<FJsonValueObject>(FKestrelBlueprintUtils::ReadEdGraph(Graph)));
		}
	}
	return Documents;
}

FValues DescribeInterfaces(const UBlueprint& Blueprint)
{
	FValues Interfaces;
	for (const FBPInterfaceDescription& Description : Blueprint.ImplementedInterfaces)
	{
		const UClass* Interface = Description.Interface;
		if (Interface && Interface->IsChildOf(UInterface::StaticClass()))
		{
			const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
			Object->SetStringField(TEXT("Name"), Interface->GetName());
			Object->SetArrayField(TEXT("Graphs"), DescribeGraphs(Description.Graphs));
			Interfaces.Add(MakeShared<FJsonValueObject>(Object));
		}
	}
	return Interfaces;
}

TSharedRef<FJsonObject> MakeDocument(const UBlueprint& Blueprint, const UClass& Class)
{
	const TSharedRef<FJsonObject> Document = MakeShared<FJsonObject>();
	Document->SetStringField(TEXT("Name"), Blueprint.GetName());
	Document->SetStringField(TEXT("Path"), Blueprint.GetPathName());
	const UClass* SuperClass = Class.GetSuperClass();
	Document->SetStringField(TEXT("SuperClass"), SuperClass ? SuperClass->GetName() : TEXT("None"));
	Document->SetObjectField(TEXT("Variables"), KestrelBlueprintDocument::DescribeVariables(*Class.GetDefaultObject()));
	SetUnlessEmpty(*Document, TEXT("Functions"), DescribeFunctions(Blueprint, Class));
	SetUnlessEmpty(*Document, TEXT("Components"), DescribeComponents(Class));
	SetUnlessEmpty(*Document, TEXT("Interfaces"), DescribeInterfaces(Blueprint));
	Document->SetArrayField(TEXT("Graphs"), DescribeGraphs(Blueprint.UbergraphPages));
	return Document;
}

/** "ParentClass" is no member of the document: the super class is told only when "SuperClass" itself is asked for. */
TSharedRef<FJsonObject> Select(const FJsonObject& Document, const FString& DataSubset)
{
	TArray<FString> Keys = { TEXT("Name"), TEXT("Path"), TEXT("ParentClass") };
	if (DataSubset.Equals(TEXT("All"), ESearchCase::IgnoreCase))
	{
		Keys.Append({ TEXT("Variables"), TEXT("Functions"), TEXT("Components"), TEXT("Interfaces"), TEXT("Graphs") });
	}
	else
	{
		Keys.Add(DataSubset);
	}
	const TSharedRef<FJsonObject> Selected = MakeShared<FJsonObject>();
	for (const FString& Key : Keys)
	{
		if (const TSharedPtr<FJsonValue> Value = Document.TryGetField(Key))
		{
			Selected->SetField(Key, Value);
		}
	}
	return Selected;
}
}

FString FKestrelBlueprintUtils::ReadBlueprint(const FString& BlueprintName, FString DataSubset)
{
	return ReadBlueprint(FKestrelAssetFinder().Find(*UBlueprint::StaticClass(), BlueprintName), DataSubset);
}

FString FKestrelBlueprintUtils::ReadBlueprint(const FKestrelAssetAddress& Address, const FString& DataSubset)
{
	FString Error;
	const UBlueprint* Blueprint = KestrelBlueprintLookup::LoadBlueprint(Address, Error);
	if (!Blueprint)
	{
		return SerializeJson(KestrelBlueprintDocument::MakeError(Error));
	}
	const UBlueprintGeneratedClass* Class = Cast<UBlueprintGeneratedClass>(Blueprint->GeneratedClass.Get());
	if (!Class)
	{
		return SerializeJson(KestrelBlueprintDocument::MakeError(
			FString::Printf(TEXT("Loaded asset is not a Blueprint: %s"), *Address.Name)));
	}
	return SerializeJson(BlueprintReader::Select(*BlueprintReader::MakeDocument(*Blueprint, *Class), DataSubset));
}

FString FKestrelBlueprintUtils::SerializeJson(const TSharedPtr<FJsonObject>& Object)
{
	return KestrelJson::ToCondensedText(Object.ToSharedRef());
}
