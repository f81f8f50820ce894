#include "Agent/Chat/KestrelInterface.h"

#include "Agent/Agent.h"
#include "Agent/Files/FileRescue.h"
#include "Agent/Files/KeyGuard.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/History/HistoryStore.h"
#include "Agent/Text/DisplayText.h"
#include "Interfaces/IProjectManager.h"
#include "KestrelSettings.h"
#include "Misc/App.h"
#include "Misc/Paths.h"
#include "ModuleDescriptor.h"
#include "Modules/ModuleManager.h"
#include "ProjectDescriptor.h"
#include "UObject/Class.h"

#define LOCTEXT_NAMESPACE "FKestrelInterface"

namespace KestrelInterface
{
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

/** The first of some paths, for a notice. */
FString ListForDisplay(TArray<FString> Paths)
{
	constexpr int32 MostNamed = 30;
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
	PromptLog.Open(FKestrelPromptLog::GetUsualFolder());
	Transcript.Open(FKestrelConversationStore::GetUsualFolder());
	Transcript.RestoreForNextPanel();
	PromptStore.Open(FKestrelPromptStore::GetUsualFile());
	// The key is in there; the engine writes the file with the modes of any other.
	KestrelNativeFile::RestrictToOwner(
		FPaths::ConvertRelativePathToFull(UKestrelSettings::StaticClass()->GetConfigName()));
	CollectRescueNotices();
	FFileRescue::RemoveOldKept();
	FFileHistory::Get().OnTextKept.BindRaw(this, &FKestrelInterface::ReportKeptText);

	constexpr int32 DaysKept = 30;
	constexpr int64 HistoryBytesKept = 512 * 1024 * 1024;
	constexpr int64 ConversationBytesKept = 512 * 1024 * 1024;
	switch (GetDefault<UKestrelSettings>()->LogRetentionPolicy)
	{
	case EKestrelLogDeletionPolicy::DeleteAllOnStart:
		PromptLog.DeleteAll();
		PromptStore.RemoveAll();
		FKestrelHistoryStore::RemoveAll();
		Transcript.DeleteAll();
		break;
	case EKestrelLogDeletionPolicy::KeepLast30Days:
		PromptLog.DeleteOld(DaysKept);
		PromptStore.RemoveOld(DaysKept);
		FKestrelHistoryStore::RemoveOld(DaysKept, HistoryBytesKept);
		Transcript.GetStore().DeleteOld(DaysKept, ConversationBytesKept);
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
			TEXT(
				"The last conversation also changed these, but after a restart undo does not touch what lies outside the "
				"project or behind links, or is very large: ") +
			KestrelInterface::ListForDisplay(NotUndoable));
	}
}

void FKestrelInterface::ReportKeptText(const FString& FilePath, const FString& CopyPath) const
{
	AddHint(
		FText::Format(LOCTEXT("ChangedSince", "{0} was not as the assistant had left it. That version is kept: {1}"),
			FText::FromString(KestrelDisplayText::EscapeLine(FilePath)),
			FText::FromString(KestrelDisplayText::EscapeLine(CopyPath))));
}

void FKestrelInterface::Shutdown()
{
	if (FAgent::Get().GetAgentState() != EAgentState::Idle)
	{
		FAgent::Get().CancelRequest(FString());
	}
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

void FKestrelInterface::AnswerTool(int32 Index, EKestrelAnswer Answer)
{
	FAgent::Get().AnswerPendingTool(Index, Answer);
}

void FKestrelInterface::AlwaysAllowReading()
{
	GetMutableDefault<UKestrelSettings>()->AllowReading();
	Approve();
	Continue(FString());
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

void FKestrelInterface::BeginConversation(const FString& Id, const FString& Prompt)
{
	Transcript.Begin(Id, KestrelKeyGuard::Hide(Prompt));
}

void FKestrelInterface::RestoreConversation()
{
	if (Transcript.IsToBeRestored() && !FApp::IsUnattended())
	{
		Transcript.RestoreLast();
		ReportDamagedConversations();
	}
}

void FKestrelInterface::ReportDamagedConversations()
{
	for (const FString& File : Transcript.GetStore().TakeSetAside())
	{
		AddPassingHint(FText::Format(LOCTEXT("DamagedConversation",
										 "A stored conversation is damaged and cannot be shown. Its file is kept: {0}"),
			FText::FromString(KestrelDisplayText::EscapeLine(File))));
	}
}

void FKestrelInterface::AddPassingHint(const FText& Hint) const
{
	if (!HintDelegate.ExecuteIfBound(Hint))
	{
		Hints.Add(Hint);
	}
}

void FKestrelInterface::Record(const FKestrelTranscriptEntry& Entry) const
{
	if (!Transcript.Add(Entry))
	{
		AddPassingHint(LOCTEXT(
			"NotStored", "This conversation can no longer be stored. Make room on the disk before the next one."));
	}
}

void FKestrelInterface::OnAddStatusMessage(
	const FString& Message, const FLinearColor& Color, const FName& FontStyle, float FontSize) const
{
	FKestrelTranscriptEntry Entry =
		FKestrelTranscriptEntry::MakeStatus(KestrelKeyGuard::Hide(Message), Color, FontStyle, FontSize);
	if (Redirect)
	{
		Redirect(Entry);
		return;
	}
	Entry.bIsLogged = StatusMessageDelegate.IsBound();
	Record(Entry);
	StatusMessageDelegate.ExecuteIfBound(Entry.Text, Color, FontStyle, FontSize);
}

void FKestrelInterface::AddOwnStatusMessage(const FString& Message) const
{
	OnAddStatusMessage(Message, MessageColor, ItalicFontName, MessageFontSize);
}

void FKestrelInterface::AddHint(const FText& Hint) const
{
	const FKestrelTranscriptEntry Entry = FKestrelTranscriptEntry::MakeHint(KestrelKeyGuard::Hide(Hint.ToString()));
	if (Redirect)
	{
		Redirect(Entry);
		return;
	}
	Record(Entry);
	HintDelegate.ExecuteIfBound(Hint);
}

void FKestrelInterface::OnAddDiffMessage(const FString& FilePath, const FString& Before, const FString& After) const
{
	FKestrelTranscriptEntry Entry = FKestrelTranscriptEntry::MakeChange(
		KestrelKeyGuard::Hide(FilePath), KestrelKeyGuard::Hide(Before), KestrelKeyGuard::Hide(After));
	// What is switched off is neither shown nor logged later.
	const bool bIsShown = GetDefault<UKestrelSettings>()->bDisplayFileChangesInChat;
	if (Redirect)
	{
		if (bIsShown)
		{
			Redirect(Entry);
		}
		return;
	}
	Entry.bIsLogged = DiffMessageDelegate.IsBound();
	if (bIsShown)
	{
		Record(Entry);
	}
	DiffMessageDelegate.ExecuteIfBound(FilePath, Entry.Before, Entry.After);
}

#undef LOCTEXT_NAMESPACE
