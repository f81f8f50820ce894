#include "Generate.h"

#include <algorithm>

namespace
{
std::string GetFileId(const FModule& Module, const FParsedHeader& Header)
{
	return "FID_" + Module.Name + "_" + Header.Stem;
}

/** A macro's text: each line but the last ends in a backslash. */
std::string FormatMacro(const std::string& Name, const std::vector<std::string>& Lines)
{
	std::string Text = "#define " + Name;
	for (const std::string& Line : Lines)
	{
		Text += " \\\n\t" + Line;
	}
	return Text + "\n\n";
}

std::vector<std::string> GetStructBody(const FParsedStruct& Struct)
{
	std::vector<std::string> Lines = { "friend struct FReflected_" + Struct.Name + ";",
		"static class UScriptStruct* StaticStruct();" };
	if (!Struct.Super.empty())
	{
		Lines.push_back("using Super = " + Struct.Super + ";");
	}
	return Lines;
}

std::vector<std::string> GetClassBody(const FParsedStruct& Class)
{
	std::vector<std::string> Lines = { "private:", "friend struct FReflected_" + Class.Name + ";",
		"public:", "DECLARE_REFLECTED_CLASS(" + Class.Name + ", " + Class.Super + ")" };
	if (Class.bTakesInitializer && !Class.bDeclaresConstructor)
	{
		// A child's constructor may hand the initializer on, whether or not this class has a constructor of its own.
		Lines.push_back(Class.Name +
						"(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get()) : Super(" +
						"ObjectInitializer) {}");
	}
	if (!Class.Interfaces.empty())
	{
		Lines.push_back("UObject* _getUObject() const override { return const_cast<" + Class.Name + "*>(this); }");
	}
	for (const FParsedFunction& Function : Class.Functions)
	{
		if (!Class.bInterface && NeedsImplementationDeclared(Class, Function))
		{
			Lines.push_back("virtual " + FormatReturnType(Function) + " " + Function.Name + "_Implementation(" +
							FormatParameters(Function) + ")" + (Function.bConst ? " const;" : ";"));
		}
	}
	Lines.push_back("private:");
	return Lines;
}

/** The class that others inherit: its events are called by Execute_<Name>, whoever implements them. */
std::vector<std::string> GetNativeInterfaceBody(const FParsedStruct& Interface)
{
	std::vector<std::string> Lines = { "private:", "friend struct FReflected_" + Interface.Name + ";",
		"protected:", "virtual ~" + Interface.GetNativeName() + "() = default;",
		"public:", "using UClassType = " + Interface.Name + ";", "using ThisClass = " + Interface.GetNativeName() + ";",
		"virtual UObject* _getUObject() const { return nullptr; }" };
	for (const FParsedFunction& Function : Interface.Functions)
	{
		if (Function.Event == EEventKind::None)
		{
			continue;
		}
		const std::string Returned = FormatReturnType(Function);
		const std::string Parameters = FormatParameters(Function);
		Lines.push_back("static " + Returned + " Execute_" + Function.Name + "(" +
						(Function.bConst ? "const UObject* O" : "UObject* O") +
						(Parameters.empty() ? "" : ", " + Parameters) + ");");
		if (NeedsImplementationDeclared(Interface, Function))
		{
			Lines.push_back("virtual " + Returned + " " + Function.Name + "_Implementation(" + Parameters + ")" +
							(Function.bConst ? " const" : "") + (Function.bReturns ? " { return {}; }" : " {}"));
		}
	}
	Lines.push_back("private:");
	return Lines;
}

std::string FormatEnumDeclarations(const FModule& Module, const FParsedEnum& Enum)
{
	if (Enum.Underlying.empty() && !Enum.bScoped)
	{
		return {}; // such an enum cannot be declared before its definition
	}
	if (Enum.bNamespaced)
	{
		return "namespace " + Enum.Name + " { enum Type : " + Enum.Underlying + "; }\ntemplate <> " + Module.ApiMacro +
			   " class UEnum* StaticEnum<" + Enum.GetCppName() + ">();\n\n";
	}
	std::string Text = std::string("enum ") + (Enum.bScoped ? "class " : "") + Enum.Name +
					   (Enum.Underlying.empty() ? "" : " : " + Enum.Underlying) + ";\n";
	if (Enum.bScoped)
	{
		Text += "template <> struct TIsUEnumClass<" + Enum.Name + ">\n{\n\tenum { Value = true };\n};\n";
	}
	return Text + "template <> " + Module.ApiMacro + " class UEnum* StaticEnum<" + Enum.Name + ">();\n\n";
}
}

bool NeedsImplementationDeclared(const FParsedStruct& Class, const FParsedFunction& Function)
{
	return Function.Event == EEventKind::Native &&
		   std::find(Class.OwnImplementations.begin(), Class.OwnImplementations.end(),
			   Function.Name + "_Implementation") == Class.OwnImplementations.end();
}

std::string FormatReturnType(const FParsedFunction& Function)
{
	return Function.bReturns ? Function.Parameters.back().Type.ToString() : "void";
}

std::string FormatParameters(const FParsedFunction& Function)
{
	std::string Text;
	const size_t Count = Function.Parameters.size() - Function.bReturns;
	for (size_t Index = 0; Index < Count; ++Index)
	{
		const FParsedProperty& Parameter = Function.Parameters[Index];
		Text += (Index == 0 ? "" : ", ") + Parameter.Type.ToString() + " " + Parameter.Name;
	}
	return Text;
}

std::string GenerateHeader(const FModule& Module, const FParsedHeader& Header)
{
	const std::string FileId = GetFileId(Module, Header);
	std::string Text =
		"// Written by HeaderTool from " + Header.IncludePath + ".\n\n#include \"UObject/ObjectMacros.h\"\n\n";
	Text += "#ifdef " + FileId + "_INCLUDED\n#error \"" + Header.Stem +
			".generated.h already included, missing '#pragma once' in " + Header.Stem + ".h\"\n#endif\n";
	Text += "#define " + FileId + "_INCLUDED\n\n";

	for (const FParsedEnum& Enum : Header.Enums)
	{
		Text += Enum.bNoExport ? "" : FormatEnumDeclarations(Module, Enum);
	}
	for (const FParsedStruct& Struct : Header.Structs)
	{
		if (!Struct.bNoExport)
		{
			Text += FormatMacro(FileId + "_" + std::to_string(Struct.BodyLine) + "_GENERATED_BODY",
				Struct.bClass ? GetClassBody(Struct) : GetStructBody(Struct));
			Text += Struct.bClass ? "" : "struct " + Struct.Name + ";\n";
			if (Struct.bInterface)
			{
				Text += FormatMacro(FileId + "_" + std::to_string(Struct.NativeBodyLine) + "_GENERATED_BODY",
					GetNativeInterfaceBody(Struct));
			}
		}
	}
	return Text + "#undef CURRENT_FILE_ID\n#define CURRENT_FILE_ID " + FileId + "\n";
}
