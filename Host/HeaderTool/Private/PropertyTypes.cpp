#include "Module.h"

#include <algorithm>

namespace
{
struct FSimpleType
{
	std::string_view Name;
	std::string_view Kind;
	bool bBlueprintType;
};

constexpr FSimpleType SimpleTypes[] = {
	{ "bool", "Bool", true },
	{ "int8", "Int8", false },
	{ "int16", "Int16", false },
	{ "int32", "Int", true },
	{ "int", "Int", true },
	{ "int64", "Int64", true },
	{ "uint8", "Byte", true },
	{ "uint16", "UInt16", false },
	{ "uint32", "UInt32", false },
	{ "uint64", "UInt64", false },
	{ "float", "Float", true },
	{ "double", "Double", true },
	{ "FString", "Str", true },
	{ "FName", "Name", true },
	{ "FText", "Text", true },
};

struct FPointerType
{
	std::string_view Name;
	std::string_view Kind;
};

/** Templates of one class argument. */
constexpr FPointerType PointerTypes[] = {
	{ "TObjectPtr", "Object" },
	{ "TSubclassOf", "Class" },
	{ "TSoftObjectPtr", "SoftObject" },
	{ "TSoftClassPtr", "SoftClass" },
	{ "TWeakObjectPtr", "WeakObject" },
};

template <typename TableType>
auto FindByName(const TableType& Table, std::string_view Name) -> decltype(&Table[0])
{
	const auto Found =
		std::find_if(std::begin(Table), std::end(Table), [Name](const auto& Each) { return Each.Name == Name; });
	return Found == std::end(Table) ? nullptr : &*Found;
}

bool IsContainer(const FTypeName& Type)
{
	return Type.Name == "TArray" || Type.Name == "TSet" || Type.Name == "TMap";
}

std::string GetAccessor(const FKnownType& Type)
{
	// "EName" of "EName::Type", but a delegate is known by the class that it is declared in.
	std::string Name = Type.Kind == ETypeKind::Enum ? GetReflectedName(Type) : Type.Name;
	std::replace(Name.begin(), Name.end(), ':', '_');
	return "ReflectedType_" + Name;
}

std::string UnknownType(const FTypeName& Type)
{
	return "Unable to find 'class', 'delegate', 'enum', or 'struct' with name '" + Type.Name + "'";
}

std::string ResolveContainer(const FTypeName& Type, const FTypeRegistry& Types, FPropertyType& OutProperty)
{
	OutProperty.Kind = Type.Name.substr(1);
	const size_t WantedArguments = Type.Name == "TMap" ? 2 : 1;
	if (Type.Arguments.size() != WantedArguments)
	{
		return "Expected " + std::to_string(WantedArguments) + " arguments in '" + Type.ToString() + "'";
	}
	for (const FTypeName& Argument : Type.Arguments)
	{
		if (IsContainer(Argument))
		{
			return "Nested containers are not supported.";
		}
		FPropertyType Inner;
		const std::string Error = ResolvePropertyType(Argument, Types, Inner);
		if (!Error.empty())
		{
			return Error;
		}
		if (Type.Name != "TArray" && OutProperty.Inner.empty() && Inner.Kind == "Text")
		{
			return "The type '" + Argument.Name + "' can not be used as a key in a " + Type.Name;
		}
		OutProperty.bBlueprintType &= Inner.bBlueprintType;
		OutProperty.Inner.push_back(std::move(Inner));
	}
	return {};
}

std::string ResolvePointer(
	const FTypeName& Target, std::string_view Kind, const FTypeRegistry& Types, FPropertyType& OutProperty)
{
	const FKnownType* Known = Types.Find(Target.Name);
	if (!Known)
	{
		return UnknownType(Target);
	}
	if (Known->Kind != ETypeKind::Class)
	{
		return "Inappropriate '*' on variable of type '" + Target.Name +
			   "', cannot have an exposed pointer to this type.";
	}
	OutProperty.Kind = Kind;
	OutProperty.bInstanced = Kind == "Object" && Types.IsInstanced(Known->Name);
	OutProperty.TypeAccessor = GetAccessor(*Known);
	if (Kind == "Class" || Kind == "SoftClass")
	{
		OutProperty.TypeAccessor = "ReflectedType_UClass";
		OutProperty.MetaClassAccessor = GetAccessor(*Known);
	}
	else if (Target.Name == "UClass" && Kind == "Object")
	{
		OutProperty.Kind = "Class";
		OutProperty.MetaClassAccessor = "ReflectedType_UObject";
	}
	return {};
}

std::string ResolveEnum(const FTypeName& Type, const FKnownType& Enum, FPropertyType& OutProperty)
{
	if (!Enum.bScoped)
	{
		return "You cannot use the raw enum name '" + Type.Name +
			   "' as a type for member variables, instead use TEnumAsByte or a C++11 enum class with an explicit "
			   "underlying type.";
	}
	const FSimpleType* Underlying = FindByName(SimpleTypes, Enum.Underlying.empty() ? "int32" : Enum.Underlying);
	if (!Underlying)
	{
		return "The enum '" + Type.Name + "' has the unsupported underlying type '" + Enum.Underlying + "'";
	}
	FPropertyType Number;
	Number.Kind = Underlying->Kind;
	OutProperty.Kind = "Enum";
	OutProperty.TypeAccessor = GetAccessor(Enum);
	OutProperty.bBlueprintType = Enum.Underlying == "uint8";
	OutProperty.Inner.push_back(std::move(Number));
	return {};
}

std::string ResolveByteEnum(const FTypeName& Type, const FTypeRegistry& Types, FPropertyType& OutProperty)
{
	const FKnownType* Enum = Type.Arguments.size() == 1 ? Types.Find(Type.Arguments[0].Name) : nullptr;
	if (!Enum || Enum->Kind != ETypeKind::Enum)
	{
		return "TEnumAsByte needs a reflected enum: '" + Type.ToString() + "'";
	}
	OutProperty.Kind = "Byte";
	OutProperty.TypeAccessor = GetAccessor(*Enum);
	return {};
}

std::string ResolveInterface(const FTypeName& Type, const FTypeRegistry& Types, FPropertyType& OutProperty)
{
	const FKnownType* const Interface =
		Type.Arguments.size() == 1 ? Types.FindInterface(Type.Arguments[0].Name) : nullptr;
	if (!Interface)
	{
		return "TScriptInterface needs a reflected interface: '" + Type.ToString() + "'";
	}
	OutProperty.Kind = "Interface";
	OutProperty.bWrapped = true;
	OutProperty.TypeAccessor = GetAccessor(*Interface);
	return {};
}

std::string ResolveKnown(const FTypeName& Type, const FTypeRegistry& Types, FPropertyType& OutProperty)
{
	const FKnownType* Known = Types.Find(Type.Name);
	if (!Known)
	{
		return UnknownType(Type);
	}
	if (Known->Kind == ETypeKind::Class)
	{
		return "The class '" + Type.Name + "' can only be used through a pointer";
	}
	if (Known->Kind == ETypeKind::Enum)
	{
		return ResolveEnum(Type, *Known, OutProperty);
	}
	OutProperty.Kind = Known->Kind == ETypeKind::Struct     ? "Struct"
					   : Known->Kind == ETypeKind::Delegate ? "Delegate"
															: "MulticastInlineDelegate";
	OutProperty.TypeAccessor = GetAccessor(*Known);
	return {};
}
}

