#pragma once

#include "../../../Core/Internal/Containers/ScriptContainers.h"
#include "CoreGlobals.h"
#include "UObject/Class.h"
#include "UObject/ObjectPtr.h"
#include "UObject/PropertyPortFlags.h"
#include "UObject/ScriptInterface.h"
#include "UObject/SoftObjectPtr.h"
#include "UObject/WeakObjectPtr.h"

class FOutputDevice;

/**
 * A variable of a class or struct, or a parameter of a function: where it lies, and all that can be done with its value
 * without knowing its type.
 *
 * "Value" pointers point at one value of the variable, "Container" pointers at the object or struct that holds it.
 */
class FProperty : public FField
{
public:
	using ThisClass = FProperty;
	using Super = FField;
	static FFieldClass* StaticClass();

	using FField::FField;

	int32 GetSize() const { return ArrayDim * ElementSize; }
	int32 GetOffset_ForInternal() const { return Offset_Internal; }
	void SetOffset_Internal(int32 NewOffset) { Offset_Internal = NewOffset; }
	virtual int32 GetMinAlignment() const = 0;
	/** Makes size and flags known; called once all types are there. */
	virtual void LinkInternal() {}

	bool HasAnyPropertyFlags(uint64 FlagsToCheck) const { return (PropertyFlags & FlagsToCheck) != 0; }
	bool HasAllPropertyFlags(uint64 FlagsToCheck) const { return (PropertyFlags & FlagsToCheck) == FlagsToCheck; }
	void SetPropertyFlags(EPropertyFlags NewFlags) { PropertyFlags |= NewFlags; }

	/** "int32", "TArray"; the arguments of a template go to ExtendedTypeText ("<int32>"). */
	virtual FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const = 0;
	/** The property around an element, key or value property; itself for all others. */
	FProperty* GetOwnerProperty() const;
	virtual bool SameType(const FProperty* Other) const;

	template <typename ValueType>
	ValueType* ContainerPtrToValuePtr(UObject* ContainerPtr, int32 ArrayIndex = 0) const
	{
		return static_cast<ValueType*>(ObjectToValue(ContainerPtr, ArrayIndex));
	}
	template <typename ValueType>
	ValueType* ContainerPtrToValuePtr(void* ContainerPtr, int32 ArrayIndex = 0) const
	{
		return static_cast<ValueType*>(MemoryToValue(ContainerPtr, ArrayIndex));
	}
	template <typename ValueType>
	const ValueType* ContainerPtrToValuePtr(const UObject* ContainerPtr, int32 ArrayIndex = 0) const
	{
		return static_cast<const ValueType*>(ObjectToValue(const_cast<UObject*>(ContainerPtr), ArrayIndex));
	}
	template <typename ValueType>
	const ValueType* ContainerPtrToValuePtr(const void* ContainerPtr, int32 ArrayIndex = 0) const
	{
		return static_cast<const ValueType*>(MemoryToValue(const_cast<void*>(ContainerPtr), ArrayIndex));
	}

	/** All elements of a C array. */
	void InitializeValue(void* Dest) const;
	void DestroyValue(void* Dest) const;
	void CopyCompleteValue(void* Dest, const void* Src) const;
	void InitializeValue_InContainer(void* Dest) const { InitializeValue(MemoryToValue(Dest, 0)); }
	void DestroyValue_InContainer(void* Dest) const { DestroyValue(MemoryToValue(Dest, 0)); }
	void CopyCompleteValue_InContainer(void* Dest, const void* Src) const
	{
		CopyCompleteValue(MemoryToValue(Dest, 0), MemoryToValue(const_cast<void*>(Src), 0));
	}
	/** The value becomes the type's empty one: 0, no text, no object. */
	void ClearValue(void* Data) const;
	void ClearValue_InContainer(void* Data, int32 ArrayIndex = 0) const { ClearValue(MemoryToValue(Data, ArrayIndex)); }

	// One element.
	virtual void InitializeElement(void* Dest) const = 0;
	virtual void DestroyElement(void* Dest) const = 0;
	virtual void CopySingleValue(void* Dest, const void* Src) const = 0;
	/** B null stands for the empty value; a struct is never equal to it. */
	virtual bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const = 0;
	bool Identical_InContainer(const void* A, const void* B, int32 ArrayIndex = 0, uint32 PortFlags = 0) const;
	/** Asserts for a type without hash; see CPF_HasGetValueTypeHash. */
	uint32 GetValueTypeHash(const void* Src) const;

