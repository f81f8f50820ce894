#pragma once

#include <type_traits>

/** Gives an enum class the bit operators. */
#define ENUM_CLASS_FLAGS(Enum)                                                                                         \
	inline constexpr Enum& operator|=(Enum& A, Enum B)                                                                 \
	{                                                                                                                  \
		return A = static_cast<Enum>(std::underlying_type_t<Enum>(A) | std::underlying_type_t<Enum>(B));               \
	}                                                                                                                  \
	inline constexpr Enum& operator&=(Enum& A, Enum B)                                                                 \
	{                                                                                                                  \
		return A = static_cast<Enum>(std::underlying_type_t<Enum>(A) & std::underlying_type_t<Enum>(B));               \
	}                                                                                                                  \
	inline constexpr Enum operator|(Enum A, Enum B)                                                                    \
	{                                                                                                                  \
		return static_cast<Enum>(std::underlying_type_t<Enum>(A) | std::underlying_type_t<Enum>(B));                   \
	}                                                                                                                  \
	inline constexpr Enum operator&(Enum A, Enum B)                                                                    \
	{                                                                                                                  \
		return static_cast<Enum>(std::underlying_type_t<Enum>(A) & std::underlying_type_t<Enum>(B));                   \
	}                                                                                                                  \
	inline constexpr Enum operator^(Enum A, Enum B)                                                                    \
	{                                                                                                                  \
		return static_cast<Enum>(std::underlying_type_t<Enum>(A) ^ std::underlying_type_t<Enum>(B));                   \
	}                                                                                                                  \
	inline constexpr bool operator!(Enum E)                                                                            \
	{                                                                                                                  \
		return !std::underlying_type_t<Enum>(E);                                                                       \
	}                                                                                                                  \
	inline constexpr Enum operator~(Enum E)                                                                            \
	{                                                                                                                  \
		return static_cast<Enum>(~std::underlying_type_t<Enum>(E));                                                    \
	}

template <typename Enum>
constexpr bool EnumHasAnyFlags(Enum Flags, Enum Contains)
{
	return (static_cast<std::underlying_type_t<Enum>>(Flags) & static_cast<std::underlying_type_t<Enum>>(Contains)) !=
		   0;
}

template <typename Enum>
constexpr bool EnumHasAllFlags(Enum Flags, Enum Contains)
{
	return (static_cast<std::underlying_type_t<Enum>>(Flags) & static_cast<std::underlying_type_t<Enum>>(Contains)) ==
		   static_cast<std::underlying_type_t<Enum>>(Contains);
}
