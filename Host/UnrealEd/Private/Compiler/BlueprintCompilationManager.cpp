#include "Compiler/BlueprintCompilationManager.h"

#include "Compiler/ClassBuilder.h"
#include "Compiler/NameRoom.h"
#include "Compiler/NodeValidation.h"
#include "Engine/BlueprintGeneratedClass.h"
#include "Engine/MemberReference.h"
#include "Engine/SimpleConstructionScript.h"
#include "K2Node_CallFunction.h"
#include "K2Node_EditablePinBase.h"
#include "K2Node_Event.h"
#include "K2Node_FunctionEntry.h"
#include "K2Node_Variable.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Kismet2/CompilerResultsLog.h"
#include "UObject/Package.h"
#include "UObject/ReflectedTypeReload.h"
#include "UObject/ReplacedClass.h"
#include "UObject/UObjectIterator.h"
#include "UObject/UnrealType.h"

namespace BlueprintCompilation
{
FDelegateHandle ReloadHandle;

/** One Blueprint of a compile, with what its class was before. */
struct FJob
{
	UBlueprint* Blueprint = nullptr;
	UClass* Replaced = nullptr; // null for the first compile
	FCompilerResultsLog Log;
};

UClass* FindParent(const UBlueprint& Blueprint, EBuiltClass Kind)
{
	UClass* const Parent = Blueprint.ParentClass;
	const UBlueprint* const ParentBlueprint = UBlueprint::GetBlueprintFromClass(Parent);
	const bool bSkeleton = Kind == EBuiltClass::Skeleton && ParentBlueprint && ParentBlueprint->SkeletonGeneratedClass;
	return bSkeleton ? ParentBlueprint->SkeletonGeneratedClass.Get() : Parent;
}

/** Without a parent the class hangs on plain objects, so that it stays usable. */
UClass& GetParentOrObject(const UBlueprint& Blueprint, EBuiltClass Kind)
{
	UClass* const Parent = FindParent(Blueprint, Kind);
	return Parent ? *Parent : *UObject::StaticClass();
}

UBlueprintGeneratedClass& FindOrMakeClass(UBlueprint& Blueprint, EBuiltClass Kind)
{
	const bool bSkeleton = Kind == EBuiltClass::Skeleton;
	FName GeneratedName;
	FName SkeletonName;
	Blueprint.GetBlueprintClassNames(GeneratedName, SkeletonName);
	const FName Name = bSkeleton ? SkeletonName : GeneratedName;
	const EObjectFlags Flags = RF_Public | RF_Transactional | (bSkeleton ? RF_Transient : RF_NoFlags);
	// By name: a reference to a class reads as null while the class has no parent.
	UBlueprintGeneratedClass* Class = FindObjectFast<UBlueprintGeneratedClass>(Blueprint.GetOuter(), Name);
	if (!Class)
	{
		MakeRoomForName(*Blueprint.GetOuter(), Name, *UBlueprintGeneratedClass::StaticClass());
		Class = NewObject<UBlueprintGeneratedClass>(Blueprint.GetOuter(), Name, Flags);
	}
	(bSkeleton ? Blueprint.SkeletonGeneratedClass : Blueprint.GeneratedClass) = Class;
	return *Class;
}

/** A class that was built already lets go of all that it has; null when it was not. */
UClass* Empty(UBlueprintGeneratedClass& Class)
{
	if (!Class.HasAnyClassFlags(CLASS_CompiledFromBlueprint))
	{
		return nullptr;
	}
	Class.UberGraphFunction = nullptr;
	return MoveToReplacedClass(Class);
}

/** There are no objects of a skeleton, so that its members can go at once. */
void EmptySkeleton(UBlueprintGeneratedClass& Class)
{
	if (Class.GetDefaultObject(false))
	{
		Empty(Class);
		return;
	}
	TArray<UFunction*> Functions;
	for (TFieldIterator<UFunction> It(&Class, EFieldIterationFlags::None); It; ++It)
	{
		Functions.Add(*It);
	}
	Class.ClearFunctions();
	for (UFunction* const Function : Functions)
	{
		Function->Rename(nullptr, GetTransientPackage());
		Function->MarkAsGarbage();
	}
	Class.DestroyChildProperties();
}

void BuildSkeleton(UBlueprint& Blueprint)
{
	FCompilerResultsLog Log;
	Log.bSilentMode = true; // the compile of the class itself says it
	UBlueprintGeneratedClass& Class = FindOrMakeClass(Blueprint, EBuiltClass::Skeleton);
	EmptySkeleton(Class);
	FBlueprintClassBuilder(Blueprint, Class, EBuiltClass::Skeleton, Log)
		.Build(GetParentOrObject(Blueprint, EBuiltClass::Skeleton));
}

/** Whether the skeleton is there and lacks nothing but what is to be added. */
bool CanBeExtended(const UBlueprint& Blueprint)
{
	const UClass* const Class = Blueprint.SkeletonGeneratedClass;
	return Class && Class->HasAnyClassFlags(CLASS_CompiledFromBlueprint) && !Class->GetDefaultObject(false) &&
		   Class->GetSuperClass() == &GetParentOrObject(Blueprint, EBuiltClass::Skeleton) &&
		   FBlueprintCompilationManager::GetChildren(Blueprint).IsEmpty();
}

template <typename MemberType>
void ExtendSkeleton(UBlueprint& Blueprint, const MemberType& Member)
{
	FCompilerResultsLog Log;
	Log.bSilentMode = true;
	const bool bExtended =
		CanBeExtended(Blueprint) &&
		FBlueprintClassBuilder(Blueprint, FindOrMakeClass(Blueprint, EBuiltClass::Skeleton), EBuiltClass::Skeleton, Log)
			.Extend(Member);
	if (!bExtended)
	{
		FBlueprintCompilationManager::RegenerateSkeleton(Blueprint);
	}
}

void ApplyDefault(const FBPVariableDescription& Variable, UObject& Defaults, FCompilerResultsLog& Log)
{
	const FProperty* const Property = Defaults.GetClass()->FindPropertyByName(Variable.VarName);
	if (!Property || Variable.DefaultValue.IsEmpty())
	{
		return;
	}
	if (!FBlueprintEditorUtils::PropertyValueFromString(
			Property, Variable.DefaultValue, reinterpret_cast<uint8*>(&Defaults), &Defaults))
	{
		Log.Warning(FString::Printf(TEXT("The default value '%s' of the variable %s is not valid"),
			*Variable.DefaultValue, *Variable.VarName.ToString()));
	}
}

bool HadVariable(const UClass& Replaced, const UObject& Defaults, FName Name)
{
	const FProperty* const Old = Replaced.FindPropertyByName(Name);
	const FProperty* const New = Defaults.GetClass()->FindPropertyByName(Name);
	return Old && New && New->SameType(Old);
}

/**
 * The default object: the parent's values, then those of variables that are new or have another type, then what was
 * changed before, as far as it can be read as the type.
 */
void MakeDefaults(FJob& Job)
{
	UClass* const Class = Job.Blueprint->GeneratedClass;
	MakeRoomForName(*Class->GetOuter(), Class->GetDefaultObjectName(), *Class);
	UObject* const Defaults = Class->GetDefaultObject();
	const UObject* const Old = Job.Replaced ? Job.Replaced->GetDefaultObject(false) : nullptr;
	for (const FBPVariableDescription& Variable : Job.Blueprint->NewVariables)
	{
		if (!Old || !HadVariable(*Job.Replaced, *Defaults, Variable.VarName))
		{
			ApplyDefault(Variable, *Defaults, Job.Log);
		}
	}
	if (Old)
	{
		CopyChangedValues(*Old, *Job.Replaced->GetSuperClass()->GetDefaultObject(), *Defaults);
	}
}

void BuildClass(FJob& Job)
{
	UBlueprint& Blueprint = *Job.Blueprint;
	UBlueprintGeneratedClass& Class = FindOrMakeClass(Blueprint, EBuiltClass::Generated);
	if (!Blueprint.ParentClass)
	{
		Job.Log.Error(FString::Printf(TEXT("The parent class of %s is missing"), *Blueprint.GetName()));
	}
	FBlueprintClassBuilder(Blueprint, Class, EBuiltClass::Generated, Job.Log)
		.Build(GetParentOrObject(Blueprint, EBuiltClass::Generated));
	Class.SimpleConstructionScript = Blueprint.SimpleConstructionScript;
	MakeDefaults(Job);
}

void CheckGraphs(FJob& Job)
{
	TArray<UEdGraph*> Graphs;
	Job.Blueprint->GetAllGraphs(Graphs);
	for (const UEdGraph* const Graph : Graphs)
	{
		ValidateGraph(*Graph, Job.Log);
	}
}

EBlueprintStatus GetStatus(const FCompilerResultsLog& Log)
{
	return Log.NumErrors > 0 ? BS_Error : Log.NumWarnings > 0 ? BS_UpToDateWithWarnings : BS_UpToDate;
}

/** Objects of the class get the new layout. What was changed on them goes over. */
void Reinstance(const FJob& Job)
{
	if (!Job.Replaced || GetInstancesOfClass(*Job.Replaced).Num() == 0)
	{
		return;
	}
	FReflectedTypeReload Reload(NAME_None);
	Reload.Replace(*Job.Replaced, *Job.Blueprint->GeneratedClass.Get());
	Reload.Reinstance();
}

void AddMessages(const FCompilerResultsLog& From, FCompilerResultsLog& To)
{
	To.NumErrors += From.NumErrors;
	To.NumWarnings += From.NumWarnings;
	To.Messages.Append(From.Messages);
}

/** The Blueprint that lies beside the class in its package, for a class that is not compiled yet. */
UBlueprint* FindBlueprintOf(UClass& Class)
{
	if (UBlueprint* const Known = UBlueprint::GetBlueprintFromClass(&Class))
	{
		return Known;
	}
	FString Name = Class.GetName();
	const bool bGenerated = Class.IsA<UBlueprintGeneratedClass>() && Name.RemoveFromEnd(TEXT("_C"));
	UBlueprint* const Blueprint = bGenerated ? FindObjectFast<UBlueprint>(Class.GetOuter(), FName(*Name)) : nullptr;
	if (Blueprint)
	{
		Class.ClassGeneratedBy = Blueprint;
	}
	return Blueprint;
}

/** A skeleton for the class's Blueprint and, first, for its parents'. */
void EnsureSkeleton(UClass* Class)
{
	TArray<UBlueprint*> Blueprints;
	TSet<UClass*> Seen; // a parent could be its own in a broken file
	while (Class && !Class->IsNative())
	{
		bool bSeen = false;
		Seen.Add(Class, &bSeen);
		UBlueprint* const Blueprint = bSeen ? nullptr : FindBlueprintOf(*Class);
		if (!Blueprint || Blueprint->SkeletonGeneratedClass)
		{
			break;
		}
		Blueprints.Add(Blueprint);
		Class = Blueprint->ParentClass;
	}
	for (int32 Index = Blueprints.Num() - 1; Index >= 0; --Index)
	{
		BuildSkeleton(*Blueprints[Index]);
	}
}

void FollowReplacedTypes(FEdGraphPinType& Type)
{
	Type.PinSubCategoryObject = FReflectedTypeReload::FindNewest(Type.PinSubCategoryObject.Get());
	Type.PinValueType.TerminalSubCategoryObject =
		FReflectedTypeReload::FindNewest(Type.PinValueType.TerminalSubCategoryObject.Get());
}

void FollowReplacedTypes(TArray<FBPVariableDescription>& Variables)
{
	for (FBPVariableDescription& Variable : Variables)
	{
		FollowReplacedTypes(Variable.VarType);
	}
}

/** Pins and variables name their types weakly, so that the reload itself does not see them. */
void FollowReplacedTypes()
{
	for (TObjectIterator<UBlueprint> It; It; ++It)
	{
		FollowReplacedTypes(It->NewVariables);
	}
	for (TObjectIterator<UEdGraphNode> It; It; ++It)
	{
		for (UEdGraphPin* const Pin : It->Pins)
		{
			FollowReplacedTypes(Pin->PinType);
		}
		if (UK2Node_EditablePinBase* const Node = Cast<UK2Node_EditablePinBase>(*It))
		{
			for (const TSharedPtr<FUserPinInfo>& Pin : Node->UserDefinedPins)
			{
				FollowReplacedTypes(Pin->PinType);
			}
		}
		if (UK2Node_FunctionEntry* const Entry = Cast<UK2Node_FunctionEntry>(*It))
		{
			FollowReplacedTypes(Entry->LocalVariables);
		}
	}
}

/** After a hot reload, which leads ParentClass to the new class and leaves compiled classes below the old one. */
void FollowReplacedParents(EReloadCompleteReason)
{
	FollowReplacedTypes();
	TArray<UBlueprint*> Affected;
	for (TObjectIterator<UBlueprint> It; It; ++It)
	{
		const UClass* const OldParent = It->GeneratedClass ? It->GeneratedClass->GetSuperClass() : nullptr;
		if (OldParent && OldParent->IsNative() && OldParent->HasAnyClassFlags(CLASS_NewerVersionExists))
		{
			Affected.Add(*It);
		}
	}
	for (UBlueprint* const Blueprint : Affected)
	{
		FKismetEditorUtilities::CompileBlueprint(Blueprint, EBlueprintCompileOptions::SkipGarbageCollection);
	}
}
}

