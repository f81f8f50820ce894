#include "UObject/ReflectedTypes.h"

#include "CoreGlobals.h"
#include "Objects/ObjectTable.h"
#include "Properties/DeferredConfig.h"
#include "UObject/EnumProperty.h"
#include "UObject/Package.h"
#include "UObject/ReflectedTypeReload.h"
#include "UObject/TextProperty.h"
#include "UObject/WeakObjectPtrTemplates.h"

#include <cstring>

namespace ReflectedTypes
{
/** A type whose object is there and whose fields are not. */
struct FUndefinedType
{
	UField* Type = nullptr;
	void* Params = nullptr;
	void (*Define)(void* Params, UField* Type) = nullptr;
};

/** What registered itself when its library was loaded and has not been worked off. */
struct FRegistration
{
	void* Params = nullptr;
	UField* (*Get)(void* Params) = nullptr;
};

/** Never destroyed, and made on first use: libraries register from static initialisers. */
struct FState
{
	TArray<FRegistration> Registrations;
	TArray<FUndefinedType> Undefined; // parents before their children
	TArray<TWeakObjectPtr<UClass>> WaitingForConfig;
	bool bDefining = false;

	static FState& Get()
	{
		static FState* State = new FState;
		return *State;
	}
};

/** Makes a bare object of a type that may not be complete itself: classes are objects of a class, too. */
template <typename ObjectType>
ObjectType* MakeBare(UObject* Outer, FName Name, EObjectFlags Flags)
{
	void* const Memory = std::aligned_alloc(16, (sizeof(ObjectType) + 15) / 16 * 16);
	std::memset(Memory, 0, sizeof(ObjectType));
	FObjectTable::Get().PrepareIdentity(Memory, { nullptr, Outer, Name, Flags });
	return ::new (Memory) ObjectType();
}

UPackage* FindOrMakePackage(const char* Name)
{
	const FName PackageName(Name);
	if (UObject* Existing = FObjectTable::Get().Find(nullptr, PackageName))
	{
		return static_cast<UPackage*>(Existing);
	}
	UPackage* const Package = MakeBare<UPackage>(nullptr, PackageName, RF_Public);
	Package->SetPackageFlags(PKG_CompiledIn);
	Package->AddToRoot();
	FObjectTable::Get().SetIdentity(*Package, UPackage::StaticClass(), nullptr, PackageName);
	return Package;
}

/** Works off the types without fields. What asks for further types meanwhile only adds to the list. */
void DefineAll()
{
	FState& State = FState::Get();
	if (State.bDefining)
	{
		return;
	}
	State.bDefining = true;
	for (int32 Index = 0; Index < State.Undefined.Num(); ++Index)
	{
		const FUndefinedType Each = State.Undefined[Index];
		Each.Define(Each.Params, Each.Type);
	}
	State.Undefined.Empty();
	State.bDefining = false;
}

/** Makes the type's object; Complete fills in what is known without fields. */
template <typename TypeObject, typename ParamsType, typename CompleteType>
TypeObject* FindOrMake(
	ParamsType& Params, CompleteType Complete, void (*Define)(void*, UField*), UClass* (*Owner)() = nullptr)
{
	FReflectedTypeParams& Base = Params.Base;
	if (!Base.Type)
	{
		const FName Name(Base.Name);
		TypeObject* const Type =
			MakeBare<TypeObject>(nullptr, Name, RF_Public | RF_Standalone | RF_MarkAsNative | RF_Transient);
		Base.Type = Type; // from here on, whoever asks for the type gets it
		Type->AddToRoot();
		UPackage* const Package = FindOrMakePackage(Base.Package);
		UObject* const Outer = Owner ? static_cast<UObject*>(Owner()) : Package;
		UObject* const Existing = FObjectTable::Get().Find(Outer, Name);
		FObjectTable::Get().SetIdentity(*Type, TypeObject::StaticClass(), Outer, Name);
		if (Existing)
		{
			FReflectedTypeReload* const Reload = FReflectedTypeReload::Get();
			checkf(Reload && Reload->IsFor(*Package), TEXT("%s has two types that are named %s"), *Package->GetName(),
				*Name.ToString());
			Reload->Replace(*static_cast<UField*>(Existing), *Type);
		}
		Complete(*Type);
		FState::Get().Undefined.Add({ Type, &Params, Define });
		DefineAll();
	}
	return static_cast<TypeObject*>(Base.Type);
}

void DefineClass(void* Memory, UField* Type)
{
	const FClassParams& Params = *static_cast<FClassParams*>(Memory);
	FStructBuilder Builder(static_cast<UClass*>(Type));
	if (Params.Define)
	{
		Params.Define(Builder);
	}
	static_cast<UClass*>(Type)->StaticLink();
	for (UField* Child = static_cast<UClass*>(Type)->Children; Child; Child = Child->Next)
	{
		static_cast<UFunction*>(Child)->StaticLink();
	}
	static_cast<UClass*>(Type)->ClassFlags |= CLASS_Constructed;
}

void DefineDelegateFunction(void* Memory, UField* Type)
{
	FStructBuilder Builder(static_cast<UDelegateFunction*>(Type));
	static_cast<FDelegateFunctionParams*>(Memory)->Define(Builder);
	static_cast<UDelegateFunction*>(Type)->StaticLink();
}

void DefineScriptStruct(void* Memory, UField* Type)
{
	const FScriptStructParams& Params = *static_cast<FScriptStructParams*>(Memory);
	FStructBuilder Builder(static_cast<UScriptStruct*>(Type));
	Params.Define(Builder);
	static_cast<UScriptStruct*>(Type)->StaticLink();
}

void DefineEnum(void* Memory, UField* Type)
{
	const FEnumParams& Params = *static_cast<FEnumParams*>(Memory);
	FEnumBuilder Builder(static_cast<UEnum*>(Type));
	Params.Define(Builder);
	Builder.Finish(Params.CppForm, Params.bFlags ? EEnumFlags::Flags : EEnumFlags::None);
}

FFieldClass* GetFieldClass(EPropertyKind Kind)
{
	switch (Kind)
	{
	case EPropertyKind::Bool:
		return FBoolProperty::StaticClass();
	case EPropertyKind::Byte:
		return FByteProperty::StaticClass();
	case EPropertyKind::Int8:
		return FInt8Property::StaticClass();
	case EPropertyKind::Int16:
		return FInt16Property::StaticClass();
	case EPropertyKind::Int:
		return FIntProperty::StaticClass();
	case EPropertyKind::Int64:
		return FInt64Property::StaticClass();
	case EPropertyKind::UInt16:
		return FUInt16Property::StaticClass();
	case EPropertyKind::UInt32:
		return FUInt32Property::StaticClass();
	case EPropertyKind::UInt64:
		return FUInt64Property::StaticClass();
	case EPropertyKind::Float:
		return FFloatProperty::StaticClass();
	case EPropertyKind::Double:
		return FDoubleProperty::StaticClass();
	case EPropertyKind::Str:
		return FStrProperty::StaticClass();
	case EPropertyKind::Name:
		return FNameProperty::StaticClass();
	case EPropertyKind::Text:
		return FTextProperty::StaticClass();
	case EPropertyKind::Enum:
		return FEnumProperty::StaticClass();
	case EPropertyKind::Object:
		return FObjectProperty::StaticClass();
	case EPropertyKind::Class:
		return FClassProperty::StaticClass();
	case EPropertyKind::SoftObject:
		return FSoftObjectProperty::StaticClass();
	case EPropertyKind::SoftClass:
		return FSoftClassProperty::StaticClass();
	case EPropertyKind::WeakObject:
		return FWeakObjectProperty::StaticClass();
	case EPropertyKind::Struct:
		return FStructProperty::StaticClass();
	case EPropertyKind::Delegate:
		return FDelegateProperty::StaticClass();
	case EPropertyKind::MulticastInlineDelegate:
		return FMulticastInlineDelegateProperty::StaticClass();
	case EPropertyKind::Interface:
		return FInterfaceProperty::StaticClass();
	case EPropertyKind::Array:
		return FArrayProperty::StaticClass();
	case EPropertyKind::Set:
		return FSetProperty::StaticClass();
	case EPropertyKind::Map:
		return FMapProperty::StaticClass();
	}
	checkNoEntry();
	return nullptr;
}

void SetTypes(FProperty* Property, const FPropertyParams& Params)
{
	UField* const Type = Params.Type ? Params.Type() : nullptr;
	UClass* const MetaClass = Params.MetaClass ? Params.MetaClass() : nullptr;
	if (FByteProperty* Byte = CastField<FByteProperty>(Property))
	{
		Byte->Enum = static_cast<UEnum*>(Type);
	}
	else if (FEnumProperty* Enum = CastField<FEnumProperty>(Property))
	{
		Enum->SetEnum(static_cast<UEnum*>(Type));
	}
	else if (FStructProperty* Struct = CastField<FStructProperty>(Property))
	{
		Struct->Struct = static_cast<UScriptStruct*>(Type);
	}
	else if (FInterfaceProperty* Interface = CastField<FInterfaceProperty>(Property))
	{
		Interface->InterfaceClass = static_cast<UClass*>(Type);
	}
	else if (FDelegateProperty* Delegate = CastField<FDelegateProperty>(Property))
	{
		Delegate->SignatureFunction = static_cast<UFunction*>(Type);
	}
	else if (FMulticastDelegateProperty* Multicast = CastField<FMulticastDelegateProperty>(Property))
	{
		Multicast->SignatureFunction = static_cast<UFunction*>(Type);
	}
	else if (FObjectPropertyBase* Object = CastField<FObjectPropertyBase>(Property))
	{
		Object->PropertyClass = static_cast<UClass*>(Type);
	}

	if (FClassProperty* Class = CastField<FClassProperty>(Property))
	{
		Class->MetaClass = MetaClass;
	}
	else if (FSoftClassProperty* SoftClass = CastField<FSoftClassProperty>(Property))
	{
		SoftClass->MetaClass = MetaClass;
	}
}

/** Lets the compiler set the bit in memory that is all zero, and looks where it is. */
void PlaceBit(FBoolProperty& Property, const FPropertyParams& Params)
{
	TArray<uint8> Zeros;
	Zeros.SetNum(static_cast<int32>(Params.OwnerSize));
	std::memset(Zeros.GetData(), 0, Params.OwnerSize);
	Params.SetBit(Zeros.GetData());
	const int32 Offset = Zeros.IndexOfByPredicate([](uint8 Byte) { return Byte != 0; });
	Property.SetOffset_Internal(Offset);
	Property.SetBoolSize(1, false, Zeros[Offset]);
}

FProperty* MakeProperty(const FFieldVariant& Owner, const FPropertyParams& Params)
{
	FProperty* const Property =
		static_cast<FProperty*>(GetFieldClass(Params.Kind)->Construct(Owner, FName(Params.Name), RF_Public));
	Property->PropertyFlags |= static_cast<EPropertyFlags>(Params.Flags);
	Property->ArrayDim = Params.ArrayDim;
	Property->SetOffset_Internal(static_cast<int32>(Params.Offset));
	SetTypes(Property, Params);
	if (Params.SetBit)
	{
		PlaceBit(*static_cast<FBoolProperty*>(Property), Params);
	}
	return Property;
}

FString ToString(const char* Text)
{
	return FString(reinterpret_cast<const UTF8CHAR*>(Text));
}
}

