#include "Lexer.h"

#include <cctype>

namespace
{
bool IsIdentifierStart(char Character)
{
	return std::isalpha(static_cast<unsigned char>(Character)) || Character == '_' || (Character & 0x80);
}

bool IsIdentifierPart(char Character)
{
	return IsIdentifierStart(Character) || std::isdigit(static_cast<unsigned char>(Character));
}

bool IsSpace(char Character)
{
	return std::isspace(static_cast<unsigned char>(Character));
}

std::string_view Trim(std::string_view Text)
{
	while (!Text.empty() && IsSpace(Text.front()))
	{
		Text.remove_prefix(1);
	}
	while (!Text.empty() && IsSpace(Text.back()))
	{
		Text.remove_suffix(1);
	}
	return Text;
}

std::string_view TrimCommentMarks(std::string_view Line)
{
	Line = Trim(Line);
	while (!Line.empty() && (Line.front() == '*' || Line.front() == '/' || Line.front() == '!'))
	{
		Line.remove_prefix(1);
	}
	if (!Line.empty() && Line.front() == '<')
	{
		Line.remove_prefix(1);
	}
	return Trim(Line);
}

/** Takes the marks off a comment and drops empty lines at its ends. */
std::string CleanComment(std::string_view Comment)
{
	if (Comment.ends_with("*/"))
	{
		Comment.remove_suffix(2);
		while (Comment.ends_with('*'))
		{
			Comment.remove_suffix(1);
		}
	}

	std::string Result;
	while (!Comment.empty())
	{
		const size_t LineEnd = Comment.find('\n');
		Result += TrimCommentMarks(Comment.substr(0, LineEnd));
		Result += '\n';
		Comment.remove_prefix(LineEnd == std::string_view::npos ? Comment.size() : LineEnd + 1);
	}
	return std::string(Trim(Result));
}

class FLexer
{
public:
	explicit FLexer(std::string_view InText)
		: Text(InText)
	{
	}

	std::vector<FToken> Run()
	{
		for (;;)
		{
			SkipSpace();
			if (AtEnd())
			{
				Add(ETokenKind::End, "");
				return std::move(Tokens);
			}
			ReadToken();
		}
	}

private:
	bool AtEnd() const { return Position >= Text.size(); }
	char Peek(size_t Ahead = 0) const { return Position + Ahead < Text.size() ? Text[Position + Ahead] : '\0'; }
	bool LooksAt(std::string_view What) const { return Text.substr(Position).starts_with(What); }

	void Advance()
	{
		if (Peek() == '\n')
		{
			++Line;
			bAtLineStart = true;
		}
		++Position;
	}

	void SkipSpace()
	{
		int NewLines = 0;
		while (!AtEnd())
		{
			if (IsSpace(Peek()))
			{
				NewLines += Peek() == '\n';
				if (NewLines > 1)
				{
					PendingComment.clear(); // a blank line parts a comment from what follows
				}
				Advance();
			}
			else if (LooksAt("//"))
			{
				ReadComment(Text.find('\n', Position));
				NewLines = 0;
			}
			else if (LooksAt("/*"))
			{
				const size_t CommentEnd = Text.find("*/", Position + 2);
				ReadComment(CommentEnd == std::string_view::npos ? CommentEnd : CommentEnd + 2);
				NewLines = 0;
			}
			else
			{
				return;
			}
		}
	}

	void ReadComment(size_t CommentEnd)
	{
		CommentEnd = std::min(CommentEnd, Text.size());
		const std::string Comment = CleanComment(Text.substr(Position, CommentEnd - Position));
		const bool bTrailing = !bAtLineStart && !Tokens.empty() && Tokens.back().Line == Line;
		const bool bWasAtLineStart = bAtLineStart;
		while (Position < CommentEnd)
		{
			Advance();
		}

		if (bTrailing)
		{
			Tokens.back().TrailingComment = Comment;
			return;
		}
		bAtLineStart = bWasAtLineStart;
		if (!PendingComment.empty() && !Comment.empty())
		{
			PendingComment += '\n';
		}
		PendingComment += Comment;
	}

