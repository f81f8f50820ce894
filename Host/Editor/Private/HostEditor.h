#pragma once

#include "AutomationRunner.h"
#include "Console/PanelConsole.h"
#include "CoreMinimal.h"
#include "HostDisplay.h"
#include "HostGameModules.h"
#include "LogDevices.h"
#include "MainWindow.h"
#include "Templates/UniquePtr.h"
#include "WidgetReport.h"

/**
 * The editor's life: opens the project of the command line, loads modules and plugins in the engine's phases, ticks
 * until somebody asks to exit, and shuts down in reverse.
 *
 * A tick is: core ticker, requests to HTTP servers, HTTP completions, game-thread tasks, Slate. With -UnattendedClock
 * the clock jumps to the next due time while nothing is in flight.
 */
class FHostEditor
{
public:
	FHostEditor();
	~FHostEditor();
	UE_NONCOPYABLE(FHostEditor)

	/** False when the project cannot be opened; the reason has been printed. */
	bool Init();
	/** Runs until an exit is asked for. @return the program's exit code */
	int32 Run();

private:
	bool OpenProject();
	void OpenLog();
	/** False when there is nothing to show the editor on. */
	bool LoadModules();
	EGameModules PrepareGameModules();
	/** With -Window on the screen, otherwise in memory alone. False when there is no screen and no console either. */
	bool StartSlate();
	void CreateMainWindow();
	void Tick();
	void TickWork();
	/** Sleeps until something is due, or lets the unattended clock jump there. */
	void Idle();
	/** Whether frames follow one another; otherwise the window waits for the user, or for what is due. */
	bool IsBusy() const;
	double GetNextFrameTime() const;
	void Shutdown();

	TUniquePtr<FOutputDeviceFile> LogFile;
	FOutputDeviceStdErr StdErr;
	FAutomationRunner Automation;
	FPanelConsole Console;
	FWidgetReport WidgetReport;
	FMainWindow MainWindow;
	TUniquePtr<FHostDisplay> Display; // null without a window
	double LastTickTime = 0.0;        // seconds of FPlatformTime
	double LastActiveTime = 0.0;      // when the user did something, or something was due
	int32 ExitCode = 0;
	bool bInitialized = false;
};
