#pragma once

#include "Containers/Map.h"
#include "Containers/UnrealString.h"
#include "Internationalization/Text.h"
#include "UObject/NameTypes.h"
#include "UObject/ObjectMacros.h"

class FField;
class UClass;
class UField;
class UObject;
class UPackage;
class UStruct;

/** The class of a field, since fields are no objects. Named without prefix: "IntProperty". */
class FFieldClass
{
public:
	using FConstruct = FField* (*)(const class FFieldVariant& Owner, const FName& Name, EObjectFlags Flags);

	FFieldClass(const TCHAR* InName, FFieldClass* InSuperClass, FConstruct InConstruct)
		: Name(InName)
		, SuperClass(InSuperClass)
		, ConstructFunction(InConstruct)
	{
	}
	UE_NONCOPYABLE(FFieldClass)

	FString GetName() const { return Name.ToString(); }
	FName GetFName() const { return Name; }
	FFieldClass* GetSuperClass() const { return SuperClass; }
	bool IsChildOf(const FFieldClass* Other) const
	{
		const FFieldClass* Class = this;
		while (Class && Class != Other)
		{
			Class = Class->SuperClass;
		}
		return Class != nullptr;
	}
	/** Makes a field of the class; null for an abstract one. */
	FField* Construct(const FFieldVariant& Owner, const FName& FieldName, EObjectFlags Flags = RF_NoFlags) const
	{
		return ConstructFunction ? ConstructFunction(Owner, FieldName, Flags) : nullptr;
	}

private:
	const FName Name;
	FFieldClass* const SuperClass;
	const FConstruct ConstructFunction;
};

/** Either an object or a field: what a field can lie in. */
class FFieldVariant
{
public:
	FFieldVariant() = default;
	FFieldVariant(const UObject* InObject)
		: Object(const_cast<UObject*>(InObject))
	{
	}
	FFieldVariant(const FField* InField)
		: Field(const_cast<FField*>(InField))
	{
	}
	FFieldVariant(decltype(nullptr)) {}

	bool IsValid() const { return Object || Field; }
	UObject* ToUObject() const { return Object; }
	FField* ToField() const { return Field; }
	explicit operator bool() const { return IsValid(); }
	bool operator==(const FFieldVariant& Other) const { return Object == Other.Object && Field == Other.Field; }

private:
	UObject* Object = nullptr;
	FField* Field = nullptr;
};

#define DECLARE_FIELD_CLASS(TClass, TSuperClass)                                                                       \
	using ThisClass = TClass;                                                                                          \
	using Super = TSuperClass;                                                                                         \
	static FFieldClass* StaticClass();                                                                                 \
	FFieldClass* GetClass() const override                                                                             \
	{                                                                                                                  \
		return TClass::StaticClass();                                                                                  \
	}

/** A part of a struct or class that is no object itself: in practice, a property. */
class FField
{
public:
	using BaseFieldClass = FField;

	FField(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags)
		: NamePrivate(InName)
		, FlagsPrivate(InFlags)
		, Owner(InOwner)
	{
	}
	virtual ~FField() = default;
	UE_NONCOPYABLE(FField)

	static FFieldClass* StaticClass();
	virtual FFieldClass* GetClass() const = 0;

	bool IsA(const FFieldClass* FieldClass) const { return GetClass()->IsChildOf(FieldClass); }
	template <typename T>
	bool IsA() const
	{
		return IsA(T::StaticClass());
	}

	FString GetName() const { return NamePrivate.ToString(); }
	FName GetFName() const { return NamePrivate; }
	/** "Outer.Path:Struct.Field" */
	FString GetPathName(const UObject* StopOuter = nullptr) const;
	FString GetFullName() const;
	bool HasAnyFlags(EObjectFlags Flags) const { return (FlagsPrivate & Flags) != 0; }
	EObjectFlags GetFlags() const { return FlagsPrivate; }
	void SetFlags(EObjectFlags Flags) { FlagsPrivate |= Flags; }
	void Rename(const FName& NewName) { NamePrivate = NewName; }

	FFieldVariant GetOwnerVariant() const { return Owner; }
	/** The nearest owner of the type, which is UClass, UStruct … or a field class; null when there is none. */
	template <typename T>
	T* GetOwner() const;
	/** The class that has the field; null for a member of a struct or a function's parameter outside a class. */
	UClass* GetOwnerClass() const;
	UStruct* GetOwnerStruct() const;

	const FString* FindMetaData(const FName& Key) const { return MetaData.Find(Key); }
	bool HasMetaData(const FName& Key) const { return MetaData.Contains(Key); }
	/** Empty when there is none of this key. */
	const FString& GetMetaData(const FName& Key) const;
	bool GetBoolMetaData(const FName& Key) const;
	void SetMetaData(const FName& Key, const FString& Value) { MetaData.Add(Key, Value); }
	void RemoveMetaData(const FName& Key) { MetaData.Remove(Key); }
	/** The name to show: DisplayName, or the name split into words. */
	FText GetDisplayNameText() const;
	/** ToolTip, or the name to show when there is none. */
	FText GetToolTipText(bool bShortTooltip = false) const;

	FField* Next = nullptr;
	FName NamePrivate;
	EObjectFlags FlagsPrivate;
	FFieldVariant Owner;

private:
	TMap<FName, FString> MetaData;
};

/** Null when the field is null or of another class. Objects are cast with Cast. */
template <typename FieldType>
FieldType* CastField(FField* Src)
{
	return Src && Src->IsA(FieldType::StaticClass()) ? static_cast<FieldType*>(Src) : nullptr;
}

template <typename FieldType>
const FieldType* CastField(const FField* Src)
{
	return CastField<FieldType>(const_cast<FField*>(Src));
}

template <typename FieldType>
FieldType* CastFieldChecked(FField* Src)
{
	FieldType* Result = CastField<FieldType>(Src);
	checkf(Result, TEXT("CastFieldChecked: the field is null or no %s"), *FieldType::StaticClass()->GetName());
	return Result;
}

template <typename FieldType>
const FieldType* CastFieldChecked(const FField* Src)
{
	return CastFieldChecked<FieldType>(const_cast<FField*>(Src));
}
