#pragma once

#include "CoreMinimal.h"
#include "Fonts/FontMeasure.h"
#include "Framework/Text/TextLayout.h"

struct FTextBlockStyle;

/**
 * The lines in which a text is shown: its own, broken further where they are wider than the space for them.
 *
 * A line consists of pieces, each in one font; a text without runs has one piece a line. Pieces are measured when they
 * are asked for: only those of the lines in view are.
 */
class FWrappedText
{
public:
	/** What is laid out, and how. Lines and runs are not copied: they have to stay as they are until the next Update.
	 */
	struct FSource
	{
		const TArray<FString>* Paragraphs = nullptr;
		/** Of a text without runs. */
		FSlateFontInfo Font;
		/** The same lines as Paragraphs, with runs that have their own styles; null: there are none. */
		const FTextLayout* Runs = nullptr;
		float WrapWidth = 0.0f; // in Slate units; 0 or less: no wrapping
		ETextWrappingPolicy WrappingPolicy = ETextWrappingPolicy::AllowPerCharacterWrapping;
		/** A share of the height of a line's text. What there is more of it is left free below the text. */
		float LineHeightPercentage = 1.0f;

		bool operator==(const FSource&) const = default;
	};

	/** Sizes and places in Slate units. */
	struct FLine
	{
		int32 ParagraphIndex; // of the lines the text has by itself
		int32 Begin;
		int32 Length;
		float Width;
		float Height;
		double Top;

		int32 End() const { return Begin + Length; }
	};

	/** A stretch of a line in one font. Begin and End are offsets in the paragraph. */
	struct FPiece
	{
		int32 Begin;
		int32 End;
		float Left;
		float Width;
		float Height;
		float Baseline; // below its own top
		float Top;      // below the line's: letters of all sizes stand on one line
		const FSlateFontInfo* Font;
		const FTextBlockStyle* Style; // null without runs
	};

	/** The lines of a text, at least one. "\r\n", "\n" and "\r" end a line. */
	static TArray<FString> SplitIntoParagraphs(const FString& Text);

	void Update(const FSource& NewSource);

	const FSource& GetSource() const { return Source; }
	const TArray<FLine>& GetLines() const { return Lines; }
	FVector2D GetSize() const { return Size; }
	/** The first line that reaches below Y, and how many lines there are up to one that begins below EndY. */
	void FindLinesBetween(double Y, double EndY, int32& OutFirst, int32& OutCount) const;
	/** The line that Y is in; the first or the last one for what lies beyond. */
	int32 FindLineAt(double Y) const;
	/** The shown line that holds a place; at a break the later one. */
	int32 FindLine(int32 ParagraphIndex, int32 Offset) const;

	FStringView GetText(const FLine& Line) const { return GetText(Line, Line.Begin, Line.End()); }
	/** @param Begin  offset in the paragraph, as End is */
	FStringView GetText(const FLine& Line, int32 Begin, int32 End) const;
	TArray<FPiece> GetPieces(const FLine& Line) const;
	/** Where the cursor stands at an offset in the paragraph, which is moved into the line. */
	float GetCursorX(const FLine& Line, int32 Offset) const;
	/** The offset in the paragraph that the cursor gets at a horizontal place. */
	int32 FindOffset(const FLine& Line, float X) const;
	/** The stretches that characters of a line take; Begin and End are offsets in the paragraph. */
	TArray<FSlateFontMeasure::FSpan> FindSpans(const FLine& Line, int32 Begin, int32 End) const;

private:
	struct FRun
	{
		int32 Begin;
		int32 End;
		const FSlateFontInfo* Font;
		const FTextBlockStyle* Style;
	};

	int32 GetNumRuns(int32 ParagraphIndex) const;
	FRun GetRun(int32 ParagraphIndex, int32 RunIndex) const;
	/** The run that holds an offset in the paragraph; at a border the later one. */
	int32 FindRun(int32 ParagraphIndex, int32 Offset) const;
	void WrapParagraph(int32 ParagraphIndex);
	/** Breaks a paragraph whose runs differ. */
	void WrapRuns(int32 ParagraphIndex);
	/** Where the first character begins that a line has no room for any more; behind Begin. */
	int32 FindEndOfFitting(int32 ParagraphIndex, int32 Begin) const;
	void AddLine(int32 ParagraphIndex, int32 Begin, int32 End);

	FSource Source;
	TSharedPtr<FSlateFontMeasure> Measure;
	TArray<FLine> Lines;
	FVector2D Size = FVector2D(0.0, 0.0);
};
