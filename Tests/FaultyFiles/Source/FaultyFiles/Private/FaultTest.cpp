#include "Agent/Agent.h"
#include "Agent/FileHistory.h"
#include "Containers/StringConv.h"
#include "Dom/JsonObject.h"
#include "FaultyPlatformFile.h"
#include "HAL/FileManager.h"
#include "KestrelSettings.h"
#include "Misc/AutomationTest.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"
#include "Templates/UniquePtr.h"
#include "UObject/Class.h"

/**
 * Each file operation of each thing that the assistant does to a disk fails in turn, once and permanently, in every way
 * that fits, and the process is killed at it. Whatever happens, each text must still be there: on the disk, as a copy
 * that is offered at the next start, or through undo.
 */
namespace FaultTest
{
using FBytes = TArray<uint8>;
/** The files of a folder by name; one that is missing has no entry. */
using FFiles = TMap<FString, FBytes>;

FString Use(const TCHAR* Tool, const TArray<FString>& Fields)
{
	const TSharedRef<FJsonObject> Input = MakeShared<FJsonObject>();
	for (int32 Index = 0; Index + 1 < Fields.Num(); Index += 2)
	{
		Input->SetStringField(Fields[Index], Fields[Index + 1]);
	}
	return FAgent::Get().UseTool(Tool, TEXT("id"), Input);
}

FString SavedDir(const TCHAR* Name)
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir()) / TEXT("Kestrel") / Name;
}

FFiles ReadFolder(const FString& Folder)
{
	TArray<FString> Paths;
	IFileManager::Get().FindFilesRecursive(Paths, *Folder, TEXT("*"), true, false);
	FFiles Files;
	for (const FString& Path : Paths)
	{
		FFileHelper::LoadFileToArray(Files.Add(Path.RightChop(Folder.Len() + 1)), *Path);
	}
	return Files;
}

bool AreSame(const FFiles& A, const FFiles& B)
{
	bool bSame = A.Num() == B.Num();
	for (const auto& Pair : A)
	{
		const FBytes* Other = B.Find(Pair.Key);
		bSame = bSame && Other && *Other == Pair.Value;
	}
	return bSame;
}

/** A folder with texts of the project, and beside it a folder that nothing may touch. */
class FWorld
{
public:
	FWorld()
		: Root(
			  FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()) / (TEXT("Faults ") + FGuid::NewGuid().ToString()))
		, Folder(Root / TEXT("Own"))
	{
		Write(TEXT("plain.txt"), TEXT("one\ntwo\n"));
		Write(TEXT("umlaut.txt"), TEXT("\u00E4 one\n"));
		Write(TEXT("gone.txt"), TEXT("\u00FC gone\n"));
		FFileHelper::SaveStringToFile(TEXT("foreign"), *(Root / TEXT("Foreign") / TEXT("kept.txt")));
		FAgent::Get().SetConversationId(Id);
		Before = ReadFolder(Folder);
		Foreign = ReadFolder(Root / TEXT("Foreign"));
	}
	~FWorld()
	{
		FAgent::Get().ClearConversationId();
		IFileManager::Get().DeleteDirectory(*Root, false, true);
		IFileManager::Get().DeleteDirectory(*SavedDir(TEXT("History")), false, true);
		IFileManager::Get().DeleteDirectory(*SavedDir(TEXT("Rescue")), false, true);
		IFileManager::Get().DeleteDirectory(*SavedDir(TEXT("Kept")), false, true);
		RemoveScripts();
	}
	UE_NONCOPYABLE(FWorld)

	/** Scripts and their output that could not be removed. */
	static void RemoveScripts()
	{
		IFileManager::Get().DeleteDirectory(
			*(FPaths::ProjectPluginsDir() / TEXT("kestrel-unreal/Python")), false, true);
		TArray<FString> Logs;
		IFileManager::Get().FindFiles(Logs, *(FPaths::ProjectLogDir() / TEXT("PythonScriptLog_*")), true, false);
		for (const FString& Log : Logs)
		{
			IFileManager::Get().Delete(*(FPaths::ProjectLogDir() / Log));
		}
	}

	FString Full(const TCHAR* Name) const { return Folder / Name; }
	void Write(const TCHAR* Name, const TCHAR* Text) const
	{
		FFileHelper::SaveStringToFile(Text, *Full(Name), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
	}
	FFiles Read() const { return ReadFolder(Folder); }

	/** Whether a text is offered as a copy: the next start would name it. */
	bool IsOffered(const FBytes& Bytes) const
	{
		for (const TCHAR* Name : { TEXT("Rescue"), TEXT("Kept") })
		{
			for (const auto& Pair : ReadFolder(SavedDir(Name)))
			{
				if (Pair.Value == Bytes)
				{
					return true;
				}
			}
		}
		return false;
	}

	const FString Root;
	const FString Folder;
	const FString Id = FGuid::NewGuid().ToString();
	FFiles Before;
	FFiles Foreign;
};

