#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/Accessibility/GenericAccessibleInterfaces.h"

class SDockTab;

/** What the buttons of a chat-like tab are called that have keys of their own on a terminal, as letters. */
namespace PanelButtons
{
inline const TCHAR* const Approve = TEXT("approve");
inline const TCHAR* const Continue = TEXT("continue");
inline const TCHAR* const End = TEXT("end");
inline const TCHAR* const Pause = TEXT("pause"); // there only while the tab is at work
}

/** What a chat-like tab looks like in one frame to somebody who cannot see it: its accessible tree, sorted. */
class FPanelView
{
public:
	using FWidget = TSharedPtr<IAccessibleWidget>;

	explicit FPanelView(const SDockTab& Tab);

	/** False before the first layout. */
	bool IsLaidOut() const { return PromptBox.IsValid(); }
	const TArray<FWidget>& GetTexts() const { return Texts; }
	/** By the letters of their labels: "[ Start ]" is "start". */
	const TMap<FString, FWidget>& GetButtons() const { return Buttons; }

	bool IsEnabled(const TCHAR* Button) const;
	/** False when the button is disabled or not there. */
	bool Press(const TCHAR* Button) const;
	/** Types a prompt and Enter. */
	void Send(const FString& Prompt) const;

	bool IsPanelWorking() const { return Buttons.Contains(PanelButtons::Pause); }
	/** The panel itself, or something that it has begun and that tells it when it is done: a build. */
	bool IsWorking() const;

private:
	void Collect(const TSharedRef<IAccessibleWidget>& Widget);

	TArray<FWidget> Texts;
	TMap<FString, FWidget> Buttons;
	FWidget PromptBox;
};

/** The letters and digits of a label or a command, in lower case. */
FString LettersOf(const FString& Label);
