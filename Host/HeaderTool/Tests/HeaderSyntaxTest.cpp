#include "HeaderParser.h"
#include "ParameterDefaults.h"

#include <gtest/gtest.h>

namespace HeaderSyntaxTest
{
/** What the parser says of a header, one error a line, without the file's name. */
std::string GetErrors(const std::string& Declarations)
{
	FErrors Errors;
	ParseHeader("A.h", "A.h", "#include \"A.generated.h\"\n" + Declarations, Errors);
	std::string Result;
	for (const std::string& Line : Errors.GetLines())
	{
		Result += (Result.empty() ? "" : "\n") + Line.substr(std::string("A.h").size());
	}
	return Result;
}

std::string GetErrorsOfMember(const std::string& Member)
{
	return GetErrors("UCLASS()\nclass UA : public UObject\n{\n\tGENERATED_BODY() public:\n" + Member + "\n};\n");
}

struct FSyntaxCase
{
	const char* Text;
	const char* Errors;
};

TEST(HeaderSyntax, OfMembersIsCheckedWithTheLine)
{
	const FSyntaxCase Cases[] = {
		{ "UPROPERTY() int32 A;", "" },
		{ "UPROPERTY(EditAnywhere,) int32 A;", "" },
		{ "UPROPERTY(EditAnywhere) [[maybe_unused]] int32 A = 3;", "" },
		{ "UPROPERTY() static int32 A;", "(6): error: 'static' is not allowed on a reflected variable" },
		{ "UPROPERTY() mutable int32 A;", "(6): error: 'mutable' is not allowed on a reflected variable" },
		{ "UPROPERTY() int32;", "(6): error: Missing variable name" },
		{ "UPROPERTY() +int32 A;", "(6): error: Found '+' when expecting a type" },
		{ "UPROPERTY() UObject** A;",
			"(6): error: Pointers to pointers and references to references are not supported" },
		{ "UPROPERTY(EditAnywhere = ) int32 A;", "(6): error: Found ')' when expecting a value" },
		{ "UPROPERTY(= 3) int32 A;", "(6): error: Found '=' when expecting a specifier" },
		{ "UPROPERTY(meta = (= 3)) int32 A;", "(6): error: Found '=' when expecting a metadata key" },
		{ "UPROPERTY(EditAnywhere Category) int32 A;",
			"(6): error: Found 'Category' when expecting ',' while parsing specifiers" },
		{ "UPROPERTY(BlueprintReadOnly, BlueprintReadWrite) int32 A;",
			"(6): error: Cannot specify a property as being both BlueprintReadOnly and BlueprintReadWrite" },
		{ "UPROPERTY() TArray<int32 A;",
			"(6): error: Found 'A' when expecting '>' while parsing a template's arguments" },
		{ "UFUNCTION() void ();", "(6): error: Bad function name" },
		{ "UFUNCTION() void Do;", "(6): error: Found ';' when expecting '(' while parsing the function 'Do'" },
		{ "UFUNCTION() void Do(int32);", "(6): error: Missing parameter name in the function 'Do'" },
		{ "UFUNCTION() void Do(int32 A int32 B);",
			"(6): error: Found 'int32' when expecting ',' while parsing the parameters of 'Do'" },
		{ "UFUNCTION(BlueprintNativeEvent, BlueprintImplementableEvent) void Do();",
			"(6): error: A function cannot be both BlueprintNativeEvent and BlueprintImplementableEvent" },
		{ "UFUNCTION() virtual FORCEINLINE int32 Do(const FString& A = TEXT(\"a,b\"), int32 B = (1, 2)) const override;",
			"" },
	};
	for (const FSyntaxCase& Case : Cases)
	{
		EXPECT_EQ(GetErrorsOfMember(Case.Text), Case.Errors) << Case.Text;
	}
}

TEST(HeaderSyntax, OfTypesIsCheckedWithTheLine)
{
	const FSyntaxCase Cases[] = {
		{ "UENUM()\nenum class EA : uint8 { A, B = (1 << 2), C UMETA(Hidden), };", "" },
		{ "UENUM()\nnamespace EA { enum Type { A }; }", "" },
		{ "UENUM()\nenum class EA : uint8 {};", "(2): error: The enumeration 'EA' has no enumerators" },
		{ "UENUM()\nclass EA {};", "(3): error: Found 'class' when expecting 'enum' while parsing an enumeration" },
		{ "UENUM()\nenum class EA : uint8;",
			"(3): error: Found ';' when expecting '{' while parsing the enumeration 'EA'" },
		{ "UENUM()\nenum class EA : uint8 { A B };",
			"(3): error: Found 'B' when expecting ',' while parsing the enumeration 'EA'" },
		{ "UENUM()\nnamespace EA { enum Kind { A }; }",
			"(3): error: Found 'Kind' when expecting 'Type' while parsing the enumeration in 'EA'" },
		{ "UCLASS(Config)\nclass UA : public UObject { GENERATED_BODY() };",
			"(2): error: The class specifier 'Config' needs the name of a configuration, such as Config = Game" },
		{ "DECLARE_DYNAMIC_DELEGATE(FOn);", "" },
		{ "DECLARE_DYNAMIC_DELEGATE_OneParam(FOn, int32);",
			"(2): error: Found ')' when expecting ',' while parsing a delegate's parameter, which has a name" },
		{ "DECLARE_DYNAMIC_DELEGATE_RetVal(int32);",
			"(2): error: Found ')' when expecting ',' while parsing a delegate" },
	};
	for (const FSyntaxCase& Case : Cases)
	{
		EXPECT_EQ(GetErrors(Case.Text), Case.Errors) << Case.Text;
	}
}

TEST(HeaderSyntax, OneMistakeIsReportedOnceAndTheRestIsRead)
{
	EXPECT_EQ(GetErrorsOfMember("UPROPERTY() int32;\nUPROPERTY() static int32 A;\nUFUNCTION() void ();\n"
								"UPROPERTY() int32 Good;"),
		"(6): error: Missing variable name\n(7): error: 'static' is not allowed on a reflected variable\n"
		"(8): error: Bad function name");
}

TEST(ParameterDefaults, AreWhatAPinOfTheTypeReads)
{
	const struct
	{
		const char* Source;
		const char* Text;
	} Cases[] = {
		{ "3", "3" },
		{ "-1", "-1" },
		{ "true", "true" },
		{ "2.f", "2.000000" },
		{ "-0.5", "-0.500000" },
		{ "TEXT(\"a, b\")", "a, b" },
		{ "TEXT(\"\")", "" },
		{ "\"plain\"", "plain" },
		{ "FString()", "" },
		{ "FName()", "" },
		{ "NAME_None", "None" },
		{ "nullptr", "None" },
		{ "NULL", "None" },
		{ "EMood::Wild", "Wild" },
		{ "EMood::Type::Wild", "Wild" },
		{ "INVTEXT(\"Hello\")", "Hello" },
		{ "FText()", "" },
		{ "FText::GetEmpty()", "" },
		{ "FVector::ZeroVector", "0, 0, 0" },
		{ "FVector(ForceInit)", "0, 0, 0" },
		{ "FRotator::ZeroRotator", "0, 0, 0" },
		{ "FVector(1,-2.5f,3.0)", "1.000000,-2.500000,3.000000" },
		{ "FRotator(10,20,30)", "10.000000,20.000000,30.000000" },
		{ "FVector2D(1,2)", "(X=1.000000,Y=2.000000)" },
		{ "FLinearColor(0.0f,0.66f,1.0f)", "(R=0.000000,G=0.660000,B=1.000000,A=1.000000)" },
		{ "FLinearColor(1,0,0,0.5)", "(R=1.000000,G=0.000000,B=0.000000,A=0.500000)" },
		{ "FOther(1,2)", "FOther(1,2)" },
		{ "FVector(Length,0,0)", "FVector(Length,0,0)" },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(GetDefaultText(Case.Source), Case.Text) << Case.Source;
	}
}
}