FString ChangeAll(const FWorld& World)
{
	const FString Results[] = {
		Use(TEXT("update_file"), { TEXT("path"), World.Full(TEXT("umlaut.txt")), TEXT("old_string"), TEXT("one"),
									 TEXT("new_string"), TEXT("1") }),
		Use(TEXT("delete_file"), { TEXT("path"), World.Full(TEXT("gone.txt")) }),
		Use(TEXT("create_file"), { TEXT("path"), World.Full(TEXT("New/new.txt")), TEXT("file_text"), TEXT("\u00F6") }),
	};
	return Results[0] + Results[1] + Results[2];
}

FString GetSettingsFile()
{
	return FPaths::ConvertRelativePathToFull(GetDefault<UKestrelSettings>()->GetClass()->GetConfigName());
}

/** Saves the settings with another directory left out of the file tree. */
void SaveSettings(const TCHAR* Directory)
{
	UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
	Settings.ResetExcludedDirectories();
	Settings.ExcludedDirectories.Add(Directory);
	Settings.SaveConfig();
	Settings.ResetExcludedDirectories();
}

/** Today's; empty before the first line is written. */
FString GetPromptLog()
{
	const FString Folder = FPaths::ConvertRelativePathToFull(FPaths::ProjectPluginsDir()) / TEXT("kestrel-unreal/Logs");
	TArray<FString> Names;
	IFileManager::Get().FindFiles(Names, *(Folder / TEXT("KestrelPrompts_*.log")), true, false);
	return Names.IsEmpty() ? FString() : Folder / Names[0];
}

TArray<uint8> ReadFile(const FString& File)
{
	TArray<uint8> Bytes;
	FFileHelper::LoadFileToArray(Bytes, *File);
	return Bytes;
}

/** A Blueprint whose variable has another value each time it is saved. */
class FSavedBlueprint
{
public:
	static FString GetFile()
	{
		return FPaths::ConvertRelativePathToFull(FPaths::ProjectContentDir()) / TEXT("Faults/BP_Faulty.uasset");
	}

	/** Leaves the Blueprint saved with a value, and changed to the next. */
	static void Prepare(const FWorld&)
	{
		if (!FPaths::FileExists(GetFile()))
		{
			Use(TEXT("create_blueprint"), { TEXT("BPPath"), TEXT("/Game/Faults"), TEXT("BPName"), TEXT("BP_Faulty"),
											  TEXT("BPParentClassName"), TEXT("Actor") });
		}
		Change();
		Save();
		Change();
	}

	static FString Save() { return Use(TEXT("save_and_compile_all_dirty_blueprints"), {}); }

