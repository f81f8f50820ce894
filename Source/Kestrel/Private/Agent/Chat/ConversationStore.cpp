#include "Agent/Chat/ConversationStore.h"

#include "Agent/Files/NativeFile.h"
#include "Agent/History/HistoryStore.h"
#include "Agent/Text/DisplayText.h"
#include "Agent/Text/JsonText.h"
#include "Containers/StringConv.h"
#include "Dom/JsonObject.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Misc/Timespan.h"

#define LOCTEXT_NAMESPACE "FKestrelConversationStore"

namespace ConversationStore
{
const TCHAR* const Extension = TEXT(".jsonl");
const TCHAR* const TitleExtension = TEXT(".title");
const TCHAR* const DamagedExtension = TEXT(".damaged");
const TCHAR* const UnfinishedExtension = TEXT(".new");
const TCHAR* const AllExtensions[] = { Extension, TitleExtension, DamagedExtension, UnfinishedExtension };

const TCHAR* const VersionField = TEXT("conversation");
const TCHAR* const PromptField = TEXT("prompt");
const TCHAR* const ClientField = TEXT("client");
constexpr int32 Version = 1;
// Lines that are no blocks.
const TCHAR* const LoggedLine = TEXT("{\"all_logged\":true}");
const TCHAR* const FullLine = TEXT("{\"full\":true}");

/** Characters of the first prompt that are kept for the list. */
constexpr int32 MaxPromptLength = 16 * 1024;
/** Bytes in which the first line has room: JSON may write six for a character. */
constexpr int64 MaxHeadBytes = 128 * 1024;
constexpr int64 UsualHeadBytes = 2 * 1024;
/** Characters of a change, before and after together. */
constexpr int32 MaxChangeLength = 256 * 1024;
// Bytes of a conversation from which on changes come without their texts, and from which on nothing more is stored.
constexpr int64 MaxBytesWithChanges = 8 << 20;
constexpr int64 MaxBytes = 16 << 20;
/** Bytes; a file that is larger was not written here. */
constexpr int64 MaxBytesRead = 32 << 20;

IPlatformFile& Files()
{
	return FPlatformFileManager::Get().GetPlatformFile();
}

/** False for links, which lead to somebody else's files, and for what would block whoever opens it. */
bool IsPlainFile(const FString& File)
{
	return KestrelNativeFile::ReadLink(File).IsEmpty() && KestrelNativeFile::IsRegularFile(File);
}

FString FromUtf8(const uint8* Bytes, int32 Num)
{
	const FUTF8ToTCHAR Text(reinterpret_cast<const ANSICHAR*>(Bytes), Num);
	FString Result;
	Result.AppendChars(Text.Get(), Text.Length());
	return Result;
}

/** Where the line ends that begins there; -1 when it is not finished. */
int32 FindLineEnd(const TArray<uint8>& Bytes, int32 Begin)
{
	int32 End = Begin;
	while (End < Bytes.Num() && Bytes[End] != '\n')
	{
		++End;
	}
	return End < Bytes.Num() ? End : INDEX_NONE;
}

/** The size of the part that consists of whole lines. */
int32 CountWholeBytes(const TArray<uint8>& Bytes)
{
	int32 Num = Bytes.Num();
	while (Num > 0 && Bytes[Num - 1] != '\n')
	{
		--Num;
	}
	return Num;
}

/** The first bytes of a file, enough for most first lines, or for all. */
bool ReadHead(const FString& File, int64 Limit, TArray<uint8>& OutBytes)
{
	const TUniquePtr<IFileHandle> Handle(IsPlainFile(File) ? Files().OpenRead(*File) : nullptr);
	if (!Handle)
	{
		return false;
	}
	OutBytes.SetNumUninitialized(static_cast<int32>(FMath::Min(Handle->Size(), Limit)));
	return Handle->Read(OutBytes.GetData(), OutBytes.Num());
}

bool ReadFirstLine(const FString& Line, FString& OutPrompt, bool& bOutIsOfClient)
{
	const TSharedPtr<FJsonObject> Object = KestrelJson::ParseObject(Line);
	int32 ReadVersion = 0;
	bOutIsOfClient = Object.IsValid() && Object->HasField(ClientField);
	return Object.IsValid() && Object->TryGetNumberField(VersionField, ReadVersion) && ReadVersion == Version &&
		   Object->TryGetStringField(PromptField, OutPrompt);
}

/** A line behind the first. @return false when it is damaged */
bool ReadLine(const FString& Line, TArray<FKestrelTranscriptEntry>& OutEntries)
{
	if (Line.Equals(LoggedLine))
	{
		for (FKestrelTranscriptEntry& Entry : OutEntries)
		{
			Entry.bIsLogged = true;
		}
		return true;
	}
	if (Line.Equals(FullLine))
	{
		OutEntries.Add(FKestrelTranscriptEntry::MakeHint(
			LOCTEXT("Full", "The rest of this conversation was too long to be kept.").ToString()));
		return true;
	}
	TOptional<FKestrelTranscriptEntry> Entry = FKestrelTranscriptEntry::FromLine(Line);
	if (Entry.IsSet())
	{
		OutEntries.Add(MoveTemp(Entry.GetValue()));
	}
	return Entry.IsSet();
}

/** What claims to come from the future was not written here: it must not hide what was. */
FDateTime GetLatestPossible()
{
	return FDateTime::UtcNow() + FTimespan::FromMinutes(1.0);
}
}

