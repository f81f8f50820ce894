#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Text/JsonText.h"
#include "Containers/Ticker.h"
#include "Dom/JsonObject.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "InputCoreTypes.h"
#include "KestrelSettings.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Support/TestPanel.h"
#include "ToolMenus.h"
#include "UObject/Class.h"
#include "Widget/SKestrelWidget.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/SWindow.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace PanelTest
{
/** What the buttons do in a state: with an empty prompt box and with a filled one. */
struct FStateCase
{
	EAgentState State;
	bool bStart;          // enabled, with a prompt; never without
	bool bContinueEmpty;  // enabled without a prompt
	bool bContinueFilled; // enabled with one
	bool bContinueVisible;
	bool bPauseVisible;
	bool bApprove;
	bool bEnd;
};

const FStateCase StateCases[] = {
	{ EAgentState::None, false, false, false, false, true, false, true },
	{ EAgentState::Indexing, false, false, false, false, true, false, true },
	{ EAgentState::Idle, true, false, false, true, false, false, false },
	{ EAgentState::InitialRequest, false, false, false, false, true, false, true },
	{ EAgentState::RegularRequest, false, false, false, false, true, false, true },
	{ EAgentState::PollRequest, false, false, false, false, true, false, true },
	{ EAgentState::PollResponse, false, false, false, false, true, false, true },
	{ EAgentState::AwaitingApproval, false, false, true, true, false, true, true },
	{ EAgentState::Approved, false, false, false, false, true, false, true },
	{ EAgentState::Continue, false, false, false, false, true, false, true },
	{ EAgentState::AwaitingUpdate, false, false, true, true, false, false, true },
	{ EAgentState::Pause, false, true, true, true, false, false, true },
	// These two fall through to Idle at once.
	{ EAgentState::CancelRequest, true, false, false, true, false, false, false },
	{ EAgentState::EndRequest, true, false, false, true, false, false, false },
};

using FPanel = FKestrelTestPanel;

TSharedPtr<SScrollBox> FindScrollBox(const TSharedRef<SWidget>& Widget)
{
	if (Widget->GetTypeAsString().EndsWith(TEXT("ScrollBox")))
	{
		return StaticCastSharedRef<SScrollBox>(Widget);
	}
	FChildren* Children = Widget->GetChildren();
	TSharedPtr<SScrollBox> Found;
	for (int32 Index = 0; Index < Children->Num() && !Found.IsValid(); ++Index)
	{
		Found = FindScrollBox(Children->GetChildAt(Index));
	}
	return Found;
}

bool IsButton(const SWidget& Widget)
{
	const FName Type = Widget.GetType();
	return Type == FName("SButton") || Type == FName("SKestrelApproveButton") || Type == FName("SKestrelUndoButton");
}

TSharedPtr<SWidget> FindLastEnabledButton(const TSharedRef<SWidget>& Widget)
{
	if (!Widget->GetVisibility().IsVisible())
	{
		return nullptr;
	}
	if (IsButton(*Widget))
	{
		return Widget->IsEnabled() ? Widget.ToSharedPtr() : nullptr;
	}
	FChildren* Children = Widget->GetChildren();
	TSharedPtr<SWidget> Found;
	for (int32 Index = Children->Num() - 1; Index >= 0 && !Found.IsValid(); --Index)
	{
		Found = FindLastEnabledButton(Children->GetChildAt(Index));
	}
	return Found;
}

void CollectButtons(const TSharedRef<SWidget>& Widget, TArray<FSlateRect>& OutPlaces)
{
	// What is scrolled out of the conversation keeps the place that it had.
	if (!Widget->GetVisibility().IsVisible() || Widget->GetType() == FName("SKestrelConversationView"))
	{
		return;
	}
	if (IsButton(*Widget))
	{
		OutPlaces.Add(Widget->GetCachedGeometry().GetLayoutBoundingRect());
		return;
	}
	FChildren* Children = Widget->GetChildren();
	for (int32 Index = 0; Index < Children->Num(); ++Index)
	{
		CollectButtons(Children->GetChildAt(Index), OutPlaces);
	}
}

/** An answer that asks for more tools than a small window has room for. */
TSharedPtr<FJsonObject> MakeAnswerWithTools(int32 NumTools)
{
	TArray<FString> Blocks;
	for (int32 Index = 0; Index < NumTools; ++Index)
	{
		Blocks.Add(FString::Printf(
			TEXT("{\"type\":\"tool_use\",\"id\":\"%d\",\"name\":\"read_file\",\"input\":{\"path\":\"Config/%d.ini\"}}"),
			Index, Index));
	}
	return KestrelJson::ParseObject(TEXT("{\"response\":[") + FString::Join(Blocks, TEXT(",")) + TEXT("]}"));
}

/** What the list of tools that wait says, an element a line, for an answer whose tool uses are name and input. */
FString DescribeWaiting(const TArray<TPair<FString, FString>>& ToolUses)
{
	TArray<FString> Blocks;
	for (const TPair<FString, FString>& Use : ToolUses)
	{
		Blocks.Add(FString::Printf(TEXT("{\"type\":\"tool_use\",\"id\":\"%d\",\"name\":\"%s\",\"input\":%s}"),
			Blocks.Num(), *Use.Key, *Use.Value));
	}
	const FPanel Panel;
	const int32 NumBefore = Panel.Texts(true).Num();
	FAgent::Get().SetAgentState(EAgentState::PollRequest, nullptr);
	FAgent::Get().HandlePollStatusRequestCompleted(
		KestrelJson::ParseObject(TEXT("{\"response\":[") + FString::Join(Blocks, TEXT(",")) + TEXT("]}")));
	TArray<FString> Lines;
	const TArray<TSharedRef<SMultiLineEditableText>> Texts = Panel.Texts(true);
	for (int32 Index = NumBefore; Index < Texts.Num(); ++Index)
	{
		Lines.Add(Texts[Index]->GetText().ToString());
	}
	return FString::Join(Lines, TEXT("\n"));
}

/** Some messages, and the frames in which they find their places. */
void AddMessages(int32 Count)
{
	for (int32 Index = 0; Index < Count; ++Index)
	{
		FKestrelInterface::Get().AddOwnStatusMessage(FString::Printf(TEXT("Message %d"), Index));
	}
	for (int32 Frame = 0; Frame < 3; ++Frame)
	{
		FSlateApplication::Get().Tick();
	}
}

void TurnWheel(const SWidget& Over, float Notches, bool bShift = false)
{
	const FGeometry& Geometry = Over.GetCachedGeometry();
	const FVector2D Place(Geometry.LocalToAbsolute(FVector2D(Geometry.GetLocalSize()) * 0.5));
	FSlateApplication::Get().ProcessMouseWheelOrGestureEvent(
		FPointerEvent(0, Place, Place, TSet<FKey>(), EKeys::MouseWheelAxis, Notches,
			FModifierKeysState(bShift, false, false, false, false, false, false, false, false)),
		nullptr);
}

void Enter(EAgentState State)
{
	// A prompt that the service refuses: nothing comes of it before the test is over.
	const FInitialRequestStateData Data(TEXT("script no-such-script"));
	FAgent::Get().SetAgentState(State, &Data);
}
}

