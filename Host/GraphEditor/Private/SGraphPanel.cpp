#include "SGraphPanel.h"

#include "EdGraph/EdGraph.h"
#include "Framework/Application/SlateApplication.h"
#include "GraphFingerprint.h"
#include "GraphLayout.h"
#include "GraphPainter.h"
#include "GraphViewport.h"
#include "InputCoreTypes.h"
#include "Rendering/SlateRenderer.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"

#define LOCTEXT_NAMESPACE "GraphEditor"

namespace GraphPanel
{
constexpr double KeyStep = 60.0; // Slate units

const FSlateFontMeasure& GetMeasure()
{
	return FSlateApplication::Get().GetRenderer()->GetFontMeasureService().Get();
}

bool IsPanButton(const FPointerEvent& PointerEvent)
{
	const FKey Button = PointerEvent.GetEffectingButton();
	return Button == EKeys::RightMouseButton || Button == EKeys::MiddleMouseButton;
}

FString Describe(const FGraphNodeLayout& Node)
{
	FString Line = Node.Title + (Node.Subtitle.IsEmpty() ? FString() : TEXT(", ") + Node.Subtitle);
	Line += Node.Bubble.IsEmpty() ? FString() : TEXT(": ") + FString::Join(Node.Bubble, TEXT(" "));
	Line += Node.Message.IsEmpty() ? FString() : TEXT(" ! ") + FString::Join(Node.Message, TEXT(" "));
	return Line;
}
}

/** Its value is the nodes in view. */
class FAccessibleGraphPanel final : public FSlateAccessibleWidget, public IAccessibleText
{
public:
	explicit FAccessibleGraphPanel(TSharedRef<SWidget> InWidget)
		: FSlateAccessibleWidget(InWidget, EAccessibleWidgetType::Text)
	{
	}

	virtual IAccessibleText* AsText() override { return this; }
	virtual FString GetText() const override
	{
		const TSharedPtr<SGraphPanel> Panel = StaticCastSharedPtr<SGraphPanel>(Widget.Pin());
		return Panel.IsValid() ? Panel->Describe() : FString();
	}
};

SGraphPanel::SGraphPanel()
	: Layout(MakeUnique<FGraphLayout>())
	, Viewport(MakeUnique<FGraphViewport>())
{
}

SGraphPanel::~SGraphPanel() = default;

void SGraphPanel::Construct(const FArguments& InArgs)
{
	SetCanTick(true);
}

void SGraphPanel::SetGraph(UEdGraph* InGraph)
{
	if (Graph.Get() != InGraph)
	{
		Graph = InGraph;
		SelectedNode = NAME_None;
		bLayoutIsOld = true;
		bZoomsToFit = true;
	}
}

FText SGraphPanel::GetZoomText() const
{
	return Viewport->GetZoomText();
}

void SGraphPanel::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	UpdateLayout();
	const FVector2D Size = AllottedGeometry.GetLocalSize();
	if (bZoomsToFit && Size.X > 0.0)
	{
		Viewport->Frame(Layout->GetBounds(), Size);
		bZoomsToFit = false;
	}
}

void SGraphPanel::UpdateLayout()
{
	const UEdGraph* const Shown = Graph.Get();
	const uint64 NewFingerprint = Shown ? FGraphFingerprint::Of(*Shown) : 0;
	if (!bLayoutIsOld && NewFingerprint == Fingerprint)
	{
		return;
	}
	*Layout = Shown ? FGraphLayout::Of(*Shown, GraphPanel::GetMeasure()) : FGraphLayout();
	Fingerprint = NewFingerprint;
	bLayoutIsOld = false;
	++NumLayouts;
}

int32 SGraphPanel::FindSelectedNode() const
{
	return SelectedNode.IsNone() ? INDEX_NONE : Layout->Nodes.IndexOfByPredicate([this](const FGraphNodeLayout& Node) {
		return Node.Name == SelectedNode;
	});
}

