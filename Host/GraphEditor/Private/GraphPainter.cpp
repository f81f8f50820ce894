#include "GraphPainter.h"

#include "Brushes/SlateColorBrush.h"
#include "Brushes/SlateRoundedBoxBrush.h"
#include "Fonts/FontMeasure.h"
#include "Rendering/DrawElements.h"

namespace GraphPainter
{
// Below these zooms nothing could be read, or told apart.
constexpr double LeastZoomForTitles = 0.2;
constexpr double LeastZoomForPins = 0.25;
constexpr double LeastZoomForFineGrid = 0.5;

constexpr double FineGrid = 16.0; // units of the graph
constexpr double CoarseGrid = 128.0;
constexpr float Corner = 6.0f;
constexpr float DisabledOpacity = 0.45f;
constexpr float ExecWireWidth = 2.6f; // Slate units at true size
constexpr float WireWidth = 1.7f;
constexpr double LeastWireWidth = 1.0; // Slate units at any zoom

const FColor GridBack(33, 34, 36);
const FColor GridFine(38, 39, 41);
const FColor GridCoarse(25, 26, 27);
const FColor BodyColor(16, 17, 18, 228);
const FColor LabelColor(218, 218, 218);
const FColor SubtitleColor(200, 200, 200);
const FColor ValueBack(40, 42, 45);
const FColor ValueEdge(96, 98, 102);
const FColor SelectionColor(242, 160, 0);
const FColor BubbleBack(62, 63, 66);
const FColor BubbleText(214, 214, 206);

FSlateRoundedBoxBrush MakeBrush(float TopRadius, float BottomRadius)
{
	FSlateRoundedBoxBrush Brush(FLinearColor::White, TopRadius);
	Brush.OutlineSettings.CornerRadii[2] = BottomRadius;
	Brush.OutlineSettings.CornerRadii[3] = BottomRadius;
	return Brush;
}

const FSlateColorBrush& Plain()
{
	static const FSlateColorBrush Brush(FLinearColor::White);
	return Brush;
}

const FSlateRoundedBoxBrush& Rounded()
{
	static const FSlateRoundedBoxBrush Brush = MakeBrush(Corner, Corner);
	return Brush;
}

const FSlateRoundedBoxBrush& RoundedAbove()
{
	static const FSlateRoundedBoxBrush Brush = MakeBrush(Corner, 0.0f);
	return Brush;
}

const FSlateRoundedBoxBrush& RoundedBelow()
{
	static const FSlateRoundedBoxBrush Brush = MakeBrush(0.0f, Corner);
	return Brush;
}

/** As round as the box is high. */
const FSlateRoundedBoxBrush& Round()
{
	constexpr float MoreThanAny = 1000.0f;
	static const FSlateRoundedBoxBrush Brush = MakeBrush(MoreThanAny, MoreThanAny);
	return Brush;
}

const FSlateRoundedBoxBrush& Field()
{
	static const FSlateRoundedBoxBrush Brush(FLinearColor::White, 3.0f, FLinearColor(ValueEdge), 1.0f);
	return Brush;
}

const FSlateBrush& GetBodyBrush(const FGraphNodeLayout& Node)
{
	return Node.Shape == EGraphNodeShape::Capsule ? Round() : Rounded();
}

FLinearColor WithOpacity(const FLinearColor& Color, float Opacity)
{
	return Color.CopyWithNewOpacity(Color.A * Opacity);
}

/** So dark that white letters stand out on it. */
FLinearColor Darken(const FLinearColor& Color)
{
	constexpr float MostLuminance = 0.16f;
	const float Luminance = 0.2126f * Color.R + 0.7152f * Color.G + 0.0722f * Color.B;
	const float Share = Luminance > MostLuminance ? MostLuminance / Luminance : 1.0f;
	return (Color * Share).CopyWithNewOpacity(Color.A);
}

float GetOpacity(const FGraphNodeLayout& Node)
{
	return Node.bEnabled ? 1.0f : DisabledOpacity;
}

struct FMessageLook
{
	const TCHAR* Word;
	FColor Color;
};

FMessageLook GetLook(EGraphMessage Kind)
{
	switch (Kind)
	{
	case EGraphMessage::Error:
		return { TEXT("ERROR!"), FColor(168, 28, 24) };
	case EGraphMessage::Warning:
		return { TEXT("WARNING!"), FColor(150, 104, 0) };
	default:
		return { TEXT("NOTE"), FColor(40, 84, 140) };
	}
}
}

