#include "Widget/DiffFold.h"
#include "Support/KestrelTest.h"

namespace DiffFoldTest
{
/** "=" unchanged, "+" added, "-" removed: a letter for each line. */
TArray<FDiffChunk> MakeChunks(const FString& Kinds)
{
	FDiffChunk Chunk;
	for (const TCHAR Kind : Kinds)
	{
		const EDiffLineType Type = Kind == TEXT('+')   ? EDiffLineType::Added
								   : Kind == TEXT('-') ? EDiffLineType::Removed
													   : EDiffLineType::Unchanged;
		Chunk.Lines.Add({ FString::Chr(Kind), Type, 0, 0 });
	}
	return { Chunk };
}

/** What is shown, and the number of lines of each fold in brackets. */
FString Describe(const FString& Kinds)
{
	FString Text;
	for (const FDiffSegment& Segment : KestrelDiffFold::Split(MakeChunks(Kinds)))
	{
		for (const FDiffLine& Line : Segment.Chunk.Lines)
		{
			Text += Segment.bFolded ? TEXT("") : *Line.Content;
		}
		Text += Segment.bFolded ? FString::Printf(TEXT("(%d)"), Segment.Chunk.Lines.Num()) : FString();
	}
	return Text;
}

FString DescribePart(const TCHAR* Old, const TCHAR* New)
{
	const TOptional<FChangedPart> Part = KestrelDiffFold::FindChangedPart(Old, New);
	return Part.IsSet() ? FString::Printf(TEXT("%s>%s"), *FString(Old).Mid(Part->Begin, Part->OldEnd - Part->Begin),
							  *FString(New).Mid(Part->Begin, Part->NewEnd - Part->Begin))
						: FString(TEXT("none"));
}
}

BEGIN_DEFINE_SPEC(FKestrelDiffFoldSpec, "Kestrel.DiffFold", KestrelTest::Flags)
END_DEFINE_SPEC(FKestrelDiffFoldSpec)

void FKestrelDiffFoldSpec::Define()
{
	It("folds what is far from any change, unless that is a line or two", [this]() {
		const TPair<const TCHAR*, const TCHAR*> Cases[] = { { TEXT("=========="), TEXT("(10)") },
			{ TEXT("=====-+====="), TEXT("=====-+=====") }, { TEXT("======-======"), TEXT("(3)===-===(3)") },
			{ TEXT("+========="), TEXT("+===(6)") }, { TEXT("+=======+"), TEXT("+=======+") },
			{ TEXT("+=========+"), TEXT("+===(3)===+") }, { TEXT(""), TEXT("") } };
		for (const TPair<const TCHAR*, const TCHAR*>& Case : Cases)
		{
			KestrelTest::TestSameText(*this, Case.Key, DiffFoldTest::Describe(Case.Key), Case.Value);
		}
	});

	It("folds all that comes after a few hundred changes, and counts them", [this]() {
		const FString Kinds = FString::ChrN(300, TEXT('+')).Replace(TEXT("+"), TEXT("+=========="));
		const TArray<FDiffSegment> Segments = KestrelDiffFold::Split(DiffFoldTest::MakeChunks(Kinds));
		int32 NumLines = 0;
		int32 NumShown = 0;
		for (const FDiffSegment& Segment : Segments)
		{
			NumLines += Segment.Chunk.Lines.Num();
			NumShown += Segment.bFolded ? 0 : 1;
		}
		TestEqual(TEXT("no line is left out"), NumLines, Kinds.Len());
		TestEqual(TEXT("shown"), NumShown, KestrelDiffFold::MaxShownSegments);
		TestEqual(
			TEXT("changes in the last fold"), Segments.Last().NumChanges, 300 - KestrelDiffFold::MaxShownSegments);
		TestEqual(TEXT("and in the others"), Segments[1].NumChanges, 0);
	});

	It("finds what two versions of a line do not have in common", [this]() {
		const TCHAR* const Cases[][3] = { { TEXT("Speed = 5;"), TEXT("Speed = 50;"), TEXT(">0") },
			{ TEXT("\tJump();"), TEXT("\tif (A) Jump();"), TEXT(">if (A) ") },
			{ TEXT("Call(Old, 1)"), TEXT("Call(New, 1)"), TEXT("Old>New") },
			{ TEXT("same"), TEXT("same"), TEXT("none") }, { TEXT("\t\t\ta"), TEXT("\t\t\tb"), TEXT("none") },
			{ TEXT("nothing"), TEXT("alike"), TEXT("none") },
			{ TEXT("say \U0001F600 x"), TEXT("say \U0001F601 x"), TEXT("\U0001F600>\U0001F601") } };
		for (const auto& Case : Cases)
		{
			KestrelTest::TestSameText(*this, Case[0], DiffFoldTest::DescribePart(Case[0], Case[1]), Case[2]);
		}
	});
}
