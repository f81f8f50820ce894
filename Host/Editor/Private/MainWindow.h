#pragma once

#include "CoreMinimal.h"

class SWindow;

/** The editor's main window: menu bar, play toolbar, and the area of the tabs. */
class FMainWindow
{
public:
	/** Makes the menus known that plugins extend. */
	static void RegisterMenus();
	static TSharedRef<SWindow> Create();
};
