#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Chat/Transcript.h"
#include "Agent/Text/JsonText.h"
#include "Containers/Ticker.h"
#include "Dom/JsonObject.h"
#include "Framework/Application/SlateApplication.h"
#include "HAL/FileManager.h"
#include "InputCoreTypes.h"
#include "KestrelSettings.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Support/TestPanel.h"
#include "UObject/Class.h"
#include "Widget/SKestrelWidget.h"
#include "Widgets/Input/SComboButton.h"
#include "Widgets/SWindow.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

namespace ConversationsTest
{
FKestrelTranscript& GetTranscript()
{
	return FKestrelInterface::Get().GetTranscript();
}

FString Join(const TArray<FString>& Texts)
{
	return FString::Join(Texts, TEXT("|"));
}

int32 CountOf(const FString& Text, const TCHAR* Part)
{
	return (Text.Len() - Text.Replace(Part, TEXT(""), ESearchCase::CaseSensitive).Len()) / FCString::Strlen(Part);
}

/** A conversation that has ended, with an answer. */
FString Leave(const TCHAR* Prompt, const TCHAR* Answer)
{
	const FString Id = FGuid::NewGuid().ToString();
	FKestrelInterface::Get().BeginConversation(Id, Prompt);
	FKestrelInterface::Get().AddOwnStatusMessage(Answer);
	return Id;
}

/** What the next editor finds when it starts. */
void RestartEditor(const FString& Folder)
{
	GetTranscript().Open(Folder);
	GetTranscript().RestoreLast();
}

TSharedPtr<SWidget> FindWidget(const TSharedRef<SWidget>& Widget, const FName& Type)
{
	if (Widget->GetType() == Type)
	{
		return Widget;
	}
	FChildren* Children = Widget->GetChildren();
	TSharedPtr<SWidget> Found;
	for (int32 Index = 0; Index < Children->Num() && !Found.IsValid(); ++Index)
	{
		Found = FindWidget(Children->GetChildAt(Index), Type);
	}
	return Found;
}

void CollectLabels(const TSharedRef<SWidget>& Widget, TArray<FString>& OutLabels)
{
	if (!Widget->GetVisibility().IsVisible())
	{
		return;
	}
	if (Widget->GetType() == FName("STextBlock"))
	{
		OutLabels.Add(StaticCastSharedRef<STextBlock>(Widget)->GetText().ToString());
	}
	FChildren* Children = Widget->GetChildren();
	for (int32 Index = 0; Index < Children->Num(); ++Index)
	{
		CollectLabels(Children->GetChildAt(Index), OutLabels);
	}
}

/** The list above a panel. */
class FList
{
public:
	explicit FList(const FKestrelTestPanel& InPanel)
		: Panel(InPanel)
	{
	}

	void Open() const
	{
		StaticCastSharedRef<SComboButton>(FindWidget(Panel.Window, "SComboButton").ToSharedRef())->SetIsOpen(true);
		Tick();
	}
	bool IsOpen() const { return FindWidget(Panel.Window, "SKestrelConversationList").IsValid(); }
	/** Which of some texts are shown. */
	FString FindShown(const TArray<FString>& Texts) const
	{
		TArray<FString> Labels;
		if (const TSharedPtr<SWidget> List = FindWidget(Panel.Window, "SKestrelConversationList"))
		{
			CollectLabels(List.ToSharedRef(), Labels);
		}
		return Join(Labels.FilterByPredicate([&Texts](const FString& Label) { return Texts.Contains(Label); }));
	}
	static void Type(const TCHAR* Text)
	{
		for (; *Text; ++Text)
		{
			FSlateApplication::Get().ProcessKeyCharEvent(FCharacterEvent(*Text, FModifierKeysState(), 0, false));
		}
		Tick();
	}
	static void Press(const FKey& Key)
	{
		FSlateApplication::Get().ProcessKeyDownEvent(FKeyEvent(Key, FModifierKeysState(), 0, false, 0, 0));
		Tick();
	}
	static void Tick()
	{
		FSlateApplication::Get().Tick();
		FSlateApplication::Get().Tick();
	}

private:
	const FKestrelTestPanel& Panel;
};
}

