#include "Compiler/ClassBuilder.h"

#include "Compiler/NameRoom.h"
#include "Compiler/PropertyFromPinType.h"
#include "EdGraphSchema_K2.h"
#include "Engine/BlueprintGeneratedClass.h"
#include "Engine/SimpleConstructionScript.h"
#include "K2Node_CallFunction.h"
#include "K2Node_CustomEvent.h"
#include "K2Node_FunctionEntry.h"
#include "K2Node_FunctionResult.h"
#include "Kismet2/CompilerResultsLog.h"
#include "UObject/UnrealType.h"

namespace ClassBuilder
{
const FName CategoryKey(TEXT("Category"));
constexpr uint64 InputFlags = CPF_Parm | CPF_BlueprintVisible | CPF_BlueprintReadOnly;
constexpr uint64 OutputFlags = CPF_Parm | CPF_OutParm;
constexpr uint64 ComponentFlags = CPF_BlueprintVisible | CPF_InstancedReference | CPF_NonTransactional;
/** What a function has from the one that it overrides. */
constexpr uint32 InheritedFunctionFlags = FUNC_Exec | FUNC_Event | FUNC_BlueprintCallable | FUNC_BlueprintEvent |
										  FUNC_BlueprintAuthorityOnly | FUNC_BlueprintCosmetic | FUNC_BlueprintPure |
										  FUNC_Const | FUNC_AccessSpecifiers;

bool IsParameterPin(const UEdGraphPin& Pin)
{
	return !UEdGraphSchema_K2::IsExecPin(Pin) && !Pin.bOrphanedPin && Pin.PinName != UK2Node_Event::DelegateOutputName;
}

template <typename NodeType>
NodeType* FindFirst(const UEdGraph& Graph)
{
	TArray<NodeType*> Nodes;
	return Graph.GetNodesOfClass(Nodes) ? Nodes[0] : nullptr;
}
}

FBlueprintClassBuilder::FBlueprintClassBuilder(
	UBlueprint& InBlueprint, UBlueprintGeneratedClass& InClass, EBuiltClass InKind, FCompilerResultsLog& InLog)
	: Blueprint(InBlueprint)
	, Class(InClass)
	, Kind(InKind)
	, Log(InLog)
{
}

void FBlueprintClassBuilder::Build(UClass& Parent)
{
	Class.SetSuperStruct(&Parent);
	for (TFieldIterator<FProperty> It(&Parent); It; ++It)
	{
		Names.Add(It->GetFName());
	}
	Class.ClassFlags |= CLASS_CompiledFromBlueprint;
	Class.ClassGeneratedBy = &Blueprint;
	Class.Interfaces.Empty();
	for (const FBPInterfaceDescription& Interface : Blueprint.ImplementedInterfaces)
	{
		if (Interface.Interface)
		{
			Class.Interfaces.Add(FImplementedInterface(Interface.Interface, 0, true));
		}
	}
	AddUberGraphFrame();
	AddComponents();
	AddVariables();
	AddGraphFunctions();
	AddEventFunctions();
	AddUberGraphFunction();
	Class.StaticLink(true);
	for (UField* Child = Class.Children; Child; Child = Child->Next)
	{
		static_cast<UFunction*>(Child)->StaticLink(true);
	}
}

bool FBlueprintClassBuilder::IsMemberThere(FName Name) const
{
	return Class.FindPropertyByName(Name) || Class.FindFunctionByName(Name, EIncludeSuperFlag::ExcludeSuper);
}

bool FBlueprintClassBuilder::Extend(const FBPVariableDescription& Variable)
{
	if (Variable.VarName.IsNone() || IsMemberThere(Variable.VarName))
	{
		return false;
	}
	for (TFieldIterator<FProperty> It(&Class, EFieldIterationFlags::None); It; ++It)
	{
		LastProperty = *It;
	}
	AddVariable(Variable);
	Class.StaticLink(true);
	return true;
}

bool FBlueprintClassBuilder::Extend(const UEdGraph& FunctionGraph)
{
	if (IsMemberThere(FunctionGraph.GetFName()))
	{
		return false;
	}
	AddGraphFunction(FunctionGraph);
	UFunction* const Function = Class.FindFunctionByName(FunctionGraph.GetFName(), EIncludeSuperFlag::ExcludeSuper);
	if (Function)
	{
		Function->StaticLink(true);
	}
	return true;
}

bool FBlueprintClassBuilder::IsNameTaken(FName Name) const
{
	return Names.Contains(Name);
}

