#include "PanelConsole.h"

#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "HAL/HostClock.h"
#include "InputCoreTypes.h"
#include "Misc/CommandLine.h"
#include "Misc/Parse.h"
#include "Misc/TerminalText.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"
#include "Widgets/Docking/SDockTab.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace PanelConsole
{
volatile std::sig_atomic_t NumInterrupts = 0;

void OnInterrupt(int)
{
	NumInterrupts = NumInterrupts + 1;
}

const TCHAR* const ApproveButton = TEXT("approve");
const TCHAR* const ContinueButton = TEXT("continue");
const TCHAR* const EndButton = TEXT("end");

/** "[ Start ]" to "start". */
FString LettersOf(const FString& Label)
{
	FString Letters;
	for (const TCHAR C : Label)
	{
		if (FChar::IsAlnum(C))
		{
			Letters.AppendChar(FChar::ToLower(C));
		}
	}
	return Letters;
}

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

TArray<FString> ReadPrompts()
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

/** Lines of one input are at most this long; the rest of a longer one is a line of its own. */
constexpr size_t MaxLineBytes = 1 << 20;
}

FPanelConsole::FPanelConsole()
	: Prompts(PanelConsole::ReadPrompts())
	, bUnattended(Prompts.Num() > 0)
	, bApprove(FParse::Param(FCommandLine::Get(), TEXT("Approve")))
	, bOnTerminal(isatty(STDOUT_FILENO) != 0)
	, bTyped(isatty(STDIN_FILENO) != 0)
{
	FString Name;
	if (FParse::Value(FCommandLine::Get(), TEXT("-Console="), Name))
	{
		TabName = FName(*Name);
	}
}

FPanelConsole::~FPanelConsole() = default;

bool FPanelConsole::Start()
{
	Tab = FGlobalTabmanager::Get()->TryInvokeTab(TabName);
	std::signal(SIGINT, &PanelConsole::OnInterrupt);
	if (!Tab)
	{
		std::fprintf(
			stderr, "There is no tab '%s' in this editor.\n", TCHAR_TO_UTF8(*MakeTerminalText(TabName.ToString())));
	}
	return Tab.IsValid();
}

FPanelConsole::FView FPanelConsole::Look() const
{
	FView View;
	Collect(FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(Tab->GetContent()), View);
	return View;
}

void FPanelConsole::Collect(const TSharedRef<IAccessibleWidget>& Widget, FView& View)
{
	if (Widget->GetWidgetType() == EAccessibleWidgetType::Button)
	{
		View.Buttons.Add(PanelConsole::LettersOf(Widget->GetWidgetName()), Widget);
		return;
	}
	if (Widget->GetWidgetType() == EAccessibleWidgetType::TextEdit)
	{
		const bool bReadOnly = !Widget->AsProperty() || Widget->AsProperty()->IsReadOnly();
		bReadOnly ? void(View.Texts.Add(Widget)) : void(View.PromptBox = Widget);
		return;
	}
	// Asked for once: counting looks at all of them.
	const int32 NumChildren = Widget->GetNumberOfChildren();
	for (int32 Index = 0; Index < NumChildren; ++Index)
	{
		Collect(Widget->GetChildAt(Index).ToSharedRef(), View);
	}
}

bool FPanelConsole::IsEnabled(const FView& View, const TCHAR* Button)
{
	const TSharedPtr<IAccessibleWidget> Widget = View.Buttons.FindRef(Button);
	return Widget && Widget->IsEnabled();
}

bool FPanelConsole::Press(const FView& View, const TCHAR* Button)
{
	if (!IsEnabled(View, Button))
	{
		return false;
	}
	View.Buttons.FindChecked(Button)->AsActivatable()->Activate();
	return true;
}

bool FPanelConsole::IsWorking(const FView& View)
{
	return IsPanelWorking(View) || FHostClock::Get().IsHeld();
}

void FPanelConsole::Tick()
{
	const FView View = Look();
	if (!View.PromptBox)
	{
		return; // not laid out yet
	}
	PrintNewTexts(View);
	if (HandleInterrupts(View))
	{
		return;
	}
	if (bUnattended)
	{
		RunScript(View);
		return;
	}
	AskForApprovalOnce(View);
	ReadInput();
	if (!IsTimeForLine(View))
	{
		return;
	}
	if (!Lines.IsEmpty())
	{
		const FString Line = Lines[0];
		Lines.RemoveAt(0);
		bShowsPromptSign = false; // what was typed stands behind it
		HandleLine(View, Line);
		bShowsEffect = false;
	}
	else if (bInputClosed)
	{
		Leave(0);
	}
	else if (bOnTerminal && !bShowsPromptSign)
	{
		bShowsPromptSign = true;
		std::printf("\033[1m>\033[0m ");
		std::fflush(stdout);
	}
}

