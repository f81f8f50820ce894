#include "Widget/Prompt/HeaderSymbols.h"
#include "Support/KestrelTest.h"

namespace HeaderSymbolsTest
{
struct FSymbolCase
{
	const TCHAR* What;
	const TCHAR* Header;
	const TCHAR* Expected; // name:line, with blanks between
};

const FSymbolCase SymbolCases[] = {
	{ TEXT("types behind macros, with and without bases"),
		TEXT(
			"class FOO_API AWalker : public APawn\n{\n};\nstruct alignas(16) FStep final {};\nenum class EGait : uint8 { Slow };"),
		TEXT("AWalker:1 FStep:4 EGait:5") },
	{ TEXT("none that are only mentioned"),
		TEXT(
			"class AActor;\nfriend class FOther;\nvoid Walk(class UWorld* World, struct FStep& Step);\nclass AActor* Find();"),
		TEXT("") },
	{ TEXT("none of templates' parameters, but the templates"),
		TEXT("template <class T, class U = TMap<int, T>>\nclass TQueue\n{\n};\nTArray<class AActor*> All;"),
		TEXT("TQueue:2") },
	{ TEXT("members that are reflected, of their type"),
		TEXT(
			"UCLASS(Blueprintable)\nclass UGate : public UObject\n{\n\tGENERATED_BODY()\n\tUPROPERTY(EditAnywhere, meta = "
			"(X = \"class UNo {\"))\n\tTMap<FName, int32> Tolls = {};\n\tUFUNCTION()\n\tvirtual void Open(int32 Toll) "
			"const;\n\tvoid Hidden();\n};"),
		TEXT("UGate:2 UGate::Tolls:6 UGate::Open:8") },
	{ TEXT("nothing of comments, strings and the preprocessor"),
		TEXT(
			"// class A {}\n/* class B {\n}; */\n#define X class C { \\\n class D {\nconst char* E = \"class F {\";\nchar G = "
			"'\"';\nclass H {};"),
		TEXT("H:8") },
	{ TEXT("what is inside another type, by its own name"),
		TEXT("class A { struct B { int C; }; UPROPERTY() int D; };"), TEXT("A:1 B:1 A::D:1") },
	{ TEXT("as much as there is of an unfinished header"),
		TEXT("class A {\nUPROPERTY(\nclass B : public\nenum {\ntemplate <\n\"class C {\n'"), TEXT("A:1") },
};
}

DEFINE_SPEC(FKestrelHeaderSymbolsSpec, "Kestrel.HeaderSymbols", KestrelTest::Flags)
void FKestrelHeaderSymbolsSpec::Define()
{
	using namespace HeaderSymbolsTest;

	for (const FSymbolCase& Case : SymbolCases)
	{
		It(FString(TEXT("finds ")) + Case.What, [this, &Case]() {
			TArray<FString> Found;
			for (const FKestrelSymbol& Symbol : KestrelHeaderSymbols::Find(Case.Header))
			{
				Found.Add(FString::Printf(TEXT("%s:%d"), *Symbol.Name, Symbol.Line));
			}
			KestrelTest::TestSameText(*this, Case.What, FString::Join(Found, TEXT(" ")), Case.Expected);
		});
	}

	It("takes the time of one pass over any text", [this]() {
		for (const TCHAR* Part : { TEXT("class "), TEXT("("), TEXT("{"), TEXT("template<"), TEXT("/*"), TEXT("\""),
				 TEXT("class A{"), TEXT("UPROPERTY("), TEXT("class (") })
		{
			FString Text;
			for (int32 Index = 0; Index < 20000; ++Index)
			{
				Text += Part;
			}
			TestTrue(Part, KestrelHeaderSymbols::Find(Text).Num() <= KestrelHeaderSymbols::MaxSymbols);
		}
	});
}