	/**
	 * Appends the value as text and returns true; unless Delta is another place than Data and holds an equal value
	 * (null stands for the empty value): then nothing is written and the answer is false. Pass Data twice to have it
	 * always.
	 */
	bool ExportText_Direct(FString& ValueStr, const void* Data, const void* Delta, UObject* Parent, int32 PortFlags,
		UObject* ExportRootScope = nullptr) const;
	bool ExportText_InContainer(int32 Index, FString& ValueStr, const void* Data, const void* Delta, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope = nullptr) const;
	/** Always writes. */
	void ExportTextItem_Direct(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope = nullptr) const
	{
		ExportText_Internal(ValueStr, PropertyValue, DefaultValue, Parent, PortFlags, ExportRootScope);
	}
	void ExportTextItem_InContainer(FString& ValueStr, const void* Container, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope = nullptr) const
	{
		ExportTextItem_Direct(
			ValueStr, MemoryToValue(const_cast<void*>(Container), 0), DefaultValue, Parent, PortFlags, ExportRootScope);
	}
	/** Reads a value from the start of the text. Null when there is none; otherwise what stands behind it. */
	const TCHAR* ImportText_Direct(const TCHAR* Buffer, void* PropertyPtr, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText = nullptr) const;
	const TCHAR* ImportText_InContainer(const TCHAR* Buffer, void* Container, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText = nullptr) const
	{
		return ImportText_Direct(Buffer, MemoryToValue(Container, 0), OwnerObject, PortFlags, ErrorText);
	}
	/** Whether the property takes part in text export at all. */
	bool ShouldPort(uint32 PortFlags = 0) const;

	/** Whether a value can refer to objects, and which ones it does. */
	virtual bool ContainsObjectReference() const { return false; }
	virtual void CollectReferences(void* Value, FReferenceCollector& Collector) const {}
	/** Reports the classes, structs and enums that the property itself refers to. */
	virtual void CollectTypes(FReferenceCollector& Collector) const {}

	int32 ArrayDim = 1;    // elements of a C array
	int32 ElementSize = 0; // bytes
	EPropertyFlags PropertyFlags = CPF_None;
	FProperty* PropertyLinkNext = nullptr; // of the struct's PropertyLink

protected:
	virtual uint32 GetValueTypeHashInternal(const void* Src) const;
	virtual void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue,
		UObject* Parent, int32 PortFlags, UObject* ExportRootScope) const = 0;
	virtual const TCHAR* ImportText_Internal(
		const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const = 0;

private:
	void* MemoryToValue(void* Container, int32 ArrayIndex) const;
	/** Asserts that the object's class has the property. */
	void* ObjectToValue(UObject* Container, int32 ArrayIndex) const;
	/** Null for a member of a struct, a parameter or an element. */
	const UClass* GetDirectOwnerClass() const;

	int32 Offset_Internal = 0;
};

/** What properties of a C++ type have in common: everything that the type's own operators do. */
template <typename InTCppType, typename InSuper>
class TProperty : public InSuper
{
public:
	using TCppType = InTCppType;

	TProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags)
		: InSuper(InOwner, InName, InFlags)
	{
		this->ElementSize = sizeof(TCppType);
		if constexpr (requires(const TCppType& Value) { GetTypeHash(Value); })
		{
			this->PropertyFlags |= CPF_HasGetValueTypeHash;
		}
		if constexpr (std::is_trivially_copyable_v<TCppType>)
		{
			this->PropertyFlags |= CPF_IsPlainOldData | CPF_NoDestructor | CPF_ZeroConstructor;
		}
	}

	static const TCppType& GetPropertyValue(const void* A) { return *static_cast<const TCppType*>(A); }
	static TCppType* GetPropertyValuePtr(void* A) { return static_cast<TCppType*>(A); }
	static const TCppType* GetPropertyValuePtr(const void* A) { return static_cast<const TCppType*>(A); }
	static void SetPropertyValue(void* A, const TCppType& Value) { *static_cast<TCppType*>(A) = Value; }
	const TCppType& GetPropertyValue_InContainer(const void* A, int32 ArrayIndex = 0) const
	{
		return *this->template ContainerPtrToValuePtr<TCppType>(A, ArrayIndex);
	}
	TCppType* GetPropertyValuePtr_InContainer(void* A, int32 ArrayIndex = 0) const
	{
		return this->template ContainerPtrToValuePtr<TCppType>(A, ArrayIndex);
	}
	void SetPropertyValue_InContainer(void* A, const TCppType& Value, int32 ArrayIndex = 0) const
	{
		*this->template ContainerPtrToValuePtr<TCppType>(A, ArrayIndex) = Value;
	}

	int32 GetMinAlignment() const override { return alignof(TCppType); }
	void InitializeElement(void* Dest) const override { ::new (Dest) TCppType{}; }
	void DestroyElement(void* Dest) const override { static_cast<TCppType*>(Dest)->~TCppType(); }
	void CopySingleValue(void* Dest, const void* Src) const override { SetPropertyValue(Dest, GetPropertyValue(Src)); }
	bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const override
	{
		if constexpr (requires(const TCppType& Left, const TCppType& Right) { Left == Right; })
		{
			return GetPropertyValue(A) == (B ? GetPropertyValue(B) : TCppType{});
		}
		else
		{
			checkf(false, TEXT("Internal error: %s cannot be compared"), *this->GetClass()->GetName());
			return false;
		}
	}