FString FKestrelConversationStore::GetUsualFolder()
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir() / TEXT("Kestrel") / TEXT("Conversations"));
}

bool FKestrelConversationStore::IsOurs() const
{
	return !Folder.IsEmpty() &&
		   KestrelNativeFile::IsReachedWithoutLinks(Folder, FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()));
}

FString FKestrelConversationStore::GetFile(const FString& Id, const TCHAR* Extension) const
{
	return Folder / Id + Extension;
}

TArray<FString> FKestrelConversationStore::FindIds(const TCHAR* Extension) const
{
	TArray<FString> Names;
	TArray<FString> Ids;
	if (IsOurs())
	{
		IFileManager::Get().FindFiles(Names, *(Folder / (FString(TEXT("*")) + Extension)), true, false);
	}
	for (const FString& Name : Names)
	{
		const FString Id = FPaths::GetBaseFilename(Name);
		if (FKestrelHistoryStore::IsConversationId(Id))
		{
			Ids.Add(Id);
		}
	}
	return Ids;
}

bool FKestrelConversationStore::ReadInfo(const FString& Id, FKestrelConversationInfo& OutInfo)
{
	constexpr int64 MaxTitleBytes = 4096;
	const FString File = GetFile(Id, ConversationStore::Extension);
	TArray<uint8> Head;
	int32 End = INDEX_NONE;
	for (const int64 MaxBytes : { ConversationStore::UsualHeadBytes, ConversationStore::MaxHeadBytes })
	{
		if (!ConversationStore::ReadHead(File, MaxBytes, Head))
		{
			return false;
		}
		End = ConversationStore::FindLineEnd(Head, 0);
		if (End != INDEX_NONE)
		{
			break;
		}
	}
	const bool bUnfinished = End == INDEX_NONE && Head.Num() < ConversationStore::MaxHeadBytes;
	if (bUnfinished)
	{
		return false;
	}
	if (End == INDEX_NONE || !ConversationStore::ReadFirstLine(
								 ConversationStore::FromUtf8(Head.GetData(), End), OutInfo.Prompt, OutInfo.bIsOfClient))
	{
		MoveAside(Id);
		return false;
	}
	const FString TitleFile = GetFile(Id, ConversationStore::TitleExtension);
	FString Name;
	if (ConversationStore::IsPlainFile(TitleFile) && IFileManager::Get().FileSize(*TitleFile) <= MaxTitleBytes)
	{
		FFileHelper::LoadFileToString(Name, *TitleFile);
	}
	OutInfo.Id = Id;
	OutInfo.Title = MakeTitle(Name.TrimStartAndEnd().IsEmpty() ? OutInfo.Prompt : Name);
	OutInfo.LastChange = IFileManager::Get().GetTimeStamp(*File);
	return true;
}

