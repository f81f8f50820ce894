#pragma once

#include "CoreMinimal.h"

/** What is to be done with a file. */
enum class EKestrelReviewFor : uint8
{
	/** Leaves out what only a change needs: CautionsOfChange stay empty, and bIsOfProject is not told. */
	Reading,
	Change,
};

/** What a person should know about the place of a file before a tool touches it. */
struct KESTREL_API FKestrelPathReview
{
	/** @param FullPath  absolute; need not exist */
	static FKestrelPathReview Of(const FString& FullPath);

	/**
	 * Whether a file is one that whoever made the project could have put there as well: inside the project, and neither
	 * of its version control nor of this plugin.
	 */
	bool bIsOfProject = false;
	/** The place itself, with links resolved; empty when they cannot be. */
	FString RealPath;
	/** The path as people read it: below the project directory, or in full. */
	FString ShownPath;
	/** The place itself as people read it: below the project directory, or in full; empty when RealPath is. */
	FString RealShownPath;
	/** The real path, when a link makes it another place than the shown one; else empty. */
	FString LinkTarget;
	/** Why to look twice, whatever is done with the file; empty within the project. */
	TArray<FText> Cautions;
	/** Why to look twice before the file is changed. */
	TArray<FText> CautionsOfChange;
};

/** This plugin's folders, with links resolved: each kind once, when it is asked for first. */
class FKestrelOwnFolders
{
public:
	/** @param InRealProjectDir  with links resolved */
	explicit FKestrelOwnFolders(const FString& InRealProjectDir)
		: RealProjectDir(InRealProjectDir)
	{
	}
	UE_NONCOPYABLE(FKestrelOwnFolders)

	/** Its folder in the project, the one that it was loaded from, and what it saves. */
	const TArray<FString>& GetAll() const;
	/** What was typed, and what files held before. */
	const TArray<FString>& GetRecords() const;

private:
	const FString RealProjectDir;
	mutable TOptional<TArray<FString>> All;
	mutable TOptional<TArray<FString>> Records;
};

/** Reviews a row of paths, on one thread. Where the project and this plugin lie is found out once. */
class FKestrelPathReviewer
{
public:
	FKestrelPathReviewer();
	UE_NONCOPYABLE(FKestrelPathReviewer)

	/** @param GivenPath  absolute. @param RealPath  the same place with links resolved
	 * (KestrelNativeFile::ResolveLinks) */
	FKestrelPathReview Review(
		const FString& GivenPath, const FString& RealPath, EKestrelReviewFor Purpose = EKestrelReviewFor::Change) const;

private:
	const FString ProjectDir;
	const FString RealProjectDir;
	const FKestrelOwnFolders OwnFolders;
};
