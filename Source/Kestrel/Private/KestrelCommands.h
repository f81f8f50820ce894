#pragma once

#include "CoreMinimal.h"
#include "Framework/Commands/Commands.h"
#include "Framework/Commands/UICommandInfo.h"
#include "Widget/KestrelStyle.h"

#define LOCTEXT_NAMESPACE "FKestrelModule"

/** The plugin's commands. */
class FKestrelCommands : public TCommands<FKestrelCommands>
{
public:
	FKestrelCommands()
		: TCommands<FKestrelCommands>(
			  "FKestrelModule", LOCTEXT("ContextDescription", "Kestrel"), NAME_None, FKestrelStyle::GetStyleSetName())
	{
	}

	virtual void RegisterCommands() override;

	TSharedPtr<FUICommandInfo> OpenPluginWindow;
};

#undef LOCTEXT_NAMESPACE
