#pragma once

#include "CoreMinimal.h"
#include "Framework/Text/BaseTextLayoutMarshaller.h"
#include "Styling/SlateTypes.h"
#include "Widget/Answer/KestrelLink.h"

class FTextLayout;
class FTextLocation;

/** A piece of text that is shown in one style. */
struct FStyledPiece
{
	/** May have line breaks ("\n"). */
	FString Text;
	FTextBlockStyle Style;
	/** Where it leads when it is clicked; most lead nowhere. */
	FKestrelLink Link;
	bool bStrike = false;
	/** Links are underlined in any case. */
	bool bUnderline = false;
};

/**
 * Pieces of text as the lines of a text widget. They are made once and not edited: the widget is read-only, and its
 * text is what GetText of the pieces says.
 */
class FKestrelStyledText : public FBaseTextLayoutMarshaller
{
public:
	explicit FKestrelStyledText(TArray<FStyledPiece>&& InPieces);

	/** All pieces in a row. */
	FText GetText() const;
	bool HasLinks() const;
	/** Of the piece that a place in the widget's text is in. */
	FKestrelLink GetLinkAt(const FTextLocation& Location) const;

	virtual void SetText(const FString& SourceString, FTextLayout& TargetTextLayout) override;
	virtual void GetText(FString& TargetString, const FTextLayout& SourceTextLayout) override;

private:
	/** A part of a line. */
	struct FPart
	{
		int32 Piece = 0;
		int32 Begin = 0; // in the line
		int32 End = 0;
	};
	struct FLine
	{
		TSharedRef<FString> Text = MakeShared<FString>();
		TArray<FPart> Parts;
	};

	void SplitIntoLines();
	void AddPart(int32 Piece, const FString& Text);
	void AddLineHighlights(FTextLayout& Layout) const;

	TArray<FStyledPiece> Pieces;
	TArray<FLine> Lines;
};
