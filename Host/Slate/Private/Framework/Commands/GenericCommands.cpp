#include "Framework/Commands/GenericCommands.h"

#include "InputCoreTypes.h"

#define LOCTEXT_NAMESPACE "GenericCommands"

FGenericCommands::FGenericCommands()
	: TCommands<FGenericCommands>(
		  "GenericCommands", LOCTEXT("GenericCommands", "Common Commands"), NAME_None, FName("CoreStyle"))
{
}

void FGenericCommands::RegisterCommands()
{
	UI_COMMAND(Undo, "Undo", "Takes the last change back", EUserInterfaceActionType::Button,
		FInputChord(EModifierKey::Control, EKeys::Z));
	UI_COMMAND(Redo, "Redo", "Redoes the last undone change", EUserInterfaceActionType::Button,
		FInputChord(EModifierKey::Control, EKeys::Y), FInputChord(EKeys::Z, true, true, false, false));
}

#undef LOCTEXT_NAMESPACE
