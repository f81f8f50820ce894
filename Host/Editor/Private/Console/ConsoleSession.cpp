#include "Console/ConsoleSession.h"

void FConsoleSession::AskForApprovalOnce(const FPanelView& View)
{
	const bool bWaits = View.IsEnabled(PanelButtons::Approve);
	if (bWaits && !bAskedForApproval)
	{
		Output.PrintLine(TEXT("Approve? y runs the tools; any other answer does not."));
	}
	bAskedForApproval = bWaits;
}

bool FConsoleSession::Approve(const FPanelView& View)
{
	// After a pause there is nothing to approve, only to go on with.
	const bool bPressed = View.Press(PanelButtons::Approve) || View.Press(PanelButtons::Continue);
	if (bPressed)
	{
		bAskedForApproval = false; // what waits next is asked for again
	}
	return bPressed;
}

void FConsoleSession::HandleLine(const FPanelView& View, const FString& Line)
{
	const FString Trimmed = Line.TrimStartAndEnd();
	bUsedCommand = Trimmed.StartsWith(TEXT("/"));
	if (bUsedCommand)
	{
		HandleCommand(View, Trimmed);
	}
	else if (Trimmed == TEXT("y") && Approve(View))
	{
		return;
	}
	else if (!Trimmed.IsEmpty() || !View.IsWorking())
	{
		Interrupts.Restart();
		Failures.Restart();
		View.Send(Trimmed.IsEmpty() ? FString() : Line);
	}
}

void FConsoleSession::HandleCommand(const FPanelView& View, const FString& Command)
{
	const FString Button = LettersOf(Command);
	if (Command == TEXT("/quit"))
	{
		Leave(0);
	}
	else if (Command == TEXT("/help"))
	{
		Output.PrintHelp(View);
	}
	else if (!View.Press(*Button))
	{
		bUsedCommand = false;
		const FPanelView::FWidget Widget = View.GetButtons().FindRef(Button);
		const FString Refusal =
			Widget ? FString::Printf(TEXT("/%s cannot be used now. %s"), *Button, *Widget->GetHelpText())
				   : FString::Printf(TEXT("There is no command /%s. /help lists the commands."), *Button);
		Output.PrintLine(Refusal.TrimEnd());
	}
}