protected:
	uint32 GetValueTypeHashInternal(const void* Src) const override
	{
		if constexpr (requires(const TCppType& Value) { GetTypeHash(Value); })
		{
			return GetTypeHash(GetPropertyValue(Src));
		}
		else
		{
			return InSuper::GetValueTypeHashInternal(Src);
		}
	}
};

/** A number of whatever size. */
class FNumericProperty : public FProperty
{
public:
	using ThisClass = FNumericProperty;
	using Super = FProperty;
	static FFieldClass* StaticClass();
	using FProperty::FProperty;

	virtual bool IsFloatingPoint() const { return false; }
	virtual bool IsInteger() const { return false; }
	bool IsEnum() const { return GetIntPropertyEnum() != nullptr; }
	virtual UEnum* GetIntPropertyEnum() const { return nullptr; }
	virtual int64 GetSignedIntPropertyValue(const void* Data) const = 0;
	virtual uint64 GetUnsignedIntPropertyValue(const void* Data) const = 0;
	virtual double GetFloatingPointPropertyValue(const void* Data) const = 0;
	virtual void SetIntPropertyValue(void* Data, int64 Value) const = 0;
	virtual void SetIntPropertyValue(void* Data, uint64 Value) const = 0;
	virtual void SetFloatingPointPropertyValue(void* Data, double Value) const = 0;
	FString GetNumericPropertyValueToString(const void* Data) const;
	void SetNumericPropertyValueFromString(void* Data, const TCHAR* Value) const;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

template <typename InTCppType>
class TProperty_Numeric : public TProperty<InTCppType, FNumericProperty>
{
public:
	using TProperty<InTCppType, FNumericProperty>::TProperty;

	bool IsFloatingPoint() const override { return std::is_floating_point_v<InTCppType>; }
	bool IsInteger() const override { return std::is_integral_v<InTCppType>; }
	int64 GetSignedIntPropertyValue(const void* Data) const override { return ToInteger<int64>(Data); }
	uint64 GetUnsignedIntPropertyValue(const void* Data) const override { return ToInteger<uint64>(Data); }
	double GetFloatingPointPropertyValue(const void* Data) const override
	{
		return static_cast<double>(this->GetPropertyValue(Data));
	}
	void SetIntPropertyValue(void* Data, int64 Value) const override
	{
		this->SetPropertyValue(Data, static_cast<InTCppType>(Value));
	}
	void SetIntPropertyValue(void* Data, uint64 Value) const override
	{
		this->SetPropertyValue(Data, static_cast<InTCppType>(Value));
	}
	void SetFloatingPointPropertyValue(void* Data, double Value) const override
	{
		this->SetPropertyValue(Data, static_cast<InTCppType>(Value));
	}

private:
	template <typename IntegerType>
	static IntegerType ToInteger(const void* Data)
	{
		return static_cast<IntegerType>(TProperty<InTCppType, FNumericProperty>::GetPropertyValue(Data));
	}
};

#define DECLARE_NUMERIC_PROPERTY(TClass, TCppType)                                                                     \
	class TClass : public TProperty_Numeric<TCppType>                                                                  \
	{                                                                                                                  \
	public:                                                                                                            \
		DECLARE_FIELD_CLASS(TClass, FNumericProperty)                                                                  \
		using TProperty_Numeric<TCppType>::TProperty_Numeric;                                                          \
		FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override              \
		{                                                                                                              \
			return TEXT(#TCppType);                                                                                    \
		}                                                                                                              \
	};

DECLARE_NUMERIC_PROPERTY(FInt8Property, int8)
DECLARE_NUMERIC_PROPERTY(FInt16Property, int16)
DECLARE_NUMERIC_PROPERTY(FIntProperty, int32)
DECLARE_NUMERIC_PROPERTY(FInt64Property, int64)
DECLARE_NUMERIC_PROPERTY(FUInt16Property, uint16)
DECLARE_NUMERIC_PROPERTY(FUInt32Property, uint32)
DECLARE_NUMERIC_PROPERTY(FUInt64Property, uint64)
DECLARE_NUMERIC_PROPERTY(FFloatProperty, float)
DECLARE_NUMERIC_PROPERTY(FDoubleProperty, double)

/** A byte, or an old enum kept in one: then Enum tells which, and the text is the enumerator's name. */
class FByteProperty : public TProperty_Numeric<uint8>
{
public:
	DECLARE_FIELD_CLASS(FByteProperty, FNumericProperty)
	using TProperty_Numeric<uint8>::TProperty_Numeric;

