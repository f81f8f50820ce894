#pragma once

#include "Logging/LogCategory.h"
#include "Misc/AssertionMacros.h"

struct FMsg
{
	static void Logf(const ANSICHAR* File, int32 Line, const FName& Category, ELogVerbosity::Type Verbosity,
		const TCHAR* Format, ...);
};

#define DECLARE_LOG_CATEGORY_EXTERN(CategoryName, DefaultVerbosity, CompileTimeVerbosity)                              \
	extern struct FLogCategory##CategoryName                                                                           \
		: public FLogCategory<ELogVerbosity::DefaultVerbosity, ELogVerbosity::CompileTimeVerbosity>                    \
	{                                                                                                                  \
		FLogCategory##CategoryName()                                                                                   \
			: FLogCategory(TEXT(#CategoryName))                                                                        \
		{                                                                                                              \
		}                                                                                                              \
	} CategoryName;

#define DEFINE_LOG_CATEGORY(CategoryName) FLogCategory##CategoryName CategoryName;

#define DEFINE_LOG_CATEGORY_STATIC(CategoryName, DefaultVerbosity, CompileTimeVerbosity)                               \
	static struct FLogCategory##CategoryName                                                                           \
		: public FLogCategory<ELogVerbosity::DefaultVerbosity, ELogVerbosity::CompileTimeVerbosity>                    \
	{                                                                                                                  \
		FLogCategory##CategoryName()                                                                                   \
			: FLogCategory(TEXT(#CategoryName))                                                                        \
		{                                                                                                              \
		}                                                                                                              \
	} CategoryName;

/** The format is a literal, checked against its arguments at compile time. Fatal ends the process. */
#define UE_LOG(CategoryName, Verbosity, Format, ...)                                                                   \
	do                                                                                                                 \
	{                                                                                                                  \
		UE_VALIDATE_FORMAT(Format, ##__VA_ARGS__);                                                                     \
		if constexpr (ELogVerbosity::Verbosity <= decltype(CategoryName)::CompileTimeVerbosity)                        \
		{                                                                                                              \
			if (!CategoryName.IsSuppressed(ELogVerbosity::Verbosity))                                                  \
			{                                                                                                          \
				FMsg::Logf(__FILE__, __LINE__, CategoryName.GetCategoryName(), ELogVerbosity::Verbosity, Format,       \
					##__VA_ARGS__);                                                                                    \
			}                                                                                                          \
		}                                                                                                              \
	}                                                                                                                  \
	while (false)

#define UE_CLOG(Condition, CategoryName, Verbosity, Format, ...)                                                       \
	do                                                                                                                 \
	{                                                                                                                  \
		if (Condition)                                                                                                 \
		{                                                                                                              \
			UE_LOG(CategoryName, Verbosity, Format, ##__VA_ARGS__);                                                    \
		}                                                                                                              \
	}                                                                                                                  \
	while (false)

DECLARE_LOG_CATEGORY_EXTERN(LogTemp, Log, All);
