#pragma once

#include "Templates/TypeHash.h"

/** An old, unscoped enum kept in one byte, as reflected variables need it. */
template <typename InEnumType>
class TEnumAsByte
{
public:
	using EnumType = InEnumType;
	static_assert(std::is_convertible_v<InEnumType, int>, "TEnumAsByte is for unscoped enums; enum class has a size");

	TEnumAsByte() = default;
	TEnumAsByte(InEnumType InValue)
		: Value(static_cast<uint8>(InValue))
	{
	}
	explicit TEnumAsByte(uint8 InValue)
		: Value(InValue)
	{
	}

	operator InEnumType() const { return GetValue(); }
	InEnumType GetValue() const { return static_cast<InEnumType>(Value); }
	uint8 GetIntValue() const { return Value; }
	bool operator==(InEnumType Other) const { return GetValue() == Other; }
	bool operator==(TEnumAsByte Other) const { return Value == Other.Value; }
	friend uint32 GetTypeHash(const TEnumAsByte& Enum) { return ::GetTypeHash(Enum.Value); }

private:
	uint8 Value = 0;
};
