#include "ToolMenuEntry.h"

#include "Framework/Commands/UICommandList.h"

FToolMenuEntry FToolMenuEntry::InitForCommand(EMultiBlockType InType, const TSharedPtr<const FUICommandInfo>& InCommand,
	const TAttribute<FText>& InLabelOverride, const TAttribute<FText>& InToolTipOverride,
	const TAttribute<FSlateIcon>& InIconOverride, const FName InTutorialHighlightName,
	const TOptional<FName>& InNameOverride)
{
	checkf(InCommand.IsValid(), TEXT("A menu entry was made for a command that is not registered"));
	const FName EntryName = InNameOverride.IsSet() ? InNameOverride.GetValue() : InCommand->GetCommandName();
	FToolMenuEntry Entry(FToolMenuOwner(), EntryName, InType);
	Entry.Command = InCommand;
	Entry.UserInterfaceActionType = InCommand->GetUserInterfaceType();
	Entry.TutorialHighlightName = InTutorialHighlightName;
	Entry.Label = InLabelOverride.IsSet() ? InLabelOverride : TAttribute<FText>(InCommand->GetLabel());
	Entry.ToolTip = InToolTipOverride.IsSet() ? InToolTipOverride : TAttribute<FText>(InCommand->GetDescription());
	Entry.Icon = InIconOverride.IsSet() ? InIconOverride : TAttribute<FSlateIcon>(InCommand->GetIcon());
	return Entry;
}

FToolMenuEntry FToolMenuEntry::InitMenuEntry(const TSharedPtr<const FUICommandInfo>& InCommand,
	const TAttribute<FText>& InLabelOverride, const TAttribute<FText>& InToolTipOverride,
	const TAttribute<FSlateIcon>& InIconOverride, const FName InTutorialHighlightName,
	const TOptional<FName> InNameOverride)
{
	return InitForCommand(EMultiBlockType::MenuEntry, InCommand, InLabelOverride, InToolTipOverride, InIconOverride,
		InTutorialHighlightName, InNameOverride);
}

FToolMenuEntry FToolMenuEntry::InitToolBarButton(const TSharedPtr<const FUICommandInfo>& InCommand,
	const TAttribute<FText>& InLabelOverride, const TAttribute<FText>& InToolTipOverride,
	const TAttribute<FSlateIcon>& InIconOverride, const FName InTutorialHighlightName,
	const TOptional<FName> InNameOverride)
{
	return InitForCommand(EMultiBlockType::ToolBarButton, InCommand, InLabelOverride, InToolTipOverride, InIconOverride,
		InTutorialHighlightName, InNameOverride);
}

FToolMenuEntry FToolMenuEntry::InitMenuEntry(const FName InName, const TAttribute<FText>& InLabel,
	const TAttribute<FText>& InToolTip, const TAttribute<FSlateIcon>& InIcon, const FToolUIActionChoice& InAction,
	const EUserInterfaceActionType InType, const FName InTutorialHighlightName)
{
	FToolMenuEntry Entry(FToolMenuOwner(), InName, EMultiBlockType::MenuEntry);
	Entry.Label = InLabel;
	Entry.ToolTip = InToolTip;
	Entry.Icon = InIcon;
	Entry.Action = InAction;
	Entry.UserInterfaceActionType = InType;
	Entry.TutorialHighlightName = InTutorialHighlightName;
	return Entry;
}

FToolMenuEntry FToolMenuEntry::InitToolBarButton(const FName InName, const FToolUIActionChoice& InAction,
	const TAttribute<FText>& InLabel, const TAttribute<FText>& InToolTip, const TAttribute<FSlateIcon>& InIcon,
	const EUserInterfaceActionType InType, FName InTutorialHighlightName)
{
	FToolMenuEntry Entry = InitMenuEntry(InName, InLabel, InToolTip, InIcon, InAction, InType, InTutorialHighlightName);
	Entry.Type = EMultiBlockType::ToolBarButton;
	return Entry;
}

FToolMenuEntry FToolMenuEntry::InitSeparator(const FName InName)
{
	return FToolMenuEntry(FToolMenuOwner(), InName, EMultiBlockType::Separator);
}

FText FToolMenuEntry::GetInputText() const
{
	return Command.IsValid() ? Command->GetInputText() : FText::GetEmpty();
}

const FUIAction* FToolMenuEntry::GetAction() const
{
	if (Command.IsValid())
	{
		return CommandList.IsValid() ? CommandList->GetActionForCommand(Command) : nullptr;
	}
	return Action.GetUIAction();
}