void FBlueprintCompilationManager::Initialize()
{
	UBlueprint::CompileOnLoad = &FBlueprintCompilationManager::CompileLoaded;
	BlueprintCompilation::ReloadHandle =
		FCoreUObjectDelegates::ReloadCompleteDelegate.AddStatic(&BlueprintCompilation::FollowReplacedParents);
}

void FBlueprintCompilationManager::Shutdown()
{
	UBlueprint::CompileOnLoad = nullptr;
	FCoreUObjectDelegates::ReloadCompleteDelegate.Remove(BlueprintCompilation::ReloadHandle);
}

TArray<UBlueprint*> FBlueprintCompilationManager::GetChildren(const UBlueprint& Blueprint)
{
	TArray<UBlueprint*> Children;
	TArray<UBlueprint*> Derived;
	bool bHasChildren = false;
	for (TObjectIterator<UBlueprint> It; It; ++It)
	{
		const UClass* const Parent = It->ParentClass;
		if (Parent && !Parent->IsNative() && It->GeneratedClass && It->GeneratedClass->GetSuperClass())
		{
			Derived.Add(*It);
			bHasChildren |= Parent == Blueprint.GeneratedClass;
		}
	}
	if (!bHasChildren)
	{
		return Children; // as most are: each change of a Blueprint asks
	}
	TMap<const UClass*, TArray<UBlueprint*>> ByParent;
	for (UBlueprint* const Each : Derived)
	{
		ByParent.FindOrAdd(Each->ParentClass.Get()).Add(Each);
	}
	TArray<const UClass*> Parents = { Blueprint.GeneratedClass.Get() };
	for (int32 Index = 0; Index < Parents.Num(); ++Index)
	{
		TArray<UBlueprint*> Found;
		if (Parents[Index] && ByParent.RemoveAndCopyValue(Parents[Index], Found)) // each once, whatever the files say
		{
			for (UBlueprint* const Child : Found)
			{
				Children.Add(Child);
				Parents.Add(Child->GeneratedClass.Get());
			}
		}
	}
	Children.Remove(const_cast<UBlueprint*>(&Blueprint));
	return Children;
}

