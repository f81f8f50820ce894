#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"

class FUICommandList;
class SWidget;
class SWindow;
struct FKeyEvent;

/** The editor's main window: menu bar, play toolbar, and the area of the tabs. */
class FMainWindow
{
public:
	FMainWindow();
	~FMainWindow();
	UE_NONCOPYABLE(FMainWindow)

	/** Makes the menus known that plugins extend, and fills them with what the editor itself can do. */
	void RegisterMenus();
	TSharedRef<SWindow> Create();

	/** Opens the tabs that were open when the layout was saved. */
	void RestoreTabs() const;
	/** Writes the window's place and the open tabs to Saved/Config/<Platform>/EditorLayout.ini. */
	void SaveLayout() const;

private:
	void MapCommands();
	void FillMenus() const;
	FReply OnKeyDown(const FKeyEvent& InKeyEvent);
	FReply OnKeyUp(const FKeyEvent& InKeyEvent);
	/** Gives the menu bar the keyboard focus, or returns it to where it was. */
	void ToggleMenuBar();

	TSharedRef<FUICommandList> Commands;
	TSharedPtr<SWindow> Window;
	TSharedPtr<SWidget> MenuBar;
	TWeakPtr<SWidget> FocusedBefore;
	bool bAltAlone = false; // Alt is down, and no other key was pressed since
};
