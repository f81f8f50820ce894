#pragma once

#include "CoreMinimal.h"
#include "Framework/Commands/UICommandInfo.h"
#include "Framework/MultiBox/MultiBoxDefs.h"
#include "Misc/Attribute.h"
#include "Textures/SlateIcon.h"
#include "ToolMenuDelegates.h"
#include "ToolMenuMisc.h"
#include "ToolMenuOwner.h"

class FUICommandList;

/** A line of a menu or a button of a toolbar. */
struct FToolMenuEntry
{
	FToolMenuEntry() = default;
	FToolMenuEntry(const FToolMenuOwner InOwner, const FName InName, EMultiBlockType InType)
		: Name(InName)
		, Owner(InOwner)
		, Type(InType)
	{
	}

	/** An entry for a command. What is not overridden is the command's; the entry's name is the command's too. */
	static FToolMenuEntry InitMenuEntry(const TSharedPtr<const FUICommandInfo>& InCommand,
		const TAttribute<FText>& InLabelOverride = TAttribute<FText>(),
		const TAttribute<FText>& InToolTipOverride = TAttribute<FText>(),
		const TAttribute<FSlateIcon>& InIconOverride = TAttribute<FSlateIcon>(),
		const FName InTutorialHighlightName = NAME_None, const TOptional<FName> InNameOverride = TOptional<FName>());
	static FToolMenuEntry InitMenuEntry(const FName InName, const TAttribute<FText>& InLabel,
		const TAttribute<FText>& InToolTip, const TAttribute<FSlateIcon>& InIcon, const FToolUIActionChoice& InAction,
		const EUserInterfaceActionType InType = EUserInterfaceActionType::Button,
		const FName InTutorialHighlightName = NAME_None);
	static FToolMenuEntry InitToolBarButton(const TSharedPtr<const FUICommandInfo>& InCommand,
		const TAttribute<FText>& InLabelOverride = TAttribute<FText>(),
		const TAttribute<FText>& InToolTipOverride = TAttribute<FText>(),
		const TAttribute<FSlateIcon>& InIconOverride = TAttribute<FSlateIcon>(),
		const FName InTutorialHighlightName = NAME_None, const TOptional<FName> InNameOverride = TOptional<FName>());
	static FToolMenuEntry InitToolBarButton(const FName InName,
		const FToolUIActionChoice& InAction = FToolUIActionChoice(),
		const TAttribute<FText>& InLabel = TAttribute<FText>(),
		const TAttribute<FText>& InToolTip = TAttribute<FText>(),
		const TAttribute<FSlateIcon>& InIcon = TAttribute<FSlateIcon>(),
		const EUserInterfaceActionType InType = EUserInterfaceActionType::Button,
		FName InTutorialHighlightName = NAME_None);
	static FToolMenuEntry InitSeparator(const FName InName);

	/** Whether it opens the menu that is named as its own with ".<Name>" behind it. */
	bool IsSubMenu() const { return bIsSubMenu; }
	/** The keys that do the same, as text; empty without any. */
	FText GetInputText() const;

	/** Where the command's action is looked up. Without it an entry for a command is shown, but dead. */
	void SetCommandList(const TSharedPtr<const FUICommandList>& InCommandList) { CommandList = InCommandList; }
	/** Null when there is nothing to do. */
	const FUIAction* GetAction() const;

	FName Name;
	FToolMenuOwner Owner;
	EMultiBlockType Type = EMultiBlockType::None;
	EUserInterfaceActionType UserInterfaceActionType = EUserInterfaceActionType::None;
	FToolMenuInsert InsertPosition;
	FName TutorialHighlightName;
	FName StyleNameOverride;
	TAttribute<FText> Label;
	TAttribute<FText> ToolTip;
	TAttribute<FSlateIcon> Icon;
	FToolUIActionChoice Action;

private:
	static FToolMenuEntry InitForCommand(EMultiBlockType InType, const TSharedPtr<const FUICommandInfo>& InCommand,
		const TAttribute<FText>& InLabelOverride, const TAttribute<FText>& InToolTipOverride,
		const TAttribute<FSlateIcon>& InIconOverride, const FName InTutorialHighlightName,
		const TOptional<FName>& InNameOverride);

	friend class UToolMenu;
	bool bIsSubMenu = false;
	TSharedPtr<const FUICommandInfo> Command;
	TSharedPtr<const FUICommandList> CommandList;
};
