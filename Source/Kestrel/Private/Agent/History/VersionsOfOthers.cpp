#include "Agent/History/VersionsOfOthers.h"

#include "Agent/Files/FileRescue.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/NativeFile.h"
#include "Misc/Crc.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

FKestrelFileMark KestrelVersionsOfOthers::MarkOf(const FString& FullPath)
{
	FKestrelFileMark Mark;
	Mark.bExists = FPaths::FileExists(FullPath);
	TArray<uint8> Bytes;
	if (Mark.bExists && KestrelNativeFile::IsRegularFile(FullPath) && FFileHelper::LoadFileToArray(Bytes, *FullPath))
	{
		Mark.Checksum = FCrc::MemCrc32(Bytes.GetData(), Bytes.Num());
	}
	return Mark;
}

bool KestrelVersionsOfOthers::IsChangedSince(const FString& FullPath, const TOptional<FKestrelFileMark>& Left)
{
	return Left.IsSet() && !MarkOf(FullPath).IsSameAs(Left.GetValue());
}

bool KestrelVersionsOfOthers::IsLinkGone(const FFileHistoryEntry& Entry, const FString& EntryPath)
{
	return !Entry.LinkTarget.IsEmpty() && KestrelNativeFile::ReadLink(FFileUtils::ToAbsolutePath(EntryPath)).IsEmpty();
}

TOptional<FKestrelFileMark>* KestrelVersionsOfOthers::FindLeft(
	FFileHistoryEntry& Entry, const FString& EntryPath, const FString& FilePath, const FString& RealPath)
{
	if (EntryPath.Equals(FilePath))
	{
		return &Entry.Left;
	}
	if (RealPath.IsEmpty() || !Entry.RealPath.Equals(RealPath))
	{
		return nullptr;
	}
	return IsLinkGone(Entry, EntryPath) ? &Entry.LeftBehindLink : &Entry.Left;
}

bool KestrelVersionsOfOthers::KeepCopy(const FString& FullPath, TArray<FString>& OutCopies)
{
	if (!FPaths::FileExists(FullPath))
	{
		return true;
	}
	const FString Copy = FFileRescue(FullPath).Keep();
	if (Copy.IsEmpty())
	{
		return false;
	}
	OutCopies.Add(Copy);
	return true;
}

bool KestrelVersionsOfOthers::KeepIfChanged(
	const FString& FullPath, const TOptional<FKestrelFileMark>& Left, const FFileHistoryEntry& Entry)
{
	TArray<FString> Copies;
	// After a restart without a mark, the editor has ended in the middle of the change.
	const bool bChanged = Left.IsSet() ? IsChangedSince(FullPath, Left) : Entry.bFromEarlierRun;
	if (bChanged && !KeepCopy(FullPath, Copies))
	{
		return false;
	}
	for (const FString& Copy : Copies)
	{
		FFileHistory::Get().OnTextKept.ExecuteIfBound(FullPath, Copy);
	}
	return true;
}

void KestrelVersionsOfOthers::NameKeptCopies(const FString& FullPath, const FFileHistoryEntry& Entry)
{
	for (const FString& Copy : Entry.KeptCopies)
	{
		FFileHistory::Get().OnTextKept.ExecuteIfBound(FullPath, Copy);
	}
}

bool KestrelVersionsOfOthers::KeepBeforeStep(
	const FString& FullPath, const FString& LinkNow, const FFileHistoryEntry& Entry)
{
	NameKeptCopies(FullPath, Entry);
	const bool bReplacesLink = !LinkNow.IsEmpty() && !LinkNow.Equals(Entry.LinkTarget);
	return bReplacesLink || KeepIfChanged(FullPath, Entry.Left, Entry);
}
