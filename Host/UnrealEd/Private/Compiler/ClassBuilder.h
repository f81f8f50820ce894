#pragma once

#include "Engine/Blueprint.h"

class FCompilerResultsLog;
class FProperty;
class UBlueprintGeneratedClass;
class UK2Node_Event;
class UK2Node_FunctionEntry;

/** What a class is built for. */
enum class EBuiltClass : uint8
{
	Skeleton,  // signatures alone, for nodes to find their members in
	Generated, // with what the code of the graphs needs
};

/** Gives an empty class the properties and functions that its Blueprint describes. */
class FBlueprintClassBuilder
{
public:
	FBlueprintClassBuilder(
		UBlueprint& InBlueprint, UBlueprintGeneratedClass& InClass, EBuiltClass InKind, FCompilerResultsLog& InLog);

	/** Under the parent, which is complete. The class is linked afterwards. */
	void Build(UClass& Parent);
	/**
	 * Adds a member to a class that was built before the Blueprint had it: to build all of them again for each of many
	 * would take the square of their number.
	 *
	 * @return false, with nothing changed, when the name is taken
	 */
	bool Extend(const FBPVariableDescription& Variable);
	bool Extend(const UEdGraph& FunctionGraph);

private:
	bool IsMemberThere(FName Name) const;
	void AddUberGraphFrame();
	void AddComponents();
	void AddVariables();
	void AddVariable(const FBPVariableDescription& Variable);
	/** Appends a property to the class, which owns it from now on. */
	void AddProperty(FProperty& Property);
	void AddGraphFunctions();
	void AddGraphFunction(const UEdGraph& Graph);
	void AddEventFunctions();
	void AddEventFunction(const UK2Node_Event& Event);
	void AddUberGraphFunction();

	/** Null, with an error, when the class has a member of the name. */
	UFunction* AddFunction(FName Name, UEdGraphNode* Node);
	void AddParameter(UFunction& Function, const UEdGraphPin& Pin, uint64 Flags);
	void AddLocals(UFunction& Function, const UK2Node_FunctionEntry& Entry);
	/** Where the calls within the graph leave their results. */
	void AddTemporaries(UFunction& Function, const UEdGraph& Graph);
	/** Enters the function into the class, with the flags that come from its parameters. */
	void Finish(UFunction& Function, uint32 Flags);
	/** The function of a parent or an interface that one of this name overrides. */
	const UFunction* FindOverridden(FName Name) const;
	bool IsNameTaken(FName Name) const;
	TArray<UK2Node_Event*> GetLiveEvents() const;

	UBlueprint& Blueprint;
	UBlueprintGeneratedClass& Class;
	const EBuiltClass Kind;
	FCompilerResultsLog& Log;
	TSet<FName> Names; // of the class's own members, and of its parents' properties
	FProperty* LastProperty = nullptr;
};
