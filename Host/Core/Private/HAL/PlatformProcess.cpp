#include "HAL/PlatformProcess.h"

#include "Containers/StringConv.h"
#include "HAL/PlatformMisc.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
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
