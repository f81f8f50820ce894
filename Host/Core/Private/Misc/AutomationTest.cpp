#include "Misc/AutomationTest.h"

#include "CoreGlobals.h"
#include "HAL/PlatformTime.h"
#include "Misc/OutputDeviceRedirector.h"

FAutomationTestBase::FAutomationTestBase(const FString& InName, bool bInComplexTask)
	: TestName(InName)
{
	FAutomationTestFramework::Get().Register(this);
}

FAutomationTestBase::~FAutomationTestBase()
{
	FAutomationTestFramework::Get().Unregister(this);
}

void FAutomationTestBase::AddError(const FString& InError, int32 StackOffset)
{
	if (!TakeExpected(InError))
	{
		ExecutionInfo.Errors.Add(InError);
	}
}

void FAutomationTestBase::AddWarning(const FString& InWarning, int32 StackOffset)
{
	if (!TakeExpected(InWarning))
	{
		ExecutionInfo.Warnings.Add(InWarning);
	}
}

void FAutomationTestBase::AddInfo(const FString& InLogItem, int32 StackOffset)
{
	UE_LOG(LogTemp, Display, TEXT("%s: %s"), *TestName, *InLogItem);
	ExecutionInfo.Infos.Add(InLogItem);
}

void FAutomationTestBase::AddExpectedError(
	const FString ExpectedPatternString, EAutomationExpectedErrorFlags::MatchType CompareType, int32 Occurrences)
{
	ExpectedMessages.Add({ ExpectedPatternString, CompareType, Occurrences });
}

void FAutomationTestBase::AddCommand(IAutomationLatentCommand* NewCommand)
{
	Commands.Add(MakeShareable(NewCommand));
}

bool FAutomationTestBase::TakeExpected(const FString& Message)
{
	for (FExpectedMessage& Expected : ExpectedMessages)
	{
		const bool bMatches = Expected.CompareType == EAutomationExpectedErrorFlags::Exact
								  ? Message.Equals(Expected.Pattern)
								  : Message.Contains(Expected.Pattern);
		if (bMatches && (Expected.Occurrences == 0 || Expected.Seen < Expected.Occurrences))
		{
			++Expected.Seen;
			return true;
		}
	}
	return false;
}

void FAutomationTestBase::CheckExpectedMessages()
{
	for (const FExpectedMessage& Expected : ExpectedMessages)
	{
		const int32 Wanted = Expected.Occurrences == 0 ? 1 : Expected.Occurrences;
		if (Expected.Seen < Wanted)
		{
			ExecutionInfo.Errors.Add(
				FString::Printf(TEXT("Expected '%s' in the log %d time(s), but it came %d time(s)"), *Expected.Pattern,
					Wanted, Expected.Seen));
		}
	}
	ExpectedMessages.Empty();
}

bool FAutomationTestBase::TestTrue(const TCHAR* What, bool Value)
{
	if (!Value)
	{
		AddError(FString::Printf(TEXT("Expected '%s' to be true."), What), 1);
	}
	return Value;
}

bool FAutomationTestBase::TestFalse(const TCHAR* What, bool Value)
{
	if (Value)
	{
		AddError(FString::Printf(TEXT("Expected '%s' to be false."), What), 1);
	}
	return !Value;
}

bool FAutomationTestBase::TestEqual(const TCHAR* What, const FString& Actual, const FString& Expected)
{
	if (Actual != Expected)
	{
		AddError(FString::Printf(TEXT("Expected '%s' to be \"%s\", but it was \"%s\"."), What, *Expected, *Actual), 1);
		return false;
	}
	return true;
}

bool FAutomationTestBase::TestEqualSensitive(const TCHAR* What, const FString& Actual, const FString& Expected)
{
	if (!Actual.Equals(Expected))
	{
		AddError(FString::Printf(TEXT("Expected '%s' to be \"%s\", but it was \"%s\"."), What, *Expected, *Actual), 1);
		return false;
	}
	return true;
}

bool FAutomationTestBase::TestEqual(const TCHAR* What, int32 Actual, int32 Expected)
{
	return TestEqual(What, static_cast<int64>(Actual), static_cast<int64>(Expected));
}

bool FAutomationTestBase::TestEqual(const TCHAR* What, int64 Actual, int64 Expected)
{
	if (Actual != Expected)
	{
		AddError(FString::Printf(TEXT("Expected '%s' to be %lld, but it was %lld."), What, Expected, Actual), 1);
		return false;
	}
	return true;
}

bool FAutomationTestBase::TestEqual(const TCHAR* What, float Actual, float Expected, float Tolerance)
{
	return TestEqual(What, static_cast<double>(Actual), static_cast<double>(Expected), static_cast<double>(Tolerance));
}

bool FAutomationTestBase::TestEqual(const TCHAR* What, double Actual, double Expected, double Tolerance)
{
	if (!FMath::IsNearlyEqual(Actual, Expected, Tolerance))
	{
		AddError(FString::Printf(TEXT("Expected '%s' to be %f, but it was %f within tolerance %f."), What, Expected,
					 Actual, Tolerance),
			1);
		return false;
	}
	return true;
}

