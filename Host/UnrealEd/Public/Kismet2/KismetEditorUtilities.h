#pragma once

#include "Engine/Blueprint.h"
#include "Misc/EnumClassFlags.h"

class FCompilerResultsLog;
class UBlueprintGeneratedClass;

enum class EBlueprintCompileOptions
{
	None = 0x0,
	IsRegeneratingOnLoad = 0x1,
	SkipGarbageCollection = 0x2,
	SaveIntermediateProducts = 0x4,
	SkeletonUpToDate = 0x8,
	BatchCompile = 0x10,
	SkipSave = 0x20,
	RegenerateSkeletonOnly = 0x80,
};
ENUM_CLASS_FLAGS(EBlueprintCompileOptions)

/** Makes Blueprints and compiles them. */
class UNREALED_API FKismetEditorUtilities
{
public:
	/**
	 * Makes a Blueprint and compiles it. Asserts that the class can have one, see CanCreateBlueprintOfClass, and that
	 * there is none of the name.
	 */
	static UBlueprint* CreateBlueprint(UClass* ParentClass, UObject* Outer, const FName NewBPName,
		enum EBlueprintType BlueprintType, FName CallingContext = NAME_None);
	static UBlueprint* CreateBlueprint(UClass* ParentClass, UObject* Outer, const FName NewBPName,
		enum EBlueprintType BlueprintType, TSubclassOf<UBlueprint> BlueprintClassType,
		TSubclassOf<UBlueprintGeneratedClass> BlueprintGeneratedClassType, FName CallingContext = NAME_None);
	/** False for what is not Blueprintable, for interfaces and for classes that are deprecated or replaced. */
	static bool CanCreateBlueprintOfClass(const UClass* Class);

	/**
	 * Compiles the Blueprint and its children; Status tells the outcome. Properties, functions and default objects from
	 * before are gone afterwards, objects are recreated. Without SkipGarbageCollection garbage is collected.
	 */
	static void CompileBlueprint(UBlueprint* BlueprintObj,
		EBlueprintCompileOptions CompileFlags = EBlueprintCompileOptions::None,
		class FCompilerResultsLog* pResults = nullptr);

	/** A disabled event node, as a hint for the user. Null when the class has no such event. */
	static class UK2Node_Event* AddDefaultEventNode(
		UBlueprint* InBlueprint, UEdGraph* InGraph, FName InEventName, UClass* InEventClass, int32& InOutNodePosY);
};
