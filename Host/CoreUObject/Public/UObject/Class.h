#pragma once

#include "Math/MathFwd.h"
#include "UObject/Field.h"
#include "UObject/Object.h"
#include "UObject/TopLevelAssetPath.h"

#include <type_traits>

class FOutputDevice;
class UClass;
class UFunction;
class UScriptStruct;
class UStruct;
struct FClassParams;
struct FEnumParams;
struct FScriptStructParams;

/** Whether parents are looked at, too. */
namespace EIncludeSuperFlag
{
enum Type
{
	ExcludeSuper,
	IncludeSuper,
};
}

/** A reflected thing that is an object: a class, a struct, an enum or a function. */
class UField : public UObject
{
public:
	DECLARE_REFLECTED_CLASS(UField, UObject)
	using BaseFieldClass = UField;
	UField() = default;
	UField(const FObjectInitializer& ObjectInitializer)
		: Super(ObjectInitializer)
	{
	}

	/** The class that declares the field; null for what lies in no class. */
	UClass* GetOwnerClass() const;
	UStruct* GetOwnerStruct() const;

	const FString* FindMetaData(const FName& Key) const { return MetaData.Find(Key); }
	bool HasMetaData(const FName& Key) const { return MetaData.Contains(Key); }
	/** Empty when there is none of this key. */
	const FString& GetMetaData(const FName& Key) const;
	bool GetBoolMetaData(const FName& Key) const;
	void SetMetaData(const FName& Key, const FString& Value) { MetaData.Add(Key, Value); }
	void RemoveMetaData(const FName& Key) { MetaData.Remove(Key); }
	virtual FText GetDisplayNameText() const;
	FText GetToolTipText(bool bShortTooltip = false) const;

	UField* Next = nullptr; // of the owner's Children

protected:
	TMap<FName, FString> MetaData;
};

/** Something that has properties. */
class UStruct : public UField
{
public:
	DECLARE_REFLECTED_CLASS(UStruct, UField)
	UStruct() = default;
	UStruct(const FObjectInitializer& ObjectInitializer)
		: Super(ObjectInitializer)
	{
	}
	~UStruct() override;

	UStruct* GetSuperStruct() const { return SuperStruct; }
	/** Whose properties the struct has, too. Null for a function, whatever it overrides. */
	virtual UStruct* GetInheritanceSuper() const { return GetSuperStruct(); }
	virtual void SetSuperStruct(UStruct* NewSuperStruct) { SuperStruct = NewSuperStruct; }
	/** True for the struct itself too. */
	bool IsChildOf(const UStruct* SomeBase) const;
	template <typename T>
	bool IsChildOf() const
	{
		return IsChildOf(T::StaticClass());
	}
	/** Bytes of one value, without padding to the alignment. */
	int32 GetPropertiesSize() const { return PropertiesSize; }
	int32 GetStructureSize() const;
	int32 GetMinAlignment() const { return MinAlignment; }
	/** "U", "A" or "F". */
	virtual const TCHAR* GetPrefixCPP() const { return TEXT("F"); }

	FProperty* FindPropertyByName(FName InName) const;
	/** Appends a property; the struct owns it from now on. Link afterwards. */
	void AddCppProperty(FProperty* Property);
	/** Takes all properties out and frees them. Pointers to them die. */
	void DestroyChildProperties();
	/**
	 * Completes the properties. Those of a type that is not native get their place behind the parent's.
	 */
	virtual void StaticLink(bool bRelinkExistingProperties = false);

	virtual void InitializeStruct(void* Dest, int32 ArrayDim = 1) const;
	virtual void DestroyStruct(void* Dest, int32 ArrayDim = 1) const;

	/** Reports the references in a value of this struct. */
	void CollectReferences(void* Value, FReferenceCollector& Collector) const;
	/** False when no value of this struct can refer to an object. */
	bool HasReferences() const;
	static void AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector);

	UField* Children = nullptr;        // functions, in order of declaration
	FField* ChildProperties = nullptr; // own properties, in order of declaration
	FProperty* PropertyLink = nullptr; // all properties, own ones first
	int32 PropertiesSize = 0;
	int32 MinAlignment = 1;

