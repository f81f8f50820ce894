#include "Agent/History/HistoryStore.h"

#include "Agent/Files/FileRescue.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Files/PathReview.h"
#include "Agent/Text/JsonText.h"
#include "Containers/StringConv.h"
#include "Dom/JsonObject.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Compression.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Misc/Timespan.h"

namespace HistoryStore
{
// A record: this mark, the sizes of both parts, then both parts compressed as one, or as they are when that is not
// worth the time.
constexpr uint8 Mark[] = { 'K', 'H', 'R', '1' };
/** Behind the mark: the size of the description, and of the content, in bytes, with the lowest byte first. */
constexpr int32 NumSizeBytes = 8;
constexpr int32 HeaderSize = sizeof(Mark) + NumSizeBytes;
constexpr int32 MaxDescriptionSize = 1 << 20;
/** Bytes; compressing more would be felt, and disks are faster. */
constexpr int32 MaxCompressedSize = 4 << 20;

const TCHAR* const UndoExtension = TEXT(".undo");
const TCHAR* const RedoExtension = TEXT(".redo");
const TCHAR* const UnfinishedExtension = TEXT(".new");
/** How a record's file was left: whether it exists and its checksum; then a line for each copy of others' versions. */
const TCHAR* const LeftExtension = TEXT(".left");
const TCHAR* const AllExtensions[] = { UndoExtension, RedoExtension, UnfinishedExtension, LeftExtension };

IPlatformFile& Files()
{
	return FPlatformFileManager::Get().GetPlatformFile();
}

FString RootFolder()
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir() / TEXT("Kestrel") / TEXT("History"));
}

/** False when a project has put links there: what lies behind them is somebody else's. */
bool IsOurs(const FString& Folder)
{
	return KestrelNativeFile::IsReachedWithoutLinks(
		Folder, FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir()));
}

FString GetLeftFile(const FString& RecordFile)
{
	return RecordFile + LeftExtension;
}

void ReadLeft(const FString& RecordFile, FFileHistoryEntry& Entry)
{
	constexpr int64 MaxBytes = 64 * 1024; // the copies of a very long day
	const FString File = GetLeftFile(RecordFile);
	FString Text;
	TArray<FString> Lines;
	TArray<FString> Fields;
	if (!KestrelNativeFile::IsRegularFile(File) || Files().FileSize(*File) > MaxBytes ||
		!FFileHelper::LoadFileToString(Text, *File) || Text.ParseIntoArray(Lines, TEXT("\n")) == 0 ||
		Lines[0].ParseIntoArray(Fields, TEXT(" ")) != 2)
	{
		return;
	}
	Entry.Left = FKestrelFileMark{ Fields[0] == TEXT("1"), static_cast<uint32>(FCString::Atoi64(*Fields[1])) };
	for (int32 Index = 1; Index < Lines.Num(); ++Index)
	{
		if (FFileRescue::IsKeptCopy(Lines[Index]))
		{
			Entry.KeptCopies.AddUnique(Lines[Index]);
		}
	}
}

const TCHAR* ExtensionOf(EKestrelHistorySide Side)
{
	return Side == EKestrelHistorySide::Undo ? UndoExtension : RedoExtension;
}

void AppendSize(TArray<uint8>& Bytes, int32 Size)
{
	for (int32 Shift = 0; Shift < 32; Shift += 8)
	{
		Bytes.Add(static_cast<uint8>((static_cast<uint32>(Size) >> Shift) & 0xFF));
	}
}

int32 ReadSize(const TArray<uint8>& Bytes, int32 At)
{
	uint32 Size = 0;
	for (int32 Index = 0; Index < 4; ++Index)
	{
		Size |= static_cast<uint32>(Bytes[At + Index]) << (8 * Index);
	}
	return static_cast<int32>(Size);
}

