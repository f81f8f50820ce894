#include "Misc/ScopedSlowTask.h"

#include "HAL/PlatformTime.h"
#include "Logging/LogMacros.h"

DEFINE_LOG_CATEGORY_STATIC(LogSlowTask, Log, All);

namespace ScopedSlowTask
{
constexpr double SecondsBetweenLines = 1.0;
}

FScopedSlowTask::FScopedSlowTask(float InAmountOfWork, const FText& InDefaultMessage, bool bInEnabled)
	: AmountOfWork(InAmountOfWork)
	, DefaultMessage(InDefaultMessage)
	, bEnabled(bInEnabled)
{
}

FScopedSlowTask::~FScopedSlowTask()
{
	if (bShown)
	{
		Done = AmountOfWork;
		Show(FText());
	}
}

void FScopedSlowTask::MakeDialogDelayed(float Threshold, bool, bool)
{
	NextLineTime = FPlatformTime::Seconds() + static_cast<double>(Threshold);
}

void FScopedSlowTask::EnterProgressFrame(float ExpectedWorkThisFrame, const FText& Text)
{
	Done += CurrentFrame;
	CurrentFrame = ExpectedWorkThisFrame;
	if (bEnabled && NextLineTime > 0.0 && FPlatformTime::Seconds() >= NextLineTime)
	{
		Show(Text);
		NextLineTime = FPlatformTime::Seconds() + ScopedSlowTask::SecondsBetweenLines;
	}
}

void FScopedSlowTask::Show(const FText& Text)
{
	bShown = true;
	const float Percent = AmountOfWork > 0.0f ? FMath::Min(Done / AmountOfWork, 1.0f) * 100.0f : 100.0f;
	UE_LOG(LogSlowTask, Display, TEXT("%s %d %%"), *(Text.IsEmpty() ? DefaultMessage : Text).ToString(),
		FMath::RoundToInt(Percent));
}