void FBlueprintCompilationManager::RegenerateSkeleton(UBlueprint& Blueprint)
{
	BlueprintCompilation::BuildSkeleton(Blueprint);
	for (UBlueprint* const Child : GetChildren(Blueprint))
	{
		BlueprintCompilation::BuildSkeleton(*Child);
	}
}

void FBlueprintCompilationManager::ExtendSkeleton(UBlueprint& Blueprint, const FBPVariableDescription& Variable)
{
	BlueprintCompilation::ExtendSkeleton(Blueprint, Variable);
}

void FBlueprintCompilationManager::ExtendSkeleton(UBlueprint& Blueprint, const UEdGraph& FunctionGraph)
{
	BlueprintCompilation::ExtendSkeleton(Blueprint, FunctionGraph);
}

void FBlueprintCompilationManager::PrepareReferences(UBlueprint& Blueprint)
{
	TArray<UEdGraph*> Graphs;
	Blueprint.GetAllGraphs(Graphs);
	for (const UEdGraph* const Graph : Graphs)
	{
		for (UEdGraphNode* const Node : Graph->Nodes)
		{
			if (const UK2Node_CallFunction* const Call = Cast<UK2Node_CallFunction>(Node))
			{
				BlueprintCompilation::EnsureSkeleton(Call->FunctionReference.GetMemberParentClass());
			}
			else if (const UK2Node_Variable* const Variable = Cast<UK2Node_Variable>(Node))
			{
				BlueprintCompilation::EnsureSkeleton(Variable->VariableReference.GetMemberParentClass());
			}
		}
	}
}