std::string ResolvePropertyType(const FTypeName& Type, const FTypeRegistry& Types, FPropertyType& OutProperty)
{
	if (Type.bPointer)
	{
		if (FindByName(SimpleTypes, Type.Name) || !Type.Arguments.empty())
		{
			return "Inappropriate '*' on variable of type '" + Type.Name +
				   "', cannot have an exposed pointer to this type.";
		}
		return ResolvePointer(Type, "Object", Types, OutProperty);
	}
	if (const FSimpleType* Simple = FindByName(SimpleTypes, Type.Name))
	{
		OutProperty.Kind = Simple->Kind;
		OutProperty.bBlueprintType = Simple->bBlueprintType;
		return {};
	}
	if (IsContainer(Type))
	{
		return ResolveContainer(Type, Types, OutProperty);
	}
	if (Type.Name == "TEnumAsByte")
	{
		return ResolveByteEnum(Type, Types, OutProperty);
	}
	if (Type.Name == "TScriptInterface")
	{
		return ResolveInterface(Type, Types, OutProperty);
	}
	if (const FPointerType* Pointer = FindByName(PointerTypes, Type.Name))
	{
		OutProperty.bWrapped = Type.Name == "TObjectPtr" || Type.Name == "TSubclassOf";
		return Type.Arguments.size() == 1 ? ResolvePointer(Type.Arguments[0], Pointer->Kind, Types, OutProperty)
										  : "Expected 1 argument in '" + Type.ToString() + "'";
	}
	return ResolveKnown(Type, Types, OutProperty);
}

FTypeName GetStoredType(const FTypeName& Type, const FTypeRegistry& Types)
{
	const FKnownType* Known = Types.Find(Type.Name);
	if (!Known || Known->Kind != ETypeKind::Enum || Known->bScoped || Type.bPointer)
	{
		return Type;
	}
	FTypeName Stored;
	Stored.Name = "TEnumAsByte";
	Stored.Arguments.push_back({ .Name = Type.Name });
	Stored.bConst = Type.bConst;
	Stored.bReference = Type.bReference;
	return Stored;
}
