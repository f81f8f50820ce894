#include "Widget/KestrelInterface.h"

#include "Agent/Agent.h"
#include "Agent/FileRescue.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/History/HistoryStore.h"
#include "Agent/KestrelBlueprintUtils.h"
#include "Agent/Tools/DisplayText.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Editor/Transactor.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Interfaces/IProjectManager.h"
#include "KestrelSettings.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "ModuleDescriptor.h"
#include "Modules/ModuleManager.h"
#include "ProjectDescriptor.h"
#include "UObject/Class.h"

#define LOCTEXT_NAMESPACE "FKestrelInterface"

namespace KestrelInterface
{
const TCHAR* const LogNamePrefix = TEXT("KestrelPrompts_");
const TCHAR* const UndoLabel = TEXT("Undo");
const TCHAR* const RedoLabel = TEXT("Redo");

/** The project's modules that every editor loads, as far as this one has not. */
TArray<FString> FindMissingModules()
{
	TArray<FString> Missing;
	const FProjectDescriptor* Project = IProjectManager::Get().GetCurrentProject();
	for (const FModuleDescriptor& Module : Project ? Project->Modules : TArray<FModuleDescriptor>())
	{
		const bool bInEditors = Module.Type == EHostType::Runtime || Module.Type == EHostType::Editor;
		if (bInEditors && !FModuleManager::Get().IsModuleLoaded(Module.Name))
		{
			Missing.Add(Module.Name.ToString());
		}
	}
	return Missing;
}

int32 CountFiles(const FFileHistory::FHistories& Histories, const FString& Id)
{
	const FFileHistory::FFileEntries* Entries = Histories.Find(Id);
	return Entries ? Entries->Num() : 0;
}

/** The first of some paths, for a notice. */
FString ListForDisplay(TArray<FString> Paths)
{
	constexpr int32 MostNamed = 5;
	const TCHAR* const More = Paths.Num() > MostNamed ? TEXT(", ...") : TEXT("");
	Paths.SetNum(FMath::Min(Paths.Num(), MostNamed));
	return KestrelDisplayText::EscapeLine(FString::Join(Paths, TEXT(", "))) + More;
}
}

const FName FKestrelInterface::RegularFontName("Regular");
const FName FKestrelInterface::BoldFontName("Bold");
const FName FKestrelInterface::ItalicFontName("Italic");
const FLinearColor FKestrelInterface::MessageColor(0.55f, 0.55f, 0.55f);
const FLinearColor FKestrelInterface::UserColor(0.35f, 0.65f, 1.0f);
const FLinearColor FKestrelInterface::AssistantColor(0.90f, 0.90f, 0.90f);

FKestrelInterface& FKestrelInterface::Get()
{
	static FKestrelInterface Instance;
	return Instance;
}

void FKestrelInterface::Initialize()
{
	if (bInitialized)
	{
		return;
	}
	bInitialized = true;
	LogDirectory =
		FPaths::ConvertRelativePathToFull(FPaths::ProjectPluginsDir() / TEXT("kestrel-unreal") / TEXT("Logs"));
	EnsureLogDirectoryExists();
	// The key is in there; the engine writes the file with the modes of any other.
	KestrelNativeFile::RestrictToOwner(
		FPaths::ConvertRelativePathToFull(UKestrelSettings::StaticClass()->GetConfigName()));
	CollectRescueNotices();

	constexpr int32 DaysKept = 30;
	constexpr int64 HistoryBytesKept = 512 * 1024 * 1024;
	switch (GetDefault<UKestrelSettings>()->LogRetentionPolicy)
	{
	case EKestrelLogDeletionPolicy::DeleteAllOnStart:
		DeleteAllLogs();
		FKestrelHistoryStore::RemoveAll();
		break;
	case EKestrelLogDeletionPolicy::KeepLast30Days:
		DeleteOldLogs(DaysKept);
		FKestrelHistoryStore::RemoveOld(DaysKept, HistoryBytesKept);
		break;
	case EKestrelLogDeletionPolicy::KeepAll:
		FKestrelHistoryStore::RemoveOld(MAX_int32, MAX_int64);
		break;
	}
	OfferUndoOfEarlierRun();
}

