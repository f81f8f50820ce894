#include "Agent/Project/KestrelPythonUtils.h"

#include "Agent/Files/FileUtils.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "IPythonScriptPlugin.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Misc/Timespan.h"
#include "PythonScriptTypes.h"

namespace KestrelPythonUtils
{
// Characters. A service has no use for more, and a request of that size would only be refused.
constexpr int32 MaxOutputLength = 1000000;

/** The path as the inside of a Python string. */
FString EscapeForPython(const FString& Path)
{
	return Path.Replace(TEXT("\\"), TEXT("\\\\")).Replace(TEXT("'"), TEXT("\\'"));
}

/**
 * What runs before the script. The header opens the log with the platform's code page, which lacks most characters on
 * Windows; so 'open' is exchanged until the log is open. An exception ends a script before its footer, and the footer
 * itself loses the editor's redirection of the output to its log. So the streams are kept aside as well.
 */
FString KeepStreams(const FString& LogPath)
{
	return FString::Printf(
		TEXT("def kestrel_keep(path):\n"
			 "    import builtins, sys\n"
			 "    real_open = builtins.open\n"
			 "    def open_log(file, *arguments, **options):\n"
			 "        if file != path:\n"
			 "            return real_open(file, *arguments, **options)\n"
			 "        builtins.open = real_open\n"
			 "        return real_open(file, *arguments, encoding='utf-8', errors='backslashreplace')\n"
			 "    builtins.open = open_log\n"
			 "    sys.kestrel_kept = (sys.stdout, sys.stderr, real_open, open_log)\n"
			 "kestrel_keep('%s')\n"
			 "del kestrel_keep\n"),
		*EscapeForPython(LogPath));
}

/** The script with its output kept in a file. */
FString Wrap(const FString& ScriptContent, const FString& LogPath)
{
	return FString::Printf(
			   TEXT("import sys\nsys.stdout = open('%s', 'w')\nsys.stderr = sys.stdout\n"), *EscapeForPython(LogPath)) +
		   ScriptContent + TEXT("\n\nsys.stdout.close()\nsys.stdout = sys.__stdout__\nsys.stderr = sys.__stderr__\n");
}

/** What runs after the script, whatever the script did to the streams. */
FString RestoreStreams(const FString& LogPath)
{
	return FString::Printf(TEXT("import builtins, sys\n"
								"if getattr(sys.stdout, 'name', None) == '%s':\n"
								"    sys.stdout.close()\n"
								"sys.stdout, sys.stderr = sys.kestrel_kept[:2]\n"
								"if builtins.open is sys.kestrel_kept[3]:\n" // the script was not even read
								"    builtins.open = sys.kestrel_kept[2]\n"
								"del sys.kestrel_kept\n"),
		*EscapeForPython(LogPath));
}

FString MakeScriptName(const FDateTime& Time)
{
	return FString::Printf(TEXT("generated_script_%s.py"), *Time.ToString(TEXT("%Y%m%d_%H%M%S")));
}

/**
 * Where the script goes, relative to the project directory: under the name of this second, or of the next one that is
 * free. A file of that name is somebody's own, or the script of another editor on this project.
 */
FString MakeScriptPath()
{
	const FString Folder = FPaths::Combine(TEXT("Plugins"), TEXT("kestrel-unreal"), TEXT("Python"));
	FDateTime Time = FDateTime::Now();
	while (FPaths::FileExists(FFileUtils::ToAbsolutePath(Folder / MakeScriptName(Time))))
	{
		Time = Time + FTimespan::FromSeconds(1.0);
	}
	return Folder / MakeScriptName(Time);
}

/** @return the result text of the file's creation */
FString WriteScript(const FString& ScriptPath, const FString& Script)
{
	const FString Result = FFileUtils::CreateNewFileWithContent(ScriptPath, Script);
	const FString FullPath = FFileUtils::ToAbsolutePath(ScriptPath);
	// A text beyond ASCII has become UTF-16 now, which Python itself does not read.
	const bool bWritten =
		FFileHelper::SaveStringToFile(Script, *FullPath, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
	return bWritten || FFileUtils::IsError(Result) ? Result
												   : FFileUtils::MakeError(TEXT("Failed to create file"), FullPath);
}

FString MakeLogPath()
{
	// Absolute: a relative one would depend on Python's current folder.
	return FPaths::ConvertRelativePathToFull(
		FPaths::CreateTempFilename(*FPaths::ProjectLogDir(), TEXT("PythonScriptLog_"), TEXT(".log")));
}

/** Runs a script file with its output kept in a log. @return whether it ended without an error */
bool ExecuteFile(IPythonScriptPlugin& Python, const FString& FullPath, const FString& LogPath, FString& OutResult)
{
	Python.ExecPythonCommand(*KeepStreams(LogPath));
	FPythonCommandEx Command;
	// Without quotes, a path with spaces would end at the first.
	Command.Command = TEXT("\"") + FullPath + TEXT("\"");
	const bool bSuccess = Python.ExecPythonCommandEx(Command);
	OutResult = Command.CommandResult;
	Python.ExecPythonCommand(*RestoreStreams(LogPath));
	return bSuccess;
}

FString LeaveOutMiddle(const FString& Output)
{
	const int32 Surplus = Output.Len() - MaxOutputLength;
	if (Surplus <= 0)
	{
		return Output;
	}
	return FString::Printf(TEXT("%s\n[... %d characters left out ...]\n%s"), *Output.Left(MaxOutputLength / 2), Surplus,
		*Output.Right(MaxOutputLength / 2));
}

/** What the script has printed; the file is removed. */
FString TakeOutput(const FString& LogPath)
{
	FString Output;
	if (!FFileHelper::LoadFileToString(Output, *LogPath))
	{
		return TEXT("Error: Failed to read Python script log file.");
	}
	FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*LogPath);
	return LeaveOutMiddle(Output);
}

/** A script's traceback is not among what it printed: the editor reports it beside. */
FString WithCommandResult(const FString& Output, const FString& CommandResult)
{
	if (CommandResult.IsEmpty() || Output.Contains(CommandResult, ESearchCase::CaseSensitive))
	{
		return Output;
	}
	return Output.IsEmpty() || Output.EndsWith(TEXT("\n")) ? Output + CommandResult
														   : Output + TEXT("\n") + CommandResult;
}
}

