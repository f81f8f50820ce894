#include "Agent/Agent.h"
#include "Agent/Backend/HTTPAPI.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Text/JsonText.h"
#include "Bench/PanelBench.h"
#include "Containers/Ticker.h"
#include "Dom/JsonObject.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "Widgets/Docking/SDockTab.h"

/** Frames of the editor while the plugin is at work in a large project. */
namespace PanelBench
{
/** Frames up to the end of the work, the one that begins it among them. */
template <typename BeginType, typename IsDoneType>
void MeasureFrames(FReport& Report, const TCHAR* Name, BeginType Begin, IsDoneType IsDone)
{
	constexpr float FrameSeconds = 0.016f;
	OpenPanel();
	DrawFrame();
	FTimes Frames;
	FTimes Whole;
	Whole.Measure([&]() {
		Frames.Measure([&]() {
			Begin();
			DrawFrame();
		});
		while (!IsDone())
		{
			Frames.Measure([]() {
				FTSTicker::GetCoreTicker().Tick(FrameSeconds);
				DrawFrame();
			});
		}
	});
	Report.AddFrames(Name, Frames);
	Report.Add(*(FString(Name) + TEXT("Milliseconds")), Whole.At(1.0));
}

void MeasureListing(FReport& Report)
{
	const FInitialRequestStateData Prompt(TEXT("Which files are there?"));
	MeasureFrames(
		Report, TEXT("Listing"), [&Prompt]() { FAgent::Get().SetAgentState(EAgentState::InitialRequest, &Prompt); },
		[]() { return !FHTTPAPI::Get().GetNumFoldersListed().IsSet(); });
	FAgent::Get().EndRequest(FString());
}

/** @param ToolUses  of the answer, with single quotes. @param AutoContinue  whether they run unasked */
void MeasureAnswer(FReport& Report, const TCHAR* Name, const FString& ToolUses, bool bAutoContinue)
{
	FAgent& Agent = FAgent::Get();
	Agent.SetConversationId(TEXT("bench"));
	Agent.SetAgentState(EAgentState::PollRequest, nullptr);
	const FString Answer = FString::Printf(
		TEXT("{'auto_continue':%s,'response':[%s]}"), bAutoContinue ? TEXT("true") : TEXT("false"), *ToolUses);
	const auto Begin = [&Agent, &Answer]() {
		Agent.HandlePollStatusRequestCompleted(KestrelJson::ParseObject(Answer.Replace(TEXT("'"), TEXT("\""))));
	};
	MeasureFrames(Report, Name, Begin, [&Agent]() { return !Agent.GetToolProgress().IsSet(); });
	Agent.EndRequest(FString());
}

void MeasureSearch(FReport& Report)
{
	MeasureAnswer(Report, TEXT("Search"),
		TEXT("{'type':'tool_use','id':'bench','name':'find_reference_in_all_files','input':{'reference_string':"
			 "'takedamage'}}"),
		true);
}

/** Edits in a row, up to what is too large to be shown. */
void MeasurePlanning(FReport& Report)
{
	TArray<FString> ToolUses;
	for (const TCHAR* File : { TEXT("1"), TEXT("2"), TEXT("4"), TEXT("7"), TEXT("200") })
	{
		ToolUses.Add(FString::Printf(
			TEXT("{'type':'tool_use','id':'%s','name':'update_file','input':{'path':'%s.txt','old_string':"
				 "'HealthPoints','new_string':'LifeEnergy'}}"),
			File, File));
	}
	MeasureAnswer(Report, TEXT("Planning"), FString::Join(ToolUses, TEXT(",")), false);
}

/** The tab closed and opened again, as after a restart. */
void MeasureRestoring(FReport& Report)
{
	constexpr int32 NumMessages = 1000;
	OpenPanel();
	FKestrelInterface& Interface = FKestrelInterface::Get();
	Interface.BeginConversation(TEXT("bench-restoring"), TEXT("Say much"));
	for (int32 Number = 0; Number < NumMessages; ++Number)
	{
		Interface.OnAddStatusMessage(
			FString::Printf(
				TEXT(" [ Kestrel ] \n\nMessage **%d** says what was read, and what was found in `it`.\n"), Number),
			FKestrelInterface::AssistantColor, FKestrelInterface::BoldFontName, FKestrelInterface::AssistantFontSize);
	}
	DrawFrame();
	FTimes Reading;
	Reading.Measure([&Interface]() {
		FKestrelTranscript FromDisk;
		FromDisk.Open(Interface.GetTranscript().GetStore().GetFolder());
		FromDisk.RestoreLast();
	});
	FGlobalTabmanager::Get()->FindExistingLiveTab(FTabId("Kestrel"))->RequestCloseTab();
	DrawFrame();
	FTimes Opening;
	Opening.Measure([]() {
		OpenPanel();
		DrawFrame();
	});
	Report.Add(TEXT("RestoringMilliseconds"), Reading.At(1.0) + Opening.At(1.0));
}
}
