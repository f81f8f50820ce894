#include "Agent/Approval/ProjectDefaults.h"

#include "Agent/Files/NativeFile.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

bool KestrelProjectDefaults::SetUserSetting(const TCHAR* Name)
{
	TArray<FString> Files;
	for (const FString& Folder : { FPaths::ProjectConfigDir(), FPaths::ProjectPluginsDir() })
	{
		constexpr bool bFiles = true;
		constexpr bool bFolders = false;
		constexpr bool bClear = false;
		IFileManager::Get().FindFilesRecursive(
			Files, *Folder, TEXT("*EditorPerUserSettings.ini"), bFiles, bFolders, bClear);
	}
	return Files.ContainsByPredicate([Name](const FString& File) {
		// What cannot be looked at may say anything; to open a pipe would wait for somebody to write.
		FString Text;
		return !KestrelNativeFile::IsRegularFile(File) || !FFileHelper::LoadFileToString(Text, *File) ||
			   Text.Contains(Name);
	});
}
