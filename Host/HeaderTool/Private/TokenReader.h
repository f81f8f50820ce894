#pragma once

#include "Conditions.h"
#include "Model.h"
#include "Specifiers.h"

#include <string>
#include <string_view>
#include <vector>

/** Walks over the tokens of one header. Past the end there is only the End token. */
class FTokenReader
{
public:
	FTokenReader(const std::vector<FSourceToken>& InTokens, const std::string& InPath, FErrors& InErrors)
		: Tokens(InTokens)
		, Path(InPath)
		, Errors(InErrors)
	{
	}

	const FSourceToken& Peek(size_t Ahead = 0) const { return Tokens[std::min(Position + Ahead, Tokens.size() - 1)]; }
	const FSourceToken& Previous() const { return Tokens[Position == 0 ? 0 : Position - 1]; }
	const FSourceToken& Next();
	bool AtEnd() const { return Peek().Kind == ETokenKind::End; }
	bool IsIdentifier() const { return Peek().Kind == ETokenKind::Identifier; }

	/** Takes the next token when it is this one. */
	bool Accept(std::string_view Text);
	/** Like Accept; anything else is an error in Context. */
	bool Expect(std::string_view Text, std::string_view Context);

	/** Passes a bracketed text; the next token is the opening bracket. */
	void SkipBrackets();
	/** Passes the name of a macro and its arguments. */
	void SkipMacro();
	/** Passes everything up to the first of the symbols that is not inside brackets, and leaves that symbol. */
	void SkipUntil(std::string_view FirstSymbol, std::string_view SecondSymbol = {});
	/** Passes the rest of a declaration: up to and with ';', or a body in braces. */
	void SkipDeclaration();
	/** Passes alignas(...), [[...]] and the export macro, whose name is returned. */
	std::string SkipAttributes();

	FSpecifierList ReadSpecifiers();
	bool ReadType(FTypeName& OutType);

	void Error(const std::string& Text) { Error(Peek().Line, Text); }
	void Error(int Line, const std::string& Text) { Errors.Add(Path, Line, Text); }
	/** For what answers with the text of an error, or an empty one. */
	void ErrorUnlessEmpty(int Line, const std::string& Text);

private:
	std::string ReadSpecifierValue();
	void ReadMeta(FMetaData& OutMeta);

	const std::vector<FSourceToken>& Tokens;
	const std::string& Path;
	FErrors& Errors;
	size_t Position = 0;
};