FGraphPainter::FGraphPainter(const FGraphLayout& InLayout, const FGraphViewport& InViewport,
	const FSlateFontMeasure& InMeasure, const FGeometry& InPanel, const FSlateRect& InCullingRect,
	FSlateWindowElementList& InElements, int32 InLayer)
	: Layout(InLayout)
	, Viewport(InViewport)
	, Measure(InMeasure)
	, Panel(InPanel)
	, CullingRect(InCullingRect)
	, Elements(InElements)
	, Layer(InLayer)
	, Visible(InViewport.GetVisible(InPanel.GetLocalSize()))
	, GraphSpace(InPanel.MakeChild(InPanel.GetLocalSize(),
		  FSlateLayoutTransform(static_cast<float>(InViewport.GetZoom()), InViewport.ToPanel(FVector2D(0.0, 0.0)))))
{
}

bool FGraphPainter::ShowsTitles() const
{
	return Viewport.GetZoom() >= GraphPainter::LeastZoomForTitles;
}

bool FGraphPainter::ShowsPins() const
{
	return Viewport.GetZoom() >= GraphPainter::LeastZoomForPins;
}

void FGraphPainter::Box(const FGeometry& Geometry, const FVector2D& Place, const FVector2D& Size,
	const FSlateBrush& Brush, const FLinearColor& Color) const
{
	FSlateDrawElement::MakeBox(
		Elements, Layer, Geometry.MakeChild(Size, FSlateLayoutTransform(Place)), CullingRect, &Brush, Color);
}

void FGraphPainter::Text(const FGeometry& Geometry, const FVector2D& LeftMiddle, const FString& String,
	const FSlateFontInfo& Font, const FLinearColor& Color) const
{
	const double Height = Measure.GetMaxCharacterHeight(Font);
	const FVector2D Place = LeftMiddle - FVector2D(0.0, Height / 2.0);
	FSlateDrawElement::MakeText(Elements, Layer,
		Geometry.MakeChild(FVector2D(0.0, Height), FSlateLayoutTransform(Place)), CullingRect, String, Font, Color);
}

void FGraphPainter::Paint(int32 SelectedNode) const
{
	PaintGrid();
	const auto PaintNodes = [this, SelectedNode](bool bComments) {
		for (int32 Index = 0; Index < Layout.Nodes.Num(); ++Index)
		{
			const FGraphNodeLayout& Node = Layout.Nodes[Index];
			if ((Node.Shape == EGraphNodeShape::Comment) == bComments &&
				FSlateRect::DoRectanglesIntersect(Node.GetBounds(), Visible))
			{
				PaintNode(Node, Index == SelectedNode);
			}
		}
	};
	PaintNodes(true);
	for (const FGraphWireLayout& Wire : Layout.Wires)
	{
		if (FSlateRect::DoRectanglesIntersect(Wire.GetBounds(), Visible))
		{
			PaintWire(Wire);
		}
	}
	PaintNodes(false);
}

void FGraphPainter::PaintGrid() const
{
	Box(Panel, FVector2D(0.0, 0.0), Panel.GetLocalSize(), GraphPainter::Plain(), GraphPainter::GridBack);
	if (Viewport.GetZoom() >= GraphPainter::LeastZoomForFineGrid)
	{
		PaintLinesOfGrid(GraphPainter::FineGrid, GraphPainter::GridFine);
	}
	PaintLinesOfGrid(GraphPainter::CoarseGrid, GraphPainter::GridCoarse);
}

