#pragma once

#include "HAL/Platform.h"

#include <type_traits>

/**
 * The compile-time check of Printf-like formats.
 *
 * A format is a TCHAR literal, and each specifier is checked against its argument as the engine's build does: %s wants
 * a TCHAR pointer (a dereferenced FString), %hs narrow text, %d %i %u %x an integer of at most 32 bits, %lld and its
 * kin a 64-bit integer, %f %g %e a floating-point number, %c a character, %p a pointer. A scoped enum, an FString, an
 * FName or any other class never is an argument.
 */
namespace UE::Core::Private::Format
{
enum class EArgument : uint8
{
	None,
	Integer32,
	Integer64,
	Float,
	WideText,
	NarrowText,
	Pointer,
	Unsupported,
};

template <typename ArgumentType>
consteval EArgument Classify()
{
	using T = std::decay_t<ArgumentType>;
	if constexpr (std::is_same_v<T, const TCHAR*> || std::is_same_v<T, TCHAR*>)
	{
		return EArgument::WideText;
	}
	else if constexpr (std::is_same_v<T, const char*> || std::is_same_v<T, char*> || std::is_same_v<T, const UTF8CHAR*>)
	{
		return EArgument::NarrowText;
	}
	else if constexpr (std::is_pointer_v<T> || std::is_null_pointer_v<T>)
	{
		return EArgument::Pointer;
	}
	else if constexpr (std::is_floating_point_v<T>)
	{
		return EArgument::Float;
	}
	else if constexpr (std::is_integral_v<T> || (std::is_enum_v<T> && std::is_convertible_v<T, int>))
	{
		return sizeof(T) > 4 ? EArgument::Integer64 : EArgument::Integer32;
	}
	else
	{
		return EArgument::Unsupported;
	}
}

// The checker is consteval: reaching one of these, which are not constexpr, is the compile error, and its name the
// text.
void ArgumentIsNotSupportedByPrintf();
void NotEnoughArguments();
void TooManyArguments();
void UnknownSpecifierOrUnescapedPercent();
void PercentSWantsTCharText_UsePercentHsForNarrowText();
void PercentHsWantsNarrowText();
void IntegerSpecifierWants32BitInteger();
void IntegerSpecifierWants64BitInteger();
void FloatSpecifierWantsFloatingPoint();
void PercentPWantsPointer();
void StarWantsInteger();

consteval bool IsFlag(TCHAR C)
{
	return C == u'-' || C == u'+' || C == u' ' || C == u'#' || C == u'0';
}

consteval bool IsDigit(TCHAR C)
{
	return C >= u'0' && C <= u'9';
}

struct FChecker
{
	const TCHAR* At;
	const EArgument* Arguments;
	int32 NumArguments;
	int32 Next = 0;

	consteval EArgument Take()
	{
		if (Next >= NumArguments)
		{
			NotEnoughArguments();
		}
		const EArgument Argument = Arguments[Next++];
		if (Argument == EArgument::Unsupported)
		{
			ArgumentIsNotSupportedByPrintf();
		}
		return Argument;
	}

	consteval void SkipWidth()
	{
		if (*At == u'*')
		{
			++At;
			if (Take() != EArgument::Integer32)
			{
				StarWantsInteger();
			}
			return;
		}
		while (IsDigit(*At))
		{
			++At;
		}
	}

	consteval void CheckInteger(bool b64Bit)
	{
		const EArgument Argument = Take();
		if (b64Bit && Argument != EArgument::Integer64)
		{
			IntegerSpecifierWants64BitInteger();
		}
		if (!b64Bit && Argument != EArgument::Integer32)
		{
			IntegerSpecifierWants32BitInteger();
		}
	}

	consteval void CheckText(bool bNarrow)
	{
		const EArgument Argument = Take();
		if (bNarrow && Argument != EArgument::NarrowText)
		{
			PercentHsWantsNarrowText();
		}
		if (!bNarrow && Argument != EArgument::WideText)
		{
			PercentSWantsTCharText_UsePercentHsForNarrowText();
		}
	}

	consteval void CheckFloat()
	{
		if (Take() != EArgument::Float)
		{
			FloatSpecifierWantsFloatingPoint();
		}
	}

	consteval void CheckPointer()
	{
		const EArgument Argument = Take();
		if (Argument != EArgument::Pointer && Argument != EArgument::WideText && Argument != EArgument::NarrowText)
		{
			PercentPWantsPointer();
		}
	}

	consteval void SkipFlagsAndPrecision()
	{
		while (IsFlag(*At))
		{
			++At;
		}
		SkipWidth();
		if (*At == u'.')
		{
			++At;
			SkipWidth();
		}
	}

	/** At stands behind the "%". */
	consteval void CheckSpecifier()
	{
		SkipFlagsAndPrecision();
		int32 NumH = 0;
		int32 NumL = 0;
		bool bSize = false;
		for (;; ++At)
		{
			if (*At == u'h')
			{
				++NumH;
			}
			else if (*At == u'l')
			{
				++NumL;
			}
			else if (*At == u'z' || *At == u't' || *At == u'j')
			{
				bSize = true;
			}
			else
			{
				break;
			}
		}

		switch (*At)
		{
		case u'd':
		case u'i':
		case u'u':
		case u'x':
		case u'X':
		case u'o':
			CheckInteger(NumL >= 1 || bSize);
			break;
		case u'c':
			CheckInteger(false);
			break;
		case u's':
		case u'S':
			CheckText(NumH > 0);
			break;
		case u'f':
		case u'F':
		case u'g':
		case u'G':
		case u'e':
		case u'E':
			CheckFloat();
			break;
		case u'p':
			CheckPointer();
			break;
		default:
			UnknownSpecifierOrUnescapedPercent();
		}
		++At;
	}

	consteval void Check()
	{
		while (*At)
		{
			if (*At++ != u'%')
			{
				continue;
			}
			if (*At == u'%')
			{
				++At;
				continue;
			}
			CheckSpecifier();
		}
		if (Next < NumArguments)
		{
			TooManyArguments();
		}
	}
};
}

namespace UE::Core
{
/** A format literal that has been checked against its arguments. Made only at compile time. */
template <typename... ArgumentTypes>
struct TCheckedFormatString
{
	template <int32 Length>
	consteval TCheckedFormatString(const TCHAR (&InFormat)[Length])
		: Format(InFormat)
	{
		using namespace Private::Format;
		const EArgument Arguments[] = { Classify<ArgumentTypes>()..., EArgument::None };
		FChecker{ InFormat, Arguments, static_cast<int32>(sizeof...(ArgumentTypes)) }.Check();
	}

	const TCHAR* const Format;
};

template <typename... ArgumentTypes>
constexpr void ValidateFormat(std::type_identity_t<TCheckedFormatString<ArgumentTypes...>>, const ArgumentTypes&...)
{
}
}

/** Checks a format and its arguments at compile time; evaluates nothing. */
#define UE_VALIDATE_FORMAT(format, ...)                                                                                \
	do                                                                                                                 \
	{                                                                                                                  \
		if (false)                                                                                                     \
		{                                                                                                              \
			::UE::Core::ValidateFormat(format, ##__VA_ARGS__);                                                         \
		}                                                                                                              \
	}                                                                                                                  \
	while (false)
