#pragma once

#include "UObject/Class.h"

/**
 * What HeaderTool's output is made of: a description of each reflected type that lies in the module's constant data,
 * registers itself when the library is loaded, and becomes an object when it is first asked for. Its fields follow when
 * all types of the library are there.
 */

enum class EPropertyKind : uint8
{
	Bool,
	Byte,
	Int8,
	Int16,
	Int,
	Int64,
	UInt16,
	UInt32,
	UInt64,
	Float,
	Double,
	Str,
	Name,
	Text,
	Enum,
	Object,
	Class,
	SoftObject,
	SoftClass,
	WeakObject,
	Struct,
	Delegate,
	MulticastInlineDelegate,
	Interface,
	Array,
	Set,
	Map,
};

struct FPropertyParams
{
	const char* Name;
	EPropertyKind Kind;
	uint64 Flags = CPF_None;
	void (*SetBit)(void* Owner) = nullptr; // of a bit field, in place of Offset
	uint32 OwnerSize = 0;
	uint32 Offset = 0;
	int32 ArrayDim = 1;
	UField* (*Type)() = nullptr; // class, struct, enum or signature of the value
	UClass* (*MetaClass)() = nullptr;
};

struct FFunctionParams
{
	const char* Name;
	uint32 Flags;
	uint32 ParmsSize;
	uint32 ParmsAlignment;
	UFunction::FCall Call = nullptr;
};

class FPropertyBuilder
{
public:
	explicit FPropertyBuilder(FProperty* InProperty)
		: Property(InProperty)
	{
	}
	FPropertyBuilder& Meta(const char* Key, const char* Value);
	/** The element of an array or set, the key and then the value of a map, the number below an enum. */
	FPropertyBuilder& Inner(const FPropertyParams& Params);
	/** The same for an element that is an enum. */
	FPropertyBuilder& Inner(const FPropertyParams& Params, EPropertyKind Underlying);

private:
	FProperty* const Property;
};

class FStructBuilder
{
public:
	explicit FStructBuilder(UStruct* InStruct)
		: Struct(InStruct)
	{
	}
	FStructBuilder& Meta(const char* Key, const char* Value);
	FPropertyBuilder Property(const FPropertyParams& Params);
	FStructBuilder Function(const FFunctionParams& Params);
	/** Offset: bytes from an object to the interface in it. */
	void Implements(UClass* Interface, int32 Offset);

	/** The compiler has placed the properties: linking leaves them where they are. */
	static void SetNativeLayout(UStruct* Struct, int32 Size, int32 Alignment);

private:
	UStruct* const Struct;
};

class FEnumBuilder
{
public:
	explicit FEnumBuilder(UEnum* InEnum)
		: Enum(InEnum)
	{
	}
	/** Adds metadata to the entry that was added last, or to the enum. */
	FEnumBuilder& Meta(const char* Key, const char* Value);
	FEnumBuilder& Value(const char* Name, int64 Value);
	void Finish(UEnum::ECppForm CppForm, EEnumFlags Flags);

private:
	struct FMetaEntry
	{
		int32 Index;
		FString Key;
		FString Value;
	};

	UEnum* const Enum;
	TArray<TPair<FName, int64>> Names;
	TArray<FMetaEntry> MetaEntries;
};

/** What the descriptions of all types share. */
struct FReflectedTypeParams
{
	const char* Name;    // without prefix
	const char* Package; // "/Script/<Module>"
	UField* Type = nullptr;
};

struct FClassParams
{
	FReflectedTypeParams Base;
	int32 Size;
	int32 Alignment;
	UClass* (*Super)() = nullptr;
	void (*Define)(FStructBuilder& Builder) = nullptr;
	uint32 Flags = CLASS_None;
	const char* ConfigName = "";
	UClass::FConstruct Construct = nullptr;
	UClass::FAddReferencedObjects AddReferencedObjects = nullptr;
};

struct FScriptStructParams
{
	FReflectedTypeParams Base;
	int32 Size;
	int32 Alignment;
	UScriptStruct* (*Super)() = nullptr;
	void (*Define)(FStructBuilder& Builder) = nullptr;
	uint32 Flags = STRUCT_NoFlags;
	const FStructOps* Ops = nullptr;
};

struct FEnumParams
{
	FReflectedTypeParams Base;
	UEnum::ECppForm CppForm;
	bool bFlags = false;
	void (*Define)(FEnumBuilder& Builder) = nullptr;
};

struct FDelegateFunctionParams
{
	FReflectedTypeParams Base;
	uint32 Flags = 0; // of the function
	uint32 ParmsSize = 0;
	uint32 ParmsAlignment = 1;
	void (*Define)(FStructBuilder& Builder) = nullptr;
	UClass* (*Owner)() = nullptr; // the class that the delegate is declared in
};

/** The type's object, made on the first call. */
UClass* GetReflectedType(FClassParams& Params);
UScriptStruct* GetReflectedType(FScriptStructParams& Params);
UEnum* GetReflectedType(FEnumParams& Params);
UDelegateFunction* GetReflectedType(FDelegateFunctionParams& Params);

/** Enters a description into the list that ProcessNewlyLoadedUObjects works off. */
struct FReflectedTypeRegistration
{
	explicit FReflectedTypeRegistration(FClassParams& Params);
	explicit FReflectedTypeRegistration(FScriptStructParams& Params);
	explicit FReflectedTypeRegistration(FEnumParams& Params);
	explicit FReflectedTypeRegistration(FDelegateFunctionParams& Params);
};
