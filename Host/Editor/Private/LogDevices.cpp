#include "LogDevices.h"

#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/DateTime.h"
#include "Misc/Paths.h"
#include "Misc/TerminalText.h"

#include <cstdio>

namespace LogDevices
{
FString FormatLine(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category)
{
	const FString Level = Verbosity == ELogVerbosity::Log ? FString() : FString(ToString(Verbosity)) + TEXT(": ");
	return Category.ToString() + TEXT(": ") + Level + Text + LINE_TERMINATOR;
}
}

FOutputDeviceFile::FOutputDeviceFile(const FString& Filename)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	Files.CreateDirectoryTree(*FPaths::GetPath(Filename));
	File = TUniquePtr<IFileHandle>(Files.OpenWrite(*Filename));
}

FOutputDeviceFile::~FOutputDeviceFile() = default;

void FOutputDeviceFile::Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category)
{
	if (!File || NumBytes > MaxBytes)
	{
		return;
	}
	const FString Line =
		FDateTime::UtcNow().ToString(TEXT("[%Y.%m.%d-%H.%M.%S:%s] ")) + LogDevices::FormatLine(V, Verbosity, Category);
	const FTCHARToUTF8 Utf8(*Line, Line.Len());
	File->Write(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
	NumBytes += Utf8.Length();
}

void FOutputDeviceFile::Flush()
{
	if (File)
	{
		File->Flush();
	}
}

void FOutputDeviceStdErr::Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category)
{
	if (Verbosity <= MostVerbose)
	{
		std::fputs(TCHAR_TO_UTF8(*MakeTerminalText(LogDevices::FormatLine(V, Verbosity, Category))), stderr);
	}
}