DEFINE_SPEC(FKestrelConversationsSpec, "Kestrel.Conversations", KestrelTest::Flags)
void FKestrelConversationsSpec::Define()
{
	using namespace ConversationsTest;

	It("shows the conversation again in a reopened panel, and logs nothing twice", [this]() {
		FKestrelTestPanel Panel;
		const FKestrelInterface& Interface = FKestrelInterface::Get();
		Leave(TEXT("prompt"), TEXT("a **bold** read_file line"));
		Interface.OnAddStatusMessage(TEXT(" [ Kestrel ] \n\nanswer\n"), FKestrelInterface::AssistantColor,
			FKestrelInterface::BoldFontName, FKestrelInterface::AssistantFontSize);
		Interface.OnAddDiffMessage(TEXT("/a.txt"), TEXT("one\ntwo"), TEXT("one\n2"));
		Interface.AddHint(INVTEXT("a hint"));
		const FString Blocks = Join(Panel.Blocks());
		const FString Log = Panel.Log();
		TestTrue(
			TEXT("all kinds"), Blocks.EndsWith(TEXT("a bold  line| [ Kestrel ] \n\nanswer\n|  one|- two|+ 2|a hint")));
		for (int32 Time = 0; Time < 2; ++Time)
		{
			Panel.Reopen();
			KestrelTest::TestSameText(*this, TEXT("blocks"), Join(Panel.Blocks()), Blocks);
			KestrelTest::TestSameText(*this, TEXT("log"), Panel.Log(), Log);
		}
		Leave(TEXT("another prompt"), TEXT("another conversation"));
		Panel.Reopen();
		TestTrue(TEXT("the new one only"), Join(Panel.Blocks()).StartsWith(TEXT("another conversation")));
	});

	It("shows an answer that came while it was closed, and logs it once", [this]() {
		FKestrelTestPanel Panel;
		Leave(TEXT("prompt"), TEXT("said before"));
		Panel.Close();
		FKestrelInterface::Get().AddOwnStatusMessage(TEXT("the answer"));
		FKestrelInterface::Get().OnAddDiffMessage(TEXT("/a.txt"), TEXT("old text"), TEXT("new text"));
		TestEqual(TEXT("not yet"), CountOf(Panel.Log(), TEXT("the answer")), 0);
		for (int32 Time = 0; Time < 2; ++Time)
		{
			Panel.Reopen();
			TestTrue(
				TEXT("shown"), Join(Panel.Blocks()).StartsWith(TEXT("said before|the answer|- old text|+ new text")));
			TestEqual(TEXT("answer"), CountOf(Panel.Log(), TEXT("] the answer\n\n")), 1);
			TestEqual(TEXT("texts"), CountOf(Panel.Log(), TEXT("] old text\n\n")), 1);
		}
		Panel.Close();
		FKestrelInterface::Get().AddOwnStatusMessage(TEXT("the last word"));
		RestartEditor(Panel.PromptLog.GetConversations());
		for (int32 Time = 0; Time < 2; ++Time)
		{
			Panel.Reopen();
			TestEqual(TEXT("after a restart"), CountOf(Panel.Log(), TEXT("] the last word\n\n")), 1);
			RestartEditor(Panel.PromptLog.GetConversations());
		}
		TestEqual(TEXT("nothing else again"), CountOf(Panel.Log(), TEXT("] the answer\n\n")), 1);
	});

	It("asks again for what waits when it is reopened", [this]() {
		FKestrelTestPanel Panel;
		FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
		FAgent::Get().HandlePollStatusRequestCompleted(KestrelJson::ParseObject(TEXT(
			"{\"response\":[{\"type\":\"tool_use\",\"id\":\"t\",\"name\":\"read_file\",\"input\":{\"path\":\"a\"}}]}")));
		const FString Blocks = Join(Panel.Blocks());
		Panel.Reopen();
		KestrelTest::TestSameText(*this, TEXT("blocks"), Join(Panel.Blocks()), Blocks);
		TestTrue(TEXT("approval"), Blocks.Contains(TEXT("Waiting for your approval")));
	});

	LatentIt("moves the dots of the last message again, and of no other", FTimespan::FromSeconds(30.0),
		[this](const FDoneDelegate& Done) {
			const TSharedRef<FKestrelTestPanel> Panel = MakeShared<FKestrelTestPanel>();
			Leave(TEXT("prompt"), TEXT("First..."));
			FKestrelInterface::Get().AddOwnStatusMessage(TEXT("Second..."));
			Panel->Reopen();
			FTSTicker::GetCoreTicker().AddTicker(TEXT("KestrelDots"), 0.6f, [this, Panel, Done](float) {
				KestrelTest::TestSameText(
					*this, TEXT("dots"), Join(Panel->Blocks()).Left(16), TEXT("First...|Second."));
				TestFalse(TEXT("moved"), Join(Panel->Blocks()).StartsWith(TEXT("First...|Second...")));
				RestartEditor(Panel->PromptLog.GetConversations());
				Panel->Reopen();
				FTSTicker::GetCoreTicker().AddTicker(TEXT("KestrelDots"), 0.6f, [this, Panel, Done](float) {
					TestTrue(TEXT("at rest after a restart"),
						Join(Panel->Blocks()).StartsWith(TEXT("First...|Second...|This was the last conversation.")));
					Done.Execute();
					return false;
				});
				return false;
			});
		});

	It("goes on with the last conversation after a restart until the next prompt", [this]() {
		FKestrelTestPanel Panel;
		const FString Id = Leave(TEXT("first prompt"), TEXT("an answer"));
		Panel.Close();
		RestartEditor(Panel.PromptLog.GetConversations());
		Panel.Reopen();
		TestTrue(TEXT("shown"), Join(Panel.Blocks()).StartsWith(TEXT("an answer|This was the last conversation.")));
		FKestrelInterface::Get().AddOwnStatusMessage(TEXT("undone"));
		KestrelTest::TestSameText(*this, TEXT("same"), GetTranscript().GetId(), Id);
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		Panel.Type(TEXT("script no-such-script"));
		Panel.Press(EKeys::Enter, false);
		TestFalse(TEXT("another"), GetTranscript().GetId().Equals(Id));
		TArray<FKestrelTranscriptEntry> Entries;
		GetTranscript().GetStore().Read(Id, Entries);
		TestTrue(TEXT("stored"), Entries.Num() == 2 && Entries[1].Text.Equals(TEXT("undone")));
		KestrelTest::TestSameText(
			*this, TEXT("title"), GetTranscript().GetStore().List()[0].Title, TEXT("script no-such-script"));
	});

	It("lists conversations, finds and opens one to be read, and goes back", [this]() {
		FKestrelTestPanel Panel(FVector2D(320.0, 700.0));
		Leave(TEXT("Health component"), TEXT("of old"));
		Leave(TEXT("Double jump"), TEXT("of now"));
		Panel.Reopen();
		const FList List(Panel);
		List.Open();
		const TArray<FString> Titles = { TEXT("Health component"), TEXT("Double jump") };
		KestrelTest::TestSameText(*this, TEXT("listed"), List.FindShown(Titles), TEXT("Double jump|Health component"));
		FList::Type(TEXT("HEALTH"));
		KestrelTest::TestSameText(*this, TEXT("found"), List.FindShown(Titles), TEXT("Health component"));
		TestTrue(TEXT("opened"), Panel.Click(TEXT("Health component")));
		TestFalse(TEXT("the list is closed"), List.IsOpen());
		const FSlateRect Window = Panel.Widget->GetCachedGeometry().GetLayoutBoundingRect();
		const TSharedPtr<SWidget> Back = Panel.FindButton(TEXT("Back to the current conversation"));
		TestTrue(TEXT("there is a way back"),
			Back.IsValid() && Back->GetCachedGeometry().GetLayoutBoundingRect().Right <= Window.Right);
		const FString Log = Panel.Log();
		FKestrelInterface::Get().AddOwnStatusMessage(TEXT("meanwhile"));
		TestEqual(TEXT("logged as ever"), CountOf(Panel.Log(), TEXT("] meanwhile\n\n")), 1);
		TestTrue(TEXT("both are there"), Join(Panel.Blocks()).Contains(TEXT("meanwhile|of old")));
		TestTrue(TEXT("back"), Panel.Click(TEXT("Back to the current conversation")));
		FList::Tick();
		TestFalse(TEXT("closed"), Join(Panel.Blocks()).Contains(TEXT("of old")));
		TestFalse(TEXT("logged again"), Panel.Log().Replace(*Log, TEXT("")).Contains(TEXT("of old")));
	});

	It("renames, exports, reuses and deletes a conversation from the list", [this]() {
		const FKestrelTestPanel Panel(FVector2D(420.0, 700.0));
		const FString Id = Leave(TEXT("Health component\nwith a maximum"), TEXT("of old"));
		const FList List(Panel);
		List.Open();
		TestTrue(TEXT("unfolded"), Panel.Click(TEXT("\u22EF")));
		TestTrue(TEXT("rename"), Panel.Click(TEXT("Rename")));
		FList::Type(TEXT("Hearts"));
		FList::Press(EKeys::Enter);
		KestrelTest::TestSameText(*this, TEXT("renamed"), List.FindShown({ TEXT("Hearts") }), TEXT("Hearts"));

		Panel.Click(TEXT("\u22EF"));
		TestTrue(TEXT("export"), Panel.Click(TEXT("Export as Markdown")));
		TArray<FString> Exports;
		const FString Folder = FPaths::GetPath(Panel.PromptLog.GetConversations()) / TEXT("Exports");
		IFileManager::Get().FindFiles(Exports, *(Folder / TEXT("Hearts-*.md")), true, false);
		TestTrue(TEXT("says where"),
			Exports.Num() == 1 && !List.FindShown({ TEXT("Exported to ") + Folder / Exports[0] }).IsEmpty());

		TestTrue(TEXT("delete"), Panel.Click(TEXT("Delete")));
		TestTrue(TEXT("asks"), Panel.Click(TEXT("Keep it")));
		TestTrue(TEXT("kept"), GetTranscript().GetStore().Find(Id).IsSet());
		Panel.Click(TEXT("\u22EF"));
		TestTrue(TEXT("again"), Panel.Click(TEXT("Use prompt again")));
		KestrelTest::TestSameText(
			*this, TEXT("prompt"), Panel.PromptBox()->GetText().ToString(), TEXT("Health component\nwith a maximum"));
		TestTrue(TEXT("to be sent"), Panel.PromptBox()->HasKeyboardFocus() && !List.IsOpen());

		List.Open();
		Panel.Click(TEXT("\u22EF"));
		Panel.Click(TEXT("Delete"));
		TestTrue(TEXT("confirmed"), Panel.Click(TEXT("Delete it")));
		TestFalse(TEXT("deleted"), GetTranscript().GetStore().Find(Id).IsSet());
		TestEqual(TEXT("off the screen"), Panel.Blocks().Num(), 0);
		FKestrelInterface::Get().AddOwnStatusMessage(TEXT("more"));
		TestFalse(TEXT("for good"), GetTranscript().GetStore().Find(Id).IsSet());
	});

	It("takes a conversation that is deleted off the screen, and leaves the current one", [this]() {
		const FKestrelTestPanel Panel(FVector2D(420.0, 700.0));
		Leave(TEXT("one"), TEXT("of old"));
		Leave(TEXT("two"), TEXT("of now"));
		const FString Log = Panel.Log();
		const FList List(Panel);
		List.Open();
		FList::Type(TEXT("one"));
		Panel.Click(TEXT("\u22EF"));
		Panel.Click(TEXT("Delete"));
		Panel.Click(TEXT("Delete it"));
		KestrelTest::TestSameText(*this, TEXT("shown"), Join(Panel.Blocks()), TEXT("of now"));
		KestrelTest::TestSameText(*this, TEXT("log"), Panel.Log(), Log);
	});

	It("deletes all conversations when it is confirmed", [this]() {
		const FKestrelTestPanel Panel(FVector2D(420.0, 700.0));
		Leave(TEXT("one"), TEXT("x"));
		Leave(TEXT("two"), TEXT("y"));
		const FList List(Panel);
		List.Open();
		TestTrue(TEXT("there"), Panel.Click(TEXT("Delete all")));
		TestTrue(TEXT("asks"), Panel.Click(TEXT("Keep them")));
		TestEqual(TEXT("kept"), GetTranscript().GetStore().List().Num(), 2);
		Panel.Click(TEXT("Delete all"));
		Panel.Click(TEXT("Delete them all"));
		TestEqual(TEXT("deleted"), GetTranscript().GetStore().List().Num(), 0);
		TestFalse(TEXT("nothing left to delete"), Panel.FindButton(TEXT("Delete all")).IsValid());
	});

	It("says in the panel that a stored conversation is damaged", [this]() {
		const FKestrelTestPanel Panel;
		const FString Id = FGuid::NewGuid().ToString();
		Leave(TEXT("x"), TEXT("y"));
		const FString File = Panel.PromptLog.GetConversations() / Id;
		FFileHelper::SaveStringToFile(TEXT("no JSON\n"), *(File + TEXT(".jsonl")));
		const FString Log = Panel.Log();
		const FList List(Panel);
		for (int32 Time = 0; Time < 2; ++Time)
		{
			List.Open();
			FSlateApplication::Get().DismissAllMenus();
		}
		const FString Said = TEXT("A stored conversation is damaged and cannot be shown. Its file is kept: ");
		KestrelTest::TestSameText(*this, TEXT("said"), Panel.LastBlock(), Said + File + TEXT(".damaged"));
		TestEqual(TEXT("once"), CountOf(Join(Panel.Blocks()), *Said), 1);
		KestrelTest::TestSameText(*this, TEXT("log"), Panel.Log(), Log);
	});
}
