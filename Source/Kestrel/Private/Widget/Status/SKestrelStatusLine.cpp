#include "Widget/Status/SKestrelStatusLine.h"

#include "Agent/RunStatus.h"
#include "Layout/Margin.h"
#include "Layout/Visibility.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "Types/WidgetActiveTimerDelegate.h"
#include "Widget/Answer/MarkdownStyle.h"
#include "Widget/Status/StatusText.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Text/STextBlock.h"

namespace KestrelStatusLine
{
constexpr float RefreshSeconds = 0.5f;
constexpr float SideGap = 8.0f;
constexpr float BottomGap = 4.0f;
}

void SKestrelStatusLine::Construct(const FArguments& InArgs)
{
	const FTextBlockStyle Style = KestrelMarkdownStyle::MakeSmallStyle();
	// clang-format off
	ChildSlot
	[
		SNew(SBox)
		.Padding(FMargin(KestrelStatusLine::SideGap, 0.0f, KestrelStatusLine::SideGap, KestrelStatusLine::BottomGap))
		.ToolTipText_Static(&KestrelStatusText::MakeToolTip)
		[
			SAssignNew(Line, STextBlock).TextStyle(&Style).AutoWrapText(true)
		]
	];
	// clang-format on
	ChangedHandle = FKestrelRunStatus::Get().OnChanged().AddSP(this, &SKestrelStatusLine::Refresh);
	Refresh();
}

SKestrelStatusLine::~SKestrelStatusLine()
{
	FKestrelRunStatus::Get().OnChanged().Remove(ChangedHandle);
}

void SKestrelStatusLine::Refresh()
{
	const FText Text = KestrelStatusText::MakeLine();
	Line->SetText(Text);
	SetVisibility(Text.IsEmpty() ? EVisibility::Collapsed : EVisibility::Visible);
	const TSharedPtr<FActiveTimerHandle> Running = Timer.Pin();
	const bool bGoesOn = FKestrelRunStatus::IsWorking() && !Text.IsEmpty();
	if (bGoesOn && !Running.IsValid())
	{
		Timer = RegisterActiveTimer(KestrelStatusLine::RefreshSeconds,
			FWidgetActiveTimerDelegate::CreateSP(this, &SKestrelStatusLine::CountSeconds));
	}
	else if (!bGoesOn && Running.IsValid())
	{
		UnRegisterActiveTimer(Running.ToSharedRef());
		Timer.Reset();
	}
}

EActiveTimerReturnType SKestrelStatusLine::CountSeconds(double InCurrentTime, float InDeltaTime)
{
	Line->SetText(KestrelStatusText::MakeLine());
	return EActiveTimerReturnType::Continue;
}
