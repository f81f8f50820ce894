#include "Console/PanelConsole.h"

#include "Console/InteractiveSession.h"
#include "Console/ScriptedSession.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "Misc/CommandLine.h"
#include "Misc/Parse.h"
#include "Misc/TerminalText.h"
#include "Widgets/Docking/SDockTab.h"

#include <cstdio>

FPanelConsole::FPanelConsole()
{
	FString Name;
	if (FParse::Value(FCommandLine::Get(), TEXT("-Console="), Name))
	{
		TabName = FName(*Name);
	}
	TArray<FString> Prompts = FScriptedSession::ReadPrompts();
	if (Prompts.IsEmpty())
	{
		Session = MakeUnique<FInteractiveSession>(Input, Output, Interrupts);
	}
	else
	{
		// As told: nobody is there who reads what a panel has to say to people.
		const FString CommandLine = FString(FCommandLine::Get()) + TEXT(" -Unattended");
		FCommandLine::Set(*CommandLine);
		Session = MakeUnique<FScriptedSession>(MoveTemp(Prompts), Input, Output, Interrupts);
	}
}

FPanelConsole::~FPanelConsole() = default;

bool FPanelConsole::Start()
{
	// Before the tab opens: a panel may have another look for those who do not see it.
	FSlateApplication::Get().GetAccessibleMessageHandler()->SetActive(true);
	Tab = FGlobalTabmanager::Get()->TryInvokeTab(TabName);
	FConsoleInterrupts::Listen();
	if (!Tab)
	{
		std::fprintf(
			stderr, "There is no tab '%s' in this editor.\n", TCHAR_TO_UTF8(*MakeTerminalText(TabName.ToString())));
	}
	return Tab.IsValid();
}

void FPanelConsole::Tick()
{
	const FPanelView View(*Tab);
	if (!View.IsLaidOut())
	{
		return;
	}
	Output.PrintNewTexts(View);
	const FConsoleInterrupts::EPressed Pressed = Interrupts.Take();
	if (Pressed != FConsoleInterrupts::EPressed::No)
	{
		HandleInterrupt(View, Pressed == FConsoleInterrupts::EPressed::Once);
		return;
	}
	Session->Tick(View);
}

void FPanelConsole::HandleInterrupt(const FPanelView& View, bool bFirst)
{
	if (bFirst && View.Press(PanelButtons::End))
	{
		Session->OnInterrupted();
		return;
	}
	constexpr int32 InterruptedExitCode = 130;
	Session->Leave(InterruptedExitCode);
}
