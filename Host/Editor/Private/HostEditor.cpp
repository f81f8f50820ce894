#include "HostEditor.h"

#include "Async/TaskGraphInterfaces.h"
#include "Containers/Ticker.h"
#include "CoreGlobals.h"
#include "ExecCommands.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "HAL/HostClock.h"
#include "HAL/PlatformTime.h"
#include "HostGameModules.h"
#include "HttpModule.h"
#include "HttpServerModule.h"
#include "Interfaces/IPluginManager.h"
#include "Interfaces/IProjectManager.h"
#include "Misc/App.h"
#include "Misc/CommandLine.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/CoreDelegates.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Misc/Parse.h"
#include "Misc/Paths.h"
#include "Misc/TerminalText.h"
#include "Modules/ModuleManager.h"
#include "StandaloneRenderer.h"

#include <csignal>
#include <cstdio>

DEFINE_LOG_CATEGORY_STATIC(LogHostEditor, Log, All);

namespace HostEditor
{
volatile std::sig_atomic_t bIsToEnd = 0;

/** Whoever starts an editor without a window ends it like this: it closes down as if its window was closed. */
void OnTerminate(int Signal)
{
	bIsToEnd = 1;
	std::signal(Signal, SIG_DFL); // the next one ends one that hangs
}

void ListenForTermination()
{
	std::signal(SIGTERM, &OnTerminate);
}

constexpr double FrameSeconds = 1.0 / 60.0;
// Frames go on so long after the last event: layouts settle, tool tips come up.
constexpr double SettlingSeconds = 1.0;
// After that there are few: enough to see in time what changes without an event, such as a bound text.
constexpr double RestingFrameSeconds = 0.25;
constexpr double UnattendedWaitSeconds = 0.005;

/** The host's own modules, in the order in which they start. Others are loaded when they are asked for. */
const TCHAR* const EngineModules[] = { TEXT("CoreUObject"), TEXT("SlateCore"), TEXT("Slate"), TEXT("Settings"),
	TEXT("SettingsViewer"), TEXT("HTTP"), TEXT("HTTPServer"), TEXT("LevelEditor"), TEXT("ToolMenus"),
	TEXT("AssetRegistry"), TEXT("AssetTools"), TEXT("UnrealEd"), TEXT("UndoHistory"), TEXT("ContentBrowser"),
	TEXT("Kismet"), TEXT("BlueprintEditorLibrary") };

/** The first errors among the compiler's lines, or the first lines when none looks like one. */
TArray<FString> ChooseErrors(const TArray<FString>& Lines)
{
	constexpr int32 MostShown = 5;
	TArray<FString> Errors = Lines.FilterByPredicate([](const FString& Line) { return Line.Contains(TEXT("error:")); });
	Errors = Errors.IsEmpty() ? Lines : Errors;
	Errors.SetNum(FMath::Min(Errors.Num(), MostShown));
	return Errors;
}

FString ProjectFileOfCommandLine()
{
	const TCHAR* Stream = FCommandLine::Get();
	const FString First = FCommandLine::Token(Stream);
	return First.StartsWith(TEXT("-")) ? FString() : First;
}
}

FHostEditor::FHostEditor()
	: StdErr(FParse::Param(FCommandLine::Get(), TEXT("Verbose")) ? ELogVerbosity::Log : ELogVerbosity::Warning)
{
}

FHostEditor::~FHostEditor() = default;

bool FHostEditor::Init()
{
	GLog->AddOutputDevice(&StdErr);
	if (!OpenProject())
	{
		GLog->RemoveOutputDevice(&StdErr);
		return false;
	}
	if (FParse::Param(FCommandLine::Get(), TEXT("UnattendedClock")))
	{
		FHostClock::Get().SetMode(EClockMode::Unattended);
	}
	LastTickTime = FPlatformTime::Seconds();
	if (!LoadModules())
	{
		ExitCode = 1;
		RequestEngineExit(TEXT("the project's modules cannot be loaded"));
	}
	else if (!FExecCommands::RunEditorCommands())
	{
		ExitCode = 1;
		RequestEngineExit(TEXT("a command failed"));
	}
	else if (Console.IsWanted() && !Console.Start())
	{
		ExitCode = 1;
		RequestEngineExit(TEXT("the console has no tab"));
	}
	else if (Automation.ShouldQuit() && !Automation.HasWork())
	{
		RequestEngineExit(TEXT("Quit"));
	}
	return true;
}

