#include "Widget/SKestrelUndoButton.h"

#include "HAL/PlatformTime.h"

#define LOCTEXT_NAMESPACE "SKestrelUndoButton"

void SKestrelUndoButton::SetTexts(const FText& InName, const FText& InToolTip, const FText& InNothingToDo)
{
	Name = InName;
	ToolTip = InToolTip;
	NothingToDo = InNothingToDo;
}

FText SKestrelUndoButton::Describe()
{
	constexpr double PeriodSeconds = 1.0;
	constexpr int32 MaxFiles = 20; // of those that are read while the tool tip is shown
	if (!IsEnabled())
	{
		return NothingToDo;
	}
	// It is asked for in every frame.
	const double Now = FPlatformTime::Seconds();
	if (Described.IsEmpty() || Now - TimeDescribed > PeriodSeconds)
	{
		const FKestrelUndoPreview Touched = Preview.Execute(MaxFiles);
		Described =
			FText::Format(LOCTEXT("ToolTip", "{0}: {1}. {2}"), ToolTip, Touched.Describe(), Touched.DescribeOthers());
		Described = FText::FromString(Described.ToString().TrimEnd());
		TimeDescribed = Now;
	}
	return Described;
}

bool SKestrelUndoButton::MayGoOn(FText& OutQuestion)
{
	const FText AtStake = Preview.Execute(MAX_int32).DescribeOthers();
	if (AtStake.IsEmpty() || AtStake.EqualTo(Asked))
	{
		ForgetQuestion();
		Described = FText::GetEmpty();
		return true;
	}
	Asked = AtStake;
	OutQuestion = FText::Format(LOCTEXT("Question", "{0} Press {1} again to go on."), AtStake, Name);
	return false;
}

#undef LOCTEXT_NAMESPACE