	static FBytes GetExpected(const FBytes& Before)
	{
		FString Text;
		FFileHelper::BufferToString(Text, Before.GetData(), Before.Num());
		Text.ReplaceInline(*FString::FromInt(Value - 1), *FString::FromInt(Value));
		const FTCHARToUTF8 Utf8(*Text, Text.Len());
		return FBytes(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
	}

private:
	static void Change()
	{
		Use(TEXT("modify_blueprint_variables"),
			{ TEXT("blueprint_name"), TEXT("BP_Faulty"), TEXT("updates"),
				FString::Printf(
					TEXT("{\"Variables\":{\"Count\":{\"Type\":{\"Category\":\"int\"},\"Value\":%d}}}"), ++Value) });
	}

	static int32 Value;
};
int32 FSavedBlueprint::Value = 741000; // stands nowhere else in the file

/** Something that the assistant does. */
struct FScenario
{
	const TCHAR* What;
	/** What is done before, without faults; may be null. */
	void (*Prepare)(const FWorld& World);
	/** @return the result; a text that begins with "Error:" claims that nothing was changed */
	FString (*Run)(const FWorld& World);
	/** A file that has to be as it was or as it is to be, whatever happens; may be null. */
	FString (*GetWatchedFile)() = nullptr;
	/** What it is to be; null for what it becomes without faults. */
	FBytes (*GetExpected)(const FBytes& Before) = nullptr;
	/** The watched file may also be what it was, with a part of something new behind it. */
	bool bMayGrow = false;
	/** A result other than the one without faults has to name an error: the files do not tell. */
	bool bAnswers = false;
};

FString ToResult(bool bDone)
{
	return bDone ? TEXT("done") : TEXT("Error: not done");
}

const FScenario Scenarios[] = {
	{ TEXT("update_file"), nullptr,
		[](const FWorld& World) {
			return Use(TEXT("update_file"), { TEXT("path"), World.Full(TEXT("plain.txt")), TEXT("old_string"),
												TEXT("one"), TEXT("new_string"), TEXT("1") });
		} },
	{ TEXT("update_file beyond ASCII"), nullptr,
		[](const FWorld& World) {
			return Use(TEXT("update_file"), { TEXT("path"), World.Full(TEXT("umlaut.txt")), TEXT("old_string"),
												TEXT("one"), TEXT("new_string"), TEXT("1") });
		} },
	{ TEXT("insert_into_file"), nullptr,
		[](const FWorld& World) {
			return Use(TEXT("insert_into_file"), { TEXT("path"), World.Full(TEXT("umlaut.txt")), TEXT("insert_line"),
													 TEXT("0"), TEXT("new_string"), TEXT("top") });
		} },
	{ TEXT("create_file"), nullptr,
		[](const FWorld& World) {
			return Use(
				TEXT("create_file"), { TEXT("path"), World.Full(TEXT("New/new.txt")), TEXT("file_text"), TEXT("new") });
		} },
	{ TEXT("create_file for one that exists"), nullptr,
		[](const FWorld& World) {
			return Use(
				TEXT("create_file"), { TEXT("path"), World.Full(TEXT("plain.txt")), TEXT("file_text"), TEXT("new") });
		} },
	{ TEXT("delete_file"), nullptr,
		[](const FWorld& World) {
			return Use(TEXT("delete_file"), { TEXT("path"), World.Full(TEXT("gone.txt")) });
		} },
	{ TEXT("create_cpp_file"), nullptr,
		[](const FWorld& World) {
			return Use(TEXT("create_cpp_file"), { TEXT("filepath"), World.Full(TEXT("New")), TEXT("filename"),
													TEXT("new.h"), TEXT("contents"), TEXT("new") });
		} },
	{ TEXT("update_and_replace_cpp_file"), nullptr,
		[](const FWorld& World) {
			return Use(TEXT("update_and_replace_cpp_file"),
				{ TEXT("filepath"), World.Folder, TEXT("filename"), TEXT("plain.txt"), TEXT("contents"), TEXT("new") });
		} },
	{ TEXT("delete_cpp_file"), nullptr,
		[](const FWorld& World) {
			return Use(TEXT("delete_cpp_file"), { TEXT("filepath"), World.Folder, TEXT("filename"), TEXT("gone.txt") });
		} },
	{ TEXT("read_file"), nullptr,
		[](const FWorld& World) {
			return Use(TEXT("read_file"), { TEXT("path"), World.Full(TEXT("umlaut.txt")) });
		},
		nullptr, nullptr, false, true },
	{ TEXT("script"), nullptr,
		[](const FWorld& World) {
			return Use(TEXT("execute_unreal_engine_api_python_script"), { TEXT("code"), TEXT("print(6 * 7)") });
		},
		nullptr, nullptr, false, true },
	{ TEXT("prompt log"), nullptr,
		[](const FWorld&) {
			FAgent::Get().CancelRequest(TEXT("A line of the log"));
			return FString(TEXT("Error: logs tell nothing"));
		},
		GetPromptLog, nullptr, true },
	{ TEXT("undo"), [](const FWorld& World) { ChangeAll(World); },
		[](const FWorld& World) { return ToResult(FFileHistory::Get().UndoAllChanges(World.Id)); } },
	{ TEXT("redo"),
		[](const FWorld& World) {
			ChangeAll(World);
			FFileHistory::Get().UndoAllChanges(World.Id);
		},
		[](const FWorld& World) { return ToResult(FFileHistory::Get().RedoAllChanges(World.Id)); } },
	{ TEXT("settings"), [](const FWorld&) { SaveSettings(TEXT("old")); },
		[](const FWorld&) {
			SaveSettings(TEXT("new"));
			return FString(TEXT("Error: settings tell nothing"));
		},
		GetSettingsFile },
	{ TEXT("Blueprint"), FSavedBlueprint::Prepare,
		[](const FWorld&) {
			FSavedBlueprint::Save();
			return FString(TEXT("Error: tells of each Blueprint"));
		},
		FSavedBlueprint::GetFile, FSavedBlueprint::GetExpected },
};

const EFileFault Faults[] = { EFileFault::NoSpace, EFileFault::IoError, EFileFault::AccessDenied,
	EFileFault::ShortWrite, EFileFault::Interrupted, EFileFault::Kill, EFileFault::KillInWrite };

bool IsKill(EFileFault Fault)
{
	return Fault == EFileFault::Kill || Fault == EFileFault::KillInWrite;
}

struct FFigures
{
	int32 NumCases = 0;
	int32 NumTextsLost = 0;
	int32 NumUntrueResults = 0;
	int32 NumForeignFilesTouched = 0;
};

/** One scenario with one fault, and the look at what is left. */
class FCase
{
public:
	FCase(FAutomationTestBase& InTest, const FScenario& InScenario, FFigures& InFigures)
		: Test(InTest)
		, Scenario(InScenario)
		, Figures(InFigures)
	{
	}

