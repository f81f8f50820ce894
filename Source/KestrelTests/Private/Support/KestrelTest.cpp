#include "Support/KestrelTest.h"

#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Tools/ToolTable.h"
#include "Dom/JsonObject.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformTime.h"
#include "Interfaces/IPluginManager.h"
#include "Misc/CommandLine.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Parse.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"

bool KestrelTest::TestSameText(
	FAutomationTestBase& Test, const FString& What, const FString& Actual, const FString& Expected)
{
	if (Actual.Equals(Expected))
	{
		return true;
	}
	Test.AddError(FString::Printf(TEXT("%s: expected \"%s\", got \"%s\""), *What, *Expected, *Actual));
	return false;
}

FString KestrelTest::NameOf(EAgentState State)
{
	return StaticEnum<EAgentState>()->GetNameStringByValue(static_cast<int64>(State));
}

FString KestrelTest::NameOf(EKestrelToolKind Kind)
{
	switch (Kind)
	{
	case EKestrelToolKind::Finish:
		return TEXT("Finish");
	case EKestrelToolKind::Read:
		return TEXT("Read");
	case EKestrelToolKind::Create:
		return TEXT("Create");
	case EKestrelToolKind::Change:
		return TEXT("Change");
	case EKestrelToolKind::Delete:
		return TEXT("Delete");
	case EKestrelToolKind::Run:
		return TEXT("Run");
	case EKestrelToolKind::Compile:
		return TEXT("Compile");
	}
	return FString();
}

bool KestrelTest::IsWaitingForUser(EAgentState State)
{
	return State == EAgentState::Idle || State == EAgentState::AwaitingUpdate ||
		   State == EAgentState::AwaitingApproval || State == EAgentState::Pause;
}

FString KestrelTest::UseTool(const TCHAR* Tool, const TArray<FString>& Fields)
{
	const TSharedRef<FJsonObject> Input = MakeShared<FJsonObject>();
	for (int32 Index = 0; Index + 1 < Fields.Num(); Index += 2)
	{
		Input->SetStringField(Fields[Index], Fields[Index + 1]);
	}
	return FAgent::Get().UseTool(Tool, TEXT("id"), Input);
}

int32 KestrelTest::GetFuzzSeed()
{
	int32 Seed = 0;
	FParse::Value(FCommandLine::Get(), TEXT("-KestrelFuzzSeed="), Seed);
	return Seed;
}

int32 KestrelTest::GetNumFuzzRounds()
{
	int32 NumRounds = 0;
	FParse::Value(FCommandLine::Get(), TEXT("-KestrelFuzzRounds="), NumRounds);
	return NumRounds;
}

FString KestrelTest::PluginDir()
{
	return FPaths::ConvertRelativePathToFull(IPluginManager::Get().FindPlugin(TEXT("Kestrel"))->GetBaseDir());
}

FKestrelTestFolder::FKestrelTestFolder()
	: Path(FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()) / (TEXT("Test ") + FGuid::NewGuid().ToString()))
	, Name(FPaths::GetCleanFilename(Path))
{
	IFileManager::Get().MakeDirectory(*Path, true);
}

FKestrelTestFolder::~FKestrelTestFolder()
{
	IFileManager::Get().DeleteDirectory(*Path, false, true);
}

void FKestrelTestFolder::Write(const FString& FileName, const FString& Text) const
{
	FFileHelper::SaveStringToFile(Text, *Full(FileName), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
}

FKestrelTestLog::FKestrelTestLog()
	: Before(MoveTemp(FKestrelInterface::Get().GetTranscript()))
{
	FKestrelInterface::Get().GetPromptLog().Open(Folder.Full(TEXT("Logs")));
	FKestrelInterface::Get().GetTranscript().Open(GetConversations());
	FKestrelInterface::Get().GetPromptStore().Open(Folder.Full(TEXT("Prompts.json")));
}

FKestrelTestLog::~FKestrelTestLog()
{
	FKestrelInterface::Get().GetPromptLog().Open(FKestrelPromptLog::GetUsualFolder());
	FKestrelInterface::Get().GetTranscript() = MoveTemp(Before);
	FKestrelInterface::Get().GetPromptStore().Open(FKestrelPromptStore::GetUsualFile());
}

FKestrelPanelRecorder::FKestrelPanelRecorder()
	: Unhooked(FKestrelInterface::Get().StatusMessageDelegate)
	, UnhookedHints(FKestrelInterface::Get().HintDelegate)
{
	FKestrelInterface::Get().HintDelegate.BindLambda([this](const FText& Hint) { Hints.Add(Hint.ToString()); });
	FKestrelInterface::Get().StatusMessageDelegate.BindLambda(
		[this](const FString& Text, const FLinearColor&, const FName& FontStyle, float FontSize) {
			Messages.Add({ Text, FontStyle, FontSize, FPlatformTime::Seconds() });
		});
}

FKestrelPanelRecorder::~FKestrelPanelRecorder()
{
	FKestrelInterface::Get().StatusMessageDelegate = Unhooked;
	FKestrelInterface::Get().HintDelegate = UnhookedHints;
}

TArray<FString> FKestrelPanelRecorder::GetTexts() const
{
	TArray<FString> Texts;
	for (const FMessage& Message : Messages)
	{
		if (Texts.IsEmpty() || !Texts.Last().Equals(Message.Text))
		{
			Texts.Add(Message.Text);
		}
	}
	return Texts;
}
