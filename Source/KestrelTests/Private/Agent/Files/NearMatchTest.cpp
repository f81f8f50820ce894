#include "Agent/Files/NearMatch.h"
#include "Support/KestrelTest.h"

namespace NearMatchTest
{
struct FCase
{
	const TCHAR* Text;
	const TCHAR* Wanted;
	const TCHAR* Expected;
};

const FCase Cases[] = {
	{ TEXT("a\nint Speed;\n"), TEXT("int speed;"), TEXT("line 2 differs in letter case only") },
	{ TEXT("a\r\nb\r\nc\r\n"), TEXT("b\nc"), TEXT("line 2 differs in line endings only") },
	{ TEXT("a\n\tif (b)\n\t{\n"), TEXT("if( b )\n  {"), TEXT("line 2 differs in white space only") },
	{ TEXT("x\nvoid F()\n{\n\tG(1);\n}\n"), TEXT("void F()\n{\n\tG(2);\n}"),
		TEXT("from line 2 on, 2 lines are as wanted, but line 4 reads otherwise: G(1);") },
	{ TEXT("a\nb\na\nc\nd"), TEXT("a\nc\ne"),
		TEXT("from line 3 on, 2 lines are as wanted, but line 5 reads otherwise: d") },
	{ TEXT("a\nlast"), TEXT("last\nmore"), TEXT("") },
	{ TEXT("a\nb\u202Ec"), TEXT("\n a\nx"),
		TEXT("from line 1 on, 1 line is as wanted, but line 2 reads otherwise: b\u27E8U+202E\u27E9c") },
	{ TEXT("nothing"), TEXT("alike"), TEXT("") },
	{ TEXT(""), TEXT("a"), TEXT("") },
	{ TEXT("a"), TEXT(" \n"), TEXT("") },
};
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(FKestrelNearMatchTest, "Kestrel.NearMatch.SaysWhyATextIsNotFound", KestrelTest::Flags)
bool FKestrelNearMatchTest::RunTest(const FString& Parameters)
{
	for (const NearMatchTest::FCase& Case : NearMatchTest::Cases)
	{
		KestrelTest::TestSameText(
			*this, Case.Wanted, KestrelNearMatch::Describe(Case.Text, Case.Wanted).ToString(), Case.Expected);
	}
	// Two lines that repeat, against a text in which each of many lines begins them: what is compared has an end.
	const FString Many = FString::ChrN(400000, TEXT('a')).Replace(TEXT("a"), TEXT("a\n"));
	TestFalse(TEXT("repetition"), KestrelNearMatch::Describe(Many + TEXT("c"), Many + TEXT("b")).IsEmpty());
	return true;
}