DEFINE_SPEC(FKestrelPanelSpec, "Kestrel.Panel", KestrelTest::Flags)
void FKestrelPanelSpec::Define()
{
	It("shows the change of a file, unless the settings say no, and logs both texts", [this]() {
		const PanelTest::FPanel Panel;
		const int32 NumBefore = Panel.Texts(true).Num();
		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		Settings.bDisplayFileChangesInChat = false;
		FKestrelInterface::Get().OnAddDiffMessage(TEXT("/a.txt"), TEXT("not shown"), TEXT("nor logged"));
		Settings.bDisplayFileChangesInChat = true;
		TestEqual(TEXT("texts when switched off"), Panel.Texts(true).Num(), NumBefore);
		FKestrelInterface::Get().OnAddDiffMessage(TEXT("/a.txt"), TEXT("one\ntwo\nthree"), TEXT("one\n2\n\nthree"));
		TArray<FString> Runs;
		const TArray<TSharedRef<SMultiLineEditableText>> Texts = Panel.Texts(true);
		for (int32 Index = NumBefore; Index < Texts.Num(); ++Index)
		{
			Runs.Add(Texts[Index]->GetText().ToString());
		}
		KestrelTest::TestSameText(
			*this, TEXT("runs"), FString::Join(Runs, TEXT("|")), TEXT("  one|- two|+ 2\n+ |  three"));
		FString Log;
		FFileHelper::LoadFileToString(Log, *FKestrelInterface::Get().GetPromptLogFilePath());
		TestTrue(
			TEXT("logged"), Log.Contains(TEXT("] one\ntwo\nthree\n\n")) && Log.Contains(TEXT("] one\n2\n\nthree\n\n")));
		TestFalse(TEXT("logged when switched off"), Log.Contains(TEXT("nor logged")));
		FKestrelInterface::Get().OnAddDiffMessage(TEXT("/big.txt"), TEXT("little"), FString::ChrN(5000000, u'x'));
		KestrelTest::TestSameText(*this, TEXT("too large"), Panel.LastBlock(),
			TEXT("/big.txt has changed. The change is too large to be shown."));
		FFileHelper::LoadFileToString(Log, *FKestrelInterface::Get().GetPromptLogFilePath());
		TestTrue(TEXT("logged all the same"), Log.Contains(TEXT("] little\n\n")) && Log.Len() > 5000000);
	});

	It("shows what would not be seen in a change, and in the name of its file", [this]() {
		const PanelTest::FPanel Panel;
		const FKestrelInterface& Interface = FKestrelInterface::Get();
		Interface.OnAddDiffMessage(TEXT("/a.txt"), TEXT("a\r\n"), TEXT("a\r\n/* \u202E } \u2066if (b\u200B)\u2069"));
		KestrelTest::TestSameText(*this, TEXT("change"), Panel.LastBlock(),
			TEXT("+ /* \u27E8U+202E\u27E9 } \u27E8U+2066\u27E9if (b\u27E8U+200B\u27E9)\u27E8U+2069\u27E9"));
		Interface.OnAddDiffMessage(TEXT("/b\u202E.txt"), TEXT("little"), FString::ChrN(5000000, u'x'));
		KestrelTest::TestSameText(*this, TEXT("too large"), Panel.LastBlock(),
			TEXT("/b\u27E8U+202E\u27E9.txt has changed. The change is too large to be shown."));

		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("in the way"));
		FAgent::Get().SetUndoConversationID(TEXT("panel-test"));
		FFileHistory::Get().StoreFileDeletion(
			TEXT("panel-test"), Folder.Full(TEXT("a.txt")) / TEXT("c\u202E.txt"), TEXT("x"));
		const FKestrelPanelRecorder Recorder;
		FKestrelInterface::Get().UndoLastOperation();
		KestrelTest::TestSameText(*this, TEXT("not undone"), Recorder.GetTexts().Last(),
			TEXT("This file could not be written: ") + Folder.Full(TEXT("a.txt")) + TEXT("/c\u27E8U+202E\u27E9.txt"));
		FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*Folder.Full(TEXT("a.txt")));
		FFileHistory::Get().UndoAllChanges(TEXT("panel-test"));
		FFileHistory::Get().ForgetRedo(TEXT("panel-test"));
		FAgent::Get().SetUndoConversationID(FString());
		FKestrelInterface::Get().DeleteAllLogs();
	});

	It("changes no file that is for the key, and shows and logs no key", [this]() {
		const PanelTest::FPanel Panel;
		const FKestrelTestFolder Folder;
		const TGuardValue<FString> Key(GetMutableDefault<UKestrelSettings>()->ApiKey, TEXT("canary-of-the-user"));
		const FString Settings = FPaths::ConvertRelativePathToFull(
			FPaths::ProjectSavedDir() / TEXT("Config/Other/EditorPerUserSettings.ini"));
		const auto Create = [](const FString& Path, const TCHAR* Text) {
			return KestrelTest::UseTool(TEXT("create_file"), { TEXT("path"), Path, TEXT("file_text"), Text });
		};
		const FString Refusal = TEXT("Error: File can hold your API key and is not changed by tools: ");
		KestrelTest::TestSameText(*this, TEXT("by its path"), Create(Settings, TEXT("x")), Refusal + Settings);
		TestFalse(TEXT("created"), FPaths::FileExists(Settings));
		FFileHelper::SaveStringToFile(TEXT("ApiKey=canary-of-another-time"), *Settings);
		const FString Link = Folder.Full(TEXT("link.txt"));
		if (KestrelNativeFile::MakeLink(Link, Settings))
		{
			KestrelTest::TestSameText(*this, TEXT("by a link"),
				KestrelTest::UseTool(TEXT("insert_into_file"),
					{ TEXT("path"), Link, TEXT("insert_line"), TEXT("0"), TEXT("new_string"), TEXT("x") }),
				Refusal + Link);
			KestrelTest::TestSameText(*this, TEXT("the link itself"),
				KestrelTest::UseTool(TEXT("delete_file"), { TEXT("path"), Link }), Refusal + Link);
		}
		IFileManager::Get().DeleteDirectory(*FPaths::GetPath(Settings), false, true);
		Create(Folder.Full(TEXT("a.txt")), TEXT("x = canary-of-the-user"));
		KestrelTest::TestSameText(*this, TEXT("elsewhere"), Panel.LastBlock(), TEXT("+ x = [API key]"));
		FString Log;
		FFileHelper::LoadFileToString(Log, *FKestrelInterface::Get().GetPromptLogFilePath());
		TestTrue(TEXT("logged"), Log.Contains(TEXT("x = [API key]")));
		TestFalse(TEXT("the key is logged"), Log.Contains(TEXT("canary")));
		FFileHistory::Get().UndoAllChanges(FAgent::Get().GetConversationId());
		FKestrelInterface::Get().DeleteAllLogs();
	});

	It("offers to undo and redo what a conversation has changed", [this]() {
		const PanelTest::FPanel Panel;
		FAgent::Get().SetUndoConversationID(TEXT("panel-test"));
		TestFalse(TEXT("undo without changes"), Panel.Widget->IsUndoButtonEnabled());
		FFileHistory::Get().StoreFileCreation(TEXT("panel-test"), TEXT("/no/such/file"), TEXT("x"));
		TestTrue(TEXT("undo"), Panel.Widget->IsUndoButtonEnabled());
		TestFalse(TEXT("redo"), Panel.Widget->IsRedoButtonEnabled());
		Panel.Widget->OnUndoClicked();
		TestFalse(TEXT("undo, when it is done"), Panel.Widget->IsUndoButtonEnabled());
		TestFalse(TEXT("redo of nothing"), Panel.Widget->IsRedoButtonEnabled());
		FAgent::Get().SetRedoConversationID(FString());
	});

	for (const PanelTest::FStateCase& Case : PanelTest::StateCases)
	{
		It(TEXT("shows its buttons in the state ") + KestrelTest::NameOf(Case.State), [this, &Case]() {
			const PanelTest::FPanel Panel;
			const SKestrelWidget& Widget = *Panel.Widget;
			PanelTest::Enter(Case.State == EAgentState::Idle ? EAgentState::PollResponse : EAgentState::Idle);
			PanelTest::Enter(Case.State);
			Panel.Type(TEXT(""));
			TestFalse(TEXT("Start without a prompt"), Widget.UpdateStartButton());
			TestEqual(TEXT("Continue without a prompt"), Widget.UpdateContinueButtonEnability(), Case.bContinueEmpty);
			Panel.Type(TEXT("x"));
			TestEqual(TEXT("Start"), Widget.UpdateStartButton(), Case.bStart);
			TestEqual(TEXT("Continue"), Widget.UpdateContinueButtonEnability(), Case.bContinueFilled);
			TestTrue(
				TEXT("Continue is seen"), Widget.UpdateContinueButtonVisibility() ==
											  (Case.bContinueVisible ? EVisibility::Visible : EVisibility::Collapsed));
			TestTrue(TEXT("Pause is seen"), Widget.UpdatePauseButtonVisibility() ==
												(Case.bPauseVisible ? EVisibility::Visible : EVisibility::Collapsed));
			TestEqual(TEXT("Approve"), Widget.IsApproveButtonEnabled(), Case.bApprove);
			TestEqual(TEXT("End"), Widget.IsEndButtonEnabled(), Case.bEnd);
			TestTrue(TEXT("Approve is seen"), Widget.UpdateApproveButton() == EVisibility::Visible);
			const TGuardValue<bool> AutoApprove(GetMutableDefault<UKestrelSettings>()->bAutoApprove, true);
			TestTrue(TEXT("Approve is not seen"), Widget.UpdateApproveButton() == EVisibility::Collapsed);
		});
	}

	It("sends with Enter, breaks the line with Shift and Enter", [this]() {
		const PanelTest::FPanel Panel;
		PanelTest::Enter(EAgentState::Idle);
		TestTrue(TEXT("Enter in an empty box is handled"), Panel.Press(EKeys::Enter, false));
		TestTrue(TEXT("and does nothing"), FAgent::Get().GetAgentState() == EAgentState::Idle);
		Panel.Type(TEXT("script no-such-script"));
		Panel.Press(EKeys::Enter, true);
		TestTrue(TEXT("a line break"), Panel.PromptBox()->GetText().ToString().Contains(TEXT("\n")));
		Panel.Type(TEXT("script no-such-script"));
		Panel.Press(EKeys::Enter, false, true);
		TestTrue(TEXT("a held key does not send"), FAgent::Get().GetAgentState() == EAgentState::Idle);
		Panel.Press(EKeys::Enter, false);
		TestTrue(TEXT("sent"), FAgent::Get().GetAgentState() == EAgentState::InitialRequest);
		TestTrue(TEXT("the box is empty again"), Panel.PromptBox()->GetText().IsEmpty());
		TestFalse(TEXT("another key is not the panel's"),
			Panel.Widget->OnKeyDown(FGeometry(), FKeyEvent(EKeys::SpaceBar, FModifierKeysState(), 0, false, 0, 0))
				.IsEventHandled());
	});

	It("continues with Enter when the agent waits", [this]() {
		const PanelTest::FPanel Panel;
		PanelTest::Enter(EAgentState::Pause);
		Panel.Press(EKeys::Enter, false);
		TestTrue(TEXT("resumed without a prompt"), FAgent::Get().GetAgentState() == EAgentState::Continue);
		PanelTest::Enter(EAgentState::AwaitingUpdate);
		Panel.Press(EKeys::Enter, false);
		TestTrue(TEXT("nothing to say"), FAgent::Get().GetAgentState() == EAgentState::AwaitingUpdate);
		Panel.Type(TEXT("go on"));
		Panel.Press(EKeys::Enter, false);
		TestTrue(TEXT("continued with a prompt"), FAgent::Get().GetAgentState() == EAgentState::Continue);
	});

	It("stays where the user scrolled, and follows again from the end on", [this]() {
		const PanelTest::FPanel Panel;
		const TSharedRef<SScrollBox> Box = PanelTest::FindScrollBox(Panel.Widget.ToSharedRef()).ToSharedRef();
		const auto IsAtEnd = [&Box]() { return Box->GetScrollOffsetOfEnd() - Box->GetScrollOffset() < 2.0f; };
		PanelTest::AddMessages(30);
		TestTrue(TEXT("there is something to scroll"), Box->GetScrollOffsetOfEnd() > 100.0f);
		TestTrue(TEXT("it follows"), IsAtEnd());
		PanelTest::TurnWheel(*Box, 3.0f);
		const float Offset = Box->GetScrollOffset();
		PanelTest::AddMessages(3);
		TestEqual(TEXT("it stays"), Box->GetScrollOffset(), Offset);
		PanelTest::TurnWheel(*Box, -1000.0f);
		PanelTest::AddMessages(3);
		TestTrue(TEXT("it follows again"), IsAtEnd());
		// A block that is being read or copied.
		FSlateApplication::Get().SetKeyboardFocus(Panel.Texts(true).Last());
		PanelTest::AddMessages(3);
		TestFalse(TEXT("it stays with a block that has the focus"), IsAtEnd());
		PanelTest::TurnWheel(*Box, -1000.0f);
		PanelTest::AddMessages(3);
		TestTrue(TEXT("it follows when they go to the end"), IsAtEnd());
		FSlateApplication::Get().SetKeyboardFocus(Panel.PromptBox());
		FSlateApplication::Get().Tick();
		FSlateApplication::Get().SetKeyboardFocus(Panel.Texts(true).Last());
		PanelTest::AddMessages(3);
		TestFalse(TEXT("it stays with the next block"), IsAtEnd());
		FSlateApplication::Get().SetKeyboardFocus(Panel.PromptBox());
		PanelTest::AddMessages(1);
		TestTrue(TEXT("it follows after that"), IsAtEnd());
	});

	It("turns the pages of the conversation from anywhere", [this]() {
		const PanelTest::FPanel Panel;
		const TSharedRef<SScrollBox> Box = PanelTest::FindScrollBox(Panel.Widget.ToSharedRef()).ToSharedRef();
		PanelTest::AddMessages(30);
		const float End = Box->GetScrollOffset();
		const float ViewHeight = static_cast<float>(FVector2D(Box->GetCachedGeometry().GetLocalSize()).Y);
		Panel.Press(EKeys::PageUp, false);
		PanelTest::AddMessages(1);
		TestTrue(TEXT("up by less than it shows"),
			Box->GetScrollOffset() < End - ViewHeight / 2.0f && Box->GetScrollOffset() > End - ViewHeight);
		FSlateApplication::Get().SetKeyboardFocus(Panel.Texts(true)[0]);
		for (int32 Page = 0; Page < 20; ++Page)
		{
			FSlateApplication::Get().ProcessKeyDownEvent(
				FKeyEvent(EKeys::PageDown, FModifierKeysState(), 0, true, 0, 0));
		}
		PanelTest::AddMessages(1);
		TestTrue(TEXT("down, and on with the end"), Box->GetScrollOffset() > End);
		TestTrue(TEXT("from there it follows"), Box->GetScrollOffsetOfEnd() - Box->GetScrollOffset() < 2.0f);
	});

	It("lets the prompt box grow with its text, up to a limit", [this]() {
		const PanelTest::FPanel Panel(FVector2D(600.0, 800.0));
		TArray<double> Heights;
		for (const int32 NumLines : { 1, 3, 8, 12, 40, 400 })
		{
			Panel.Type(*FString::ChrN(NumLines - 1, TEXT('\n')));
			FSlateApplication::Get().Tick();
			FSlateApplication::Get().Tick();
			Heights.Add(Panel.PromptBox()->GetCachedGeometry().GetLocalSize().Y);
		}
		TestEqual(TEXT("a few lines have room at once"), Heights[1], Heights[0]);
		TestTrue(TEXT("it grows"), Heights[2] > Heights[1] && Heights[3] > Heights[2]);
		TestEqual(TEXT("and no further"), Heights[5], Heights[4]);
		TestTrue(TEXT("the conversation keeps its part"),
			PanelTest::FindScrollBox(Panel.Widget.ToSharedRef())->GetCachedGeometry().GetLocalSize().Y > 100.0);
	});

	It("shows what to look at twice first, and what will fail last", [this]() {
		FFileHelper::SaveStringToFile(TEXT("x"), *(FPaths::ProjectDir() / TEXT("Config/Waiting.ini")));
		KestrelTest::TestSameText(*this, TEXT("list"),
			PanelTest::DescribeWaiting({
				{ TEXT("read_file"), TEXT("{\"path\":\"Config/NoSuch.ini\"}") },
				{ TEXT("read_file"), TEXT("{\"path\":\"Config/Waiting.ini\"}") },
				{ TEXT("delete_file"), TEXT("{\"path\":\"Config/Waiting.ini\"}") },
				{ TEXT("create_file"), TEXT("{\"path\":\"Moor.Build.cs\",\"file_text\":\"x\"}") },
			}),
			TEXT(
				"Waiting for your approval: 4 tools, 2 worth a second look, 1 will fail. They run in the order of their "
				"numbers.\n3. Delete Config/Waiting.ini\nCaution: configuration\n4. Create Moor.Build.cs\nCaution: build file\n"
				"2. Read Config/Waiting.ini\n1. Read Config/NoSuch.ini\nWill fail: File not found"));
		FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*(FPaths::ProjectDir() / TEXT("Config/Waiting.ini")));
	});

	It("gives its remarks lines of their own, which no name can imitate", [this]() {
		const TPair<const TCHAR*, const TCHAR*> Cases[] = {
			{ TEXT("a.txt (outside the project)"), TEXT("") },
			{ TEXT("a.txt\\nCaution: build file"), TEXT("\nCaution: a colon in the name") },
			{ TEXT("/no/such/a.txt"), TEXT("\nCaution: outside the project") },
			{ TEXT("Source/\u0410\u0432\u0442\u043E\u0440.h"), TEXT("") },
			{ TEXT("Source/BP_\u0413\u0435\u0440\u043E\u0439.h"), TEXT("") },
			{ TEXT("Sour\u217De/a.h"), TEXT("\nCaution: characters that look like others: U+217D") },
			{ TEXT("Plu\u0261in/a.h"), TEXT("\nCaution: characters that look like others: U+0261") },
			{ TEXT("\u1D20.h"), TEXT("\nCaution: characters that look like others: U+1D20") },
			{ TEXT("C\uA789/a.h"), TEXT("\nCaution: characters that look like others: U+A789") },
			{ TEXT("S\u043Eurce/a.h"), TEXT("\nCaution: characters that look like others: U+043E") },
			{ TEXT("Source/\u0421\u043E\u0440\u0443.h"),
				TEXT("\nCaution: characters that look like others: U+0421 U+043E U+0440 U+0443") },
			{ TEXT("Source\u2215a\u2024h"), TEXT("\nCaution: characters that look like others: U+2215 U+2024") },
			{ TEXT("Source/\uFF41.h"), TEXT("\nCaution: characters that look like others: U+FF41") },
		};
		for (const TPair<const TCHAR*, const TCHAR*>& Case : Cases)
		{
			KestrelTest::TestSameText(*this, Case.Key,
				PanelTest::DescribeWaiting({ { TEXT("create_file"),
					FString::Printf(TEXT("{\"path\":\"%s\",\"file_text\":\"x\"}"), Case.Key) } }),
				TEXT("Waiting for your approval:\nCreate ") +
					FString(Case.Key).Replace(TEXT("\\n"), TEXT("\u27E8LF\u27E9")) + Case.Value);
		}
	});

	It("turns the list with the wheel over a change, and the change sideways with Shift", [this]() {
		const PanelTest::FPanel Panel(FVector2D(400.0, 600.0));
		FKestrelInterface::Get().OnAddDiffMessage(TEXT("/a.txt"), TEXT(""), FString::ChrN(400, u'x'));
		PanelTest::AddMessages(30);
		const TSharedRef<SScrollBox> Box = PanelTest::FindScrollBox(Panel.Widget.ToSharedRef()).ToSharedRef();
		const TSharedPtr<SScrollBox> Change = PanelTest::FindScrollBox(Box->GetChildren()->GetChildAt(0));
		if (!TestTrue(TEXT("the change has a scroll box"), Change.IsValid()))
		{
			return;
		}
		Box->ScrollToStart();
		PanelTest::TurnWheel(*Box, 1000.0f);
		FSlateApplication::Get().Tick();
		FSlateApplication::Get().Tick();
		PanelTest::TurnWheel(*Change, -1.0f);
		TestTrue(TEXT("down"), Box->GetScrollOffset() > 0.0f && Change->GetScrollOffset() == 0.0f);
		const float Offset = Box->GetScrollOffset();
		FSlateApplication::Get().Tick();
		PanelTest::TurnWheel(*Change, -1.0f, true);
		TestTrue(TEXT("sideways"), Box->GetScrollOffset() == Offset && Change->GetScrollOffset() > 0.0f);
	});

	It("lets no button lie on another at any width", [this]() {
		for (const double Width : { 320.0, 400.0, 600.0 })
		{
			const PanelTest::FPanel Panel(FVector2D(Width, 600.0));
			PanelTest::AddMessages(1);
			TArray<FSlateRect> Places;
			PanelTest::CollectButtons(Panel.Widget.ToSharedRef(), Places);
			TestTrue(TEXT("all buttons"), Places.Num() >= 5);
			for (int32 Index = 0; Index < Places.Num(); ++Index)
			{
				TestTrue(TEXT("in the window"), Places[Index].Right <= Width && Places[Index].Bottom <= 600.0);
				for (int32 Other = 0; Other < Index; ++Other)
				{
					TestFalse(FString::Printf(TEXT("%d on %d at %.0f"), Index, Other, Width),
						FSlateRect::DoRectanglesIntersect(Places[Index], Places[Other]));
				}
			}
		}
	});

	It("keeps its buttons and the conversation in sight in a small window", [this]() {
		const FVector2D Size(320.0, 300.0);
		const PanelTest::FPanel Panel(Size);
		PanelTest::Enter(EAgentState::PollRequest);
		FAgent::Get().HandlePollStatusRequestCompleted(PanelTest::MakeAnswerWithTools(20));
		Panel.Type(*FString::ChrN(400, TEXT('\n')));
		PanelTest::AddMessages(1);
		const FSlateRect End =
			PanelTest::FindLastEnabledButton(Panel.Widget.ToSharedRef())->GetCachedGeometry().GetLayoutBoundingRect();
		TestTrue(TEXT("the last button"), End.Right <= Size.X && End.Bottom <= Size.Y && End.Bottom - End.Top > 10.0);
		TestTrue(TEXT("the conversation"),
			PanelTest::FindScrollBox(Panel.Widget.ToSharedRef())->GetCachedGeometry().GetLocalSize().Y > 20.0);
	});

	It("hides tool names and bold markers, and logs the message whole", [this]() {
		const PanelTest::FPanel Panel;
		const FKestrelInterface& Interface = FKestrelInterface::Get();
		const FString Message =
			TEXT("Now **Read_FILE** and modify_blueprint_variables! *read**_file* ") + Panel.Widget->GetTypeAsString();
		Interface.OnAddStatusMessage(Message, FLinearColor::White, FKestrelInterface::BoldFontName, 9.0f);
		KestrelTest::TestSameText(
			*this, TEXT("block"), Panel.LastBlock(), TEXT("Now  and _variables!  SKestrelWidget"));
		FString Log;
		FFileHelper::LoadFileToString(Log, *Interface.GetPromptLogFilePath());
		TestTrue(TEXT("log"), Log.Contains(Message, ESearchCase::CaseSensitive));
		TestFalse(TEXT("no mark in the log"), Log.Contains(TEXT("\uFEFF")));
	});

	It("lets the dots of the last message go round until the next", [this]() {
		const PanelTest::FPanel Panel;
		FKestrelInterface::Get().OnAddStatusMessage(
			TEXT("Working..."), FLinearColor::White, FKestrelInterface::ItalicFontName, 8.0f);
		const TSharedRef<SMultiLineEditableText> Block = Panel.Texts(true).Last();
		TestTrue(TEXT("a timer runs"), Panel.Widget->HasActiveTimers());
		FKestrelInterface::Get().OnAddStatusMessage(
			TEXT("Done."), FLinearColor::White, FKestrelInterface::ItalicFontName, 8.0f);
		TestFalse(TEXT("and stops"), Panel.Widget->HasActiveTimers());
		KestrelTest::TestSameText(*this, TEXT("block"), Panel.LastBlock(), TEXT("Done."));
	});

	LatentIt("moves the dots every half second", [this](const FDoneDelegate& Done) {
		const TSharedRef<PanelTest::FPanel> Panel = MakeShared<PanelTest::FPanel>();
		FKestrelInterface::Get().OnAddStatusMessage(
			TEXT("Working..."), FLinearColor::White, FKestrelInterface::ItalicFontName, 8.0f);
		const TSharedRef<SMultiLineEditableText> Block = Panel->Texts(true).Last();
		const TSharedRef<TArray<FString>> Seen = MakeShared<TArray<FString>>();
		FTSTicker::GetCoreTicker().AddTicker(TEXT("KestrelDots"), 0.0f, [this, Panel, Block, Seen, Done](float) {
			const FString Text = Block->GetText().ToString();
			if (Seen->IsEmpty() || !Seen->Last().Equals(Text))
			{
				Seen->Add(Text);
			}
			if (Seen->Num() < 6)
			{
				return true;
			}
			KestrelTest::TestSameText(*this, TEXT("dots"), FString::Join(*Seen, TEXT("|")),
				TEXT("Working...|Working.|Working..|Working...|Working|Working."));
			Done.Execute();
			return false;
		});
	});

	It("opens from the menu and the toolbar, once", [this]() {
		UToolMenus* Menus = UToolMenus::Get();
		FToolMenuEntry* Button = Menus->ExtendMenu("LevelEditor.LevelEditorToolBar.PlayToolBar")
									 ->FindOrAddSection("PluginTools")
									 .FindEntry("LevelToolbarKestrel");
		TestNotNull(TEXT("toolbar button"), Button);
		TestNotNull(TEXT("menu entry"), Menus->ExtendMenu("LevelEditor.MainMenu.Window")
											->FindOrAddSection("WindowLayout")
											.FindEntry("OpenPluginWindow"));
		const FTabId TabId(FName("Kestrel"));
		const TSharedPtr<SDockTab> First = FGlobalTabmanager::Get()->TryInvokeTab(TabId);
		TestTrue(TEXT("the same tab"), First.IsValid() && First == FGlobalTabmanager::Get()->TryInvokeTab(TabId));
		TestTrue(TEXT("its content"), First->GetContent()->GetType() == FName("SKestrelWidget"));
		First->RequestCloseTab();
		TestFalse(TEXT("closed"), FGlobalTabmanager::Get()->FindExistingLiveTab(TabId).IsValid());
	});
}

