#include "Agent/Files/KeyGuard.h"

#include "Agent/Files/NativeFile.h"
#include "Kestrel.h"
#include "KestrelSettings.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"

namespace KeyGuard
{
const TCHAR* const Placeholder = TEXT("[API key]");
/** What is shorter is no key, and would be found in words. */
constexpr int32 MinLength = 8;
/** A line of a settings file that a result quotes: each of the two writes an escape of its own. */
constexpr int32 MaxQuotations = 2;

FString Quote(const FString& Text)
{
	return Text.Replace(TEXT("\\"), TEXT("\\\\")).Replace(TEXT("\""), TEXT("\\\""));
}

void HideIn(FString& Text, const FString& Key, int32 NumQuotations = MaxQuotations)
{
	if (Key.Len() < MinLength)
	{
		return;
	}
	const FString Quoted = Quote(Key);
	if (NumQuotations > 0 && !Quoted.Equals(Key))
	{
		HideIn(Text, Quoted, NumQuotations - 1);
	}
	Text.ReplaceInline(*Key, Placeholder, ESearchCase::CaseSensitive);
}

FString Resolve(const FString& Path)
{
	return KestrelNativeFile::ResolveLinks(FPaths::ConvertRelativePathToFull(Path));
}
}

FString KestrelKeyGuard::Hide(const FString& Text)
{
	FString Hidden = Text;
	KeyGuard::HideIn(Hidden, GetDefault<UKestrelSettings>()->ApiKey);
	KeyGuard::HideIn(Hidden, FKestrelModule::GetApiKey());
	return Hidden;
}

bool KestrelKeyGuard::IsKeptIn(const FString& RealPath)
{
	const FString Settings = KeyGuard::Resolve(UKestrelSettings::StaticClass()->GetConfigName());
	if (RealPath.Equals(Settings, ESearchCase::IgnoreCase))
	{
		return true;
	}
	const bool bIsNamedLikeIt =
		FPaths::GetCleanFilename(RealPath).Equals(FPaths::GetCleanFilename(Settings), ESearchCase::IgnoreCase);
	return bIsNamedLikeIt && FPaths::IsUnderDirectory(RealPath, KeyGuard::Resolve(FPaths::ProjectSavedDir()));
}
