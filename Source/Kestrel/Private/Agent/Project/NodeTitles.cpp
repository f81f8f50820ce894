#include "Agent/Project/NodeTitles.h"

namespace NodeTitles
{
struct FKnownClass
{
	const TCHAR* Name;
	const TCHAR* AddedWords = TEXT("");
};

const FKnownClass Classes[] = {
	{ TEXT("EdGraphNode") },
	{ TEXT("EdGraphNode_Comment"), TEXT("comment") },
	{ TEXT("K2Node_AddDelegate"), TEXT("bind event to") },
	{ TEXT("K2Node_BreakStruct"), TEXT("break") },
	{ TEXT("K2Node_CallArrayFunction"), TEXT("target is") },
	{ TEXT("K2Node_CallDelegate"), TEXT("call") },
	{ TEXT("K2Node_CallFunction"), TEXT("target is none parent class replicated to all server owning client if") },
	{ TEXT("K2Node_CallParentFunction"), TEXT("parent") },
	{ TEXT("K2Node_ClassDynamicCast"), TEXT("cast to class bad node") },
	{ TEXT("K2Node_ClearDelegate"), TEXT("unbind all events from") },
	{ TEXT("K2Node_CommutativeAssociativeBinaryOperator"), TEXT("target is") },
	{ TEXT("K2Node_ComponentBoundEvent"), TEXT("event none") },
	{ TEXT("K2Node_CreateDelegate"), TEXT("create event") },
	{ TEXT("K2Node_CustomEvent"),
		TEXT("custom event executes run on replicated to all server multicast owning client if reliable") },
	{ TEXT("K2Node_DynamicCast"), TEXT("cast to bad node as success") },
	{ TEXT("K2Node_Event"), TEXT("event from interface executes run on replicated to all server owning client if") },
	{ TEXT("K2Node_ExecutionSequence"), TEXT("sequence then") },
	{ TEXT("K2Node_FunctionEntry"), TEXT("construction script userconstructionscript") },
	{ TEXT("K2Node_FunctionResult"), TEXT("return node") },
	{ TEXT("K2Node_IfThenElse"), TEXT("branch condition true false else") },
	{ TEXT("K2Node_Knot"), TEXT("reroute node") },
	{ TEXT("K2Node_MakeStruct"), TEXT("make") },
	{ TEXT("K2Node_RemoveDelegate"), TEXT("unbind event from") },
	{ TEXT("K2Node_Self"), TEXT("self reference get a to") },
	{ TEXT("K2Node_VariableGet"), TEXT("get") },
	{ TEXT("K2Node_VariableSet"), TEXT("set with notify output") },
};

/** Of pins that many classes have. They are in a package as well, unless it is older than the pin. */
const TCHAR* const PinWords =
	TEXT("execute exec then self target returnvalue return value outputdelegate output get delegate inputpin outputpin "
		 "object worldcontextobject");
}

bool KestrelNodeTitles::IsKnownClass(FName Class)
{
	static const TSet<FName> Names = []() {
		TSet<FName> All;
		for (const NodeTitles::FKnownClass& Known : NodeTitles::Classes)
		{
			All.Add(FName(Known.Name));
		}
		return All;
	}();
	return Names.Contains(Class);
}

const TArray<FString>& KestrelNodeTitles::GetAddedWords()
{
	static const TArray<FString> Words = []() {
		TArray<FString> All;
		FString(NodeTitles::PinWords).ParseIntoArrayWS(All);
		for (const NodeTitles::FKnownClass& Known : NodeTitles::Classes)
		{
			TArray<FString> Added;
			FString(Known.AddedWords).ParseIntoArrayWS(Added);
			All.Append(Added);
		}
		return All;
	}();
	return Words;
}