TArray<UK2Node_Event*> FBlueprintClassBuilder::GetLiveEvents() const
{
	TArray<UK2Node_Event*> Events;
	for (const UEdGraph* const Page : Blueprint.UbergraphPages)
	{
		if (Page)
		{
			Page->GetNodesOfClass(Events);
		}
	}
	Events.RemoveAll([](const UK2Node_Event* Event) { return !Event->IsNodeEnabled(); });
	return Events;
}

void FBlueprintClassBuilder::AddUberGraphFrame()
{
	if (Kind == EBuiltClass::Skeleton || GetLiveEvents().Num() == 0)
	{
		return;
	}
	FStructProperty* const Frame = new FStructProperty(&Class, TEXT("UberGraphFrame"), RF_Public);
	Frame->Struct = FPointerToUberGraphFrame::StaticStruct();
	Frame->SetPropertyFlags(CPF_Transient | CPF_DuplicateTransient);
	AddProperty(*Frame);
}

void FBlueprintClassBuilder::AddComponents()
{
	const USimpleConstructionScript* const Script = Blueprint.SimpleConstructionScript;
	if (!Script)
	{
		return;
	}
	TArray<USCS_Node*> Nodes = Script->GetAllNodes();
	USCS_Node* const DefaultRoot = Script->GetDefaultSceneRootNode();
	if (Nodes.Remove(DefaultRoot) > 0)
	{
		Nodes.Add(DefaultRoot);
	}
	for (const USCS_Node* const Node : Nodes)
	{
		if (!Node || !Node->ComponentClass)
		{
			Log.Error(TEXT("A component has no class"));
			continue;
		}
		if (IsNameTaken(Node->GetVariableName()))
		{
			Log.Error(FString::Printf(
				TEXT("The component %s has the name of another member"), *Node->GetVariableName().ToString()));
			continue;
		}
		FObjectProperty* const Property = new FObjectProperty(&Class, Node->GetVariableName(), RF_Public);
		Property->SetPropertyClass(Node->ComponentClass);
		Property->SetPropertyFlags(static_cast<EPropertyFlags>(ClassBuilder::ComponentFlags));
		Property->SetMetaData(ClassBuilder::CategoryKey, TEXT("Default"));
		AddProperty(*Property);
	}
}

void FBlueprintClassBuilder::AddVariables()
{
	for (const FBPVariableDescription& Variable : Blueprint.NewVariables)
	{
		AddVariable(Variable);
	}
}

void FBlueprintClassBuilder::AddVariable(const FBPVariableDescription& Variable)
{
	if (Variable.VarName.IsNone() || IsNameTaken(Variable.VarName))
	{
		Log.Error(
			FString::Printf(TEXT("The variable %s has the name of another member"), *Variable.VarName.ToString()));
		return;
	}
	FProperty* const Property = CreatePropertyFromPinType(Class, Variable.VarName, Variable.VarType);
	if (!Property)
	{
		Log.Error(FString::Printf(TEXT("The type of the variable %s is not valid"), *Variable.VarName.ToString()));
		return;
	}
	Property->SetPropertyFlags(static_cast<EPropertyFlags>(Variable.PropertyFlags));
	Property->SetMetaData(ClassBuilder::CategoryKey, Variable.Category.ToString());
	for (const FBPVariableMetaDataEntry& Entry : Variable.MetaDataArray)
	{
		Property->SetMetaData(Entry.DataKey, Entry.DataValue);
	}
	const bool bExpose =
		Property->HasMetaData(FBlueprintMetadata::MD_ExposeOnSpawn) || Property->HasAnyPropertyFlags(CPF_ExposeOnSpawn);
	if (bExpose && Property->HasAnyPropertyFlags(CPF_DisableEditOnInstance))
	{
		Log.Warning(FString::Printf(TEXT("Variable %s is marked as 'Expose on Spawn' but not marked as 'Instance "
										 "Editable'; please make it 'Instance Editable'"),
			*Variable.VarName.ToString()));
	}
	if (bExpose)
	{
		Property->SetPropertyFlags(CPF_ExposeOnSpawn);
	}
	AddProperty(*Property);
}

void FBlueprintClassBuilder::AddProperty(FProperty& Property)
{
	Names.Add(Property.GetFName());
	if (!LastProperty)
	{
		Class.AddCppProperty(&Property);
	}
	else
	{
		LastProperty->Next = &Property; // the class itself would walk along all that it has
	}
	LastProperty = &Property;
}

