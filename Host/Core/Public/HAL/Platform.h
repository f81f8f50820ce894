#pragma once

#include <cstddef>
#include <cstdint>

using int8 = signed char;
using int16 = signed short;
using int32 = signed int;
using int64 = signed long long;
using uint8 = unsigned char;
using uint16 = unsigned short;
using uint32 = unsigned int;
using uint64 = unsigned long long;
using UPTRINT = uintptr_t;
using PTRINT = intptr_t;
using SIZE_T = size_t;
using SSIZE_T = ptrdiff_t;

using ANSICHAR = char;
using WIDECHAR = char16_t;
using UTF8CHAR = char8_t;
using TCHAR = char16_t;

#define TEXT_PASTE(x) u##x
/** The only portable literal of TCHAR. */
#define TEXT(x) TEXT_PASTE(x)

enum
{
	INDEX_NONE = -1
};

enum EForceInit
{
	ForceInit,
	ForceInitToZero
};

enum ENoInit
{
	NoInit
};

#define MIN_int32 (static_cast<int32>(-2147483647 - 1))
#define MAX_int32 (static_cast<int32>(2147483647))
#define MAX_uint8 (static_cast<uint8>(255))
#define MAX_uint32 (static_cast<uint32>(4294967295u))
#define MIN_int64 (static_cast<int64>(-9223372036854775807LL - 1))
#define MAX_int64 (static_cast<int64>(9223372036854775807LL))
#define MAX_flt (3.402823466e+38F)

#define PLATFORM_LINUX 1
#define PLATFORM_MAC 0
#define PLATFORM_WINDOWS 0
#define PLATFORM_DESKTOP 1
#define PLATFORM_64BITS 1

#define FORCEINLINE inline __attribute__((always_inline))
#define FORCENOINLINE __attribute__((noinline))
#define CONSTEXPR constexpr
#define RESTRICT __restrict
#define DLLEXPORT __attribute__((visibility("default")))
#define DLLIMPORT __attribute__((visibility("default")))

#define LINE_TERMINATOR TEXT("\n")
#define LINE_TERMINATOR_ANSI "\n"

#define UE_NONCOPYABLE(TypeName)                                                                                       \
	TypeName(TypeName&&) = delete;                                                                                     \
	TypeName(const TypeName&) = delete;                                                                                \
	TypeName& operator=(const TypeName&) = delete;                                                                     \
	TypeName& operator=(TypeName&&) = delete;

#define UE_ARRAY_COUNT(array) (sizeof(array) / sizeof((array)[0]))

#define PREPROCESSOR_JOIN_INNER(x, y) x##y
#define PREPROCESSOR_JOIN(x, y) PREPROCESSOR_JOIN_INNER(x, y)
#define ANONYMOUS_VARIABLE(Name) PREPROCESSOR_JOIN(Name, __LINE__)

#define WITH_EDITOR 1
#define WITH_EDITORONLY_DATA 1
#define WITH_DEV_AUTOMATION_TESTS 1
#define WITH_AUTOMATION_TESTS 1
#define WITH_HOT_RELOAD 1
#define WITH_LIVE_CODING 0
#define WITH_ACCESSIBILITY 1
#define UE_BUILD_SHIPPING 0
#define UE_BUILD_DEVELOPMENT 1
#define DO_CHECK 1
#define DO_ENSURE 1