TArray<FString> FKestrelConversationStore::FindNewestFirst() const
{
	TArray<TPair<FDateTime, FString>> Conversations;
	for (const FString& Id : FindIds(ConversationStore::Extension))
	{
		Conversations.Emplace(IFileManager::Get().GetTimeStamp(*GetFile(Id, ConversationStore::Extension)), Id);
	}
	const FDateTime Latest = ConversationStore::GetLatestPossible();
	Conversations.Sort([Latest](const TPair<FDateTime, FString>& A, const TPair<FDateTime, FString>& B) {
		return (A.Key <= Latest) == (B.Key <= Latest) ? A.Key > B.Key : A.Key <= Latest;
	});
	TArray<FString> Ids;
	for (TPair<FDateTime, FString>& Conversation : Conversations)
	{
		Ids.Add(MoveTemp(Conversation.Value));
	}
	return Ids;
}

TArray<FKestrelConversationInfo> FKestrelConversationStore::List()
{
	TArray<FKestrelConversationInfo> Conversations;
	for (const FString& Id : FindNewestFirst())
	{
		FKestrelConversationInfo Info;
		if (ReadInfo(Id, Info))
		{
			Conversations.Add(MoveTemp(Info));
		}
	}
	return Conversations;
}

TOptional<FKestrelConversationInfo> FKestrelConversationStore::ReadLast(TArray<FKestrelTranscriptEntry>& OutEntries)
{
	for (const FString& Id : FindNewestFirst())
	{
		FKestrelConversationInfo Info;
		// A damaged one is set aside, and the one before it is the last.
		if (KestrelNativeFile::IsReadByOwnerOnly(GetFile(Id, ConversationStore::Extension)) && ReadInfo(Id, Info) &&
			!Info.bIsOfClient && Read(Id, OutEntries) == EKestrelConversationRead::Done)
		{
			return Info;
		}
	}
	return TOptional<FKestrelConversationInfo>();
}

TOptional<FKestrelConversationInfo> FKestrelConversationStore::Find(const FString& Id)
{
	FKestrelConversationInfo Info;
	const bool bFound = IsOurs() && FKestrelHistoryStore::IsConversationId(Id) && ReadInfo(Id, Info);
	return bFound ? TOptional<FKestrelConversationInfo>(MoveTemp(Info)) : TOptional<FKestrelConversationInfo>();
}

EKestrelConversationRead FKestrelConversationStore::Read(const FString& Id, TArray<FKestrelTranscriptEntry>& OutEntries)
{
	OutEntries.Empty();
	const FString File = GetFile(Id, ConversationStore::Extension);
	if (!IsOurs() || !FKestrelHistoryStore::IsConversationId(Id) || !ConversationStore::IsPlainFile(File))
	{
		return EKestrelConversationRead::NotThere;
	}
	TArray<uint8> Bytes;
	if (IFileManager::Get().FileSize(*File) <= ConversationStore::MaxBytesRead &&
		!FFileHelper::LoadFileToArray(Bytes, *File))
	{
		return EKestrelConversationRead::NotThere;
	}
	FString Prompt;
	bool bIsOfClient = false;
	bool bFirst = true;
	bool bWhole = !Bytes.IsEmpty();
	for (int32 Begin = 0; bWhole;)
	{
		const int32 End = ConversationStore::FindLineEnd(Bytes, Begin);
		if (End == INDEX_NONE)
		{
			break;
		}
		const FString Line = ConversationStore::FromUtf8(Bytes.GetData() + Begin, End - Begin);
		bWhole = bFirst ? ConversationStore::ReadFirstLine(Line, Prompt, bIsOfClient)
						: ConversationStore::ReadLine(Line, OutEntries);
		bFirst = false;
		Begin = End + 1;
	}
	if (!bWhole)
	{
		OutEntries.Empty();
		MoveAside(Id);
		return EKestrelConversationRead::Damaged;
	}
	return bFirst ? EKestrelConversationRead::NotThere : EKestrelConversationRead::Done;
}

