#pragma once

#include "Containers/Array.h"
#include "Containers/Map.h"
#include "Containers/UnrealString.h"
#include "Delegates/Delegate.h"
#include "Misc/OutputDevice.h"
#include "Misc/Timespan.h"
#include "Templates/Function.h"
#include "Templates/SharedPointer.h"

namespace EAutomationTestFlags
{
enum Type : uint32
{
	None = 0x0,
	EditorContext = 0x1,
	ProductFilter = 0x1000000,
	EngineFilter = 0x4000000,
	SmokeFilter = 0x2000000,
};
inline constexpr Type operator|(Type A, Type B)
{
	return static_cast<Type>(static_cast<uint32>(A) | static_cast<uint32>(B));
}
}

namespace EAutomationExpectedErrorFlags
{
enum MatchType
{
	Exact,
	Contains,
};
}

DECLARE_DELEGATE(FDoneDelegate);

/** A step of a test that takes several frames: called once a frame until it returns true. */
class IAutomationLatentCommand
{
public:
	virtual ~IAutomationLatentCommand() = default;
	virtual bool Update() = 0;
};

/** What happened in one test. */
struct FAutomationTestExecutionInfo
{
	TArray<FString> Errors;
	TArray<FString> Warnings;
	TArray<FString> Infos; // what a test has to tell of itself
	double DurationSeconds = 0.0;
	bool WasSuccessful() const { return Errors.IsEmpty(); }
};

/** Base of every test: checks, expected log lines, steps. An error in the log fails the test, unless it was expected.
 */
class FAutomationTestBase
{
public:
	FAutomationTestBase(const FString& InName, bool bInComplexTask);
	virtual ~FAutomationTestBase();
	UE_NONCOPYABLE(FAutomationTestBase)

	virtual FString GetBeautifiedTestName() const = 0;
	/** The names of what can be run one by one: a full name for people, and the command that RunTest gets. */
	virtual void GetTests(TArray<FString>& OutBeautifiedNames, TArray<FString>& OutTestCommands) const = 0;
	virtual bool RunTest(const FString& Parameters) = 0;

	void AddError(const FString& InError, int32 StackOffset = 0);
	void AddWarning(const FString& InWarning, int32 StackOffset = 0);
	void AddInfo(const FString& InLogItem, int32 StackOffset = 0);
	void AddExpectedError(const FString ExpectedPatternString,
		EAutomationExpectedErrorFlags::MatchType CompareType = EAutomationExpectedErrorFlags::Contains,
		int32 Occurrences = 1);
	void AddCommand(IAutomationLatentCommand* NewCommand);
	bool HasAnyErrors() const { return !ExecutionInfo.Errors.IsEmpty(); }

	bool TestTrue(const TCHAR* What, bool Value);
	bool TestTrue(const FString& What, bool Value) { return TestTrue(*What, Value); }
	bool TestFalse(const TCHAR* What, bool Value);
	bool TestFalse(const FString& What, bool Value) { return TestFalse(*What, Value); }
	/** Texts are compared as == compares them: without regard to case. */
	bool TestEqual(const TCHAR* What, const FString& Actual, const FString& Expected);
	bool TestEqual(const FString& What, const FString& Actual, const FString& Expected)
	{
		return TestEqual(*What, Actual, Expected);
	}
	bool TestEqual(const TCHAR* What, const TCHAR* Actual, const TCHAR* Expected)
	{
		return TestEqual(What, FString(Actual), FString(Expected));
	}
	bool TestEqual(const TCHAR* What, int32 Actual, int32 Expected);
	bool TestEqual(const TCHAR* What, int64 Actual, int64 Expected);
	bool TestEqual(const TCHAR* What, float Actual, float Expected, float Tolerance = 1.e-4f);
	bool TestEqual(const TCHAR* What, double Actual, double Expected, double Tolerance = 1.e-4);
	template <typename ValueType>
	bool TestEqual(const TCHAR* What, const ValueType& Actual, const ValueType& Expected)
	{
		return TestTrue(What, Actual == Expected);
	}
	/** Strings are compared exactly. */
	bool TestEqualSensitive(const TCHAR* What, const FString& Actual, const FString& Expected);
	template <typename ValueType>
	bool TestNotEqual(const TCHAR* What, const ValueType& Actual, const ValueType& Expected)
	{
		return TestTrue(What, !(Actual == Expected));
	}
	bool TestNull(const TCHAR* What, const void* Pointer) { return TestTrue(What, Pointer == nullptr); }
	bool TestNotNull(const TCHAR* What, const void* Pointer) { return TestTrue(What, Pointer != nullptr); }
	template <typename ValueType>
	bool TestValid(const TCHAR* What, const TSharedPtr<ValueType>& Pointer)
	{
		return TestTrue(What, Pointer.IsValid());
	}