	UEnum* GetIntPropertyEnum() const override { return Enum; }
	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;

	UEnum* Enum = nullptr;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

/** A bool, or one bit of a byte: read and write it through the property only. */
class FBoolProperty : public FProperty
{
public:
	DECLARE_FIELD_CLASS(FBoolProperty, FProperty)
	using TCppType = bool;

	FBoolProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags);

	/** The value is the bit of BitMask in the byte that the property points at; a whole bool with bInNativeBool. */
	void SetBoolSize(uint32 InSize, bool bInNativeBool, uint8 InBitMask = 1);
	bool IsNativeBool() const { return bNativeBool; }

	bool GetPropertyValue(const void* A) const;
	void SetPropertyValue(void* A, bool bValue) const;
	bool GetPropertyValue_InContainer(const void* A, int32 ArrayIndex = 0) const
	{
		return GetPropertyValue(ContainerPtrToValuePtr<void>(A, ArrayIndex));
	}
	void SetPropertyValue_InContainer(void* A, bool bValue, int32 ArrayIndex = 0) const
	{
		SetPropertyValue(ContainerPtrToValuePtr<void>(A, ArrayIndex), bValue);
	}

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	int32 GetMinAlignment() const override { return 1; }
	void InitializeElement(void* Dest) const override { SetPropertyValue(Dest, false); }
	void DestroyElement(void* Dest) const override {}
	void CopySingleValue(void* Dest, const void* Src) const override { SetPropertyValue(Dest, GetPropertyValue(Src)); }
	bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const override
	{
		return GetPropertyValue(A) == (B && GetPropertyValue(B));
	}

protected:
	uint32 GetValueTypeHashInternal(const void* Src) const override { return GetTypeHash(GetPropertyValue(Src)); }
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;

private:
	bool bNativeBool = true;
	uint8 BitMask = 1;
};

class FStrProperty : public TProperty<FString, FProperty>
{
public:
	DECLARE_FIELD_CLASS(FStrProperty, FProperty)
	using TProperty<FString, FProperty>::TProperty;
	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	/** Letter case counts here, unlike in FString's own comparison. */
	bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const override;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

class FNameProperty : public TProperty<FName, FProperty>
{
public:
	DECLARE_FIELD_CLASS(FNameProperty, FProperty)
	using TProperty<FName, FProperty>::TProperty;
	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

/** A reference to an object, in whatever form it is kept. */
class FObjectPropertyBase : public FProperty
{
public:
	using ThisClass = FObjectPropertyBase;
	using Super = FProperty;
	static FFieldClass* StaticClass();
	using FProperty::FProperty;

	virtual UObject* GetObjectPropertyValue(const void* PropertyValueAddress) const = 0;
	virtual void SetObjectPropertyValue(void* PropertyValueAddress, UObject* Value) const = 0;
	UObject* GetObjectPropertyValue_InContainer(const void* Container, int32 ArrayIndex = 0) const
	{
		return GetObjectPropertyValue(ContainerPtrToValuePtr<void>(Container, ArrayIndex));
	}
	void SetObjectPropertyValue_InContainer(void* Container, UObject* Value, int32 ArrayIndex = 0) const
	{
		SetObjectPropertyValue(ContainerPtrToValuePtr<void>(Container, ArrayIndex), Value);
	}
	void SetPropertyClass(UClass* NewPropertyClass) { PropertyClass = NewPropertyClass; }
	bool SameType(const FProperty* Other) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;

	UClass* PropertyClass = nullptr; // the value is of this class or a child of it

protected:
	/** Whether the object may stand in this property. */
	virtual bool AllowsObject(const UObject* Object) const;
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

/** An object pointer, raw or as TObjectPtr: both are laid out alike. */
class FObjectProperty : public TProperty<UObject*, FObjectPropertyBase>
{
public:
	DECLARE_FIELD_CLASS(FObjectProperty, FObjectPropertyBase)
	using TProperty<UObject*, FObjectPropertyBase>::TProperty;

	UObject* GetObjectPropertyValue(const void* Address) const override { return GetPropertyValue(Address); }
	void SetObjectPropertyValue(void* Address, UObject* Value) const override { SetPropertyValue(Address, Value); }
	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	bool ContainsObjectReference() const override { return true; }
	void CollectReferences(void* Value, FReferenceCollector& Collector) const override;
};

/** A reference to a class: UClass* or TSubclassOf. */
class FClassProperty : public FObjectProperty
{
public:
	DECLARE_FIELD_CLASS(FClassProperty, FObjectProperty)
	FClassProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags);

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;

	UClass* MetaClass = nullptr; // the class that is referred to is this one or a child of it

protected:
	bool AllowsObject(const UObject* Object) const override;
};

class FWeakObjectProperty : public TProperty<FWeakObjectPtr, FObjectPropertyBase>
{
public:
	DECLARE_FIELD_CLASS(FWeakObjectProperty, FObjectPropertyBase)
	using TProperty<FWeakObjectPtr, FObjectPropertyBase>::TProperty;

