#include "GraphLayout.h"

#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraph/EdGraphSchema.h"
#include "EdGraphNode_Comment.h"
#include "EdGraphSchema_K2.h"
#include "Fonts/FontMeasure.h"
#include "K2Node_Event.h"
#include "K2Node_VariableGet.h"
#include "K2Node_VariableSet.h"
#include "Logging/TokenizedMessage.h"
#include "PinValueText.h"
#include "Styling/CoreStyle.h"

namespace GraphLayout
{
// Units of the graph.
constexpr double TitleMargin = 44.0; // left and right of the title, together
constexpr double ColumnGap = 28.0;
constexpr double LeastWidth = 110.0;
constexpr double LeastValueWidth = 22.0;
constexpr double ValueMargin = 10.0;
constexpr double CapsuleHeight = 34.0;
constexpr double CapsuleMargin = 12.0; // left of the name
constexpr double CommentMargin = 10.0;
constexpr double BubbleMargin = 16.0;
constexpr double BubbleGap = 10.0; // between the bubble and its node
constexpr double LeastPull = 30.0;
constexpr double MostPull = 260.0;
constexpr int32 MaxMessageLines = 3;
constexpr int32 MaxBubbleLines = 6;

void Include(FSlateRect& Sum, const FVector2D& Point)
{
	Sum.Left = FMath::Min(Sum.Left, static_cast<float>(Point.X));
	Sum.Top = FMath::Min(Sum.Top, static_cast<float>(Point.Y));
	Sum.Right = FMath::Max(Sum.Right, static_cast<float>(Point.X));
	Sum.Bottom = FMath::Max(Sum.Bottom, static_cast<float>(Point.Y));
}

EGraphMessage GetMessageKind(const UEdGraphNode& Node)
{
	if (!Node.bHasCompilerMessage)
	{
		return EGraphMessage::None;
	}
	return Node.ErrorType <= EMessageSeverity::Error     ? EGraphMessage::Error
		   : Node.ErrorType <= EMessageSeverity::Warning ? EGraphMessage::Warning
														 : EGraphMessage::Note;
}

/** Puts one graph's nodes and wires in their places. */
class FBuilder
{
public:
	FBuilder(const UEdGraph& InGraph, const FSlateFontMeasure& InMeasure, FGraphLayout& InOut)
		: Graph(InGraph)
		, Schema(InGraph.GetSchema() ? *InGraph.GetSchema() : *GetDefault<UEdGraphSchema_K2>())
		, Measure(InMeasure)
		, Out(InOut)
	{
	}

	void Build()
	{
		for (const bool bComments : { true, false })
		{
			for (const UEdGraphNode* const Node : Graph.Nodes)
			{
				if (Node && Node->IsA<UEdGraphNode_Comment>() == bComments)
				{
					AddNode(*Node);
				}
			}
		}
		for (const UEdGraphNode* const Node : Graph.Nodes)
		{
			AddWires(Node);
		}
	}

private:
	double WidthOf(const FString& Text, const FSlateFontInfo& Font) const { return Measure.Measure(Text, Font).X; }

	void AddNode(const UEdGraphNode& Node)
	{
		FGraphNodeLayout Layout;
		Layout.Name = Node.GetFName();
		Layout.Position = FVector2D(Node.NodePosX, Node.NodePosY);
		Layout.Color = Node.GetNodeTitleColor();
		Layout.bEnabled = Node.IsNodeEnabled();
		if (const UEdGraphNode_Comment* const Comment = Cast<UEdGraphNode_Comment>(&Node))
		{
			FillComment(*Comment, Layout);
		}
		else
		{
			FillNode(Node, Layout);
		}
		Out.Nodes.Add(MoveTemp(Layout));
	}

	void FillComment(const UEdGraphNode_Comment& Comment, FGraphNodeLayout& Layout) const
	{
		Layout.Shape = EGraphNodeShape::Comment;
		Layout.Title = Comment.NodeComment;
		Layout.FontSize = static_cast<float>(Comment.FontSize);
		Layout.Size = FVector2D(Comment.NodeWidth, Comment.NodeHeight);
		Layout.TitleHeight =
			Measure.GetMaxCharacterHeight(FGraphLayout::GetCommentFont(Layout.FontSize)) + CommentMargin;
	}

