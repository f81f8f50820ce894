#pragma once

#include "CoreMinimal.h"
#include "Widget/Markdown/MarkdownBlock.h"
#include "Widget/Markdown/MarkdownLine.h"

/** What begins or ends a block: read from a line, at its first character that is no blank. */
namespace KestrelMarkdown
{
/** The beginning and the end of code between fences. */
struct FFence
{
	TCHAR Character = TEXT('\0');
	int32 Length = 0;
	int32 Indent = 0;
	FString Language;
};

struct FListMarker
{
	TCHAR Delimiter = TEXT('\0'); // "-", "*" or "+" of a bullet, "." or ")" after a number
	int32 Length = 0;
	int32 Number = 0; // 0 as well where it is a bullet
	bool bOrdered = false;
};

TOptional<FFence> ReadFence(const FLine& Line);
bool EndsFence(const FLine& Line, const FFence& Fence);
/** @return the heading's level, 1 to 6, and its text; 0 if it is none */
int32 ReadHeading(const FLine& Line, FStringView& OutText);
/** A line below a paragraph that makes it a heading. @return 1 or 2; 0 if it is none */
int32 ReadUnderline(const FLine& Line);
bool IsRule(const FLine& Line);
TOptional<FListMarker> ReadListMarker(const FLine& Line);
/** The line below the heading of a table. @return empty if it is none */
TArray<EMarkdownAlignment> ReadColumns(const FLine& Line);
/** The cells of a row of a table, at most so many, each without the blanks around it. */
TArray<FString> SplitCells(FStringView Row, int32 MaxCells);
}
