#include "Generate.h"

#include <algorithm>
#include <set>

namespace
{
std::string Quote(std::string_view Text)
{
	std::string Result = "\"";
	for (const char Character : Text)
	{
		if (Character == '\n')
		{
			Result += "\\n";
			continue;
		}
		if (Character == '"' || Character == '\\')
		{
			Result += '\\';
		}
		Result += Character;
	}
	return Result + "\"";
}

/** Calls of Meta(Key, Value) to be chained behind a builder's call. */
std::string FormatMeta(const FMetaData& Meta)
{
	std::string Text;
	for (const auto& [Key, Value] : Meta.GetEntries())
	{
		Text += "\n\t\t\t.Meta(" + Quote(Key) + ", " + Quote(Value) + ")";
	}
	return Text;
}

void CollectAccessors(const FPropertyType& Type, std::set<std::string>& Accessors)
{
	for (const std::string& Accessor : { Type.TypeAccessor, Type.MetaClassAccessor })
	{
		if (Accessor.empty())
		{
			continue;
		}
		const std::string Returned = Type.Kind.ends_with("Delegate")              ? "UDelegateFunction"
									 : Type.Kind == "Struct"                      ? "UScriptStruct"
									 : Type.Kind == "Byte" || Type.Kind == "Enum" ? "UEnum"
																				  : "UClass";
		Accessors.insert(Returned + "* " + Accessor + "();");
	}
	for (const FPropertyType& Inner : Type.Inner)
	{
		CollectAccessors(Inner, Accessors);
	}
}

/** The fields of FPropertyParams that depend on the type alone. */
std::string FormatTypeFields(const FPropertyType& Type)
{
	std::string Text;
	if (!Type.TypeAccessor.empty())
	{
		Text += ", .Type = []() -> UField* { return " + Type.TypeAccessor + "(); }";
	}
	if (!Type.MetaClassAccessor.empty())
	{
		Text += ", .MetaClass = &" + Type.MetaClassAccessor;
	}
	return Text;
}

std::string FormatInnerFlags(const FPropertyType& Inner)
{
	FFlagNames Flags;
	if (Inner.bWrapped)
	{
		Flags.push_back("CPF_UObjectWrapper");
	}
	if (Inner.bInstanced)
	{
		Flags.push_back("CPF_InstancedReference");
	}
	return Flags.empty() ? "" : ", .Flags = " + JoinFlags(Flags, "");
}

std::string FormatInner(const FParsedProperty& Property)
{
	std::string Text;
	for (size_t Index = 0; Index < Property.Property.Inner.size(); ++Index)
	{
		const FPropertyType& Inner = Property.Property.Inner[Index];
		const std::string Name = Property.Property.Kind == "Enum"  ? "UnderlyingType"
								 : Property.Property.Kind != "Map" ? Property.Name
								 : Index == 0                      ? Property.Name + "_Key"
																   : Property.Name;
		Text += "\n\t\t\t.Inner({ .Name = " + Quote(Name) + ", .Kind = EPropertyKind::" + Inner.Kind +
				FormatInnerFlags(Inner) + FormatTypeFields(Inner) + " }";
		for (const FPropertyType& Underlying : Inner.Inner)
		{
			Text += ", EPropertyKind::" + Underlying.Kind;
		}
		Text += ")";
	}
	return Text;
}

std::string FormatProperty(const FParsedProperty& Property, const std::string& Owner, std::string_view Builder)
{
	const std::string MemberName = Property.Name + (std::find(Property.Flags.begin(), Property.Flags.end(),
														"CPF_Deprecated") == Property.Flags.end()
														   ? ""
														   : "_DEPRECATED");
	std::string Text = "\t\t" + std::string(Builder) + ".Property({ .Name = " + Quote(Property.Name) +
					   ", .Kind = EPropertyKind::" + (Property.bBitField ? "Bool" : Property.Property.Kind) +
					   ", .Flags = " + JoinFlags(Property.Flags, "CPF_None");
	if (Property.bBitField)
	{
		Text += ", .SetBit = [](void* Owner) { static_cast<" + Owner + "*>(Owner)->" + MemberName + " = 1; }";
		Text += ", .OwnerSize = sizeof(" + Owner + ")";
	}
	else
	{
		Text += ", .Offset = STRUCT_OFFSET(" + Owner + ", " + MemberName + ")";
	}
	if (!Property.ArrayDim.empty())
	{
		Text += ", .ArrayDim = CPP_ARRAY_DIM(" + MemberName + ", " + Owner + ")";
	}
	Text += FormatTypeFields(Property.Property) + " })" + FormatInner(Property) + FormatMeta(Property.Meta) + ";\n";
	return Text;
}

std::string FormatParmsStruct(const FParsedFunction& Function, const FTypeRegistry& Types)
{
	std::string Text = "\tstruct FParms_" + Function.Name + "\n\t{\n";
	for (const FParsedProperty& Parameter : Function.Parameters)
	{
		Text += "\t\t" + GetStoredType(Parameter.Type, Types).ToString(true) + " " + Parameter.Name + "{};\n";
	}
	return Text + "\t};\n\n";
}

std::string FormatThunk(const FParsedStruct& Class, const FParsedFunction& Function)
{
	std::string Arguments;
	for (size_t Index = 0; Index < Function.Parameters.size() - Function.bReturns; ++Index)
	{
		Arguments += (Index == 0 ? "Parms." : ", Parms.") + Function.Parameters[Index].Name;
	}
	const std::string Self = Class.bInterface ? "Self" : "static_cast<" + Class.Name + "*>(Object)";
	const std::string Callee = Function.bStatic ? Class.Name + "::" : Self + "->";
	std::string Text =
		"\tstatic void Call_" + Function.Name + "([[maybe_unused]] UObject* Object, void* ParmsMemory)\n\t{\n";
	Text += "\t\t[[maybe_unused]] auto& Parms = *static_cast<FParms_" + Function.Name + "*>(ParmsMemory);\n\t\t";
	if (Class.bInterface)
	{
		// Nothing is called of an object that implements the interface in a Blueprint only.
		Text += "auto* const Self = static_cast<" + Class.GetNativeName() + "*>(Object->GetNativeInterfaceAddress(" +
				Class.Name + "::StaticClass()));\n\t\tif (!Self)\n\t\t{\n\t\t\treturn;\n\t\t}\n\t\t";
	}
	Text += (Function.bReturns ? "Parms.ReturnValue = " : "") + Callee + Function.Name;
	Text +=
		std::string(Function.Event == EEventKind::Native ? "_Implementation" : "") + "(" + Arguments + ");\n\t}\n\n";
	return Text;
}

bool HasThunk(const FParsedFunction& Function)
{
	return Function.Event != EEventKind::Implementable && !Function.bCustomThunk;
}

std::string FormatFunction(const FParsedFunction& Function)
{
	std::string Text =
		"\t\t{\n\t\t[[maybe_unused]] auto Function = Builder.Function({ .Name = " + Quote(Function.Name) +
		", .Flags = " + JoinFlags(Function.Flags, "FUNC_None") + ", .ParmsSize = sizeof(FParms_" + Function.Name +
		"), .ParmsAlignment = alignof(FParms_" + Function.Name + ")";
	Text += HasThunk(Function) ? ", .Call = &Call_" + Function.Name : "";
	Text += " });\n";
	if (!Function.Meta.GetEntries().empty())
	{
		Text += "\t\tFunction" + FormatMeta(Function.Meta) + ";\n";
	}
	for (const FParsedProperty& Parameter : Function.Parameters)
	{
		Text += FormatProperty(Parameter, "FParms_" + Function.Name, "Function");
	}
	return Text + "\t\t}\n";
}

/** The body of a function that a Blueprint may override: it calls whatever function the object's class has. */
std::string FormatEventBody(const FParsedStruct& Class, const FParsedFunction& Function)
{
	std::string Text = FormatReturnType(Function) + " " + Class.Name + "::" + Function.Name + "(" +
					   FormatParameters(Function) + ")" + (Function.bConst ? " const" : "") + "\n{\n";
	Text += "\tFReflected_" + Class.Name + "::FParms_" + Function.Name + " Parms;\n";
	std::string CopyBack;
	for (size_t Index = 0; Index < Function.Parameters.size() - Function.bReturns; ++Index)
	{
		const FParsedProperty& Parameter = Function.Parameters[Index];
		Text += "\tParms." + Parameter.Name + " = " + Parameter.Name + ";\n";
		if (Parameter.Type.bReference && !Parameter.Type.bConst)
		{
			CopyBack += "\t" + Parameter.Name + " = Parms." + Parameter.Name + ";\n";
		}
	}
	const std::string Self = Function.bConst ? "const_cast<" + Class.Name + "*>(this)->" : "";
	Text += "\t" + Self + "ProcessEvent(FindFunctionChecked(TEXT(\"" + Function.Name + "\")), &Parms);\n" + CopyBack;
	return Text + (Function.bReturns ? "\treturn Parms.ReturnValue;\n" : "") + "}\n\n";
}

/** The two bodies of an interface's event: the one that must not be called, and the one that calls the object's. */
std::string FormatInterfaceEventBodies(const FParsedStruct& Interface, const FParsedFunction& Function)
{
	const std::string Native = Interface.GetNativeName();
	const std::string Returned = FormatReturnType(Function);
	const std::string Parameters = FormatParameters(Function);
	const std::string Object = Function.bConst ? "const_cast<UObject*>(O)" : "O";
	std::string Text = Returned + " " + Native + "::" + Function.Name + "(" + Parameters + ")" +
					   (Function.bConst ? " const" : "") + "\n{\n\tcheckf(false, TEXT(\"Do not directly call Event " +
					   "functions in Interfaces. Call Execute_" + Function.Name + " instead.\"));\n" +
					   (Function.bReturns ? "\treturn {};\n" : "") + "}\n\n";
	Text += Returned + " " + Native + "::Execute_" + Function.Name + "(" +
			(Function.bConst ? "const UObject* O" : "UObject* O") + (Parameters.empty() ? "" : ", " + Parameters) +
			")\n{\n\tcheckf(O && O->GetClass()->ImplementsInterface(" + Interface.Name +
			"::StaticClass()), TEXT(\"Execute_" + Function.Name + " needs an object that implements " +
			Interface.GetReflectedName() + "\"));\n";
	Text += "\tFReflected_" + Interface.Name + "::FParms_" + Function.Name + " Parms;\n";
	std::string CopyBack;
	for (size_t Index = 0; Index < Function.Parameters.size() - Function.bReturns; ++Index)
	{
		const FParsedProperty& Parameter = Function.Parameters[Index];
		Text += "\tParms." + Parameter.Name + " = " + Parameter.Name + ";\n";
		if (Parameter.Type.bReference && !Parameter.Type.bConst)
		{
			CopyBack += "\t" + Parameter.Name + " = Parms." + Parameter.Name + ";\n";
		}
	}
	Text += "\t" + Object + "->ProcessEvent(" + Object + "->FindFunctionChecked(TEXT(\"" + Function.Name +
			"\")), &Parms);\n" + CopyBack;
	return Text + (Function.bReturns ? "\treturn Parms.ReturnValue;\n" : "") + "}\n\n";
}

std::string FormatDescription(const FParsedStruct& Struct, const FTypeRegistry& Types)
{
	std::string Text = "struct FReflected_" + Struct.Name + "\n{\n";
	if (Struct.bClass)
	{
		Text += "\tstatic void Construct(const FObjectInitializer& Initializer)\n\t{\n\t\t::new (static_cast<void*>("
				"Initializer.GetObj())) " +
				Struct.Name + (Struct.bTakesInitializer ? "(Initializer)" : "()") + ";\n\t}\n\n";
	}
	for (const FParsedFunction& Function : Struct.Functions)
	{
		Text += FormatParmsStruct(Function, Types) + (HasThunk(Function) ? FormatThunk(Struct, Function) : "");
	}

	Text += "\tstatic void Define([[maybe_unused]] FStructBuilder& Builder)\n\t{\n";
	if (!Struct.Meta.GetEntries().empty())
	{
		Text += "\t\tBuilder" + FormatMeta(Struct.Meta) + ";\n";
	}
	for (const std::string& Interface : Struct.Interfaces)
	{
		Text += "\t\tBuilder.Implements(U" + Interface.substr(1) +
				"::StaticClass(), static_cast<int32>(reinterpret_cast<UPTRINT>(static_cast<" + Interface +
				"*>(reinterpret_cast<" + Struct.Name + "*>(0x10000))) - 0x10000));\n";
	}
	for (const FParsedProperty& Property : Struct.Properties)
	{
		Text += FormatProperty(Property, Struct.Name, "Builder");
	}
	for (const FParsedFunction& Function : Struct.Functions)
	{
		Text += FormatFunction(Function);
	}
	return Text + "\t}\n};\n\n";
}

std::string FormatRegistration(const std::string& Name)
{
	return "static const FReflectedTypeRegistration Registration_" + Name + "(Params_" + Name + ");\n\n";
}

std::string FormatAccessor(const FModule& Module, const std::string& Returned, const std::string& Name)
{
	const std::string Signature = Module.ApiMacro + " " + Returned + "* ReflectedType_" + Name + "()";
	return Signature + ";\n" + Signature + "\n{\n\treturn GetReflectedType(Params_" + Name + ");\n}\n\n";
}

std::string FormatStruct(const FModule& Module, const FParsedStruct& Struct)
{
	const std::string& Name = Struct.Name;
	std::string Text = FormatDescription(Struct, Module.Types);
	Text += "static constinit F" + std::string(Struct.bClass ? "Class" : "ScriptStruct") + "Params Params_" + Name +
			" = { .Base = { .Name = " + Quote(Struct.GetReflectedName()) + ", .Package = \"/Script/" + Module.Name +
			"\" }, .Size = sizeof(" + Name + "), .Alignment = alignof(" + Name + ")";
	if (!Struct.Super.empty())
	{
		Text += ", .Super = &ReflectedType_" + Struct.Super;
	}
	Text += ", .Define = &FReflected_" + Name + "::Define";
	if (Struct.bClass)
	{
		Text += ", .Flags = " + JoinFlags(Struct.Flags, "CLASS_None") + ", .ConfigName = " + Quote(Struct.ConfigName) +
				", .Construct = &FReflected_" + Name + "::Construct, .AddReferencedObjects = &" + Name +
				"::AddReferencedObjects };\n\n";
		Text += FormatAccessor(Module, "UClass", Name);
		Text += "UClass* " + Name + "::StaticClass()\n{\n\treturn ReflectedType_" + Name + "();\n}\n\n";
	}
	else
	{
		Text += ", .Flags = " + JoinFlags(Struct.Flags, "STRUCT_NoFlags") + ", .Ops = &TCppStructOps<" + Name +
				">::Ops };\n\n";
		Text += FormatAccessor(Module, "UScriptStruct", Name);
		if (!Struct.bNoExport)
		{
			Text += "UScriptStruct* " + Name + "::StaticStruct()\n{\n\treturn ReflectedType_" + Name + "();\n}\n\n";
		}
	}
	for (const FParsedFunction& Function : Struct.Functions)
	{
		Text += Function.Event == EEventKind::None ? ""
				: Struct.bInterface                ? FormatInterfaceEventBodies(Struct, Function)
												   : FormatEventBody(Struct, Function);
	}
	return Text + FormatRegistration(Name);
}

std::string FormatEnum(const FModule& Module, const FParsedEnum& Enum)
{
	const std::string& Name = Enum.Name;
	const std::string CppName = Enum.GetCppName();
	std::string Text = "static void Define_" + Name + "(FEnumBuilder& Builder)\n{\n";
	if (!Enum.Meta.GetEntries().empty())
	{
		Text += "\tBuilder" + FormatMeta(Enum.Meta) + ";\n";
	}
	for (const FParsedEnumerator& Enumerator : Enum.Enumerators)
	{
		const std::string FullName = (Enum.bScoped || Enum.bNamespaced ? Name + "::" : "") + Enumerator.Name;
		Text += "\tBuilder.Value(" + Quote(FullName) + ", static_cast<int64>(" + Name + "::" + Enumerator.Name + "))" +
				FormatMeta(Enumerator.Meta) + ";\n";
	}
	Text += "}\n\nstatic constinit FEnumParams Params_" + Name + " = { .Base = { .Name = " + Quote(Name) +
			", .Package = \"/Script/" + Module.Name + "\" }, .CppForm = UEnum::ECppForm::" +
			(Enum.bNamespaced  ? "Namespaced"
				: Enum.bScoped ? "EnumClass"
							   : "Regular") +
			", .bFlags = " + (Enum.bFlags ? "true" : "false") + ", .Define = &Define_" + Name + " };\n\n";
	Text += FormatAccessor(Module, "UEnum", Name);
	Text += "template <> " + Module.ApiMacro + " UEnum* StaticEnum<" + CppName + ">()\n{\n\treturn ReflectedType_" +
			Name + "();\n}\n\n";
	return Text + FormatRegistration(Name);
}

/** A delegate's signature: a function that nobody calls. */
std::string FormatDelegate(const FModule& Module, const FParsedDelegate& Delegate)
{
	std::string Name = Delegate.GetCppName();
	std::replace(Name.begin(), Name.end(), ':', '_');
	const std::string Parms = "FParms_" + Delegate.Signature.Name;
	std::string Text = "struct FReflected_" + Name + "\n{\n" + FormatParmsStruct(Delegate.Signature, Module.Types) +
					   "\tstatic void Define([[maybe_unused]] FStructBuilder& Builder)\n\t{\n";
	if (!Delegate.Signature.Meta.GetEntries().empty())
	{
		Text += "\t\tBuilder" + FormatMeta(Delegate.Signature.Meta) + ";\n";
	}
	for (const FParsedProperty& Parameter : Delegate.Signature.Parameters)
	{
		Text += FormatProperty(Parameter, Parms, "Builder");
	}
	Text += "\t}\n};\n\nstatic constinit FDelegateFunctionParams Params_" + Name +
			" = { .Base = { .Name = " + Quote(Delegate.GetReflectedName()) + ", .Package = \"/Script/" + Module.Name +
			"\" }, .Flags = " + JoinFlags(Delegate.Signature.Flags, "FUNC_None") + ", .ParmsSize = sizeof(FReflected_" +
			Name + "::" + Parms + "), .ParmsAlignment = alignof(FReflected_" + Name + "::" + Parms +
			"), .Define = &FReflected_" + Name + "::Define";
	Text += Delegate.Owner.empty() ? "" : ", .Owner = &ReflectedType_" + Delegate.Owner;
	return Text + " };\n\n" + FormatAccessor(Module, "UDelegateFunction", Name) + FormatRegistration(Name);
}

std::string FormatAccessorDeclarations(const FParsedHeader& Header)
{
	std::set<std::string> Accessors;
	for (const FParsedStruct& Struct : Header.Structs)
	{
		if (Struct.bIntrinsic)
		{
			continue;
		}
		if (!Struct.Super.empty())
		{
			Accessors.insert(
				(Struct.bClass ? "UClass* ReflectedType_" : "UScriptStruct* ReflectedType_") + Struct.Super + "();");
		}
		for (const FParsedProperty& Property : Struct.Properties)
		{
			CollectAccessors(Property.Property, Accessors);
		}
		for (const FParsedFunction& Function : Struct.Functions)
		{
			for (const FParsedProperty& Parameter : Function.Parameters)
			{
				CollectAccessors(Parameter.Property, Accessors);
			}
		}
	}

	for (const FParsedDelegate& Delegate : Header.Delegates)
	{
		if (!Delegate.Owner.empty())
		{
			Accessors.insert("UClass* ReflectedType_" + Delegate.Owner + "();");
		}
		for (const FParsedProperty& Parameter : Delegate.Signature.Parameters)
		{
			CollectAccessors(Parameter.Property, Accessors);
		}
	}

	std::string Text;
	for (const std::string& Accessor : Accessors)
	{
		Text += Accessor + "\n";
	}
	return Text + "\n";
}
}

std::string GenerateSource(const FModule& Module, const FParsedHeader& Header)
{
	std::string Text = "// Written by HeaderTool from " + Header.IncludePath + ".\n\n";
	Text += "#include \"UObject/GeneratedCppIncludes.h\"\n#include \"" + Header.IncludePath + "\"\n\n";
	Text += "#pragma clang diagnostic ignored \"-Winvalid-offsetof\"\n\n";
	Text += FormatAccessorDeclarations(Header);
	for (const FParsedEnum& Enum : Header.Enums)
	{
		Text += FormatEnum(Module, Enum);
	}
	for (const FParsedDelegate& Delegate : Header.Delegates)
	{
		Text += FormatDelegate(Module, Delegate);
	}
	for (const FParsedStruct& Struct : Header.Structs)
	{
		Text += Struct.bIntrinsic ? "" : FormatStruct(Module, Struct);
	}
	return Text;
}
