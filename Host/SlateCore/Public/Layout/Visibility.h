#pragma once

#include "CoreMinimal.h"

/** Whether a widget is drawn, takes space and can be hit. A struct, so there is no switch over it. */
struct EVisibility
{
	static const EVisibility Visible;
	/** Neither drawn nor given space. */
	static const EVisibility Collapsed;
	/** Not drawn, but keeps its space. */
	static const EVisibility Hidden;
	/** Drawn; neither it nor its children can be hit. */
	static const EVisibility HitTestInvisible;
	/** Drawn; its children can be hit, itself not. */
	static const EVisibility SelfHitTestInvisible;
	static const EVisibility All;

	constexpr EVisibility() = default;

	bool operator==(const EVisibility& Other) const { return Value == Other.Value; }
	bool operator!=(const EVisibility& Other) const { return Value != Other.Value; }

	/** True for all but Collapsed and Hidden. */
	bool IsVisible() const { return (Value & Drawn) != 0; }
	bool AreChildrenHitTestVisible() const { return (Value & ChildrenHit) != 0; }
	bool IsHitTestVisible() const { return (Value & SelfHit) != 0; }
	bool TakesSpace() const { return (Value & Space) != 0; }

	FString ToString() const;

private:
	enum EBits : uint8
	{
		Drawn = 1 << 0,
		Space = 1 << 1,
		SelfHit = 1 << 2,
		ChildrenHit = 1 << 3,
	};

	constexpr explicit EVisibility(int Bits)
		: Value(static_cast<uint8>(Bits))
	{
	}

	uint8 Value = Drawn | Space | SelfHit | ChildrenHit;
};

inline constexpr EVisibility EVisibility::Visible{ Drawn | Space | SelfHit | ChildrenHit };
inline constexpr EVisibility EVisibility::Collapsed{ 0 };
inline constexpr EVisibility EVisibility::Hidden{ Space };
inline constexpr EVisibility EVisibility::HitTestInvisible{ Drawn | Space };
inline constexpr EVisibility EVisibility::SelfHitTestInvisible{ Drawn | Space | ChildrenHit };
inline constexpr EVisibility EVisibility::All{ Drawn | Space | SelfHit | ChildrenHit };
