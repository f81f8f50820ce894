#pragma once

#include "CoreMinimal.h"
#include "Framework/Commands/UIAction.h"
#include "Framework/Commands/UICommandInfo.h"
#include "Input/Events.h"

/** What commands do. The same command may do different things in different lists. */
class FUICommandList : public TSharedFromThis<FUICommandList>
{
public:
	virtual ~FUICommandList() = default;

	/** Asserts that the command is valid and not mapped yet. */
	virtual void MapAction(const TSharedPtr<const FUICommandInfo> InUICommandInfo, FExecuteAction ExecuteAction,
		EUIActionRepeatMode RepeatMode = EUIActionRepeatMode::RepeatDisabled);
	virtual void MapAction(const TSharedPtr<const FUICommandInfo> InUICommandInfo, FExecuteAction ExecuteAction,
		FCanExecuteAction CanExecuteAction, EUIActionRepeatMode RepeatMode = EUIActionRepeatMode::RepeatDisabled);
	virtual void MapAction(const TSharedPtr<const FUICommandInfo> InUICommandInfo, const FUIAction& InUIAction);
	virtual void UnmapAction(const TSharedPtr<const FUICommandInfo> InUICommandInfo);
	/** Commands that are not in this list are looked up in that one. */
	void Append(const TSharedRef<FUICommandList>& InCommandsToAppend) { ParentCommands.Add(InCommandsToAppend); }

	/** Asserts that the command is mapped, and does it, whether or not it can be done now. */
	virtual bool ExecuteAction(const TSharedRef<const FUICommandInfo> InUICommandInfo) const;
	/** False for a command that is not mapped. */
	virtual bool CanExecuteAction(const TSharedRef<const FUICommandInfo> InUICommandInfo) const;
	/** Does it if it can be done. */
	bool TryExecuteAction(const TSharedRef<const FUICommandInfo> InUICommandInfo) const;
	/** Does what the pressed keys stand for in this list; false if they stand for nothing. */
	bool ProcessCommandBindings(const FKeyEvent& InKeyEvent) const;

	/** Null for a command that is not mapped; good until the list changes. */
	const FUIAction* GetActionForCommand(TSharedPtr<const FUICommandInfo> Command) const;

private:
	TMap<TSharedPtr<const FUICommandInfo>, FUIAction> Actions;
	TArray<TWeakPtr<FUICommandList>> ParentCommands;
};