/** Turns the log's errors and warnings into the running test's. */
class FAutomationTestFramework::FLogCapture final : public FOutputDevice
{
public:
	explicit FLogCapture(FAutomationTestBase& InTest)
		: Test(InTest)
	{
		GLog->AddOutputDevice(this);
	}
	~FLogCapture() override { GLog->RemoveOutputDevice(this); }
	UE_NONCOPYABLE(FLogCapture)

	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override
	{
		if (Verbosity == ELogVerbosity::Error)
		{
			Test.AddError(V);
		}
		else if (Verbosity == ELogVerbosity::Warning)
		{
			Test.AddWarning(V);
		}
	}

private:
	FAutomationTestBase& Test;
};

FAutomationTestFramework& FAutomationTestFramework::Get()
{
	// Never destroyed: tests register and leave from static objects of any library.
	static FAutomationTestFramework* Framework = new FAutomationTestFramework;
	return *Framework;
}

TArray<FAutomationTestFramework::FTest> FAutomationTestFramework::FindTests(const FString& Filter) const
{
	TArray<FTest> Found;
	for (FAutomationTestBase* Test : Registered)
	{
		TArray<FString> Names;
		TArray<FString> TestCommands;
		Test->GetTests(Names, TestCommands);
		for (int32 Index = 0; Index < Names.Num(); ++Index)
		{
			const FString Prefix = Test->GetBeautifiedTestName();
			const FString FullName = Names[Index].StartsWith(Prefix) ? Names[Index] : Prefix + TEXT(".") + Names[Index];
			if (FullName.Contains(Filter))
			{
				Found.Add({ Test, FullName, TestCommands[Index] });
			}
		}
	}
	Found.StableSort([](const FTest& A, const FTest& B) { return A.FullName < B.FullName; });
	return Found;
}

void FAutomationTestFramework::Start(const FTest& Test)
{
	checkf(!Current, TEXT("A test is running already"));
	Current = Test.Test;
	Current->ExecutionInfo = FAutomationTestExecutionInfo();
	Current->ExpectedMessages.Empty();
	Current->Commands.Empty();
	LogCapture = MakeShared<FLogCapture>(*Current);
	StartTime = FPlatformTime::ToSeconds64(FPlatformTime::Cycles64());
	if (!Current->RunTest(Test.Command) && !Current->HasAnyErrors())
	{
		Current->AddError(TEXT("The test returned false."));
	}
}

void FAutomationTestFramework::EnqueueLatentCommand(TSharedPtr<IAutomationLatentCommand> NewCommand)
{
	checkf(Current, TEXT("Steps are added by the running test"));
	Current->Commands.Add(NewCommand);
}

bool FAutomationTestFramework::Update()
{
	while (!Current->Commands.IsEmpty())
	{
		const TSharedPtr<IAutomationLatentCommand> Command = Current->Commands[0];
		if (!Command->Update())
		{
			return false;
		}
		Current->Commands.Remove(Command);
	}
	return true;
}

FAutomationTestExecutionInfo FAutomationTestFramework::Stop()
{
	GLog->FlushThreadedLogs();
	LogCapture.Reset();
	Current->Commands.Empty();
	Current->CheckExpectedMessages();
	FAutomationTestExecutionInfo Info = Current->ExecutionInfo;
	Info.DurationSeconds = FPlatformTime::ToSeconds64(FPlatformTime::Cycles64()) - StartTime;
	Current = nullptr;
	return Info;
}

/** One step of a spec: started at its first update, done when its delegate is executed. */
class FAutomationSpecBase::FStepCommand final : public IAutomationLatentCommand
{
public:
	FStepCommand(FAutomationSpecBase& InSpec, const FStep& InStep, bool bInSkipOnError)
		: Spec(InSpec)
		, Step(InStep)
		, bSkipOnError(bInSkipOnError)
		, bDone(MakeShared<bool>(false))
	{
	}

	bool Update() override
	{
		if (StartTime == 0.0)
		{
			if (bSkipOnError && Spec.HasAnyErrors())
			{
				return true;
			}
			StartTime = FPlatformTime::Seconds();
			Step.Work(FDoneDelegate::CreateLambda([bDone = bDone]() { *bDone = true; }));
		}
		else if (!*bDone && FPlatformTime::Seconds() - StartTime > Step.Timeout.GetTotalSeconds())
		{
			Spec.AddError(
				FString::Printf(TEXT("Latent command timed out after %.1f seconds"), Step.Timeout.GetTotalSeconds()));
			return true;
		}
		return *bDone;
	}

private:
	FAutomationSpecBase& Spec;
	FStep Step;
	const bool bSkipOnError;
	TSharedRef<bool> bDone;
	double StartTime = 0.0; // seconds of FPlatformTime; 0 before the start
};

