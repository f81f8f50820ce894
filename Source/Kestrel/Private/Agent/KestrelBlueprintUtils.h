#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FProperty;
class UBehaviorTree;
class UBlueprint;
class UClass;
class UEdGraph;
class UObject;
struct FAssetData;
struct FEdGraphPinType;

/**
 * Reads, makes, saves and compiles Blueprints, and reads behavior trees.
 *
 * Assets are named by their short names, in whatever folder they lie, and letter case does not count; of several the
 * first one counts that the asset registry knows. Results are JSON in one line unless said otherwise; a failure is an
 * object with the one member "Error". All of it happens at once, on the game thread.
 */
class FKestrelBlueprintUtils
{
public:
	// Reading.

	/**
	 * @param DataSubset  "All", or the name of the one section to read beside "Name" and "Path"
	 */
	static FString ReadBlueprint(const FString& BlueprintName, FString DataSubset);
	/** "Name", "Class" and "Nodes" with their pins and links. */
	static TSharedPtr<FJsonObject> ReadEdGraph(const UEdGraph* Graph);
	static FString ReadBehaviorTree(const FString& BehaviorTreeName);
	static FString SerializeJson(const TSharedPtr<FJsonObject>& Object);

	// Looking up; null when there is nothing of the name.

	static UBlueprint* GetBlueprintFromtBlueprintName(const FString& BlueprintName);
	static UBehaviorTree* GetBehaviorTreeFromBehaviorTreeName(const FString& BehaviorTreeName);
	/** Types in memory before the classes of Blueprints. Native classes are named without prefix. */
	static UClass* GetBlueprintClassFromBlueprintName(const FString& ClassName);
	/** What the Blueprint is compiled to; if that cannot be loaded, the class of the asset itself. */
	static UClass* GetBlueprintClassFromAssetData(const FAssetData& AssetData);

	// Making and saving.

	/** @return a text, not JSON: "Success: …" or "Error: …" */
	static FString CreateBlueprintAsset(
		const FString& PackagePath, const FString& BlueprintName, const FString& ParentClassName);
	static FString SaveBlueprint(UObject* Asset);
	/** A compile with warnings counts as failed. */
	static FString CompileBlueprint(UObject* Asset);
	/** Loads every Blueprint of the project. Each is saved before it is compiled. */
	static FString SaveAndCompileAllDirtyBlueprints();

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
