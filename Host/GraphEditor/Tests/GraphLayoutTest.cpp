#include "GraphLayout.h"
#include "Fonts/FontMeasure.h"
#include "GraphFingerprint.h"
#include "GraphTestSupport.h"
#include "Logging/TokenizedMessage.h"
#include "PinValueText.h"

namespace
{
using K2 = UEdGraphSchema_K2;

class FGraphLayoutTest : public FGraphTest
{
protected:
	FGraphLayout LayOut() const { return FGraphLayout::Of(Graph, FFixedFontMeasure()); }
};

TEST_F(FGraphLayoutTest, InputsStandLeftAndOutputsRightAndAWireGoesBetween)
{
	UEdGraphNode& From = AddNode(100, 200);
	UEdGraphNode& To = AddNode(600, 100);
	AddInput(From, K2::PC_Exec, TEXT("execute"));
	AddOutput(From, K2::PC_Exec, TEXT("then"));
	UEdGraphPin& Value = AddOutput(From, K2::PC_Int, TEXT("Count"));
	UEdGraphPin& Hidden = AddInput(To, K2::PC_Object, TEXT("self"));
	Hidden.bHidden = true;
	Value.MakeLinkTo(&AddInput(To, K2::PC_Int, TEXT("Number")));
	const FGraphLayout Layout = LayOut();
	ASSERT_EQ(Layout.Nodes.Num(), 2);
	const FGraphNodeLayout& Left = Layout.Nodes[0];
	ASSERT_EQ(Left.Pins.Num(), 3);
	EXPECT_LT(Left.Pins[0].Place.X, Left.Size.X / 2.0);
	EXPECT_GT(Left.Pins[1].Place.X, Left.Size.X / 2.0);
	EXPECT_EQ(Left.Pins[0].Place.Y, Left.Pins[1].Place.Y) << "in one row";
	EXPECT_EQ(Left.Pins[2].Place.Y, Left.Pins[1].Place.Y + FGraphLayout::RowHeight);
	EXPECT_LT(Left.Pins[2].Place.Y + FGraphLayout::ConnectorRadius, Left.Size.Y);
	ASSERT_EQ(Layout.Nodes[1].Pins.Num(), 1) << "the hidden pin is not shown";

	ASSERT_EQ(Layout.Wires.Num(), 1) << "a link that stands at both ends is one wire";
	const FGraphWireLayout& Wire = Layout.Wires[0];
	EXPECT_EQ(Wire.Points[0], FVector2D(100.0, 200.0) + Left.Pins[2].Place + FVector2D(5.0, 0.0));
	EXPECT_EQ(Wire.Points[3], FVector2D(600.0, 100.0) + Layout.Nodes[1].Pins[0].Place - FVector2D(5.0, 0.0));
	EXPECT_EQ(Wire.Color, GetDefault<K2>()->GetPinTypeColor(Value.PinType));
	EXPECT_FALSE(Wire.bExec);
}

TEST_F(FGraphLayoutTest, CommentsLieBehindAndAreHitAtTheirTitlesAlone)
{
	UEdGraphNode& Node = AddNode(50, 50);
	UEdGraphNode_Comment& Comment = AddNode<UEdGraphNode_Comment>(0, 0);
	Comment.NodeComment = TEXT("Why");
	Comment.NodeWidth = 500;
	Comment.NodeHeight = 300;
	const FGraphLayout Layout = LayOut();
	ASSERT_EQ(Layout.Nodes[0].Shape, EGraphNodeShape::Comment);
	EXPECT_EQ(ToUtf8(Layout.Nodes[0].Title), "Why");
	const auto FindAt = [&Layout](double X, double Y) {
		const int32 Index = Layout.FindNodeAt(FVector2D(X, Y));
		return Index == INDEX_NONE ? FName() : Layout.Nodes[Index].Name;
	};
	EXPECT_EQ(FindAt(60.0, 60.0), Node.GetFName());
	EXPECT_EQ(FindAt(10.0, 10.0), Comment.GetFName());
	EXPECT_EQ(FindAt(10.0, 200.0), FName()) << "on the comment's face";
	EXPECT_EQ(FindAt(-10.0, 10.0), FName());
	EXPECT_EQ(Layout.GetBounds(), FSlateRect(0.0f, 0.0f, 500.0f, 300.0f));
}

TEST_F(FGraphLayoutTest, BubblesStandAboveAndMessagesBelow)
{
	UEdGraphNode& Node = AddNode(0, 0);
	const double Height = LayOut().Nodes[0].Size.Y;
	Node.NodeComment = TEXT("First\nSecond");
	EXPECT_TRUE(LayOut().Nodes[0].Bubble.IsEmpty()) << "not to be seen";
	Node.bCommentBubbleVisible = true;
	Node.bHasCompilerMessage = true;
	Node.ErrorType = EMessageSeverity::Warning;
	Node.ErrorMsg = TEXT("Nobody calls this");
	const FGraphNodeLayout Layout = LayOut().Nodes[0];
	EXPECT_EQ(Layout.Bubble.Num(), 2);
	EXPECT_LT(Layout.GetBounds().Top, 0.0f);
	EXPECT_EQ(Layout.MessageKind, EGraphMessage::Warning);
	EXPECT_EQ(Layout.Size.Y, Height + Layout.GetMessageHeight());
	EXPECT_EQ(ToUtf8(FString::Join(Layout.Message, TEXT(" "))), "Nobody calls this");
}

struct FValueCase
{
	FName Category;
	const TCHAR* Default;
	const char* Shown; // null: nothing
};

TEST_F(FGraphLayoutTest, ShowsTheValuesOfInputsThatNothingIsLinkedTo)
{
	const FValueCase Cases[] = { { K2::PC_Real, TEXT("1.500000"), "1.5" }, { K2::PC_Real, TEXT("20.000000"), "20" },
		{ K2::PC_Int, TEXT("100"), "100" }, { K2::PC_Struct, TEXT("0.000000,-1.50,90.0"), "(0, -1.5, 90)" },
		{ K2::PC_Struct, TEXT("(R=0.660000,A=1.000000)"), "(R=0.66, A=1)" }, { K2::PC_Struct, TEXT(""), nullptr },
		{ K2::PC_String, TEXT(""), "" }, { K2::PC_String, TEXT("two\nlines"), "two lines" },
		{ K2::PC_String, TEXT("a text that is longer than a field is wide"), "a text that is longer than \u2026" },
		{ K2::PC_Exec, TEXT("5"), nullptr } };
	UEdGraphNode& Node = AddNode(0, 0);
	for (const FValueCase& Case : Cases)
	{
		UEdGraphPin& Pin = AddInput(Node, Case.Category);
		Pin.DefaultValue = Case.Default;
		EXPECT_EQ(FPinValueText::HasValue(Pin), Case.Shown != nullptr) << ToUtf8(Case.Default);
		if (Case.Shown)
		{
			EXPECT_EQ(ToUtf8(FPinValueText::Get(Pin)), Case.Shown);
		}
	}
	UEdGraphPin& Linked = AddInput(Node, K2::PC_Int, TEXT("Linked"));
	Linked.DefaultValue = TEXT("3");
	Linked.MakeLinkTo(&AddOutput(AddNode(0, 0), K2::PC_Int));
	EXPECT_FALSE(FPinValueText::HasValue(Linked));
}

TEST_F(FGraphLayoutTest, TheFingerprintTellsOfWhateverCanBeSeen)
{
	UEdGraphNode& Node = AddNode(0, 0);
	UEdGraphPin& Pin = AddInput(Node, K2::PC_Int);
	UEdGraphPin& Other = AddOutput(AddNode(300, 0), K2::PC_Int);
	uint64 Before = FGraphFingerprint::Of(Graph);
	EXPECT_EQ(FGraphFingerprint::Of(Graph), Before);
	const TFunction<void()> Changes[] = { [&] { Node.NodePosX = 16; }, [&] { Node.NodeComment = TEXT("New"); },
		[&] { Node.bCommentBubbleVisible = true; }, [&] { Node.SetEnabledState(ENodeEnabledState::Disabled); },
		[&] { Node.ErrorMsg = TEXT("No"); }, [&] { Pin.DefaultValue = TEXT("7"); }, [&] { Pin.MakeLinkTo(&Other); },
		[&] { Pin.PinName = TEXT("Renamed"); }, [&] { Pin.PinType.PinCategory = K2::PC_Real; },
		[&] { Graph.RemoveNode(Other.GetOwningNode()); } };
	int32 Number = 0;
	for (const TFunction<void()>& Change : Changes)
	{
		Change();
		const uint64 After = FGraphFingerprint::Of(Graph);
		EXPECT_NE(After, Before) << "change " << Number;
		Before = After;
		++Number;
	}
}
}