TArray<uint8> ToUtf8(const FString& Text)
{
	const FTCHARToUTF8 Utf8(*Text, Text.Len());
	return TArray<uint8>(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
}

FString FromUtf8(const uint8* Bytes, int32 Num)
{
	const FUTF8ToTCHAR Text(reinterpret_cast<const ANSICHAR*>(Bytes), Num);
	FString Result;
	Result.AppendChars(Text.Get(), Text.Length());
	return Result;
}

TArray<uint8> Describe(const FString& FilePath, const FFileHistoryEntry& Entry)
{
	const TSharedRef<FJsonObject> Description = MakeShared<FJsonObject>();
	Description->SetStringField(TEXT("path"), FilePath);
	Description->SetNumberField(TEXT("action"), static_cast<int32>(Entry.ActionType));
	Description->SetBoolField(TEXT("is_bytes"), !Entry.Bytes.IsEmpty());
	Description->SetNumberField(TEXT("new_folders"), Entry.NumNewFolders);
	Description->SetNumberField(TEXT("mode"), Entry.Mode);
	Description->SetStringField(TEXT("link"), Entry.LinkTarget);
	Description->SetNumberField(TEXT("revision_control"), static_cast<int32>(Entry.RevisionControl));
	Description->SetBoolField(TEXT("index_touched"), Entry.bIndexTouched);
	return ToUtf8(KestrelJson::ToCondensedText(Description));
}

bool ReadDescription(const FJsonObject& Description, FString& OutPath, bool& bOutIsBytes, FFileHistoryEntry& OutEntry)
{
	int32 Action = 0;
	int32 RevisionControl = 0;
	const bool bRead = Description.TryGetStringField(TEXT("path"), OutPath) &&
					   Description.TryGetNumberField(TEXT("action"), Action) &&
					   Description.TryGetBoolField(TEXT("is_bytes"), bOutIsBytes) &&
					   Description.TryGetNumberField(TEXT("new_folders"), OutEntry.NumNewFolders) &&
					   Description.TryGetNumberField(TEXT("mode"), OutEntry.Mode) &&
					   Description.TryGetStringField(TEXT("link"), OutEntry.LinkTarget) &&
					   Description.TryGetNumberField(TEXT("revision_control"), RevisionControl) &&
					   Description.TryGetBoolField(TEXT("index_touched"), OutEntry.bIndexTouched);
	OutEntry.ActionType = static_cast<EFileActionType>(FMath::Clamp(Action, 0, 3));
	OutEntry.RevisionControl = static_cast<EKestrelRevisionControl>(FMath::Clamp(RevisionControl, 0, 3));
	// A path that is too long cannot be one that a tool has changed.
	return bRead && !OutPath.IsEmpty() && !KestrelNativeFile::IsTooLong(OutPath);
}

/** Both parts as one, compressed; empty when that is not worth the time, or makes it no smaller. */
TArray<uint8> Compress(const TArray<uint8>& Description, TConstArrayView<uint8> Content)
{
	TArray<uint8> Compressed;
	if (static_cast<int64>(Description.Num()) + Content.Num() > MaxCompressedSize)
	{
		return Compressed;
	}
	TArray<uint8> Whole = Description;
	Whole.Append(Content.GetData(), Content.Num());
	int32 Size = FCompression::CompressMemoryBound(NAME_Zlib, Whole.Num());
	Compressed.SetNumUninitialized(Size);
	const bool bSmaller =
		FCompression::CompressMemory(NAME_Zlib, Compressed.GetData(), Size, Whole.GetData(), Whole.Num()) &&
		Size < Whole.Num();
	Compressed.SetNum(bSmaller ? Size : 0);
	return Compressed;
}

bool WriteAll(IFileHandle& File, TConstArrayView<uint8> Bytes)
{
	return File.Write(Bytes.GetData(), Bytes.Num());
}

/** Writes a record part by part: a copy of a large file's content would be felt. @return whether all is written */
bool Save(const FString& FullPath, const TArray<uint8>& Description, TConstArrayView<uint8> Content)
{
	TArray<uint8> Header(Mark, sizeof(Mark));
	AppendSize(Header, Description.Num());
	AppendSize(Header, Content.Num());
	const TArray<uint8> Compressed = Compress(Description, Content);
	const TUniquePtr<IFileHandle> File(Files().OpenWrite(*FullPath));
	if (!File || !WriteAll(*File, Header))
	{
		return false;
	}
	return Compressed.IsEmpty() ? WriteAll(*File, Description) && WriteAll(*File, Content)
								: WriteAll(*File, Compressed);
}

/** Zlib makes nothing smaller than by this factor; a record that says so is damaged, and would fill the memory. */
constexpr int64 MaxRatio = 1100;
// Bytes of one record, and of all together, that are brought back at the start.
constexpr int64 MaxLoadedSize = 64 << 20;
constexpr int64 MaxLoadedTotal = 256 << 20;
/** Characters; each folder of a path is looked at, and so many are enough for some thousand files. */
constexpr int64 MaxLoadedPathLength = 256 << 10;

/** @return false for what is no whole record */
bool Unpack(const TArray<uint8>& Packed, TArray<uint8>& OutWhole, int32& OutDescriptionSize)
{
	if (Packed.Num() < HeaderSize || FMemory::Memcmp(Packed.GetData(), Mark, sizeof(Mark)) != 0)
	{
		return false;
	}
	OutDescriptionSize = ReadSize(Packed, sizeof(Mark));
	const int32 ContentSize = ReadSize(Packed, sizeof(Mark) + NumSizeBytes / 2);
	const int64 Size = static_cast<int64>(OutDescriptionSize) + ContentSize;
	if (OutDescriptionSize <= 0 || OutDescriptionSize > MaxDescriptionSize || ContentSize < 0 || Size > MAX_int32 ||
		Size > MaxRatio * Packed.Num() || Size > MaxLoadedSize)
	{
		return false;
	}
	OutWhole.SetNumUninitialized(static_cast<int32>(Size));
	if (Size == Packed.Num() - HeaderSize)
	{
		FMemory::Memcpy(OutWhole.GetData(), Packed.GetData() + HeaderSize, static_cast<SIZE_T>(Size));
		return true;
	}
	return FCompression::UncompressMemory(
		NAME_Zlib, OutWhole.GetData(), OutWhole.Num(), Packed.GetData() + HeaderSize, Packed.Num() - HeaderSize);
}

bool ReadRecord(const FString& File, FString& OutPath, FFileHistoryEntry& OutEntry)
{
	TArray<uint8> Packed;
	TArray<uint8> Whole;
	int32 DescriptionSize = 0;
	if (!KestrelNativeFile::IsRegularFile(File) || !FFileHelper::LoadFileToArray(Packed, *File) ||
		!Unpack(Packed, Whole, DescriptionSize))
	{
		return false;
	}
	const TSharedPtr<FJsonObject> Description = KestrelJson::ParseObject(FromUtf8(Whole.GetData(), DescriptionSize));
	bool bIsBytes = false;
	if (!Description.IsValid() || !ReadDescription(*Description, OutPath, bIsBytes, OutEntry))
	{
		return false;
	}
	const uint8* const Content = Whole.GetData() + DescriptionSize;
	const int32 ContentSize = Whole.Num() - DescriptionSize;
	if (bIsBytes)
	{
		OutEntry.Bytes.Append(Content, ContentSize);
		FFileHelper::BufferToString(OutEntry.Content, Content, ContentSize);
	}
	else
	{
		OutEntry.Content = FromUtf8(Content, ContentSize);
	}
	OutEntry.RecordFile = File;
	ReadLeft(File, OutEntry);
	return true;
}

/**
 * Whether a record of an earlier run may be followed. A project can bring records of its own making, so undo must not
 * lead where the project itself could not: out of it, into its version control, or over a link.
 */
bool IsTrustworthy(const FString& FilePath, const FFileHistoryEntry& Entry)
{
	// No link at all: what it leads to depends on the links that other records make.
	return Entry.LinkTarget.IsEmpty() && FKestrelPathReview::Of(FFileUtils::ToAbsolutePath(FilePath)).bIsOfProject;
}

/** The conversations that are there, the one with the latest change first. */
TArray<FKestrelHistoryStore::FConversation> List()
{
	TArray<FKestrelHistoryStore::FConversation> Conversations;
	if (!IsOurs(RootFolder()))
	{
		return Conversations;
	}
	TArray<FString> Names;
	IFileManager::Get().FindFiles(Names, *(RootFolder() / TEXT("*")), false, true);
	for (const FString& Name : Names)
	{
		const FString Folder = RootFolder() / Name;
		// A link that somebody has put here leads out of what is ours.
		if (FKestrelHistoryStore::IsConversationId(Name) && KestrelNativeFile::ReadLink(Folder).IsEmpty())
		{
			Conversations.AddDefaulted_GetRef().Id = Name;
			Conversations.Last().LastChange = IFileManager::Get().GetTimeStamp(*Folder);
		}
	}
	// What claims to come from the future was not written here: it must not hide what was.
	const FDateTime Latest = FDateTime::UtcNow() + FTimespan::FromMinutes(1.0);
	Conversations.Sort(
		[Latest](const FKestrelHistoryStore::FConversation& A, const FKestrelHistoryStore::FConversation& B) {
			const bool bIsPossible = A.LastChange <= Latest;
			return bIsPossible == (B.LastChange <= Latest) ? A.LastChange > B.LastChange : bIsPossible;
		});
	return Conversations;
}

TArray<FString> ListRecords(const FString& Id, const TCHAR* Extension)
{
	TArray<FString> Names;
	IFileManager::Get().FindFiles(Names, *(RootFolder() / Id / (FString(TEXT("*")) + Extension)), true, false);
	Names.Sort();
	return Names;
}

int64 SizeInMemory(const FFileHistoryEntry& Entry)
{
	return static_cast<int64>(Entry.Content.Len()) * static_cast<int64>(sizeof(TCHAR)) + Entry.Bytes.Num();
}

/** @param OutNotFollowed  gets the files of whole records that are left out */
void LoadSide(
	const FString& Id, const TCHAR* Extension, FFileHistory::FFileEntries& OutEntries, TArray<FString>& OutNotFollowed)
{
	int64 Size = 0;
	int64 PathLength = 0;
	for (const FString& Name : ListRecords(Id, Extension))
	{
		FString Path;
		FFileHistoryEntry Entry;
		if (!ReadRecord(RootFolder() / Id / Name, Path, Entry))
		{
			continue;
		}
		PathLength += Path.Len();
		if (Size < MaxLoadedTotal && PathLength < MaxLoadedPathLength && IsTrustworthy(Path, Entry))
		{
			Size += SizeInMemory(Entry);
			Entry.bFromEarlierRun = true;
			Entry.Order = OutEntries.Num();
			Entry.RealPath = KestrelNativeFile::ResolveLinks(FFileUtils::ToAbsolutePath(Path));
			OutEntries.Add(Path, MoveTemp(Entry));
		}
		else
		{
			OutNotFollowed.Add(Path);
		}
	}
}

void RemoveConversation(const FString& Id)
{
	const FString Folder = RootFolder() / Id;
	for (const TCHAR* Extension : AllExtensions)
	{
		for (const FString& Name : ListRecords(Id, Extension))
		{
			Files().DeleteFile(*(Folder / Name));
		}
	}
	Files().DeleteDirectory(*Folder); // stays when something else lies in it
}

int64 SizeOf(const FString& Id)
{
	int64 Size = 0;
	for (const TCHAR* Extension : AllExtensions)
	{
		for (const FString& Name : ListRecords(Id, Extension))
		{
			Size += FMath::Max<int64>(Files().FileSize(*(RootFolder() / Id / Name)), 0);
		}
	}
	return Size;
}

/** A name that sorts behind those of all records before it. */
FString MakeRecordName()
{
	static int32 NumMade = 0;
	return FString::Printf(TEXT("%020lld-%06d"), FDateTime::UtcNow().GetTicks(), NumMade++);
}
}

