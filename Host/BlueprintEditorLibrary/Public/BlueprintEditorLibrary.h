#pragma once

#include "Engine/Blueprint.h"
#include "Kismet/BlueprintFunctionLibrary.h"
#include "BlueprintEditorLibrary.generated.h"

/** What scripts do with Blueprints. A null Blueprint changes nothing; the log says so. */
UCLASS(meta = (ScriptName = "BlueprintEditorLibrary"))
class BLUEPRINTEDITORLIBRARY_API UBlueprintEditorLibrary : public UBlueprintFunctionLibrary
{
	GENERATED_BODY()

public:
	/** The object itself when it is a Blueprint, else null. */
	UFUNCTION(BlueprintCallable, Category = "Blueprint Editor")
	static UBlueprint* GetBlueprintAsset(UObject* Object);

	/** What the Blueprint is compiled to. */
	UFUNCTION(BlueprintCallable, Category = "Blueprint Editor")
	static UClass* GeneratedClass(UBlueprint* BlueprintObj);

	UFUNCTION(BlueprintCallable, Category = "Blueprint Editor")
	static void CompileBlueprint(UBlueprint* Blueprint);

	/** A new Blueprint at "/Game/Folder/Name"; null when it cannot be made. */
	UFUNCTION(BlueprintCallable, Category = "Blueprint Editor")
	static UBlueprint* CreateBlueprintAssetWithParent(const FString& AssetPath, UClass* ParentClass);

	UFUNCTION(BlueprintCallable, Category = "Blueprint Editor")
	static UEdGraph* FindEventGraph(UBlueprint* Blueprint);

	UFUNCTION(BlueprintCallable, Category = "Blueprint Editor")
	static UEdGraph* FindGraph(UBlueprint* Blueprint, FName GraphName);

	/** A function without parameters; its name gets a number when it is taken. */
	UFUNCTION(BlueprintCallable, Category = "Blueprint Editor")
	static UEdGraph* AddFunctionGraph(UBlueprint* Blueprint, const FString& FuncName = TEXT("NewFunction"));

	UFUNCTION(BlueprintCallable, Category = "Blueprint Editor")
	static void RemoveFunctionGraph(UBlueprint* Blueprint, FName FuncName);

	UFUNCTION(BlueprintCallable, Category = "Blueprint Editor")
	static bool AddMemberVariable(UBlueprint* Blueprint, FName MemberName, const FEdGraphPinType& VariableType);

	UFUNCTION(BlueprintCallable, Category = "Blueprint Editor")
	static void SetBlueprintVariableInstanceEditable(
		UBlueprint* Blueprint, const FName& VariableName, bool bInstanceEditable);

	/** "bool", "int", "real", "string", "name", "text" … */
	UFUNCTION(BlueprintPure, Category = "Blueprint Editor | Pin Types")
	static FEdGraphPinType GetBasicTypeByName(FName TypeName);

	UFUNCTION(BlueprintPure, Category = "Blueprint Editor | Pin Types")
	static FEdGraphPinType GetStructType(const UScriptStruct* StructType);

	UFUNCTION(BlueprintPure, Category = "Blueprint Editor | Pin Types")
	static FEdGraphPinType GetObjectReferenceType(const UClass* ObjectType);

	UFUNCTION(BlueprintPure, Category = "Blueprint Editor | Pin Types")
	static FEdGraphPinType GetClassReferenceType(const UClass* ClassType);

	UFUNCTION(BlueprintPure, Category = "Blueprint Editor | Pin Types")
	static FEdGraphPinType GetArrayType(const FEdGraphPinType& ContainedType);
};
