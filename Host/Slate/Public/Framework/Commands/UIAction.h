#pragma once

#include "CoreMinimal.h"
#include "Styling/SlateTypes.h"

enum class EUIActionRepeatMode : uint8
{
	RepeatDisabled,
	RepeatEnabled,
};

DECLARE_DELEGATE(FExecuteAction)
DECLARE_DELEGATE_RetVal(bool, FCanExecuteAction) DECLARE_DELEGATE_RetVal(ECheckBoxState, FGetActionCheckState)
	DECLARE_DELEGATE_RetVal(bool, FIsActionButtonVisible)

	/** What a command or a menu entry does, and whether it can be done now. */
	struct FUIAction
{
	FUIAction() = default;
	FUIAction(FExecuteAction InitExecuteAction, FCanExecuteAction InitCanExecuteAction = FCanExecuteAction(),
		FGetActionCheckState InitGetActionCheckState = FGetActionCheckState(),
		FIsActionButtonVisible InitIsActionButtonVisible = FIsActionButtonVisible(),
		EUIActionRepeatMode InitRepeatMode = EUIActionRepeatMode::RepeatDisabled)
		: ExecuteAction(MoveTemp(InitExecuteAction))
		, CanExecuteAction(MoveTemp(InitCanExecuteAction))
		, GetActionCheckState(MoveTemp(InitGetActionCheckState))
		, IsActionVisibleDelegate(MoveTemp(InitIsActionButtonVisible))
		, RepeatMode(InitRepeatMode)
	{
	}

	/** With no delegate for it, always. */
	bool CanExecute() const { return !CanExecuteAction.IsBound() || CanExecuteAction.Execute(); }
	bool IsVisible() const { return !IsActionVisibleDelegate.IsBound() || IsActionVisibleDelegate.Execute(); }
	bool IsBound() const { return ExecuteAction.IsBound(); }
	/** False if there is nothing to do, or if it cannot be done now. */
	bool Execute() const { return CanExecute() && ExecuteAction.ExecuteIfBound(); }

	FExecuteAction ExecuteAction;
	FCanExecuteAction CanExecuteAction;
	FGetActionCheckState GetActionCheckState;
	FIsActionButtonVisible IsActionVisibleDelegate;
	EUIActionRepeatMode RepeatMode = EUIActionRepeatMode::RepeatDisabled;
};
