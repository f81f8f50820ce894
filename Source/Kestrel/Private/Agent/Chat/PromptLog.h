#pragma once

#include "CoreMinimal.h"

/** What was said, for the user to read again: a file a day, in Plugins/kestrel-unreal/Logs of the project. */
class KESTREL_API FKestrelPromptLog
{
public:
	/** Where the project's logs are; absolute. */
	static FString GetUsualFolder();
	/** Uses a folder, which is made if need be. */
	void Open(const FString& InFolder);

	void EnsureFolderExists() const;
	/** Full paths of the ".log" files in the folder. */
	TArray<FString> GetAllFiles() const;
	void DeleteAll() const;
	/** Deletes the logs that were last written more than Days days ago. */
	void DeleteOld(int32 Days) const;
	static bool IsOlderThanDays(const FString& File, int32 Days);
	/** Today's log, by local time. */
	FString GetFilePath() const;
	/** Appends an entry; a file that cannot be written is left alone in silence, since the chat must go on. */
	void Append(const FString& Text, const FString& FilePath, bool bWithTimestamp) const;

private:
	/** False when a link leads to the folder: what else lies there is somebody else's. */
	bool IsOurs() const;
	/** The files that may be deleted. */
	TArray<FString> GetOwnFiles() const;

	FString Folder; // absolute
};