	UObject* GetObjectPropertyValue(const void* Address) const override { return GetPropertyValue(Address).Get(); }
	void SetObjectPropertyValue(void* Address, UObject* Value) const override { *GetPropertyValuePtr(Address) = Value; }
	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
};

/** The path of an object that may not be loaded. Its text is the bare path. */
class FSoftObjectProperty : public TProperty<FSoftObjectPtr, FObjectPropertyBase>
{
public:
	DECLARE_FIELD_CLASS(FSoftObjectProperty, FObjectPropertyBase)
	using TProperty<FSoftObjectPtr, FObjectPropertyBase>::TProperty;

	UObject* GetObjectPropertyValue(const void* Address) const override { return GetPropertyValue(Address).Get(); }
	void SetObjectPropertyValue(void* Address, UObject* Value) const override { *GetPropertyValuePtr(Address) = Value; }
	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

class FSoftClassProperty : public FSoftObjectProperty
{
public:
	DECLARE_FIELD_CLASS(FSoftClassProperty, FSoftObjectProperty)
	FSoftClassProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags);

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;

	UClass* MetaClass = nullptr;
};

/** A reference to an object of whatever class that implements an interface. */
class FInterfaceProperty : public TProperty<FScriptInterface, FProperty>
{
public:
	DECLARE_FIELD_CLASS(FInterfaceProperty, FProperty)
	using TProperty<FScriptInterface, FProperty>::TProperty;

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;
	bool ContainsObjectReference() const override { return true; }
	void CollectReferences(void* Value, FReferenceCollector& Collector) const override;
	void SetInterfaceClass(UClass* NewInterfaceClass) { InterfaceClass = NewInterfaceClass; }

	UClass* InterfaceClass = nullptr;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

class FStructProperty : public FProperty
{
public:
	DECLARE_FIELD_CLASS(FStructProperty, FProperty)
	using FProperty::FProperty;

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;
	int32 GetMinAlignment() const override { return Struct->GetMinAlignment(); }
	void LinkInternal() override;
	void InitializeElement(void* Dest) const override { Struct->InitializeStruct(Dest); }
	void DestroyElement(void* Dest) const override { Struct->DestroyStruct(Dest); }
	void CopySingleValue(void* Dest, const void* Src) const override { Struct->CopyScriptStruct(Dest, Src); }
	bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const override;
	bool ContainsObjectReference() const override { return Struct->HasReferences(); }
	void CollectReferences(void* Value, FReferenceCollector& Collector) const override;

	UScriptStruct* Struct = nullptr;

protected:
	uint32 GetValueTypeHashInternal(const void* Src) const override { return Struct->GetStructTypeHash(Src); }
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

/** One function to call. Its text is "<path of the object>.<function>", or "(null).None". */
class FDelegateProperty : public TProperty<FScriptDelegate, FProperty>
{
public:
	DECLARE_FIELD_CLASS(FDelegateProperty, FProperty)
	using TProperty<FScriptDelegate, FProperty>::TProperty;

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;

	UFunction* SignatureFunction = nullptr;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

/** Any number of functions to call. Its text is a list of what the single delegates' is. */
class FMulticastDelegateProperty : public FProperty
{
public:
	using ThisClass = FMulticastDelegateProperty;
	using Super = FProperty;
	static FFieldClass* StaticClass();
	using FProperty::FProperty;

	/** Null when nothing has ever been bound. */
	virtual const FMulticastScriptDelegate* GetMulticastDelegate(const void* PropertyValue) const = 0;
	virtual void SetMulticastDelegate(void* PropertyValue, FMulticastScriptDelegate ScriptDelegate) const = 0;

	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;

	UFunction* SignatureFunction = nullptr;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
	static const TArray<FScriptDelegate>& GetInvocationList(const FMulticastScriptDelegate& Delegate)
	{
		return Delegate.InvocationList;
	}
};

/** A list that lies in the object itself. */
class FMulticastInlineDelegateProperty : public TProperty<FMulticastScriptDelegate, FMulticastDelegateProperty>
{
public:
	DECLARE_FIELD_CLASS(FMulticastInlineDelegateProperty, FMulticastDelegateProperty)
	using TProperty<FMulticastScriptDelegate, FMulticastDelegateProperty>::TProperty;

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	const FMulticastScriptDelegate* GetMulticastDelegate(const void* PropertyValue) const override
	{
		return GetPropertyValuePtr(PropertyValue);
	}
	void SetMulticastDelegate(void* PropertyValue, FMulticastScriptDelegate ScriptDelegate) const override
	{
		SetPropertyValue(PropertyValue, ScriptDelegate);
	}

private:
	FMulticastScriptDelegate& GetValue(UObject* Parent, void* PropertyValue) const;
};

class FArrayProperty : public FProperty
{
public:
	DECLARE_FIELD_CLASS(FArrayProperty, FProperty)
	FArrayProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags);
	~FArrayProperty() override;

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;
	int32 GetMinAlignment() const override { return alignof(FScriptArray); }
	void LinkInternal() override;
	void InitializeElement(void* Dest) const override { ::new (Dest) FScriptArray(); }
	void DestroyElement(void* Dest) const override;
	void CopySingleValue(void* Dest, const void* Src) const override;
	bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const override;
	bool ContainsObjectReference() const override { return Inner->ContainsObjectReference(); }
	void CollectReferences(void* Value, FReferenceCollector& Collector) const override;