void FPanelConsole::ClearPromptSign()
{
	if (bShowsPromptSign)
	{
		bShowsPromptSign = false;
		std::printf("\r\033[K");
	}
}

void FPanelConsole::PrintNewTexts(const FView& View)
{
	for (const TSharedPtr<IAccessibleWidget>& Text : View.Texts)
	{
		bool bAlreadyPrinted = false;
		Printed.Add(Text->GetId(), &bAlreadyPrinted);
		if (!bAlreadyPrinted)
		{
			PrintBlock(Text->AsText() ? Text->AsText()->GetText() : Text->GetWidgetName());
		}
	}
}

void FPanelConsole::PrintBlock(const FString& GivenText)
{
	ClearPromptSign();
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
	Body = PanelConsole::IndentTitles(bHasTitle ? Body.TrimStartAndEnd() : Body);
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

void FPanelConsole::AskForApprovalOnce(const FView& View)
{
	const bool bWaits = IsEnabled(View, PanelConsole::ApproveButton);
	if (bWaits && !bAskedForApproval)
	{
		std::printf("Approve? y runs the tools; any other answer does not.\n");
		std::fflush(stdout);
	}
	bAskedForApproval = bWaits;
}

void FPanelConsole::ReadInput()
{
	pollfd Input{ STDIN_FILENO, POLLIN, 0 };
	while (!bInputClosed && poll(&Input, 1, 0) > 0)
	{
		char Buffer[4096];
		const ssize_t Count = read(STDIN_FILENO, Buffer, sizeof(Buffer));
		if (Count < 0 && errno == EINTR)
		{
			return;
		}
		if (Count <= 0)
		{
			bInputClosed = true;
			if (!PartialLine.empty())
			{
				Lines.Add(FString(PartialLine.c_str())); // the last line of a pipe may have no end
			}
			break;
		}
		PartialLine.append(Buffer, static_cast<size_t>(Count));
		for (size_t End = PartialLine.find('\n');
			 End != std::string::npos || PartialLine.size() > PanelConsole::MaxLineBytes; End = PartialLine.find('\n'))
		{
			Lines.Add(FString(PartialLine.substr(0, End).c_str()));
			PartialLine.erase(0, End == std::string::npos ? End : End + 1);
		}
	}
}

bool FPanelConsole::IsTimeForLine(const FView& View)
{
	if (!bShowsEffect)
	{
		bShowsEffect = true; // what came of the last line is in the view of the next frame
		return false;
	}
	// Who types may want to go on while a build runs.
	if (bTyped ? !IsPanelWorking(View) : !IsWorking(View))
	{
		return true;
	}
	// A line is for what the panel does when it has worked off the one before; its buttons can be pressed at any time.
	// An approval that was typed too early could be for something that nobody has seen yet.
	if (bTyped && !Lines.IsEmpty() && Lines[0].TrimStartAndEnd() == TEXT("y"))
	{
		Lines.RemoveAt(0);
		std::printf("Nothing waits for approval yet.\n");
		std::fflush(stdout);
	}
	return bTyped && !Lines.IsEmpty() && Lines[0].TrimStart().StartsWith(TEXT("/"));
}

void FPanelConsole::HandleLine(const FView& View, const FString& Line)
{
	const FString Trimmed = Line.TrimStartAndEnd();
	bUsedCommand = Trimmed.StartsWith(TEXT("/"));
	// After a pause there is nothing to approve, only to go on with.
	const bool bYes = Trimmed == TEXT("y");
	if (bYes && (Press(View, PanelConsole::ApproveButton) || Press(View, PanelConsole::ContinueButton)))
	{
		bAskedForApproval = false; // what waits next is asked for again
		return;
	}
	if (Trimmed == TEXT("/quit"))
	{
		Leave(0);
		return;
	}
	if (Trimmed == TEXT("/help"))
	{
		PrintHelp(View);
		return;
	}
	if (Trimmed.StartsWith(TEXT("/")))
	{
		const FString Button = PanelConsole::LettersOf(Trimmed);
		if (!Press(View, *Button))
		{
			bUsedCommand = false;
			ExplainRefusal(View, Button);
		}
		return;
	}
	if (!Trimmed.IsEmpty() || !IsWorking(View))
	{
		// The next Ctrl-C ends what begins here.
		PanelConsole::NumInterrupts = 0;
		NumInterruptsSeen = 0;
		Send(View, Trimmed.IsEmpty() ? FString() : Line);
	}
}

void FPanelConsole::ExplainRefusal(const FView& View, const FString& Button)
{
	const TSharedPtr<IAccessibleWidget> Widget = View.Buttons.FindRef(Button);
	const FString Sentence = Widget
								 ? FString::Printf(TEXT("/%s cannot be used now. %s"), *Button, *Widget->GetHelpText())
								 : FString::Printf(TEXT("There is no command /%s. /help lists the commands."), *Button);
	std::printf("%s\n", TCHAR_TO_UTF8(*MakeTerminalText(Sentence.TrimEnd())));
	std::fflush(stdout);
}

void FPanelConsole::PrintHelp(const FView& View)
{
	std::printf("A line is a prompt. y approves the tools that wait, or continues after a pause.\n"
				"Ctrl-C ends the conversation; a second one exits. Commands now:\n");
	for (const auto& Button : View.Buttons)
	{
		// What a button does is in its tool tip, and for a disabled one, why it is.
		std::printf(
			"  /%-14s %s\n", TCHAR_TO_UTF8(*Button.Key), TCHAR_TO_UTF8(*MakeTerminalText(Button.Value->GetHelpText())));
	}
	std::printf("  /%-14s %s\n  /%-14s %s\n", "help", "List the commands", "quit", "Exit");
	std::fflush(stdout);
}

bool FPanelConsole::HandleInterrupts(const FView& View)
{
	if (NumInterruptsSeen == PanelConsole::NumInterrupts)
	{
		return false;
	}
	const bool bFirst = NumInterruptsSeen == 0 && PanelConsole::NumInterrupts == 1;
	NumInterruptsSeen = PanelConsole::NumInterrupts;
	if (!bFirst || !Press(View, PanelConsole::EndButton))
	{
		constexpr int32 InterruptedExitCode = 130;
		Leave(InterruptedExitCode);
		return true;
	}
	if (bUnattended)
	{
		// In the next frame, when what the panel says of it has been printed.
		Phase = EPhase::Ending;
		ExitCode = 1;
		return true;
	}
	std::printf("Ended. Press Ctrl-C again to exit.\n");
	std::fflush(stdout);
	return true;
}

void FPanelConsole::Send(const FView& View, const FString& Prompt)
{
	Failures.Restart();
	View.PromptBox->AsProperty()->SetValue(Prompt);
	View.PromptBox->SetFocus();
	FSlateApplication& Slate = FSlateApplication::Get();
	const FKeyEvent Enter(EKeys::Enter, FModifierKeysState(), 0, false, u'\r', 0);
	Slate.ProcessKeyDownEvent(Enter);
	Slate.ProcessKeyCharEvent(FCharacterEvent(u'\r', FModifierKeysState(), 0, false));
	Slate.ProcessKeyUpEvent(Enter);
}

void FPanelConsole::RunScript(const FView& View)
{
	switch (Phase)
	{
	case EPhase::Opening:
		Phase = EPhase::Ready;
		break;
	case EPhase::Ready:
		if (NextPrompt < Prompts.Num())
		{
			HandleLine(View, Prompts[NextPrompt++]);
			Phase = EPhase::Sent;
			break;
		}
		ExitCode = Failures.HasFailed() ? 1 : 0;
		Press(View, PanelConsole::EndButton);
		Phase = EPhase::Ending;
		break;
	case EPhase::Sent:
		// The view of the frame after the key press shows what came of it.
		Phase = EPhase::Working;
		break;
	case EPhase::Working:
		if (IsWorking(View))
		{
			break;
		}
		if (IsEnabled(View, PanelConsole::ApproveButton))
		{
			ApproveInScript(View);
			break;
		}
		// A command needs no conversation, and may end it.
		if (!bUsedCommand && !IsEnabled(View, PanelConsole::EndButton))
		{
			Leave(1); // ended by itself: it failed or was refused
			break;
		}
		Phase = EPhase::Ready;
		break;
	case EPhase::Ending:
		Leave(ExitCode);
		break;
	}
}

void FPanelConsole::ApproveInScript(const FView& View)
{
	AskForApprovalOnce(View);
	ReadInput();
	const bool bSaidYes = !Lines.IsEmpty() && Lines[0].TrimStartAndEnd() == TEXT("y");
	if (bApprove || bSaidYes)
	{
		if (bApprove)
		{
			std::printf("y\n");
			std::fflush(stdout);
		}
		else
		{
			Lines.RemoveAt(0);
		}
		bAskedForApproval = false;
		Failures.Restart();
		Press(View, PanelConsole::ApproveButton);
		Phase = EPhase::Sent;
		return;
	}
	if (!Lines.IsEmpty() || bInputClosed)
	{
		std::fprintf(stderr, "A tool waits for approval and did not get it: answer y, or try again with --approve.\n");
		Leave(1);
	}
}

void FPanelConsole::Leave(int32 Code)
{
	bEnded = true;
	ExitCode = Code;
}
