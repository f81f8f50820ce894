#include "Agent/Agent.h"
#include "Agent/Backend/HTTPAPI.h"
#include "Agent/Tools/ToolPlan.h"
#include "Bench/BlueprintBench.h"
#include "Dom/JsonObject.h"
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
constexpr int32 ManyRuns = 40; // of what is so short that another program's turn falls into most of them

/** The file for the figures; empty unless this is a benchmark run. */
FString ReportFile()
{
	FString File;
	FParse::Value(FCommandLine::Get(), TEXT("-KestrelBench="), File);
	return File;
}

/** The body of the first request: the project's files listed, parsed, put together and written. */
FString MakeFirstRequest(int32 Run)
{
	return FString::Printf(TEXT("%d characters"), FHTTPAPI::MakeInitialBody(TEXT("Which files are there?")).Len());
}

/** A name that is in some of the project's sources. */
FString FindReference(int32 Run)
{
	const FString Found =
		KestrelTest::UseTool(TEXT("find_reference_in_all_files"), { TEXT("reference_string"), TEXT("takedamage") });
	TArray<FString> Files;
	Found.ParseIntoArray(Files, TEXT("\"Type\""));
	return FString::Printf(TEXT("%d files found"), Files.Num() - 1);
}

/** A name replaced all over a large file, and back in the next run: with the record for undo and all. */
FString ReplaceText(int32 Run)
{
	const TCHAR* const Names[] = { TEXT("HealthPoints"), TEXT("LifeEnergy") };
	const FString Result =
		KestrelTest::UseTool(TEXT("update_file"), { TEXT("path"), TEXT("Large.txt"), TEXT("old_string"), Names[Run % 2],
													  TEXT("new_string"), Names[1 - Run % 2] });
	return Result.RightChop(Result.Find(TEXT(" with ")) + 6);
}

/** A conversation of its own for each run: only the first record of a file is kept. */
void BeginConversation(int32 Run)
{
	FAgent::Get().SetConversationId(FGuid::NewGuid().ToString());
}

/** Twenty replacements in twenty files, as they wait for approval. */
FString PlanEdits(int32 Run)
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

FString PlanManyTools(int32 Run)
{
	return PlanTools(5000);
}

FString PlanHalfOfManyTools(int32 Run)
{
	return PlanTools(2500);
}

/** The lines of two large texts compared. */
FString CompareLines(int32 Run)
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
void PrepareCompletePath(int32 Run)
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
FString CompletePath(int32 Run)
{
	constexpr int32 NumRows = 10;
	const TArray<int32> Found = GetNames().Find(TEXT("om"), NumRows);
	return FString::Printf(
		TEXT("the best of %d: %s"), GetNames().Num(), Found.IsEmpty() ? TEXT("none") : *GetNames().GetName(Found[0]));
}

struct FBench
{
	const TCHAR* Name;
	FString (*Work)(int32 Run); // what it came to, in words
	void (*Prepare)(int32 Run) = nullptr;
	int32 NumRuns = UsualNumRuns;
};

const FBench Benches[] = {
	{ TEXT("FirstRequest"), MakeFirstRequest },
	{ TEXT("FindReference"), FindReference },
	{ TEXT("ReplaceText"), ReplaceText, BeginConversation },
	{ TEXT("PlanEdits"), PlanEdits },
	{ TEXT("PlanManyTools"), PlanManyTools, nullptr, 3 },
	{ TEXT("PlanHalfOfManyTools"), PlanHalfOfManyTools, nullptr, 3 },
	{ TEXT("CompareLines"), CompareLines },
	{ TEXT("CompletePath"), CompletePath, PrepareCompletePath, ManyRuns },
	{ TEXT("ReadBlueprint"), KestrelBlueprintBench::ReadBlueprint, nullptr, ManyRuns },
	{ TEXT("ReadHalfBlueprint"), KestrelBlueprintBench::ReadHalfBlueprint, nullptr, ManyRuns },
	{ TEXT("LookUpBlueprint"), KestrelBlueprintBench::LookUpBlueprint },
	{ TEXT("ScanContent"), KestrelBlueprintBench::ScanContent },
	{ TEXT("FindInFiles"), KestrelBlueprintBench::FindInBlueprints, KestrelBlueprintBench::PrepareFindInFiles, 1 },
	{ TEXT("FindInMemory"), KestrelBlueprintBench::FindInBlueprints, KestrelBlueprintBench::PrepareFindInMemory },
	{ TEXT("ModifyBlueprint"), KestrelBlueprintBench::ModifyBlueprint, KestrelBlueprintBench::PrepareModify, 3 },
	{ TEXT("ModifyHalfBlueprint"), KestrelBlueprintBench::ModifyHalfBlueprint, KestrelBlueprintBench::PrepareModify,
		3 },
	{ TEXT("UndoModification"), KestrelBlueprintBench::UndoModification, KestrelBlueprintBench::PrepareUndo, 3 },
};
}

/** They exist only with -KestrelBench=<file>, to which each writes "<best run in seconds> <what it came to>". */
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
		if (!Parameters.Equals(Bench.Name))
		{
			continue;
		}
		double BestSeconds = 0.0;
		FString Outcome;
		for (int32 Run = 0; Run < Bench.NumRuns; ++Run)
		{
			if (Bench.Prepare)
			{
				Bench.Prepare(Run);
			}
			// Cycles: the editor's seconds stand still in an unattended run.
			const uint64 Start = FPlatformTime::Cycles64();
			Outcome = Bench.Work(Run);
			const double Seconds = FPlatformTime::ToSeconds64(FPlatformTime::Cycles64() - Start);
			BestSeconds = Run == 0 ? Seconds : FMath::Min(BestSeconds, Seconds);
		}
		const FString Report = FString::Printf(TEXT("%f %s\n"), BestSeconds, *Outcome);
		return FFileHelper::SaveStringToFile(Report, *HotPathBench::ReportFile());
	}
	return false;
}
