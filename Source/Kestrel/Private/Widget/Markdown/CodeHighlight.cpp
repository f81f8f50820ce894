#include "Widget/Markdown/CodeHighlight.h"

#include "Widget/Markdown/MarkdownCharacters.h"

namespace KestrelCodeHighlight
{
namespace
{
using KestrelMarkdown::IsBlank;
using KestrelMarkdown::IsDigit;
using KestrelMarkdown::IsLetter;

/** How a language spells what is told apart. Lists have a blank between their words, and one at each end. */
struct FLanguage
{
	const TCHAR* Names;
	const TCHAR* LineComments; // one character each, unless it is the slash, which is doubled
	const TCHAR* Quotes;
	const TCHAR* Keywords;
	bool bBlockComments;
	bool bDirectives;  // "#" begins one on a line of its own
	bool bDecorators;  // "@" does
	bool bLongStrings; // three quotes
	bool bRawStrings;  // R"x(...)x"
	bool bKeys;        // a string before ":" is one
	bool bIniLines;    // "[section]" and "key="
};

const FLanguage Languages[] = {
	{ TEXT(" cpp c++ cxx cc c h hpp "), TEXT("/"), TEXT("\"'"),
		TEXT(
			" alignas alignof auto bool break case catch char class concept const consteval constexpr constinit "
			"const_cast continue co_await co_return co_yield decltype default delete do double else enum "
			"explicit export extern false final float for friend goto if inline int long mutable namespace new noexcept "
			"nullptr operator override private protected public register reinterpret_cast requires return short signed "
			"sizeof static static_assert static_cast struct switch template this thread_local true try typedef "
			"typeid typename union unsigned using virtual void volatile wchar_t while int8 int16 int32 int64 uint8 uint16 "
			"uint32 uint64 UCLASS USTRUCT UENUM UINTERFACE UFUNCTION UPROPERTY UPARAM GENERATED_BODY TEXT check checkf "
			"ensure UE_LOG "),
		true, true, false, false, true, false, false },
	{ TEXT(" cs csharp c# "), TEXT("/"), TEXT("\"'"),
		TEXT(
			" abstract as base bool break byte case catch char class const continue default delegate do double else enum "
			"event explicit false finally float for foreach if implicit in int interface internal is long namespace new "
			"null object operator out override params private protected public readonly ref return sealed short static "
			"string struct switch this true try typeof uint ulong using var virtual void while "),
		true, true, false, false, false, false, false },
	{ TEXT(" py python python3 "), TEXT("#"), TEXT("\"'"),
		TEXT(
			" False None True and as assert async await break class continue def del elif else except finally for from "
			"global if import in is lambda nonlocal not or pass raise return self try while with yield "),
		false, false, true, true, false, false, false },
	{ TEXT(" json jsonc json5 "), TEXT("/"), TEXT("\""), TEXT(" true false null "), true, false, false, false, false,
		true, false },
	{ TEXT(" ini cfg conf toml "), TEXT(";#"), TEXT("\""), TEXT(" True False true false "), false, false, false, false,
		false, false, true },
};

const FLanguage* FindLanguage(const FString& Name)
{
	const FString Padded = TEXT(" ") + Name + TEXT(" ");
	for (const FLanguage& Language : Languages)
	{
		if (!Name.IsEmpty() && FString(Language.Names).Contains(Padded))
		{
			return &Language;
		}
	}
	return nullptr;
}

bool IsWord(TCHAR Character)
{
	return IsLetter(Character) || IsDigit(Character) || Character == TEXT('_') || Character > 0x7F;
}

bool IsOneOf(const TCHAR* Characters, TCHAR Character)
{
	int32 Index = INDEX_NONE;
	return FStringView(Characters).FindChar(Character, Index);
}

/** Walks over the code once; each reader looks at Position and says where what it knows ends. */
class FTokenizer
{
public:
	FTokenizer(FStringView InCode, const FLanguage& InLanguage)
		: Code(InCode)
		, Language(InLanguage)
	{
		TArray<FString> Words;
		FString(Language.Keywords).ParseIntoArray(Words, TEXT(" "));
		for (const FString& Word : Words)
		{
			Keywords.FindOrAdd(Word).Add(Word);
		}
	}

