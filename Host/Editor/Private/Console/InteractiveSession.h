#pragma once

#include "Console/ConsoleSession.h"

/** Somebody types, or a pipe has the lines. */
class FInteractiveSession final : public FConsoleSession
{
public:
	using FConsoleSession::FConsoleSession;

	void Tick(const FPanelView& View) override;
	void OnInterrupted() override;

private:
	/** A piped line waits until the panel is not at work, so that a file of lines reads like a conversation. */
	bool IsTimeForLine(const FPanelView& View);

	bool bShowsEffect = true;
};
