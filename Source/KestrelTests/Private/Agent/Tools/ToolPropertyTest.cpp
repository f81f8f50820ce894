#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Project/KestrelPythonUtils.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Tools/ToolPlan.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/Dice.h"
#include "Support/KestrelTest.h"

/** Generated inputs of all tools: what a plan says is what happens, and planning itself touches nothing. */
namespace ToolPropertyTest
{
/** A folder with everything that a path can lead to: texts, bytes, links, a pipe, odd names. */
class FWorld
{
public:
	FWorld()
	{
		Outside.Write(TEXT("outside.txt"), TEXT("outside\n"));
		Reset();
	}

	void Reset()
	{
		IFileManager::Get().DeleteDirectory(*Inside.Path, false, true);
		Inside.Write(TEXT("a.txt"), TEXT("one two\none\n"));
		Inside.Write(TEXT("A.TXT"), TEXT("another case\n"));
		Inside.Write(TEXT("crlf.h"), TEXT("one\r\n\ttwo\r\n"));
		Inside.Write(TEXT("umlaut.cpp"), TEXT("// \u00C4rger one\n"));
		Inside.Write(TEXT("empty.txt"), TEXT(""));
		Inside.Write(TEXT("Sub/deep.ini"), TEXT("[one]\n"));
		Inside.Write(TEXT("odd\u202Ename\n.txt"), TEXT("one\n"));
		FFileHelper::SaveArrayToFile(TArray<uint8>{ 'o', 'n', 'e', 0, 0xFF }, *Inside.Full(TEXT("binary.dat")));
		const FString Script = FString::Printf(TEXT("import os\n"
													"os.chdir('%s')\n"
													"os.symlink('a.txt', 'link.txt')\n"
													"os.symlink('%s', 'folder-link')\n"
													"os.symlink('loop', 'loop')\n"
													"os.symlink('nowhere.txt', 'dangling')\n"
													"os.mkfifo('pipe')\n"),
			*Inside.Path, *Outside.Path);
		FKestrelPythonUtils::CreateAndExecutePythonScript(Script);
		Initial = Snapshot();
	}

	/** Names and bytes of all files; links are listed by their names. */
	FString Snapshot() const { return List(Inside.Path) + TEXT("|") + List(Outside.Path); }

	const FKestrelTestFolder Inside;
	const FKestrelTestFolder Outside; // of the folder; for a tool it is in the project as well
	FString Initial;

private:
	static FString List(const FString& Folder)
	{
		TArray<FString> Files;
		IFileManager::Get().FindFiles(Files, *(Folder / TEXT("*")), true, true);
		Files.Sort([](const FString& A, const FString& B) { return A.Compare(B, ESearchCase::CaseSensitive) < 0; });
		FString Text;
		for (const FString& File : Files)
		{
			TArray<uint8> Bytes;
			if (File != TEXT("pipe") && File != TEXT("folder-link"))
			{
				FFileHelper::LoadFileToArray(Bytes, *(Folder / File));
			}
			Text += File + TEXT("=");
			for (const uint8 Byte : Bytes)
			{
				Text += FString::Printf(TEXT("%02x"), Byte);
			}
			Text += TEXT(" ");
			if (File == TEXT("Sub") || File == TEXT("new"))
			{
				Text += TEXT("{") + List(Folder / File) + TEXT("}");
			}
		}
		return Text;
	}
};

const TCHAR* const Paths[] = { TEXT("a.txt"), TEXT("A.TXT"), TEXT("crlf.h"), TEXT("umlaut.cpp"), TEXT("empty.txt"),
	TEXT("Sub/deep.ini"), TEXT("odd\u202Ename\n.txt"), TEXT("binary.dat"), TEXT("link.txt"),
	TEXT("folder-link/outside.txt"), TEXT("loop"), TEXT("dangling"), TEXT("pipe"), TEXT("Sub"), TEXT(""),
	TEXT("new/folder/n.txt"), TEXT("n\u00E4w.txt"), TEXT("a.txt/below"), TEXT("Sub/../a.txt"), TEXT("./a.txt"),
	TEXT("Sub//deep.ini"), TEXT("Sub\\deep.ini") };
const TCHAR* const Texts[] = { TEXT("one"), TEXT(""), TEXT("two\none"), TEXT("    two"), TEXT("ONE"), TEXT("\u00C4"),
	TEXT("\r\n"), TEXT("nowhere"), TEXT("\u202E"), TEXT("0"), TEXT("2"), TEXT("-3"), TEXT("99"), TEXT("x1") };
const TCHAR* const FieldNames[] = { TEXT("path"), TEXT("filepath"), TEXT("filename"), TEXT("contents"),
	TEXT("file_text"), TEXT("old_string"), TEXT("new_string"), TEXT("insert_line"), TEXT("dir_path"), TEXT("file"),
	TEXT("target"), TEXT("view_range") };

class FGenerator
{
public:
	FGenerator(FKestrelDice& InDice, const FWorld& InWorld)
		: Dice(InDice)
		, World(InWorld)
	{
	}