	const FString& GetTestName() const { return TestName; }

protected:
	FString TestName;

private:
	friend class FAutomationTestFramework;

	struct FExpectedMessage
	{
		FString Pattern;
		EAutomationExpectedErrorFlags::MatchType CompareType;
		int32 Occurrences; // 0: any number, one at least
		int32 Seen = 0;
	};

	bool TakeExpected(const FString& Message);
	void CheckExpectedMessages();

	FAutomationTestExecutionInfo ExecutionInfo;
	TArray<FExpectedMessage> ExpectedMessages;
	TArray<TSharedPtr<IAutomationLatentCommand>> Commands;
};

/** Runs tests on the game thread, a frame at a time. */
class FAutomationTestFramework
{
public:
	static FAutomationTestFramework& Get();

	struct FTest
	{
		FAutomationTestBase* Test;
		FString FullName;
		FString Command;
	};

	/** Every test whose full name contains the filter, in order of name. An empty filter takes all. */
	TArray<FTest> FindTests(const FString& Filter) const;
	void Start(const FTest& Test);
	/** Adds a step to the running test. */
	void EnqueueLatentCommand(TSharedPtr<IAutomationLatentCommand> NewCommand);
	/** One frame of the running test. @return true when it has ended; then Stop gives what happened */
	bool Update();
	FAutomationTestExecutionInfo Stop();
	bool IsRunning() const { return Current != nullptr; }
	FAutomationTestBase* GetCurrentTest() const { return Current; }

	void Register(FAutomationTestBase* Test) { Registered.Add(Test); }
	void Unregister(FAutomationTestBase* Test) { Registered.Remove(Test); }

private:
	class FLogCapture;

	TArray<FAutomationTestBase*> Registered;
	FAutomationTestBase* Current = nullptr;
	TSharedPtr<FLogCapture> LogCapture;
	double StartTime = 0.0; // seconds of the wall
};

/** A test written with Describe and It; each It runs by itself, between the BeforeEach and AfterEach of what it lies
 * in. */
class FAutomationSpecBase : public FAutomationTestBase
{
public:
	explicit FAutomationSpecBase(const FString& InName)
		: FAutomationTestBase(InName, true)
	{
	}

	void GetTests(TArray<FString>& OutBeautifiedNames, TArray<FString>& OutTestCommands) const override;
	bool RunTest(const FString& Parameters) override;
	virtual void Define() = 0;

	void Describe(const FString& InDescription, TFunction<void()> DoWork);
	void It(const FString& InDescription, TFunction<void()> DoWork);
	void xIt(const FString& InDescription, TFunction<void()> DoWork) {}
	/** The test ends when the delegate is executed, or fails after the time-out (default 30 seconds). */
	void LatentIt(const FString& InDescription, TFunction<void(const FDoneDelegate&)> DoWork);
	void LatentIt(const FString& InDescription, const FTimespan& Timeout, TFunction<void(const FDoneDelegate&)> DoWork);
	void BeforeEach(TFunction<void()> DoWork);
	void LatentBeforeEach(TFunction<void(const FDoneDelegate&)> DoWork);
	void AfterEach(TFunction<void()> DoWork);
	void LatentAfterEach(TFunction<void(const FDoneDelegate&)> DoWork);

private:
	struct FStep
	{
		TFunction<void(const FDoneDelegate&)> Work;
		FTimespan Timeout;
	};
	struct FScope
	{
		FString Description;
		TArray<FStep> BeforeEach;
		TArray<FStep> AfterEach;
	};
	struct FSpec
	{
		FString FullName;
		TArray<TSharedPtr<FScope>> Scopes;
		FStep Step;
	};

