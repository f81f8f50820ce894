#pragma once

#include "CoreMinimal.h"
#include "Framework/Commands/Commands.h"

/** Commands that mean the same everywhere in the editor. What they do is said by whoever offers them. */
class FGenericCommands : public TCommands<FGenericCommands>
{
public:
	FGenericCommands();
	virtual void RegisterCommands() override;

	TSharedPtr<FUICommandInfo> Undo;
	TSharedPtr<FUICommandInfo> Redo;
};
