#pragma once

#include "Engine/Blueprint.h"
#include "Kismet2/KismetEditorUtilities.h"

/**
 * Turns Blueprints into classes.
 *
 * A compile rebuilds the skeleton, then moves the old content of the class, and of the classes of all children in
 * memory, to classes of their own (see MoveToReplacedClass), rebuilds the classes, parents first, carries the
 * changed defaults over, checks the graphs, and recreates the objects of the classes.
 */
class FBlueprintCompilationManager
{
public:
	/** Lets Blueprints compile themselves when they are loaded. */
	static void Initialize();
	static void Shutdown();

	static void Compile(UBlueprint& Blueprint, EBlueprintCompileOptions Options, FCompilerResultsLog& Log);
	/** Also those of the children. */
	static void RegenerateSkeleton(UBlueprint& Blueprint);
	/**
	 * The same for a variable or a function that has just been added to the Blueprint. What else has changed meanwhile
	 * is in the skeleton when it is next regenerated as a whole.
	 */
	static void ExtendSkeleton(UBlueprint& Blueprint, const FBPVariableDescription& Variable);
	static void ExtendSkeleton(UBlueprint& Blueprint, const UEdGraph& FunctionGraph);
	/** Blueprints in memory that derive from this one, nearer ones first. */
	static TArray<UBlueprint*> GetChildren(const UBlueprint& Blueprint);

private:
	static void CompileLoaded(UBlueprint& Blueprint);
	/** The skeleton of each Blueprint that the graphs refer to, so that Blueprints may use each other. */
	static void PrepareReferences(UBlueprint& Blueprint);
};
