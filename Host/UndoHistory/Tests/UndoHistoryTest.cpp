#include "EdGraphNode_Comment.h"
#include "Editor.h"
#include "Editor/TransBuffer.h"
#include "Framework/Application/SlateApplication.h"
#include "InputCoreTypes.h"
#include "Modules/ModuleManager.h"
#include "SUndoHistory.h"
#include "ScopedTransaction.h"
#include "UObject/Package.h"
#include "Widgets/SWindow.h"

#include <gtest/gtest.h>

namespace UndoHistoryTest
{
class FUndoHistoryTest : public testing::Test
{
protected:
	FUndoHistoryTest()
	{
		FModuleManager::Get().LoadModuleChecked("UnrealEd");
		GEditor->ResetTransaction(FText());
		Thing = NewObject<UEdGraphNode_Comment>(GetTransientPackage(), NAME_None, RF_Transactional);
		Thing->AddToRoot();
		FSlateApplication::Create();
		Window = FSlateApplication::Get().AddWindow(SNew(SWindow).ClientSize(FVector2D(400.0, 300.0)));
		Window->SetContent(SAssignNew(History, SUndoHistory));
		FSlateApplication::Get().Tick();
	}
	~FUndoHistoryTest() override
	{
		History.Reset();
		Window.Reset();
		FSlateApplication::Shutdown();
		Thing->RemoveFromRoot();
		GEditor->ResetTransaction(FText());
	}

	void Change(const TCHAR* Title) const
	{
		const FScopedTransaction Transaction(FText::FromString(Title));
		Thing->Modify();
		Thing->NodeComment = Title;
	}
	/** The titles, with ">" before the line of the position. */
	std::string GetLines() const
	{
		FString Lines;
		for (const SUndoHistory::FLine& Line : History->GetLines())
		{
			Lines += Line->Position == History->GetPosition() ? TEXT(">") : TEXT("");
			Lines += Line->Position == 0 ? TEXT("0 ") : *(Line->Title.ToString() + TEXT(" "));
		}
		return TCHAR_TO_UTF8(*Lines);
	}

	UEdGraphNode_Comment* Thing = nullptr;
	TSharedPtr<SWindow> Window;
	TSharedPtr<SUndoHistory> History;
};

TEST_F(FUndoHistoryTest, FollowsWhatIsDoneUndoneAndForgotten)
{
	EXPECT_EQ(GetLines(), ">0 ");
	Change(TEXT("A"));
	Change(TEXT("B"));
	EXPECT_EQ(GetLines(), "0 A >B ");
	GEditor->UndoTransaction();
	EXPECT_EQ(GetLines(), "0 >A B ") << "what was undone stays";
	Change(TEXT("C"));
	EXPECT_EQ(GetLines(), "0 A >C ");
	GEditor->ResetTransaction(FText());
	EXPECT_EQ(GetLines(), ">0 ");
}

TEST_F(FUndoHistoryTest, GoesToAnyPointAndBack)
{
	for (const TCHAR* Title : { TEXT("A"), TEXT("B"), TEXT("C"), TEXT("D") })
	{
		Change(Title);
	}
	const auto GoTo = [this](int32 Index) {
		const SUndoHistory::FLine Line = History->GetLines()[Index];
		History->GoTo(*Line);
		return std::string(TCHAR_TO_UTF8(*Thing->NodeComment));
	};
	EXPECT_EQ(GoTo(2), "B");
	EXPECT_EQ(GetLines(), "0 A >B C D ");
	EXPECT_EQ(GoTo(0), "");
	EXPECT_EQ(GoTo(4), "D");
	{
		const FScopedTransaction Open(FText::FromString(TEXT("Open")));
		const SUndoHistory::FLine Line = History->GetLines()[1];
		History->GoTo(*Line);
		EXPECT_EQ(std::string(TCHAR_TO_UTF8(*Thing->NodeComment)), "D") << "it cannot, and does not hang";
	}
}

TEST_F(FUndoHistoryTest, TheKeyboardGoesToTheSelectedLine)
{
	Change(TEXT("A"));
	Change(TEXT("B"));
	FSlateApplication& App = FSlateApplication::Get();
	App.Tick();
	TSharedPtr<SWidget> List = History;
	while (!List->SupportsKeyboardFocus())
	{
		List = List->GetChildren()->GetChildAt(0);
	}
	App.SetKeyboardFocus(List, EFocusCause::SetDirectly);
	const auto Press = [&App](const FKey& Key) {
		App.ProcessKeyDownEvent(FKeyEvent(Key, FModifierKeysState(), 0, false, 0, 0));
	};
	Press(EKeys::Home);
	Press(EKeys::Down);
	EXPECT_EQ(GetLines(), "0 A >B ") << "to look is not to go";
	Press(EKeys::Enter);
	EXPECT_EQ(GetLines(), "0 >A B ");
}
}
