#include "PropertyReader.h"

#include <algorithm>

namespace
{
bool ReadVariable(FTokenReader& Reader, FParsedProperty& Property)
{
	if (Reader.Peek().Is("static") || Reader.Peek().Is("mutable"))
	{
		Reader.Error("'" + Reader.Peek().Text + "' is not allowed on a reflected variable");
		return false;
	}
	Reader.SkipAttributes();
	if (!Reader.ReadType(Property.Type))
	{
		return false;
	}
	if (!Reader.IsIdentifier())
	{
		Reader.Error("Missing variable name");
		return false;
	}
	Property.Name = Reader.Next().Text;
	if (Reader.Peek().Is("["))
	{
		Property.ArrayDim = Reader.Peek(1).Text;
		Reader.SkipBrackets();
	}
	if (Reader.Accept(":"))
	{
		Property.bBitField = true;
		if (Property.Type.Name != "uint8" || Reader.Peek().Text != "1")
		{
			Reader.Error("Bad bit field '" + Property.Name + "': only 'uint8 " + Property.Name + " : 1' is supported");
			return false;
		}
	}
	return true;
}

void FinishProperty(FTokenReader& Reader, const FSourceToken& Macro, const FParsedStruct& Struct,
	FParsedProperty& Property, EAccess Access)
{
	Property.Meta.SetDefault("ToolTip", Macro.Comment.empty() ? Reader.Previous().TrailingComment : Macro.Comment);
	const auto HasFlag = [&Property](std::string_view Flag) {
		return std::find(Property.Flags.begin(), Property.Flags.end(), Flag) != Property.Flags.end();
	};
	if (HasFlag("CPF_Edit") || HasFlag("CPF_BlueprintVisible"))
	{
		Property.Meta.SetDefault("Category", Struct.GetReflectedName());
	}
	if (HasFlag("CPF_BlueprintVisible") && Access == EAccess::Private && !Property.Meta.Has("AllowPrivateAccess"))
	{
		Reader.Error(
			Macro.Line, std::string(HasFlag("CPF_BlueprintReadOnly") ? "BlueprintReadOnly" : "BlueprintReadWrite") +
							" should not be used on private members");
	}
	if (Property.Name.ends_with("_DEPRECATED"))
	{
		Property.Name.resize(Property.Name.size() - std::string_view("_DEPRECATED").size());
		Property.Flags.push_back("CPF_Deprecated");
	}
	Property.Flags.push_back(Access == EAccess::Public      ? "CPF_NativeAccessSpecifierPublic"
							 : Access == EAccess::Protected ? "CPF_NativeAccessSpecifierProtected"
															: "CPF_NativeAccessSpecifierPrivate");
}
}

std::optional<FParsedProperty> ReadProperty(FTokenReader& Reader, const FSourceToken& Macro,
	const FSpecifierList& Specifiers, const FParsedStruct& Struct, EAccess Access)
{
	FParsedProperty Property;
	Reader.ErrorUnlessEmpty(Macro.Line, ApplyPropertySpecifiers(Specifiers, Property));
	if (Macro.Condition == ECondition::Editor)
	{
		Reader.Error(Macro.Line, "UProperties should not be wrapped by WITH_EDITOR, use WITH_EDITORONLY_DATA instead.");
	}
	if (Macro.Condition == ECondition::EditorOnlyData)
	{
		Property.bEditorOnly = true;
		Property.Flags.push_back("CPF_EditorOnly");
	}
	Property.Line = Reader.Peek().Line;
	if (!ReadVariable(Reader, Property))
	{
		Reader.SkipDeclaration();
		return std::nullopt;
	}
	Reader.SkipUntil(";");
	Reader.Next();
	FinishProperty(Reader, Macro, Struct, Property, Access);
	return Property;
}
