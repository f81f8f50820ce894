#pragma once

#include "CoreMinimal.h"
#include "Widget/Markdown/MarkdownCharacters.h"

namespace KestrelMarkdown
{
/** What is left of a line while the markers of its blocks are read off. A tab reaches to the next fourth column. */
class FLine
{
public:
	explicit FLine(FStringView InText)
		: Text(InText)
	{
		FindNext();
	}

	bool IsBlank() const { return Next == Text.Len(); }
	/** Columns of blanks before the next character. */
	int32 GetIndent() const { return NextColumn - Column; }
	/** A block begins with up to three columns of blanks. */
	bool IsIndented() const { return GetIndent() >= 4; }
	/** After the blanks; 0 on a blank line. */
	TCHAR Peek(int32 Ahead = 0) const { return Next + Ahead < Text.Len() ? Text[Next + Ahead] : TEXT('\0'); }
	/** Without the blanks at its beginning. */
	FStringView GetRest() const { return Text.RightChop(Next); }

	void SkipIndent()
	{
		Position = Next;
		Column = NextColumn;
		bInTab = false;
	}

	/** Skips blanks, at most so many columns. A tab that reaches farther is left in part. */
	void SkipColumns(int32 Count)
	{
		while (Count > 0 && Position < Next)
		{
			const int32 Width = Text[Position] == TEXT('\t') ? 4 - Column % 4 : 1;
			bInTab = Width > Count;
			Column += FMath::Min(Width, Count);
			Count -= Width;
			Position += bInTab ? 0 : 1;
		}
	}

	/** Skips characters that are no tabs, after the blanks. */
	void Skip(int32 Count)
	{
		SkipIndent();
		Position += Count;
		Column += Count;
		FindNext();
	}

	/** What is left as it stands, with the blanks that are left of a tab. */
	FString ToCode() const
	{
		const FString Blanks = FString::ChrN(bInTab ? 4 - Column % 4 : 0, TEXT(' '));
		return Blanks + FString(Text.RightChop(Position + (bInTab ? 1 : 0)));
	}

private:
	void FindNext()
	{
		Next = Position;
		NextColumn = Column;
		for (; Next < Text.Len() && IsBlank(Text[Next]); ++Next)
		{
			NextColumn += Text[Next] == TEXT('\t') ? 4 - NextColumn % 4 : 1;
		}
	}

	static bool IsBlank(TCHAR Character) { return KestrelMarkdown::IsBlank(Character); }

	FStringView Text;
	int32 Position = 0;
	int32 Column = 0;
	int32 Next = 0; // of the first character that is no blank
	int32 NextColumn = 0;
	bool bInTab = false; // Position is at a tab whose first columns are read
};
}
