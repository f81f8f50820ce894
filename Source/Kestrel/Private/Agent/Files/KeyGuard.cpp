#include "Agent/Files/KeyGuard.h"

#include "Agent/Files/NativeFile.h"
#include "HAL/FileManager.h"
#include "Kestrel.h"
#include "KestrelSettings.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
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

/** The value of a line like "SandboxApiKey=…"; a line that is commented out may hold a key that still works. */
FString ReadKey(const FString& Line)
{
	FString Name;
	FString Value;
	if (!Line.Split(TEXT("="), &Name, &Value) ||
		!Name.TrimStartAndEnd().EndsWith(TEXT("ApiKey"), ESearchCase::IgnoreCase))
	{
		return FString();
	}
	Value.TrimStartAndEndInline();
	if (Value.Len() > 1 && Value.StartsWith(TEXT("\"")) && Value.EndsWith(TEXT("\"")))
	{
		Value.MidInline(1, Value.Len() - 2);
	}
	return Value;
}

/** The keys that a project's file of stages has, or had at any time since the editor started. */
class FStageKeys
{
public:
	const TArray<FString>& Get()
	{
		const FDateTime Time = IFileManager::Get().GetTimeStamp(*File);
		const int64 Size = IFileManager::Get().FileSize(*File);
		if (Time != TimeRead || Size != SizeRead)
		{
			TimeRead = Time;
			SizeRead = Size;
			Read();
		}
		return Keys;
	}

private:
	void Read()
	{
		constexpr int64 MaxBytes = 1024 * 1024; // nobody has that many stages
		constexpr int32 MaxKeys = 16;           // each is looked for in every text that is sent
		TArray<FString> Lines;
		if (SizeRead > MaxBytes || !KestrelNativeFile::IsRegularFile(File) ||
			!FFileHelper::LoadFileToStringArray(Lines, *File))
		{
			return;
		}
		for (const FString& Line : Lines)
		{
			const FString Key = ReadKey(Line);
			const bool bIsKnown = Keys.ContainsByPredicate([&Key](const FString& Known) { return Known.Equals(Key); });
			if (!Key.IsEmpty() && !bIsKnown && Keys.Num() < MaxKeys)
			{
				Keys.Add(Key);
			}
		}
	}

	const FString File = FPaths::ConvertRelativePathToFull(FPaths::ProjectConfigDir() / TEXT("DefaultPlugin.ini"));
	TArray<FString> Keys;
	FDateTime TimeRead;
	int64 SizeRead = -1;
};

FString Resolve(const FString& Path)
{
	return KestrelNativeFile::ResolveLinks(FPaths::ConvertRelativePathToFull(Path));
}
}

FString KestrelKeyGuard::Hide(FString Hidden)
{
	KeyGuard::HideIn(Hidden, GetDefault<UKestrelSettings>()->ApiKey);
	KeyGuard::HideIn(Hidden, FKestrelModule::GetApiKey());
	static KeyGuard::FStageKeys StageKeys;
	for (const FString& Key : StageKeys.Get())
	{
		KeyGuard::HideIn(Hidden, Key);
	}
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