void FBlueprintClassBuilder::AddGraphFunctions()
{
	for (const UEdGraph* const Graph : Blueprint.FunctionGraphs)
	{
		if (Graph)
		{
			AddGraphFunction(*Graph);
		}
	}
	for (const FBPInterfaceDescription& Interface : Blueprint.ImplementedInterfaces)
	{
		for (const UEdGraph* const Graph : Interface.Graphs)
		{
			if (Graph)
			{
				AddGraphFunction(*Graph);
			}
		}
	}
}

void FBlueprintClassBuilder::AddGraphFunction(const UEdGraph& Graph)
{
	UK2Node_FunctionEntry* const Entry = ClassBuilder::FindFirst<UK2Node_FunctionEntry>(Graph);
	if (!Entry)
	{
		Log.Error(FString::Printf(TEXT("The function %s has no entry node"), *Graph.GetName()));
		return;
	}
	UFunction* const Function = AddFunction(Graph.GetFName(), Entry);
	if (!Function)
	{
		return;
	}
	for (const UEdGraphPin* const Pin : Entry->Pins)
	{
		if (ClassBuilder::IsParameterPin(*Pin))
		{
			const uint64 Reference = Pin->PinType.bIsReference ? CPF_OutParm | CPF_ReferenceParm : 0;
			AddParameter(*Function, *Pin, ClassBuilder::InputFlags | Reference);
		}
	}
	if (const UK2Node_FunctionResult* const Result = ClassBuilder::FindFirst<UK2Node_FunctionResult>(Graph))
	{
		for (const UEdGraphPin* const Pin : Result->Pins)
		{
			if (ClassBuilder::IsParameterPin(*Pin))
			{
				const bool bReturn = Pin->PinName == UEdGraphSchema_K2::PN_ReturnValue;
				AddParameter(*Function, *Pin, ClassBuilder::OutputFlags | (bReturn ? CPF_ReturnParm : 0));
			}
		}
	}
	if (Kind == EBuiltClass::Generated)
	{
		AddLocals(*Function, *Entry);
		AddTemporaries(*Function, Graph);
	}
	const UFunction* const Overridden = FindOverridden(Graph.GetFName());
	const uint32 Inherited = Overridden ? Overridden->FunctionFlags & ClassBuilder::InheritedFunctionFlags : 0;
	Finish(*Function,
		Inherited | FUNC_BlueprintCallable | FUNC_BlueprintEvent | static_cast<uint32>(Entry->GetExtraFlags()));
}

void FBlueprintClassBuilder::AddEventFunctions()
{
	for (const UK2Node_Event* const Event : GetLiveEvents())
	{
		AddEventFunction(*Event);
	}
}

void FBlueprintClassBuilder::AddEventFunction(const UK2Node_Event& Event)
{
	UFunction* const Function = AddFunction(Event.GetFunctionName(), const_cast<UK2Node_Event*>(&Event));
	if (!Function)
	{
		return;
	}
	for (const UEdGraphPin* const Pin : Event.Pins)
	{
		if (ClassBuilder::IsParameterPin(*Pin))
		{
			AddParameter(*Function, *Pin, ClassBuilder::InputFlags);
		}
	}
	const UFunction* const Overridden = Event.bOverrideFunction ? FindOverridden(Event.GetFunctionName()) : nullptr;
	const uint32 Inherited = Overridden ? Overridden->FunctionFlags & ClassBuilder::InheritedFunctionFlags : 0;
	Finish(
		*Function, Inherited | FUNC_BlueprintEvent | Event.FunctionFlags | (Event.bOverrideFunction ? FUNC_Event : 0));
}

void FBlueprintClassBuilder::AddUberGraphFunction()
{
	if (Kind == EBuiltClass::Skeleton || GetLiveEvents().Num() == 0)
	{
		return;
	}
	const FString Name = UEdGraphSchema_K2::FN_ExecuteUbergraphBase.ToString() + TEXT("_") + Blueprint.GetName();
	UFunction* const Function = AddFunction(FName(*Name), nullptr);
	if (!Function)
	{
		return;
	}
	FIntProperty* const EntryPoint = new FIntProperty(Function, UEdGraphSchema_K2::PN_EntryPoint, RF_Public);
	EntryPoint->SetPropertyFlags(static_cast<EPropertyFlags>(ClassBuilder::InputFlags));
	Function->AddCppProperty(EntryPoint);
	for (const UEdGraph* const Page : Blueprint.UbergraphPages)
	{
		AddTemporaries(*Function, *Page);
	}
	Finish(*Function, FUNC_Final);
	Class.UberGraphFunction = Function;
}