	FProperty* Inner = nullptr;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

class FSetProperty : public FProperty
{
public:
	DECLARE_FIELD_CLASS(FSetProperty, FProperty)
	FSetProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags);
	~FSetProperty() override;

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;
	int32 GetMinAlignment() const override { return alignof(FScriptSet); }
	void LinkInternal() override;
	void InitializeElement(void* Dest) const override { ::new (Dest) FScriptSet(); }
	void DestroyElement(void* Dest) const override;
	void CopySingleValue(void* Dest, const void* Src) const override;
	bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const override;
	bool ContainsObjectReference() const override { return ElementProp->ContainsObjectReference(); }
	void CollectReferences(void* Value, FReferenceCollector& Collector) const override;

	FProperty* ElementProp = nullptr;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

class FMapProperty : public FProperty
{
public:
	DECLARE_FIELD_CLASS(FMapProperty, FProperty)
	FMapProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags);
	~FMapProperty() override;

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;
	int32 GetMinAlignment() const override { return alignof(FScriptMap); }
	void LinkInternal() override;
	void InitializeElement(void* Dest) const override { ::new (Dest) FScriptMap(); }
	void DestroyElement(void* Dest) const override;
	void CopySingleValue(void* Dest, const void* Src) const override;
	bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const override;
	bool ContainsObjectReference() const override
	{
		return KeyProp->ContainsObjectReference() || ValueProp->ContainsObjectReference();
	}
	void CollectReferences(void* Value, FReferenceCollector& Collector) const override;

	FProperty* KeyProp = nullptr;
	FProperty* ValueProp = nullptr;
	FScriptMapLayout MapLayout; // known once linked

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};

/** Works on the value of an array property. */
class FScriptArrayHelper
{
public:
	FScriptArrayHelper(const FArrayProperty* InProperty, const void* InArray)
		: Inner(InProperty->Inner)
		, Array(static_cast<FScriptArray*>(const_cast<void*>(InArray)))
	{
	}

	int32 Num() const { return Array->Num(); }
	bool IsValidIndex(int32 Index) const { return Index >= 0 && Index < Num(); }
	uint8* GetRawPtr(int32 Index = 0) const;
	/** Appends empty values; the index of the first is returned. */
	int32 AddValue() const { return AddValues(1); }
	int32 AddValues(int32 Count) const;
	void InsertValues(int32 Index, int32 Count = 1) const;
	void RemoveValues(int32 Index, int32 Count = 1) const;
	void Resize(int32 Count) const;
	void EmptyValues() const { RemoveValues(0, Num()); }
	void EmptyAndAddValues(int32 Count) const;
	void SwapValues(int32 A, int32 B) const;

private:
	FProperty* const Inner;
	FScriptArray* const Array;
};

class FScriptArrayHelper_InContainer : public FScriptArrayHelper
{
public:
	FScriptArrayHelper_InContainer(const FArrayProperty* InProperty, const void* Container, int32 FixedArrayIndex = 0)
		: FScriptArrayHelper(InProperty, InProperty->ContainerPtrToValuePtr<void>(Container, FixedArrayIndex))
	{
	}
};

/** Works on the value of a set property. Indices are slots: some between 0 and GetMaxIndex can be free. */
class FScriptSetHelper
{
public:
	FScriptSetHelper(const FSetProperty* InProperty, const void* InSet);

	int32 Num() const { return Set->Num(); }
	int32 GetMaxIndex() const { return Set->GetMaxIndex(); }
	bool IsValidIndex(int32 Index) const { return Set->IsValidIndex(Index, Layout); }
	uint8* GetElementPtr(int32 Index) const;
	/** Adds a copy, unless there is an equal one. */
	void AddElement(const void* ElementToAdd) const;
	int32 FindElementIndex(const void* ElementToFind) const;
	bool RemoveElement(const void* ElementToRemove) const;
	void EmptyElements() const;

private:
	FProperty* const Element;
	FScriptSet* const Set;
	const FSetSlotLayout Layout;
};

/** Works on the value of a map property. Indices are slots: some between 0 and GetMaxIndex can be free. */
class FScriptMapHelper
{
public:
	FScriptMapHelper(const FMapProperty* InProperty, const void* InMap);