void FKestrelInterface::OfferUndoOfEarlierRun()
{
	TArray<FString> NotUndoable;
	const FString Id = FFileHistory::Get().LoadLastConversation(NotUndoable);
	FAgent& Agent = FAgent::Get();
	Agent.SetUndoConversationID(FFileHistory::Get().GetFileHistories().Contains(Id) ? Id : FString());
	Agent.SetRedoConversationID(FFileHistory::Get().GetRedoHistories().Contains(Id) ? Id : FString());
	if (CanUndo())
	{
		TArray<FString> Names;
		FFileHistory::Get().GetFileHistories().Find(Id)->GenerateKeyArray(Names);
		Notices.Add(TEXT("Undo can still restore what the last conversation changed: ") +
					KestrelInterface::ListForDisplay(Names));
	}
	if (!NotUndoable.IsEmpty())
	{
		Notices.Add(
			TEXT("The last conversation also changed these, but after a restart undo does not touch what lies outside the "
				 "project or behind links, or is very large: ") +
			KestrelInterface::ListForDisplay(NotUndoable));
	}
}

void FKestrelInterface::Shutdown()
{
	if (FAgent::Get().GetAgentState() != EAgentState::Idle)
	{
		FAgent::Get().CancelRequest(FString());
	}
}

void FKestrelInterface::EnsureLogDirectoryExists() const
{
	IPlatformFile& PlatformFile = FPlatformFileManager::Get().GetPlatformFile();
	if (!PlatformFile.DirectoryExists(*LogDirectory))
	{
		PlatformFile.CreateDirectoryTree(*LogDirectory);
	}
	KestrelNativeFile::RestrictToOwner(LogDirectory);
}

TArray<FString> FKestrelInterface::GetAllLogFiles() const
{
	TArray<FString> LogFiles;
	FPlatformFileManager::Get().GetPlatformFile().FindFiles(LogFiles, *LogDirectory, TEXT(".log"));
	return LogFiles;
}

TArray<FString> FKestrelInterface::GetOwnLogFiles() const
{
	TArray<FString> LogFiles = GetAllLogFiles();
	if (!KestrelNativeFile::IsReachedWithoutLinks(LogDirectory))
	{
		// Behind a link lie somebody else's files as well.
		LogFiles.RemoveAll([](const FString& File) {
			return !FPaths::GetCleanFilename(File).StartsWith(KestrelInterface::LogNamePrefix);
		});
	}
	return LogFiles;
}

void FKestrelInterface::DeleteAllLogs()
{
	for (const FString& File : GetOwnLogFiles())
	{
		FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*File);
	}
}

void FKestrelInterface::DeleteOldLogs(int32 Days)
{
	for (const FString& File : GetOwnLogFiles())
	{
		if (IsLogFileOlderThanDays(File, Days))
		{
			FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*File);
		}
	}
}

bool FKestrelInterface::IsLogFileOlderThanDays(const FString& File, int32 Days) const
{
	// Time stamps of files are UTC.
	const FTimespan Age = FDateTime::UtcNow() - FPlatformFileManager::Get().GetPlatformFile().GetTimeStamp(*File);
	return Age.GetTotalDays() > Days;
}

FString FKestrelInterface::GetPromptLogFilePath() const
{
	const FString Today = FDateTime::Now().ToString(TEXT("%Y-%m-%d"));
	return LogDirectory / KestrelInterface::LogNamePrefix + Today + TEXT(".log");
}

void FKestrelInterface::KestrelInterfaceLogString(
	const FString& Text, const FString& FilePath, bool bWithTimestamp) const
{
	EnsureLogDirectoryExists();
	const FString Entry =
		bWithTimestamp ? FString::Printf(TEXT("\n[%s] %s\n\n"), *FDateTime::Now().ToString(TEXT("%H:%M:%S")), *Text)
					   : FString::Printf(TEXT("%s\n"), *Text);
	// A link could lead anywhere, and a pipe would hold the editor.
	const bool bIsThere = FPaths::FileExists(FilePath);
	if (KestrelNativeFile::IsDanglingLink(FilePath) || !KestrelNativeFile::ReadLink(FilePath).IsEmpty() ||
		!KestrelNativeFile::ReadLink(LogDirectory).IsEmpty() ||
		(bIsThere && !KestrelNativeFile::IsRegularFile(FilePath)))
	{
		return;
	}
	// Without a mark: each append would write another one into the middle of the file.
	FFileHelper::SaveStringToFile(
		Entry, *FilePath, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM, &IFileManager::Get(), FILEWRITE_Append);
	KestrelNativeFile::RestrictToOwner(FilePath);
}

