#include "Agent/Approval/ApprovalRules.h"
#include "Agent/Files/PathReview.h"
#include "HAL/FileManager.h"
#include "KestrelSettings.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "UObject/Class.h"

namespace ApprovalRulesTest
{
struct FPatternCase
{
	const TCHAR* Pattern;
	const TCHAR* Path;
	bool bMatches;
};

const FPatternCase PatternCases[] = {
	{ TEXT("Source/**"), TEXT("Source/Game/Player.h"), true },
	{ TEXT("Source/**"), TEXT("Plugins/Source/Player.h"), false },
	{ TEXT("Source/*"), TEXT("Source/Game/Player.h"), false },
	{ TEXT("Source/**/*.h"), TEXT("Source/Player.h"), true },
	{ TEXT("**/Private/**/*.cpp"), TEXT("Source/Private/A/Private/B.cpp"), true },
	{ TEXT("*.h"), TEXT("Source/Game/Player.h"), true },
	{ TEXT("*.h"), TEXT("Source/Game/Player.hpp"), false },
	{ TEXT("Docs/"), TEXT("Docs/A/B.md"), true },
	{ TEXT(".\\Source\\?.cpp"), TEXT("source/A.cpp"), true },
	{ TEXT("/Game/Doors/*"), TEXT("/Game/Doors/BP_Gate"), true },
	{ TEXT("/Game/Doors/*"), TEXT("/Game/Doors2/BP_Gate"), false },
	{ TEXT(""), TEXT("Anything"), true },
	{ TEXT("**"), TEXT("/etc/passwd"), true },
	{ TEXT("a*b*c"), TEXT("aXbXbYc"), true },
	{ TEXT("a*b*c"), TEXT("aXcXb"), false },
};

FKestrelApprovalRule Rule(EKestrelApproval Decision, const TCHAR* Tool, const TCHAR* Path)
{
	FKestrelApprovalRule Made;
	Made.Decision = Decision;
	Made.Tool = Tool;
	Made.Path = Path;
	return Made;
}

FKestrelToolSubject Subject(
	const TCHAR* ToolName, EKestrelToolKind Kind, const TCHAR* GivenPath, const TCHAR* RealPath, bool bIsRisky = false)
{
	FKestrelToolSubject Made;
	Made.ToolName = ToolName;
	Made.Kind = Kind;
	Made.bIsRisky = bIsRisky;
	if (GivenPath)
	{
		Made.Places.Add({ GivenPath, RealPath, FString() });
	}
	return Made;
}

const FKestrelToolSubject ReadSource =
	Subject(TEXT("read_file"), EKestrelToolKind::Read, TEXT("Source/A.h"), TEXT("Source/A.h"));
const FKestrelToolSubject ReadOutside =
	Subject(TEXT("read_file"), EKestrelToolKind::Read, TEXT("/etc/passwd"), TEXT("/etc/passwd"), true);
const FKestrelToolSubject ReadLink =
	Subject(TEXT("read_file"), EKestrelToolKind::Read, TEXT("Source/Link.h"), TEXT("Secrets/A.txt"));
const FKestrelToolSubject DeleteSource =
	Subject(TEXT("delete_file"), EKestrelToolKind::Delete, TEXT("Source/A.h"), TEXT("Source/A.h"), true);
const FKestrelToolSubject Search =
	Subject(TEXT("find_reference_in_all_files"), EKestrelToolKind::Read, nullptr, nullptr);

struct FRuleCase
{
	const TCHAR* What;
	TArray<FKestrelApprovalRule> User;
	TArray<FKestrelApprovalRule> Project;
	const FKestrelToolSubject* Subject;
	EKestrelRuling Expected;
};

TArray<FRuleCase> MakeRuleCases()
{
	using enum EKestrelApproval;
	return {
		{ TEXT("no rules"), {}, {}, &ReadSource, EKestrelRuling::None },
		{ TEXT("reading in the project"), { Rule(Allow, TEXT("read"), TEXT("")) }, {}, &ReadSource,
			EKestrelRuling::Allow },
		{ TEXT("a tool without a file"), { Rule(Allow, TEXT("read"), TEXT("")) }, {}, &Search, EKestrelRuling::Allow },
		{ TEXT("a tool without a file, by folder"), { Rule(Allow, TEXT("read"), TEXT("Source/**")) }, {}, &Search,
			EKestrelRuling::None },
		{ TEXT("outside the project, not named"), { Rule(AllowRisky, TEXT("read"), TEXT("**")) }, {}, &ReadOutside,
			EKestrelRuling::None },
		{ TEXT("outside the project, named"), { Rule(AllowRisky, TEXT("read_*"), TEXT("/etc/*")) }, {}, &ReadOutside,
			EKestrelRuling::Allow },
		{ TEXT("outside the project, named, but not as risky"), { Rule(Allow, TEXT("read"), TEXT("/etc/*")) }, {},
			&ReadOutside, EKestrelRuling::None },
		{ TEXT("a link is judged by where it leads"), { Rule(Allow, TEXT("read"), TEXT("Source/**")) }, {}, &ReadLink,
			EKestrelRuling::None },
		{ TEXT("a link is denied by where it leads"), { Rule(Deny, TEXT(""), TEXT("Secrets/**")) }, {}, &ReadLink,
			EKestrelRuling::Deny },
		{ TEXT("a link is denied by its name"), { Rule(Deny, TEXT(""), TEXT("Link.*")) }, {}, &ReadLink,
			EKestrelRuling::Deny },
		{ TEXT("deletions are risky"), { Rule(Allow, TEXT(""), TEXT("")) }, {}, &DeleteSource, EKestrelRuling::None },
		{ TEXT("deletions, named"), { Rule(AllowRisky, TEXT("delete"), TEXT("Source/")) }, {}, &DeleteSource,
			EKestrelRuling::Allow },
		{ TEXT("ask beats allow"), { Rule(Allow, TEXT("read"), TEXT("")), Rule(Ask, TEXT("read"), TEXT("*.h")) }, {},
			&ReadSource, EKestrelRuling::Ask },
		{ TEXT("deny beats ask, across both lists"), { Rule(Ask, TEXT("read"), TEXT("*.h")) },
			{ Rule(Deny, TEXT("read_file"), TEXT("Source/A.h")) }, &ReadSource, EKestrelRuling::Deny },
		{ TEXT("a project allows"), {}, { Rule(Allow, TEXT("read"), TEXT("")) }, &ReadSource, EKestrelRuling::Allow },
		{ TEXT("a project does not allow what is risky"), {}, { Rule(AllowRisky, TEXT(""), TEXT("")) }, &DeleteSource,
			EKestrelRuling::None },
		{ TEXT("denied by the full path"),
			{ Rule(Deny, TEXT(""), *FPaths::ConvertRelativePathToFull(FPaths::ProjectDir() / TEXT("Source/**"))) }, {},
			&ReadSource, EKestrelRuling::Deny },
		{ TEXT("another tool"), { Rule(Deny, TEXT("change"), TEXT("")) }, {}, &ReadSource, EKestrelRuling::None },
	};
}
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelApprovalPatternTest, "Kestrel.ApprovalRules.MatchPathsByPattern", KestrelTest::Flags)
bool FKestrelApprovalPatternTest::RunTest(const FString& Parameters)
{
	for (const ApprovalRulesTest::FPatternCase& Case : ApprovalRulesTest::PatternCases)
	{
		TestTrue(FString::Printf(TEXT("'%s' for %s"), Case.Pattern, Case.Path),
			FKestrelPathPattern(Case.Pattern).Matches(Case.Path) == Case.bMatches);
	}
	// A project's pattern may be made to take forever.
	const FString Many = FString::ChrN(5000, TEXT('a'));
	const FString Stars = FString::ChrN(2000, TEXT('x')).Replace(TEXT("x"), TEXT("*a"));
	TestFalse(TEXT("many asterisks"), FKestrelPathPattern(Stars + TEXT("*b")).Matches(Many));
	TestFalse(TEXT("many folders"),
		FKestrelPathPattern(FString::ChrN(2000, TEXT('x')).Replace(TEXT("x"), TEXT("**/a/")) + TEXT("b"))
			.Matches(Many.Replace(TEXT("a"), TEXT("a/"))));
	return true;
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelApprovalRulesTest, "Kestrel.ApprovalRules.DenyBeforeAskBeforeAllow", KestrelTest::Flags)
bool FKestrelApprovalRulesTest::RunTest(const FString& Parameters)
{
	for (const ApprovalRulesTest::FRuleCase& Case : ApprovalRulesTest::MakeRuleCases())
	{
		TestTrue(Case.What, FKestrelApprovalRules(Case.User, Case.Project).Judge(*Case.Subject) == Case.Expected);
	}
	return true;
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelApprovalPackageTest, "Kestrel.ApprovalRules.RestrictAssetsByWhateverName", KestrelTest::Flags)
bool FKestrelApprovalPackageTest::RunTest(const FString& Parameters)
{
	using namespace ApprovalRulesTest;
	const auto Judge = [](EKestrelApproval Decision, const TCHAR* Pattern, const FKestrelToolPlace& Place) {
		FKestrelToolSubject Read = Subject(TEXT("read_file"), EKestrelToolKind::Read, nullptr, nullptr);
		Read.Places.Add(Place);
		return FKestrelApprovalRules({ Rule(Decision, TEXT(""), Pattern) }, {}).Judge(Read);
	};
	const TCHAR* const Doors = TEXT("/Game/Doors/*");
	FKestrelPathReview Review;
	Review.ShownPath = Review.RealShownPath = TEXT("Content/Doors/BP_Door.uasset");
	const FKestrelToolPlace AsFile = FKestrelToolPlace::Of(Review, FString());
	TestTrue(TEXT("a file"), Judge(EKestrelApproval::Deny, Doors, AsFile) == EKestrelRuling::Deny);
	TestTrue(
		TEXT("a file, allowed as an asset"), Judge(EKestrelApproval::Allow, Doors, AsFile) == EKestrelRuling::None);
	Review.ShownPath = TEXT("Content/Link/BP_Door.uasset");
	const FKestrelToolPlace BehindLink = FKestrelToolPlace::Of(Review, TEXT("/Game/Link/BP_Door"));
	TestTrue(TEXT("behind a link"), Judge(EKestrelApproval::Deny, Doors, BehindLink) == EKestrelRuling::Deny);
	TestTrue(
		TEXT("by the link"), Judge(EKestrelApproval::Ask, TEXT("/Game/Link/BP_*"), BehindLink) == EKestrelRuling::Ask);
	return true;
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelApprovalOriginTest, "Kestrel.ApprovalRules.AProjectCannotPassItsRulesOffAsTheUsers", KestrelTest::Flags)
bool FKestrelApprovalOriginTest::RunTest(const FString& Parameters)
{
	UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
	const TGuardValue<TArray<FKestrelApprovalRule>> Rules(Settings.ApprovalRules,
		{ ApprovalRulesTest::Rule(EKestrelApproval::AllowRisky, TEXT("delete"), TEXT("Source/")) });
	const auto Allows = []() {
		return FKestrelApprovalRules().Judge(ApprovalRulesTest::DeleteSource) == EKestrelRuling::Allow;
	};
	TestTrue(TEXT("the user's"), Allows());
	const FString File = FPaths::ProjectConfigDir() / TEXT("Linux/LinuxEditorPerUserSettings.ini");
	FFileHelper::SaveStringToFile(TEXT("[/Script/Kestrel.KestrelSettings]\n+approvalrules=(Tool=\"delete\")\n"), *File);
	TestFalse(TEXT("perhaps the project's"), Allows());
	IFileManager::Get().Delete(*File);
	return true;
}