	int32 Num() const { return Map->Num(); }
	int32 GetMaxIndex() const { return Map->GetMaxIndex(); }
	bool IsValidIndex(int32 Index) const { return Map->IsValidIndex(Index, Layout.Slot); }
	uint8* GetKeyPtr(int32 Index) const;
	uint8* GetValuePtr(int32 Index) const { return GetKeyPtr(Index) + Layout.ValueOffset; }
	/** Adds a copy of the pair; an equal key gets the value. */
	void AddPair(const void* KeyToAdd, const void* ValueToAdd) const;
	int32 FindMapIndexWithKey(const void* KeyToFind) const;
	/** Null when there is no such key. */
	uint8* FindValueFromHash(const void* KeyToFind) const;
	bool RemovePair(const void* KeyToRemove) const;
	void EmptyValues() const;

private:
	FProperty* const Key;
	FProperty* const Value;
	FScriptMap* const Map;
	const FScriptMapLayout Layout;
};

/** Memory for one value of a property, empty at first. */
class FPropertyValueBuffer
{
public:
	explicit FPropertyValueBuffer(const FProperty& InProperty);
	~FPropertyValueBuffer();
	UE_NONCOPYABLE(FPropertyValueBuffer)
	void* Get() const { return Memory; }

private:
	const FProperty& Property;
	void* const Memory;
};

enum class EFieldIterationFlags : uint8
{
	None = 0,
	IncludeSuper = 1 << 0,
	IncludeDeprecated = 1 << 1,
	IncludeInterfaces = 1 << 2,
	Default = IncludeSuper | IncludeDeprecated,
	IncludeAll = IncludeSuper | IncludeDeprecated | IncludeInterfaces,
};
ENUM_CLASS_FLAGS(EFieldIterationFlags)

/** The older way to name the same. */
namespace EFieldIteratorFlags
{
enum SuperClassFlags
{
	ExcludeSuper = 0,
	IncludeSuper,
};
enum DeprecatedPropertyFlags
{
	ExcludeDeprecated = 0,
	IncludeDeprecated = 1 << 0,
};
enum InterfaceClassFlags
{
	ExcludeInterfaces = 0,
	IncludeInterfaces = 1 << 0,
};
}

/** Walks the properties or functions of a struct: its own in order of declaration, then its parent's. */
template <typename FieldType>
class TFieldIterator
{
public:
	explicit TFieldIterator(const UStruct* InStruct, EFieldIterationFlags InFlags = EFieldIterationFlags::Default)
		: Struct(InStruct)
		, Flags(InFlags)
	{
		Field = Struct ? GetFirst() : nullptr;
		Settle();
	}
	TFieldIterator(const UStruct* InStruct, EFieldIteratorFlags::SuperClassFlags SuperFlags,
		EFieldIteratorFlags::DeprecatedPropertyFlags DeprecatedFlags = EFieldIteratorFlags::IncludeDeprecated,
		EFieldIteratorFlags::InterfaceClassFlags InterfaceFlags = EFieldIteratorFlags::ExcludeInterfaces)
		: TFieldIterator(
			  InStruct, (SuperFlags ? EFieldIterationFlags::IncludeSuper : EFieldIterationFlags::None) |
							(DeprecatedFlags ? EFieldIterationFlags::IncludeDeprecated : EFieldIterationFlags::None) |
							(InterfaceFlags ? EFieldIterationFlags::IncludeInterfaces : EFieldIterationFlags::None))
	{
	}

	explicit operator bool() const { return Field != nullptr; }
	FieldType* operator*() const { return static_cast<FieldType*>(Field); }
	FieldType* operator->() const { return static_cast<FieldType*>(Field); }
	bool operator!=(const TFieldIterator& Other) const { return Field != Other.Field; }
	bool operator==(const TFieldIterator& Other) const { return Field == Other.Field; }
	TFieldIterator& operator++()
	{
		Field = Field->Next;
		Settle();
		return *this;
	}
	const UStruct* GetStruct() const { return Struct; }

private:
	using BaseType = std::conditional_t<std::is_base_of_v<FField, FieldType>, FField, UField>;

	BaseType* GetFirst() const
	{
		if constexpr (std::is_same_v<BaseType, FField>)
		{
			return Struct->ChildProperties;
		}
		else
		{
			return Struct->Children;
		}
	}

