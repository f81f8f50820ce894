#include "Input/Events.h"
#include "CoreMinimal.h"

#include <gtest/gtest.h>

TEST(FModifierKeysStateTest, EitherSideOfAModifierCounts)
{
	using FState = FModifierKeysState;
	struct FCase
	{
		bool (FState::*Either)() const;
		bool (FState::*Left)() const;
		bool (FState::*Right)() const;
	};
	const FCase Cases[] = {
		{ &FState::IsShiftDown, &FState::IsLeftShiftDown, &FState::IsRightShiftDown },
		{ &FState::IsControlDown, &FState::IsLeftControlDown, &FState::IsRightControlDown },
		{ &FState::IsAltDown, &FState::IsLeftAltDown, &FState::IsRightAltDown },
		{ &FState::IsCommandDown, &FState::IsLeftCommandDown, &FState::IsRightCommandDown },
	};
	for (int32 Down = 0; Down < 9; ++Down)
	{
		const auto Is = [Down](int32 Key) { return Key == Down; };
		const FState State(Is(0), Is(1), Is(2), Is(3), Is(4), Is(5), Is(6), Is(7), Is(8));
		for (int32 Index = 0; Index < 4; ++Index)
		{
			EXPECT_EQ((State.*Cases[Index].Left)(), Is(2 * Index)) << Down;
			EXPECT_EQ((State.*Cases[Index].Right)(), Is(2 * Index + 1)) << Down;
			EXPECT_EQ((State.*Cases[Index].Either)(), Down / 2 == Index && Down < 8) << Down;
		}
		EXPECT_EQ(State.AreCapsLocked(), Is(8)) << Down;
	}
}

TEST(InputEventsTest, TellWhoDidWhatAndWhere)
{
	const FKeyEvent Key(EKeys::S, FModifierKeysState(), 2, true, u's', 31);
	EXPECT_EQ(Key.GetUserIndex(), 2u);
	EXPECT_EQ(Key.GetKeyCode(), 31u);
	EXPECT_TRUE(Key.IsRepeat());
	EXPECT_EQ(FFocusEvent(EFocusCause::Mouse, 3).GetUser(), 3u);

	const FPointerEvent Pointer(0, FVector2D(30, 40), FVector2D(10, 45), TSet<FKey>{ EKeys::LeftMouseButton },
		EKeys::LeftMouseButton, 0.0f, FModifierKeysState());
	EXPECT_TRUE(FVector2D(Pointer.GetLastScreenSpacePosition()) == FVector2D(10, 45));
	EXPECT_TRUE(FVector2D(Pointer.GetCursorDelta()) == FVector2D(20, -5));
	EXPECT_TRUE(Pointer.IsMouseButtonDown(EKeys::LeftMouseButton));
	EXPECT_FALSE(Pointer.IsMouseButtonDown(EKeys::RightMouseButton));
}
