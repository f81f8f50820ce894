#include "Widget/Markdown/CodeHighlight.h"
#include "Support/KestrelTest.h"

namespace CodeHighlightTest
{
/** Each piece behind the letter of its token: P, K, S, N, C or D. */
FString Describe(const FString& Code, const TCHAR* Language)
{
	FString Text;
	for (const FCodePiece& Piece : KestrelCodeHighlight::Tokenize(Code, Language))
	{
		Text += FString::Chr(TEXT("PKSNCD")[static_cast<int32>(Piece.Token)]) + TEXT("[") +
				Code.Mid(Piece.Begin, Piece.End - Piece.Begin) + TEXT("]");
	}
	return Text;
}

struct FCase
{
	const TCHAR* Language;
	const TCHAR* Code;
	const TCHAR* Expected;
};

const FCase Cases[] = {
	{ TEXT("cpp"), TEXT("int32 A2 = 0x1F; // if"), TEXT("K[int32]P[ A2 = ]N[0x1F]P[; ]C[// if]") },
	{ TEXT("C++"), TEXT("/* a\nb */ \"x\\\"y\" 'c'"), TEXT("C[/* a\nb */]P[ ]S[\"x\\\"y\"]P[ ]S['c']") },
	{ TEXT("cpp"), TEXT("R\"d(a)\" \")d\" b"), TEXT("S[R\"d(a)\" \")d\"]P[ b]") },
	{ TEXT("cpp"), TEXT(" #include <A>\nIf #"), TEXT("P[ ]D[#include]P[ <A>\nIf #]") },
	{ TEXT("py"), TEXT("@tool.x\ndef f(): '''a\n'b''' # c"),
		TEXT("D[@tool.x]P[\n]K[def]P[ f(): ]S['''a\n'b''']P[ ]C[# c]") },
	{ TEXT("json"), TEXT("{\"a\" : [\"b\", true, 1.5]}"),
		TEXT("P[{]K[\"a\"]P[ : []S[\"b\"]P[, ]K[true]P[, ]N[1.5]P[]}]") },
	{ TEXT("ini"), TEXT("[S]\nKey=True\n; c"), TEXT("K[[S]]P[\n]K[Key]P[=]K[True]P[\n]C[; c]") },
	{ TEXT("cpp"), TEXT("\"open\nint"), TEXT("S[\"open]P[\n]K[int]") },
	{ TEXT("cpp"), TEXT("/* open"), TEXT("C[/* open]") },
	{ TEXT("rust"), TEXT("fn f() {}"), TEXT("P[fn f() {}]") },
	{ TEXT(""), TEXT("int"), TEXT("P[int]") },
	{ TEXT("cpp"), TEXT(""), TEXT("") },
};
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelCodeHighlightTest, "Kestrel.CodeHighlight.TellsTheWordsOfEachLanguageApart", KestrelTest::Flags)
bool FKestrelCodeHighlightTest::RunTest(const FString& Parameters)
{
	for (const CodeHighlightTest::FCase& Case : CodeHighlightTest::Cases)
	{
		KestrelTest::TestSameText(
			*this, Case.Code, CodeHighlightTest::Describe(Case.Code, Case.Language), Case.Expected);
	}
	return true;
}
