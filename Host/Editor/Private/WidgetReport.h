#pragma once

#include "CoreMinimal.h"

class FJsonValue;
class IAccessibleWidget;

/**
 * What is on the screen, for programs that drive the editor from outside: with -WidgetReport=<file>, a JSON array with
 * an object for each accessible widget is written there whenever it has changed, whole or not at all.
 *
 * Members: "type", "name", "value" (of a text), "enabled", "focused", and "bounds": left, top, right, bottom in pixels
 * of the window.
 */
class FWidgetReport
{
public:
	FWidgetReport();

	bool IsWanted() const { return !FileName.IsEmpty(); }
	/** Writes the report when it is time for it and something has changed. */
	void Tick();

private:
	static void Collect(const TSharedRef<IAccessibleWidget>& Widget, TArray<TSharedPtr<FJsonValue>>& OutWidgets);

	FString FileName;
	FString LastReport;
	double NextTime = 0.0; // seconds of FPlatformTime
};
