#include "Framework/Application/SlateApplication.h"
#include "HAL/PlatformApplicationMisc.h"
#include "OutputLogHistory.h"
#include "SLogView.h"
#include "Widgets/SWindow.h"

#include <gtest/gtest.h>

namespace OutputLogTest
{
class FOutputLogTest : public testing::Test
{
protected:
	FOutputLogTest()
		: History(MakeShared<FOutputLogHistory>())
	{
		FSlateApplication::Create();
		Window = FSlateApplication::Get().AddWindow(SNew(SWindow).ClientSize(FVector2D(400.0, 300.0)));
		View = SNew(SLogView, History);
		Window->SetContent(View.ToSharedRef());
		FSlateApplication::Get().Tick();
	}
	virtual ~FOutputLogTest() override
	{
		View.Reset();
		Window.Reset();
		FSlateApplication::Shutdown();
	}

	void Log(const FString& Text, ELogVerbosity::Type Verbosity = ELogVerbosity::Log)
	{
		History->Serialize(*Text, Verbosity, "LogOwl");
	}
	void LogMany(int32 Count)
	{
		for (int32 Index = 0; Index < Count; ++Index)
		{
			Log(FString::Printf(TEXT("Hoot %d"), Index));
		}
		FSlateApplication::Get().Tick();
	}
	void Press(const FKey& Key, bool bControl = false) const
	{
		const FModifierKeysState Keys(false, false, bControl, false, false, false, false, false, false);
		View->OnKeyDown(View->GetCachedGeometry(), FKeyEvent(Key, Keys, 0, false, 0, 0));
	}

	const TSharedRef<FOutputLogHistory> History;
	TSharedPtr<SWindow> Window;
	TSharedPtr<SLogView> View;
};

TEST_F(FOutputLogTest, ShowsEachLineWithItsCategoryAndLevel)
{
	Log(TEXT("First\nSecond"), ELogVerbosity::Warning);
	FSlateApplication::Get().Tick();
	ASSERT_EQ(View->GetNumLines(), 2);
	EXPECT_TRUE(View->GetLineText(1).Equals(TEXT("LogOwl: Warning: Second")));
}

TEST_F(FOutputLogTest, KeepsTheNewestLinesOnly)
{
	LogMany(FOutputLogHistory::MaxLines + 7);
	ASSERT_EQ(View->GetNumLines(), FOutputLogHistory::MaxLines);
	EXPECT_TRUE(View->GetLineText(0).Equals(TEXT("LogOwl: Hoot 7")));
	Log(FString::ChrN(FOutputLogHistory::MaxLineLength * 2, TEXT('x')));
	FSlateApplication::Get().Tick();
	EXPECT_EQ(View->GetLineText(FOutputLogHistory::MaxLines - 1).Len(), FOutputLogHistory::MaxLineLength);
}

TEST_F(FOutputLogTest, FiltersByAllWordsAlsoWhatComesLater)
{
	LogMany(20);
	View->SetFilter(TEXT("hoot 1"));
	EXPECT_EQ(View->GetNumLines(), 11) << "1 and 10 to 19";
	Log(TEXT("Hoot 21"));
	Log(TEXT("Silence"));
	FSlateApplication::Get().Tick();
	EXPECT_EQ(View->GetNumLines(), 12);
	View->SetFilter(FString());
	EXPECT_EQ(View->GetNumLines(), 22);
}

TEST_F(FOutputLogTest, ForgetsWhatWasClearedWhateverTheFilter)
{
	LogMany(5);
	View->Clear();
	View->SetFilter(TEXT("hoot"));
	Log(TEXT("Hoot again"));
	FSlateApplication::Get().Tick();
	ASSERT_EQ(View->GetNumLines(), 1);
}

TEST_F(FOutputLogTest, FollowsTheEndUntilTheUserScrollsAway)
{
	LogMany(500);
	EXPECT_TRUE(View->IsFollowing());
	Press(EKeys::PageUp);
	LogMany(10);
	EXPECT_FALSE(View->IsFollowing());
	Press(EKeys::End);
	EXPECT_TRUE(View->IsFollowing());
}

TEST_F(FOutputLogTest, HidesLevelsAndCategoriesAndBringsThemBack)
{
	Log(TEXT("hoots"));
	Log(TEXT("is tired"), ELogVerbosity::Warning);
	Log(TEXT("fell"), ELogVerbosity::Error);
	History->Serialize(TEXT("runs"), ELogVerbosity::Display, "LogElk");
	FSlateApplication::Get().Tick();
	const auto CountWithout = [this](ELogVerbosity::Type Level) {
		View->SetLevelShown(Level, false);
		const int32 Count = View->GetNumLines();
		View->SetLevelShown(Level, true);
		return Count;
	};
	EXPECT_EQ(CountWithout(ELogVerbosity::Log), 2);
	EXPECT_EQ(CountWithout(ELogVerbosity::Warning), 3);
	EXPECT_EQ(CountWithout(ELogVerbosity::Error), 3);
	View->SetCategoryShown("LogOwl", false);
	ASSERT_EQ(View->GetNumLines(), 1);
	EXPECT_TRUE(View->GetLineText(0).Equals(TEXT("LogElk: Display: runs")));
	Log(TEXT("is still hidden"));
	FSlateApplication::Get().Tick();
	EXPECT_EQ(View->GetNumLines(), 1);
	View->SetCategoryShown("LogOwl", true);
	EXPECT_EQ(View->GetNumLines(), 5);
	EXPECT_EQ(History->GetCategories(), (TArray<FName>{ "LogOwl", "LogElk" }));
}

TEST_F(FOutputLogTest, CopiesTheSelectedLines)
{
	LogMany(3);
	Press(EKeys::A, true);
	Log(TEXT("Too late"));
	FSlateApplication::Get().Tick();
	Press(EKeys::C, true);
	FString Copied;
	FPlatformApplicationMisc::ClipboardPaste(Copied);
	EXPECT_TRUE(Copied.Equals(TEXT("LogOwl: Hoot 0\nLogOwl: Hoot 1\nLogOwl: Hoot 2")));
}
}