bool FKestrelHistoryStore::IsConversationId(const FString& Name)
{
	constexpr int32 NumDigits = 32;
	for (const TCHAR Character : Name)
	{
		if (!FChar::IsHexDigit(Character))
		{
			return false;
		}
	}
	return Name.Len() == NumDigits;
}

bool FKestrelHistoryStore::Write(const FString& Id, EKestrelHistorySide Side, const FString& FilePath,
	FFileHistoryEntry& Entry, const TArray<uint8>& PlainAscii)
{
	if (!IsConversationId(Id))
	{
		return true;
	}
	const FString Folder = HistoryStore::RootFolder() / Id;
	if (!HistoryStore::IsOurs(Folder) || !HistoryStore::Files().CreateDirectoryTree(*Folder))
	{
		return false;
	}
	KestrelNativeFile::RestrictToOwner(HistoryStore::RootFolder());
	// A record that is written again keeps its name, and with it its place in the order.
	const FString File = Entry.RecordFile.IsEmpty()
							 ? Folder / HistoryStore::MakeRecordName() + HistoryStore::ExtensionOf(Side)
							 : Entry.RecordFile;
	const FString Unfinished =
		FPaths::GetPath(File) / FPaths::GetBaseFilename(File) + HistoryStore::UnfinishedExtension;
	TArray<uint8> Utf8;
	if (Entry.Bytes.IsEmpty() && PlainAscii.IsEmpty())
	{
		Utf8 = HistoryStore::ToUtf8(Entry.Content);
	}
	const TArray<uint8>& TextBytes = PlainAscii.IsEmpty() ? Utf8 : PlainAscii;
	const TArray<uint8>& Stored = Entry.Bytes.IsEmpty() ? TextBytes : Entry.Bytes;
	if (!HistoryStore::Save(Unfinished, HistoryStore::Describe(FilePath, Entry), Stored))
	{
		HistoryStore::Files().DeleteFile(*Unfinished);
		return false;
	}
	KestrelNativeFile::RestrictToOwner(Unfinished);
	if (!HistoryStore::Files().MoveFile(*File, *Unfinished))
	{
		HistoryStore::Files().DeleteFile(*Unfinished);
		return false;
	}
	Entry.RecordFile = File;
	return true;
}