FString FKestrelPythonUtils::GenerateScriptName()
{
	return KestrelPythonUtils::MakeScriptName(FDateTime::Now());
}

FPythonScriptResult FKestrelPythonUtils::CreateAndExecutePythonScript(const FString& ScriptContent)
{
	using namespace KestrelPythonUtils;
	const FString ScriptPath = MakeScriptPath();
	const FString LogPath = MakeLogPath();
	const FString WriteResult = WriteScript(ScriptPath, Wrap(ScriptContent, LogPath));
	if (FFileUtils::IsError(WriteResult))
	{
		return FPythonScriptResult::Failure(WriteResult, FString());
	}
	IPythonScriptPlugin* Python = IPythonScriptPlugin::Get();
	FString CommandResult = TEXT("Python is not available in this editor: is the PythonScriptPlugin enabled?");
	const bool bSuccess = Python && Python->IsPythonAvailable() &&
						  ExecuteFile(*Python, FFileUtils::ToAbsolutePath(ScriptPath), LogPath, CommandResult);
	FFileUtils::DeleteFile(ScriptPath);
	const FString Output = TakeOutput(LogPath);
	if (bSuccess)
	{
		return FPythonScriptResult::Success(FString::Printf(TEXT("Python script completed: \n%s"), *Output));
	}
	return FPythonScriptResult::Failure(
		TEXT("Error: Python script execution failed."), WithCommandResult(Output, CommandResult));
}
