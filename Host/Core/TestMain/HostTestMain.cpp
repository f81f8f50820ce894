#include "CoreMinimal.h"
#include "Misc/OutputDeviceRedirector.h"

#include <cstdio>
#include <gtest/gtest.h>

namespace HostTestMain
{
/** Shows warnings and errors of the code under test beside the test's own lines. */
class FOutputDeviceStdErr final : public FOutputDevice
{
public:
	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override
	{
		if (Verbosity <= ELogVerbosity::Warning)
		{
			std::fprintf(stderr, "%s: %s\n", TCHAR_TO_UTF8(*Category.ToString()), TCHAR_TO_UTF8(V));
		}
	}
	bool CanBeUsedOnMultipleThreads() const override { return true; }
};
}

int main(int ArgC, char** ArgV)
{
	testing::InitGoogleTest(&ArgC, ArgV);
	// Death tests start the program again: the parent may have threads of its own by then.
	GTEST_FLAG_SET(death_test_style, "threadsafe");
	HostTestMain::FOutputDeviceStdErr StdErr;
	GLog->AddOutputDevice(&StdErr);
	const int Result = RUN_ALL_TESTS();
	GLog->RemoveOutputDevice(&StdErr);
	return Result;
}