FPropertyBuilder& FPropertyBuilder::Meta(const char* Key, const char* Value)
{
	Property->SetMetaData(FName(Key), ReflectedTypes::ToString(Value));
	return *this;
}

FPropertyBuilder& FPropertyBuilder::Inner(const FPropertyParams& Params)
{
	FProperty* const NewInner = ReflectedTypes::MakeProperty(Property, Params);
	if (FArrayProperty* Array = CastField<FArrayProperty>(Property))
	{
		Array->Inner = NewInner;
	}
	else if (FSetProperty* Set = CastField<FSetProperty>(Property))
	{
		Set->ElementProp = NewInner;
	}
	else if (FMapProperty* Map = CastField<FMapProperty>(Property))
	{
		(Map->KeyProp ? Map->ValueProp : Map->KeyProp) = NewInner;
	}
	else
	{
		CastFieldChecked<FEnumProperty>(Property)->AddCppProperty(NewInner);
	}
	return *this;
}

FPropertyBuilder& FPropertyBuilder::Inner(const FPropertyParams& Params, EPropertyKind Underlying)
{
	Inner(Params);
	FProperty* NewInner = nullptr;
	if (const FMapProperty* Map = CastField<FMapProperty>(Property))
	{
		NewInner = Map->ValueProp ? Map->ValueProp : Map->KeyProp;
	}
	else
	{
		const FArrayProperty* Array = CastField<FArrayProperty>(Property);
		NewInner = Array ? Array->Inner : CastFieldChecked<FSetProperty>(Property)->ElementProp;
	}
	FPropertyBuilder(NewInner).Inner({ .Name = "UnderlyingType", .Kind = Underlying });
	return *this;
}

