#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Chat/PromptStore.h"
#include "Agent/Files/NativeFile.h"
#include "Containers/Ticker.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Text/TextLayout.h"
#include "HAL/FileManager.h"
#include "InputCoreTypes.h"
#include "KestrelSettings.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "Support/TestPanel.h"
#include "UObject/Class.h"
#include "Widget/Prompt/ProjectNames.h"
#include "Widget/Prompt/SKestrelPromptBox.h"
#include "Widget/SKestrelWidget.h"
#include "Widgets/SWindow.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace PromptBoxTest
{
using FPanel = FKestrelTestPanel;

void Send(const FPanel& Panel, const TCHAR* Prompt)
{
	FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
	Panel.Type(Prompt);
	Panel.Press(EKeys::Enter, false);
	FAgent::Get().SetAgentState(EAgentState::PollResponse, nullptr);
	FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
}

/** What waits is sent by the editor's ticker. */
void RunFrame()
{
	FTSTicker::GetCoreTicker().Tick(0.016f);
}

/** Which keys choose the file of which name. */
struct FChoice
{
	const TCHAR* End; // of the name
	TArray<FKey> Keys;
};

/** A panel in a project with two files of names that nothing else has. */
class FCompletionPanel : public FKestrelTestPanel
{
public:
	FCompletionPanel()
	{
		Folder.Write(TEXT("UnlikelyWalker.h"), TEXT("x"));
		Folder.Write(TEXT("UnlikelyWalker.cpp"), TEXT("x"));
	}

	/** Types as a keyboard does, and gives the list its time. */
	void TypeLetters(const FString& Letters) const
	{
		FSlateApplication& Slate = FSlateApplication::Get();
		Slate.SetKeyboardFocus(PromptBox());
		for (const TCHAR Letter : Letters)
		{
			Slate.ProcessKeyCharEvent(FCharacterEvent(Letter, FModifierKeysState(), 0, false));
		}
		for (int32 Frame = 0; Frame < 100; ++Frame)
		{
			RunFrame();
			Slate.Tick();
		}
	}

	/** Paths of the files whose names end so; several with "|" between. */
	FString Files(const FString& Ends) const
	{
		return Folder.Name + TEXT("/UnlikelyWal") +
			   Ends.Replace(TEXT("|"), *(TEXT("|") + Folder.Name + TEXT("/UnlikelyWal")));
	}

	FString ListedNames() const
	{
		TArray<FString> Names;
		for (const TSharedRef<SWidget>& Row : FindRows())
		{
			Names.Add(Row->GetAccessibleText().ToString());
		}
		return FString::Join(Names, TEXT("|"));
	}

	bool IsListAboveBox() const
	{
		const TArray<TSharedRef<SWidget>> Rows = FindRows();
		return !Rows.IsEmpty() && Rows.Last()->GetCachedGeometry().GetLayoutBoundingRect().Bottom <=
									  PromptBox()->GetCachedGeometry().GetLayoutBoundingRect().Top;
	}

	bool ClickRow(int32 Index) const
	{
		const TArray<TSharedRef<SWidget>> Rows = FindRows();
		if (!Rows.IsValidIndex(Index))
		{
			return false;
		}
		ClickWidget(*Rows[Index]);
		return true;
	}

private:
	TArray<TSharedRef<SWidget>> FindRows() const
	{
		TArray<TSharedRef<SWidget>> Rows;
		CollectRows(Window, false, Rows);
		return Rows;
	}

	static void CollectRows(const TSharedRef<SWidget>& Widget, bool bInList, TArray<TSharedRef<SWidget>>& OutRows)
	{
		if (bInList && Widget->GetType() == FName("SButton"))
		{
			OutRows.Add(Widget);
		}
		const bool bIn = bInList || Widget->GetType() == FName("SKestrelCompletionList");
		FChildren* Children = Widget->GetChildren();
		for (int32 Index = 0; Index < Children->Num(); ++Index)
		{
			CollectRows(Children->GetChildAt(Index), bIn, OutRows);
		}
	}

	const FKestrelTestFolder Folder;
};

/** A store in a folder of the test's own, with its prompts. */
FKestrelPromptStore OpenStore(const FString& File)
{
	FKestrelPromptStore Store;
	Store.Open(File);
	return Store;
}
}

BEGIN_DEFINE_SPEC(FKestrelPromptBoxSpec, "Kestrel.PromptBox", KestrelTest::Flags)
	void TestBox(const FKestrelTestPanel& Panel, const TCHAR* What, const TCHAR* Expected);
END_DEFINE_SPEC(FKestrelPromptBoxSpec)