protected:
	UStruct* SuperStruct = nullptr;

private:
	friend class FStructBuilder;
	bool bNativeLayout = false; // the compiler has placed the properties
};

/** What only the compiler can do with the values of a native struct. Null: done property by property. */
struct FStructOps
{
	void (*Construct)(void* Dest) = nullptr;
	void (*Destruct)(void* Dest) = nullptr;
	void (*Copy)(void* Dest, const void* Src) = nullptr;
	bool (*Identical)(const void* A, const void* B) = nullptr;
	uint32 (*GetTypeHash)(const void* Value) = nullptr;
	bool (*ExportTextItem)(const void* Value, FString& ValueStr, int32 PortFlags) = nullptr;
	bool (*ImportTextItem)(void* Value, const TCHAR*& Buffer, int32 PortFlags) = nullptr;
};

/** Specialise TStructOpsTypeTraits to tell what a struct does itself. */
template <typename StructType>
struct TStructOpsTypeTraitsBase2
{
	enum
	{
		WithIdenticalViaEquality = false, // with operator==
		WithExportTextItem = false,
		WithImportTextItem = false,
	};
};

template <typename StructType>
struct TStructOpsTypeTraits : TStructOpsTypeTraitsBase2<StructType>
{
};

template <typename StructType>
struct TCppStructOps
{
	static constexpr FStructOps Ops = [] {
		FStructOps Result;
		Result.Construct = [](void* Dest) { ::new (Dest) StructType(); };
		Result.Destruct = [](void* Dest) { static_cast<StructType*>(Dest)->~StructType(); };
		Result.Copy = [](void* Dest, const void* Src) {
			*static_cast<StructType*>(Dest) = *static_cast<const StructType*>(Src);
		};
		if constexpr (TStructOpsTypeTraits<StructType>::WithIdenticalViaEquality)
		{
			Result.Identical = [](const void* A, const void* B) {
				return *static_cast<const StructType*>(A) == *static_cast<const StructType*>(B);
			};
		}
		if constexpr (requires(const StructType& Value) { GetTypeHash(Value); })
		{
			Result.GetTypeHash = [](const void* Value) -> uint32 {
				using ::GetTypeHash;
				return GetTypeHash(*static_cast<const StructType*>(Value));
			};
		}
		if constexpr (TStructOpsTypeTraits<StructType>::WithExportTextItem)
		{
			Result.ExportTextItem = [](const void* Value, FString& ValueStr, int32 PortFlags) {
				const StructType& Struct = *static_cast<const StructType*>(Value);
				return Struct.ExportTextItem(ValueStr, Struct, nullptr, PortFlags, nullptr);
			};
		}
		if constexpr (TStructOpsTypeTraits<StructType>::WithImportTextItem)
		{
			Result.ImportTextItem = [](void* Value, const TCHAR*& Buffer, int32 PortFlags) {
				return static_cast<StructType*>(Value)->ImportTextItem(Buffer, PortFlags, nullptr, nullptr);
			};
		}
		return Result;
	}();
};

/** A struct whose values live inside others, without identity. */
class UScriptStruct : public UStruct
{
public:
	DECLARE_REFLECTED_CLASS(UScriptStruct, UStruct)
	UScriptStruct() = default;
	UScriptStruct(const FObjectInitializer& ObjectInitializer)
		: Super(ObjectInitializer)
	{
	}

	void InitializeStruct(void* Dest, int32 ArrayDim = 1) const override;
	void DestroyStruct(void* Dest, int32 ArrayDim = 1) const override;
	void CopyScriptStruct(void* Dest, const void* Src, int32 ArrayDim = 1) const;
	bool CompareScriptStruct(const void* A, const void* B, uint32 PortFlags) const;
	bool CanHash() const;
	uint32 GetStructTypeHash(const void* Value) const;