void FBlueprintCompilationManager::Compile(
	UBlueprint& Blueprint, EBlueprintCompileOptions Options, FCompilerResultsLog& Log)
{
	PrepareReferences(Blueprint);
	if (!EnumHasAnyFlags(Options, EBlueprintCompileOptions::SkeletonUpToDate))
	{
		RegenerateSkeleton(Blueprint);
	}
	if (EnumHasAnyFlags(Options, EBlueprintCompileOptions::RegenerateSkeletonOnly))
	{
		return;
	}
	TArray<BlueprintCompilation::FJob> Jobs;
	Jobs.AddDefaulted_GetRef().Blueprint = &Blueprint;
	for (UBlueprint* const Child : GetChildren(Blueprint))
	{
		Jobs.AddDefaulted_GetRef().Blueprint = Child;
	}
	// Parents come first: a class that takes over from a child has the one that took over from its parent as parent.
	TMap<UClass*, UClass*> ReplacedClasses;
	for (BlueprintCompilation::FJob& Job : Jobs)
	{
		Job.Log.bSilentMode = Log.bSilentMode;
		UBlueprintGeneratedClass* const Class = Cast<UBlueprintGeneratedClass>(Job.Blueprint->GeneratedClass.Get());
		UClass* const OldParent = Class ? Class->GetSuperClass() : nullptr;
		Job.Replaced = Class ? BlueprintCompilation::Empty(*Class) : nullptr;
		if (UClass* const* const ReplacedParent = Job.Replaced ? ReplacedClasses.Find(OldParent) : nullptr)
		{
			Job.Replaced->SetSuperStruct(*ReplacedParent);
		}
		if (Job.Replaced)
		{
			ReplacedClasses.Add(Class, Job.Replaced);
		}
	}
	for (BlueprintCompilation::FJob& Job : Jobs)
	{
		BlueprintCompilation::BuildClass(Job);
	}
	for (BlueprintCompilation::FJob& Job : Jobs)
	{
		BlueprintCompilation::CheckGraphs(Job);
		Job.Blueprint->Status = BlueprintCompilation::GetStatus(Job.Log);
		BlueprintCompilation::Reinstance(Job);
		Job.Blueprint->BroadcastCompiled();
	}
	BlueprintCompilation::AddMessages(Jobs[0].Log, Log);
}

void FBlueprintCompilationManager::CompileLoaded(UBlueprint& Blueprint)
{
	if (UClass* const Parent = Blueprint.ParentClass)
	{
		Parent->ConditionalPostLoad();
	}
	FCompilerResultsLog Log;
	Compile(Blueprint, EBlueprintCompileOptions::IsRegeneratingOnLoad | EBlueprintCompileOptions::SkipGarbageCollection,
		Log);
}