bool FHostEditor::OpenProject()
{
	const FString ProjectFile = HostEditor::ProjectFileOfCommandLine();
	if (ProjectFile.IsEmpty())
	{
		std::fprintf(stderr, "Usage: HostEditor <project.uproject> [-PLUGIN=<file.uplugin>] [-Console=<tab>] [...]\n");
		return false;
	}
	FText FailReason;
	if (!IProjectManager::Get().LoadProjectFile(ProjectFile, FailReason))
	{
		std::fprintf(
			stderr, "The project cannot be opened: %s\n", TCHAR_TO_UTF8(*MakeTerminalText(FailReason.ToString())));
		return false;
	}
	FConfigCacheIni::InitializeConfigSystem();
	OpenLog();
	return true;
}

void FHostEditor::OpenLog()
{
	LogFile = MakeUnique<FOutputDeviceFile>(
		FPaths::ConvertRelativePathToFull(FPaths::ProjectLogDir() / (FString(FApp::GetProjectName()) + TEXT(".log"))));
	GLog->AddOutputDevice(LogFile.Get());
	// As early as the file: its tab shows all that was logged, also before there were tabs.
	FModuleManager::Get().LoadModuleChecked(TEXT("OutputLog"));
	UE_LOG(LogInit, Log, TEXT("Project: %s"), *FPaths::ConvertRelativePathToFull(FPaths::GetProjectFilePath()));
}

bool FHostEditor::LoadModules()
{
	FModuleManager& Modules = FModuleManager::Get();
	IPluginManager& Plugins = IPluginManager::Get();
	if (!StartSlate())
	{
		return false;
	}
	for (const TCHAR* Module : HostEditor::EngineModules)
	{
		Modules.LoadModuleChecked(Module);
	}
	const EGameModules GameModules = PrepareGameModules();
	// The project's own modules go first in each phase.
	bool bAllLoaded = true;
	const auto LoadModulesOf = [&](ELoadingPhase::Type Phase) {
		bAllLoaded &= GameModules != EGameModules::Ready || IProjectManager::Get().LoadModulesForProject(Phase);
		Plugins.LoadModulesForEnabledPlugins(Phase);
	};
	for (int32 Phase = ELoadingPhase::EarliestPossible; Phase <= ELoadingPhase::PostDefault; ++Phase)
	{
		LoadModulesOf(static_cast<ELoadingPhase::Type>(Phase));
	}
	CreateMainWindow();
	LoadModulesOf(ELoadingPhase::PostEngineInit);
	FCoreDelegates::GetOnPostEngineInit().Broadcast();
	if (Display)
	{
		MainWindow.RestoreTabs();
	}
	UE_CLOG(!bAllLoaded, LogHostEditor, Error,
		TEXT("The project opens without some of its C++ modules, which cannot be loaded. Fix them and compile."));
	bInitialized = true;
	return true;
}

EGameModules FHostEditor::PrepareGameModules()
{
	FString Errors;
	const EGameModules Result = FHostGameModules::Prepare(Errors);
	TArray<FString> Lines;
	Errors.ParseIntoArrayLines(Lines);
	if (Result == EGameModules::CannotBeBuilt)
	{
		for (const FString& Line : Lines)
		{
			UE_LOG(LogHostEditor, Log, TEXT("%s"), *Line);
		}
		UE_LOG(LogHostEditor, Error,
			TEXT("The project opens without its C++ modules, because they cannot be built:\n%s"),
			*FString::Join(HostEditor::ChooseErrors(Lines), TEXT("\n")));
	}
	UE_CLOG(Result == EGameModules::NotForThisEditor, LogHostEditor, Warning,
		TEXT("The project opens without its C++ modules, because %s"), *Errors);
	return Result;
}

bool FHostEditor::StartSlate()
{
	if (!FParse::Param(FCommandLine::Get(), TEXT("Window")))
	{
		FSlateApplication::Create();
		return true;
	}
	Display = FHostDisplay::Open();
	if (!Display && Console.IsWanted())
	{
		std::printf("There is no screen to open a window on, so the editor is shown in this terminal.\n");
		std::fflush(stdout);
		FSlateApplication::Create();
		return true;
	}
	if (!Display)
	{
		std::fprintf(stderr, "There is no screen to open a window on.\n");
		return false;
	}
	Console.GiveWayToWindow();
	FSlateApplication::Create(Display->GetPlatformApplication());
	FSlateApplication::Get().InitializeRenderer(GetStandardStandaloneRenderer());
	return true;
}

void FHostEditor::CreateMainWindow()
{
	MainWindow.RegisterMenus();
	FSlateApplication::Get().AddWindow(MainWindow.Create());
}