void FKestrelInterface::InitialRequest(const FString& Prompt)
{
	if (FAgent::Get().GetAgentState() == EAgentState::Idle)
	{
		const FInitialRequestStateData Data(Prompt);
		FAgent::Get().SetAgentState(EAgentState::InitialRequest, &Data);
	}
}

void FKestrelInterface::RegularRequest(const FString& Prompt)
{
	if (FAgent::Get().GetAgentState() == EAgentState::AwaitingUpdate)
	{
		const FRegularRequestStateData Data(Prompt);
		FAgent::Get().SetAgentState(EAgentState::RegularRequest, &Data);
	}
}

void FKestrelInterface::Approve()
{
	if (FAgent::Get().GetAgentState() == EAgentState::AwaitingApproval)
	{
		FAgent::Get().SetAgentState(EAgentState::Approved, nullptr);
	}
}

void FKestrelInterface::EndRequest(const FString& Message)
{
	FAgent::Get().EndRequest(Message);
}

void FKestrelInterface::CancelRequest(const FString& Message)
{
	FAgent::Get().CancelRequest(Message);
}

void FKestrelInterface::PauseRequest()
{
	FAgent::Get().PauseRequest();
}

void FKestrelInterface::Continue(FString Message)
{
	FAgent::Get().Continue(Message);
}

void FKestrelInterface::UndoLastOperation()
{
	AddOwnStatusMessage(TEXT("Undoing Last Changes..."));
	if (!CanUndo())
	{
		AddHint(LOCTEXT("NothingToUndo", "There is nothing to undo."));
		return; // what could be made again still can
	}
	FAgent& Agent = FAgent::Get();
	const FString Id = Agent.GetUndoConversationID();
	const int32 NumFilesBefore = KestrelInterface::CountFiles(FFileHistory::Get().GetRedoHistories(), Id);
	int32 NumStepsUndone = 0;
	// Each of the conversation's tools has opened one.
	while (UndoUntilLastTransactionByName(GetKestrelTransactionName(Id)))
	{
		++NumStepsUndone;
	}
	const bool bEditorUndone = NumStepsUndone > 0;
	if (FFileHistory::Get().UndoAllChanges(Id))
	{
		Agent.TriggerCompilationWithMessages(KestrelInterface::UndoLabel, Agent.GetStoredMessages());
	}
	// What was undone has moved to the other side; the rest of the records had nothing to undo.
	const int32 NumFilesUndone =
		KestrelInterface::CountFiles(FFileHistory::Get().GetRedoHistories(), Id) - NumFilesBefore;
	const bool bAllDone = ReportLeftChanges(FFileHistory::Get().GetFileHistories().Find(Id));
	// What was undone in the editor is not made again, and half of a conversation's changes shall not be either.
	if (bEditorUndone)
	{
		FFileHistory::Get().ForgetRedo(Id);
	}
	Agent.SetRedoConversationID(bEditorUndone ? FString() : Id);
	Agent.SetUndoConversationID(bAllDone ? FString() : Id);
	if (bEditorUndone)
	{
		// Saving comes first there, and would put what the old classes still have into the files.
		FKestrelBlueprintUtils::CompileDirtyBlueprints();
		FKestrelBlueprintUtils::SaveAndCompileAllDirtyBlueprints();
	}
	AddHint(FText::Format(LOCTEXT("Undone", "Undone: {0} {0}|plural(one=file,other=files), {1} "
											"{1}|plural(one=step in the editor,other=steps in the editor)."),
		NumFilesUndone, NumStepsUndone));
}

bool FKestrelInterface::UndoUntilLastTransactionByName(const FString& Name) const
{
	UTransactor* Transactor = GEditor ? GEditor->Trans.Get() : nullptr;
	if (!Transactor)
	{
		return false;
	}
	// One that the user has undone by hand is gone: looking for it would undo everything else.
	const int32 Index = FKestrelTransactionLookup::Find(Name);
	if (Index == INDEX_NONE || Index >= Transactor->GetQueueLength() - Transactor->GetUndoCount())
	{
		return false;
	}
	while (Transactor->CanUndo())
	{
		const bool bNamed = Transactor->GetUndoContext(false).Title.ToString().Equals(Name);
		if (!GEditor->UndoTransaction())
		{
			return false;
		}
		if (bNamed)
		{
			return true;
		}
	}
	return false;
}

