#pragma once

#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "Engine/BlueprintCore.h"
#include "Engine/EngineTypes.h"
#include "UObject/Interface.h"
#include "Blueprint.generated.h"

class UBlueprintGeneratedClass;
class USimpleConstructionScript;

UENUM()
enum EBlueprintStatus : int
{
	BS_Unknown,
	BS_Dirty, // changed since the last compile
	BS_Error,
	BS_UpToDate,
	BS_BeingCreated,
	BS_UpToDateWithWarnings,
	BS_MAX,
};

UENUM()
enum EBlueprintType : int
{
	BPTYPE_Normal,
	BPTYPE_Const,
	BPTYPE_MacroLibrary,
	BPTYPE_Interface,
	BPTYPE_LevelScript,
	BPTYPE_FunctionLibrary,
	BPTYPE_MAX,
};

/** Names of the tags that a Blueprint has in the asset registry. */
struct ENGINE_API FBlueprintTags
{
	static const FName GeneratedClassPath;
	static const FName ParentClassPath;
	static const FName NativeParentClassPath;
	static const FName BlueprintType;
	static const FName ImplementedInterfaces;
};

USTRUCT()
struct ENGINE_API FBPVariableMetaDataEntry
{
	GENERATED_BODY()

	UPROPERTY()
	FName DataKey;

	UPROPERTY()
	FString DataValue;

	FBPVariableMetaDataEntry() = default;
	FBPVariableMetaDataEntry(const FName InKey, FString InValue)
		: DataKey(InKey)
		, DataValue(MoveTemp(InValue))
	{
	}
};

/** A variable that a Blueprint declares, or a local one of a function. */
USTRUCT()
struct ENGINE_API FBPVariableDescription
{
	GENERATED_BODY()

	UPROPERTY()
	FName VarName;

	UPROPERTY()
	FGuid VarGuid;

	UPROPERTY()
	FEdGraphPinType VarType;

	UPROPERTY()
	FString FriendlyName;

	UPROPERTY()
	FText Category;

	/** CPF_ flags. */
	UPROPERTY()
	uint64 PropertyFlags = CPF_Edit;

	UPROPERTY()
	FName RepNotifyFunc;

	UPROPERTY()
	TEnumAsByte<ELifetimeCondition> ReplicationCondition = COND_None;

	UPROPERTY()
	TArray<FBPVariableMetaDataEntry> MetaDataArray;

	/** What the variable starts with when it is new to the class; later the class's default object tells. */
	UPROPERTY()
	FString DefaultValue;

	/** Asserts that there is one of this key. */
	const FString& GetMetaData(FName Key) const;
	void SetMetaData(FName Key, FString Value);
	void RemoveMetaData(FName Key);
	int32 FindMetaDataEntryIndexForKey(FName Key) const;
	bool HasMetaData(FName Key) const { return FindMetaDataEntryIndexForKey(Key) != INDEX_NONE; }
};

/** An interface that a Blueprint implements, with a graph for each function that has outputs. */
USTRUCT()
struct ENGINE_API FBPInterfaceDescription
{
	GENERATED_BODY()

	/** Null when the interface is gone. */
	UPROPERTY()
	TSubclassOf<UInterface> Interface;

	UPROPERTY()
	TArray<TObjectPtr<UEdGraph>> Graphs;
};

/**
 * A class made in the editor: variables, graphs and components, which are compiled to GeneratedClass.
 */
UCLASS(BlueprintType)
class ENGINE_API UBlueprint : public UBlueprintCore
{
	GENERATED_BODY()

public:
	DECLARE_MULTICAST_DELEGATE_OneParam(FChangedEvent, UBlueprint*);
	DECLARE_MULTICAST_DELEGATE_OneParam(FCompiledEvent, UBlueprint*);

	UPROPERTY()
	TSubclassOf<UObject> ParentClass;

	UPROPERTY()
	TEnumAsByte<EBlueprintType> BlueprintType = BPTYPE_Normal;

	/** Of the last compile, or BS_Dirty. Not saved: loading compiles. */
	UPROPERTY(Transient, NonTransactional)
	TEnumAsByte<EBlueprintStatus> Status = BS_Unknown;

	UPROPERTY()
	FString BlueprintDescription;

	/** The components; null unless the class is one of actors. */
	UPROPERTY()
	TObjectPtr<USimpleConstructionScript> SimpleConstructionScript;

	UPROPERTY()
	TArray<TObjectPtr<UEdGraph>> UbergraphPages;

	UPROPERTY()
	TArray<TObjectPtr<UEdGraph>> FunctionGraphs;

	UPROPERTY()
	TArray<TObjectPtr<UEdGraph>> DelegateSignatureGraphs;

	UPROPERTY()
	TArray<TObjectPtr<UEdGraph>> MacroGraphs;

	/** Those of this Blueprint, not of its parents, in the order in which they were made. */
	UPROPERTY()
	TArray<FBPVariableDescription> NewVariables;

	UPROPERTY()
	TArray<FBPInterfaceDescription> ImplementedInterfaces;

	/** Every graph, those of interfaces and those within others too. */
	void GetAllGraphs(TArray<UEdGraph*>& Graphs) const;
	/** The Blueprint that the class was compiled from; null for a native one. */
	static UBlueprint* GetBlueprintFromClass(const UClass* InClass);
	/** Appends the Blueprints that the class was compiled from and its parents were; false when one has errors. */
	static bool GetBlueprintHierarchyFromClass(const UClass* InClass, TArray<UBlueprint*>& OutBlueprintParents);
	bool IsUpToDate() const { return Status == BS_UpToDate || Status == BS_UpToDateWithWarnings; }
	bool IsPossiblyDirty() const { return Status == BS_Dirty || Status == BS_Unknown; }
	/** "BP_X" → "SKEL_BP_X_C" and "BP_X_C". */
	void GetBlueprintClassNames(
		FName& GeneratedClassName, FName& SkeletonClassName, FName NameOverride = NAME_None) const;

	FChangedEvent& OnChanged() { return ChangedEvent; }
	FCompiledEvent& OnCompiled() { return CompiledEvent; }
	void BroadcastChanged() { ChangedEvent.Broadcast(this); }
	void BroadcastCompiled() { CompiledEvent.Broadcast(this); }

	void PostLoad() override;
	void GetAssetRegistryTags(FAssetRegistryTagsContext Context) const override;

private:
	friend class FBlueprintCompilationManager;
	/** Set by what compiles Blueprints. Without it a loaded Blueprint keeps an empty class. */
	static void (*CompileOnLoad)(UBlueprint& Blueprint);

	FChangedEvent ChangedEvent;
	FCompiledEvent CompiledEvent;
};
