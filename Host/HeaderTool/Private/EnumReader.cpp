#include "EnumReader.h"

namespace
{
void ReadEnumeratorMeta(FTokenReader& Reader, FParsedEnumerator& Enumerator)
{
	if (Reader.Accept("UMETA"))
	{
		Reader.ErrorUnlessEmpty(Reader.Peek().Line, ApplyEnumeratorSpecifiers(Reader.ReadSpecifiers(), Enumerator));
	}
}

void ReadEnumerators(FTokenReader& Reader, FParsedEnum& Enum)
{
	while (!Reader.AtEnd() && !Reader.Accept("}"))
	{
		FParsedEnumerator Enumerator;
		std::string ToolTip = Reader.Peek().Comment;
		Enumerator.Name = Reader.Next().Text;
		ReadEnumeratorMeta(Reader, Enumerator);
		if (Reader.Accept("="))
		{
			while (!Reader.AtEnd() && !Reader.Peek().Is(",") && !Reader.Peek().Is("}") && !Reader.Peek().Is("UMETA"))
			{
				Reader.Peek().Is("(") ? Reader.SkipBrackets() : void(Reader.Next());
			}
			ReadEnumeratorMeta(Reader, Enumerator);
		}
		if (!Reader.Peek().Is("}") && !Reader.Expect(",", "the enumeration '" + Enum.Name + "'"))
		{
			Reader.SkipUntil(",", "}");
		}
		Enumerator.Meta.SetDefault("ToolTip", ToolTip.empty() ? Reader.Previous().TrailingComment : ToolTip);
		Enum.Enumerators.push_back(std::move(Enumerator));
	}
}

void CheckEnum(FTokenReader& Reader, const FParsedEnum& Enum)
{
	// An enum of the old forms is kept in a byte, whatever it says.
	const bool bOldForm = !Enum.bScoped && Enum.Underlying == "int";
	if (Enum.bBlueprintType && Enum.Underlying != "uint8" && !bOldForm)
	{
		Reader.Error(Enum.Line, "Invalid BlueprintType enum base - currently only uint8 supported");
	}
	if (Enum.Enumerators.empty())
	{
		Reader.Error(Enum.Line, "The enumeration '" + Enum.Name + "' has no enumerators");
	}
}
}

std::optional<FParsedEnum> ReadEnum(FTokenReader& Reader, const FSourceToken& Macro, const FSpecifierList& Specifiers)
{
	FParsedEnum Enum;
	Enum.Line = Macro.Line;
	Reader.ErrorUnlessEmpty(Macro.Line, ApplyEnumSpecifiers(Specifiers, Enum));
	Enum.Meta.SetDefault("ToolTip", Macro.Comment);
	Enum.bNamespaced = Reader.Accept("namespace");
	if (Enum.bNamespaced)
	{
		Enum.Name = Reader.Next().Text;
		Reader.Expect("{", "the namespace '" + Enum.Name + "'");
	}
	if (!Reader.Expect("enum", "an enumeration"))
	{
		return std::nullopt;
	}
	Enum.bScoped = Reader.Accept("class") || Reader.Accept("struct");
	Reader.SkipAttributes();
	if (!Enum.bNamespaced)
	{
		Enum.Name = Reader.Next().Text;
	}
	else if (!Reader.Expect("Type", "the enumeration in '" + Enum.Name + "'"))
	{
		return std::nullopt;
	}
	FTypeName Underlying;
	if (Reader.Accept(":") && Reader.ReadType(Underlying))
	{
		Enum.Underlying = Underlying.Name;
	}
	if (!Reader.Expect("{", "the enumeration '" + Enum.Name + "'"))
	{
		return std::nullopt;
	}
	ReadEnumerators(Reader, Enum);
	if (Enum.bNamespaced)
	{
		Reader.Accept(";");
		Reader.Expect("}", "the namespace '" + Enum.Name + "'");
	}
	CheckEnum(Reader, Enum);
	return Enum;
}
