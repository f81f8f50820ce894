#include "HeaderTool.h"
#include "HeaderParser.h"
#include "MutateText.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
std::string ReadFile(const fs::path& Path)
{
	std::ifstream File(Path, std::ios::binary);
	return std::string(std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>());
}

/** Headers in a folder of their own, and a run of the tool over them. */
class FHeaderToolTest : public testing::Test
{
protected:
	void SetUp() override
	{
		Folder = fs::path(testing::TempDir()) / ("HeaderTool" + std::to_string(::getpid()));
		fs::remove_all(Folder);
		fs::create_directories(Folder / "Generated");
	}

	void TearDown() override { fs::remove_all(Folder); }

	void Write(const std::string& Header, const std::string& Text)
	{
		const fs::path Path = Folder / Header;
		fs::create_directories(Path.parent_path());
		std::ofstream(Path, std::ios::binary) << Text;
		if (std::find(Headers.begin(), Headers.end(), Path.string()) == Headers.end())
		{
			Headers.push_back(Path.string());
		}
	}

	/** The errors, with paths relative to the folder. */
	std::vector<std::string> Run(const std::string& ModuleName = "Test")
	{
		FHeaderToolOptions Options;
		Options.ModuleName = ModuleName;
		Options.ApiMacro = "TEST_API";
		Options.OutputFolder = (Folder / "Generated").string();
		Options.ManifestPath = (Folder / (ModuleName + ".types")).string();
		Options.UsedManifests = UsedManifests;
		Options.IncludeRoots = { Folder.string() };
		Options.Headers = Headers;
		FErrors Errors;
		RunHeaderTool(Options, Errors);

		std::vector<std::string> Lines = Errors.GetLines();
		for (std::string& Line : Lines)
		{
			if (Line.starts_with(Folder.string()))
			{
				Line.erase(0, Folder.string().size() + 1);
			}
		}
		return Lines;
	}

	std::string ReadOutput(const std::string& Name) const { return ReadFile(Folder / "Generated" / Name); }

	fs::path Folder;
	std::vector<std::string> Headers;
	std::vector<std::string> UsedManifests = { TEST_DATA_FOLDER "/Engine.types" };
};

/** A case file holds headers, each below a line "--- <path>", and below "--- errors" what the tool says of them. */
std::vector<std::pair<std::string, std::string>> ReadCase(const fs::path& Path)
{
	std::vector<std::pair<std::string, std::string>> Parts;
	std::istringstream Text(ReadFile(Path));
	for (std::string Line; std::getline(Text, Line);)
	{
		if (Line.starts_with("--- "))
		{
			Parts.emplace_back(Line.substr(4), "");
		}
		else
		{
			Parts.back().second += Line + "\n";
		}
	}
	return Parts;
}

std::string JoinLines(const std::vector<std::string>& Lines)
{
	std::string Result;
	for (const std::string& Line : Lines)
	{
		Result += Line + "\n";
	}
	return Result;
}

const char* const PlainHeader = "#pragma once\n"
								"#include \"Plain.generated.h\"\n"
								"UENUM()\n"
								"enum class EPlain : uint8\n"
								"{\n"
								"\tA\n"
								"};\n";
}

class FRejectionTest : public FHeaderToolTest, public testing::WithParamInterface<fs::path>
{
};

TEST_P(FRejectionTest, IsReportedWithFileAndLine)
{
	std::string Expected;
	for (const auto& [Name, Text] : ReadCase(GetParam()))
	{
		if (Name == "errors")
		{
			Expected = Text;
		}
		else
		{
			Write(Name, Text);
		}
	}
	EXPECT_EQ(JoinLines(Run()), Expected);
	EXPECT_TRUE(fs::is_empty(Folder / "Generated")) << "with errors nothing is written";
}

std::vector<fs::path> FindCases()
{
	std::vector<fs::path> Cases;
	for (const fs::directory_entry& Entry : fs::directory_iterator(TEST_DATA_FOLDER "/Rejected"))
	{
		Cases.push_back(Entry.path());
	}
	std::sort(Cases.begin(), Cases.end());
	return Cases;
}

INSTANTIATE_TEST_SUITE_P(Rejected, FRejectionTest, testing::ValuesIn(FindCases()),
	[](const testing::TestParamInfo<fs::path>& Info) { return Info.param.stem().string(); });

TEST_F(FHeaderToolTest, LeavesOutputsAloneThatStayTheSame)
{
	Write("Plain.h", PlainHeader);
	ASSERT_TRUE(Run().empty());
	const fs::path Output = Folder / "Generated" / "Plain.gen.cpp";
	const auto Long = fs::last_write_time(Output) - std::chrono::hours(1);
	fs::last_write_time(Output, Long);
	Write("Plain.h", std::string(PlainHeader) + "// something else\n");
	ASSERT_TRUE(Run().empty());
	EXPECT_EQ(fs::last_write_time(Output), Long);
	Write("Plain.h", std::string(PlainHeader).replace(std::string(PlainHeader).find("\tA"), 2, "\tB"));
	ASSERT_TRUE(Run().empty());
	EXPECT_NE(fs::last_write_time(Output), Long);
}

