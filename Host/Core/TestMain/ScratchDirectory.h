#pragma once

#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"

#include <filesystem>

/** A folder of a test's own, removed with everything in it. Its name has a space and a letter outside ASCII. */
class FScratchDirectory
{
public:
	FScratchDirectory()
	{
		const FString Root(std::filesystem::temp_directory_path().c_str());
		Path = Root / (TEXT("host test \u00e9 ") + FGuid::NewGuid().ToString());
		FPlatformFileManager::Get().GetPlatformFile().CreateDirectoryTree(*Path);
	}
	~FScratchDirectory() { FPlatformFileManager::Get().GetPlatformFile().DeleteDirectoryRecursively(*Path); }
	UE_NONCOPYABLE(FScratchDirectory)

	FString Path; // absolute, without a trailing slash
};