	void FillNode(const UEdGraphNode& Node, FGraphNodeLayout& Layout)
	{
		const bool bCapsule = Node.IsA<UK2Node_VariableGet>();
		Layout.Shape = bCapsule ? EGraphNodeShape::Capsule : EGraphNodeShape::Box;
		FillTitle(Node, Layout);
		for (const UEdGraphPin* const Pin : Node.Pins)
		{
			if (!Pin->bHidden)
			{
				PinPlaces.Add(Pin, { Out.Nodes.Num(), Layout.Pins.Num() });
				Layout.Pins.Add(MakePin(*Pin));
			}
		}
		PlacePins(Layout, GetTitleWidth(Layout));
		FillMessage(Node, Layout);
		FillBubble(Node, Layout);
	}

	static void FillTitle(const UEdGraphNode& Node, FGraphNodeLayout& Layout)
	{
		const FString Whole = Node.GetNodeTitle(ENodeTitleType::FullTitle).ToString();
		if (!Whole.Split(TEXT("\n"), &Layout.Title, &Layout.Subtitle))
		{
			Layout.Title = Whole;
		}
		if (Layout.Shape == EGraphNodeShape::Box)
		{
			Layout.TitleHeight =
				FGraphLayout::BarHeight + (Layout.Subtitle.IsEmpty() ? 0.0 : FGraphLayout::SubtitleHeight);
		}
	}

	double GetTitleWidth(const FGraphNodeLayout& Layout) const
	{
		if (Layout.Shape == EGraphNodeShape::Capsule)
		{
			return 0.0;
		}
		return TitleMargin + FMath::Max(WidthOf(Layout.Title, FGraphLayout::GetTitleFont()),
								 WidthOf(Layout.Subtitle, FGraphLayout::GetSubtitleFont()));
	}

	/** The event as a value, and the value that a node has just written. */
	static bool SpeaksForItself(const UEdGraphPin& Pin)
	{
		return Pin.PinName == UK2Node_Event::DelegateOutputName ||
			   Pin.PinName == UK2Node_VariableSet::GetVariableOutputPinName();
	}

	FGraphPinLayout MakePin(const UEdGraphPin& Pin) const
	{
		FGraphPinLayout Layout;
		Layout.bInTitle = Pin.PinName == UK2Node_Event::DelegateOutputName;
		Layout.Label = SpeaksForItself(Pin) ? FString() : Schema.GetPinDisplayName(&Pin).ToString();
		Layout.LabelWidth = WidthOf(Layout.Label, FGraphLayout::GetLabelFont());
		Layout.Color = Schema.GetPinTypeColor(Pin.PinType);
		Layout.bInput = Pin.Direction == EGPD_Input;
		Layout.bExec = UEdGraphSchema_K2::IsExecPin(Pin);
		Layout.bConnected = Pin.HasAnyConnections();
		Layout.bContainer = Pin.PinType.IsContainer();
		Layout.bHasValue = FPinValueText::HasValue(Pin);
		if (Layout.bHasValue)
		{
			Layout.bIsSwitch = Pin.PinType.PinCategory == UEdGraphSchema_K2::PC_Boolean;
			Layout.Value = FPinValueText::Get(Pin);
			const double TextWidth = WidthOf(Layout.Value, FGraphLayout::GetValueFont()) + ValueMargin;
			Layout.ValueWidth = Layout.bIsSwitch ? FGraphLayout::SwitchSize : FMath::Max(TextWidth, LeastValueWidth);
		}
		return Layout;
	}

	static double GetWidth(const FGraphPinLayout& Pin)
	{
		return 2.0 * FGraphLayout::ConnectorInset + Pin.LabelWidth +
			   (Pin.bHasValue ? FGraphLayout::LabelGap + Pin.ValueWidth : 0.0);
	}

