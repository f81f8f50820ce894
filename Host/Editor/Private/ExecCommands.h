#pragma once

#include "CoreMinimal.h"

/**
 * The commands of -ExecCmds="<command>;<command>…", in order.
 *
 * "SetSetting <container> <category> <section> <property> <value>" changes a setting as the settings page does, and the
 * section saves it. "py <file or script>" runs Python. "Automation RunTests <filter>" and "Quit" are for the automation
 * runner.
 */
class FExecCommands
{
public:
	/** What stands on the command line, trimmed. */
	static TArray<FString> Get();
	/** Runs those of the editor itself. False when one of them failed; the reason is in the log. */
	static bool RunEditorCommands();
};
