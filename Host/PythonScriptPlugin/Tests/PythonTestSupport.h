#pragma once

#include "CoreMinimal.h"
#include "IPythonScriptPlugin.h"
#include "Misc/FileHelper.h"
#include "Misc/OutputDevice.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Misc/Paths.h"
#include "ScratchDirectory.h"

#include <gtest/gtest.h>
#include <string>

/** Runs commands through the plugin, and keeps what reaches the log meanwhile. */
class FPythonTest : public testing::Test, private FOutputDevice
{
protected:
	FPythonTest()
	{
		FPaths::SetProjectFilePath(GetProjectDir() / TEXT("Game.uproject"));
		GLog->AddOutputDevice(this);
	}
	~FPythonTest() override { GLog->RemoveOutputDevice(this); }

	static std::string ToUtf8(const FString& Text) { return TCHAR_TO_UTF8(*Text); }

	/** One for all tests, since the interpreter is started once: its Content/Python holds modules. */
	static const FString& GetProjectDir()
	{
		static const FScratchDirectory Project;
		return Project.Path;
	}

	/** Runs a literal script, or another kind of command. */
	bool Run(const FString& Text, EPythonCommandExecutionMode Mode = EPythonCommandExecutionMode::ExecuteFile)
	{
		Command = FPythonCommandEx();
		Command.Command = Text;
		Command.ExecutionMode = Mode;
		LogLines.clear();
		FModuleManager::Get().LoadModuleChecked(TEXT("PythonScriptPlugin"));
		return IPythonScriptPlugin::Get()->ExecPythonCommandEx(Command);
	}

	/** The representation of an expression's value; the traceback when it has none. */
	std::string Evaluate(const FString& Expression)
	{
		Run(Expression, EPythonCommandExecutionMode::EvaluateStatement);
		return GetResult();
	}

	std::string GetResult() const { return ToUtf8(Command.CommandResult); }
	std::string GetLastResultLine() const
	{
		const std::string Result = GetResult();
		const size_t LineBreak = Result.rfind('\n');
		return LineBreak == std::string::npos ? Result : Result.substr(LineBreak + 1);
	}

	/** "Info: text" for each entry of the command's output. */
	std::string GetOutput() const
	{
		std::string Result;
		for (const FPythonLogOutputEntry& Entry : Command.LogOutput)
		{
			Result += ToUtf8(LexToString(Entry.Type)) + ": " + ToUtf8(Entry.Output) + "\n";
		}
		return Result;
	}

	FString WriteFile(const TCHAR* Name, FStringView Text) const
	{
		const FString Path = Scratch.Path / Name;
		EXPECT_TRUE(FFileHelper::SaveStringToFile(Text, *Path, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM));
		return Path;
	}

	FScratchDirectory Scratch; // its name has spaces
	FPythonCommandEx Command;
	std::string LogLines; // "LogPython Error: text" a line

private:
	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override
	{
		LogLines += ToUtf8(Category.ToString()) + " " + ToUtf8(ToString(Verbosity)) + ": " + ToUtf8(V) + "\n";
	}
};