	/** @return how many operations there were */
	int32 RunWithout()
	{
		Begin();
		int32 NumOperations = 0;
		{
			FFaultyPlatformFile Files(FFaultyPlatformFile::Never, EFileFault::Interrupted, false);
			Answer = Scenario.Run(*World);
			NumOperations = Files.GetNumOperations();
		}
		After = World->Read();
		if (Scenario.GetWatchedFile)
		{
			const FBytes Now = ReadFile(Scenario.GetWatchedFile());
			Test.TestTrue(FString(Scenario.What) + TEXT(" becomes what is expected"),
				!Scenario.GetExpected || Now == WatchedAfter);
			WatchedAfter = Now;
		}
		return NumOperations;
	}

	void Run(int32 FaultAt, EFileFault Fault, bool bPermanent)
	{
		Name = FString::Printf(TEXT("%s, operation %d, fault %d%s"), Scenario.What, FaultAt, static_cast<int32>(Fault),
			bPermanent ? TEXT(", permanently") : TEXT(""));
		Begin();
		bool bFailed = false;
		FString Result;
		const auto RunFaulty = [&]() {
			FFaultyPlatformFile Files(FaultAt, Fault, bPermanent);
			Result = Scenario.Run(*World);
			bFailed = Files.HasFailed();
		};
		if (IsKill(Fault))
		{
			Test.TestTrue(Name + TEXT(": the process ends"), RunInChildProcess(RunFaulty));
			// What the next start finds.
			TArray<FString> NotUndoable;
			FFileHistory::Get().LoadLastConversation(NotUndoable);
		}
		else
		{
			RunFaulty();
			if (!bFailed)
			{
				return;
			}
			CheckResult(Result);
		}
		++Figures.NumCases;
		CheckForeignFiles();
		CheckTexts();
		CheckWatchedFile(!bPermanent && !IsKill(Fault));
	}

private:
	void Begin()
	{
		World.Reset();
		World = MakeUnique<FWorld>();
		if (Scenario.Prepare)
		{
			Scenario.Prepare(*World);
		}
		Start = World->Read();
		WatchedStart = Scenario.GetWatchedFile ? ReadFile(Scenario.GetWatchedFile()) : FBytes();
		if (Scenario.GetExpected)
		{
			WatchedAfter = Scenario.GetExpected(WatchedStart);
		}
	}

	void Fail(int32& Figure, const FString& What)
	{
		++Figure;
		Test.AddError(Name + TEXT(": ") + What);
	}

	/** A result is true when the files are as it says; a file that could not be put back is at least offered. */
	void CheckResult(const FString& Result)
	{
		const bool bError = Result.StartsWith(TEXT("Error:"));
		if (Scenario.bAnswers && !Result.Contains(TEXT("Error:")) && !Result.Equals(Answer))
		{
			Fail(Figures.NumUntrueResults, Result + TEXT(" (the answer without faults is another)"));
		}
		const FFiles Now = World->Read();
		if (!bError && !Scenario.Prepare && !AreSame(Now, After))
		{
			Fail(Figures.NumUntrueResults, Result + TEXT(" (the files are not as it says)"));
		}
		if (bError && !Scenario.Prepare && !AreSame(Now, Start) && !AreAllOffered(Start, Now))
		{
			Fail(Figures.NumUntrueResults, Result + TEXT(" (the files have changed all the same)"));
		}
	}

	bool AreAllOffered(const FFiles& Wanted, const FFiles& Now) const
	{
		for (const auto& Pair : Wanted)
		{
			const FBytes* Bytes = Now.Find(Pair.Key);
			if ((!Bytes || *Bytes != Pair.Value) && !World->IsOffered(Pair.Value))
			{
				return false;
			}
		}
		return true;
	}

