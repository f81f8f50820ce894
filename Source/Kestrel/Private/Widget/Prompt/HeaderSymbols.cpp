#include "Widget/Prompt/HeaderSymbols.h"

namespace HeaderSymbols
{
/** A word, or a sign; empty at the end. */
struct FToken
{
	FString Text;
	int32 Line = 1;

	bool Is(const TCHAR* Other) const { return Text.Equals(Other, ESearchCase::CaseSensitive); }
	bool IsWord() const { return !Text.IsEmpty() && (FChar::IsAlpha(Text[0]) || Text[0] == TEXT('_')); }
};

/** Cuts a text into words and signs, and leaves out comments, strings, and lines of the preprocessor. */
class FLexer
{
public:
	explicit FLexer(const FString& InText)
		: Text(InText)
		, End(FMath::Min(InText.Len(), KestrelHeaderSymbols::MaxTextLength))
	{
	}

	FToken Next()
	{
		SkipWhatIsNoCode();
		FToken Token;
		Token.Line = Line;
		if (At >= End)
		{
			return Token;
		}
		const int32 Begin = At;
		if (!IsPartOfWord(Text[At]))
		{
			++At;
			return { Text.Mid(Begin, 1), Line };
		}
		while (At < End && IsPartOfWord(Text[At]))
		{
			++At;
		}
		Token.Text = Text.Mid(Begin, At - Begin);
		return Token;
	}

private:
	static bool IsPartOfWord(TCHAR Letter) { return FChar::IsAlnum(Letter) || Letter == TEXT('_'); }
	TCHAR Peek(int32 Offset) const { return At + Offset < End ? Text[At + Offset] : TEXT('\0'); }

	void Advance()
	{
		bIsLineStart = Text[At] == TEXT('\n') || (bIsLineStart && FChar::IsWhitespace(Text[At]));
		Line += Text[At] == TEXT('\n') ? 1 : 0;
		++At;
	}

	void SkipWhatIsNoCode()
	{
		while (At < End)
		{
			if (FChar::IsWhitespace(Text[At]))
			{
				Advance();
			}
			else if ((Text[At] == TEXT('/') && Peek(1) == TEXT('/')) || (Text[At] == TEXT('#') && bIsLineStart))
			{
				SkipLine();
			}
			else if (Text[At] == TEXT('/') && Peek(1) == TEXT('*'))
			{
				SkipComment();
			}
			else if (Text[At] == TEXT('"') || (Text[At] == TEXT('\'') && !(At > 0 && FChar::IsAlnum(Text[At - 1]))))
			{
				SkipLiteral(Text[At]);
			}
			else
			{
				bIsLineStart = false;
				return;
			}
		}
	}

	/** Up to its end, with the lines that it goes on in. */
	void SkipLine()
	{
		while (At < End && !(Text[At] == TEXT('\n') && (At == 0 || !IsContinued())))
		{
			Advance();
		}
	}

	bool IsContinued() const
	{
		const int32 Last = Text[At - 1] == TEXT('\r') ? At - 2 : At - 1;
		return Last >= 0 && Text[Last] == TEXT('\\');
	}

	void SkipComment()
	{
		At += 2;
		while (At < End && !(Text[At] == TEXT('*') && Peek(1) == TEXT('/')))
		{
			Advance();
		}
		At = FMath::Min(At + 2, End);
	}

	/** A literal ends with its line at the latest. */
	void SkipLiteral(TCHAR Quote)
	{
		++At;
		while (At < End && Text[At] != Quote && Text[At] != TEXT('\n'))
		{
			At += Text[At] == TEXT('\\') && Peek(1) != TEXT('\n') ? 2 : 1;
		}
		At = FMath::Min(At + (Peek(0) == Quote ? 1 : 0), End);
		bIsLineStart = false;
	}

	const FString& Text;
	const int32 End;
	int32 At = 0;
	int32 Line = 1;
	bool bIsLineStart = true;
};

class FReader
{
public:
	explicit FReader(const FString& Text)
		: Lexer(Text)
	{
	}

	TArray<FKestrelSymbol> Read()
	{
		Token = Lexer.Next();
		while (!Token.Text.IsEmpty() && Symbols.Num() < KestrelHeaderSymbols::MaxSymbols)
		{
			ReadOne();
		}
		return MoveTemp(Symbols);
	}

private:
	void Step() { Token = Lexer.Next(); }

