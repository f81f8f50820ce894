#include "MainFrameCommands.h"

#include "InputCoreTypes.h"

#define LOCTEXT_NAMESPACE "MainFrameCommands"

FMainFrameCommands::FMainFrameCommands()
	: TCommands<FMainFrameCommands>("MainFrame", LOCTEXT("MainFrame", "Main Frame"), NAME_None, FName("CoreStyle"))
{
}

void FMainFrameCommands::RegisterCommands()
{
	UI_COMMAND(
		Exit, "Exit", "Closes the editor", EUserInterfaceActionType::Button, FInputChord(EModifierKey::Alt, EKeys::F4));
	UI_COMMAND(OpenProjectSettings, "Project Settings...", "Changes the settings of this project and of its plugins",
		EUserInterfaceActionType::Button, FInputChord(EModifierKey::Control, EKeys::Comma));
	UI_COMMAND(OpenUndoHistory, "Undo History", "Shows what was changed, to go back to any point",
		EUserInterfaceActionType::Button, FInputChord());
	UI_COMMAND(OpenContentBrowser, "Content Browser", "Shows the assets of this project",
		EUserInterfaceActionType::Check, FInputChord(EModifierKey::Control, EKeys::SpaceBar));
	UI_COMMAND(OpenOutputLog, "Output Log", "Shows what the editor and its plugins report",
		EUserInterfaceActionType::Check, FInputChord(EKeys::L, true, true, false, false));
}

#undef LOCTEXT_NAMESPACE
