#include "Module.h"

#include <algorithm>

namespace
{
bool HasFlag(const FFlagNames& Flags, std::string_view Flag)
{
	return std::find(Flags.begin(), Flags.end(), Flag) != Flags.end();
}

class FResolver
{
public:
	FResolver(FModule& InModule, FErrors& InErrors)
		: Module(InModule)
		, Errors(InErrors)
	{
	}

	void Run()
	{
		CheckHeaderNames();
		ForEachHeader([this](FParsedHeader& Header) { EnterTypes(Header); });
		ForEachHeader([this](FParsedHeader& Header) { ResolveTypes(Header); });
	}

private:
	template <typename FunctionType>
	void ForEachHeader(FunctionType Function)
	{
		for (FParsedHeader& Header : Module.Headers)
		{
			Current = &Header;
			Function(Header);
		}
	}

	void Error(int Line, const std::string& Text) { Errors.Add(Current->Path, Line, Text); }

	void CheckHeaderNames()
	{
		std::vector<FKnownHeader> Headers = Module.KnownHeaders;
		ForEachHeader([&](FParsedHeader& Header) {
			if (!Header.HasTypes())
			{
				return;
			}
			for (const FKnownHeader& Other : Headers)
			{
				if (EqualsIgnoreCase(Other.Stem, Header.Stem))
				{
					Error(1, "Two headers with the same name is not allowed: '" + Header.Stem +
								 ".h' is also in module '" + Other.Module + "'");
				}
			}
			Headers.push_back({ Header.Stem, Module.Name });
		});
	}

	void EnterTypes(FParsedHeader& Header)
	{
		for (const FParsedStruct& Struct : Header.Structs)
		{
			FKnownType Type;
			Type.Kind = Struct.bClass ? ETypeKind::Class : ETypeKind::Struct;
			Type.Name = Struct.Name;
			Type.Super = Struct.Super;
			Type.bBlueprintType = Struct.bBlueprintType;
			Type.bConfig = !Struct.ConfigName.empty();
			Type.bDeclaresConstructor = Struct.bDeclaresConstructor;
			Type.bDeclaresInitializer = Struct.bTakesInitializer;
			Type.bInstanced = HasFlag(Struct.Flags, "CLASS_DefaultToInstanced");
			Enter(Type, Struct.Line);
		}
		for (const FParsedEnum& Enum : Header.Enums)
		{
			FKnownType Type;
			Type.Kind = ETypeKind::Enum;
			Type.Name = Enum.GetCppName();
			Type.Underlying = Enum.Underlying;
			Type.bScoped = Enum.bScoped;
			Type.bBlueprintType = Enum.bBlueprintType;
			Enter(Type, Enum.Line);
		}
		for (const FParsedDelegate& Delegate : Header.Delegates)
		{
			FKnownType Type;
			Type.Kind = Delegate.bMulticast ? ETypeKind::MulticastDelegate : ETypeKind::Delegate;
			Type.Name = Delegate.GetCppName();
			Enter(Type, Delegate.Signature.Line);
		}
	}

	void Enter(FKnownType& Type, int Line)
	{
		if (const FKnownType* Other = Module.Types.FindReflectedName(GetReflectedName(Type)))
		{
			Error(Line, "'" + Type.Name + "' shares engine name '" + GetReflectedName(Type) + "' with '" + Other->Name +
							"' in module '" + Other->Module + "'");
			return;
		}
		Type.Module = Module.Name;
		Module.Types.Add(Type);
	}

	void ResolveTypes(FParsedHeader& Header)
	{
		for (FParsedStruct& Struct : Header.Structs)
		{
			CheckSuper(Struct);
			CheckPrefix(Struct);
			Struct.bTakesInitializer |= Struct.bClass && Module.Types.TakesInitializer(Struct.Name);
			CheckInterfaces(Struct);
			for (FParsedProperty& Property : Struct.Properties)
			{
				ResolveProperty(Struct, Property);
			}
			for (FParsedFunction& Function : Struct.Functions)
			{
				ResolveParameters(Function, Struct.Name);
			}
		}
		for (FParsedDelegate& Delegate : Header.Delegates)
		{
			ResolveParameters(Delegate.Signature, Delegate.Owner);
		}
	}

	void ResolveParameters(FParsedFunction& Function, const std::string& ClassName)
	{
		for (FParsedProperty& Parameter : Function.Parameters)
		{
			Qualify(Parameter.Type, ClassName);
			ResolveParameter(Function, Parameter);
		}
	}

	/** The generated code stands outside of the class, and the class's delegates are named in full there. */
	void Qualify(FTypeName& Type, const std::string& ClassName) const
	{
		const FKnownType* Known = Module.Types.FindInClass(Type.Name, ClassName);
		if (Known && IsDelegate(Known->Kind))
		{
			Type.Name = Known->Name;
		}
		for (FTypeName& Argument : Type.Arguments)
		{
			Qualify(Argument, ClassName);
		}
	}

	void CheckSuper(const FParsedStruct& Struct)
	{
		const FKnownType* Super = Module.Types.Find(Struct.Super);
		const std::string What = Struct.bClass ? "class" : "struct";
		if (Struct.bClass && Struct.Super.empty() && !Struct.bIntrinsic)
		{
			Error(Struct.Line, "Class '" + Struct.Name + "' must inherit UObject or a UObject-derived class");
		}
		else if (!Struct.Super.empty() && (!Super || (Super->Kind == ETypeKind::Class) != Struct.bClass))
		{
			Error(Struct.Line,
				"Unable to find parent " + What + " type for '" + Struct.Name + "' named '" + Struct.Super + "'");
		}
	}

