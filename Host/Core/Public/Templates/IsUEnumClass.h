#pragma once

/** Value is true for an enum class that is reflected. */
template <typename T>
struct TIsUEnumClass
{
	enum
	{
		Value = false
	};
};
