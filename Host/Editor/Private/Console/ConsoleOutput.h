#pragma once

#include "Console/PanelView.h"

/** What the console prints: the texts of the tab, each once, and remarks of its own. */
class FConsoleOutput
{
public:
	FConsoleOutput();

	/** The texts that were not there in the frames before. */
	void PrintNewTexts(const FPanelView& View);
	/** The sign for "your turn", on a terminal; once until something else is printed or typed. */
	void ShowPromptSign();
	/** What was typed stands behind the sign. */
	void LeavePromptSign() { bShowsPromptSign = false; }
	static void PrintLine(const FString& Line);
	/** The keys, and what each button does or why it cannot be pressed. */
	static void PrintHelp(const FPanelView& View);

private:
	void PrintBlock(const FString& GivenText);

	TSet<AccessibleWidgetId> Printed;
	const bool bOnTerminal;
	bool bShowsPromptSign = false;
};