TEST_F(FHeaderToolTest, KnowsTheTypesOfTheModulesItUses)
{
	Write("Plain.h", PlainHeader);
	ASSERT_TRUE(Run("Lower").empty());
	UsedManifests.push_back((Folder / "Lower.types").string());
	Headers.clear();
	Write("Upper.h", "#include \"Upper.generated.h\"\n"
					 "UCLASS()\n"
					 "class UUpper : public UConfigured\n"
					 "{\n"
					 "\tGENERATED_BODY()\n"
					 "\tUPROPERTY(config)\n"
					 "\tTArray<EPlain> Values;\n"
					 "};\n");
	EXPECT_EQ(JoinLines(Run("Upper")), "");
	EXPECT_NE(ReadOutput("Upper.gen.cpp").find("UEnum* ReflectedType_EPlain();"), std::string::npos);
	UsedManifests.push_back((Folder / "Missing.types").string());
	EXPECT_EQ(JoinLines(Run("Upper")), "Missing.types(1): error: The manifest cannot be read\n");
}

TEST_F(FHeaderToolTest, RemembersDelegatesPartsAndConstructorsOfOtherModules)
{
	Write("Lower.h", "#include \"Lower.generated.h\"\n"
					 "DECLARE_DYNAMIC_DELEGATE_OneParam(FOnDone, EOldChannel, Channel);\n"
					 "UCLASS(DefaultToInstanced)\n"
					 "class UPart : public UObject\n"
					 "{\n"
					 "\tGENERATED_BODY()\n"
					 "\tDECLARE_DYNAMIC_MULTICAST_DELEGATE(FOnBroken);\n"
					 "};\n"
					 "UCLASS()\n"
					 "class UStrict : public UObject\n"
					 "{\n"
					 "\tGENERATED_BODY()\n"
					 "\tUStrict();\n"
					 "\t~UStrict();\n"
					 "};\n");
	ASSERT_EQ(JoinLines(Run("Lower")), "");
	EXPECT_NE(ReadOutput("Lower.gen.cpp").find("TEnumAsByte<EOldChannel> Channel{};"), std::string::npos);
	UsedManifests.push_back((Folder / "Lower.types").string());
	Headers.clear();
	Write("Upper.h", "#include \"Upper.generated.h\"\n"
					 "UCLASS()\n"
					 "class UUpper : public UPart\n"
					 "{\n"
					 "\tGENERATED_BODY()\n"
					 "\tUPROPERTY()\n"
					 "\tTArray<TObjectPtr<UUpper>> Parts;\n"
					 "\tUPROPERTY()\n"
					 "\tFOnDone OnDone;\n"
					 "\tUFUNCTION()\n"
					 "\tvoid Break(FOnBroken OnBroken);\n"
					 "};\n"
					 "UCLASS()\n"
					 "class UStricter : public UStrict\n"
					 "{\n"
					 "\tGENERATED_BODY()\n"
					 "};\n");
	EXPECT_EQ(JoinLines(Run("Upper")), "");
	const std::string Header = ReadOutput("Upper.generated.h");
	EXPECT_NE(Header.find("UUpper(const FObjectInitializer&"), std::string::npos) << Header;
	EXPECT_EQ(Header.find("UStricter("), std::string::npos) << "its parent could not take the initializer";
	const std::string Source = ReadOutput("Upper.gen.cpp");
	EXPECT_NE(Source.find("CPF_ContainsInstancedReference"), std::string::npos) << Source;
	EXPECT_NE(Source.find("UDelegateFunction* ReflectedType_FOnDone();"), std::string::npos) << Source;
	EXPECT_NE(Source.find("\tUPart::FOnBroken OnBroken{};"), std::string::npos) << "named from outside of the class";
}