	/** Appends "(Member=Value,…)". With Defaults, members that equal theirs are left out, unless the struct is atomic.
	 */
	void ExportText(FString& ValueStr, const void* Value, const void* Defaults, UObject* OwnerObject, int32 PortFlags,
		UObject* ExportRootScope) const;
	/** Reads what ExportText writes; members that are not named keep their values. Null when it cannot be read. */
	const TCHAR* ImportText(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText, const FString& StructName) const;

	FString GetStructCPPName() const { return TEXT("F") + GetName(); }

	EStructFlags StructFlags = STRUCT_NoFlags;

private:
	friend UScriptStruct* GetReflectedType(FScriptStructParams& Params);
	const FStructOps* Ops = nullptr;
};

/** An enum: names and values in order of declaration, with a generated "…_MAX" at the end. */
class UEnum : public UField
{
public:
	DECLARE_REFLECTED_CLASS(UEnum, UField)
	UEnum() = default;
	UEnum(const FObjectInitializer& ObjectInitializer)
		: Super(ObjectInitializer)
	{
	}

	enum class ECppForm
	{
		Regular, // enum E { A }: entries are called "A"
		Namespaced,
		EnumClass, // enum class E { A }: entries are called "E::A"
	};

	/** Replaces the entries. A _MAX entry is added unless there is one or none is wanted. */
	bool SetEnums(TArray<TPair<FName, int64>>& InNames, ECppForm InCppForm, EEnumFlags InFlags = EEnumFlags::None,
		bool bAddMaxKeyIfMissing = true);

	/** Counts the generated _MAX. */
	int32 NumEnums() const { return Names.Num(); }
	ECppForm GetCppForm() const { return CppForm; }
	bool ContainsExistingMax() const;

	/** "E::A" of an enum class. NAME_None and an empty text for an index that there is not. */
	FName GetNameByIndex(int32 Index) const;
	FName GetNameByValue(int64 Value) const { return GetNameByIndex(GetIndexByValue(Value)); }
	/** "A", without the enum's name. */
	FString GetNameStringByIndex(int32 Index) const;
	FString GetNameStringByValue(int64 Value) const { return GetNameStringByIndex(GetIndexByValue(Value)); }
	FText GetDisplayNameTextByIndex(int32 Index) const;
	FText GetDisplayNameTextByValue(int64 Value) const { return GetDisplayNameTextByIndex(GetIndexByValue(Value)); }
	FText GetToolTipTextByIndex(int32 Index) const;

	int64 GetValueByIndex(int32 Index) const;
	/** The short or the full name; letter case is ignored. INDEX_NONE when there is no such entry. */
	int32 GetIndexByNameString(const FString& Name) const;
	int32 GetIndexByValue(int64 Value) const;
	/** INDEX_NONE when there is no such entry. */
	int64 GetValueByNameString(const FString& Name) const;
	int64 GetMaxEnumValue() const;

	// With an index, the metadata of that entry.
	bool HasMetaData(const TCHAR* Key, int32 NameIndex = INDEX_NONE) const;
	FString GetMetaData(const TCHAR* Key, int32 NameIndex = INDEX_NONE) const;
	void SetMetaData(const TCHAR* Key, const TCHAR* Value, int32 NameIndex = INDEX_NONE);

	FString CppType;

private:
	/** What the entries' names have in common in front of an underscore (ROLE_None, ROLE_All), or the enum's name. */
	FString GenerateEnumPrefix() const;
	FName GetMetaDataKey(const TCHAR* Key, int32 NameIndex) const;

	TArray<TPair<FName, int64>> Names;
	ECppForm CppForm = ECppForm::Regular;
	EEnumFlags EnumFlags = EEnumFlags::None;
};

