#pragma once

#include "Components/SceneComponent.h"
#include "EdGraphSchema_K2.h"
#include "Engine/BlueprintGeneratedClass.h"
#include "Engine/SimpleConstructionScript.h"
#include "GameFramework/Character.h"
#include "K2Node_CallFunction.h"
#include "K2Node_CustomEvent.h"
#include "K2Node_FunctionEntry.h"
#include "K2Node_FunctionResult.h"
#include "K2Node_IfThenElse.h"
#include "K2Node_VariableGet.h"
#include "K2Node_VariableSet.h"
#include "Kismet/KismetSystemLibrary.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Kismet2/CompilerResultsLog.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "ScratchDirectory.h"
#include "UObject/Package.h"
#include "UObject/SavePackage.h"
#include "UObject/UObjectIterator.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

inline std::string ToUtf8(const FString& Text)
{
	return TCHAR_TO_UTF8(*Text);
}

inline FEdGraphPinType MakeType(FName Category, FName SubCategory = NAME_None, UObject* Object = nullptr)
{
	return FEdGraphPinType(Category, SubCategory, Object, EPinContainerType::None, false, FEdGraphTerminalType());
}

inline std::vector<std::string> GetOwnProperties(const UStruct* Struct)
{
	std::vector<std::string> Names;
	for (TFieldIterator<FProperty> It(Struct, EFieldIterationFlags::None); It; ++It)
	{
		Names.push_back(ToUtf8(It->GetName()));
	}
	return Names;
}

inline std::vector<std::string> GetPins(const UEdGraphNode& Node)
{
	std::vector<std::string> Names;
	for (const UEdGraphPin* const Pin : Node.Pins)
	{
		Names.push_back(ToUtf8(Pin->PinName.ToString()));
	}
	return Names;
}

inline std::string GetTitle(const UEdGraphNode& Node)
{
	return ToUtf8(Node.GetNodeTitle(ENodeTitleType::FullTitle).ToString());
}

/** What the nodes work on: the classes of their pins named "self", or "self". */
inline std::vector<std::string> GetTargets(const UEdGraph& Graph)
{
	std::vector<std::string> Names;
	for (const UEdGraphNode* const Node : Graph.Nodes)
	{
		if (const UEdGraphPin* const Pin = Node->FindPin(TEXT("self")))
		{
			const UObject* const Class = Pin->PinType.PinSubCategoryObject.Get();
			Names.push_back(ToUtf8(Class ? Class->GetName() : Pin->PinType.PinSubCategory.ToString()));
		}
	}
	return Names;
}

/** A project of its own, and the module that compiles. */
class BlueprintTest : public testing::Test
{
protected:
	BlueprintTest()
	{
		FPaths::SetProjectFilePath(Folder.Path / TEXT("Game.uproject"));
		FModuleManager::Get().LoadModuleChecked<IModuleInterface>(TEXT("UnrealEd"));
	}
	~BlueprintTest() override
	{
		ForgetAll();
		FPaths::SetProjectFilePath(FString());
	}

	static UBlueprint* Make(const TCHAR* PackageName, UClass* Parent = AActor::StaticClass())
	{
		return FKismetEditorUtilities::CreateBlueprint(
			Parent, CreatePackage(PackageName), FName(*FPackageName::GetShortName(PackageName)), BPTYPE_Normal);
	}

	static bool Save(UBlueprint* Blueprint)
	{
		UPackage* const Package = Blueprint->GetOutermost();
		FSavePackageArgs Args;
		Args.TopLevelFlags = RF_Standalone;
		return UPackage::SavePackage(Package, nullptr, *FileOf(Package->GetName()), Args);
	}

	static FString FileOf(const FString& PackageName)
	{
		return FPackageName::LongPackageNameToFilename(PackageName, FPackageName::GetAssetPackageExtension());
	}

	static FString ReadFile(const FString& PackageName)
	{
		FString Text;
		FFileHelper::LoadFileToString(Text, *FileOf(PackageName));
		return Text;
	}

	/** As if the editor were restarted. */
	static void ForgetAll()
	{
		for (TObjectIterator<UBlueprint> It; It; ++It)
		{
			It->ClearFlags(RF_Standalone);
		}
		CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
	}

	static EBlueprintStatus Compile(UBlueprint* Blueprint, FCompilerResultsLog* Log = nullptr)
	{
		FCompilerResultsLog Silent;
		Silent.bSilentMode = true;
		FKismetEditorUtilities::CompileBlueprint(Blueprint, EBlueprintCompileOptions::None, Log ? Log : &Silent);
		return Blueprint->Status;
	}

	static UEdGraph* AddFunction(UBlueprint* Blueprint, const TCHAR* Name, bool bUserCreated)
	{
		UEdGraph* const Graph = FBlueprintEditorUtils::CreateNewGraph(
			Blueprint, Name, UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
		FBlueprintEditorUtils::AddFunctionGraph<UClass>(Blueprint, Graph, bUserCreated, nullptr);
		return Graph;
	}

	static UK2Node_CallFunction* AddCall(UEdGraph& Graph, UClass* Class, const TCHAR* Function)
	{
		FGraphNodeCreator<UK2Node_CallFunction> Creator(Graph);
		UK2Node_CallFunction* const Node = Creator.CreateNode();
		Node->SetFromFunction(Class->FindFunctionByName(Function));
		Creator.Finalize();
		return Node;
	}

	template <typename NodeType>
	static NodeType* AddVariableNode(UEdGraph& Graph, const TCHAR* Variable)
	{
		FGraphNodeCreator<NodeType> Creator(Graph);
		NodeType* const Node = Creator.CreateNode();
		Node->VariableReference.SetSelfMember(Variable);
		Creator.Finalize();
		return Node;
	}

	FScratchDirectory Folder;
};
