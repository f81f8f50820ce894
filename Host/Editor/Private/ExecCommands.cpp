#include "ExecCommands.h"

#include "HostPropertyEdit.h"
#include "IPythonScriptPlugin.h"
#include "ISettingsCategory.h"
#include "ISettingsContainer.h"
#include "ISettingsModule.h"
#include "ISettingsSection.h"
#include "Misc/CommandLine.h"
#include "Misc/Parse.h"
#include "Modules/ModuleManager.h"

DEFINE_LOG_CATEGORY_STATIC(LogExec, Log, All);

namespace ExecCommands
{
TSharedPtr<ISettingsSection> FindSection(const FString& Container, const FString& Category, const FString& Section)
{
	ISettingsModule& Settings = FModuleManager::LoadModuleChecked<ISettingsModule>(TEXT("Settings"));
	const TSharedPtr<ISettingsContainer> FoundContainer = Settings.GetContainer(FName(*Container));
	const TSharedPtr<ISettingsCategory> FoundCategory =
		FoundContainer ? FoundContainer->GetCategory(FName(*Category)) : nullptr;
	return FoundCategory ? FoundCategory->GetSection(FName(*Section)) : nullptr;
}

/** The value may be a secret: it is never part of a message. */
bool SetSetting(const FString& Arguments)
{
	const TCHAR* Stream = *Arguments;
	const FString Container = FCommandLine::Token(Stream);
	const FString Category = FCommandLine::Token(Stream);
	const FString Section = FCommandLine::Token(Stream);
	const FString Property = FCommandLine::Token(Stream);
	const TSharedPtr<ISettingsSection> Found = FindSection(Container, Category, Section);
	if (!Found)
	{
		UE_LOG(LogExec, Error, TEXT("There is no settings section %s / %s / %s"), *Container, *Category, *Section);
		return false;
	}
	const FString Error = FHostPropertyEdit::SetSectionValue(*Found, Property, FString(Stream).TrimStartAndEnd());
	UE_CLOG(!Error.IsEmpty(), LogExec, Error, TEXT("The setting %s was not changed: %s"), *Property, *Error);
	return Error.IsEmpty();
}

bool RunPython(const FString& Command)
{
	IPythonScriptPlugin* const Python = IPythonScriptPlugin::Get();
	UE_CLOG(!Python, LogExec, Error, TEXT("The project has the plugin PythonScriptPlugin turned off"));
	return Python && Python->ExecPythonCommand(*Command);
}
}

TArray<FString> FExecCommands::Get()
{
	FString Text;
	TArray<FString> Commands;
	FParse::Value(FCommandLine::Get(), TEXT("-ExecCmds="), Text);
	Text.ParseIntoArray(Commands, TEXT(";"));
	for (FString& Command : Commands)
	{
		Command.TrimStartAndEndInline();
	}
	return Commands;
}

bool FExecCommands::RunEditorCommands()
{
	bool bAllRan = true;
	for (FString& Command : Get())
	{
		if (Command.RemoveFromStart(TEXT("SetSetting ")))
		{
			bAllRan &= ExecCommands::SetSetting(Command);
		}
		else if (Command.RemoveFromStart(TEXT("py ")))
		{
			bAllRan &= ExecCommands::RunPython(Command);
		}
	}
	return bAllRan;
}
