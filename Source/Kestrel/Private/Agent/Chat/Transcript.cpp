#include "Agent/Chat/Transcript.h"

namespace Transcript
{
// What is held in memory of one conversation. A day's work stays far below.
constexpr int32 MaxEntries = 50000;
constexpr int32 NumDroppedAtOnce = 10000;
constexpr int64 MaxChangeLength = 64 << 20; // characters
}

void FKestrelTranscript::Open(const FString& Folder)
{
	Writer.Close();
	Store.Open(Folder);
	Id.Empty();
	Clear();
}

void FKestrelTranscript::Clear()
{
	Title.Empty();
	Entries.Empty();
	ChangeLength = 0;
	NumRestored = 0;
}

void FKestrelTranscript::Begin(const FString& InId, const FString& Prompt)
{
	Clear();
	Id = InId;
	Title = FKestrelConversationStore::MakeTitle(Prompt);
	Writer.Begin(Store, Id, Prompt);
}

void FKestrelTranscript::RestoreLast()
{
	bIsToBeRestored = false;
	if (!Id.IsEmpty())
	{
		return;
	}
	TArray<FKestrelTranscriptEntry> Last;
	const TOptional<FKestrelConversationInfo> Info = Store.ReadLast(Last);
	if (!Info.IsSet())
	{
		return;
	}
	Id = Info->Id;
	Title = Info->Title;
	const TArray<FKestrelTranscriptEntry> SaidMeanwhile = MoveTemp(Entries);
	Entries = MoveTemp(Last);
	NumRestored = Entries.Num();
	Writer.Resume(Store, Id);
	for (const FKestrelTranscriptEntry& Entry : SaidMeanwhile)
	{
		Add(Entry);
	}
}

bool FKestrelTranscript::Add(const FKestrelTranscriptEntry& Entry)
{
	const bool bStored = Writer.Append(Entry);
	const int64 Length = static_cast<int64>(Entry.Before.Len()) + Entry.After.Len();
	if (Entries.Num() == Transcript::MaxEntries)
	{
		Entries.RemoveAt(0, Transcript::NumDroppedAtOnce);
		NumRestored = FMath::Max(NumRestored - Transcript::NumDroppedAtOnce, 0);
	}
	if (ChangeLength + Length > Transcript::MaxChangeLength)
	{
		Entries.Add(Entry.WithoutTexts());
	}
	else
	{
		ChangeLength += Length;
		Entries.Add(Entry);
	}
	return bStored;
}

void FKestrelTranscript::MarkLogged()
{
	bool bAllLogged = true;
	for (FKestrelTranscriptEntry& Entry : Entries)
	{
		bAllLogged &= Entry.bIsLogged;
		Entry.bIsLogged = true;
	}
	if (!bAllLogged)
	{
		Writer.MarkLogged();
	}
}

void FKestrelTranscript::Forget()
{
	Writer.Close();
	Store.Delete(Id);
	Clear();
}

bool FKestrelTranscript::Rename(const FString& OtherId, const FString& NewTitle)
{
	const bool bRenamed = Store.Rename(OtherId, NewTitle);
	const TOptional<FKestrelConversationInfo> Info = Store.Find(OtherId);
	if (OtherId.Equals(Id) && Info.IsSet())
	{
		Title = Info->Title;
	}
	return bRenamed;
}

void FKestrelTranscript::Delete(const FString& OtherId)
{
	if (OtherId.Equals(Id))
	{
		Forget();
	}
	else
	{
		Store.Delete(OtherId);
	}
}

void FKestrelTranscript::DeleteAll()
{
	Forget();
	Store.DeleteAll();
}
