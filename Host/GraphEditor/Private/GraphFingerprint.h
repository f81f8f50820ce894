#pragma once

#include "CoreMinimal.h"

class UEdGraph;

/**
 * A number that is another one, but for luck, after any change of a graph that can be seen in it.
 *
 * Scripts and undo write into nodes and tell nobody, so events would not do. Reading the nodes of a large graph takes
 * less than a millisecond.
 */
class FGraphFingerprint
{
public:
	static uint64 Of(const UEdGraph& Graph);
};