	bool IsWanted() const
	{
		if constexpr (std::is_base_of_v<FProperty, FieldType>)
		{
			if (static_cast<FProperty*>(Field)->HasAnyPropertyFlags(CPF_Deprecated) &&
				!EnumHasAnyFlags(Flags, EFieldIterationFlags::IncludeDeprecated))
			{
				return false;
			}
		}
		if constexpr (std::is_same_v<FieldType, FProperty>)
		{
			return true; // there are no other fields
		}
		else
		{
			return Field->IsA(FieldType::StaticClass());
		}
	}

	/** Goes on to the next field that is wanted, in this struct, its interfaces or its parents. */
	void Settle()
	{
		while (Struct)
		{
			for (; Field; Field = static_cast<BaseType*>(Field->Next))
			{
				if (IsWanted())
				{
					return;
				}
			}
			GoToNextStruct();
			Field = Struct ? GetFirst() : nullptr;
		}
	}

	void GoToNextStruct()
	{
		if (EnumHasAnyFlags(Flags, EFieldIterationFlags::IncludeInterfaces))
		{
			Class = Class || !Struct->IsA(UClass::StaticClass()) ? Class : static_cast<const UClass*>(Struct);
			while (Class && NextInterface < Class->Interfaces.Num())
			{
				Struct = Class->Interfaces[NextInterface++].Class;
				if (Struct)
				{
					return;
				}
			}
			Struct = Class ? Class : Struct;
			Class = nullptr;
			NextInterface = 0;
		}
		Struct = EnumHasAnyFlags(Flags, EFieldIterationFlags::IncludeSuper) ? Struct->GetInheritanceSuper() : nullptr;
	}

	const UStruct* Struct;
	const UClass* Class = nullptr; // whose interfaces are walked
	int32 NextInterface = 0;
	BaseType* Field = nullptr;
	EFieldIterationFlags Flags;
};

/** TFieldIterator for range-for. */
template <typename FieldType>
struct TFieldRange
{
	explicit TFieldRange(const UStruct* InStruct, EFieldIterationFlags InFlags = EFieldIterationFlags::Default)
		: Begin(InStruct, InFlags)
	{
	}
	TFieldIterator<FieldType> begin() const { return Begin; }
	TFieldIterator<FieldType> end() const { return TFieldIterator<FieldType>(nullptr); }

private:
	TFieldIterator<FieldType> Begin;
};

/** The property of the name and type; null when there is none. */
template <typename FieldType = FProperty>
FieldType* FindFProperty(const UStruct* Owner, FName FieldName)
{
	return Owner ? CastField<FieldType>(Owner->FindPropertyByName(FieldName)) : nullptr;
}

template <typename FieldType = FProperty>
FieldType* FindFProperty(const UStruct* Owner, const TCHAR* FieldName)
{
	return FindFProperty<FieldType>(Owner, FName(FieldName, FNAME_Find));
}

namespace EPropertyChangeType
{
using Type = uint32;
constexpr Type Unspecified = 1 << 0;
constexpr Type ArrayAdd = 1 << 1;
constexpr Type ArrayRemove = 1 << 2;
constexpr Type ArrayClear = 1 << 3;
constexpr Type ValueSet = 1 << 4;
constexpr Type Duplicate = 1 << 5;
constexpr Type Interactive = 1 << 6; // one of many changes, such as a drag; a ValueSet follows
constexpr Type Redirected = 1 << 7;
}

/** What was changed. Property is null when it is not known. */
struct FPropertyChangedEvent
{
	explicit FPropertyChangedEvent(FProperty* InProperty,
		EPropertyChangeType::Type InChangeType = EPropertyChangeType::Unspecified,
		TArrayView<const UObject* const> InTopLevelObjects = {})
		: Property(InProperty)
		, MemberProperty(InProperty)
		, ChangeType(InChangeType)
		, TopLevelObjects(InTopLevelObjects)
	{
	}

	void SetActiveMemberProperty(FProperty* InMemberProperty) { MemberProperty = InMemberProperty; }
	FName GetPropertyName() const { return Property ? Property->GetFName() : FName(); }
	FName GetMemberPropertyName() const { return MemberProperty ? MemberProperty->GetFName() : FName(); }

	FProperty* Property;       // the innermost: of an array's element, the element property
	FProperty* MemberProperty; // the one of the object
	EPropertyChangeType::Type ChangeType;
	int32 ObjectIteratorIndex = INDEX_NONE;

private:
	TArrayView<const UObject* const> TopLevelObjects;
};

template <typename T>
T* FField::GetOwner() const
{
	if constexpr (std::is_base_of_v<FField, T>)
	{
		return Owner.ToField() ? CastField<T>(Owner.ToField()) : nullptr;
	}
	else
	{
		for (const FField* Field = this; Field; Field = Field->Owner.ToField())
		{
			for (UObject* Object = Field->Owner.ToUObject(); Object; Object = Object->GetOuter())
			{
				if (Object->IsA(T::StaticClass()))
				{
					return static_cast<T*>(Object);
				}
			}
		}
		return nullptr;
	}
}
