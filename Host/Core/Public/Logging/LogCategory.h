#pragma once

#include "Logging/LogVerbosity.h"
#include "UObject/NameTypes.h"

/** A subject of the log, with the verbosity up to which its lines are kept. */
struct FLogCategoryBase
{
	FLogCategoryBase(
		const TCHAR* InName, ELogVerbosity::Type InDefaultVerbosity, ELogVerbosity::Type InCompileTimeVerbosity);

	bool IsSuppressed(ELogVerbosity::Type Level) const { return Level > Verbosity; }
	FName GetCategoryName() const { return CategoryName; }

private:
	ELogVerbosity::Type Verbosity;
	const FName CategoryName;
};

template <ELogVerbosity::Type InDefaultVerbosity, ELogVerbosity::Type InCompileTimeVerbosity>
struct FLogCategory : FLogCategoryBase
{
	static constexpr ELogVerbosity::Type CompileTimeVerbosity = InCompileTimeVerbosity;
	explicit FLogCategory(const TCHAR* InName)
		: FLogCategoryBase(InName, InDefaultVerbosity, InCompileTimeVerbosity)
	{
	}
};
