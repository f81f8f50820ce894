#pragma once

#include "CoreMinimal.h"
#include "Widget/Markdown/MarkdownBlock.h"

namespace KestrelMarkdown
{
/**
 * The pieces of a text, and the runs of "*", "_" and "~" among them that wait for what they enclose. Runs are matched
 * as CommonMark's appendix describes it ("process emphasis"), in time that grows with their
 * number.
 */
class FDelimiters
{
public:
	/** @return the number of the piece */
	int32 AddText(FStringView Text);
	void AddCode(const FString& Code);
	/** A run of one character, with what stands before and after it ("\n" at the edges of the text). */
	void AddDelimiters(FStringView Run, TCHAR Before, TCHAR After);
	/** Makes all after a piece the text of a link, and the piece itself, which was its bracket, nothing. */
	void AddLink(int32 Piece, const FString& Address);
	/** Takes blanks off the end of the text that was added last. @return how many */
	int32 TrimBlanks();
	int32 NumDelimiters() const { return Runs.Num(); }
	/** Matches the runs from that number on; those that stay alone are text. */
	void MatchFrom(int32 FirstRun);
	/** Ends the reading. */
	FMarkdownText TakeText();

private:
	struct FPiece
	{
		FString Text;
		bool bCode = false;
		// By style, see StyleOf: how many end before the piece, and how many begin after it.
		int32 NumEnding[3] = {};
		int32 NumBeginning[3] = {};
		bool bEndsLink = false;
		int32 Link = INDEX_NONE; // that begins after the piece, in Addresses
	};

	struct FRun
	{
		int32 Piece = 0;
		TCHAR Character = TEXT('\0');
		int32 Length = 0; // of the run as it was written
		int32 Left = 0;   // that are not matched yet
		bool bOpens = false;
		bool bCloses = false;
		int32 Previous = INDEX_NONE;
		int32 Next = INDEX_NONE;
	};

	/** @param Bottom  the last run that is known not to open what Closing closes */
	int32 FindOpening(const FRun& Closing, int32 Bottom) const;
	static bool Matches(const FRun& Opening, const FRun& Closing);
	void Match(int32 Opening, int32 Closing);
	void Remove(int32 Run);
	void RemoveBetween(int32 Opening, int32 Closing);

	TArray<FPiece> Pieces;
	TArray<FRun> Runs;
	int32 LastRun = INDEX_NONE; // of those that are still waiting
	TArray<FString> Addresses;
};
}
