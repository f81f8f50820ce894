#pragma once

#include "Console/ConsoleSession.h"
#include "Templates/UniquePtr.h"

/**
 * A chat-like tab on a terminal: "-Console=<tab>" opens the tab, prints its texts as they appear, and types what is
 * typed here into its prompt box. It knows the tab only as somebody who cannot see it would: by its accessible tree.
 *
 * A prompt box is the one text that can be edited; Enter in it sends. "/word" presses the button of that name; "y" and
 * Ctrl-C press those that PanelButtons names; "/help" lists the buttons, "/quit" exits. A tab whose buttons have names
 * of files could not be read so.
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
	bool HasEnded() const { return Session->GetExitCode().IsSet(); }
	int32 GetExitCode() const { return Session->GetExitCode().Get(0); }

private:
	void HandleInterrupt(const FPanelView& View, bool bFirst);

	FName TabName;
	TSharedPtr<SDockTab> Tab;
	FConsoleInput Input;
	FConsoleOutput Output;
	FConsoleInterrupts Interrupts;
	TUniquePtr<FConsoleSession> Session;
};
