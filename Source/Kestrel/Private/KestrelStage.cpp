#include "KestrelStage.h"

#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/ConfigCacheIni.h"

namespace KestrelStage
{
const TCHAR* const Section = TEXT("Kestrel");

/** A stage and the keys that describe it. */
struct FStageKeys
{
	const TCHAR* Stage;
	const TCHAR* ApiUrl;
	const TCHAR* ApiKey;
};
const FStageKeys Stages[] = {
	{ TEXT("Dev"), TEXT("DevApiUrl"), TEXT("DevApiKey") },
	{ TEXT("Sandbox"), TEXT("SandboxApiUrl"), TEXT("SandboxApiKey") },
	{ TEXT("Sandbox2"), TEXT("Sandbox2ApiUrl"), TEXT("Sandbox2ApiKey") },
};
}

FKestrelStage FKestrelStage::Read(const FString& IniPath)
{
	FKestrelStage Result;
	if (!FPlatformFileManager::Get().GetPlatformFile().FileExists(*IniPath))
	{
		return Result;
	}
	FConfigFile Ini;
	Ini.Read(IniPath);
	FString Name;
	Ini.GetString(KestrelStage::Section, TEXT("Stage"), Name);
	for (const KestrelStage::FStageKeys& Keys : KestrelStage::Stages)
	{
		if (Name.Equals(Keys.Stage, ESearchCase::IgnoreCase))
		{
			Ini.GetString(KestrelStage::Section, Keys.ApiUrl, Result.ApiUrl);
			Ini.GetString(KestrelStage::Section, Keys.ApiKey, Result.ApiKey);
			break;
		}
	}
	return Result;
}