	static void PlacePins(FGraphNodeLayout& Layout, double TitleWidth)
	{
		double Widths[2] = { 0.0, 0.0 };
		int32 Rows[2] = { 0, 0 };
		for (FGraphPinLayout& Pin : Layout.Pins)
		{
			if (Pin.bInTitle)
			{
				Pin.Place.Y = FGraphLayout::BarHeight / 2.0;
				continue;
			}
			const int32 Side = Pin.bInput ? 0 : 1;
			Widths[Side] = FMath::Max(Widths[Side], GetWidth(Pin));
			const double Middle = (Rows[Side] + 0.5) * FGraphLayout::RowHeight;
			Pin.Place.Y = Layout.TitleHeight + FGraphLayout::BodyPadding + Middle;
			++Rows[Side];
		}
		const double Gap = Rows[0] > 0 && Rows[1] > 0 ? ColumnGap : 0.0;
		const double Width = FMath::Max(TitleWidth, Widths[0] + Gap + Widths[1]);
		const double Height = Layout.TitleHeight + 2.0 * FGraphLayout::BodyPadding +
							  FMath::Max(Rows[0], Rows[1]) * FGraphLayout::RowHeight;
		const bool bCapsule = Layout.Shape == EGraphNodeShape::Capsule;
		Layout.Size = bCapsule ? FVector2D(Width + CapsuleMargin, FMath::Max(Height, CapsuleHeight))
							   : FVector2D(FMath::Max(Width, LeastWidth), Height);
		for (FGraphPinLayout& Pin : Layout.Pins)
		{
			Pin.Place.X = Pin.bInput ? FGraphLayout::ConnectorInset : Layout.Size.X - FGraphLayout::ConnectorInset;
		}
	}

	/** The text in lines that are no wider than Width. */
	TArray<FString> Wrap(const FString& Text, double Width, int32 MaxLines) const
	{
		TArray<FString> Paragraphs;
		TArray<FString> Lines;
		Text.ParseIntoArrayLines(Paragraphs);
		for (const FString& Paragraph : Paragraphs)
		{
			int32 Begin = 0;
			const TArray<int32> Lengths =
				Measure.FindLineBreaks(Paragraph, FGraphLayout::GetValueFont(), static_cast<float>(Width));
			for (const int32 Length : Lengths)
			{
				Lines.Add(Paragraph.Mid(Begin, Length).TrimStartAndEnd());
				Begin += Length;
			}
		}
		if (Lines.Num() > MaxLines)
		{
			Lines.SetNum(MaxLines);
			Lines.Last() += TEXT("\u2026");
		}
		return Lines;
	}

	void FillMessage(const UEdGraphNode& Node, FGraphNodeLayout& Layout) const
	{
		Layout.MessageKind = GetMessageKind(Node);
		if (Layout.MessageKind == EGraphMessage::None)
		{
			return;
		}
		Layout.Message = Wrap(Node.ErrorMsg, Layout.Size.X - BubbleMargin, MaxMessageLines);
		Layout.Size.Y += Layout.GetMessageHeight();
	}

	void FillBubble(const UEdGraphNode& Node, FGraphNodeLayout& Layout) const
	{
		if (!Node.bCommentBubbleVisible || Node.NodeComment.IsEmpty())
		{
			return;
		}
		constexpr double WidestBubble = 320.0;
		Layout.Bubble = Wrap(Node.NodeComment, WidestBubble, MaxBubbleLines);
		for (const FString& Line : Layout.Bubble)
		{
			Layout.BubbleWidth =
				FMath::Max(Layout.BubbleWidth, WidthOf(Line, FGraphLayout::GetValueFont()) + BubbleMargin);
		}
	}

	void AddWires(const UEdGraphNode* Node)
	{
		for (const UEdGraphPin* const Pin : Node ? Node->Pins : TArray<UEdGraphPin*>())
		{
			for (const UEdGraphPin* const Linked : Pin->LinkedTo)
			{
				const FPinPlace* const From = PinPlaces.Find(Pin);
				const FPinPlace* const To = PinPlaces.Find(Linked);
				// Each link stands at both ends; the output draws it.
				if (Pin->Direction == EGPD_Output && From && To)
				{
					AddWire(*From, *To);
				}
			}
		}
	}

	struct FPinPlace
	{
		int32 Node;
		int32 Pin;
	};

	void AddWire(const FPinPlace& FromPlace, const FPinPlace& ToPlace)
	{
		const FGraphNodeLayout& FromNode = Out.Nodes[FromPlace.Node];
		const FGraphNodeLayout& ToNode = Out.Nodes[ToPlace.Node];
		const FGraphPinLayout& Pin = FromNode.Pins[FromPlace.Pin];
		const FVector2D Reach(FGraphLayout::ConnectorRadius, 0.0);
		const FVector2D Start = FromNode.Position + Pin.Place + Reach;
		const FVector2D End = ToNode.Position + ToNode.Pins[ToPlace.Pin].Place - Reach;
		const FVector2D Way = End - Start;
		// A wire that runs back swings out farther.
		const double Wish =
			Way.X >= 0.0 ? Way.X * 0.5 + FMath::Abs(Way.Y) * 0.15 : -Way.X * 0.5 + FMath::Abs(Way.Y) * 0.25;
		const FVector2D Pull(FMath::Clamp(Wish, LeastPull, MostPull), 0.0);
		FGraphWireLayout Wire;
		Wire.Points[0] = Start;
		Wire.Points[1] = Start + Pull;
		Wire.Points[2] = End - Pull;
		Wire.Points[3] = End;
		Wire.Color = Pin.Color;
		Wire.bExec = Pin.bExec;
		Out.Wires.Add(Wire);
	}