void FKestrelPromptBoxSpec::TestBox(const FKestrelTestPanel& Panel, const TCHAR* What, const TCHAR* Expected)
{
	KestrelTest::TestSameText(*this, What, Panel.PromptBox()->GetText().ToString(), Expected);
}

void FKestrelPromptBoxSpec::Define()
{
	Describe("recalls prompts", [this]() {
		It("up to the first, and back to what was being typed", [this]() {
			const PromptBoxTest::FPanel Panel;
			Panel.Type(TEXT("draft"));
			Panel.Press(EKeys::Up, false);
			TestBox(Panel, TEXT("nothing was sent"), TEXT("draft"));
			PromptBoxTest::Send(Panel, TEXT("first"));
			PromptBoxTest::Send(Panel, TEXT("second"));
			Panel.Type(TEXT("draft"));
			const TPair<FKey, const TCHAR*> Steps[] = { { EKeys::Up, TEXT("second") }, { EKeys::Up, TEXT("first") },
				{ EKeys::Up, TEXT("first") }, { EKeys::Down, TEXT("second") }, { EKeys::Down, TEXT("draft") },
				{ EKeys::Down, TEXT("draft") } };
			for (const TPair<FKey, const TCHAR*>& Step : Steps)
			{
				Panel.Press(Step.Key, false);
				TestBox(Panel, TEXT("step"), Step.Value);
			}
		});

		It("and keeps what was changed in them until one is sent", [this]() {
			const PromptBoxTest::FPanel Panel;
			PromptBoxTest::Send(Panel, TEXT("first"));
			PromptBoxTest::Send(Panel, TEXT("second"));
			Panel.Press(EKeys::Up, false);
			Panel.PromptBox()->InsertTextAtCursor(FString(TEXT(", changed")));
			Panel.Press(EKeys::Up, false);
			Panel.Press(EKeys::Down, false);
			TestBox(Panel, TEXT("changed"), TEXT("second, changed"));
			PromptBoxTest::Send(Panel, TEXT("third"));
			Panel.Press(EKeys::Up, false);
			Panel.Press(EKeys::Up, false);
			TestBox(Panel, TEXT("as it was sent"), TEXT("second"));
		});

		It("but moves among the lines of a prompt, written or wrapped, first", [this]() {
			const PromptBoxTest::FPanel Panel;
			PromptBoxTest::Send(Panel, TEXT("first"));
			FString Long;
			for (int32 Index = 0; Index < 60; ++Index)
			{
				Long += TEXT("word ");
			}
			for (const FString& Written : { FString(TEXT("one\ntwo")), Long })
			{
				Panel.Type(*Written);
				FSlateApplication::Get().Tick();
				Panel.Press(EKeys::Up, false);
				TestBox(Panel, TEXT("after one step"), *Panel.PromptBox()->GetText().ToString());
				TestFalse(TEXT("recalled at once"), Panel.PromptBox()->GetText().ToString() == TEXT("first"));
				for (int32 Step = 0; Step < 10; ++Step)
				{
					Panel.Press(EKeys::Up, false);
				}
				TestBox(Panel, TEXT("from the first row"), TEXT("first"));
				Panel.Press(EKeys::Down, false);
				Panel.Press(EKeys::Up, true);
				TestFalse(TEXT("recalled with Shift"), Panel.PromptBox()->GetText().ToString() == TEXT("first"));
				Panel.Type(TEXT(""));
				PromptBoxTest::Send(Panel, TEXT("first"));
			}
		});
	});

	Describe("lets a prompt wait", [this]() {
		It("that is sent while the agent works, until it awaits the user", [this]() {
			const PromptBoxTest::FPanel Panel;
			FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
			for (const TCHAR* Prompt : { TEXT("first"), TEXT("second\nline") })
			{
				Panel.Type(Prompt);
				TestTrue(TEXT("Enter is handled"), Panel.Press(EKeys::Enter, false));
				TestBox(Panel, TEXT("the box is empty"), TEXT(""));
			}
			for (const EAgentState State :
				{ EAgentState::PollResponse, EAgentState::AwaitingApproval, EAgentState::Pause })
			{
				FAgent::Get().SetAgentState(State, nullptr);
				PromptBoxTest::RunFrame();
				TestTrue(TEXT("still waits"), FAgent::Get().GetAgentState() == State);
			}
			Panel.Type(TEXT("third"));
			FAgent::Get().SetAgentState(EAgentState::AwaitingUpdate, nullptr);
			PromptBoxTest::RunFrame();
			TestTrue(TEXT("sent"), FAgent::Get().GetAgentState() == EAgentState::Continue);
			// "Sending request..." comes behind it.
			KestrelTest::TestSameText(*this, TEXT("what was sent"), Panel.Texts(true).Last(1)->GetText().ToString(),
				TEXT(" [ User ]\n\nfirst\n\nsecond\nline\n"));
			TestBox(Panel, TEXT("what is being typed stays"), TEXT("third"));
			TestFalse(TEXT("nothing waits"), Panel.Click(TEXT("Withdraw")));
		});

		It("which can be withdrawn, and comes back when the conversation ends or fails", [this]() {
			const PromptBoxTest::FPanel Panel;
			const TPair<const TCHAR*, TFunction<void()>> Ways[] = {
				{ TEXT("withdrawn"), [&Panel]() { Panel.Click(TEXT("Withdraw")); } },
				{ TEXT("ended"), [&Panel]() { Panel.Click(TEXT("[ End ]")); } },
				{ TEXT("failed"), []() { FAgent::Get().CancelRequest(TEXT("no route")); } },
			};
			for (const TPair<const TCHAR*, TFunction<void()>>& Way : Ways)
			{
				FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
				Panel.Type(TEXT("waits"));
				Panel.Press(EKeys::Enter, false);
				Panel.Type(TEXT("typed"));
				Way.Value();
				PromptBoxTest::RunFrame();
				TestBox(Panel, Way.Key, TEXT("waits\n\ntyped"));
				TestTrue(TEXT("not sent"), FAgent::Get().GetAgentState() != EAgentState::InitialRequest);
			}
		});

		It("and loses nothing with the panel", [this]() {
			const FKestrelTestLog Log;
			FKestrelInterface::Get().GetPromptStore().KeepDraft(TEXT("draft"));
			TSharedPtr<SKestrelPromptBox> Box = SNew(SKestrelPromptBox);
			Box->Queue();
			Box.Reset();
			Box = SNew(SKestrelPromptBox);
			KestrelTest::TestSameText(*this, TEXT("in the next"), Box->Take(), TEXT("draft"));
		});
	});

	Describe("gives back a prompt", [this]() {
		It("that failed before an answer came", [this]() {
			const PromptBoxTest::FPanel Panel;
			const auto Begin = [this, &Panel]() {
				FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
				Panel.Type(TEXT("my prompt"));
				Panel.Press(EKeys::Enter, false);
				TestBox(Panel, TEXT("sent"), TEXT(""));
			};
			Begin();
			FAgent::Get().HandleRegularRequestFailed(TEXT("no route"));
			TestBox(Panel, TEXT("back again"), TEXT("my prompt"));
			TestEqual(TEXT("with the cursor at its end"), Panel.PromptBox()->GetCursorLocation().GetOffset(), 9);
			Begin();
			Panel.Type(TEXT("typed"));
			FAgent::Get().HandleRegularRequestFailed(TEXT("no route"));
			TestBox(Panel, TEXT("beside what was typed"), TEXT("typed"));
			Begin();
			Panel.Click(TEXT("[ End ]"));
			TestBox(Panel, TEXT("when it was ended"), TEXT(""));
			Begin();
			FAgent::Get().SetAgentState(EAgentState::PollResponse, nullptr);
			FAgent::Get().HandlePollStatusRequestFailed(TEXT("no route"));
			TestBox(Panel, TEXT("when it was answered"), TEXT(""));
		});
	});

	Describe("completes paths behind @", [this]() {
		It("with the keyboard", [this]() {
			const PromptBoxTest::FCompletionPanel Panel;
			Panel.TypeLetters(TEXT("read @unlikelywal"));
			KestrelTest::TestSameText(*this, TEXT("list"), Panel.ListedNames(), Panel.Files(TEXT("ker.h|ker.cpp")));
			TestTrue(TEXT("above the box"), Panel.IsListAboveBox());
			const PromptBoxTest::FChoice Choices[] = {
				{ TEXT("ker.h"), { EKeys::Enter } },
				{ TEXT("ker.h"), { EKeys::Tab } },
				{ TEXT("ker.cpp"), { EKeys::Down, EKeys::Enter } },
				{ TEXT("ker.cpp"), { EKeys::Up, EKeys::Enter } },
				{ TEXT("ker.h"), { EKeys::Down, EKeys::Down, EKeys::Enter } },
			};
			for (const PromptBoxTest::FChoice& Choice : Choices)
			{
				Panel.Type(TEXT("x"));
				Panel.Type(TEXT(""));
				Panel.TypeLetters(TEXT("read @unlikelywal"));
				for (const FKey& Key : Choice.Keys)
				{
					TestTrue(TEXT("the key is handled"), Panel.Press(Key, false));
				}
				TestBox(Panel, Choice.End, *(TEXT("read ") + Panel.Files(Choice.End) + TEXT(" ")));
				KestrelTest::TestSameText(*this, TEXT("closed"), Panel.ListedNames(), TEXT(""));
				TestTrue(TEXT("nothing was sent"), FAgent::Get().GetAgentState() == EAgentState::Idle);
			}
			Panel.TypeLetters(TEXT("it"));
			TestBox(
				Panel, TEXT("the cursor is behind it"), *(TEXT("read ") + Panel.Files(TEXT("ker.h")) + TEXT(" it")));
		});

		It("with the mouse, in the middle of a text of several lines", [this]() {
			const PromptBoxTest::FCompletionPanel Panel;
			Panel.Type(TEXT("one\nread  and go\nthree"));
			Panel.PromptBox()->GoTo(FTextLocation(1, 5));
			Panel.TypeLetters(TEXT("@unlikelywal"));
			TestTrue(TEXT("listed"), Panel.ClickRow(1));
			TestBox(
				Panel, TEXT("clicked"), *(TEXT("one\nread ") + Panel.Files(TEXT("ker.cpp")) + TEXT(" and go\nthree")));
			TestTrue(TEXT("the prompt has the focus"), Panel.PromptBox()->HasKeyboardFocus());
		});

		It("unless nobody asked for it", [this]() {
			const PromptBoxTest::FCompletionPanel Panel;
			const TPair<const TCHAR*, bool> Texts[] = { { TEXT("@unlikelywal"), true }, { TEXT("(@unlikelywal"), true },
				{ TEXT("me@unlikelywal"), false }, { TEXT("@ unlikelywal"), false }, { TEXT("@unlikelywalzzz"), false },
				{ TEXT("unlikelywal"), false } };
			for (const TPair<const TCHAR*, bool>& Each : Texts)
			{
				Panel.Type(TEXT(""));
				Panel.TypeLetters(Each.Key);
				TestEqual(Each.Key, !Panel.ListedNames().IsEmpty(), Each.Value);
			}
			Panel.Type(TEXT(""));
			Panel.TypeLetters(TEXT("@unlikelyw"));
			TestTrue(TEXT("Escape is handled"), Panel.Press(EKeys::Escape, false));
			KestrelTest::TestSameText(*this, TEXT("closed"), Panel.ListedNames(), TEXT(""));
			Panel.TypeLetters(TEXT("a"));
			KestrelTest::TestSameText(*this, TEXT("and stays closed"), Panel.ListedNames(), TEXT(""));
			Panel.TypeLetters(TEXT(" @unlikelyw"));
			TestFalse(TEXT("until the next"), Panel.ListedNames().IsEmpty());
			FSlateApplication::Get().SetKeyboardFocus(Panel.FindButton(TEXT("[ Start ]")));
			KestrelTest::TestSameText(*this, TEXT("and goes with the focus"), Panel.ListedNames(), TEXT(""));
		});

		It("of files that the file tree has, and of assets", [this]() {
			const FKestrelTestFolder Folder;
			const FKestrelTestContent Content;
			Content.CreateBlueprint(TEXT("BP_UnlikelyGate")); // not saved
			IFileManager::Get().MakeDirectory(*FPaths::GetPath(Content.GetFile(TEXT("BP_UnlikelyGate"))), true);
			for (const TCHAR* File :
				{ TEXT("a.h"), TEXT("b.nosuch"), TEXT("Binaries/c.h"), TEXT("d\u202E.h"), TEXT("e/f.cpp") })
			{
				Folder.Write(File, TEXT("x"));
			}
			FKestrelProjectNames Names;
			Names.Refresh();
			int32 NumSlices = 0;
			while (Names.ReadOn(0.0001))
			{
				++NumSlices;
			}
			TArray<FString> Found;
			for (int32 Index = 0; Index < Names.GetIndex().Num(); ++Index)
			{
				const FString& Name = Names.GetIndex().GetName(Index);
				if (Name.Equals(Content.Path / TEXT("BP_UnlikelyGate")))
				{
					Found.Add(TEXT("(gate)"));
				}
				else if (Name.StartsWith(Folder.Name))
				{
					Found.Add(Name.RightChop(Folder.Name.Len()));
				}
			}
			Found.Sort();
			KestrelTest::TestSameText(
				*this, TEXT("files"), FString::Join(Found, TEXT(" ")), TEXT("(gate) /a.h /e/f.cpp"));
			TestTrue(TEXT("a slice at a time"), NumSlices > 0);
		});
	});

	Describe("stores prompts", [this]() {
		It("for the next run, each once, for their user alone and without the key", [this]() {
			const FKestrelTestFolder Folder;
			const FString File = Folder.Full(TEXT("Kestrel/Prompts.json"));
			const TGuardValue<FString> Key(GetMutableDefault<UKestrelSettings>()->ApiKey, TEXT("canary-of-the-user"));
			FKestrelPromptStore Store = PromptBoxTest::OpenStore(File);
			for (const TCHAR* Prompt : { TEXT("one"), TEXT("two\n\u00e9 \"2\""), TEXT("One"), TEXT("one"), TEXT("  "),
					 TEXT("use canary-of-the-user") })
			{
				Store.Add(Prompt);
			}
			KestrelTest::TestSameText(*this, TEXT("prompts"),
				FString::Join(PromptBoxTest::OpenStore(File).GetPrompts(), TEXT("|")),
				TEXT("two\n\u00e9 \"2\"|One|one|use [API key]"));
			const int32 Mode = KestrelNativeFile::GetMode(File);
			TestTrue(TEXT("for its user alone"), Mode == -1 || (Mode & 077) == 0);
			Store.RemoveOld(30);
			TestEqual(TEXT("young ones stay"), PromptBoxTest::OpenStore(File).GetPrompts().Num(), 4);
			Store.RemoveAll();
			TestFalse(TEXT("the file is gone"), FPaths::FileExists(File));
		});

		It("no more than it has room for", [this]() {
			const FKestrelTestFolder Folder;
			const FString File = Folder.Full(TEXT("Prompts.json"));
			FKestrelPromptStore Store = PromptBoxTest::OpenStore(File);
			Store.Add(FString::ChrN(FKestrelPromptStore::MaxPromptBytes / 2 + 1, u'\u00e9'));
			TestEqual(TEXT("too long"), Store.GetPrompts().Num(), 0);
			for (int32 Index = 0; Index < FKestrelPromptStore::MaxPrompts + 5; ++Index)
			{
				Store.Add(FString::Printf(TEXT("prompt %d"), Index));
			}
			const TArray<FString> Prompts = PromptBoxTest::OpenStore(File).GetPrompts();
			TestEqual(TEXT("prompts"), Prompts.Num(), FKestrelPromptStore::MaxPrompts);
			KestrelTest::TestSameText(*this, TEXT("the oldest"), Prompts[0], TEXT("prompt 5"));
		});

		It("and reads whatever it finds", [this]() {
			const FKestrelTestFolder Folder;
			const TPair<const TCHAR*, const TCHAR*> Files[] = {
				{ TEXT(""), TEXT("") },
				{ TEXT("{\"prompts\":[{\"text\":\"a\",\"ti"), TEXT("") },
				{ TEXT("{\"prompts\":{\"text\":\"a\"}}"), TEXT("") },
				{ TEXT("{\"prompts\":[1,null,{\"text\":[],\"time\":1},{\"text\":\"a\"},{\"text\":\"b\",\"time\":1e300},"
					   "{\"text\":\"c\",\"time\":-1e300}]}"),
					TEXT("b|c") },
			};
			for (const TPair<const TCHAR*, const TCHAR*>& Each : Files)
			{
				Folder.Write(TEXT("Prompts.json"), Each.Key);
				FKestrelPromptStore Store = PromptBoxTest::OpenStore(Folder.Full(TEXT("Prompts.json")));
				KestrelTest::TestSameText(*this, Each.Key, FString::Join(Store.GetPrompts(), TEXT("|")), Each.Value);
				Store.RemoveOld(30);
				TestTrue(TEXT("what is old goes, what claims to come later stays"), Store.GetPrompts().Num() <= 1);
			}
			Folder.Write(TEXT("elsewhere.json"), TEXT("{\"prompts\":[{\"text\":\"a\",\"time\":1}]}"));
			if (KestrelNativeFile::MakeLink(Folder.Full(TEXT("link.json")), Folder.Full(TEXT("elsewhere.json"))))
			{
				FKestrelPromptStore Store = PromptBoxTest::OpenStore(Folder.Full(TEXT("link.json")));
				TestEqual(TEXT("behind a link"), Store.GetPrompts().Num(), 0);
				Store.Add(TEXT("b"));
				TestTrue(
					TEXT("the link stays"), !KestrelNativeFile::ReadLink(Folder.Full(TEXT("link.json"))).IsEmpty());
			}
		});
	});
}
