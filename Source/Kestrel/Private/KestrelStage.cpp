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

/**
 * Whether a text is a host, a port and a path, and leads where it says. What stands before an "@" is a user's name and
 * no host; a "?", "#" or backslash ends the host early, or not, depending on who reads it; other letters look alike.
 */
bool IsPlainAddress(const FString& Url)
{
	const FString Signs = TEXT("-._~:/[]+,=");
	for (const TCHAR C : Url)
	{
		int32 Index = 0;
		const bool bIsAscii = C > 0 && C < 0x80;
		if (!bIsAscii || !(FChar::IsAlnum(C) || Signs.FindChar(C, Index)))
		{
			return false;
		}
	}
	return !Url.StartsWith(TEXT("/")) && !Url.StartsWith(TEXT(":")) && !Url.Contains(TEXT("//"));
}
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
	if (!KestrelStage::IsPlainAddress(Result.ApiUrl))
	{
		Result = FKestrelStage();
		Result.bIsRefused = true;
	}
	return Result;
}
