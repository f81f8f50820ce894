#pragma once

#include "CoreMinimal.h"
#include "Framework/Commands/UIAction.h"
#include "Framework/Commands/UICommandInfo.h"
#include "Framework/Commands/UICommandList.h"

/** What an entry does: an action of its own, or a command of a list. Without either it is dead. */
struct FToolUIActionChoice
{
	FToolUIActionChoice() = default;
	FToolUIActionChoice(const FUIAction& InAction)
		: Action(InAction)
	{
	}
	FToolUIActionChoice(const FExecuteAction& InExecuteAction)
		: Action(FUIAction(InExecuteAction))
	{
	}
	FToolUIActionChoice(
		const TSharedPtr<const FUICommandInfo>& InCommand, const TSharedPtr<const FUICommandList>& InCommandList)
		: Command(InCommand)
		, CommandList(InCommandList)
	{
	}

	/** Null when there is nothing to do. */
	const FUIAction* GetUIAction() const
	{
		if (Action.IsSet())
		{
			return &Action.GetValue();
		}
		return Command.IsValid() && CommandList.IsValid() ? CommandList->GetActionForCommand(Command) : nullptr;
	}

private:
	TOptional<FUIAction> Action;
	TSharedPtr<const FUICommandInfo> Command;
	TSharedPtr<const FUICommandList> CommandList;
};
