#pragma once

#include "HAL/Platform.h"

#include <cstdlib>
#include <cstring>

/**
 * The memory of the containers. Elements are relocated by copying their bytes, as the engine does: a type that holds a
 * pointer into itself (a short-string buffer, for one) cannot live in them. FString keeps its text in a TArray for it.
 */
namespace UE::Core::Private
{
inline void* Realloc(void* Old, SIZE_T NumBytes, SIZE_T Alignment)
{
	static_assert(alignof(max_align_t) >= 16);
	if (NumBytes == 0)
	{
		std::free(Old);
		return nullptr;
	}
	return std::realloc(Old, NumBytes);
}

inline void Free(void* Memory)
{
	std::free(Memory);
}

inline void Move(void* Destination, const void* Source, SIZE_T NumBytes)
{
	if (NumBytes)
	{
		std::memmove(Destination, Source, NumBytes);
	}
}

/** The places must not overlap. */
inline void Copy(void* Destination, const void* Source, SIZE_T NumBytes)
{
	if (NumBytes)
	{
		std::memcpy(Destination, Source, NumBytes);
	}
}

inline void Zero(void* Destination, SIZE_T NumBytes)
{
	if (NumBytes)
	{
		std::memset(Destination, 0, NumBytes);
	}
}
}