	const UEdGraph& Graph;
	const UEdGraphSchema& Schema;
	const FSlateFontMeasure& Measure;
	FGraphLayout& Out;
	TMap<const UEdGraphPin*, FPinPlace> PinPlaces;
};

FSlateFontInfo MakeFont(FName Typeface, float Points)
{
	return FCoreStyle::GetDefaultFontStyle(Typeface, Points);
}
}

const FSlateFontInfo& FGraphLayout::GetTitleFont()
{
	static const FSlateFontInfo Font = GraphLayout::MakeFont("Bold", 10.0f);
	return Font;
}

const FSlateFontInfo& FGraphLayout::GetSubtitleFont()
{
	static const FSlateFontInfo Font = GraphLayout::MakeFont("Italic", 8.0f);
	return Font;
}

const FSlateFontInfo& FGraphLayout::GetLabelFont()
{
	static const FSlateFontInfo Font = GraphLayout::MakeFont("Regular", 9.0f);
	return Font;
}

const FSlateFontInfo& FGraphLayout::GetValueFont()
{
	static const FSlateFontInfo Font = GraphLayout::MakeFont("Regular", 8.0f);
	return Font;
}

FSlateFontInfo FGraphLayout::GetCommentFont(float Points)
{
	return GraphLayout::MakeFont("Bold", FMath::Clamp(Points, 6.0f, 72.0f));
}

FSlateRect FGraphNodeLayout::GetBounds() const
{
	const double Above = Bubble.IsEmpty() ? 0.0 : GetBubbleHeight() + GraphLayout::BubbleGap;
	const double Width = FMath::Max(Size.X, BubbleWidth);
	return FSlateRect(Position - FVector2D(0.0, Above), Position + FVector2D(Width, Size.Y));
}

double FGraphNodeLayout::GetBubbleHeight() const
{
	return Bubble.Num() * FGraphLayout::LineHeight + FGraphLayout::BodyPadding;
}

double FGraphNodeLayout::GetMessageHeight() const
{
	return MessageKind == EGraphMessage::None
			   ? 0.0
			   : (Message.Num() + 1) * FGraphLayout::LineHeight + FGraphLayout::BodyPadding;
}

FSlateRect FGraphWireLayout::GetBounds() const
{
	FSlateRect Bounds(Points[0], Points[0]);
	for (const FVector2D& Point : Points)
	{
		GraphLayout::Include(Bounds, Point);
	}
	return Bounds;
}

FGraphLayout FGraphLayout::Of(const UEdGraph& Graph, const FSlateFontMeasure& Measure)
{
	FGraphLayout Layout;
	GraphLayout::FBuilder(Graph, Measure, Layout).Build();
	return Layout;
}

FSlateRect FGraphLayout::GetBounds() const
{
	FSlateRect Sum = Nodes.IsEmpty() ? FSlateRect() : Nodes[0].GetBounds();
	for (const FGraphNodeLayout& Node : Nodes)
	{
		const FSlateRect Bounds = Node.GetBounds();
		GraphLayout::Include(Sum, Bounds.GetTopLeft());
		GraphLayout::Include(Sum, FVector2D(Bounds.Right, Bounds.Bottom));
	}
	return Sum;
}

int32 FGraphLayout::FindNodeAt(const FVector2D& Place) const
{
	for (int32 Index = Nodes.Num() - 1; Index >= 0; --Index)
	{
		const FGraphNodeLayout& Node = Nodes[Index];
		const double Height = Node.Shape == EGraphNodeShape::Comment ? Node.TitleHeight : Node.Size.Y;
		if (FSlateRect(Node.Position, Node.Position + FVector2D(Node.Size.X, Height)).ContainsPoint(Place))
		{
			return Index;
		}
	}
	return INDEX_NONE;
}
