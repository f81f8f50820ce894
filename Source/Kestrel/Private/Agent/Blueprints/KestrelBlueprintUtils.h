#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FJsonValue;
class FProperty;
class UBehaviorTree;
class UBlueprint;
class UClass;
class UEdGraph;
class UEdGraphNode;
class UObject;
struct FAssetData;
struct FEdGraphPinType;
struct FKestrelAssetAddress;

/**
 * Reads, makes, saves and compiles Blueprints, and reads behavior trees.
 *
 * Assets are named by their short names, in whatever folder they lie, ignoring case; of several, the first one that the
 * asset registry knows is taken. Whoever has found out which one that is says so with an address. Assets of classes
 * derived from Blueprint are Blueprints, too. Results are JSON in one line unless said otherwise; a failure is an
 * object with the member "Error". All of it happens at once, on the game thread.
 */
class KESTREL_API FKestrelBlueprintUtils
{
public:
	// Reading.

	/**
	 * @param DataSubset  "All", or the name of the one section to read beside "Name" and "Path"
	 */
	static FString ReadBlueprint(const FString& BlueprintName, FString DataSubset);
	static FString ReadBlueprint(const FKestrelAssetAddress& Address, const FString& DataSubset);
	/** "Name", "Class" and "Nodes" with their pins and links. */
	static TSharedPtr<FJsonObject> ReadEdGraph(const UEdGraph* Graph);
	static FString ReadBehaviorTree(const FString& BehaviorTreeName);
	static FString ReadBehaviorTree(const FKestrelAssetAddress& Address);
	static FString SerializeJson(const TSharedPtr<FJsonObject>& Object);

	// Looking up; null when there is nothing of the name.

	static UBlueprint* GetBlueprintFromtBlueprintName(const FString& BlueprintName);
	static UBehaviorTree* GetBehaviorTreeFromBehaviorTreeName(const FString& BehaviorTreeName);
	/** By path or name, see KestrelTypeLookup; a Blueprint whose class cannot be loaded gives the asset's class. */
	static UClass* GetBlueprintClassFromBlueprintName(const FString& ClassName);
	/** What the Blueprint is compiled to; if that cannot be loaded, the class of the asset itself. */
	static UClass* GetBlueprintClassFromAssetData(const FAssetData& AssetData);

	// Making and saving.

	/** The error that creation would answer with for its path or name, whatever the parent; empty when they will do. */
	static FString PredictCreation(const FString& PackagePath, const FString& BlueprintName);
	/** @return a text, not JSON: "Success: …" or "Error: …" */
	static FString CreateBlueprintAsset(
		const FString& PackagePath, const FString& BlueprintName, const FString& ParentClassName);
	/** Checks the file out or marks it for add as needed; "Reason" beside "Error" says why it is not saved. */
	static FString SaveBlueprint(UObject* Asset);
	/** A compile with warnings counts as failed. "CompileErrors" and "CompileWarnings" follow, unless empty. */
	static FString CompileBlueprint(UObject* Asset);
	/** Of those in memory. */
	static void CompileDirtyBlueprints();
	/** Loads every Blueprint of the project. Each that is dirty is saved before it is compiled. */
	static FString SaveAndCompileAllDirtyBlueprints();

	// Changing. What is done is told in a list of messages, and what cannot be done does not stop the rest.

	/**
	 * Applies a document with "Variables" and "Functions", compiles and saves, all in one transaction.
	 *
	 * @param TransactionTitle  by which undo finds it (GetKestrelTransactionName)
	 * @return "VariableModifications" and "FunctionModifications", and "Success", or "Message" when nothing has
	 * changed; then "Skipped", "CompileErrors", "CompileWarnings" and "SourceControl", each unless empty. Or "Error",
	 * with "Reason" when the file could not be written
	 */
	static FString ModifyBlueprint(
		const FString& BlueprintName, const FString& Modifications, const FString& TransactionTitle = FString());
	static FString ModifyBlueprint(
		const FKestrelAssetAddress& Address, const FString& Modifications, const FString& TransactionTitle);
	/**
	 * Makes and changes variables, which an object names and describes, and sets "VariableModifications".
	 *
	 * @return whether anything has changed
	 */
	static bool ModifyBlueprintVariables(
		UBlueprint* Blueprint, const FJsonObject& Variables, TSharedPtr<FJsonObject>& Result);
	/** Makes the graph of a function that is called when the variable arrives, unless there is such a function. */
	static void CreateRepNotifyFunction(UBlueprint* Blueprint, const FName& FunctionName);
	/**
	 * Makes functions with their parameters, adds nodes to the graphs of new and existing ones, and sets
	 * "FunctionModifications".
	 *
	 * @return whether anything has changed
	 */
	static bool ModifyBlueprintFunctions(
		UBlueprint* Blueprint, const TArray<TSharedPtr<FJsonValue>>& Functions, TSharedPtr<FJsonObject>& Result);
	/** Null when the description is of no node that can be made. Without "Location" it stands right of all others. */
	static UEdGraphNode* CreateEdGraphNode(const TSharedPtr<FJsonObject>& Description, UEdGraph* Graph);
	/**
	 * Sets the comment and the pins, and links these to pins of nodes that are named by their titles. Pins are taken as
	 * described, even if that will not compile; only links that work are not given up for one that does not.
	 *
	 * @return whether anything was applied
	 */
	static bool ModifyNodeProperties(UEdGraphNode* Node, const FJsonObject& Description, UEdGraph* Graph);

	// Types and values as JSON.

	static TSharedPtr<FJsonObject> ConvertEdGraphPinTypeToJson(const FEdGraphPinType& PinType);
	/** Reads the member "Type" of the object. What is missing in it keeps its default. */
	static FEdGraphPinType ConvertJsonToEdGraphPinType(const TSharedPtr<FJsonObject>& JsonObject);
	/** Reads a type that is named like a class of properties: "IntProperty". Empty when there is no such type. */
	static FEdGraphPinType GetVarEdGraphPinTypeFromJSonObject(const TSharedPtr<FJsonObject>* JsonObject);
	static FEdGraphPinType ConvertPropertyToEdGraphPinType(const FProperty* Property);
	static TSharedPtr<FJsonObject> GetVarJSonObjectFromProperty(const FProperty* Property);
	/** @param Container  the object that has the property */
	static FString GetPropertyValueAsString(const void* Container, const FProperty* Property);
};
