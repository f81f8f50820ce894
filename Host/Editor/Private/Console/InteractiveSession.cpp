#include "Console/InteractiveSession.h"

void FInteractiveSession::Tick(const FPanelView& View)
{
	AskForApprovalOnce(View);
	Input.Read();
	if (!IsTimeForLine(View))
	{
		return;
	}
	if (Input.HasLine())
	{
		Output.LeavePromptSign();
		HandleLine(View, Input.TakeLine());
		bShowsEffect = false;
	}
	else if (Input.IsClosed())
	{
		Leave(0);
	}
	else
	{
		Output.ShowPromptSign();
	}
}

bool FInteractiveSession::IsTimeForLine(const FPanelView& View)
{
	if (!bShowsEffect)
	{
		bShowsEffect = true; // what came of the last line is in the view of the next frame
		return false;
	}
	// Who types may want to go on while a build runs.
	if (Input.IsTyped() ? !View.IsPanelWorking() : !View.IsWorking())
	{
		return true;
	}
	// A line is for what the panel does when it has worked off the one before; its buttons can be pressed at any time.
	// An approval that was typed too early could be for something that nobody has seen yet.
	if (Input.IsTyped() && Input.HasLine() && Input.PeekLine().TrimStartAndEnd() == TEXT("y"))
	{
		Input.TakeLine();
		Output.PrintLine(TEXT("Nothing waits for approval yet."));
	}
	return Input.IsTyped() && Input.HasLine() && Input.PeekLine().TrimStart().StartsWith(TEXT("/"));
}

void FInteractiveSession::OnInterrupted()
{
	Output.PrintLine(TEXT("Ended. Press Ctrl-C again to exit."));
}
