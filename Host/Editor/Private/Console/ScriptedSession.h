#pragma once

#include "Console/ConsoleSession.h"

/** The prompts of the command line, one after the other, without anybody who has to be there. */
class FScriptedSession final : public FConsoleSession
{
public:
	FScriptedSession(TArray<FString>&& InPrompts, FConsoleInput& InInput, FConsoleOutput& InOutput,
		FConsoleInterrupts& InInterrupts);

	/** The values of "-Prompt=", in their order. */
	static TArray<FString> ReadPrompts();

	void Tick(const FPanelView& View) override;
	void OnInterrupted() override;

private:
	enum class EPhase : uint8
	{
		Opening, // the tab has not been laid out yet
		Ready,   // the next prompt may be sent
		Sent,    // a prompt was sent and the panel has not begun to work yet
		Working,
		Ending,
	};

	void SendNextPrompt(const FPanelView& View);
	void WaitForWork(const FPanelView& View);
	/** Approves if it may; otherwise waits for a "y", and leaves when none can come. */
	void ApproveIfAllowed(const FPanelView& View);

	const TArray<FString> Prompts;
	const bool bApprove;
	int32 NextPrompt = 0;
	EPhase Phase = EPhase::Opening;
	int32 CodeAtEnd = 0;
};
