#pragma once

#include "CoreMinimal.h"
#include "Types/SlateEnums.h"
#include "Widgets/Accessibility/SlateAccessibleMessageHandler.h"

class FModifierKeysState;
class FSlateRenderer;
class SWidget;

/** What widgets know of the application. There is one at a time, and in a commandlet none. */
class FSlateApplicationBase
{
public:
	virtual ~FSlateApplicationBase();

	/** Asserts that there is one. */
	static FSlateApplicationBase& Get();
	static bool IsInitialized();

	FSlateRenderer* GetRenderer() const { return Renderer.Get(); }
	TSharedRef<FSlateAccessibleMessageHandler> GetAccessibleMessageHandler() const { return AccessibleMessageHandler; }

	/** Application time in seconds, the same throughout one tick: what Tick and active timers are given. */
	double GetCurrentTime() const { return CurrentTime; }
	/** Seconds between the last two ticks. */
	float GetDeltaTime() const { return static_cast<float>(CurrentTime - LastTickTime); }

	virtual FModifierKeysState GetModifierKeys() const = 0;
	virtual TSharedPtr<SWidget> GetKeyboardFocusedWidget() const = 0;
	virtual bool SetKeyboardFocus(
		const TSharedPtr<SWidget>& WidgetToFocus, EFocusCause ReasonFocusIsChanging = EFocusCause::SetDirectly) = 0;
	virtual EFocusCause GetKeyboardFocusCause() const = 0;
	virtual bool HasMouseCapture(const TSharedRef<const SWidget>& Widget) const = 0;
	virtual bool IsWidgetHovered(const SWidget& Widget) const = 0;

protected:
	FSlateApplicationBase() = default;
	static void SetCurrent(const TSharedPtr<FSlateApplicationBase>& Application);

	TSharedPtr<FSlateRenderer> Renderer;
	const TSharedRef<FSlateAccessibleMessageHandler> AccessibleMessageHandler =
		MakeShared<FSlateAccessibleMessageHandler>();
	double CurrentTime = 0.0;
	double LastTickTime = 0.0;
};
