#include "KestrelCommands.h"
#include "Framework/Commands/InputChord.h"

#define LOCTEXT_NAMESPACE "FKestrelModule"

void FKestrelCommands::RegisterCommands()
{
	UI_COMMAND(OpenPluginWindow, "Kestrel", "Bring up Kestrel window", EUserInterfaceActionType::Button, FInputChord());
}

#undef LOCTEXT_NAMESPACE