FReply SGraphPanel::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (GraphPanel::IsPanButton(MouseEvent))
	{
		LastPointer = MouseEvent.GetScreenSpacePosition();
		return FReply::Handled().CaptureMouse(AsShared()).SetUserFocus(AsShared(), EFocusCause::Mouse);
	}
	const FVector2D Place = MyGeometry.AbsoluteToLocal(MouseEvent.GetScreenSpacePosition());
	const int32 Node = Layout->FindNodeAt(Viewport->ToGraph(Place));
	SelectedNode = Node == INDEX_NONE ? FName() : Layout->Nodes[Node].Name;
	return FReply::Handled().SetUserFocus(AsShared(), EFocusCause::Mouse);
}

FReply SGraphPanel::OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent)
{
	return OnMouseButtonDown(InMyGeometry, InMouseEvent);
}

FReply SGraphPanel::OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (!HasMouseCapture())
	{
		return FReply::Unhandled();
	}
	const FVector2D Pointer = MouseEvent.GetScreenSpacePosition();
	Viewport->Pan((Pointer - LastPointer) / MyGeometry.GetScale());
	LastPointer = Pointer;
	return FReply::Handled();
}

FReply SGraphPanel::OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	const bool bEndsPan = HasMouseCapture() && GraphPanel::IsPanButton(MouseEvent);
	return bEndsPan ? FReply::Handled().ReleaseMouseCapture() : FReply::Unhandled();
}

FReply SGraphPanel::OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	const FVector2D Place = MyGeometry.AbsoluteToLocal(MouseEvent.GetScreenSpacePosition());
	const int32 NumSteps = FMath::RoundToInt(MouseEvent.GetWheelDelta());
	Viewport->ZoomAbout(Place, NumSteps, MouseEvent.IsControlDown());
	return FReply::Handled();
}

FReply SGraphPanel::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	const bool bHasModifier = InKeyEvent.IsControlDown() || InKeyEvent.IsAltDown() || InKeyEvent.IsShiftDown();
	if (!bHasModifier && (Key == EKeys::F || Key == EKeys::Home))
	{
		ZoomToFit();
		return FReply::Handled();
	}
	const struct
	{
		FKey Key;
		FVector2D Distance;
	} Movements[] = { { EKeys::Left, FVector2D(GraphPanel::KeyStep, 0.0) },
		{ EKeys::Right, FVector2D(-GraphPanel::KeyStep, 0.0) }, { EKeys::Up, FVector2D(0.0, GraphPanel::KeyStep) },
		{ EKeys::Down, FVector2D(0.0, -GraphPanel::KeyStep) } };
	for (const auto& Movement : Movements)
	{
		if (Movement.Key == Key && !bHasModifier)
		{
			Viewport->Pan(Movement.Distance);
			return FReply::Handled();
		}
	}
	return SLeafWidget::OnKeyDown(MyGeometry, InKeyEvent);
}

TOptional<EMouseCursor::Type> SGraphPanel::GetCursor() const
{
	return HasMouseCapture() ? EMouseCursor::GrabHand : SLeafWidget::GetCursor();
}

int32 SGraphPanel::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	// All on one layer: what comes later covers what came before, a node with all that is on it.
	const FGraphPainter Painter(
		*Layout, *Viewport, GraphPanel::GetMeasure(), AllottedGeometry, MyCullingRect, OutDrawElements, LayerId);
	Painter.Paint(FindSelectedNode());
	return LayerId;
}

FString SGraphPanel::Describe() const
{
	const FSlateRect Visible = Viewport->GetVisible(GetCachedGeometry().GetLocalSize());
	TArray<FString> Lines;
	for (const FGraphNodeLayout& Node : Layout->Nodes)
	{
		if (FSlateRect::DoRectanglesIntersect(Node.GetBounds(), Visible))
		{
			Lines.Add(GraphPanel::Describe(Node));
		}
	}
	return FString::Join(Lines, LINE_TERMINATOR);
}

FText SGraphPanel::GetDefaultAccessibleText() const
{
	const UEdGraph* const Shown = Graph.Get();
	return Shown ? FText::Format(LOCTEXT("Graph", "Graph {0}"), FText::FromString(Shown->GetName()))
				 : LOCTEXT("NoGraph", "Graph");
}

TSharedRef<FSlateAccessibleWidget> SGraphPanel::CreateAccessibleWidget()
{
	return MakeShared<FAccessibleGraphPanel>(AsShared());
}

#undef LOCTEXT_NAMESPACE