	TArray<FCodePiece> Run();

private:
	TCHAR At(int32 Index) const { return Index < Code.Len() ? Code[Index] : TEXT('\0'); }
	bool IsAt(int32 Index, const TCHAR* Text) const
	{
		return Code.Mid(Index).StartsWith(Text, ESearchCase::CaseSensitive);
	}
	int32 FindEnd(int32 Begin, const TCHAR* Mark) const;
	int32 FindLineEnd(int32 Begin) const;
	int32 ReadComment() const;
	int32 ReadString() const;
	int32 ReadRawString() const;
	int32 ReadDirective() const;
	int32 ReadWord() const;
	int32 ReadIniKey() const;
	bool IsKey(int32 End) const;
	bool IsKeyword(FStringView Word) const;
	ECodeToken ReadToken(int32& OutEnd) const;
	void Add(ECodeToken Token, int32 End);

	FStringView Code;
	const FLanguage& Language;
	/** Keys of strings ignore case, languages do not: the spellings of each. */
	TMap<FString, TArray<FString>> Keywords;
	TArray<FCodePiece> Pieces;
	int32 Position = 0;
	bool bLineBegins = true; // nothing but blanks before it on its line
};

TArray<FCodePiece> FTokenizer::Run()
{
	while (Position < Code.Len())
	{
		int32 End = Position + 1;
		const ECodeToken Token = ReadToken(End);
		bLineBegins = At(Position) == TEXT('\n') || (bLineBegins && IsBlank(At(Position)));
		Add(Token, End);
	}
	return MoveTemp(Pieces);
}

ECodeToken FTokenizer::ReadToken(int32& OutEnd) const
{
	const TCHAR Character = At(Position);
	if (IsBlank(Character) || Character == TEXT('\n'))
	{
		return ECodeToken::Plain;
	}
	using FRead = int32 (FTokenizer::*)() const;
	const TPair<FRead, ECodeToken> Readers[] = { { &FTokenizer::ReadComment, ECodeToken::Comment },
		{ &FTokenizer::ReadDirective, ECodeToken::Directive }, { &FTokenizer::ReadIniKey, ECodeToken::Keyword },
		{ &FTokenizer::ReadRawString, ECodeToken::String }, { &FTokenizer::ReadString, ECodeToken::String } };
	for (const TPair<FRead, ECodeToken>& Reader : Readers)
	{
		const int32 End = (this->*Reader.Key)();
		if (End > Position)
		{
			OutEnd = End;
			return Reader.Value == ECodeToken::String && IsKey(End) ? ECodeToken::Keyword : Reader.Value;
		}
	}
	const int32 EndOfWord = ReadWord();
	OutEnd = FMath::Max(EndOfWord, OutEnd);
	if (EndOfWord > Position && IsDigit(Character))
	{
		return ECodeToken::Number;
	}
	return IsKeyword(Code.Mid(Position, EndOfWord - Position)) ? ECodeToken::Keyword : ECodeToken::Plain;
}

int32 FTokenizer::FindEnd(int32 Begin, const TCHAR* Mark) const
{
	const int32 Found = Code.Find(Mark, Begin);
	return Found == INDEX_NONE ? Code.Len() : Found + FCString::Strlen(Mark);
}

int32 FTokenizer::FindLineEnd(int32 Begin) const
{
	while (Begin < Code.Len() && Code[Begin] != TEXT('\n'))
	{
		++Begin;
	}
	return Begin;
}

int32 FTokenizer::ReadComment() const
{
	const TCHAR Character = At(Position);
	if (Language.bBlockComments && Character == TEXT('/') && At(Position + 1) == TEXT('*'))
	{
		return FindEnd(Position + 2, TEXT("*/"));
	}
	const bool bSlashes = Character != TEXT('/') || At(Position + 1) == TEXT('/');
	return IsOneOf(Language.LineComments, Character) && bSlashes ? FindLineEnd(Position) : 0;
}

int32 FTokenizer::ReadDirective() const
{
	const bool bHash = Language.bDirectives && At(Position) == TEXT('#');
	const bool bDecorator = Language.bDecorators && At(Position) == TEXT('@');
	if (!bLineBegins || (!bHash && !bDecorator))
	{
		return 0;
	}
	// The name only: what follows is code like any other.
	int32 End = Position + 1;
	while (IsBlank(At(End)))
	{
		++End;
	}
	while (IsWord(At(End)) || (bDecorator && At(End) == TEXT('.')))
	{
		++End;
	}
	return End;
}

int32 FTokenizer::ReadIniKey() const
{
	if (!Language.bIniLines || !bLineBegins)
	{
		return 0;
	}
	const int32 LineEnd = FindLineEnd(Position);
	int32 Index = Position;
	if (At(Position) == TEXT('['))
	{
		return LineEnd;
	}
	while (Index < LineEnd && Code[Index] != TEXT('='))
	{
		++Index;
	}
	return Index < LineEnd ? Index : 0;
}

int32 FTokenizer::ReadRawString() const
{
	constexpr int32 MaxDelimiter = 16;
	if (!Language.bRawStrings || At(Position) != TEXT('R') || At(Position + 1) != TEXT('"'))
	{
		return 0;
	}
	int32 Bracket = Position + 2;
	while (Bracket < Code.Len() && Code[Bracket] != TEXT('(') && Bracket - Position <= MaxDelimiter)
	{
		++Bracket;
	}
	if (At(Bracket) != TEXT('('))
	{
		return 0;
	}
	const FString End = TEXT(")") + FString(Code.Mid(Position + 2, Bracket - Position - 2)) + TEXT("\"");
	return FindEnd(Bracket, *End);
}

int32 FTokenizer::ReadString() const
{
	const TCHAR Quote = At(Position);
	if (!IsOneOf(Language.Quotes, Quote))
	{
		return 0;
	}
	if (Language.bLongStrings && At(Position + 1) == Quote && At(Position + 2) == Quote)
	{
		return FindEnd(Position + 3, *FString::ChrN(3, Quote));
	}
	for (int32 Index = Position + 1; Index < Code.Len() && Code[Index] != TEXT('\n'); ++Index)
	{
		if (Code[Index] == Quote)
		{
			return Index + 1;
		}
		Index += Code[Index] == TEXT('\\') && At(Index + 1) != TEXT('\n') ? 1 : 0;
	}
	return FindLineEnd(Position);
}

/** A word or a number: so that digits in a name are none. */
int32 FTokenizer::ReadWord() const
{
	const bool bNumber = IsDigit(At(Position));
	int32 End = Position;
	while (IsWord(At(End)) || (bNumber && (At(End) == TEXT('.') || At(End) == TEXT('\''))))
	{
		++End;
	}
	return End;
}

bool FTokenizer::IsKey(int32 End) const
{
	while (Language.bKeys && IsBlank(At(End)))
	{
		++End;
	}
	return Language.bKeys && At(End) == TEXT(':');
}

bool FTokenizer::IsKeyword(FStringView Word) const
{
	const TArray<FString>* Spellings = Word.IsEmpty() ? nullptr : Keywords.Find(FString(Word));
	return Spellings && Spellings->ContainsByPredicate([Word](const FString& Spelling) {
		return Word.Equals(Spelling, ESearchCase::CaseSensitive);
	});
}

void FTokenizer::Add(ECodeToken Token, int32 End)
{
	if (!Pieces.IsEmpty() && Pieces.Last().Token == Token)
	{
		Pieces.Last().End = End;
	}
	else
	{
		Pieces.Add({ Token, Position, End });
	}
	Position = End;
}
}

TArray<FCodePiece> Tokenize(FStringView Code, const FString& Language)
{
	const FLanguage* Known = FindLanguage(Language);
	if (Code.IsEmpty() || !Known || Code.Len() > MaxLength)
	{
		return Code.IsEmpty() ? TArray<FCodePiece>() : TArray<FCodePiece>{ { ECodeToken::Plain, 0, Code.Len() } };
	}
	return FTokenizer(Code, *Known).Run();
}
}
