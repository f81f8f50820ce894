#pragma once

#include "Agent/TextFile.h"
#include "CoreMinimal.h"
#include "Misc/DateTime.h"

/** How much of the files may be read to look ahead. */
enum class EKestrelLookAhead : uint8
{
	/** For a list that somebody reads: large files are left alone, and so are all when it takes too long. */
	Limited,
	/** For a tool that runs at once, and reads what it needs. */
	Unlimited,
};

/** A file as a tool will find it. */
struct FKestrelFileState
{
	/** What another state of the same file would differ in. */
	bool IsSameAs(const FKestrelFileState& Other) const;

	bool bExists = false;
	/** An ordinary file that could be read, within the limits. */
	bool bIsRead = false;
	/** Left unread, as it is too large or there was no time left. */
	bool bIsBeyondLimits = false;
	FString Text; // when it is read
	KestrelTextFile::EContent Content = KestrelTextFile::EContent::Unreadable;
	int64 Size = 0;             // bytes, as stored
	FDateTime ModificationTime; // UTC; compared when the file is not read
	uint32 Checksum = 0;        // CRC-32 of the bytes; of the text, when a tool before has yet to write it
	bool bIsOnDisk = true;      // false for what a tool before will leave behind
};

/**
 * The project's files as a row of tools finds them: each sees what those before it would leave behind. Nothing is
 * written, and only ordinary files are opened.
 */
class FKestrelProjectView
{
public:
	explicit FKestrelProjectView(EKestrelLookAhead InLookAhead);
	UE_NONCOPYABLE(FKestrelProjectView)

	/** @param FullPath  absolute */
	const FKestrelFileState& Look(const FString& FullPath);
	bool Exists(const FString& FullPath) const;
	/** False for what must not be opened: pipes, devices. */
	bool IsOrdinaryFile(const FString& FullPath) const;
	/** What a tool would leave behind, for those after it. */
	void Write(const FString& FullPath, const FString& Text);
	void Delete(const FString& FullPath);

private:
	/** A file under its real path, which tells apart what only differs in case. */
	struct FFile
	{
		FString RealPath;
		FKestrelFileState State;
	};

	const FFile* Find(const FString& RealPath) const;
	void Set(const FString& FullPath, const FKestrelFileState& State);
	FKestrelFileState Load(const FString& FullPath);
	bool IsBeyondLimits(int64 Size) const;

	const EKestrelLookAhead LookAhead;
	const double StartTime; // seconds of FPlatformTime
	int64 NumBytesRead = 0;
	TArray<FFile> Files; // few: one a tool
};