/** A function that can be found by name and called through ProcessEvent. */
class UFunction : public UStruct
{
public:
	DECLARE_REFLECTED_CLASS(UFunction, UStruct)
	using FCall = void (*)(UObject* Object, void* Parms);

	bool HasAnyFunctionFlags(EFunctionFlags FlagsToCheck) const { return (FunctionFlags & FlagsToCheck) != 0; }
	bool HasAllFunctionFlags(EFunctionFlags FlagsToCheck) const
	{
		return (FunctionFlags & FlagsToCheck) == FlagsToCheck;
	}
	/** Null for a function that returns nothing. */
	FProperty* GetReturnProperty() const;
	UStruct* GetInheritanceSuper() const override { return nullptr; }
	/** Runs the native function; one without a body does nothing. */
	void Invoke(UObject* Object, void* Parms) const;
	void SetNativeFunc(FCall InCall) { Call = InCall; }
	void StaticLink(bool bRelinkExistingProperties = false) override;

	EFunctionFlags FunctionFlags = FUNC_None;
	uint8 NumParms = 0;
	uint16 ParmsSize = 0;
	uint16 ReturnValueOffset = MAX_uint16_ReturnValue;

	static constexpr uint16 MAX_uint16_ReturnValue = 0xffff; // there is no return value

private:
	FCall Call = nullptr;
};

/** The parameters of a dynamic delegate, as a function without a body: "<Name without F>__DelegateSignature". */
class UDelegateFunction : public UFunction
{
public:
	DECLARE_REFLECTED_CLASS(UDelegateFunction, UFunction)
};

/** One interface that a class implements. */
struct FImplementedInterface
{
	FImplementedInterface() = default;
	FImplementedInterface(UClass* InClass, int32 InOffset, bool bInImplementedByK2)
		: Class(InClass)
		, PointerOffset(InOffset)
		, bImplementedByK2(bInImplementedByK2)
	{
	}

	UClass* Class = nullptr;
	int32 PointerOffset = 0; // bytes from the object to the interface; without meaning for one of a Blueprint
	bool bImplementedByK2 = false;
};

/** The class of objects. */
class UClass : public UStruct
{
public:
	DECLARE_REFLECTED_CLASS(UClass, UStruct)
	UClass() = default;
	UClass(const FObjectInitializer& ObjectInitializer)
		: Super(ObjectInitializer)
	{
	}
	using FConstruct = void (*)(const FObjectInitializer& Initializer);
	using FAddReferencedObjects = void (*)(UObject* InThis, FReferenceCollector& Collector);

	UClass* GetSuperClass() const { return static_cast<UClass*>(GetSuperStruct()); }
	const TCHAR* GetPrefixCPP() const override;
	bool HasAnyClassFlags(EClassFlags FlagsToCheck) const { return (ClassFlags & FlagsToCheck) != 0; }
	bool HasAllClassFlags(EClassFlags FlagsToCheck) const { return (ClassFlags & FlagsToCheck) == FlagsToCheck; }
	bool IsNative() const { return HasAnyClassFlags(CLASS_Native); }

	/** Makes the default object when there is none yet. */
	UObject* GetDefaultObject(bool bCreateIfNeeded = true) const;
	template <typename T>
	T* GetDefaultObject() const
	{
		UObject* Result = GetDefaultObject();
		check(Result->IsA(T::StaticClass()));
		return static_cast<T*>(Result);
	}
	/** "Default__<Name>" */
	FName GetDefaultObjectName() const;

	/** The class's own function, or that of the nearest parent; of each class, its interfaces count too. */
	UFunction* FindFunctionByName(
		FName InName, EIncludeSuperFlag::Type IncludeSuper = EIncludeSuperFlag::IncludeSuper) const;
	/** Whether the class or a parent implements the interface or a child of it. */
	bool ImplementsInterface(const UClass* SomeInterface) const;
	/** Appends a function; it is found by its name from now on. */
	void AddFunction(UFunction* Function);
	/** Takes the class's own functions out. */
	void ClearFunctions();

