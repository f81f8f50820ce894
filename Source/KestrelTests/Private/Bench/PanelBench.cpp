#include "Bench/PanelBench.h"
#include "Agent/Agent.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/FileHistory.h"
#include "Engine/Blueprint.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "HAL/PlatformTime.h"
#include "InputCoreTypes.h"
#include "Misc/CommandLine.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Parse.h"
#include "ScopedTransaction.h"
#include "Support/KestrelTest.h"
#include "Widget/Markdown/Markdown.h"
#include "Widgets/Docking/SDockTab.h"

/** How long a frame of the open panel takes, in the window it is opened in. */
namespace PanelBench
{
constexpr int32 NumBlocks = 5000;
constexpr int32 BlocksPerDiff = 5;
constexpr int32 NumScrolledFrames = 600;
constexpr int32 NumJumps = 100;
constexpr int32 NumAdded = 60;
constexpr int32 NumKeys = 100;
constexpr int32 LargeBlockCharacters = 1000000;
// Notches of the wheel in one frame.
constexpr float ScrollNotches = 3.0f;
constexpr float WholeWay = 1.0e6f;
constexpr float JumpNotches = 190.0f;
constexpr int32 JumpsInOneDirection = 20;

FString ReportFile()
{
	FString File;
	FParse::Value(FCommandLine::Get(), TEXT("-KestrelPanelBench="), File);
	return File;
}

void DrawFrame()
{
	FSlateApplication::Get().Tick();
}

TSharedRef<SWidget> OpenPanel()
{
	const TSharedPtr<SDockTab> Tab = FGlobalTabmanager::Get()->TryInvokeTab(FTabId("Kestrel"));
	DrawFrame();
	return Tab->GetContent();
}

/** Turns the wheel over the upper part of the panel, where the conversation is. */
void Scroll(const TSharedRef<SWidget>& Panel, float Notches)
{
	const FGeometry& Geometry = Panel->GetCachedGeometry();
	const FVector2D Place = FVector2D(Geometry.LocalToAbsolute(FVector2D(Geometry.GetLocalSize()) * 0.25));
	FSlateApplication::Get().ProcessMouseWheelOrGestureEvent(
		FPointerEvent(0, Place, Place, TSet<FKey>(), EKeys::MouseWheelAxis, Notches, FModifierKeysState()), nullptr);
}

void AddAnswer(const FString& Markdown)
{
	FKestrelInterface::Get().OnAddStatusMessage(FString::Printf(TEXT(" [ Kestrel ] \n\n%s\n"), *Markdown),
		FKestrelInterface::AssistantColor, FKestrelInterface::BoldFontName, FKestrelInterface::AssistantFontSize);
}

void AddText(int32 Number)
{
	const FString Sentence = FString::Printf(
		TEXT("Message %d says what was read, what was found in it, and what there is to do next. "), Number);
	FString Text;
	for (int32 Index = 0; Index <= Number % 7; ++Index)
	{
		Text += Index % 3 == 2 ? TEXT("\n\n- **Then** ") : TEXT("");
		Text += Sentence;
	}
	Text += Number % 4 == 0 ? TEXT("\n\n```cpp\nif (JumpCount < MaxJumps) // again\n{\n\tJump();\n}\n```") : TEXT("");
	AddAnswer(Text);
}

void AddDiff(int32 Number)
{
	FString Before;
	FString After;
	for (int32 Line = 0; Line < 24; ++Line)
	{
		const FString Text =
			FString::Printf(TEXT("\tconst int32 Value%d = Compute(Value%d, %d);\n"), Line, Line, Number);
		Before += Text;
		After += Line % 11 == 5 ? Text.Replace(TEXT("Compute"), TEXT("Recompute")) : Text;
	}
	FKestrelInterface::Get().OnAddDiffMessage(FString::Printf(TEXT("/Game/Source/Thing%d.cpp"), Number), Before, After);
}

FTimes MeasureAdding()
{
	FTimes Times;
	for (int32 Number = 0; Number < NumAdded; ++Number)
	{
		Times.Measure([Number]() {
			AddText(Number);
			DrawFrame();
		});
		// A wrapped text settles in the frame after; that is not waited for by anybody.
		DrawFrame();
	}
	return Times;
}

FTimes MeasureScrolling(const TSharedRef<SWidget>& Panel, int32 NumFrames, float Notches)
{
	FTimes Times;
	for (int32 Frame = 0; Frame < NumFrames; ++Frame)
	{
		Times.Measure([&Panel, Notches]() {
			Scroll(Panel, Notches);
			DrawFrame();
		});
	}
	return Times;
}

/** Far enough for each frame to show other blocks, there and back. */
FTimes MeasureJumping(const TSharedRef<SWidget>& Panel)
{
	FTimes Times;
	for (int32 Jump = 0; Jump < NumJumps; ++Jump)
	{
		Times.Measure([&Panel, Jump]() {
			Scroll(Panel, Jump / JumpsInOneDirection % 2 == 0 ? -JumpNotches : JumpNotches);
			DrawFrame();
		});
	}
	return Times;
}

FTimes MeasureTyping()
{
	FTimes Times;
	for (int32 Key = 0; Key < NumKeys; ++Key)
	{
		Times.Measure([Key]() {
			const TCHAR Letter = static_cast<TCHAR>(TEXT('a') + Key % 26);
			FSlateApplication::Get().ProcessKeyCharEvent(FCharacterEvent(Letter, FModifierKeysState(), 0, false));
			DrawFrame();
		});
	}
	return Times;
}

/** When the panel has been painted, as seconds since 1970. */
void MeasureStart(FReport& Report)
{
	OpenPanel();
	const FTimespan SinceEpoch = FDateTime::UtcNow() - FDateTime(1970, 1, 1);
	Report.Add(TEXT("PaintedAt"), SinceEpoch.GetTotalSeconds());
}

void MeasureConversation(FReport& Report)
{
	const TSharedRef<SWidget> Panel = OpenPanel();
	const FTimes AddingFirst = MeasureAdding();
	for (int32 Number = 0; Number < NumBlocks; ++Number)
	{
		Number % BlocksPerDiff == 0 ? AddDiff(Number) : AddText(Number);
	}
	DrawFrame();
	DrawFrame();
	const FTimes AddingLast = MeasureAdding();
	Report.Add(TEXT("AddMilliseconds"), AddingLast.At(0.5));
	Report.Add(TEXT("AddRatio"), AddingLast.At(0.5) / AddingFirst.At(0.5));
	Report.AddFrames(TEXT("Typing"), MeasureTyping());
	Report.AddFrames(TEXT("Scrolling"), MeasureScrolling(Panel, NumScrolledFrames, ScrollNotches));
	Scroll(Panel, WholeWay);
	Report.AddFrames(TEXT("Jumping"), MeasureJumping(Panel));
	Report.AddFrames(TEXT("Still"), MeasureScrolling(Panel, NumJumps, 0.0f));
}

void MeasureLargeBlock(FReport& Report)
{
	const TSharedRef<SWidget> Panel = OpenPanel();
	FString Text;
	for (int32 Number = 0; Text.Len() < LargeBlockCharacters; ++Number)
	{
		Text += FString::Printf(
			TEXT("Word %d of a text that goes on and on%s"), Number, Number % 20 ? TEXT(", ") : TEXT(".\n"));
	}
	FTimes Adding;
	Adding.Measure([&Text]() {
		FKestrelInterface::Get().AddOwnStatusMessage(Text);
		DrawFrame();
		DrawFrame();
	});
	Report.Add(TEXT("AddMilliseconds"), Adding.At(0.5));
	Report.AddFrames(TEXT("Scrolling"), MeasureScrolling(Panel, NumScrolledFrames, ScrollNotches));
	Scroll(Panel, WholeWay);
	Report.AddFrames(TEXT("Jumping"), MeasureJumping(Panel));
	Report.AddFrames(TEXT("Typing"), MeasureTyping());
}

/** Markdown as in an answer, about a million characters. */
void MeasureLargeAnswer(FReport& Report)
{
	OpenPanel();
	FString Text;
	for (int32 Number = 0; Text.Len() < LargeBlockCharacters; ++Number)
	{
		Text += FString::Printf(
			TEXT("## Part %d\n\nThe *walker* jumps in `OnJump%d`, **twice** if [the limit]"
				 "(https://a.example/%d) allows it, and lands where it was.\n\n- one\n- two, see below\n\n"),
			Number, Number, Number);
		Text += Number % 5 == 0 ? TEXT("```cpp\nif (A < B) // again\n{\n\tJump(\"up\");\n}\n```\n\n") : TEXT("");
	}
	FTimes Reading;
	for (int32 Run = 0; Run < 5; ++Run)
	{
		Reading.Measure([&Text]() { KestrelMarkdown::Read(Text); });
	}
	FTimes Adding;
	Adding.Measure([&Text]() {
		AddAnswer(Text);
		DrawFrame();
		DrawFrame();
	});
	FFileHelper::SaveStringToFile(
		Text, *(ReportFile() + TEXT(".md")), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
	Report.Add(TEXT("ReadMilliseconds"), Reading.At(0.5));
	Report.Add(TEXT("AddMilliseconds"), Adding.At(0.5));
}

/** What the bound buttons ask each frame, in nanoseconds for all of them. */
double MeasureQuestions()
{
	constexpr int32 NumRuns = 9;
	constexpr int32 NumRounds = 100000;
	constexpr double NanosecondsPerMillisecond = 1.0e6;
	const FKestrelInterface& Interface = FKestrelInterface::Get();
	int32 NumYes = 0;
	FTimes Times;
	for (int32 Run = 0; Run < NumRuns; ++Run)
	{
		Times.Measure([&Interface, &NumYes]() {
			for (int32 Round = 0; Round < NumRounds; ++Round)
			{
				NumYes += Interface.CanUndo() ? 1 : 0;
				NumYes += Interface.CanRedo() ? 1 : 0;
			}
		});
	}
	// The shortest: what lies above it is not the question's.
	return NumYes == NumRuns * NumRounds ? Times.At(0.0) * NanosecondsPerMillisecond / NumRounds : 0.0;
}

/** Others' changes, among which the conversation's are looked for. */
void FillTransactions(int32 NumTransactions)
{
	FKestrelBlueprintUtils::CreateBlueprintAsset(TEXT("/Game"), TEXT("BP_Bench"), TEXT("Object"));
	UBlueprint* Blueprint = FKestrelBlueprintUtils::GetBlueprintFromtBlueprintName(TEXT("BP_Bench"));
	for (int32 Number = 0; Number < NumTransactions; ++Number)
	{
		const FScopedTransaction Transaction(FText::FromString(FString::Printf(TEXT("Change %d"), Number)));
		Blueprint->Modify();
		Blueprint->BlueprintDescription = FString::FromInt(Number);
	}
}

void MeasureUndoButtons(FReport& Report)
{
	constexpr int32 NumConversations = 10000;
	FAgent::Get().SetRedoConversationID(TEXT("bench-nowhere"));
	const auto Store = [](int32 Number) {
		const FString Id = FString::Printf(TEXT("bench-%d"), Number);
		FFileHistory::Get().StoreFileCreation(Id, TEXT("/no/such/file"), TEXT("x"));
		FAgent::Get().SetUndoConversationID(Id);
	};
	Store(0);
	const double Alone = MeasureQuestions();
	for (int32 Number = 1; Number < NumConversations; ++Number)
	{
		Store(Number);
	}
	FillTransactions(NumConversations);
	const double Among = MeasureQuestions();
	Report.Add(TEXT("AskNanoseconds"), Among);
	Report.Add(TEXT("AskRatio"), Among / Alone);
}

struct FBench
{
	const TCHAR* Name;
	void (*Work)(FReport& Report);
};

const FBench Benches[] = {
	{ TEXT("Start"), MeasureStart },
	{ TEXT("Conversation"), MeasureConversation },
	{ TEXT("LargeBlock"), MeasureLargeBlock },
	{ TEXT("LargeAnswer"), MeasureLargeAnswer },
	{ TEXT("UndoButtons"), MeasureUndoButtons },
	{ TEXT("Restoring"), MeasureRestoring },
	{ TEXT("Listing"), MeasureListing },
	{ TEXT("Search"), MeasureSearch },
	{ TEXT("Planning"), MeasurePlanning },
};
}

/** They exist only with -KestrelPanelBench=<file>, to which each writes its figures. */
IMPLEMENT_COMPLEX_AUTOMATION_TEST(FKestrelPanelBench, "KestrelPanelBench", KestrelTest::Flags)

void FKestrelPanelBench::GetTests(TArray<FString>& OutBeautifiedNames, TArray<FString>& OutTestCommands) const
{
	if (PanelBench::ReportFile().IsEmpty())
	{
		return;
	}
	for (const PanelBench::FBench& Bench : PanelBench::Benches)
	{
		OutBeautifiedNames.Add(Bench.Name);
		OutTestCommands.Add(Bench.Name);
	}
}

bool FKestrelPanelBench::RunTest(const FString& Parameters)
{
	for (const PanelBench::FBench& Bench : PanelBench::Benches)
	{
		if (Parameters.Equals(Bench.Name))
		{
			PanelBench::FReport Report;
			Bench.Work(Report);
			return Report.Save();
		}
	}
	return false;
}