	class FStepCommand;

	static FStep MakeStep(TFunction<void()> DoWork);
	void AddSpec(const FString& InDescription, FStep Step);
	FScope& CurrentScope();
	void EnsureDefinitions() const;

	TArray<FSpec> Specs;
	TArray<TSharedPtr<FScope>> OpenScopes;
	bool bDefined = false;
};

#define IMPLEMENT_SIMPLE_AUTOMATION_TEST(TClass, PrettyName, TFlags)                                                   \
	class TClass : public FAutomationTestBase                                                                          \
	{                                                                                                                  \
	public:                                                                                                            \
		explicit TClass(const FString& InName)                                                                         \
			: FAutomationTestBase(InName, false)                                                                       \
		{                                                                                                              \
		}                                                                                                              \
		FString GetBeautifiedTestName() const override { return TEXT(PrettyName); }                                    \
		void GetTests(TArray<FString>& OutBeautifiedNames, TArray<FString>& OutTestCommands) const override            \
		{                                                                                                              \
			OutBeautifiedNames.Add(TEXT(PrettyName));                                                                  \
			OutTestCommands.Add(FString());                                                                            \
		}                                                                                                              \
		bool RunTest(const FString& Parameters) override;                                                              \
		static constexpr EAutomationTestFlags::Type TestFlags = TFlags;                                                \
	};                                                                                                                 \
	namespace                                                                                                          \
	{                                                                                                                  \
	TClass TClass##AutomationTestInstance(TEXT(#TClass));                                                              \
	}

/** Several tests of one body: GetTests names them, RunTest gets the command of one. */
#define IMPLEMENT_COMPLEX_AUTOMATION_TEST(TClass, PrettyName, TFlags)                                                  \
	class TClass : public FAutomationTestBase                                                                          \
	{                                                                                                                  \
	public:                                                                                                            \
		explicit TClass(const FString& InName)                                                                         \
			: FAutomationTestBase(InName, true)                                                                        \
		{                                                                                                              \
		}                                                                                                              \
		FString GetBeautifiedTestName() const override { return TEXT(PrettyName); }                                    \
		void GetTests(TArray<FString>& OutBeautifiedNames, TArray<FString>& OutTestCommands) const override;           \
		bool RunTest(const FString& Parameters) override;                                                              \
		static constexpr EAutomationTestFlags::Type TestFlags = TFlags;                                                \
	};                                                                                                                 \
	namespace                                                                                                          \
	{                                                                                                                  \
	TClass TClass##AutomationTestInstance(TEXT(#TClass));                                                              \
	}

#define ADD_LATENT_AUTOMATION_COMMAND(ClassDeclaration)                                                                \
	FAutomationTestFramework::Get().EnqueueLatentCommand(MakeShareable(new ClassDeclaration))

#define BEGIN_DEFINE_SPEC(TClass, PrettyName, TFlags)                                                                  \
	class TClass : public FAutomationSpecBase                                                                          \
	{                                                                                                                  \
	public:                                                                                                            \
		explicit TClass(const FString& InName)                                                                         \
			: FAutomationSpecBase(InName)                                                                              \
		{                                                                                                              \
		}                                                                                                              \
		FString GetBeautifiedTestName() const override { return TEXT(PrettyName); }                                    \
		void Define() override;                                                                                        \
		static constexpr EAutomationTestFlags::Type TestFlags = TFlags;                                                \
                                                                                                                       \
	private:

#define END_DEFINE_SPEC(TClass)                                                                                        \
	}                                                                                                                  \
	;                                                                                                                  \
	namespace                                                                                                          \
	{                                                                                                                  \
	TClass TClass##AutomationSpecInstance(TEXT(#TClass));                                                              \
	}

#define DEFINE_SPEC(TClass, PrettyName, TFlags)                                                                        \
	BEGIN_DEFINE_SPEC(TClass, PrettyName, TFlags)                                                                      \
	END_DEFINE_SPEC(TClass)
