#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"

/** The lines in which a text is shown: its own, broken further where they are wider than the space for them. */
class FWrappedText
{
public:
	struct FLine
	{
		int32 ParagraphIndex; // of the lines the text has by itself
		int32 Begin;
		int32 Length;
		float Width; // in Slate units

		int32 End() const { return Begin + Length; }
	};

	/** The lines of a text, at least one. "\r\n", "\n" and "\r" end a line. */
	static TArray<FString> SplitIntoParagraphs(const FString& Text);

	/** @param WrapWidth  in Slate units; 0 or less: no wrapping */
	void Update(const TArray<FString>& Paragraphs, const FSlateFontInfo& Font, float WrapWidth);

	const TArray<FLine>& GetLines() const { return Lines; }
	FVector2D GetSize() const { return Size; }
	float GetLineHeight() const { return LineHeight; }
	/** The first line that reaches below Y, and how many lines there are up to one that begins below EndY. */
	void FindLinesBetween(float Y, float EndY, int32& OutFirst, int32& OutCount) const;
	/** The shown line that holds a place; at a break the later one. */
	int32 FindLine(int32 ParagraphIndex, int32 Offset) const;

private:
	void WrapParagraph(const FString& Paragraph, int32 ParagraphIndex, const FSlateFontInfo& Font, float WrapWidth);

	TArray<FLine> Lines;
	FVector2D Size = FVector2D(0.0, 0.0);
	float LineHeight = 0.0f;
};