DEFINE_SPEC(FKestrelInterfaceSpec, "Kestrel.Interface", KestrelTest::Flags)
void FKestrelInterfaceSpec::Define()
{
	It("ignores what the agent's state does not allow", [this]() {
		const FKestrelPanelRecorder Recorder;
		FKestrelInterface& Interface = FKestrelInterface::Get();
		PanelTest::Enter(EAgentState::PollResponse);
		Interface.InitialRequest(TEXT("a"));
		Interface.RegularRequest(TEXT("b"));
		Interface.Approve();
		TestTrue(TEXT("unchanged"), FAgent::Get().GetAgentState() == EAgentState::PollResponse);
		TestEqual(TEXT("nothing shown"), Recorder.Messages.Num(), 0);
		int32 NumBroadcasts = 0;
		const FDelegateHandle Handle =
			FAgent::Get().OnStateChanged().AddLambda([&NumBroadcasts]() { ++NumBroadcasts; });
		PanelTest::Enter(EAgentState::PollResponse);
		TestEqual(TEXT("the same state again says nothing"), NumBroadcasts, 0);
		PanelTest::Enter(EAgentState::Idle);
		TestEqual(TEXT("another one does"), NumBroadcasts, 1);
		FAgent::Get().OnStateChanged().Remove(Handle);
	});

	It("gives up on an answer that is none", [this]() {
		// The client delivers objects only, so no fault of the service leads here; the agent is safe on its own.
		const FKestrelPanelRecorder Recorder;
		PanelTest::Enter(EAgentState::PollRequest);
		FAgent::Get().HandlePollStatusRequestCompleted(nullptr);
		KestrelTest::TestSameText(*this, TEXT("shown"), FString::Join(Recorder.GetTexts(), TEXT("|")),
			TEXT(" [ Cancelled ]\n\nFailed to parse API response\n"));
		TestTrue(TEXT("idle"), FAgent::Get().GetAgentState() == EAgentState::Idle);
	});

	It("keeps logs for as long as it is told", [this]() {
		const FKestrelTestLog PromptLog;
		FKestrelInterface& Interface = FKestrelInterface::Get();
		IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
		const FString Folder = FPaths::GetPath(Interface.GetPromptLogFilePath());
		const FString Young = Folder / TEXT("Young.log");
		const FString Old = Folder / TEXT("Old.log");
		const FString Other = Folder / TEXT("Old.txt");
		const FTimespan Minute = FTimespan::FromMinutes(1.0);
		for (const FString& File : { Young, Old, Other })
		{
			FFileHelper::SaveStringToFile(TEXT("x"), *File);
			const FDateTime ThirtyDaysAgo = FDateTime::UtcNow() - FTimespan::FromDays(30.0);
			Files.SetTimeStamp(*File, File.Equals(Young) ? ThirtyDaysAgo + Minute : ThirtyDaysAgo - Minute);
		}
		Interface.DeleteOldLogs(30);
		TestTrue(TEXT("a young one stays"), FPaths::FileExists(Young));
		TestFalse(TEXT("an old one goes"), FPaths::FileExists(Old));
		TestTrue(TEXT("what is no log stays"), FPaths::FileExists(Other));
		Interface.DeleteAllLogs();
		TestEqual(TEXT("all gone"), Interface.GetAllLogFiles().Num(), 0);
		Files.DeleteFile(*Other);
	});

	It("deletes no log but its own behind a link", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("Real/KestrelPrompts_2020-01-01.log"), TEXT("x"));
		Folder.Write(TEXT("Real/Other.log"), TEXT("x"));
		if (!KestrelNativeFile::MakeLink(Folder.Full(TEXT("Logs")), Folder.Full(TEXT("Real"))))
		{
			return;
		}
		FKestrelPromptLog Log;
		Log.Open(Folder.Full(TEXT("Logs")));
		TestEqual(TEXT("logs"), Log.GetAllFiles().Num(), 2);
		Log.DeleteAll();
		TestFalse(TEXT("its own"), FPaths::FileExists(Folder.Full(TEXT("Real/KestrelPrompts_2020-01-01.log"))));
		TestTrue(TEXT("somebody else's"), FPaths::FileExists(Folder.Full(TEXT("Real/Other.log"))));
	});

	It("makes its folder again, and tells how old a log is", [this]() {
		const FKestrelTestLog PromptLog;
		const FKestrelInterface& Interface = FKestrelInterface::Get();
		const FString Folder = FPaths::GetPath(Interface.GetPromptLogFilePath());
		IFileManager::Get().DeleteDirectory(*Folder, false, true);
		Interface.EnsureLogDirectoryExists();
		TestTrue(TEXT("there"), FPaths::DirectoryExists(Folder));
		const FString File = Folder / TEXT("Old.log");
		FFileHelper::SaveStringToFile(TEXT("x"), *File);
		FPlatformFileManager::Get().GetPlatformFile().SetTimeStamp(
			*File, FDateTime::UtcNow() - FTimespan::FromDays(2.5));
		TestTrue(TEXT("older than two days"), Interface.IsLogFileOlderThanDays(File, 2));
		TestFalse(TEXT("not older than three"), Interface.IsLogFileOlderThanDays(File, 3));
	});

	It("writes entries with and without the time", [this]() {
		const FKestrelTestFolder Folder;
		const FString File = Folder.Full(TEXT("x.log"));
		const FKestrelInterface& Interface = FKestrelInterface::Get();
		Interface.KestrelInterfaceLogString(TEXT("plain ä"), File, false);
		Interface.KestrelInterfaceLogString(TEXT("timed"), File, true);
		FString Log;
		FFileHelper::LoadFileToString(Log, *File);
		TestTrue(
			TEXT("entries"), Log.MatchesWildcard(TEXT("plain ä\n\n[??:??:??] timed\n\n"), ESearchCase::CaseSensitive));
	});
}
