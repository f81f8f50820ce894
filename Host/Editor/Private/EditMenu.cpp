#include "EditMenu.h"

#include "Editor.h"
#include "Editor/Transactor.h"
#include "Framework/Commands/GenericCommands.h"
#include "Framework/Commands/UICommandList.h"
#include "Framework/Docking/TabManager.h"
#include "MainFrameCommands.h"
#include "Misc/ITransaction.h"
#include "ToolMenu.h"

#define LOCTEXT_NAMESPACE "EditMenu"

namespace EditMenu
{
const FName UndoHistoryTab("UndoHistory");

UTransactor* GetTransactor()
{
	return GEditor ? GEditor->Trans.Get() : nullptr;
}

bool CanUndo()
{
	UTransactor* const Transactor = GetTransactor();
	return Transactor && Transactor->CanUndo();
}

bool CanRedo()
{
	UTransactor* const Transactor = GetTransactor();
	return Transactor && Transactor->CanRedo();
}

FText GetUndoLabel()
{
	return CanUndo() ? FText::Format(LOCTEXT("UndoTitle", "Undo {0}"), GetTransactor()->GetUndoContext().Title)
					 : LOCTEXT("Undo", "Undo");
}

FText GetRedoLabel()
{
	return CanRedo() ? FText::Format(LOCTEXT("RedoTitle", "Redo {0}"), GetTransactor()->GetRedoContext().Title)
					 : LOCTEXT("Redo", "Redo");
}

TAttribute<FText> Bind(FText (*GetLabel)())
{
	return TAttribute<FText>::Create(TAttribute<FText>::FGetter::CreateStatic(GetLabel));
}
}

void FEditMenu::MapCommands(FUICommandList& Commands)
{
	const FGenericCommands& Generic = FGenericCommands::Get();
	Commands.MapAction(Generic.Undo, FExecuteAction::CreateLambda([] { GEditor->UndoTransaction(); }),
		FCanExecuteAction::CreateStatic(&EditMenu::CanUndo), EUIActionRepeatMode::RepeatEnabled);
	Commands.MapAction(Generic.Redo, FExecuteAction::CreateLambda([] { GEditor->RedoTransaction(); }),
		FCanExecuteAction::CreateStatic(&EditMenu::CanRedo), EUIActionRepeatMode::RepeatEnabled);
	Commands.MapAction(FMainFrameCommands::Get().OpenUndoHistory,
		FExecuteAction::CreateLambda([] { FGlobalTabmanager::Get()->TryInvokeTab(EditMenu::UndoHistoryTab); }));
}

void FEditMenu::Fill(UToolMenu& Menu, const TSharedRef<FUICommandList>& Commands)
{
	const FGenericCommands& Generic = FGenericCommands::Get();
	FToolMenuSection& Section = Menu.FindOrAddSection("EditHistory", LOCTEXT("History", "History"));
	Section.AddMenuEntryWithCommandList(Generic.Undo, Commands, EditMenu::Bind(&EditMenu::GetUndoLabel));
	Section.AddMenuEntryWithCommandList(Generic.Redo, Commands, EditMenu::Bind(&EditMenu::GetRedoLabel));
	Section.AddMenuEntryWithCommandList(FMainFrameCommands::Get().OpenUndoHistory, Commands);
}

#undef LOCTEXT_NAMESPACE
