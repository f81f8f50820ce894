#include "HAL/PlatformProcess.h"

#include "Containers/StringConv.h"
#include "HAL/PlatformMisc.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace PlatformProcess
{
FString FindBaseDir()
{
	std::error_code Error;
	const std::filesystem::path Executable = std::filesystem::read_symlink("/proc/self/exe", Error);
	return FString(Executable.parent_path().c_str()) + TEXT("/");
}
}

const TCHAR* FPlatformProcess::BaseDir()
{
	static const FString Dir = PlatformProcess::FindBaseDir();
	return *Dir;
}

void FPlatformProcess::Sleep(float Seconds)
{
	std::this_thread::sleep_for(std::chrono::duration<float>(Seconds));
}

FString FPlatformMisc::GetEnvironmentVariable(const TCHAR* VariableName)
{
	const char* Value = std::getenv(TCHAR_TO_UTF8(VariableName));
	return Value ? FString(Value) : FString();
}

namespace PlatformProcess
{
/** The shell parts with the program, so that nobody waits for its end. @return whether there is such a program */
static bool HandToDesktop(const TCHAR* What)
{
	const std::string Utf8(TCHAR_TO_UTF8(What));
	const char* const Arguments[] = { "sh", "-c",
		"command -v xdg-open > /dev/null && { xdg-open \"$0\" > /dev/null 2>&1 & }", Utf8.c_str(), nullptr };
	pid_t Shell = 0;
	int Status = 1;
	const bool bStarted =
		posix_spawnp(&Shell, "sh", nullptr, nullptr, const_cast<char* const*>(Arguments), environ) == 0;
	return bStarted && waitpid(Shell, &Status, 0) == Shell && WIFEXITED(Status) && WEXITSTATUS(Status) == 0;
}
}

void FPlatformProcess::LaunchURL(const TCHAR* URL, const TCHAR* Parms, FString* Error)
{
	if (!PlatformProcess::HandToDesktop(URL) && Error)
	{
		*Error = TEXT("This desktop has no program that opens addresses.");
	}
}

bool FPlatformProcess::LaunchFileInDefaultExternalApplication(const TCHAR* FileName)
{
	return PlatformProcess::HandToDesktop(FileName);
}
