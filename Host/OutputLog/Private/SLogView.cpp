#include "SLogView.h"

#include "Fonts/FontMeasure.h"
#include "Framework/Application/SlateApplication.h"
#include "HAL/PlatformApplicationMisc.h"
#include "Rendering/DrawElements.h"
#include "Rendering/SlateRenderer.h"
#include "Styling/AppStyle.h"
#include "Styling/CoreStyle.h"
#include "Styling/SlateTypes.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"

namespace LogView
{
// Slate units.
constexpr double WheelStep = 48.0;
constexpr double SidewaysStep = 40.0;
constexpr double LeftMargin = 6.0;
constexpr double RoundingError = 0.5;
constexpr float FontPoints = 9.0f;

static const FSlateFontInfo& GetFont()
{
	static const FSlateFontInfo Font = FCoreStyle::GetDefaultFontStyle("Mono", FontPoints);
	return Font;
}

static FLinearColor GetColor(ELogVerbosity::Type Verbosity, const FLinearColor& Ordinary)
{
	switch (Verbosity)
	{
	case ELogVerbosity::Fatal:
	case ELogVerbosity::Error:
		return FColor(255, 100, 90);
	case ELogVerbosity::Warning:
		return FColor(240, 200, 80);
	case ELogVerbosity::Display:
		return FLinearColor::White;
	case ELogVerbosity::Verbose:
	case ELogVerbosity::VeryVerbose:
		return FColor(120, 120, 120);
	default:
		return Ordinary;
	}
}
}

/** Its value is the lines in view. */
class FAccessibleLogView final : public FSlateAccessibleWidget, public IAccessibleText
{
public:
	explicit FAccessibleLogView(TSharedRef<SWidget> InWidget)
		: FSlateAccessibleWidget(InWidget, EAccessibleWidgetType::Text)
	{
	}

	virtual IAccessibleText* AsText() override { return this; }
	virtual FString GetText() const override
	{
		const TSharedPtr<SLogView> View = StaticCastSharedPtr<SLogView>(Widget.Pin());
		if (!View.IsValid() || View->GetNumLines() == 0)
		{
			return FString();
		}
		const int32 First = static_cast<int32>(View->Offset / View->LineHeight);
		const int32 Last = static_cast<int32>((View->Offset + View->ViewHeight) / View->LineHeight);
		return View->JoinLines(First, Last);
	}
};

void SLogView::Construct(const FArguments& InArgs, const TSharedRef<const FOutputLogHistory>& InHistory)
{
	History = InHistory;
	OnViewMoved = InArgs._OnViewMoved;
	OnViewMovedSideways = InArgs._OnViewMovedSideways;
	SetCanTick(true);
	const FVector2D Cell = FSlateApplication::Get().GetRenderer()->GetFontMeasureService()->Measure(
		FStringView(TEXT("X")), LogView::GetFont());
	CharacterWidth = static_cast<float>(Cell.X);
	LineHeight = static_cast<float>(Cell.Y);
}

void SLogView::SetFilter(const FString& InFilter)
{
	FilterWords.Empty();
	InFilter.ParseIntoArrayWS(FilterWords);
	ShowAnew();
}

void SLogView::SetLevelShown(ELogVerbosity::Type Level, bool bIsShown)
{
	bIsShown ? void(HiddenLevels.Remove(Level)) : void(HiddenLevels.Add(Level));
	ShowAnew();
}

void SLogView::SetCategoryShown(FName Category, bool bIsShown)
{
	bIsShown ? void(HiddenCategories.Remove(Category)) : void(HiddenCategories.Add(Category));
	ShowAnew();
}

void SLogView::ShowAnew()
{
	Shown.Empty();
	LongestLine = 0;
	NextNumber = ClearedUpTo;
	bFollowsEnd = true;
	Update();
}

void SLogView::Clear()
{
	ClearedUpTo = History->GetEnd();
	NextNumber = ClearedUpTo;
	Shown.Empty();
	LongestLine = 0;
	SelectionAnchor = INDEX_NONE;
	bFollowsEnd = true;
}

bool SLogView::Matches(const FOutputLogLine& Line) const
{
	const ELogVerbosity::Type Level = Line.Verbosity <= ELogVerbosity::Error     ? ELogVerbosity::Error
									  : Line.Verbosity == ELogVerbosity::Warning ? ELogVerbosity::Warning
																				 : ELogVerbosity::Log;
	if (!IsLevelShown(Level) || !IsCategoryShown(Line.Category))
	{
		return false;
	}
	for (const FString& Word : FilterWords)
	{
		if (!Line.Text.Contains(Word))
		{
			return false;
		}
	}
	return true;
}

