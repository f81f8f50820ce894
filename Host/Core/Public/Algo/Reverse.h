#pragma once

#include "Containers/Array.h"

#include <algorithm>

namespace Algo
{
/** Turns the order of an array's elements around. */
template <typename ElementType>
void Reverse(TArray<ElementType>& Array)
{
	std::reverse(Array.GetData(), Array.GetData() + Array.Num());
}
}
