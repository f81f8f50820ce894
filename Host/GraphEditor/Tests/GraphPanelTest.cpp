#include "Editor.h"
#include "Framework/Application/SlateApplication.h"
#include "GraphLayout.h"
#include "GraphTestSupport.h"
#include "GraphViewport.h"
#include "InputCoreTypes.h"
#include "Modules/ModuleManager.h"
#include "Rendering/DrawElements.h"
#include "SGraphPanel.h"
#include "ScopedTransaction.h"
#include "Types/PaintArgs.h"
#include "Widgets/SWindow.h"

namespace
{
class FGraphPanelTest : public FGraphTest
{
protected:
	FGraphPanelTest()
	{
		FModuleManager::Get().LoadModuleChecked("UnrealEd");
		FSlateApplication::Create();
		Window = FSlateApplication::Get().AddWindow(SNew(SWindow).ClientSize(FVector2D(800.0, 600.0)));
		Window->SetContent(SAssignNew(Panel, SGraphPanel));
		Panel->SetGraph(&Graph);
	}
	~FGraphPanelTest() override
	{
		Panel.Reset();
		Window.Reset();
		FSlateApplication::Shutdown();
		GEditor->ResetTransaction(FText());
	}

	static void Tick() { FSlateApplication::Get().Tick(); }
	static FPointerEvent Pointer(const FVector2D& Place, const FKey& Button, float Wheel = 0.0f)
	{
		return FPointerEvent(0, Place, Place, TSet<FKey>(), Button, Wheel, FModifierKeysState());
	}
	static void Drag(const FKey& Button, const FVector2D& From, const FVector2D& To)
	{
		FSlateApplication& App = FSlateApplication::Get();
		App.ProcessMouseButtonDownEvent(nullptr, Pointer(From, Button));
		App.ProcessMouseMoveEvent(Pointer(To, Button));
		App.ProcessMouseButtonUpEvent(Pointer(To, Button));
	}
	static void Press(const FKey& Key)
	{
		FSlateApplication::Get().ProcessKeyDownEvent(FKeyEvent(Key, FModifierKeysState(), 0, false, 0, 0));
	}
	/** How many things are drawn for what is in view. */
	int32 CountElements() const
	{
		double NextTimer = 0.0;
		FSlateWindowElementList Elements;
		Panel->Paint(FPaintArgs(0.0, 0.0f, &NextTimer), Panel->GetCachedGeometry(),
			FSlateRect(0.0f, 0.0f, 800.0f, 600.0f), Elements, 0, FWidgetStyle(), true);
		return Elements.GetElements().Num();
	}
	FVector2D GetPlaceOf(int32 Node) const
	{
		return Panel->GetViewport().ToPanel(Panel->GetLayout().Nodes[Node].Position);
	}

	TSharedPtr<SWindow> Window;
	TSharedPtr<SGraphPanel> Panel;
};

TEST_F(FGraphPanelTest, FollowsTheGraphAlsoWhenNobodyTells)
{
	UEdGraphNode& Node = AddNode(0, 0);
	Tick();
	ASSERT_EQ(Panel->GetLayout().Nodes.Num(), 1);
	const int32 NumLayouts = Panel->GetNumLayouts();
	Tick();
	EXPECT_EQ(Panel->GetNumLayouts(), NumLayouts) << "nothing has changed";
	{
		const FScopedTransaction Transaction(FText::FromString(TEXT("Move")));
		Node.Modify();
		Node.NodePosX = 320;
	}
	Tick();
	EXPECT_EQ(Panel->GetLayout().Nodes[0].Position.X, 320.0);
	GEditor->UndoTransaction();
	Tick();
	EXPECT_EQ(Panel->GetLayout().Nodes[0].Position.X, 0.0);
	GEditor->ResetTransaction(FText());
	DestroyGraph();
	Tick();
	EXPECT_EQ(Panel->GetLayout().Nodes.Num(), 0) << "the graph is gone";
}

TEST_F(FGraphPanelTest, TheMousePansZoomsAndSelects)
{
	const UEdGraphNode& Node = AddNode(0, 0);
	Tick();
	for (const FKey& Button : { EKeys::RightMouseButton, EKeys::MiddleMouseButton })
	{
		const FVector2D Before = GetPlaceOf(0);
		Drag(Button, FVector2D(100.0, 100.0), FVector2D(140.0, 75.0));
		EXPECT_EQ(GetPlaceOf(0), Before + FVector2D(40.0, -25.0));
		EXPECT_FALSE(Panel->HasMouseCapture());
	}
	FSlateApplication::Get().ProcessMouseWheelOrGestureEvent(
		Pointer(GetPlaceOf(0), EKeys::LeftMouseButton, -4.0f), nullptr);
	EXPECT_EQ(Panel->GetViewport().GetZoom(), 0.5);
	const FVector2D Before = GetPlaceOf(0);
	Drag(EKeys::LeftMouseButton, Before + FVector2D(5.0, 5.0), Before + FVector2D(60.0, 60.0));
	EXPECT_EQ(GetPlaceOf(0), Before) << "it is for looking at";
	EXPECT_EQ(Panel->GetSelectedNode(), Node.GetFName());
}

TEST_F(FGraphPanelTest, TheKeyboardPansAndFramesAll)
{
	AddNode(0, 0);
	AddNode(3000, 0);
	Tick();
	const FVector2D Framed = GetPlaceOf(0);
	FSlateApplication::Get().SetKeyboardFocus(Panel, EFocusCause::SetDirectly);
	Press(EKeys::Right);
	EXPECT_LT(GetPlaceOf(0).X, Framed.X);
	Press(EKeys::Up);
	EXPECT_GT(GetPlaceOf(0).Y, Framed.Y);
	for (const FKey& Key : { EKeys::F, EKeys::Home })
	{
		Press(EKeys::Left);
		Press(Key);
		Tick();
		EXPECT_EQ(GetPlaceOf(0), Framed);
	}
}

TEST_F(FGraphPanelTest, PaintsWhatIsInViewAlone)
{
	AddNode(0, 0);
	Tick();
	const int32 NumOfOne = CountElements();
	UEdGraphNode* Last = nullptr;
	for (int32 Index = 0; Index < 500; ++Index)
	{
		UEdGraphNode& Far = AddNode(5000 + 400 * (Index % 20), 5000 + 400 * (Index / 20));
		UEdGraphPin& In = AddInput(Far, UEdGraphSchema_K2::PC_Exec);
		if (Last)
		{
			In.MakeLinkTo(&AddOutput(*Last, UEdGraphSchema_K2::PC_Exec));
		}
		Last = &Far;
	}
	Tick();
	EXPECT_EQ(CountElements(), NumOfOne);
	Panel->ZoomToFit();
	Tick();
	EXPECT_GT(CountElements(), 500);
}
}
