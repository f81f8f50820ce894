#pragma once

#include "CoreMinimal.h"
#include "Framework/Application/SlateApplication.h"
#include "HAL/HostClock.h"
#include "InputCoreTypes.h"
#include "Rendering/SlateRenderer.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SWindow.h"

#include <gtest/gtest.h>

/** A platform whose modifier keys the test holds down. */
class FTestPlatform final : public GenericApplication
{
public:
	virtual FModifierKeysState GetModifierKeys() const override { return ModifierKeys; }

	FModifierKeysState ModifierKeys;
};

/** An application with one window of 400 by 300, and a clock that the test moves. */
class FSlateTest : public testing::Test
{
protected:
	/** @param Renderer  null: the one that an application has by itself */
	explicit FSlateTest(const TSharedPtr<FSlateRenderer>& Renderer = nullptr)
		: Platform(MakeShared<FTestPlatform>())
	{
		FHostClock::Get().SetMode(EClockMode::Unattended);
		FSlateApplication::Create(Platform);
		if (Renderer.IsValid())
		{
			FSlateApplication::Get().InitializeRenderer(Renderer.ToSharedRef());
		}
		Window = FSlateApplication::Get().AddWindow(SNew(SWindow).ClientSize(FVector2D(400.0, 300.0)));
	}
	virtual ~FSlateTest() override
	{
		Window.Reset();
		FSlateApplication::Shutdown();
	}

	static FSlateApplication& App() { return FSlateApplication::Get(); }

	void Show(const TSharedRef<SWidget>& Content)
	{
		Window->SetContent(Content);
		Tick();
	}
	/** One frame, so many seconds after the last. The wall clock runs on a little too: periods in tests are long. */
	void Tick(double Seconds = 0.0)
	{
		FHostClock::Get().AdvanceTo(App().GetCurrentTime() + Seconds);
		App().Tick();
	}

	static FModifierKeysState Shift()
	{
		return FModifierKeysState(true, false, false, false, false, false, false, false, false);
	}
	static FModifierKeysState Control()
	{
		return FModifierKeysState(false, false, true, false, false, false, false, false, false);
	}

	/** As a keyboard does: the modifiers are down while the key is, and characters follow the key. */
	bool Press(const FKey& Key, const FModifierKeysState& Modifiers = FModifierKeysState())
	{
		Platform->ModifierKeys = Modifiers;
		const bool bHandled = App().ProcessKeyDownEvent(FKeyEvent(Key, Modifiers, 0, false, 0, 0));
		if (Key == EKeys::Enter || Key == EKeys::BackSpace)
		{
			const TCHAR Character = Key == EKeys::Enter ? TEXT('\r') : TEXT('\b');
			App().ProcessKeyCharEvent(FCharacterEvent(Character, Modifiers, 0, false));
		}
		App().ProcessKeyUpEvent(FKeyEvent(Key, Modifiers, 0, false, 0, 0));
		Platform->ModifierKeys = FModifierKeysState();
		return bHandled;
	}
	void Type(const FString& Text)
	{
		for (const TCHAR Character : Text)
		{
			App().ProcessKeyCharEvent(FCharacterEvent(Character, FModifierKeysState(), 0, false));
		}
	}

	static FPointerEvent Pointer(const FVector2D& Position, float WheelDelta = 0.0f)
	{
		return FPointerEvent(
			0, Position, Position, TSet<FKey>(), EKeys::LeftMouseButton, WheelDelta, FModifierKeysState());
	}
	static FVector2D MiddleOf(const SWidget& Widget)
	{
		const FGeometry& Geometry = Widget.GetCachedGeometry();
		return Geometry.LocalToAbsolute(FVector2D(Geometry.GetLocalSize()) / 2.0);
	}
	void Click(const FVector2D& Position)
	{
		App().ProcessMouseButtonDownEvent(nullptr, Pointer(Position));
		App().ProcessMouseButtonUpEvent(Pointer(Position));
	}
	bool Wheel(const FVector2D& Position, float Notches)
	{
		return App().ProcessMouseWheelOrGestureEvent(Pointer(Position, Notches), nullptr);
	}

	const TSharedRef<FTestPlatform> Platform;
	TSharedPtr<SWindow> Window;
};
