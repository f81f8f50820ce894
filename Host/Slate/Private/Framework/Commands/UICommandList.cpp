#include "Framework/Commands/UICommandList.h"

void FUICommandList::MapAction(const TSharedPtr<const FUICommandInfo> InUICommandInfo, FExecuteAction ExecuteAction,
	EUIActionRepeatMode RepeatMode)
{
	MapAction(InUICommandInfo, MoveTemp(ExecuteAction), FCanExecuteAction(), RepeatMode);
}

void FUICommandList::MapAction(const TSharedPtr<const FUICommandInfo> InUICommandInfo, FExecuteAction ExecuteAction,
	FCanExecuteAction CanExecuteAction, EUIActionRepeatMode RepeatMode)
{
	MapAction(InUICommandInfo, FUIAction(MoveTemp(ExecuteAction), MoveTemp(CanExecuteAction), FGetActionCheckState(),
								   FIsActionButtonVisible(), RepeatMode));
}

void FUICommandList::MapAction(const TSharedPtr<const FUICommandInfo> InUICommandInfo, const FUIAction& InUIAction)
{
	checkf(InUICommandInfo.IsValid(), TEXT("A command must be registered before an action is mapped to it"));
	checkf(!Actions.Contains(InUICommandInfo), TEXT("The command '%s' is mapped already"),
		*InUICommandInfo->GetCommandName().ToString());
	Actions.Add(InUICommandInfo, InUIAction);
}

void FUICommandList::UnmapAction(const TSharedPtr<const FUICommandInfo> InUICommandInfo)
{
	Actions.Remove(InUICommandInfo);
}

const FUIAction* FUICommandList::GetActionForCommand(TSharedPtr<const FUICommandInfo> Command) const
{
	const FUIAction* Action = Actions.Find(Command);
	for (int32 Index = 0; Action == nullptr && Index < ParentCommands.Num(); ++Index)
	{
		const TSharedPtr<FUICommandList> Parent = ParentCommands[Index].Pin();
		Action = Parent.IsValid() ? Parent->GetActionForCommand(Command) : nullptr;
	}
	return Action;
}

bool FUICommandList::ExecuteAction(const TSharedRef<const FUICommandInfo> InUICommandInfo) const
{
	const FUIAction* const Action = GetActionForCommand(InUICommandInfo);
	checkf(Action != nullptr, TEXT("The command '%s' is not mapped in this list"),
		*InUICommandInfo->GetCommandName().ToString());
	// The action may change the list.
	const FExecuteAction Execute = Action->ExecuteAction;
	return Execute.ExecuteIfBound();
}

bool FUICommandList::CanExecuteAction(const TSharedRef<const FUICommandInfo> InUICommandInfo) const
{
	const FUIAction* const Action = GetActionForCommand(InUICommandInfo);
	return Action != nullptr && Action->CanExecute();
}

bool FUICommandList::TryExecuteAction(const TSharedRef<const FUICommandInfo> InUICommandInfo) const
{
	return CanExecuteAction(InUICommandInfo) && ExecuteAction(InUICommandInfo);
}

bool FUICommandList::ProcessCommandBindings(const FKeyEvent& InKeyEvent) const
{
	const FInputChord Pressed(InKeyEvent.GetKey(), InKeyEvent.IsShiftDown(), InKeyEvent.IsControlDown(),
		InKeyEvent.IsAltDown(), InKeyEvent.IsCommandDown());
	for (const auto& Mapped : Actions)
	{
		const bool bIsMeant = Mapped.Key->GetDefaultChord(EMultipleKeyBindingIndex::Primary) == Pressed ||
							  Mapped.Key->GetDefaultChord(EMultipleKeyBindingIndex::Secondary) == Pressed;
		const bool bMayRun = !InKeyEvent.IsRepeat() || Mapped.Value.RepeatMode == EUIActionRepeatMode::RepeatEnabled;
		if (bIsMeant && bMayRun && Pressed.IsValidChord())
		{
			return TryExecuteAction(Mapped.Key.ToSharedRef());
		}
	}
	return false;
}