void SLogView::Update()
{
	int32 NumGone = 0;
	while (NumGone < Shown.Num() && Shown[NumGone] < History->GetFirst())
	{
		++NumGone;
	}
	Shown.RemoveAt(0, NumGone);
	// What is being read stays where it is.
	Offset = bFollowsEnd ? Offset : FMath::Max(Offset - static_cast<double>(NumGone) * LineHeight, 0.0);
	for (NextNumber = FMath::Max(NextNumber, History->GetFirst()); NextNumber < History->GetEnd(); ++NextNumber)
	{
		const FOutputLogLine& Line = History->GetLine(NextNumber);
		if (Matches(Line))
		{
			Shown.Add(NextNumber);
			LongestLine = FMath::Max(LongestLine, Line.Text.Len());
		}
	}
}

double SLogView::GetLongestOffset() const
{
	return FMath::Max(static_cast<double>(Shown.Num()) * LineHeight - ViewHeight, 0.0);
}

double SLogView::GetLongestSidewaysOffset() const
{
	const double Whole = static_cast<double>(LongestLine) * CharacterWidth + 2.0 * LogView::LeftMargin;
	return FMath::Max(Whole - ViewWidth, 0.0);
}

void SLogView::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	ViewHeight = AllottedGeometry.GetLocalSize().Y;
	ViewWidth = AllottedGeometry.GetLocalSize().X;
	Update();
	Offset = bFollowsEnd ? GetLongestOffset() : FMath::Min(Offset, GetLongestOffset());
	const double Whole = FMath::Max(static_cast<double>(Shown.Num()) * LineHeight, ViewHeight);
	OnViewMoved.ExecuteIfBound(Whole > 0.0 ? static_cast<float>(Offset / Whole) : 0.0f,
		Whole > 0.0 ? static_cast<float>(ViewHeight / Whole) : 1.0f);
	SidewaysOffset = FMath::Min(SidewaysOffset, GetLongestSidewaysOffset());
	const double Width = ViewWidth + GetLongestSidewaysOffset();
	OnViewMovedSideways.ExecuteIfBound(Width > 0.0 ? static_cast<float>(SidewaysOffset / Width) : 0.0f,
		Width > 0.0 ? static_cast<float>(ViewWidth / Width) : 1.0f);
}

void SLogView::ScrollSidewaysTo(float OffsetFraction)
{
	const double Wanted = static_cast<double>(OffsetFraction) * (ViewWidth + GetLongestSidewaysOffset());
	SidewaysOffset = FMath::Clamp(Wanted, 0.0, GetLongestSidewaysOffset());
}

void SLogView::ScrollTo(float OffsetFraction)
{
	ScrollBy(static_cast<double>(OffsetFraction) * Shown.Num() * LineHeight - Offset);
}

void SLogView::ScrollBy(double Distance)
{
	Offset = FMath::Clamp(Offset + Distance, 0.0, GetLongestOffset());
	bFollowsEnd = Offset >= GetLongestOffset() - LogView::RoundingError;
}

int32 SLogView::GetIndexAt(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) const
{
	const FVector2D Position = MyGeometry.AbsoluteToLocal(MouseEvent.GetScreenSpacePosition());
	return FMath::Clamp(static_cast<int32>((Position.Y + Offset) / LineHeight), 0, Shown.Num() - 1);
}

FReply SLogView::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (MouseEvent.GetEffectingButton() != EKeys::LeftMouseButton || Shown.Num() == 0)
	{
		return FReply::Unhandled();
	}
	SelectionEnd = Shown[GetIndexAt(MyGeometry, MouseEvent)];
	if (!MouseEvent.IsShiftDown() || SelectionAnchor == INDEX_NONE)
	{
		SelectionAnchor = SelectionEnd;
	}
	return FReply::Handled().CaptureMouse(AsShared()).SetUserFocus(AsShared(), EFocusCause::Mouse);
}

FReply SLogView::OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (!HasMouseCapture() || Shown.Num() == 0)
	{
		return FReply::Unhandled();
	}
	SelectionEnd = Shown[GetIndexAt(MyGeometry, MouseEvent)];
	return FReply::Handled();
}

FReply SLogView::OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return HasMouseCapture() ? FReply::Handled().ReleaseMouseCapture() : FReply::Unhandled();
}

FReply SLogView::OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	const double Notches = MouseEvent.GetWheelDelta();
	if (MouseEvent.IsShiftDown())
	{
		SidewaysOffset =
			FMath::Clamp(SidewaysOffset - Notches * LogView::SidewaysStep, 0.0, GetLongestSidewaysOffset());
		return FReply::Handled();
	}
	ScrollBy(-Notches * LogView::WheelStep);
	return FReply::Handled();
}

