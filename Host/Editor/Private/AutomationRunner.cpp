#include "AutomationRunner.h"

#include "Dom/JsonObject.h"
#include "ExecCommands.h"
#include "Misc/CommandLine.h"
#include "Misc/FileHelper.h"
#include "Misc/Parse.h"
#include "Misc/Paths.h"
#include "Misc/TerminalText.h"
#include "Serialization/JsonSerializer.h"

#include <cstdio>

namespace AutomationRunner
{
TArray<TSharedPtr<FJsonValue>> ToJson(const TArray<FString>& Texts)
{
	TArray<TSharedPtr<FJsonValue>> Values;
	for (const FString& Text : Texts)
	{
		Values.Add(MakeShared<FJsonValueString>(Text));
	}
	return Values;
}

void Print(const FString& Line)
{
	std::printf("%s\n", TCHAR_TO_UTF8(*MakeTerminalText(Line)));
	std::fflush(stdout);
}
}

FAutomationRunner::FAutomationRunner()
{
	for (FString& Command : FExecCommands::Get())
	{
		if (Command.RemoveFromStart(TEXT("Automation RunTests")))
		{
			Filter = Command.TrimStartAndEnd();
			bHasWork = true;
		}
		bQuit |= Command == TEXT("Quit");
	}
}

void FAutomationRunner::Tick()
{
	FAutomationTestFramework& Framework = FAutomationTestFramework::Get();
	if (!bStarted)
	{
		bStarted = true;
		Queue = Framework.FindTests(Filter);
	}
	if (Framework.IsRunning() && Framework.Update())
	{
		FinishCurrent();
	}
	if (!Framework.IsRunning())
	{
		StartNext();
	}
}

void FAutomationRunner::StartNext()
{
	if (!Queue.IsValidIndex(NextTest))
	{
		Finish();
		return;
	}
	FAutomationTestFramework::Get().Start(Queue[NextTest]);
}

void FAutomationRunner::FinishCurrent()
{
	const FAutomationTestExecutionInfo Info = FAutomationTestFramework::Get().Stop();
	const FString& Name = Queue[NextTest++].FullName;
	Info.WasSuccessful() ? ++NumPassed : ++NumFailed;
	AutomationRunner::Print(FString::Printf(TEXT("[%s] %s (%.0f ms)"),
		Info.WasSuccessful() ? TEXT("  OK  ") : TEXT("FAILED"), *Name, Info.DurationSeconds * 1000.0));
	for (const TArray<FString>* Lines : { &Info.Infos, &Info.Errors })
	{
		for (const FString& Line : *Lines)
		{
			AutomationRunner::Print(TEXT("         ") + Line);
		}
	}
	Results.Add({ Name, Info });
}

void FAutomationRunner::Finish()
{
	bHasWork = false;
	WriteReport();
	AutomationRunner::Print(FString::Printf(TEXT("%d passed, %d failed"), NumPassed, NumFailed));
}

void FAutomationRunner::WriteReport() const
{
	FString Folder;
	if (!FParse::Value(FCommandLine::Get(), TEXT("-ReportExportPath="), Folder))
	{
		return;
	}
	TArray<TSharedPtr<FJsonValue>> Tests;
	for (const FResult& Result : Results)
	{
		const TSharedRef<FJsonObject> Test = MakeShared<FJsonObject>();
		Test->SetStringField(TEXT("fullTestPath"), Result.FullName);
		Test->SetStringField(TEXT("state"), Result.Info.WasSuccessful() ? TEXT("Success") : TEXT("Fail"));
		Test->SetNumberField(TEXT("duration"), Result.Info.DurationSeconds);
		Test->SetArrayField(TEXT("errors"), AutomationRunner::ToJson(Result.Info.Errors));
		Test->SetArrayField(TEXT("warnings"), AutomationRunner::ToJson(Result.Info.Warnings));
		Tests.Add(MakeShared<FJsonValueObject>(Test));
	}
	const TSharedRef<FJsonObject> Report = MakeShared<FJsonObject>();
	Report->SetNumberField(TEXT("succeeded"), NumPassed);
	Report->SetNumberField(TEXT("failed"), NumFailed);
	Report->SetNumberField(TEXT("notRun"), Queue.Num() - Results.Num());
	Report->SetArrayField(TEXT("tests"), Tests);
	FString Text;
	FJsonSerializer::Serialize(Report, TJsonWriterFactory<>::Create(&Text));
	FFileHelper::SaveStringToFile(Text, *(FPaths::ConvertRelativePathToFull(Folder) / TEXT("index.json")),
		FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
}
