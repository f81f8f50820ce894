#pragma once

#include "Agent/Files/PathReview.h"
#include "Agent/Files/TextFile.h"
#include "Agent/Tools/AssetView.h"
#include "CoreMinimal.h"
#include "Misc/DateTime.h"

/** How much may be read, and kept in texts, to look ahead. */
enum class EKestrelLookAhead : uint8
{
	/** For a list that somebody reads: large files are left alone, and so are all when it takes too long. */
	Limited,
	/** For a tool that runs at once, and reads what it needs. */
	Unlimited,
};

/** What tells whether a file is still as it was, without its text. */
struct FKestrelExpectedFile
{
	/** @param Now  of the same file, as it is on the disk */
	bool IsStateOf(const struct FKestrelFileState& Now) const;

	bool bExists = false;
	/** An ordinary file that could be read, within the limits. */
	bool bIsRead = false;
	int64 Size = 0;             // bytes, as stored
	FDateTime ModificationTime; // UTC; compared when the file is not read
	bool bIsOnDisk = true;      // false for what a tool before will leave behind
	uint32 Checksum = 0;        // CRC-32 of the bytes; of the text, when a tool before has yet to write it
	int32 TextLength = 0;       // compared with Checksum when that is of the text
};

/** A file as a tool will find it. */
struct FKestrelFileState : FKestrelExpectedFile
{
	/** The same without the text, to be kept as long as a plan waits. */
	FKestrelExpectedFile WithoutText() const;

	/** Left unread, as it is too large or there was no time left. */
	bool bIsBeyondLimits = false;
	/** Too large for any tool. */
	bool bIsTooLarge = false;
	FString Text; // when it is read
	KestrelTextFile::EContent Content = KestrelTextFile::EContent::Unreadable;
};

/**
 * The project's files and assets as a row of tools finds them: each sees what those before it would leave behind.
 * Nothing is written, and only ordinary files are opened. Where links lead is found out once for each path.
 */
class KESTREL_API FKestrelProjectView
{
public:
	/** Of what a tool may edit: it holds several copies, and the engine's strings end at 2^31 characters. */
	static constexpr int64 MaxTextLength = 256 * 1024 * 1024;

	/** Of what is kept to be shown: the list waits in memory and is made on the game thread. */
	static constexpr int64 MaxShownLength = 8 * 1024 * 1024;

	/** @param Finder  as FKestrelAssetView takes it */
	explicit FKestrelProjectView(EKestrelLookAhead InLookAhead,
		const TSharedRef<FKestrelAssetFinder>& Finder = MakeShared<FKestrelAssetFinder>());
	UE_NONCOPYABLE(FKestrelProjectView)

	/**
	 * @param FullPath  absolute
	 * @return the state, for as long as nothing else is looked at or left behind
	 */
	const FKestrelFileState& Look(const FString& FullPath);
	/** The text of a file that was looked at, and is about to be left behind with another: the view keeps none. */
	FString TakeText(const FString& FullPath);
	bool Exists(const FString& FullPath);
	/** Whether the path is a folder, or would be one that a tool has put a file into. */
	bool IsFolder(const FString& FullPath);
	/** False for what must not be opened: pipes, devices. */
	bool IsOrdinaryFile(const FString& FullPath);
	/** What a tool would leave behind, for those after it. */
	void Write(const FString& FullPath, const FString& Text);
	/** The same for a text that is beyond the limits. */
	void WriteUnseen(const FString& FullPath);
	void Delete(const FString& FullPath);

	FKestrelPathReview Review(const FString& FullPath, EKestrelReviewFor Purpose = EKestrelReviewFor::Change);
	/** How long a text may be, one out of the answer or one that a change would lead to, to be kept and shown. */
	int64 GetRoom() const;
	/** Whether somebody will read what else there is to say of a tool, and the time to look at the project is not over.
	 */
	bool HasTimeForNotes() const;
	/** @return false when there is not as much */
	bool TakeRoomFor(int64 NumCharacters);
	/** And characters kept. */
	int64 GetNumBytesRead() const { return NumBytesRead; }
	FKestrelAssetView& GetAssets() { return Assets; }

private:
	/** A file under its real path, which tells apart what only differs in case. */
	struct FFile
	{
		FString RealPath;
		FKestrelFileState State;
	};
	/** A path as it was given. */
	struct FPath
	{
		FString FullPath;
		FString RealPath;
	};

	const FString& Resolve(const FString& FullPath);
	/** Under which a file is known: two that cannot be resolved are not the same one. */
	const FString& GetKey(const FString& FullPath);
	/** Of a file that a tool would write. */
	void NoteNewFolders(const FString& FullPath);
	/** Where the file or link itself lies: with the links of its folders resolved, and not its own. */
	static FString GetPlace(const FString& FullPath);
	FFile* Find(const FString& RealPath);
	void Set(const FString& FullPath, const FKestrelFileState& State);
	FKestrelFileState Load(const FString& FullPath);

	bool IsTimeOver() const;

	const EKestrelLookAhead LookAhead;
	const double StartTime; // seconds of FPlatformTime
	int64 NumBytesRead = 0; // and characters kept
	// By path: in one entry are those that only differ in case.
	TMap<FString, TArray<FFile>> Files;
	TMap<FString, TArray<FPath>> Paths;
	/** Where links were that a tool would have deleted: a path that ends there leads nowhere else any more. */
	TArray<FString> DeletedLinks;
	TMap<FString, TArray<FString>> NewFolders; // that tools would make, with links resolved
	const FKestrelPathReviewer Reviewer;
	FKestrelAssetView Assets;
};
