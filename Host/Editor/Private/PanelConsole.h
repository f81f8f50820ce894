#pragma once

#include "CoreMinimal.h"
#include "FailureWatch.h"
#include "GenericPlatform/Accessibility/GenericAccessibleInterfaces.h"

#include <string>

class SDockTab;

/**
 * A chat-like tab on a terminal: "-Console=<tab>" opens the tab, prints its texts as they appear, and types what is
 * typed here into its prompt box. It knows the tab only as somebody who cannot see it would: by its accessible tree.
 *
 * A prompt box is the one text that can be edited; Enter in it sends. "/word" presses the button of that name, "y" the
 * one called Approve; "/help" lists the buttons, "/quit" exits. Ctrl-C presses the one called End, or exits when that
 * cannot be pressed. A tab whose buttons have names of files could not be read so.
 *
 * "-Prompt=<text>" (any number of them) runs unattended: each prompt is sent when the one before is done, the
 * conversation is ended after the last, and the program exits with 0. It exits with 1 as soon as the conversation ends
 * by itself, when a tool waits for approval that neither "-Approve" nor a "y" on the standard input gives, when a
 * command outside a conversation is refused, and when something failed after what was sent or approved last (see
 * FFailureWatch).
 */
class FPanelConsole
{
public:
	FPanelConsole();
	~FPanelConsole();
	UE_NONCOPYABLE(FPanelConsole)

	bool IsWanted() const { return !TabName.IsNone(); }
	/** A console that was meant for the case that there is no screen is not wanted any more. */
	void GiveWayToWindow() { TabName = FName(); }
	/** Opens the tab. False when there is no such tab. */
	bool Start();
	/** One frame. */
	void Tick();
	bool HasEnded() const { return bEnded; }
	int32 GetExitCode() const { return ExitCode; }

private:
	enum class EPhase : uint8
	{
		Opening, // the tab has not been laid out yet
		Ready,   // the user, or the next prompt, may act
		Sent,    // a prompt was sent and the panel has not begun to work yet
		Working,
		Ending,
	};

	/** What the panel looks like in this frame. */
	struct FView
	{
		TArray<TSharedPtr<IAccessibleWidget>> Texts;
		TMap<FString, TSharedPtr<IAccessibleWidget>> Buttons; // by their letters
		TSharedPtr<IAccessibleWidget> PromptBox;
	};

	FView Look() const;
	static void Collect(const TSharedRef<IAccessibleWidget>& Widget, FView& View);
	static bool IsEnabled(const FView& View, const TCHAR* Button);
	static bool Press(const FView& View, const TCHAR* Button);
	static bool IsPanelWorking(const FView& View) { return View.Buttons.Contains(TEXT("pause")); }
	/** The panel itself, or something that it has begun and that tells it when it is done: a build. */
	static bool IsWorking(const FView& View);

	void PrintNewTexts(const FView& View);
	void PrintBlock(const FString& GivenText);
	void AskForApprovalOnce(const FView& View);
	void ReadInput();
	/** A piped line waits until the panel is not at work, so that a file of lines reads like a conversation. */
	bool IsTimeForLine(const FView& View);
	/** Takes the sign for "your turn" off the terminal, before something else is printed. */
	void ClearPromptSign();
	void HandleLine(const FView& View, const FString& Line);
	/** Why a button was not pressed: it is disabled, or there is none of that name. */
	static void ExplainRefusal(const FView& View, const FString& Button);
	static void PrintHelp(const FView& View);
	/** True when Ctrl-C was pressed since the last frame. */
	bool HandleInterrupts(const FView& View);
	void RunScript(const FView& View);
	/** Approves if it may; otherwise waits for a "y", and leaves when none can come. */
	void ApproveInScript(const FView& View);
	void Send(const FView& View, const FString& Prompt);
	void Leave(int32 Code);

	FName TabName;
	FFailureWatch Failures;
	TSharedPtr<SDockTab> Tab;
	TSet<AccessibleWidgetId> Printed;
	TArray<FString> Prompts;
	TArray<FString> Lines;
	std::string PartialLine; // bytes of a line that has not ended yet
	int32 NextPrompt = 0;
	int32 NumInterruptsSeen = 0;
	EPhase Phase = EPhase::Opening;
	bool bUnattended = false;
	bool bApprove = false;
	bool bOnTerminal = false;
	bool bTyped = false; // the input is a terminal
	bool bShowsPromptSign = false;
	bool bShowsEffect = true;
	bool bInputClosed = false;
	bool bAskedForApproval = false;
	bool bUsedCommand = false; // the last line pressed a button, or asked for help
	bool bEnded = false;
	int32 ExitCode = 0;
};