namespace AutomationSpec
{
constexpr double DefaultTimeoutSeconds = 30.0;

FString Join(const FString& Left, const FString& Right)
{
	return Left.IsEmpty() ? Right : Left + TEXT(" ") + Right;
}
}

FAutomationSpecBase::FStep FAutomationSpecBase::MakeStep(TFunction<void()> DoWork)
{
	const auto Work = [DoWork](const FDoneDelegate& Done) {
		DoWork();
		Done.Execute();
	};
	return { Work, FTimespan::FromSeconds(AutomationSpec::DefaultTimeoutSeconds) };
}

FAutomationSpecBase::FScope& FAutomationSpecBase::CurrentScope()
{
	checkf(!OpenScopes.IsEmpty(), TEXT("Steps are defined inside Define()"));
	return *OpenScopes.Last();
}

void FAutomationSpecBase::EnsureDefinitions() const
{
	FAutomationSpecBase& Self = const_cast<FAutomationSpecBase&>(*this);
	if (bDefined)
	{
		return;
	}
	Self.bDefined = true;
	Self.OpenScopes.Add(MakeShared<FScope>());
	Self.Define();
	Self.OpenScopes.Empty();
}

void FAutomationSpecBase::GetTests(TArray<FString>& OutBeautifiedNames, TArray<FString>& OutTestCommands) const
{
	EnsureDefinitions();
	for (const FSpec& Spec : Specs)
	{
		OutBeautifiedNames.Add(GetBeautifiedTestName() + TEXT(".") + Spec.FullName);
		OutTestCommands.Add(Spec.FullName);
	}
}

bool FAutomationSpecBase::RunTest(const FString& Parameters)
{
	EnsureDefinitions();
	const FSpec* Spec = Specs.FindByPredicate([&](const FSpec& Each) { return Each.FullName.Equals(Parameters); });
	if (!Spec)
	{
		AddError(FString::Printf(TEXT("There is no test '%s'"), *Parameters));
		return false;
	}
	for (const TSharedPtr<FScope>& Scope : Spec->Scopes)
	{
		for (const FStep& Step : Scope->BeforeEach)
		{
			AddCommand(new FStepCommand(*this, Step, true));
		}
	}
	AddCommand(new FStepCommand(*this, Spec->Step, true));
	for (int32 Index = Spec->Scopes.Num() - 1; Index >= 0; --Index)
	{
		for (const FStep& Step : Spec->Scopes[Index]->AfterEach)
		{
			AddCommand(new FStepCommand(*this, Step, false));
		}
	}
	return true;
}

void FAutomationSpecBase::Describe(const FString& InDescription, TFunction<void()> DoWork)
{
	const TSharedRef<FScope> Scope = MakeShared<FScope>();
	Scope->Description = InDescription;
	OpenScopes.Add(Scope);
	DoWork();
	OpenScopes.Pop();
}

void FAutomationSpecBase::AddSpec(const FString& InDescription, FStep Step)
{
	FString FullName;
	for (const TSharedPtr<FScope>& Scope : OpenScopes)
	{
		FullName = Scope->Description.IsEmpty() ? FullName : AutomationSpec::Join(FullName, Scope->Description);
	}
	FSpec& Spec = Specs.Emplace_GetRef();
	Spec.FullName = AutomationSpec::Join(FullName, InDescription);
	Spec.Scopes = OpenScopes;
	Spec.Step = MoveTemp(Step);
}

void FAutomationSpecBase::It(const FString& InDescription, TFunction<void()> DoWork)
{
	AddSpec(InDescription, MakeStep(MoveTemp(DoWork)));
}

void FAutomationSpecBase::LatentIt(const FString& InDescription, TFunction<void(const FDoneDelegate&)> DoWork)
{
	LatentIt(InDescription, FTimespan::FromSeconds(AutomationSpec::DefaultTimeoutSeconds), MoveTemp(DoWork));
}

void FAutomationSpecBase::LatentIt(
	const FString& InDescription, const FTimespan& Timeout, TFunction<void(const FDoneDelegate&)> DoWork)
{
	AddSpec(InDescription, { MoveTemp(DoWork), Timeout });
}

void FAutomationSpecBase::BeforeEach(TFunction<void()> DoWork)
{
	CurrentScope().BeforeEach.Add(MakeStep(MoveTemp(DoWork)));
}

void FAutomationSpecBase::LatentBeforeEach(TFunction<void(const FDoneDelegate&)> DoWork)
{
	CurrentScope().BeforeEach.Add({ MoveTemp(DoWork), FTimespan::FromSeconds(AutomationSpec::DefaultTimeoutSeconds) });
}

void FAutomationSpecBase::AfterEach(TFunction<void()> DoWork)
{
	CurrentScope().AfterEach.Add(MakeStep(MoveTemp(DoWork)));
}

void FAutomationSpecBase::LatentAfterEach(TFunction<void(const FDoneDelegate&)> DoWork)
{
	CurrentScope().AfterEach.Add({ MoveTemp(DoWork), FTimespan::FromSeconds(AutomationSpec::DefaultTimeoutSeconds) });
}