	TSharedRef<FJsonObject> MakeToolUse()
	{
		const TArray<FKestrelTool>& Tools = KestrelTools::GetAll();
		const FKestrelTool* Tool = &Tools[Dice.Roll(Tools.Num())];
		// What needs the whole editor takes its time, and has tests of its own.
		while (!IsOfFiles(*Tool) && Dice.Roll(100) > 0)
		{
			Tool = &Tools[Dice.Roll(Tools.Num())];
		}
		const TSharedRef<FJsonObject> Input = MakeShared<FJsonObject>();
		for (const FKestrelToolField& Field : Tool->Fields)
		{
			if (Dice.Roll(40) > 0)
			{
				Input->SetField(Field.Name, MakeValue(Field.Name));
			}
		}
		for (int32 NumExtra = Dice.Roll(3); NumExtra > 0; --NumExtra)
		{
			const TCHAR* Name = Dice.Pick(FieldNames);
			if (!Input->HasField(Name))
			{
				Input->SetField(Name, MakeValue(Name));
			}
		}
		const TSharedRef<FJsonObject> ToolUse = MakeShared<FJsonObject>();
		ToolUse->SetStringField(TEXT("name"), Tool->WireName);
		ToolUse->SetObjectField(TEXT("input"), Input);
		return ToolUse;
	}

	static bool IsOfFiles(const FKestrelTool& Tool)
	{
		return Tool.Fields.ContainsByPredicate([](const FKestrelToolField& Field) {
			const FString Name = Field.Name;
			return Name == TEXT("path") || Name == TEXT("filepath");
		});
	}

private:
	TSharedPtr<FJsonValue> MakeValue(const FString& Name)
	{
		switch (Dice.Roll(60))
		{
		case 0:
			return MakeShared<FJsonValueNull>();
		case 1:
			return MakeShared<FJsonValueNumber>(Dice.Roll(5));
		case 2:
			return MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>());
		case 3:
			return MakeShared<FJsonValueObject>(MakeShared<FJsonObject>());
		case 4:
		{
			FString WithNul = TEXT("a.txt");
			WithNul.AppendChar(TCHAR(0));
			return MakeShared<FJsonValueString>(WithNul + TEXT("x"));
		}
		default:
			break;
		}
		if (Name == TEXT("view_range"))
		{
			return MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>{
				MakeShared<FJsonValueNumber>(Dice.Roll(4) - 1), MakeShared<FJsonValueNumber>(Dice.Roll(4) - 1) });
		}
		if (Name == TEXT("code"))
		{
			return MakeShared<FJsonValueString>(TEXT("x = 1"));
		}
		return MakeShared<FJsonValueString>(MakeText(Name));
	}

	FString MakeText(const FString& Name)
	{
		if (Name == TEXT("path") || Name == TEXT("file"))
		{
			return (Dice.Roll(2) == 0 ? World.Inside.Name : World.Inside.Path) / Dice.Pick(Paths);
		}
		if (Name == TEXT("filepath") || Name == TEXT("dir_path"))
		{
			return World.Inside.Name;
		}
		return Name == TEXT("filename") ? Dice.Pick(Paths) : Dice.Pick(Texts);
	}

	FKestrelDice& Dice;
	const FWorld& World;
};

