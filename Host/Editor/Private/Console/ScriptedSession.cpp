#include "Console/ScriptedSession.h"

#include "Misc/CommandLine.h"
#include "Misc/Parse.h"

#include <cstdio>

FScriptedSession::FScriptedSession(
	TArray<FString>&& InPrompts, FConsoleInput& InInput, FConsoleOutput& InOutput, FConsoleInterrupts& InInterrupts)
	: FConsoleSession(InInput, InOutput, InInterrupts)
	, Prompts(MoveTemp(InPrompts))
	, bApprove(FParse::Param(FCommandLine::Get(), TEXT("Approve")))
{
}

TArray<FString> FScriptedSession::ReadPrompts()
{
	TArray<FString> Prompts;
	const FString Switch = TEXT("-Prompt=");
	for (const TCHAR* Stream = FCommandLine::Get(); *Stream;)
	{
		FString Word = FCommandLine::Token(Stream);
		if (Word.RemoveFromStart(Switch))
		{
			Prompts.Add(Word);
		}
	}
	return Prompts;
}

void FScriptedSession::Tick(const FPanelView& View)
{
	switch (Phase)
	{
	case EPhase::Opening:
		Phase = EPhase::Ready;
		break;
	case EPhase::Ready:
		SendNextPrompt(View);
		break;
	case EPhase::Sent:
		// The view of the frame after the key press shows what came of it.
		Phase = EPhase::Working;
		break;
	case EPhase::Working:
		WaitForWork(View);
		break;
	case EPhase::Ending:
		Leave(CodeAtEnd);
		break;
	}
}

void FScriptedSession::SendNextPrompt(const FPanelView& View)
{
	if (NextPrompt < Prompts.Num())
	{
		HandleLine(View, Prompts[NextPrompt++]);
		Phase = EPhase::Sent;
		return;
	}
	CodeAtEnd = Failures.HasFailed() ? 1 : 0;
	View.Press(PanelButtons::End);
	Phase = EPhase::Ending;
}

void FScriptedSession::WaitForWork(const FPanelView& View)
{
	if (View.IsWorking())
	{
		return;
	}
	if (View.IsEnabled(PanelButtons::Approve))
	{
		ApproveIfAllowed(View);
	}
	// A command needs no conversation, and may end it.
	else if (!bUsedCommand && !View.IsEnabled(PanelButtons::End))
	{
		Leave(1); // ended by itself: it failed or was refused
	}
	else
	{
		Phase = EPhase::Ready;
	}
}

void FScriptedSession::ApproveIfAllowed(const FPanelView& View)
{
	AskForApprovalOnce(View);
	Input.Read();
	const bool bSaidYes = Input.HasLine() && Input.PeekLine().TrimStartAndEnd() == TEXT("y");
	if (bApprove || bSaidYes)
	{
		bApprove ? Output.PrintLine(TEXT("y")) : void(Input.TakeLine());
		Failures.Restart();
		Approve(View);
		Phase = EPhase::Sent;
	}
	else if (Input.HasLine() || Input.IsClosed())
	{
		std::fprintf(stderr, "A tool waits for approval and did not get it: answer y, or try again with --approve.\n");
		Leave(1);
	}
}

void FScriptedSession::OnInterrupted()
{
	// In the next frame, when what the panel says of it has been printed.
	Phase = EPhase::Ending;
	CodeAtEnd = 1;
}