TEST_F(FHeaderToolTest, PassesOverWhatIsNotReflected)
{
	Write("Odd.h",
		"/* a comment with UCLASS() in it */\n"
		"#include <vector>\n"
		"#include \"Odd.generated.h\"\n"
		"#define HELPER(X) \\\n"
		"\tUPROPERTY() X\n"
		"#if 0\n"
		"UCLASS() class NotEven C++\n"
		"#endif\n"
		"class UForward;\n"
		"namespace Things { struct FPlain { int A{ 1 }; }; }\n"
		"template <typename T> struct TPlain { T Value; };\n"
		"UCLASS()\n"
		"class TEST_API UOdd final : public UObject, public Things::FPlain\n"
		"{\n"
		"\tGENERATED_BODY()\n"
		"public:\n"
		"\tUOdd() : Count{ 3 } { const char* Text = \"UPROPERTY( } {\"; (void)Text; }\n"
		"\tvoid Unreflected(std::vector<int> Values = {});\n"
		"\tvoid Unreflected(TArray<TArray<int32>> Values);\n"
		"#if MY_SWITCH\n"
		"\tint OnlySometimes = 0;\n"
		"#else\n"
		"\tint Otherwise = R\"(\")\"[0];\n"
		"#endif\n"
		"\tUPROPERTY(EditAnywhere, Category = \"A \" \"| B\", meta = (ClampMin = -1, ToolTip = \"Say \\\"hi\\\"\"))\n"
		"\tclass UForward2* NotKnown = nullptr;\n"
		"};\n");
	EXPECT_EQ(JoinLines(Run()),
		"Odd.h(26): error: Unable to find 'class', 'delegate', 'enum', or 'struct' with name 'UForward2'\n");
	std::string Text = ReadFile(Folder / "Odd.h");
	Text.replace(Text.find("class UForward2*"), 16, "class AActor*");
	Write("Odd.h", Text);
	EXPECT_EQ(JoinLines(Run()), "");
	const std::string Source = ReadOutput("Odd.gen.cpp");
	EXPECT_NE(Source.find(".Meta(\"Category\", \"A|B\")"), std::string::npos) << Source;
	EXPECT_NE(Source.find(".Meta(\"ClampMin\", \"-1\")"), std::string::npos) << Source;
	EXPECT_NE(Source.find(".Meta(\"ToolTip\", \"Say \\\"hi\\\"\")"), std::string::npos) << Source;
	EXPECT_NE(Source.find("#include \"Odd.h\""), std::string::npos) << Source;
}

TEST_F(FHeaderToolTest, ChecksTheTypesOfMembers)
{
	const struct
	{
		const char* Member;
		const char* Error; // null when there is none
	} Cases[] = {
		{ "UPROPERTY() TMap<FString, TObjectPtr<AActor>> A;", nullptr },
		{ "UPROPERTY() TSubclassOf<AActor> A;", nullptr },
		{ "UPROPERTY() TEnumAsByte<EOldChannel> A;", nullptr },
		{ "UPROPERTY() EChannel A[3];", nullptr },
		{ "UFUNCTION(BlueprintCallable) void Do(const TArray<FVector>& A, EChannel B) {}", nullptr },
		{ "UPROPERTY() TMap<FString> A;", "Expected 2 arguments in 'TMap<FString>'" },
		{ "UPROPERTY() TArray<int32, int32> A;", "Expected 1 arguments in 'TArray<int32, int32>'" },
		{ "UPROPERTY() TSet<FText> A;", "The type 'FText' can not be used as a key in a TSet" },
		{ "UPROPERTY() TArray<int32> A[3];", "Static arrays of containers are not allowed" },
		{ "UPROPERTY() TEnumAsByte<AActor> A;", "TEnumAsByte needs a reflected enum: 'TEnumAsByte<AActor>'" },
		{ "UPROPERTY() TObjectPtr<FVector> A;",
			"Inappropriate '*' on variable of type 'FVector', cannot have an exposed pointer to this type." },
		{ "UPROPERTY() TSubclassOf<UMissing> A;",
			"Unable to find 'class', 'delegate', 'enum', or 'struct' with name 'UMissing'" },
		{ "UPROPERTY(BlueprintReadWrite) EWide A;", "Type 'EWide' is not supported by blueprint. Thing.A" },
		{ "UFUNCTION(BlueprintCallable) uint32 Do();",
			"Type 'uint32' is not supported by blueprint. Function: Do Parameter ReturnValue" },
		{ "UFUNCTION() void Do(UMissing* A);",
			"Unable to find 'class', 'delegate', 'enum', or 'struct' with name 'UMissing'" },
		{ "UPROPERTY(BlueprintCallable) int32 A;",
			"'BlueprintCallable' is only allowed on multicast delegate properties" },
	};
	for (const auto& Case : Cases)
	{
		Write("Thing.h", std::string("#include \"Thing.generated.h\"\nUCLASS()\nclass UThing : public UObject\n{\n"
									 "\tGENERATED_BODY()\npublic:\n") +
							 Case.Member + "\n};\n");
		EXPECT_EQ(JoinLines(Run()), Case.Error ? std::string("Thing.h(7): error: ") + Case.Error + "\n" : "")
			<< Case.Member;
	}
}

TEST_F(FHeaderToolTest, MutatedHeadersGiveErrorsOfThatHeaderOrAreTaken)
{
	std::vector<std::string> Seeds = { "UCLASS(Config = A::B, meta = (C = D.E))\nclass UA : public UObject {};\n" };
	for (const fs::path& Case : FindCases())
	{
		Seeds.push_back(ReadCase(Case).front().second);
	}
	FTextMutator Mutator("(){}[]<>:;,=\"'#\\/*&.~ \n_aU0\xff");
	for (size_t Round = 0; Round < 20000; ++Round)
	{
		const std::string Text = Mutator.Mutate(Seeds[Round % Seeds.size()]);
		FErrors Errors;
		ParseHeader("Case.h", "Case.h", Text, Errors);
		for (const std::string& Line : Errors.GetLines())
		{
			ASSERT_TRUE(Line.starts_with("Case.h(")) << Line << "\nof:\n" << Text;
		}
		if (Round % 40 == 0)
		{
			Write("Case.h", Text); // through the whole tool
			Run();
		}
	}
}