void FKestrelConversationStore::MoveAside(const FString& Id)
{
	const FString Damaged = GetFile(Id, ConversationStore::DamagedExtension);
	if (IFileManager::Get().Move(*Damaged, *GetFile(Id, ConversationStore::Extension), true))
	{
		SetAside.Add(Damaged);
	}
}

bool FKestrelConversationStore::Rename(const FString& Id, const FString& Title)
{
	constexpr int32 MaxNameLength = 200;
	if (!Find(Id).IsSet())
	{
		return false;
	}
	const FString File = GetFile(Id, ConversationStore::TitleExtension);
	ConversationStore::Files().DeleteFile(*File); // a link, too
	FString Name = Title.TrimStartAndEnd();
	int32 LineEnd = INDEX_NONE;
	Name = Name.FindChar(TEXT('\n'), LineEnd) ? Name.Left(LineEnd) : Name;
	if (Name.IsEmpty())
	{
		return true;
	}
	if (!FFileHelper::SaveStringToFile(
			Name.Left(MaxNameLength), *File, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM))
	{
		return false;
	}
	KestrelNativeFile::RestrictToOwner(File);
	return true;
}

void FKestrelConversationStore::Delete(const FString& Id)
{
	if (!IsOurs() || !FKestrelHistoryStore::IsConversationId(Id))
	{
		return;
	}
	for (const TCHAR* Extension : ConversationStore::AllExtensions)
	{
		ConversationStore::Files().DeleteFile(*GetFile(Id, Extension));
	}
}

void FKestrelConversationStore::DeleteAll()
{
	for (const TCHAR* Extension : ConversationStore::AllExtensions)
	{
		for (const FString& Id : FindIds(Extension))
		{
			Delete(Id);
		}
	}
}

void FKestrelConversationStore::DeleteOld(int32 Days, int64 MaxBytes)
{
	const auto IsOld = [this, Days](const FString& Id, const TCHAR* Extension) {
		const FDateTime LastChange = IFileManager::Get().GetTimeStamp(*GetFile(Id, Extension));
		return (FDateTime::UtcNow() - LastChange).GetTotalDays() > Days;
	};
	for (const FString& Id : FindIds(ConversationStore::DamagedExtension))
	{
		if (IsOld(Id, ConversationStore::DamagedExtension))
		{
			ConversationStore::Files().DeleteFile(*GetFile(Id, ConversationStore::DamagedExtension));
		}
	}
	int64 NumBytes = 0;
	for (const FString& Id : FindNewestFirst())
	{
		NumBytes += IFileManager::Get().FileSize(*GetFile(Id, ConversationStore::Extension));
		if (NumBytes > MaxBytes || IsOld(Id, ConversationStore::Extension))
		{
			Delete(Id);
		}
	}
}

FString FKestrelConversationStore::MakeTitle(const FString& Text)
{
	constexpr int32 MaxTitleLength = 60;
	// Of a text of any length, this much is looked at.
	const FString Start = Text.Left(ConversationStore::MaxPromptLength).TrimStartAndEnd();
	TArray<FString> Lines;
	Start.ParseIntoArrayLines(Lines);
	FString Title = Lines.IsEmpty() ? FString() : Lines[0].TrimStartAndEnd();
	const bool bShortened = Title.Len() > MaxTitleLength;
	Title =
		KestrelDisplayText::EscapeLine(Title.Left(MaxTitleLength).TrimEnd()) + (bShortened ? TEXT("\u2026") : TEXT(""));
	return Title.IsEmpty() ? LOCTEXT("NoTitle", "Conversation without a prompt").ToString() : Title;
}

