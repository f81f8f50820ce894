#include "HAL/PlatformApplicationMisc.h"
#include "OutputLogHistory.h"
#include "SLogView.h"
#include "SOutputLog.h"
#include "SlateTestFixture.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"
#include "Widgets/Layout/SScrollBar.h"
#include "Widgets/Text/STextBlock.h"

namespace OutputLogPanelTest
{
/** The panel as it is in its tab, with four lines of each level and of two categories. */
class FOutputLogPanelTest : public FSlateTest
{
protected:
	FOutputLogPanelTest()
		: History(MakeShared<FOutputLogHistory>())
	{
		Window->Resize(FVector2D(900.0, 300.0));
		History->Serialize(TEXT("hoots"), ELogVerbosity::Log, "LogOwl");
		History->Serialize(TEXT("is tired"), ELogVerbosity::Warning, "LogOwl");
		History->Serialize(TEXT("fell"), ELogVerbosity::Error, "LogElk");
		History->Serialize(TEXT("runs"), ELogVerbosity::Display, "LogElk");
		Show(SNew(SOutputLog, History));
		View = StaticCastSharedPtr<SLogView>(Find("SLogView"));
	}
	~FOutputLogPanelTest() override { View.Reset(); }

	using FMatches = TFunctionRef<bool(const TSharedRef<SWidget>&)>;

	static TSharedPtr<SWidget> FindIn(const TSharedRef<SWidget>& Widget, FMatches Matches)
	{
		if (Matches(Widget))
		{
			return Widget;
		}
		FChildren& Children = *Widget->GetChildren();
		for (int32 Index = 0; Index < Children.Num(); ++Index)
		{
			if (const TSharedPtr<SWidget> Found = FindIn(Children.GetChildAt(Index), Matches))
			{
				return Found;
			}
		}
		return nullptr;
	}
	TSharedPtr<SWidget> Find(FName Type) const
	{
		return FindIn(
			Window.ToSharedRef(), [Type](const TSharedRef<SWidget>& Each) { return Each->GetType() == Type; });
	}
	TSharedPtr<SWidget> FindText(const TCHAR* Text) const
	{
		return FindIn(Window.ToSharedRef(), [Text](const TSharedRef<SWidget>& Each) {
			return Each->GetType() == FName("STextBlock") &&
				   StaticCastSharedRef<STextBlock>(Each)->GetText().ToString().Equals(Text);
		});
	}
	void ClickText(const TCHAR* Text)
	{
		const TSharedPtr<SWidget> Found = FindText(Text);
		ASSERT_TRUE(Found.IsValid()) << TCHAR_TO_UTF8(Text);
		Click(MiddleOf(*Found));
		Tick();
	}
	std::string GetShown() const
	{
		std::string Lines;
		for (int32 Index = 0; Index < View->GetNumLines(); ++Index)
		{
			const FString& Text = View->GetLineText(Index);
			Lines += std::string(Index > 0 ? ", " : "") + TCHAR_TO_UTF8(*Text.RightChop(FCString::Strlen(TEXT("Log"))));
		}
		return Lines;
	}
	void LogLines(int32 Count)
	{
		for (int32 Index = 0; Index < Count; ++Index)
		{
			History->Serialize(*FString::Printf(TEXT("line %d"), Index), ELogVerbosity::Log, "LogOwl");
		}
		Tick();
	}
	FString GetLinesInView() const { return View->CreateAccessibleWidget()->AsText()->GetText(); }
	TSharedPtr<SScrollBar> GetBar(bool bSideways) const
	{
		return StaticCastSharedPtr<SScrollBar>(
			FindIn(Window.ToSharedRef(), [bSideways](const TSharedRef<SWidget>& Each) {
				const FVector2D Size(Each->GetCachedGeometry().GetLocalSize());
				return Each->GetType() == FName("SScrollBar") && (Size.X > Size.Y) == bSideways;
			}));
	}