UFunction* FBlueprintClassBuilder::AddFunction(FName Name, UEdGraphNode* Node)
{
	if (Name.IsNone() || IsNameTaken(Name))
	{
		Log.Error(FString::Printf(TEXT("@@ has the name of another member: %s"), *Name.ToString()), Node);
		return nullptr;
	}
	Names.Add(Name);
	MakeRoomForName(Class, Name, *UFunction::StaticClass());
	UFunction* const Function = NewObject<UFunction>(&Class, Name, RF_Public);
	const UFunction* const Overridden = FindOverridden(Name);
	Function->SetSuperStruct(const_cast<UFunction*>(Overridden));
	// What overrides "Construction Script" is called so as well.
	const FString* const DisplayName =
		Overridden ? Overridden->FindMetaData(FBlueprintMetadata::MD_DisplayName) : nullptr;
	if (DisplayName)
	{
		Function->SetMetaData(FBlueprintMetadata::MD_DisplayName, **DisplayName);
	}
	return Function;
}

void FBlueprintClassBuilder::AddParameter(UFunction& Function, const UEdGraphPin& Pin, uint64 Flags)
{
	FProperty* const Property = CreatePropertyFromPinType(Function, Pin.PinName, Pin.PinType);
	if (!Property)
	{
		Log.Error(FString::Printf(TEXT("The type of the parameter %s of @@ is not valid"), *Pin.PinName.ToString()),
			Pin.GetOwningNode());
		return;
	}
	Property->SetPropertyFlags(static_cast<EPropertyFlags>(Flags | (Pin.PinType.bIsConst ? CPF_ConstParm : 0)));
	Function.AddCppProperty(Property);
}

void FBlueprintClassBuilder::AddLocals(UFunction& Function, const UK2Node_FunctionEntry& Entry)
{
	for (const FBPVariableDescription& Local : Entry.LocalVariables)
	{
		FProperty* const Property = CreatePropertyFromPinType(Function, Local.VarName, Local.VarType);
		if (!Property)
		{
			Log.Error(
				FString::Printf(TEXT("The type of the local variable %s is not valid"), *Local.VarName.ToString()));
			continue;
		}
		Property->SetPropertyFlags(CPF_Edit | CPF_BlueprintVisible);
		Function.AddCppProperty(Property);
	}
}

void FBlueprintClassBuilder::AddTemporaries(UFunction& Function, const UEdGraph& Graph)
{
	TArray<UK2Node_CallFunction*> Calls;
	Graph.GetNodesOfClass(Calls);
	TSet<FName> Taken;
	for (const UK2Node_CallFunction* const Call : Calls)
	{
		for (const UEdGraphPin* const Pin : Call->Pins)
		{
			if (Pin->Direction != EGPD_Output || UEdGraphSchema_K2::IsExecPin(*Pin))
			{
				continue;
			}
			const FString Base =
				FString::Printf(TEXT("CallFunc_%s_%s"), *Call->GetFunctionName().ToString(), *Pin->PinName.ToString());
			FName Name(*Base);
			for (int32 Number = 1; Taken.Contains(Name); ++Number)
			{
				Name = FName(*FString::Printf(TEXT("%s_%d"), *Base, Number));
			}
			if (FProperty* const Property = CreatePropertyFromPinType(Function, Name, Pin->PinType))
			{
				Taken.Add(Name);
				Function.AddCppProperty(Property);
			}
		}
	}
}

void FBlueprintClassBuilder::Finish(UFunction& Function, uint32 Flags)
{
	for (TFieldIterator<FProperty> It(&Function, EFieldIterationFlags::None); It; ++It)
	{
		Flags |= It->HasAnyPropertyFlags(CPF_OutParm) ? FUNC_HasOutParms : 0;
	}
	Function.FunctionFlags = static_cast<EFunctionFlags>(Flags & ~static_cast<uint32>(FUNC_Native));
	Class.AddFunction(&Function);
}

const UFunction* FBlueprintClassBuilder::FindOverridden(FName Name) const
{
	if (const UFunction* const Function = Class.GetSuperClass()->FindFunctionByName(Name))
	{
		return Function;
	}
	for (const FImplementedInterface& Interface : Class.Interfaces)
	{
		if (const UFunction* const Function = Interface.Class->FindFunctionByName(Name))
		{
			return Function;
		}
	}
	return nullptr;
}