void FKestrelConversationWriter::Begin(
	const FKestrelConversationStore& Store, const FString& Id, const FString& Prompt, EKestrelConversationOwner Owner)
{
	Close();
	if (!Store.IsOurs() || !FKestrelHistoryStore::IsConversationId(Id) ||
		!ConversationStore::Files().CreateDirectoryTree(*Store.Folder))
	{
		return;
	}
	KestrelNativeFile::RestrictToOwner(Store.Folder);
	if (Open(Store.GetFile(Id, ConversationStore::Extension)))
	{
		const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
		Object->SetNumberField(ConversationStore::VersionField, ConversationStore::Version);
		Object->SetStringField(ConversationStore::PromptField, Prompt.Left(ConversationStore::MaxPromptLength));
		if (Owner == EKestrelConversationOwner::Client)
		{
			Object->SetBoolField(ConversationStore::ClientField, true);
		}
		WriteLine(KestrelJson::ToCondensedText(Object));
	}
}

void FKestrelConversationWriter::Resume(const FKestrelConversationStore& Store, const FString& Id)
{
	Close();
	const FString File = Store.GetFile(Id, ConversationStore::Extension);
	TArray<uint8> Bytes;
	if (!Store.IsOurs() || !ConversationStore::IsPlainFile(File) || !FFileHelper::LoadFileToArray(Bytes, *File))
	{
		return;
	}
	const int32 NumWhole = ConversationStore::CountWholeBytes(Bytes);
	if (NumWhole < Bytes.Num())
	{
		// What is appended would make one damaged line with the unfinished one.
		const FString Unfinished = Store.GetFile(Id, ConversationStore::UnfinishedExtension);
		Bytes.SetNum(NumWhole);
		if (!FFileHelper::SaveArrayToFile(Bytes, *Unfinished))
		{
			return;
		}
		KestrelNativeFile::RestrictToOwner(Unfinished);
		if (!IFileManager::Get().Move(*File, *Unfinished, true))
		{
			return;
		}
	}
	Open(File);
}

bool FKestrelConversationWriter::Open(const FString& File)
{
	// A link could lead anywhere, and a pipe would hold the editor.
	const bool bIsThere = FPaths::FileExists(File);
	if (KestrelNativeFile::IsDanglingLink(File) || (bIsThere && !ConversationStore::IsPlainFile(File)))
	{
		return false;
	}
	constexpr bool bAppend = true;
	constexpr bool bAllowRead = true; // the list is shown meanwhile
	Handle.Reset(ConversationStore::Files().OpenWrite(*File, bAppend, bAllowRead));
	NumBytes = Handle ? Handle->Size() : 0;
	KestrelNativeFile::RestrictToOwner(File);
	return Handle.IsValid();
}

bool FKestrelConversationWriter::WriteLine(const FString& Line)
{
	const FTCHARToUTF8 Utf8(*Line, Line.Len());
	TArray<uint8> Bytes(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
	Bytes.Add('\n');
	NumBytes += Bytes.Num();
	// In one call, so that nothing of another editor can come in between.
	if (!Handle->Write(Bytes.GetData(), Bytes.Num()))
	{
		Close();
		return false;
	}
	return true;
}

bool FKestrelConversationWriter::Append(const FKestrelTranscriptEntry& Entry)
{
	if (!Handle)
	{
		return true;
	}
	const bool bWithChange = NumBytes < ConversationStore::MaxBytesWithChanges;
	const FString Line = Entry.ToLine(bWithChange ? ConversationStore::MaxChangeLength : 0);
	if (NumBytes + Line.Len() > ConversationStore::MaxBytes)
	{
		const bool bWritten = WriteLine(ConversationStore::FullLine);
		Close();
		return bWritten;
	}
	return WriteLine(Line);
}

void FKestrelConversationWriter::MarkLogged()
{
	if (Handle)
	{
		WriteLine(ConversationStore::LoggedLine);
	}
}

void FKestrelConversationWriter::Close()
{
	Handle.Reset();
}

#undef LOCTEXT_NAMESPACE