FStructBuilder& FStructBuilder::Meta(const char* Key, const char* Value)
{
	Struct->SetMetaData(FName(Key), ReflectedTypes::ToString(Value));
	return *this;
}

FPropertyBuilder FStructBuilder::Property(const FPropertyParams& Params)
{
	FProperty* const NewProperty = ReflectedTypes::MakeProperty(Struct, Params);
	Struct->AddCppProperty(NewProperty);
	return FPropertyBuilder(NewProperty);
}

FStructBuilder FStructBuilder::Function(const FFunctionParams& Params)
{
	UClass* const Class = static_cast<UClass*>(Struct);
	UFunction* const NewFunction =
		ReflectedTypes::MakeBare<UFunction>(Class, FName(Params.Name), RF_Public | RF_MarkAsNative | RF_Transient);
	FObjectTable::Get().SetIdentity(*NewFunction, UFunction::StaticClass(), Class, FName(Params.Name));
	NewFunction->FunctionFlags = static_cast<EFunctionFlags>(Params.Flags);
	NewFunction->SetNativeFunc(Params.Call);
	SetNativeLayout(NewFunction, static_cast<int32>(Params.ParmsSize), static_cast<int32>(Params.ParmsAlignment));
	if (const UClass* SuperClass = Class->GetSuperClass())
	{
		NewFunction->SetSuperStruct(SuperClass->FindFunctionByName(FName(Params.Name)));
	}
	Class->AddFunction(NewFunction);
	return FStructBuilder(NewFunction);
}