	const TSharedRef<FOutputLogHistory> History;
	TSharedPtr<SLogView> View;
};

TEST_F(FOutputLogPanelTest, SwitchesHideTheirLevelAndBringItBack)
{
	const struct
	{
		const TCHAR* Switch;
		const char* Rest;
	} Cases[] = {
		{ TEXT("Messages"), "Owl: Warning: is tired, Elk: Error: fell" },
		{ TEXT("Warnings"), "Owl: hoots, Elk: Error: fell, Elk: Display: runs" },
		{ TEXT("Errors"), "Owl: hoots, Owl: Warning: is tired, Elk: Display: runs" },
	};
	for (const auto& Case : Cases)
	{
		ClickText(Case.Switch);
		EXPECT_EQ(GetShown(), Case.Rest);
		ClickText(Case.Switch);
		EXPECT_EQ(View->GetNumLines(), 4);
	}
}

TEST_F(FOutputLogPanelTest, SearchesWhileTheUserTypes)
{
	const TSharedPtr<SWidget> Box = Find("SEditableTextBox");
	ASSERT_TRUE(Box.IsValid());
	Click(MiddleOf(*Box));
	Type(TEXT("ELK r"));
	Tick();
	EXPECT_EQ(GetShown(), "Elk: Error: fell, Elk: Display: runs") << "in any letter case, each word anywhere";
	Type(TEXT("uns"));
	Tick();
	EXPECT_EQ(GetShown(), "Elk: Display: runs");
	for (int32 Index = 0; Index < 8; ++Index)
	{
		Press(EKeys::BackSpace);
	}
	Tick();
	EXPECT_EQ(View->GetNumLines(), 4);
}

TEST_F(FOutputLogPanelTest, MenuListsTheCategoriesThatHaveLogged)
{
	ClickText(TEXT("Categories"));
	const TSharedPtr<SWidget> Elk = FindText(TEXT("LogElk"));
	const TSharedPtr<SWidget> Owl = FindText(TEXT("LogOwl"));
	ASSERT_TRUE(Elk.IsValid() && Owl.IsValid());
	EXPECT_LT(MiddleOf(*Elk).Y, MiddleOf(*Owl).Y) << "in alphabetical order";
	Click(MiddleOf(*Elk));
	Tick();
	EXPECT_EQ(GetShown(), "Owl: hoots, Owl: Warning: is tired");
	EXPECT_TRUE(FindText(TEXT("LogOwl")).IsValid()) << "the menu stays for another choice";
	ClickText(TEXT("LogElk"));
	EXPECT_EQ(View->GetNumLines(), 4);
}

TEST_F(FOutputLogPanelTest, ClearsTheViewAndShowsWhatComesLater)
{
	ClickText(TEXT("Clear Log"));
	EXPECT_EQ(View->GetNumLines(), 0);
	EXPECT_TRUE(GetLinesInView().IsEmpty());
	ClickText(TEXT("Errors"));
	ClickText(TEXT("Errors"));
	EXPECT_EQ(View->GetNumLines(), 0) << "a switch does not bring cleared lines back";
	LogLines(1);
	EXPECT_EQ(GetShown(), "Owl: line 0");
}

TEST_F(FOutputLogPanelTest, ScrollsByItsBarTheWheelAndKeys)
{
	LogLines(200);
	EXPECT_TRUE(GetLinesInView().EndsWith(TEXT("line 199")));
	const TSharedPtr<SScrollBar> Bar = GetBar(false);
	ASSERT_TRUE(Bar.IsValid());
	EXPECT_TRUE(Bar->IsNeeded());
	const FSlateRect Track = Bar->GetCachedGeometry().GetLayoutBoundingRect();
	const FVector2D ThumbAtEnd(MiddleOf(*Bar).X, Track.Bottom - 5.0);
	App().ProcessMouseButtonDownEvent(nullptr, Pointer(ThumbAtEnd));
	App().ProcessMouseMoveEvent(Pointer(FVector2D(ThumbAtEnd.X, Track.Top)));
	App().ProcessMouseButtonUpEvent(Pointer(FVector2D(ThumbAtEnd.X, Track.Top)));
	Tick();
	EXPECT_TRUE(GetLinesInView().StartsWith(TEXT("LogOwl: hoots")));
	EXPECT_FALSE(View->IsFollowing());

	Wheel(MiddleOf(*View), -2.0f);
	Tick();
	EXPECT_FALSE(GetLinesInView().StartsWith(TEXT("LogOwl: hoots")));
	Wheel(MiddleOf(*View), 2.0f);
	Tick();
	EXPECT_TRUE(GetLinesInView().StartsWith(TEXT("LogOwl: hoots")));

	Click(MiddleOf(*View));
	Press(EKeys::Down);
	Tick();
	EXPECT_TRUE(GetLinesInView().StartsWith(TEXT("LogOwl: Warning: is tired"))) << "by one line";
	Press(EKeys::End);
	Tick();
	EXPECT_TRUE(View->IsFollowing());
	Press(EKeys::Home);
	Press(EKeys::PageDown);
	Press(EKeys::PageUp);
	Tick();
	EXPECT_TRUE(GetLinesInView().StartsWith(TEXT("LogOwl: hoots")));
}

TEST_F(FOutputLogPanelTest, ShowsABarForLongLinesOnlyWhileThereAreSome)
{
	EXPECT_FALSE(GetBar(true) && GetBar(true)->GetVisibility().IsVisible());
	History->Serialize(*FString::ChrN(500, TEXT('x')), ELogVerbosity::Log, "LogOwl");
	Tick();
	Tick();
	const TSharedPtr<SScrollBar> Bar = GetBar(true);
	ASSERT_TRUE(Bar && Bar->GetVisibility().IsVisible());
	const float ThumbAtStart = Bar->ThumbSize();
	EXPECT_LT(ThumbAtStart, 1.0f);
	const FSlateRect Track = Bar->GetCachedGeometry().GetLayoutBoundingRect();
	const FVector2D Thumb(Track.Left + 5.0, MiddleOf(*Bar).Y);
	App().ProcessMouseButtonDownEvent(nullptr, Pointer(Thumb));
	App().ProcessMouseMoveEvent(Pointer(FVector2D(Track.Right, Thumb.Y)));
	App().ProcessMouseButtonUpEvent(Pointer(FVector2D(Track.Right, Thumb.Y)));
	Tick();
	ClickText(TEXT("Clear Log"));
	Tick();
	EXPECT_FALSE(Bar->GetVisibility().IsVisible());
}

TEST_F(FOutputLogPanelTest, CopiesWhatTheMouseSelected)
{
	const auto Copy = [this] {
		FPlatformApplicationMisc::ClipboardCopy(TEXT("before"));
		Press(EKeys::C, Control());
		FString Copied;
		FPlatformApplicationMisc::ClipboardPaste(Copied);
		return std::string(TCHAR_TO_UTF8(*Copied));
	};
	const FSlateRect Place = View->GetCachedGeometry().GetLayoutBoundingRect();
	const FVector2D First(Place.Left + 20.0, Place.Top + 2.0);
	const FVector2D Below(Place.Left + 20.0, Place.Bottom - 2.0);
	Click(First);
	EXPECT_EQ(Copy(), "LogOwl: hoots");
	App().ProcessMouseButtonDownEvent(nullptr, Pointer(Below));
	App().ProcessMouseMoveEvent(Pointer(First));
	App().ProcessMouseButtonUpEvent(Pointer(First));
	EXPECT_EQ(Copy(), "LogOwl: hoots\nLogOwl: Warning: is tired\nLogElk: Error: fell\nLogElk: Display: runs")
		<< "from below upwards, and the space below the last line is the last line";

	Click(First);
	ClickText(TEXT("Messages"));
	App().SetKeyboardFocus(View);
	EXPECT_EQ(Copy(), "before") << "a selection that is out of view leaves the clipboard alone";
	ClickText(TEXT("Messages"));
	ClickText(TEXT("Clear Log"));
	App().SetKeyboardFocus(View);
	EXPECT_EQ(Copy(), "before");
}
}