	void ReadToken()
	{
		if (Peek() == '#' && bAtLineStart)
		{
			ReadDirective();
		}
		else if (LooksAt("R\"") || LooksAt("u8R\""))
		{
			ReadRawString();
		}
		else if (IsIdentifierStart(Peek()))
		{
			ReadWhile(ETokenKind::Identifier, IsIdentifierPart);
		}
		else if (std::isdigit(static_cast<unsigned char>(Peek())))
		{
			ReadWhile(
				ETokenKind::Number, [](char Next) { return IsIdentifierPart(Next) || Next == '.' || Next == '\''; });
		}
		else if (Peek() == '"' || Peek() == '\'')
		{
			ReadQuoted();
		}
		else
		{
			ReadSymbol();
		}
	}

	void ReadDirective()
	{
		const int StartLine = Line;
		std::string Directive;
		Advance();
		while (!AtEnd() && Peek() != '\n' && !LooksAt("//") && !LooksAt("/*"))
		{
			if (LooksAt("\\\n"))
			{
				Advance();
				Directive += ' ';
			}
			else
			{
				Directive += Peek();
			}
			Advance();
		}
		PendingComment.clear();
		Add(ETokenKind::Directive, Trim(Directive), StartLine);
	}

	void ReadRawString()
	{
		const int StartLine = Line;
		const size_t Quote = Text.find('"', Position);
		const size_t Open = std::min(Text.find('(', Quote), Text.size() - 1);
		const std::string Close = ")" + std::string(Text.substr(Quote + 1, Open - Quote - 1)) + "\"";
		const size_t End = std::min(Text.find(Close, Open), Text.size());
		const std::string_view Value = Text.substr(Open + 1, End - Open - 1);
		while (!AtEnd() && Position < End + Close.size())
		{
			Advance();
		}
		Add(ETokenKind::String, Value, StartLine);
	}

	void ReadQuoted()
	{
		const char Quote = Peek();
		const int StartLine = Line;
		std::string Value;
		for (Advance(); !AtEnd() && Peek() != Quote && Peek() != '\n'; Advance())
		{
			if (Peek() == '\\')
			{
				Advance();
				Value += Peek() == 'n' ? '\n' : Peek() == 't' ? '\t' : Peek();
			}
			else
			{
				Value += Peek();
			}
		}
		if (Peek() == Quote)
		{
			Advance();
		}
		Add(Quote == '"' ? ETokenKind::String : ETokenKind::Character, Value, StartLine);
	}

	void ReadSymbol()
	{
		const size_t Length = LooksAt("::") ? 2 : 1;
		const std::string_view Symbol = Text.substr(Position, Length);
		Position += Length;
		Add(ETokenKind::Symbol, Symbol);
	}

	template <typename PredicateType>
	void ReadWhile(ETokenKind Kind, PredicateType Belongs)
	{
		const size_t Start = Position;
		while (!AtEnd() && Belongs(Peek()))
		{
			++Position;
		}
		Add(Kind, Text.substr(Start, Position - Start));
	}

	void Add(ETokenKind Kind, std::string_view TokenText) { Add(Kind, TokenText, Line); }

	void Add(ETokenKind Kind, std::string_view TokenText, int TokenLine)
	{
		Tokens.push_back({ Kind, std::string(TokenText), TokenLine, std::move(PendingComment), {} });
		PendingComment.clear();
		bAtLineStart = false;
	}

	const std::string_view Text;
	size_t Position = 0;
	int Line = 1;
	bool bAtLineStart = true;
	std::string PendingComment;
	std::vector<FToken> Tokens;
};
}

std::vector<FToken> Tokenize(std::string_view Text)
{
	return FLexer(Text).Run();
}