void FGraphPainter::PaintLinesOfGrid(double Step, const FLinearColor& Color) const
{
	const FVector2D Size = Panel.GetLocalSize();
	for (double X = FMath::CeilToInt(Visible.Left / Step) * Step; X < Visible.Right; X += Step)
	{
		Box(Panel, FVector2D(Viewport.ToPanel(FVector2D(X, 0.0)).X, 0.0), FVector2D(1.0, Size.Y), GraphPainter::Plain(),
			Color);
	}
	for (double Y = FMath::CeilToInt(Visible.Top / Step) * Step; Y < Visible.Bottom; Y += Step)
	{
		Box(Panel, FVector2D(0.0, Viewport.ToPanel(FVector2D(0.0, Y)).Y), FVector2D(Size.X, 1.0), GraphPainter::Plain(),
			Color);
	}
}

void FGraphPainter::PaintWire(const FGraphWireLayout& Wire) const
{
	const double Width = Wire.bExec ? GraphPainter::ExecWireWidth : GraphPainter::WireWidth;
	const double Shown = FMath::Max(Width, GraphPainter::LeastWireWidth / Viewport.GetZoom());
	FSlateDrawElement::MakeCubicBezierSpline(Elements, Layer, GraphSpace, CullingRect, Wire.Points[0], Wire.Points[1],
		Wire.Points[2], Wire.Points[3], static_cast<float>(Shown), Wire.Color);
}

void FGraphPainter::PaintNode(const FGraphNodeLayout& Node, bool bSelected) const
{
	const FGeometry Geometry = GraphSpace.MakeChild(Node.Size, FSlateLayoutTransform(Node.Position));
	if (bSelected)
	{
		const FVector2D Edge(2.0, 2.0);
		Box(Geometry, FVector2D(0.0, 0.0) - Edge, Node.Size + Edge * 2.0, GraphPainter::GetBodyBrush(Node),
			GraphPainter::SelectionColor);
	}
	if (Node.Shape == EGraphNodeShape::Comment)
	{
		PaintComment(Node, Geometry);
		return;
	}
	PaintBody(Node, Geometry);
	PaintTitle(Node, Geometry);
	for (const FGraphPinLayout& Pin : Node.Pins)
	{
		if (ShowsPins())
		{
			PaintPin(Node, Pin, Geometry);
		}
	}
	PaintMessage(Node, Geometry);
	PaintBubble(Node, Geometry);
}

void FGraphPainter::PaintComment(const FGraphNodeLayout& Node, const FGeometry& Geometry) const
{
	constexpr float BodyOpacity = 0.12f;
	constexpr float BarOpacity = 0.4f;
	const FVector2D BarSize(Node.Size.X, Node.TitleHeight);
	Box(Geometry, FVector2D(0.0, 0.0), Node.Size, GraphPainter::Rounded(),
		GraphPainter::WithOpacity(Node.Color, BodyOpacity));
	Box(Geometry, FVector2D(0.0, 0.0), BarSize, GraphPainter::RoundedAbove(),
		GraphPainter::WithOpacity(Node.Color, BarOpacity));
	if (ShowsTitles())
	{
		Text(Geometry, FVector2D(10.0, Node.TitleHeight / 2.0), Node.Title, FGraphLayout::GetCommentFont(Node.FontSize),
			FLinearColor::White);
	}
}

void FGraphPainter::PaintBody(const FGraphNodeLayout& Node, const FGeometry& Geometry) const
{
	const float Opacity = GraphPainter::GetOpacity(Node);
	const FVector2D Shadow(2.0, 3.0);
	Box(Geometry, Shadow, Node.Size, GraphPainter::GetBodyBrush(Node), FLinearColor(0.0f, 0.0f, 0.0f, 0.3f * Opacity));
	Box(Geometry, FVector2D(0.0, 0.0), Node.Size, GraphPainter::GetBodyBrush(Node),
		GraphPainter::WithOpacity(GraphPainter::BodyColor, Opacity));
	if (Node.Shape == EGraphNodeShape::Capsule)
	{
		Box(Geometry, FVector2D(0.0, 0.0), Node.Size, GraphPainter::Round(),
			GraphPainter::WithOpacity(Node.Color, 0.28f * Opacity));
	}
}