/** What is wrong with what a tool did; empty when it is what the plan said. */
FString Compare(const FKestrelToolPlan& Plan, const FString& Result)
{
	if (!Plan.Refusal.IsEmpty() && !Result.Equals(Plan.Refusal))
	{
		return FString::Printf(TEXT("announced \"%s\""), *Plan.Refusal);
	}
	// On a busy machine the time to look at files may be over before the plan is made; then it promises nothing.
	if (Plan.Operation == EKestrelFileOperation::None || !Plan.Refusal.IsEmpty() || Plan.bIsBeyondLimits)
	{
		return FString();
	}
	if (FFileUtils::IsError(Result))
	{
		return TEXT("announced a change");
	}
	const bool bDeletes = Plan.Operation == EKestrelFileOperation::Delete;
	if (bDeletes != !FPaths::FileExists(Plan.FilePath))
	{
		return TEXT("the file is there, or is not");
	}
	return bDeletes || FFileUtils::ReadFile(Plan.FilePath).Equals(Plan.Change->After) ? FString()
																					  : TEXT("another text");
}
}

DEFINE_SPEC(FKestrelToolPropertySpec, "Kestrel.ToolProperties", KestrelTest::Flags)
void FKestrelToolPropertySpec::Define()
{
	using namespace ToolPropertyTest;

	It("do and answer what the plan said, which itself touches nothing", [this]() {
		FWorld World;
		FKestrelDice Dice;
		FGenerator Generator(Dice, World);
		const FKestrelPanelRecorder Recorder;
		FAgent& Agent = FAgent::Get();
		Agent.SetConversationId(TEXT("properties"));
		for (int32 Round = 0; Round < KestrelTest::GetNumFuzzRounds() && !HasAnyErrors(); ++Round)
		{
			FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
			TArray<TSharedRef<FKestrelToolPlan>> Plans;
			FString Inputs;
			for (int32 NumTools = 1 + Dice.Roll(3); NumTools > 0; --NumTools)
			{
				const TSharedRef<FJsonObject> ToolUse = Generator.MakeToolUse();
				Inputs += KestrelJson::ToCondensedText(ToolUse) + TEXT("\n");
				Plans.Add(Planner.Plan(*ToolUse));
			}
			const FString What = FString::Printf(TEXT("Round %d:\n%s"), Round, *Inputs);
			KestrelTest::TestSameText(*this, What + TEXT("planned"), World.Snapshot(), World.Initial);
			TestFalse(What + TEXT("recorded"), FFileHistory::Get().GetFileHistories().Contains(TEXT("properties")));
			for (TSharedRef<FKestrelToolPlan> Plan : Plans)
			{
				if (!Plan->StillHolds())
				{
					// A link that a tool before has cut, for instance.
					Plan = FKestrelToolPlanner(EKestrelLookAhead::Limited).PlanAgain(*Plan);
				}
				TestTrue(What + TEXT("holds"), Plan->StillHolds());
				const FString Result = Plan->Apply();
				const FString Difference = Compare(*Plan, Result);
				TestTrue(What + Result + TEXT("\nbut ") + Difference, Difference.IsEmpty());
			}
			FFileHistory::Get().UndoAllChanges(TEXT("properties"));
			Agent.ClearToolResults();
			KestrelTest::TestSameText(*this, What + TEXT("undone"), World.Snapshot(), World.Initial);
		}
		Agent.ClearConversationId();
		Agent.SetAgentState(EAgentState::Idle, nullptr);
	});
}
