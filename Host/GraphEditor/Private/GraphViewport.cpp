#include "GraphViewport.h"

#define LOCTEXT_NAMESPACE "GraphEditor"

namespace GraphViewport
{
// The steps of the engine's graph editors.
constexpr double Levels[] = { 0.1, 0.125, 0.15, 0.175, 0.2, 0.225, 0.25, 0.375, 0.5, 0.675, 0.75, 0.875, 1.0, 1.25,
	1.375, 1.5, 1.675, 1.75, 1.875, 2.0 };
constexpr int32 NumLevels = UE_ARRAY_COUNT(Levels);
constexpr double Air = 40.0; // Slate units
}

double FGraphViewport::GetZoom() const
{
	return GraphViewport::Levels[Level];
}

FText FGraphViewport::GetZoomText() const
{
	if (Level == TrueSizeLevel)
	{
		return LOCTEXT("TrueSize", "Zoom 1:1");
	}
	const FString Steps = FString::Printf(TEXT("%+d"), Level - TrueSizeLevel);
	return FText::Format(LOCTEXT("Zoom", "Zoom {0}"), FText::FromString(Steps));
}

void FGraphViewport::ZoomAbout(const FVector2D& PanelPlace, int32 NumSteps, bool bBeyondTrueSize)
{
	const FVector2D Fixed = ToGraph(PanelPlace);
	// Who is beyond already stays there and may step back.
	const int32 Nearest = bBeyondTrueSize ? GraphViewport::NumLevels - 1 : FMath::Max<int32>(TrueSizeLevel, Level);
	Level = FMath::Clamp(Level + NumSteps, 0, Nearest);
	Offset = Fixed - PanelPlace / GetZoom();
}

void FGraphViewport::Frame(const FSlateRect& GraphBounds, const FVector2D& PanelSize)
{
	const FVector2D Size = GraphBounds.GetSize();
	Level = TrueSizeLevel;
	while (Level > 0 && (Size.X * GetZoom() > PanelSize.X - GraphViewport::Air ||
							Size.Y * GetZoom() > PanelSize.Y - GraphViewport::Air))
	{
		--Level;
	}
	Offset = GraphBounds.GetTopLeft() + Size / 2.0 - PanelSize / (2.0 * GetZoom());
}

#undef LOCTEXT_NAMESPACE
