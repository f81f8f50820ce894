#include "Console/ConsoleOutput.h"

#include "Misc/TerminalText.h"

#include <cstdio>
#include <unistd.h>

namespace
{
/** A title inside a text is not a block of its own: whoever wrote the text may not be whom it names. */
FString IndentTitles(const FString& Body)
{
	if (!Body.Contains(TEXT("[ ")))
	{
		return Body;
	}
	TArray<FString> BodyLines;
	constexpr bool bCullEmpty = false;
	Body.ParseIntoArray(BodyLines, TEXT("\n"), bCullEmpty);
	for (FString& Line : BodyLines)
	{
		const FString Trimmed = Line.TrimStartAndEnd();
		if (Trimmed.StartsWith(TEXT("[ ")) && Trimmed.EndsWith(TEXT(" ]")))
		{
			Line = TEXT("  ") + Trimmed;
		}
	}
	return FString::Join(BodyLines, TEXT("\n"));
}
}

FConsoleOutput::FConsoleOutput()
	: bOnTerminal(isatty(STDOUT_FILENO) != 0)
{
}

void FConsoleOutput::ShowPromptSign()
{
	if (bOnTerminal && !bShowsPromptSign)
	{
		bShowsPromptSign = true;
		std::printf("\033[1m>\033[0m ");
		std::fflush(stdout);
	}
}

void FConsoleOutput::PrintNewTexts(const FPanelView& View)
{
	for (const FPanelView::FWidget& Text : View.GetTexts())
	{
		bool bAlreadyPrinted = false;
		Printed.Add(Text->GetId(), &bAlreadyPrinted);
		if (!bAlreadyPrinted)
		{
			PrintBlock(Text->AsText() ? Text->AsText()->GetText() : Text->GetWidgetName());
		}
	}
}

void FConsoleOutput::PrintBlock(const FString& GivenText)
{
	if (bShowsPromptSign)
	{
		bShowsPromptSign = false;
		std::printf("\r\033[K");
	}
	const FString Text = MakeTerminalText(GivenText);
	FString Title;
	FString Body = Text;
	// As " [ Name ]"; a text of a file may begin with a bracket, too.
	const bool bHasTitle = Text.StartsWith(TEXT(" [ "));
	if (bHasTitle && !Text.Split(TEXT("\n"), &Title, &Body))
	{
		Title = Text;
		Body.Empty();
	}
	// What is said has blank lines around it; a file's text is as it is.
	Body = IndentTitles(bHasTitle ? Body.TrimStartAndEnd() : Body);
	if (bHasTitle)
	{
		std::printf(bOnTerminal ? "\n\033[1m%s\033[0m\n" : "\n%s\n", TCHAR_TO_UTF8(*Title.TrimStartAndEnd()));
	}
	if (!Body.IsEmpty())
	{
		// Lines without a title are the panel's own remarks.
		std::printf(bOnTerminal && !bHasTitle ? "\033[2m%s\033[0m\n" : "%s\n", TCHAR_TO_UTF8(*Body));
	}
	std::fflush(stdout);
}

void FConsoleOutput::PrintLine(const FString& Line)
{
	std::printf("%s\n", TCHAR_TO_UTF8(*MakeTerminalText(Line)));
	std::fflush(stdout);
}

void FConsoleOutput::PrintHelp(const FPanelView& View)
{
	std::printf("A line is a prompt. y approves the tools that wait, or continues after a pause.\n"
				"Ctrl-C ends the conversation; a second one exits. Commands now:\n");
	for (const auto& Button : View.GetButtons())
	{
		std::printf(
			"  /%-14s %s\n", TCHAR_TO_UTF8(*Button.Key), TCHAR_TO_UTF8(*MakeTerminalText(Button.Value->GetHelpText())));
	}
	std::printf("  /%-14s %s\n  /%-14s %s\n", "help", "List the commands", "quit", "Exit");
	std::fflush(stdout);
}
