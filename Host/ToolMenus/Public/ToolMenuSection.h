#pragma once

#include "CoreMinimal.h"
#include "ToolMenuEntry.h"
#include "ToolMenuMisc.h"
#include "ToolMenuOwner.h"

class FUICommandInfo;
class FUICommandList;

/** A group of entries in a menu. */
struct FToolMenuSection
{
	/** Replaces an entry of the same name. The reference is good until the next entry is added. */
	FToolMenuEntry& AddEntry(const FToolMenuEntry& Args);
	FToolMenuEntry& AddMenuEntry(const FName Name, const TAttribute<FText>& Label, const TAttribute<FText>& ToolTip,
		const TAttribute<FSlateIcon>& Icon, const FToolUIActionChoice& Action,
		const EUserInterfaceActionType UserInterfaceActionType = EUserInterfaceActionType::Button,
		const FName TutorialHighlightName = NAME_None);
	FToolMenuEntry& AddMenuEntry(const TSharedPtr<const FUICommandInfo>& Command,
		const TAttribute<FText>& LabelOverride = TAttribute<FText>(),
		const TAttribute<FText>& ToolTipOverride = TAttribute<FText>(),
		const TAttribute<FSlateIcon>& IconOverride = TAttribute<FSlateIcon>(),
		const FName TutorialHighlightName = NAME_None, const TOptional<FName> NameOverride = TOptional<FName>());
	/** Asserts that there is a command. */
	FToolMenuEntry& AddMenuEntryWithCommandList(const TSharedPtr<const FUICommandInfo>& Command,
		const TSharedPtr<const FUICommandList>& CommandList,
		const TAttribute<FText>& LabelOverride = TAttribute<FText>(),
		const TAttribute<FText>& ToolTipOverride = TAttribute<FText>(),
		const TAttribute<FSlateIcon>& IconOverride = TAttribute<FSlateIcon>(),
		const FName TutorialHighlightName = NAME_None, const TOptional<FName> NameOverride = TOptional<FName>());
	FToolMenuEntry& AddSeparator(const FName InName) { return AddEntry(FToolMenuEntry::InitSeparator(InName)); }

	/** Null if there is none. */
	FToolMenuEntry* FindEntry(const FName InName);
	const FToolMenuEntry* FindEntry(const FName InName) const;
	int32 RemoveEntry(const FName InName);
	int32 RemoveEntriesByOwner(const FToolMenuOwner InOwner);

	FName Name;
	FToolMenuOwner Owner;
	TAttribute<FText> Label;
	FToolMenuInsert InsertPosition;
	TArray<FToolMenuEntry> Blocks;
};