FReply SLogView::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	if (InKeyEvent.IsControlDown() && Key == EKeys::C)
	{
		CopySelection();
		return FReply::Handled();
	}
	if (InKeyEvent.IsControlDown() && Key == EKeys::A && Shown.Num() > 0)
	{
		SelectionAnchor = Shown[0];
		SelectionEnd = Shown.Last();
		return FReply::Handled();
	}
	const double Whole = static_cast<double>(Shown.Num()) * LineHeight;
	const struct
	{
		FKey Key;
		double Distance;
	} Movements[] = { { EKeys::Up, -LineHeight }, { EKeys::Down, LineHeight }, { EKeys::PageUp, -ViewHeight },
		{ EKeys::PageDown, ViewHeight }, { EKeys::Home, -Whole }, { EKeys::End, Whole } };
	for (const auto& Movement : Movements)
	{
		if (Movement.Key == Key)
		{
			ScrollBy(Movement.Distance);
			return FReply::Handled();
		}
	}
	if (Key == EKeys::Left || Key == EKeys::Right)
	{
		const double Step = Key == EKeys::Right ? LogView::SidewaysStep : -LogView::SidewaysStep;
		SidewaysOffset = FMath::Clamp(SidewaysOffset + Step, 0.0, GetLongestSidewaysOffset());
		return FReply::Handled();
	}
	return SLeafWidget::OnKeyDown(MyGeometry, InKeyEvent);
}

FString SLogView::JoinLines(int32 First, int32 Last) const
{
	TArray<FString> Texts;
	for (int32 Index = FMath::Max(First, 0); Index <= FMath::Min(Last, Shown.Num() - 1); ++Index)
	{
		Texts.Add(GetLineText(Index));
	}
	return FString::Join(Texts, LINE_TERMINATOR);
}

void SLogView::CopySelection() const
{
	if (SelectionAnchor == INDEX_NONE)
	{
		return;
	}
	const int64 From = FMath::Min(SelectionAnchor, SelectionEnd);
	const int64 To = FMath::Max(SelectionAnchor, SelectionEnd);
	const int32 First = Shown.IndexOfByPredicate([From](int64 Number) { return Number >= From; });
	const int32 Behind = Shown.IndexOfByPredicate([To](int64 Number) { return Number > To; });
	const int32 Last = (Behind == INDEX_NONE ? Shown.Num() : Behind) - 1;
	// None when the selected lines are hidden or no longer kept: what was copied before stays.
	if (First != INDEX_NONE && First <= Last)
	{
		FPlatformApplicationMisc::ClipboardCopy(*JoinLines(First, Last));
	}
}

int32 SLogView::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	const FVector2D Size = AllottedGeometry.GetLocalSize();
	const FLinearColor Tint = InWidgetStyle.GetColorAndOpacityTint();
	const FLinearColor Selected =
		FAppStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText").SelectedBackgroundColor.GetSpecifiedColor();
	const int64 From = FMath::Min(SelectionAnchor, SelectionEnd);
	const int64 To = FMath::Max(SelectionAnchor, SelectionEnd);
	for (int32 Index = static_cast<int32>(Offset / LineHeight); Index < Shown.Num(); ++Index)
	{
		const double Top = static_cast<double>(Index) * LineHeight - Offset;
		if (Top >= Size.Y)
		{
			break;
		}
		const FVector2D LineSize(Size.X + SidewaysOffset, LineHeight);
		if (SelectionAnchor != INDEX_NONE && Shown[Index] >= From && Shown[Index] <= To)
		{
			FSlateDrawElement::MakeBox(OutDrawElements, LayerId,
				AllottedGeometry.MakeChild(LineSize, FSlateLayoutTransform(FVector2D(0.0, Top))), MyCullingRect,
				FAppStyle::GetBrush("WhiteBrush"), Selected);
		}
		const FOutputLogLine& Line = History->GetLine(Shown[Index]);
		const FVector2D Place(LogView::LeftMargin - SidewaysOffset, Top);
		FSlateDrawElement::MakeText(OutDrawElements, LayerId + 1,
			AllottedGeometry.MakeChild(LineSize, FSlateLayoutTransform(Place)), MyCullingRect, Line.Text,
			LogView::GetFont(), Tint * LogView::GetColor(Line.Verbosity, InWidgetStyle.GetForegroundColor()));
	}
	return LayerId + 1;
}

TSharedRef<FSlateAccessibleWidget> SLogView::CreateAccessibleWidget()
{
	return MakeShared<FAccessibleLogView>(AsShared());
}
