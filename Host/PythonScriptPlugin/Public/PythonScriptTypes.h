#pragma once

#include "CoreMinimal.h"
#include "Misc/EnumClassFlags.h"
#include "UObject/ObjectMacros.h"
#include "PythonScriptTypes.generated.h"

UENUM()
enum class EPythonLogOutputType : uint8
{
	Info,
	Warning,
	Error,
};

UENUM()
enum class EPythonCommandFlags : uint8
{
	None = 0,
	Unattended = 1 << 0, // some dialogs are left out
};
ENUM_CLASS_FLAGS(EPythonCommandFlags)

UENUM()
enum class EPythonCommandExecutionMode : uint8
{
	ExecuteFile,       // a literal script of any number of lines, or a file with arguments
	ExecuteStatement,  // one statement; the value of an expression is printed
	EvaluateStatement, // one expression; its value is the command's result
};

UENUM()
enum class EPythonFileExecutionScope : uint8
{
	Private, // variables of its own
	Public,  // the variables of the console, which stay from command to command
};

/** Something that was logged while a command ran. */
USTRUCT(BlueprintType)
struct FPythonLogOutputEntry
{
	GENERATED_BODY()

	UPROPERTY(BlueprintReadOnly, Category = "Python|Output")
	EPythonLogOutputType Type = EPythonLogOutputType::Info;

	UPROPERTY(BlueprintReadOnly, Category = "Python|Output")
	FString Output;
};

/** A command, and what came of it. */
struct FPythonCommandEx
{
	EPythonCommandFlags Flags = EPythonCommandFlags::None;
	EPythonCommandExecutionMode ExecutionMode = EPythonCommandExecutionMode::ExecuteFile;
	/** Of ExecuteFile alone: the other modes always run among the console's variables. */
	EPythonFileExecutionScope FileExecutionScope = EPythonFileExecutionScope::Private;
	/**
	 * The script. In the mode ExecuteFile it is a file when its first word ends in ".py": a path with spaces needs
	 * double quotes around it, and the words behind it become sys.argv.
	 */
	FString Command;
	/** The representation of the value, "None" where there is none; after an error the traceback. */
	FString CommandResult;
	TArray<FPythonLogOutputEntry> LogOutput;
};

/** "Info", "Warning" or "Error". */
PYTHONSCRIPTPLUGIN_API const TCHAR* LexToString(EPythonLogOutputType InType);