void FKestrelHistoryStore::WriteLeft(const FFileHistoryEntry& Entry)
{
	if (Entry.RecordFile.IsEmpty() || !Entry.Left.IsSet())
	{
		return;
	}
	const FString File = HistoryStore::GetLeftFile(Entry.RecordFile);
	FString Text = FString::Printf(TEXT("%d %u"), Entry.Left->bExists ? 1 : 0, Entry.Left->Checksum);
	for (const FString& Copy : Entry.KeptCopies)
	{
		Text += TEXT("\n") + Copy;
	}
	if (!FFileHelper::SaveStringToFile(Text, *File))
	{
		HistoryStore::Files().DeleteFile(*File);
		return;
	}
	KestrelNativeFile::RestrictToOwner(File);
}

void FKestrelHistoryStore::Remove(const FFileHistoryEntry& Entry)
{
	if (!Entry.RecordFile.IsEmpty())
	{
		HistoryStore::Files().DeleteFile(*HistoryStore::GetLeftFile(Entry.RecordFile));
		// The folder stays: it tells which conversation was the last, and that there is nothing to undo in it.
		HistoryStore::Files().DeleteFile(*Entry.RecordFile);
	}
}

TOptional<FKestrelHistoryStore::FConversation> FKestrelHistoryStore::LoadLast()
{
	TArray<FConversation> Conversations = HistoryStore::List();
	if (Conversations.IsEmpty())
	{
		return TOptional<FConversation>();
	}
	FConversation& Last = Conversations[0];
	TArray<FString> NotRedone;
	HistoryStore::LoadSide(Last.Id, HistoryStore::UndoExtension, Last.Undo, Last.NotFollowed);
	HistoryStore::LoadSide(Last.Id, HistoryStore::RedoExtension, Last.Redo, NotRedone);
	return MoveTemp(Last);
}

void FKestrelHistoryStore::RemoveOld(int32 Days, int64 MaxBytes)
{
	int64 Size = 0;
	bool bIsLast = true;
	for (const FConversation& Conversation : HistoryStore::List())
	{
		const int64 OwnSize = HistoryStore::SizeOf(Conversation.Id);
		Size += OwnSize;
		const bool bOld = (FDateTime::UtcNow() - Conversation.LastChange).GetTotalDays() > Days;
		const bool bEmpty = OwnSize == 0 && !bIsLast;
		bIsLast = false;
		const bool bTooMuch = Size > MaxBytes && Size > OwnSize;
		if (bOld || bEmpty || bTooMuch)
		{
			HistoryStore::RemoveConversation(Conversation.Id);
		}
	}
}

void FKestrelHistoryStore::RemoveAll()
{
	for (const FConversation& Conversation : HistoryStore::List())
	{
		HistoryStore::RemoveConversation(Conversation.Id);
	}
}