void FGraphPainter::PaintTitle(const FGraphNodeLayout& Node, const FGeometry& Geometry) const
{
	if (Node.Shape == EGraphNodeShape::Capsule)
	{
		return;
	}
	const float Opacity = GraphPainter::GetOpacity(Node);
	const FVector2D BarSize(Node.Size.X, Node.TitleHeight);
	Box(Geometry, FVector2D(0.0, 0.0), BarSize, GraphPainter::RoundedAbove(),
		GraphPainter::WithOpacity(GraphPainter::Darken(Node.Color), 0.85f * Opacity));
	if (!ShowsTitles())
	{
		return;
	}
	Text(Geometry, FVector2D(14.0, FGraphLayout::BarHeight / 2.0), Node.Title, FGraphLayout::GetTitleFont(),
		GraphPainter::WithOpacity(FLinearColor::White, Opacity));
	const double SubtitleMiddle = FGraphLayout::BarHeight + FGraphLayout::SubtitleHeight / 2.0 - 4.0;
	Text(Geometry, FVector2D(14.0, SubtitleMiddle), Node.Subtitle, FGraphLayout::GetSubtitleFont(),
		GraphPainter::WithOpacity(GraphPainter::SubtitleColor, Opacity));
}

void FGraphPainter::PaintPin(const FGraphNodeLayout& Node, const FGraphPinLayout& Pin, const FGeometry& Geometry) const
{
	const float Opacity = GraphPainter::GetOpacity(Node);
	PaintConnector(Pin, Geometry, Opacity);
	const double Away = FGraphLayout::ConnectorInset;
	const double Left = Pin.bInput ? Pin.Place.X + Away : Pin.Place.X - Away - Pin.LabelWidth;
	Text(Geometry, FVector2D(Left, Pin.Place.Y), Pin.Label, FGraphLayout::GetLabelFont(),
		GraphPainter::WithOpacity(GraphPainter::LabelColor, Opacity));
	if (Pin.bHasValue)
	{
		PaintValue(Pin, Geometry, Opacity);
	}
}

void FGraphPainter::PaintConnector(const FGraphPinLayout& Pin, const FGeometry& Geometry, float Opacity) const
{
	const FLinearColor Color = GraphPainter::WithOpacity(Pin.Color, Opacity);
	const FVector2D Place = Pin.Place;
	if (Pin.bExec)
	{
		TArray<FVector2D> Arrow;
		for (const FVector2D& Point : { FVector2D(-5.0, -5.5), FVector2D(0.5, -5.5), FVector2D(6.0, 0.0),
				 FVector2D(0.5, 5.5), FVector2D(-5.0, 5.5), FVector2D(-5.0, -5.5), FVector2D(0.5, -5.5) })
		{
			Arrow.Add(Place + Point);
		}
		Pin.bConnected ? FSlateDrawElement::MakePolygon(Elements, Layer, Geometry, CullingRect, Arrow, Color)
					   : FSlateDrawElement::MakeLines(Elements, Layer, Geometry, CullingRect, Arrow, Color, 1.4f);
		return;
	}
	const FSlateBrush& Brush = Pin.bContainer ? static_cast<const FSlateBrush&>(GraphPainter::Plain())
											  : static_cast<const FSlateBrush&>(GraphPainter::Round());
	const FVector2D Reach(FGraphLayout::ConnectorRadius, FGraphLayout::ConnectorRadius);
	Box(Geometry, Place - Reach, Reach * 2.0, Brush, Color);
	if (!Pin.bConnected)
	{
		Box(Geometry, Place - Reach * 0.6, Reach * 1.2, Brush, FLinearColor(FColor(16, 17, 18)));
	}
	const TArray<FVector2D> Tip = { Place + FVector2D(6.5, -2.5), Place + FVector2D(9.5, 0.0),
		Place + FVector2D(6.5, 2.5) };
	FSlateDrawElement::MakePolygon(Elements, Layer, Geometry, CullingRect, Tip, Color);
}