	void CheckForeignFiles()
	{
		if (!AreSame(ReadFolder(World->Root / TEXT("Foreign")), World->Foreign))
		{
			Fail(Figures.NumForeignFilesTouched, TEXT("a file of somebody else's was touched"));
		}
	}

	/** Undo, now without faults, brings the first texts; what it cannot is a copy that the next start offers. */
	void CheckTexts()
	{
		const FFiles Left = World->Read();
		FFileHistory::Get().UndoAllChanges(World->Id);
		const FFiles Undone = World->Read();
		for (const auto& Pair : World->Before)
		{
			const FBytes* Bytes = Undone.Find(Pair.Key);
			const bool bThere = (Bytes && *Bytes == Pair.Value) || World->IsOffered(Pair.Value);
			if (!bThere)
			{
				Fail(Figures.NumTextsLost, Pair.Key + TEXT(" is lost"));
			}
		}
		if (!Scenario.Prepare)
		{
			return;
		}
		FFileHistory::Get().RedoAllChanges(World->Id);
		const FFiles Redone = World->Read();
		for (const auto& Pair : Left)
		{
			const FBytes* Bytes = Redone.Find(Pair.Key);
			const bool bNew = !World->Before.Contains(Pair.Key);
			if (bNew && Start.Contains(Pair.Key) && !(Bytes && *Bytes == Start[Pair.Key]) &&
				!World->IsOffered(Start[Pair.Key]))
			{
				Fail(Figures.NumTextsLost, Pair.Key + TEXT(" cannot be redone"));
			}
		}
	}

	void CheckWatchedFile(bool bCouldCleanUp)
	{
		if (!Scenario.GetWatchedFile)
		{
			return;
		}
		const FString File = Scenario.GetWatchedFile();
		const FBytes Now = ReadFile(File);
		const bool bGrown = Scenario.bMayGrow && Now.Num() >= WatchedStart.Num() &&
							FMemory::Memcmp(Now.GetData(), WatchedStart.GetData(), WatchedStart.Num()) == 0;
		if (Now != WatchedStart && Now != WatchedAfter && !bGrown)
		{
			Fail(Figures.NumTextsLost, File + TEXT(" is neither as it was nor as it is to be"));
		}
		TArray<FString> Left;
		IFileManager::Get().FindFiles(Left, *(File + TEXT(".*.tmp")), true, false);
		if (!Left.IsEmpty() && bCouldCleanUp)
		{
			Fail(Figures.NumForeignFilesTouched, Left[0] + TEXT(" is left"));
		}
		for (const FString& Unfinished : Left)
		{
			IFileManager::Get().Delete(*(FPaths::GetPath(File) / Unfinished));
		}
	}

	FAutomationTestBase& Test;
	const FScenario& Scenario;
	FFigures& Figures;
	FString Name;
	TUniquePtr<FWorld> World;
	FFiles Start;
	FFiles After;
	FString Answer;
	FBytes WatchedStart;
	FBytes WatchedAfter;
};

void RunScenario(FAutomationTestBase& Test, const FScenario& Scenario, FFigures& Figures)
{
	FCase Case(Test, Scenario, Figures);
	const int32 NumOperations = Case.RunWithout();
	for (int32 FaultAt = 0; FaultAt < NumOperations; ++FaultAt)
	{
		for (const EFileFault Fault : Faults)
		{
			Case.Run(FaultAt, Fault, false);
			if (!IsKill(Fault))
			{
				Case.Run(FaultAt, Fault, true);
			}
		}
	}
}
}

constexpr auto FaultTestFlags = EAutomationTestFlags::EditorContext | EAutomationTestFlags::ProductFilter;

DEFINE_SPEC(FKestrelFaultsSpec, "Kestrel.Faults", FaultTestFlags)
void FKestrelFaultsSpec::Define()
{
	It("lose no text, tell no untruth and touch nothing of others", [this]() {
		// What Python says of a script that could not be written; no number, since it depends on the operations.
		AddExpectedError(TEXT("Could not load Python file"), EAutomationExpectedErrorFlags::Contains, 0);
		FaultTest::FFigures Figures;
		for (const FaultTest::FScenario& Scenario : FaultTest::Scenarios)
		{
			FaultTest::RunScenario(*this, Scenario, Figures);
		}
		AddInfo(FString::Printf(TEXT("Faults: %d cases, %d texts lost, %d untrue results, %d foreign files touched"),
			Figures.NumCases, Figures.NumTextsLost, Figures.NumUntrueResults, Figures.NumForeignFilesTouched));
		TestTrue(TEXT("there were cases"), Figures.NumCases > 100);
	});
}