void FStructBuilder::Implements(UClass* Interface, int32 Offset)
{
	static_cast<UClass*>(Struct)->Interfaces.Add(FImplementedInterface(Interface, Offset, false));
}

void FStructBuilder::SetNativeLayout(UStruct* Struct, int32 Size, int32 Alignment)
{
	Struct->PropertiesSize = Size;
	Struct->MinAlignment = Alignment;
	Struct->bNativeLayout = true;
}

FEnumBuilder& FEnumBuilder::Meta(const char* Key, const char* Value)
{
	MetaEntries.Add({ Names.Num() - 1, ReflectedTypes::ToString(Key), ReflectedTypes::ToString(Value) });
	return *this;
}

FEnumBuilder& FEnumBuilder::Value(const char* Name, int64 Value)
{
	Names.Emplace(FName(Name), Value);
	return *this;
}

void FEnumBuilder::Finish(UEnum::ECppForm CppForm, EEnumFlags Flags)
{
	Enum->SetEnums(Names, CppForm, Flags);
	Enum->CppType = Enum->GetName();
	for (const FMetaEntry& Entry : MetaEntries)
	{
		Enum->SetMetaData(*Entry.Key, *Entry.Value, Entry.Index);
	}
}

UClass* GetReflectedType(FClassParams& Params)
{
	const auto Complete = [&Params](UClass& Class) {
		FStructBuilder::SetNativeLayout(&Class, Params.Size, Params.Alignment);
		Class.ClassFlags = static_cast<EClassFlags>(Params.Flags) | CLASS_Native;
		Class.ClassConfigName = FName(Params.ConfigName);
		Class.ClassConstructor = Params.Construct;
		Class.ClassAddReferencedObjects = Params.AddReferencedObjects;
		Class.SetSuperStruct(Params.Super ? Params.Super() : nullptr);
	};
	return ReflectedTypes::FindOrMake<UClass>(Params, Complete, &ReflectedTypes::DefineClass);
}