void FKestrelInterface::RedoLastOperation()
{
	AddOwnStatusMessage(TEXT("Redoing Last Changes..."));
	if (!CanRedo())
	{
		AddHint(LOCTEXT("NothingToRedo", "There is nothing to redo."));
		return;
	}
	FAgent& Agent = FAgent::Get();
	const FString Id = Agent.GetRedoConversationID();
	const int32 NumFilesBefore = KestrelInterface::CountFiles(FFileHistory::Get().GetFileHistories(), Id);
	if (FFileHistory::Get().RedoAllChanges(Id))
	{
		Agent.TriggerCompilationWithMessages(KestrelInterface::RedoLabel, Agent.GetStoredMessages());
	}
	const bool bAllDone = ReportLeftChanges(FFileHistory::Get().GetRedoHistories().Find(Id));
	Agent.SetUndoConversationID(Id);
	Agent.SetRedoConversationID(bAllDone ? FString() : Id);
	const int32 NumFilesRedone =
		KestrelInterface::CountFiles(FFileHistory::Get().GetFileHistories(), Id) - NumFilesBefore;
	AddHint(FText::Format(
		LOCTEXT("Redone", "Redone: {0} {0}|plural(one=file,other=files)."), NumFilesRedone));
}

bool FKestrelInterface::ReportLeftChanges(const FFileHistory::FFileEntries* Left) const
{
	if (!Left)
	{
		return true;
	}
	for (const auto& Pair : *Left)
	{
		AddOwnStatusMessage(FString::Printf(TEXT("This file could not be written: %s"), *Pair.Key));
	}
	return false;
}

bool FKestrelInterface::IsCompileLabel(const FString& ToolId)
{
	return ToolId.Equals(KestrelInterface::UndoLabel) || ToolId.Equals(KestrelInterface::RedoLabel);
}

bool FKestrelInterface::CanUndo() const
{
	const FString& Id = FAgent::Get().GetUndoConversationID();
	return !Id.IsEmpty() && (FFileHistory::Get().GetFileHistories().Contains(Id) || UndoLookup.Contains(Id));
}

bool FKestrelInterface::CanRedo() const
{
	const FString& Id = FAgent::Get().GetRedoConversationID();
	return !Id.IsEmpty() && (FFileHistory::Get().GetRedoHistories().Contains(Id) || RedoLookup.Contains(Id));
}

void FKestrelInterface::CollectRescueNotices()
{
	for (const FFileRescue::FLeftCopy& Left : FFileRescue::FindLeftCopies())
	{
		Notices.Add(FString::Printf(TEXT("The editor ended while a file was being written: %s\nIts text from before is "
										 "kept, and nothing was overwritten with it: %s"),
			*KestrelDisplayText::EscapeLine(Left.Original), *KestrelDisplayText::EscapeLine(Left.Copy)));
	}
}

TArray<FString> FKestrelInterface::TakeNotices()
{
	TArray<FString> Taken = MoveTemp(Notices);
	const TArray<FString> Missing = KestrelInterface::FindMissingModules();
	if (!Missing.IsEmpty())
	{
		Taken.Add(
			FString::Printf(TEXT("The project's C++ code is not loaded (%s). The output log says why. Once the code "
								 "is mended, a compile loads it."),
				*FString::Join(Missing, TEXT(", "))));
	}
	return Taken;
}

void FKestrelInterface::OnAddStatusMessage(
	const FString& Message, const FLinearColor& Color, const FName& FontStyle, float FontSize) const
{
	StatusMessageDelegate.ExecuteIfBound(Message, Color, FontStyle, FontSize);
}

void FKestrelInterface::AddOwnStatusMessage(const FString& Message) const
{
	OnAddStatusMessage(Message, MessageColor, ItalicFontName, MessageFontSize);
}

void FKestrelInterface::AddHint(const FText& Hint) const
{
	HintDelegate.ExecuteIfBound(Hint);
}

void FKestrelInterface::OnAddDiffMessage(const FString& FilePath, const FString& Before, const FString& After) const
{
	DiffMessageDelegate.ExecuteIfBound(FilePath, Before, After);
}

#undef LOCTEXT_NAMESPACE
