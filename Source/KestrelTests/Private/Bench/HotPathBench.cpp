#include "Agent/Agent.h"
#include "Agent/Backend/FirstRequest.h"
#include "Agent/Files/TreeWork.h"
#include "Agent/Project/SourceSearch.h"
#include "Agent/Tools/ToolPlan.h"
#include "Bench/BlueprintBench.h"
#include "Dom/JsonObject.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformProcess.h"
#include "HAL/PlatformTime.h"
#include "Misc/CommandLine.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Parse.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Widget/LineDiff.h"
#include "Widget/Prompt/KestrelFuzzyMatch.h"

/** The paths on which the editor stands still. What they are compared with is the launcher's business. */
namespace HotPathBench
{
constexpr int32 UsualNumRuns = 7;
constexpr int32 ManyRuns = 15; // of what is so short that another program's turn falls into most of them

/** The file for the figures; empty unless this is a benchmark run. */
FString ReportFile()
{
	FString File;
	FParse::Value(FCommandLine::Get(), TEXT("-KestrelBench="), File);
	return File;
}

/** How large what is measured is; 1 for a large game. */
double GetSize()
{
	constexpr int32 Whole = 1000;
	int32 Thousandths = Whole;
	FParse::Value(FCommandLine::Get(), TEXT("-KestrelBenchThousandths="), Thousandths);
	return static_cast<double>(Thousandths) / Whole;
}

/** The body of the first request: the project's files listed, put together and written. */
TArray<uint8> MakeBody()
{
	const TSharedRef<FKestrelTreeWork> Work = KestrelFirstRequest::Begin(TEXT("Which files are there?"));
	Work->Finish();
	return MoveTemp(Work->GetBytes());
}

FString MakeFirstRequest(int32 Run, double Size)
{
	return FString::Printf(TEXT("%d bytes"), MakeBody().Num());
}

void ForgetTree(int32 Run, double Size)
{
	FKestrelKeptTree::Get().Forget();
}

/** As when a conversation has been begun before: no folder has changed for some seconds. */
void KeepTree(int32 Run, double Size)
{
	constexpr float SettlingSeconds = 3.0f;
	if (Run == 0)
	{
		FPlatformProcess::Sleep(SettlingSeconds);
		MakeFirstRequest(Run, Size);
	}
}

/** A name that is in some of the project's sources. */
FString FindReference(int32 Run, double Size)
{
	const FString Found =
		KestrelTest::UseTool(TEXT("find_reference_in_all_files"), { TEXT("reference_string"), TEXT("takedamage") });
	TArray<FString> Files;
	Found.ParseIntoArray(Files, TEXT("\"Type\""));
	return FString::Printf(TEXT("%d files found"), Files.Num() - 1);
}

/** The same on one thread. */
FString FindOnOneThread(int32 Run, double Size)
{
	FKestrelSourceSearch Search(TEXT("takedamage"), EParallelForFlags::ForceSingleThread);
	Search.Finish();
	const TSharedRef<FJsonObject> Found = MakeShared<FJsonObject>();
	Search.Report(*Found);
	return FString::Printf(TEXT("%d files found"), Found->GetArrayField(TEXT("cpp_references")).Num());
}

/** A name replaced all over a large file, and back in the next run: with the record for undo and all. */
FString ReplaceText(int32 Run, double Size)
{
	const TCHAR* const Names[] = { TEXT("HealthPoints"), TEXT("LifeEnergy") };
	const FString Result =
		KestrelTest::UseTool(TEXT("update_file"), { TEXT("path"), TEXT("Large.txt"), TEXT("old_string"), Names[Run % 2],
													  TEXT("new_string"), Names[1 - Run % 2] });
	return Result.RightChop(Result.Find(TEXT(" with ")) + 6);
}

/** A conversation of its own for each run: only the first record of a file is kept. */
void BeginConversation(int32 Run, double Size)
{
	FAgent::Get().SetConversationId(FGuid::NewGuid().ToString());
}

/** Twenty replacements in twenty files, as they wait for approval. */
FString PlanEdits(int32 Run, double Size)
{
	constexpr int32 NumFiles = 20;
	FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
	int32 NumReplacements = 0;
	for (int32 Index = 0; Index < NumFiles; ++Index)
	{
		const TSharedPtr<FJsonObject> Input = MakeShared<FJsonObject>();
		Input->SetStringField(TEXT("path"), FString::Printf(TEXT("Source/File%d.cpp"), Index));
		Input->SetStringField(TEXT("old_string"), TEXT("HealthPoints"));
		Input->SetStringField(TEXT("new_string"), TEXT("LifeEnergy"));
		NumReplacements += Planner.Plan(KestrelToolNames::UpdateFile, TEXT("id"), Input)->NumReplacements.Get(0);
	}
	return FString::Printf(TEXT("%d replacements"), NumReplacements);
}

/** A read and a replacement in each of many small files, as one answer with all of them waits for approval. */
FString PlanTools(int32 NumFiles)
{
	FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
	int32 NumReplacements = 0;
	for (int32 Index = 0; Index < NumFiles; ++Index)
	{
		const TSharedPtr<FJsonObject> Input = MakeShared<FJsonObject>();
		Input->SetStringField(TEXT("path"), FString::Printf(TEXT("Source/Part%d/File%d.cpp"), Index % 100, Index));
		Input->SetStringField(TEXT("old_string"), TEXT("Health"));
		Input->SetStringField(TEXT("new_string"), TEXT("Life"));
		Planner.Plan(KestrelToolNames::ReadFile, TEXT("id"), Input);
		NumReplacements += Planner.Plan(KestrelToolNames::UpdateFile, TEXT("id"), Input)->NumReplacements.Get(0);
	}
	return FString::Printf(TEXT("%d replacements"), NumReplacements);
}

FString PlanManyTools(int32 Run, double Size)
{
	constexpr int32 NumFiles = 5000;
	return PlanTools(FMath::Max(1, static_cast<int32>(NumFiles * Size + 0.5)));
}

/** What the editor itself takes. */
FString DoNothing(int32 Run, double Size)
{
	return TEXT("nothing");
}

/** The lines of two large texts compared. */
FString CompareLines(int32 Run, double Size)
{
	const FString Folder = FPaths::ProjectDir();
	FString Old;
	FString New;
	FFileHelper::LoadFileToString(Old, *(Folder / TEXT("Old.txt")));
	FFileHelper::LoadFileToString(New, *(Folder / TEXT("New.txt")));
	const TArray<FDiffLine> Lines =
		KestrelLineDiff::Compare(KestrelLineDiff::SplitIntoLines(Old), KestrelLineDiff::SplitIntoLines(New));
	return FString::Printf(TEXT("%d lines"), Lines.Num());
}

FKestrelFuzzyIndex& GetNames()
{
	static FKestrelFuzzyIndex Index;
	return Index;
}

/** What was typed before is no beginning of what is looked for, so that all names are. */
void PrepareCompletePath(int32 Run, double Size)
{
	TArray<FString> Names;
	if (GetNames().Num() == 0 && FFileHelper::LoadFileToStringArray(Names, *(FPaths::ProjectDir() / TEXT("Names.txt"))))
	{
		for (const FString& Name : Names)
		{
			GetNames().Add(Name);
		}
	}
	GetNames().Find(TEXT("x"), 0);
}

/** What a letter costs that is typed behind an "@". */
FString CompletePath(int32 Run, double Size)
{
	constexpr int32 NumRows = 10;
	const TArray<int32> Found = GetNames().Find(TEXT("om"), NumRows);
	return FString::Printf(
		TEXT("the best of %d: %s"), GetNames().Num(), Found.IsEmpty() ? TEXT("none") : *GetNames().GetName(Found[0]));
}

struct FBench
{
	const TCHAR* Name;
	FString (*Work)(int32 Run, double Size); // what it came to, in words
	void (*Prepare)(int32 Run, double Size) = nullptr;
	int32 NumRuns = UsualNumRuns;
	// What is not compared with another program: half of the same, or something else to put it into proportion.
	FString (*PeerWork)(int32 Run, double Size) = nullptr;
	void (*PreparePeer)(int32 Run, double Size) = nullptr;
	// What is measured, in seconds, when it is not how long the work takes.
	double (*GetSeconds)() = nullptr;
};

template <FString (*Work)(int32 Run, double Size)>
FString DoHalf(int32 Run, double Size)
{
	return Work(Run, Size / 2.0);
}

// Blueprints of their own: the names that the whole ones have are taken.
constexpr int32 FirstPeerRun = 1000;

FString ModifyHalf(int32 Run, double Size)
{
	return KestrelBlueprintBench::ModifyBlueprint(FirstPeerRun + Run, Size / 2.0);
}

void PrepareModifyHalf(int32 Run, double Size)
{
	KestrelBlueprintBench::PrepareModify(FirstPeerRun + Run, Size);
}

const FBench Benches[] = {
	{ TEXT("Nothing"), DoNothing, nullptr, 1 },
	{ TEXT("FirstRequest"), MakeFirstRequest, ForgetTree },
	{ TEXT("NextRequest"), MakeFirstRequest, KeepTree },
	{ TEXT("FindReference"), FindReference },
	{ TEXT("FindOnOneThread"), FindOnOneThread },
	{ TEXT("ReplaceText"), ReplaceText, BeginConversation },
	{ TEXT("PlanEdits"), PlanEdits },
	{ TEXT("PlanManyTools"), PlanManyTools, nullptr, 3, DoHalf<PlanManyTools> },
	{ TEXT("CompareLines"), CompareLines },
	{ TEXT("CompletePath"), CompletePath, PrepareCompletePath, ManyRuns },
	{ TEXT("ReadBlueprint"), KestrelBlueprintBench::ReadBlueprint, nullptr, ManyRuns },
	{ TEXT("LookUpBlueprint"), KestrelBlueprintBench::LookUpBlueprint },
	{ TEXT("ScanContent"), KestrelBlueprintBench::ScanContent },
	{ TEXT("FindInFiles"), KestrelBlueprintBench::FindInBlueprints, KestrelBlueprintBench::PrepareFindInFiles, 1 },
	{ TEXT("FindAgain"), KestrelBlueprintBench::FindInBlueprints, KestrelBlueprintBench::PrepareFindAgain },
	{ TEXT("FindInSteps"), KestrelBlueprintBench::FindInSteps, KestrelBlueprintBench::PrepareFindInFiles, 1, nullptr,
		nullptr, KestrelBlueprintBench::GetLongestStep },
	{ TEXT("ReadInSteps"), KestrelBlueprintBench::ReadInSteps, nullptr, UsualNumRuns, nullptr, nullptr,
		KestrelBlueprintBench::GetLongestStep },
	{ TEXT("FindInMemory"), KestrelBlueprintBench::FindInBlueprints, KestrelBlueprintBench::PrepareFindInMemory },
	{ TEXT("ModifyBlueprint"), KestrelBlueprintBench::ModifyBlueprint, KestrelBlueprintBench::PrepareModify, 3,
		ModifyHalf, PrepareModifyHalf },
	{ TEXT("UndoModification"), KestrelBlueprintBench::UndoModification, KestrelBlueprintBench::PrepareUndo, 3,
		ModifyHalf, PrepareModifyHalf },
};

double Time(FString (*Work)(int32 Run, double Size), void (*Prepare)(int32 Run, double Size), int32 Run, double Size,
	FString& OutOutcome)
{
	if (Prepare)
	{
		Prepare(Run, Size);
	}
	// Cycles: the editor's seconds stand still in an unattended run.
	const uint64 Start = FPlatformTime::Cycles64();
	OutOutcome = Work(Run, Size);
	return FPlatformTime::ToSeconds64(FPlatformTime::Cycles64() - Start);
}

/** A line of the report: "<seconds> <seconds of the peer in here, or 0> <what it came to>". */
FString MeasureRun(const FBench& Bench, int32 Run)
{
	FString Outcome;
	FString PeerOutcome;
	const double Size = GetSize();
	const double WorkSeconds = Time(Bench.Work, Bench.Prepare, Run, Size, Outcome);
	const double Seconds = Bench.GetSeconds ? Bench.GetSeconds() : WorkSeconds;
	const double PeerSeconds = Bench.PeerWork ? Time(Bench.PeerWork, Bench.PreparePeer, Run, Size, PeerOutcome) : 0.0;
	return FString::Printf(TEXT("%.9f %.9f %s\n"), Seconds, PeerSeconds, *Outcome);
}

/** Until the launcher has run the program that this run is compared with. */
void WaitForPeer(int32 Run)
{
	constexpr float PollSeconds = 0.001f;
	const FString Answer = FString::Printf(TEXT("%s.go%d"), *ReportFile(), Run + 1);
	while (!FPaths::FileExists(Answer))
	{
		FPlatformProcess::Sleep(PollSeconds);
	}
}
}

/** They exist only with -KestrelBench=<file>, to which each adds a line for each of its runs. */
IMPLEMENT_COMPLEX_AUTOMATION_TEST(FKestrelHotPathBench, "KestrelBench", KestrelTest::Flags)

void FKestrelHotPathBench::GetTests(TArray<FString>& OutBeautifiedNames, TArray<FString>& OutTestCommands) const
{
	if (HotPathBench::ReportFile().IsEmpty())
	{
		return;
	}
	for (const HotPathBench::FBench& Bench : HotPathBench::Benches)
	{
		OutBeautifiedNames.Add(Bench.Name);
		OutTestCommands.Add(Bench.Name);
	}
}

bool FKestrelHotPathBench::RunTest(const FString& Parameters)
{
	for (const HotPathBench::FBench& Bench : HotPathBench::Benches)
	{
		for (int32 Run = 0; Parameters.Equals(Bench.Name) && Run < Bench.NumRuns; ++Run)
		{
			FFileHelper::SaveStringToFile(HotPathBench::MeasureRun(Bench, Run), *HotPathBench::ReportFile(),
				FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM, &IFileManager::Get(), FILEWRITE_Append);
			HotPathBench::WaitForPeer(Run);
		}
	}
	return true;
}
