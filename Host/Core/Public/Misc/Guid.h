#pragma once

#include "Containers/UnrealString.h"

enum class EGuidFormats
{
	Digits, // 32 upper-case hexadecimal digits
	DigitsLower,
	DigitsWithHyphens, // 8-4-4-4-12
	DigitsWithHyphensLower,
};

/** A 128-bit identifier. */
struct FGuid
{
	uint32 A = 0;
	uint32 B = 0;
	uint32 C = 0;
	uint32 D = 0;

	constexpr FGuid() = default;
	constexpr FGuid(uint32 InA, uint32 InB, uint32 InC, uint32 InD)
		: A(InA)
		, B(InB)
		, C(InC)
		, D(InD)
	{
	}

	/** A random one (version 4). */
	static FGuid NewGuid();
	/** Reads 32 hexadecimal digits, with or without hyphens. */
	static bool Parse(const FString& GuidString, FGuid& OutGuid);

	/** False only for all zero. */
	bool IsValid() const { return (A | B | C | D) != 0; }
	void Invalidate() { A = B = C = D = 0; }
	FString ToString(EGuidFormats Format = EGuidFormats::Digits) const;

	bool operator==(const FGuid&) const = default;
	friend uint32 GetTypeHash(const FGuid& Guid)
	{
		return HashCombine(HashCombine(Guid.A, Guid.B), HashCombine(Guid.C, Guid.D));
	}
};
