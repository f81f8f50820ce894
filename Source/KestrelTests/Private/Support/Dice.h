#pragma once

#include "CoreMinimal.h"
#include "Support/KestrelTest.h"

/** Numbers that are the same in every run with the same seed. The generator is Knuth's MMIX (The Art of Computer
 * Programming, 3.3.4). */
class FKestrelDice
{
public:
	/** 0 to Sides - 1. */
	int32 Roll(int32 Sides)
	{
		State = State * 6364136223846793005ull + 1442695040888963407ull;
		return static_cast<int32>((State >> 33) % static_cast<uint64>(FMath::Max(Sides, 1)));
	}

	template <typename ElementType, int32 Num>
	const ElementType& Pick(const ElementType (&Elements)[Num])
	{
		return Elements[Roll(Num)];
	}

private:
	uint64 State = 20261121 + static_cast<uint64>(KestrelTest::GetFuzzSeed());
};