	void ReadOne()
	{
		if (Token.Is(TEXT("{")))
		{
			Scopes.Add(FString());
			Step();
		}
		else if (Token.Is(TEXT("}")))
		{
			if (!Scopes.IsEmpty())
			{
				Scopes.Pop();
			}
			Step();
		}
		else if (Token.Is(TEXT("template")))
		{
			Step();
			SkipBrackets(TEXT("<"), TEXT(">"));
		}
		else if (Token.Is(TEXT("class")) || Token.Is(TEXT("struct")) || Token.Is(TEXT("enum")))
		{
			ReadType();
		}
		else if (Token.Is(TEXT("UCLASS")) || Token.Is(TEXT("USTRUCT")) || Token.Is(TEXT("UENUM")))
		{
			bNextIsReflected = true;
			Step();
			SkipBrackets(TEXT("("), TEXT(")"));
		}
		else if (Token.Is(TEXT("UFUNCTION")) || Token.Is(TEXT("UPROPERTY")))
		{
			ReadMember();
		}
		else
		{
			Step();
		}
	}

	/** From the opening bracket to behind its counterpart; nothing if there is none here. */
	void SkipBrackets(const TCHAR* Open, const TCHAR* Close)
	{
		int32 Depth = 0;
		do
		{
			Depth += Token.Is(Open) ? 1 : (Token.Is(Close) ? -1 : 0);
			if (Depth == 0 && !Token.Is(Close))
			{
				return;
			}
			Step();
		}
		while (Depth > 0 && !Token.Text.IsEmpty());
	}

	/** What lies between the keyword and "{" is the name behind macros and attributes, and the bases behind it. */
	void ReadType()
	{
		const bool bReflected = bNextIsReflected;
		bNextIsReflected = false;
		FToken Name;
		bool bNameIsKnown = false;
		for (Step(); !Token.Text.IsEmpty() && !Token.Is(TEXT("{")); Step())
		{
			if (Token.Is(TEXT("(")))
			{
				SkipParentheses();
			}
			if (Token.Is(TEXT(";")) || Token.Is(TEXT("=")) || Token.Is(TEXT("*")) || Token.Is(TEXT("&")) ||
				Token.Is(TEXT(")")) || Token.Is(TEXT("}")) || (!bNameIsKnown && Token.Is(TEXT(">"))))
			{
				return; // mentioned only
			}
			bNameIsKnown |= Token.Is(TEXT(":")) || Token.Is(TEXT("final"));
			Name = !bNameIsKnown && Token.IsWord() ? Token : Name;
		}
		if (Token.Is(TEXT("{")))
		{
			// A type without a name has nothing that could be called by it.
			if (Name.IsWord() && !Name.Is(TEXT("class")))
			{
				Symbols.Add({ Name.Text, Name.Line, bReflected });
			}
			Scopes.Add(Name.Text);
			Step();
		}
	}

	void SkipParentheses()
	{
		int32 Depth = 0;
		for (; !Token.Text.IsEmpty(); Step())
		{
			Depth += Token.Is(TEXT("(")) ? 1 : (Token.Is(TEXT(")")) ? -1 : 0);
			if (Depth == 0)
			{
				Step();
				return;
			}
		}
	}

	/** The last word before what can only follow a name. */
	void ReadMember()
	{
		Step();
		SkipBrackets(TEXT("("), TEXT(")"));
		FToken Name;
		for (; !Token.Text.IsEmpty(); Step())
		{
			if (Token.Is(TEXT("<")))
			{
				SkipBrackets(TEXT("<"), TEXT(">"));
			}
			if (Token.Is(TEXT("(")) || Token.Is(TEXT(";")) || Token.Is(TEXT("=")) || Token.Is(TEXT("{")) ||
				Token.Is(TEXT("}")) || Token.Is(TEXT("[")))
			{
				break;
			}
			Name = Token.IsWord() ? Token : Name;
		}
		if (Name.IsWord() && !Scopes.IsEmpty() && !Scopes.Last().IsEmpty())
		{
			Symbols.Add({ Scopes.Last() + TEXT("::") + Name.Text, Name.Line, true });
		}
	}

	FLexer Lexer;
	FToken Token;
	TArray<FString> Scopes; // of the open braces; empty for those that are no type's
	TArray<FKestrelSymbol> Symbols;
	bool bNextIsReflected = false;
};
}

TArray<FKestrelSymbol> KestrelHeaderSymbols::Find(const FString& Text)
{
	return HeaderSymbols::FReader(Text).Read();
}
