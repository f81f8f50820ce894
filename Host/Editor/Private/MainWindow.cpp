#include "MainWindow.h"

#include "Framework/Docking/SDockingArea.h"
#include "Framework/Docking/TabManager.h"
#include "Misc/App.h"
#include "ToolMenus.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SWindow.h"

#define LOCTEXT_NAMESPACE "MainWindow"

namespace MainWindow
{
const FName MainMenuName("LevelEditor.MainMenu");
const FName WindowMenuName("LevelEditor.MainMenu.Window");
const FName PlayToolBarName("LevelEditor.LevelEditorToolBar.PlayToolBar");
}

void FMainWindow::RegisterMenus()
{
	UToolMenus* Menus = UToolMenus::Get();
	Menus->RegisterMenu(MainWindow::MainMenuName, NAME_None, EMultiBoxType::MenuBar);
	Menus->RegisterMenu(MainWindow::WindowMenuName);
	Menus->RegisterMenu(MainWindow::PlayToolBarName, NAME_None, EMultiBoxType::ToolBar);
}

TSharedRef<SWindow> FMainWindow::Create()
{
	UToolMenus* Menus = UToolMenus::Get();
	// clang-format off
	return SNew(SWindow)
		.Title(FText::Format(LOCTEXT("Title", "{0} - Host Editor"), FText::FromString(FApp::GetProjectName())))
		.ClientSize(FVector2D(1280.0, 720.0))
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				Menus->GenerateWidget(MainWindow::WindowMenuName, FToolMenuContext())
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				Menus->GenerateWidget(MainWindow::PlayToolBarName, FToolMenuContext())
			]
			+ SVerticalBox::Slot()
			.FillHeight(1.0f)
			[
				FGlobalTabmanager::Get()->GetMainArea()
			]
		];
	// clang-format on
}

#undef LOCTEXT_NAMESPACE