int32 FHostEditor::Run()
{
	HostEditor::ListenForTermination();
	while (!IsEngineExitRequested())
	{
		if (HostEditor::bIsToEnd)
		{
			RequestEngineExit(TEXT("SIGTERM"));
		}
		Tick();
		Idle();
	}
	Shutdown();
	return ExitCode;
}

void FHostEditor::Tick()
{
	const double Now = FPlatformTime::Seconds();
	const float DeltaTime = static_cast<float>(Now - LastTickTime);
	LastTickTime = Now;
	++GFrameCounter;

	const bool bDue = FTSTicker::GetCoreTicker().GetNextDueTime() <= Now;
	if ((Display && Display->HandleEvents()) || bDue || IsBusy())
	{
		LastActiveTime = Now;
	}
	if (Display)
	{
		if (FSlateApplication::Get().GetTopLevelWindows().IsEmpty())
		{
			RequestEngineExit(TEXT("the window was closed"));
			return;
		}
	}
	FTSTicker::GetCoreTicker().Tick(DeltaTime);
	FHttpServerModule::Get().Tick(DeltaTime);
	FHttpModule::Get().GetHttpManager().Tick(DeltaTime);
	FTaskGraphInterface::Get().ProcessThreadUntilIdle(ENamedThreads::GameThread);
	FSlateApplication::Get().Tick();
	if (WidgetReport.IsWanted())
	{
		WidgetReport.Tick();
	}
	TickWork();
}

void FHostEditor::TickWork()
{
	if (Automation.HasWork())
	{
		Automation.Tick();
		if (!Automation.HasWork() && Automation.ShouldQuit())
		{
			ExitCode = Automation.GetExitCode();
			RequestEngineExit(TEXT("the tests have run"));
		}
	}
	if (Console.IsWanted() && !IsEngineExitRequested())
	{
		Console.Tick();
		if (Console.HasEnded())
		{
			ExitCode = Console.GetExitCode();
			RequestEngineExit(TEXT("the console has ended"));
		}
	}
}

void FHostEditor::Idle()
{
	FHostClock& Clock = FHostClock::Get();
	FHttpManager& Http = FHttpModule::Get().GetHttpManager();
	if (Clock.GetMode() == EClockMode::Unattended)
	{
		if (Clock.IsHeld())
		{
			Http.WaitForActivity(static_cast<float>(HostEditor::UnattendedWaitSeconds));
			return;
		}
		const double NextFrame = FPlatformTime::Seconds() + HostEditor::FrameSeconds;
		const double NextTimer = FSlateApplication::Get().GetNextTimerTime().Get(NextFrame);
		Clock.AdvanceTo(FMath::Min(FMath::Max(NextFrame, NextTimer), FTSTicker::GetCoreTicker().GetNextDueTime()));
		return;
	}
	const double Left = GetNextFrameTime() - FPlatformTime::Seconds();
	if (Left <= 0.0)
	{
		return;
	}
	if (Display)
	{
		Display->WaitForEvent(Left);
		return;
	}
	if (Http.HasRequestsInFlight())
	{
		Http.WaitForActivity(static_cast<float>(Left));
		return;
	}
	FHttpServerModule::Get().WaitForRequests(static_cast<float>(Left));
}

bool FHostEditor::IsBusy() const
{
	return !Display || FHttpModule::Get().GetHttpManager().HasRequestsInFlight() ||
		   FHttpServerModule::Get().HasWaitingRequests() || Automation.HasWork() || Console.IsWanted() ||
		   WidgetReport.IsWanted();
}

double FHostEditor::GetNextFrameTime() const
{
	const double NextFrame = LastTickTime + HostEditor::FrameSeconds;
	if (IsBusy() || LastTickTime < LastActiveTime + HostEditor::SettlingSeconds)
	{
		return NextFrame;
	}
	const double Rested = LastTickTime + HostEditor::RestingFrameSeconds;
	const double NextTimer = FSlateApplication::Get().GetNextTimerTime().Get(Rested);
	const double NextTicker = FTSTicker::GetCoreTicker().GetNextDueTime();
	return FMath::Max(NextFrame, FMath::Min(Rested, FMath::Min(NextTimer, NextTicker)));
}

void FHostEditor::Shutdown()
{
	if (Display && bInitialized)
	{
		MainWindow.SaveLayout();
	}
	FCoreDelegates::GetOnEnginePreExit().Broadcast();
	// Plugins were loaded last, so they go first, while Slate and HTTP are still there.
	FModuleManager::Get().UnloadModulesAtShutdown();
	FSlateApplication::Shutdown();
	Display.Reset();
	GConfig->Flush(false);
	GLog->Flush();
	GLog->RemoveOutputDevice(LogFile.Get());
	GLog->RemoveOutputDevice(&StdErr);
}
