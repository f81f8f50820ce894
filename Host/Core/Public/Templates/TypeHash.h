#pragma once

#include "HAL/Platform.h"

#include <type_traits>

/** Mixes two hashes; the order of the arguments counts. The finaliser is MurmurHash3's fmix32 (A. Appleby, public
 * domain). */
inline uint32 HashCombine(uint32 A, uint32 B)
{
	uint32 Hash = A * 31 + B;
	Hash ^= Hash >> 16;
	Hash *= 0x85ebca6b;
	Hash ^= Hash >> 13;
	Hash *= 0xc2b2ae35;
	Hash ^= Hash >> 16;
	return Hash;
}

inline uint32 HashCombineFast(uint32 A, uint32 B)
{
	return A ^ (B + 0x9e3779b9 + (A << 6) + (A >> 2));
}

template <typename T>
requires(std::is_integral_v<T> || std::is_enum_v<T>) uint32 GetTypeHash(T Value)
{
	const uint64 Wide = static_cast<uint64>(Value);
	return static_cast<uint32>(Wide) + static_cast<uint32>(Wide >> 32) * 23;
}

inline uint32 GetTypeHash(float Value)
{
	return static_cast<uint32>(static_cast<double>(Value) == 0.0 ? 0 : __builtin_bit_cast(uint32, Value));
}

inline uint32 GetTypeHash(double Value)
{
	return Value == 0.0 ? 0 : GetTypeHash(__builtin_bit_cast(uint64, Value));
}

inline uint32 GetTypeHash(const void* Pointer)
{
	// Allocations are aligned: the low four bits say nothing.
	return GetTypeHash(static_cast<uint64>(reinterpret_cast<UPTRINT>(Pointer) >> 4));
}