UScriptStruct* GetReflectedType(FScriptStructParams& Params)
{
	const auto Complete = [&Params](UScriptStruct& Struct) {
		FStructBuilder::SetNativeLayout(&Struct, Params.Size, Params.Alignment);
		Struct.StructFlags = static_cast<EStructFlags>(Params.Flags) | STRUCT_Native;
		Struct.Ops = Params.Ops;
		Struct.SetSuperStruct(Params.Super ? Params.Super() : nullptr);
	};
	return ReflectedTypes::FindOrMake<UScriptStruct>(Params, Complete, &ReflectedTypes::DefineScriptStruct);
}

UEnum* GetReflectedType(FEnumParams& Params)
{
	return ReflectedTypes::FindOrMake<UEnum>(
		Params, [](UEnum&) {}, &ReflectedTypes::DefineEnum);
}

UDelegateFunction* GetReflectedType(FDelegateFunctionParams& Params)
{
	const auto Complete = [&Params](UDelegateFunction& Function) {
		FStructBuilder::SetNativeLayout(
			&Function, static_cast<int32>(Params.ParmsSize), static_cast<int32>(Params.ParmsAlignment));
		Function.FunctionFlags = static_cast<EFunctionFlags>(Params.Flags);
	};
	return ReflectedTypes::FindOrMake<UDelegateFunction>(
		Params, Complete, &ReflectedTypes::DefineDelegateFunction, Params.Owner);
}

FReflectedTypeRegistration::FReflectedTypeRegistration(FClassParams& Params)
{
	ReflectedTypes::FState::Get().Registrations.Add(
		{ &Params, [](void* Memory) -> UField* { return GetReflectedType(*static_cast<FClassParams*>(Memory)); } });
}

FReflectedTypeRegistration::FReflectedTypeRegistration(FScriptStructParams& Params)
{
	ReflectedTypes::FState::Get().Registrations.Add({ &Params,
		[](void* Memory) -> UField* { return GetReflectedType(*static_cast<FScriptStructParams*>(Memory)); } });
}

FReflectedTypeRegistration::FReflectedTypeRegistration(FEnumParams& Params)
{
	ReflectedTypes::FState::Get().Registrations.Add(
		{ &Params, [](void* Memory) -> UField* { return GetReflectedType(*static_cast<FEnumParams*>(Memory)); } });
}

FReflectedTypeRegistration::FReflectedTypeRegistration(FDelegateFunctionParams& Params)
{
	ReflectedTypes::FState::Get().Registrations.Add({ &Params,
		[](void* Memory) -> UField* { return GetReflectedType(*static_cast<FDelegateFunctionParams*>(Memory)); } });
}

void LoadConfigOfDefaultObjectLater(UClass* Class)
{
	ReflectedTypes::FState::Get().WaitingForConfig.Add(Class);
}

void ProcessNewlyLoadedUObjects(FName Package, bool bCanProcessNewlyLoadedObjects)
{
	ReflectedTypes::FState& State = ReflectedTypes::FState::Get();
	if (!bCanProcessNewlyLoadedObjects)
	{
		return;
	}
	if (GConfig)
	{
		for (const TWeakObjectPtr<UClass>& Class : State.WaitingForConfig)
		{
			if (Class.IsValid())
			{
				Class->GetDefaultObject()->LoadConfig();
			}
		}
		State.WaitingForConfig.Empty();
	}

	const TArray<ReflectedTypes::FRegistration> Registrations = MoveTemp(State.Registrations);
	State.Registrations.Empty();
	TArray<UClass*> Classes;
	for (const ReflectedTypes::FRegistration& Registration : Registrations)
	{
		UField* const Type = Registration.Get(Registration.Params);
		if (Type->IsA(UClass::StaticClass()))
		{
			Classes.Add(static_cast<UClass*>(Type));
		}
	}
	for (UClass* Class : Classes)
	{
		Class->GetDefaultObject();
	}
	if (FReflectedTypeReload* const Reload = FReflectedTypeReload::Get())
	{
		Reload->Reinstance();
	}
}
