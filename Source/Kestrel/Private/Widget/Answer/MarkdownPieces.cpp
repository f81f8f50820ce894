#include "Widget/Answer/MarkdownPieces.h"

#include "Agent/Text/DisplayText.h"
#include "Widget/Answer/KestrelLink.h"
#include "Widget/Answer/MarkdownStyle.h"
#include "Widget/HiddenTexts.h"
#include "Widget/Markdown/CodeHighlight.h"

namespace KestrelMarkdownPieces
{
namespace
{
/** A short code, a path for instance, may be a file; in longer ones nobody looks for any. */
constexpr int32 MaxLinkedCode = 300;

class FPieceMaker
{
public:
	FPieceMaker(int32 InHeadingLevel, int32& InFilesLeft)
		: HeadingLevel(InHeadingLevel)
		, FilesLeft(InFilesLeft)
	{
	}

	void Add(const FMarkdownSpan& Span);
	TArray<FStyledPiece> Take() { return MoveTemp(Pieces); }

private:
	void AddPiece(const FString& Text, EMarkdownStyle Style, const FKestrelLink& Link)
	{
		if (!Text.IsEmpty())
		{
			Pieces.Add({ Text, KestrelMarkdownStyle::MakeTextStyle(Style, Link.IsSet(), HeadingLevel), Link,
				EnumHasAnyFlags(Style, EMarkdownStyle::Strike) });
		}
	}

	const int32 HeadingLevel;
	int32& FilesLeft;
	TArray<FStyledPiece> Pieces;
};

void FPieceMaker::Add(const FMarkdownSpan& Span)
{
	const bool bCode = EnumHasAnyFlags(Span.Style, EMarkdownStyle::Code);
	const FString Shown = KestrelDisplayText::EscapeDirections(Span.Text);
	const FKestrelLink Link =
		Span.Address.IsEmpty() ? FKestrelLink() : KestrelLinks::FromAddress(Span.Address, FilesLeft);
	if (Link.IsSet() || (bCode && Shown.Len() > MaxLinkedCode))
	{
		AddPiece(Shown, Span.Style, Link);
		return;
	}
	int32 Begin = 0;
	for (const FKestrelFoundLink& Found : KestrelLinks::FindIn(Shown, FilesLeft))
	{
		AddPiece(Shown.Mid(Begin, Found.Begin - Begin), Span.Style, FKestrelLink());
		AddPiece(Shown.Mid(Found.Begin, Found.End - Found.Begin), Span.Style, Found.Link);
		Begin = Found.End;
	}
	AddPiece(Shown.Mid(Begin), Span.Style, FKestrelLink());
}
}

TArray<FStyledPiece> MakeText(const FMarkdownText& Text, int32 HeadingLevel, int32& InOutFilesLeft)
{
	FPieceMaker Maker(HeadingLevel, InOutFilesLeft);
	for (const FMarkdownSpan& Span : KestrelHiddenTexts::Remove(Text))
	{
		Maker.Add(Span);
	}
	return Maker.Take();
}

TArray<FStyledPiece> MakeCode(const FString& Code, const FString& Language)
{
	FString Shown = KestrelDisplayText::EscapeLines(Code);
	Shown.RemoveFromEnd(TEXT("\n"));
	TArray<FStyledPiece> Pieces;
	for (const FCodePiece& Piece : KestrelCodeHighlight::Tokenize(Shown, Language))
	{
		Pieces.Add(
			{ Shown.Mid(Piece.Begin, Piece.End - Piece.Begin), KestrelMarkdownStyle::MakeCodeStyle(Piece.Token), {} });
	}
	return Pieces;
}

FString ShowLanguage(const FString& Language)
{
	constexpr int32 MaxLength = 30;
	return KestrelDisplayText::EscapeLine(Language.Left(MaxLength));
}
}
