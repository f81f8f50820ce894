#pragma once

#include "CoreMinimal.h"

class UEdGraph;

/**
 * A number that differs after any change of a graph that can be seen in it, unless two happen to collide.
 *
 * Scripts and undo write into nodes and tell nobody, so events would not do. Reading the nodes of a large graph takes
 * less than a millisecond.
 */
class FGraphFingerprint
{
public:
	static uint64 Of(const UEdGraph& Graph);
};
