#pragma once

#include "CoreMinimal.h"
#include "Framework/Commands/Commands.h"

/** What the editor itself can do, whatever plugins there are. */
class FMainFrameCommands final : public TCommands<FMainFrameCommands>
{
public:
	FMainFrameCommands();
	virtual void RegisterCommands() override;

	TSharedPtr<FUICommandInfo> Exit;
	TSharedPtr<FUICommandInfo> OpenProjectSettings;
	TSharedPtr<FUICommandInfo> OpenUndoHistory;
	TSharedPtr<FUICommandInfo> OpenContentBrowser;
	TSharedPtr<FUICommandInfo> OpenOutputLog;
};
