#pragma once

#include "Agent/Chat/KestrelInterface.h"
#include "CoreMinimal.h"
#include "Support/KestrelTest.h"
#include "UObject/UObjectGlobals.h"

class SKestrelWidget;
class SMultiLineEditableText;
class SWidget;
class SWindow;
struct FKey;

/**
 * A panel in a window of its own, and a service that nobody asks anything. The agent is idle afterwards. Answers are
 * shown as plain text unless the test is about their formatting.
 */
class FKestrelTestPanel
{
public:
	explicit FKestrelTestPanel(const FVector2D& Size = FVector2D(600.0, 400.0), bool bFormattedAnswers = false);
	~FKestrelTestPanel();
	UE_NONCOPYABLE(FKestrelTestPanel)

	/** As when the tab is closed. */
	void Close();
	/** A new panel, as when the tab is opened again. */
	void Reopen();

	/** Blocks of the conversation are read-only, the prompt box is not. */
	TArray<TSharedRef<SMultiLineEditableText>> Texts(bool bReadOnly) const;
	TSharedRef<SMultiLineEditableText> PromptBox() const;
	FString LastBlock() const;
	/** The texts of all blocks but the welcome. */
	TArray<FString> Blocks() const;
	/** What has been logged so far. */
	FString Log() const;
	void Type(const TCHAR* Text) const;
	/** A key press with the focus on the prompt box, on the way that a real one takes. */
	bool Press(const FKey& Key, bool bShift, bool bRepeat = false) const;
	/** The button with this label, in the panel or in its menu; invalid if none is shown. */
	TSharedPtr<SWidget> FindButton(const TCHAR* Label) const;
	/** Clicks the button with the mouse. False if it is not shown. */
	bool Click(const TCHAR* Label) const;
	void ClickWidget(const SWidget& Clicked) const;

	const FKestrelTestLog PromptLog;
	const TGuardValue<bool> Formatted;
	FOnAddStatusMessageDelegate Unhooked;
	FOnAddDiffMessageDelegate UnhookedDiffs;
	TSharedPtr<SKestrelWidget> Widget;
	TSharedRef<SWindow> Window;
};