	/** The file of the configuration: one of the engine's own, or Saved/Config/<Platform>Editor/<Name>.ini. */
	const FString GetConfigName() const;

	/** A class is what an asset makes, not one itself. */
	bool IsAsset() const override { return false; }
	/** "/Script/Engine.Blueprint" */
	FTopLevelAssetPath GetClassPathName() const;
	/** Like UStruct's, and takes over what a class inherits. */
	void SetSuperStruct(UStruct* NewSuperStruct) override;
	static void AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector);

	/**
	 * Finds a type in memory by a full path or a short name without prefix. An empty name gives null. "Slow" since a
	 * short name is looked for in all packages.
	 */
	template <typename T>
	static T* TryFindTypeSlow(const FString& TypeName, EFindFirstObjectOptions Options = EFindFirstObjectOptions::None)
	{
		return static_cast<T*>(TryFindType(T::StaticClass(), TypeName, Options));
	}
	template <typename T>
	static T* TryFindTypeSlowSafe(
		const FString& TypeName, EFindFirstObjectOptions Options = EFindFirstObjectOptions::None)
	{
		return IsGarbageCollecting() ? nullptr : TryFindTypeSlow<T>(TypeName, Options);
	}

	EClassFlags ClassFlags = CLASS_None;
	FName ClassConfigName;
	FConstruct ClassConstructor = nullptr;
	FAddReferencedObjects ClassAddReferencedObjects = nullptr;
	UObject* ClassDefaultObject = nullptr;
	UObject* ClassGeneratedBy = nullptr;      // the Blueprint of a class that one was compiled to
	TArray<FImplementedInterface> Interfaces; // own ones

private:
	static UObject* TryFindType(UClass* TypeClass, const FString& TypeName, EFindFirstObjectOptions Options);
	UObject* CreateDefaultObject();

	TMap<FName, UFunction*> FunctionMap;
};

/** The default object of a class: its properties are the class's defaults. */
template <typename T>
const T* GetDefault()
{
	return static_cast<const T*>(T::StaticClass()->GetDefaultObject());
}

template <typename T>
const T* GetDefault(const UClass* Class)
{
	check(Class->GetDefaultObject()->IsA(T::StaticClass()));
	return static_cast<const T*>(Class->GetDefaultObject());
}

template <typename T>
T* GetMutableDefault()
{
	return static_cast<T*>(T::StaticClass()->GetDefaultObject());
}

template <typename T>
T* GetMutableDefault(const UClass* Class)
{
	return const_cast<T*>(GetDefault<T>(Class));
}

struct FColor;
struct FGuid;
struct FLinearColor;
struct FSoftClassPath;
struct FSoftObjectPath;

/** The reflected form of a struct that is declared without reflection, such as FLinearColor. */
template <typename StructType>
struct TBaseStructure
{
	static UScriptStruct* Get() { return StructType::StaticStruct(); }
};

template <typename T>
struct TVector2;

#define DECLARE_BASE_STRUCTURE(StructType)                                                                             \
	template <>                                                                                                        \
	struct TBaseStructure<StructType>                                                                                  \
	{                                                                                                                  \
		static UScriptStruct* Get();                                                                                   \
	};

DECLARE_BASE_STRUCTURE(FColor)
DECLARE_BASE_STRUCTURE(FLinearColor)
DECLARE_BASE_STRUCTURE(TVector2<double>)
DECLARE_BASE_STRUCTURE(FIntPoint)
DECLARE_BASE_STRUCTURE(FVector)
DECLARE_BASE_STRUCTURE(FRotator)
DECLARE_BASE_STRUCTURE(FQuat)
DECLARE_BASE_STRUCTURE(FTransform)
DECLARE_BASE_STRUCTURE(FGuid)
DECLARE_BASE_STRUCTURE(FSoftObjectPath)
DECLARE_BASE_STRUCTURE(FSoftClassPath)