void FGraphPainter::PaintValue(const FGraphPinLayout& Pin, const FGeometry& Geometry, float Opacity) const
{
	constexpr double FieldHeight = 18.0;
	const double Left = Pin.Place.X + FGraphLayout::ConnectorInset + Pin.LabelWidth + FGraphLayout::LabelGap;
	const double Height = Pin.bIsSwitch ? FGraphLayout::SwitchSize : FieldHeight;
	const FVector2D Corner(Left, Pin.Place.Y - Height / 2.0);
	Box(Geometry, Corner, FVector2D(Pin.ValueWidth, Height), GraphPainter::Field(),
		GraphPainter::WithOpacity(GraphPainter::ValueBack, Opacity));
	if (!Pin.bIsSwitch)
	{
		Text(Geometry, FVector2D(Left + 5.0, Pin.Place.Y), Pin.Value, FGraphLayout::GetValueFont(),
			GraphPainter::WithOpacity(GraphPainter::LabelColor, Opacity));
		return;
	}
	if (Pin.Value == TEXT("true"))
	{
		const TArray<FVector2D> Tick = { Corner + FVector2D(3.0, 6.5), Corner + FVector2D(5.5, 9.5),
			Corner + FVector2D(10.0, 3.5) };
		FSlateDrawElement::MakeLines(Elements, Layer, Geometry, CullingRect, Tick,
			GraphPainter::WithOpacity(FLinearColor::White, Opacity), 1.8f);
	}
}

void FGraphPainter::PaintMessage(const FGraphNodeLayout& Node, const FGeometry& Geometry) const
{
	if (Node.MessageKind == EGraphMessage::None)
	{
		return;
	}
	const GraphPainter::FMessageLook Look = GraphPainter::GetLook(Node.MessageKind);
	const double Height = Node.GetMessageHeight();
	const double Top = Node.Size.Y - Height;
	Box(Geometry, FVector2D(0.0, Top), FVector2D(Node.Size.X, Height), GraphPainter::RoundedBelow(), Look.Color);
	if (!ShowsPins())
	{
		return;
	}
	double Middle = Top + FGraphLayout::BodyPadding / 2.0 + FGraphLayout::LineHeight / 2.0;
	Text(Geometry, FVector2D(8.0, Middle), Look.Word, FGraphLayout::GetTitleFont(), FLinearColor::White);
	for (const FString& Line : Node.Message)
	{
		Middle += FGraphLayout::LineHeight;
		Text(Geometry, FVector2D(8.0, Middle), Line, FGraphLayout::GetValueFont(), FLinearColor::White);
	}
}

void FGraphPainter::PaintBubble(const FGraphNodeLayout& Node, const FGeometry& Geometry) const
{
	if (Node.Bubble.IsEmpty() || !ShowsPins())
	{
		return;
	}
	constexpr double Gap = 9.0;
	const double Height = Node.GetBubbleHeight();
	const double Top = -Height - Gap;
	Box(Geometry, FVector2D(0.0, Top), FVector2D(Node.BubbleWidth, Height), GraphPainter::Rounded(),
		GraphPainter::BubbleBack);
	FSlateDrawElement::MakePolygon(Elements, Layer, Geometry, CullingRect,
		{ FVector2D(12.0, -Gap - 0.5), FVector2D(24.0, -Gap - 0.5), FVector2D(15.0, -2.0) }, GraphPainter::BubbleBack);
	double Middle = Top + FGraphLayout::BodyPadding / 2.0 + FGraphLayout::LineHeight / 2.0;
	for (const FString& Line : Node.Bubble)
	{
		Text(Geometry, FVector2D(8.0, Middle), Line, FGraphLayout::GetValueFont(), GraphPainter::BubbleText);
		Middle += FGraphLayout::LineHeight;
	}
}