	/** Leaves the interfaces that are reflected. */
	void CheckInterfaces(FParsedStruct& Struct)
	{
		std::erase_if(Struct.Interfaces, [this](const std::string& Name) { return !Module.Types.FindInterface(Name); });
		if (Struct.bInterface && Struct.NativeBodyLine == 0)
		{
			Error(Struct.Line, "Native interface '" + Struct.GetNativeName() + "' not found: UINTERFACE '" +
								   Struct.Name + "' needs a class of this name with GENERATED_BODY()");
		}
	}

	void CheckPrefix(const FParsedStruct& Struct)
	{
		const char Wanted = !Struct.bClass ? 'F' : Module.Types.IsChildOf(Struct.Name, "AActor") ? 'A' : 'U';
		if (Struct.Name[0] == Wanted && Struct.Name.size() > 1 &&
			std::isupper(static_cast<unsigned char>(Struct.Name[1])))
		{
			return;
		}
		const bool bHasPrefix = Struct.Name.size() > 1 && std::isupper(static_cast<unsigned char>(Struct.Name[0])) &&
								std::isupper(static_cast<unsigned char>(Struct.Name[1]));
		Error(Struct.Line, std::string(Struct.bClass ? "Class" : "Struct") + " '" + Struct.Name +
							   "' has an invalid Unreal prefix, expecting '" + Wanted +
							   Struct.Name.substr(bHasPrefix ? 1 : 0) + "'");
	}

	void ResolveProperty(const FParsedStruct& Struct, FParsedProperty& Property)
	{
		if (Property.Type.bReference)
		{
			Error(Property.Line, "The variable '" + Property.Name + "' cannot be a reference");
			return;
		}
		Qualify(Property.Type, Struct.Name);
		const std::string TypeError = ResolvePropertyType(Property.Type, Module.Types, Property.Property);
		if (!TypeError.empty())
		{
			Error(Property.Line, TypeError);
			return;
		}
		if (Property.Property.bWrapped)
		{
			Property.Flags.push_back("CPF_UObjectWrapper");
		}
		AddInstancedFlags(Property);
		CheckDelegateSpecifiers(Property);
		if (!Property.ArrayDim.empty() && !Property.Property.Inner.empty() && Property.Property.Kind != "Enum")
		{
			Error(Property.Line, "Static arrays of containers are not allowed");
		}
		if (HasFlag(Property.Flags, "CPF_BlueprintVisible") && !Property.Property.bBlueprintType)
		{
			Error(Property.Line, "Type '" + Property.Type.ToString(true) + "' is not supported by blueprint. " +
									 Struct.GetReflectedName() + "." + Property.Name);
		}
		if (HasFlag(Property.Flags, "CPF_Config") && Struct.bClass && !HasConfig(Struct.Name))
		{
			Error(Property.Line, "Classes with config / globalconfig member variables need to specify config file.");
		}
	}

	static void AddInstancedFlags(FParsedProperty& Property)
	{
		const std::vector<FPropertyType>& Inner = Property.Property.Inner;
		if (Property.Property.bInstanced)
		{
			Property.Flags.insert(Property.Flags.end(), { "CPF_ExportObject", "CPF_InstancedReference" });
			Property.Meta.SetDefault("EditInline", "true");
		}
		else if (std::any_of(Inner.begin(), Inner.end(), [](const FPropertyType& Each) { return Each.bInstanced; }))
		{
			Property.Flags.insert(Property.Flags.end(), { "CPF_ExportObject", "CPF_ContainsInstancedReference" });
			Property.Meta.SetDefault("EditInline", "true");
		}
	}

	void CheckDelegateSpecifiers(const FParsedProperty& Property)
	{
		for (const std::string_view Name : { "BlueprintAssignable", "BlueprintCallable" })
		{
			if (HasFlag(Property.Flags, "CPF_" + std::string(Name)) &&
				Property.Property.Kind != "MulticastInlineDelegate")
			{
				Error(Property.Line, "'" + std::string(Name) + "' is only allowed on multicast delegate properties");
			}
		}
	}

	bool HasConfig(const std::string& ClassName) const
	{
		for (const FKnownType* Type = Module.Types.Find(ClassName); Type; Type = Module.Types.Find(Type->Super))
		{
			if (Type->bConfig)
			{
				return true;
			}
		}
		return false;
	}

	void ResolveParameter(const FParsedFunction& Function, FParsedProperty& Parameter)
	{
		const std::string TypeError =
			ResolvePropertyType(GetStoredType(Parameter.Type, Module.Types), Module.Types, Parameter.Property);
		if (!TypeError.empty())
		{
			Error(Parameter.Line, TypeError);
		}
		else if (!Parameter.Property.bBlueprintType && HasFlag(Function.Flags, "FUNC_BlueprintCallable"))
		{
			Error(Parameter.Line, "Type '" + Parameter.Type.ToString(true) +
									  "' is not supported by blueprint. Function: " + Function.Name + " Parameter " +
									  Parameter.Name);
		}
	}

	FModule& Module;
	FErrors& Errors;
	FParsedHeader* Current = nullptr;
};
}

void ResolveModule(FModule& Module, FErrors& Errors)
{
	FResolver(Module, Errors).Run();
}
