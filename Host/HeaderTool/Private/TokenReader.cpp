#include "TokenReader.h"

namespace
{
std::string_view ClosingBracket(const FToken& Token)
{
	if (Token.Kind != ETokenKind::Symbol)
	{
		return {};
	}
	return Token.Text == "(" ? ")" : Token.Text == "{" ? "}" : Token.Text == "[" ? "]" : "";
}
}

const FSourceToken& FTokenReader::Next()
{
	const FSourceToken& Token = Peek();
	Position = std::min(Position + 1, Tokens.size() - 1);
	return Token;
}

bool FTokenReader::Accept(std::string_view Text)
{
	if (!Peek().Is(Text))
	{
		return false;
	}
	Next();
	return true;
}

bool FTokenReader::Expect(std::string_view Text, std::string_view Context)
{
	if (Accept(Text))
	{
		return true;
	}
	Error(
		"Found '" + Peek().Text + "' when expecting '" + std::string(Text) + "' while parsing " + std::string(Context));
	return false;
}

void FTokenReader::SkipBrackets()
{
	const std::string_view Close = ClosingBracket(Next());
	while (!AtEnd() && !Peek().Is(Close))
	{
		if (ClosingBracket(Peek()).empty())
		{
			Next();
		}
		else
		{
			SkipBrackets();
		}
	}
	Next();
}

void FTokenReader::SkipMacro()
{
	Next();
	SkipBrackets();
}

void FTokenReader::ErrorUnlessEmpty(int Line, const std::string& Text)
{
	if (!Text.empty())
	{
		Error(Line, Text);
	}
}

void FTokenReader::SkipUntil(std::string_view FirstSymbol, std::string_view SecondSymbol)
{
	while (!AtEnd() && !Peek().Is(FirstSymbol) && (SecondSymbol.empty() || !Peek().Is(SecondSymbol)))
	{
		if (ClosingBracket(Peek()).empty())
		{
			Next();
		}
		else
		{
			SkipBrackets();
		}
	}
}

void FTokenReader::SkipDeclaration()
{
	while (!AtEnd() && !Peek().Is("}"))
	{
		if (Accept(";"))
		{
			return;
		}
		const bool bBody = Peek().Is("{");
		if (ClosingBracket(Peek()).empty())
		{
			Next();
		}
		else
		{
			SkipBrackets();
		}
		if (bBody)
		{
			Accept(";");
			return;
		}
	}
}

std::string FTokenReader::SkipAttributes()
{
	std::string ApiMacro;
	for (;;)
	{
		if (Peek().Is("alignas") || Peek().Is("UE_DEPRECATED"))
		{
			Next();
			SkipBrackets();
		}
		else if (Peek().Is("["))
		{
			SkipBrackets();
		}
		else if (IsIdentifier() && Peek().Text.ends_with("_API"))
		{
			ApiMacro = Next().Text;
		}
		else
		{
			return ApiMacro;
		}
	}
}

std::string FTokenReader::ReadSpecifierValue()
{
	if (Peek().Is(")") || Peek().Is(","))
	{
		Error("Found '" + Peek().Text + "' when expecting a value");
		return {};
	}
	std::string Value = Peek().Is("-") ? Next().Text : "";
	Value += Next().Text;
	while (!AtEnd() && (Peek().Is("::") || Peek().Is(".") || Previous().Is("::") || Previous().Is(".")))
	{
		Value += Next().Text;
	}
	// Adjacent string literals are one, as in C++.
	while (Previous().Kind == ETokenKind::String && Peek().Kind == ETokenKind::String)
	{
		Value += Next().Text;
	}
	return Value;
}

void FTokenReader::ReadMeta(FMetaData& OutMeta)
{
	Expect("(", "metadata");
	while (!AtEnd() && !Accept(")"))
	{
		if (!IsIdentifier())
		{
			Error("Found '" + Peek().Text + "' when expecting a metadata key");
			SkipUntil(")");
			continue;
		}
		const std::string Key = Next().Text;
		OutMeta.Set(Key, Accept("=") ? ReadSpecifierValue() : "");
		if (!Peek().Is(")"))
		{
			Expect(",", "metadata");
		}
	}
}

FSpecifierList FTokenReader::ReadSpecifiers()
{
	FSpecifierList List;
	Expect("(", "specifiers");
	while (!AtEnd() && !Accept(")"))
	{
		if (!IsIdentifier())
		{
			Error("Found '" + Peek().Text + "' when expecting a specifier");
			SkipUntil(")");
			continue;
		}
		FSpecifier Specifier{ Peek().Text, {}, Peek().Line };
		Next();
		if (EqualsIgnoreCase(Specifier.Name, "meta"))
		{
			Expect("=", "metadata");
			ReadMeta(List.Meta);
		}
		else
		{
			if (Accept("="))
			{
				const bool bSeveral = Accept("(");
				do
				{
					Specifier.Values.push_back(ReadSpecifierValue());
				}
				while (bSeveral && Accept(","));
				if (bSeveral)
				{
					Expect(")", "specifiers");
				}
			}
			List.Specifiers.push_back(Specifier);
		}
		if (!Peek().Is(")"))
		{
			Expect(",", "specifiers");
		}
	}
	return List;
}

bool FTokenReader::ReadType(FTypeName& OutType)
{
	while (Peek().Is("const") || Peek().Is("class") || Peek().Is("struct") || Peek().Is("enum"))
	{
		OutType.bConst |= Next().Is("const");
	}
	Accept("::");
	if (!IsIdentifier() && Peek().Kind != ETokenKind::Number)
	{
		Error("Found '" + Peek().Text + "' when expecting a type");
		return false;
	}
	OutType.Name = Next().Text;
	while (Peek().Is("::"))
	{
		Next();
		OutType.Name += "::" + Next().Text;
	}

	if (Accept("<"))
	{
		do
		{
			OutType.Arguments.emplace_back();
			if (!ReadType(OutType.Arguments.back()))
			{
				return false;
			}
		}
		while (Accept(","));
		if (!Expect(">", "a template's arguments"))
		{
			return false;
		}
	}

	OutType.bConst |= Accept("const");
	OutType.bPointer = Accept("*");
	Accept("const");
	OutType.bReference = Accept("&");
	if (Peek().Is("*") || Peek().Is("&"))
	{
		Error("Pointers to pointers and references to references are not supported");
		return false;
	}
	return true;
}
