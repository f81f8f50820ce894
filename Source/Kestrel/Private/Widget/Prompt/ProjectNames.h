#pragma once

#include "CoreMinimal.h"
#include "Templates/UniquePtr.h"
#include "Widget/Prompt/KestrelFuzzyMatch.h"

/**
 * The names that a prompt can be completed with: the files that the assistant's file tree has, as paths from the
 * project's folder, the assets of the folders in it, as package names ("/Game/Doors/BP_Gate"), and what the project's
 * headers declare, behind the header and its line ("Source/Moor/Walker.h:5/AWalker").
 *
 * The folders are read a few at a time, so that the editor does not stand still; names can be found before all are
 * known. Names that would not look like what they are, with line breaks for instance, are left out.
 */
class KESTREL_API FKestrelProjectNames
{
public:
	FKestrelProjectNames();
	~FKestrelProjectNames();
	UE_NONCOPYABLE(FKestrelProjectNames)

	/** Begins to read the project's folders, unless that was done less than a minute ago. */
	void Refresh();
	/** Goes on reading for about that long. @return whether there is more to read */
	bool ReadOn(double Seconds);

	FKestrelFuzzyIndex& GetIndex() { return Index; }
	/** What a prompt says for a name: for something of a header, what it is and where: "AWalker
	 * (Source/Moor/Walker.h:5)". */
	FString GetInsertion(const FString& Name) const;

private:
	struct FOpenFolder;

	bool IsReading() const { return !OpenFolders.IsEmpty() || !UnreadHeaders.IsEmpty(); }
	void ReadNextHeader();
	void ReadNextFolder();
	void Enter(TUniquePtr<FOpenFolder> Folder);
	void AddAssets(const FString& FolderPath);
	/** @return false for one that is left out */
	bool Add(const FString& Name);

	FKestrelFuzzyIndex Index;
	TArray<TUniquePtr<FOpenFolder>> OpenFolders; // from the project's folder down to the one that is being read
	TArray<FString> UnreadHeaders;               // from the project's folder; they come behind all folders
	TSet<FString> Symbols;                       // the names that are no files and assets
	TArray<FString> Extensions;
	TArray<FString> ExcludedDirs;
	double LastRead = 0.0; // seconds of FPlatformTime; 0: never
};
