#include "ToolMenuSection.h"

#include "ToolMenus.h"

FToolMenuEntry& FToolMenuSection::AddEntry(const FToolMenuEntry& Args)
{
	FToolMenuEntry NewEntry = Args;
	UToolMenus* const Menus = UToolMenus::Get();
	if (!NewEntry.Owner.IsSet())
	{
		NewEntry.Owner = Menus->CurrentOwner();
	}
	Menus->RefreshAllWidgets();
	FToolMenuEntry* const Existing = NewEntry.Name.IsNone() ? nullptr : FindEntry(NewEntry.Name);
	if (Existing != nullptr)
	{
		*Existing = NewEntry;
		return *Existing;
	}
	return Blocks[Blocks.Add(NewEntry)];
}

FToolMenuEntry& FToolMenuSection::AddMenuEntry(const FName EntryName, const TAttribute<FText>& EntryLabel,
	const TAttribute<FText>& ToolTip, const TAttribute<FSlateIcon>& Icon, const FToolUIActionChoice& Action,
	const EUserInterfaceActionType UserInterfaceActionType, const FName TutorialHighlightName)
{
	return AddEntry(FToolMenuEntry::InitMenuEntry(
		EntryName, EntryLabel, ToolTip, Icon, Action, UserInterfaceActionType, TutorialHighlightName));
}

FToolMenuEntry& FToolMenuSection::AddMenuEntry(const TSharedPtr<const FUICommandInfo>& Command,
	const TAttribute<FText>& LabelOverride, const TAttribute<FText>& ToolTipOverride,
	const TAttribute<FSlateIcon>& IconOverride, const FName TutorialHighlightName, const TOptional<FName> NameOverride)
{
	return AddEntry(FToolMenuEntry::InitMenuEntry(
		Command, LabelOverride, ToolTipOverride, IconOverride, TutorialHighlightName, NameOverride));
}

FToolMenuEntry& FToolMenuSection::AddMenuEntryWithCommandList(const TSharedPtr<const FUICommandInfo>& Command,
	const TSharedPtr<const FUICommandList>& CommandList, const TAttribute<FText>& LabelOverride,
	const TAttribute<FText>& ToolTipOverride, const TAttribute<FSlateIcon>& IconOverride,
	const FName TutorialHighlightName, const TOptional<FName> NameOverride)
{
	FToolMenuEntry& Entry =
		AddMenuEntry(Command, LabelOverride, ToolTipOverride, IconOverride, TutorialHighlightName, NameOverride);
	Entry.SetCommandList(CommandList);
	return Entry;
}

FToolMenuEntry* FToolMenuSection::FindEntry(const FName InName)
{
	return Blocks.FindByPredicate([InName](const FToolMenuEntry& Entry) { return Entry.Name == InName; });
}

const FToolMenuEntry* FToolMenuSection::FindEntry(const FName InName) const
{
	return const_cast<FToolMenuSection*>(this)->FindEntry(InName);
}

int32 FToolMenuSection::RemoveEntry(const FName InName)
{
	return Blocks.RemoveAll([InName](const FToolMenuEntry& Entry) { return Entry.Name == InName; });
}

int32 FToolMenuSection::RemoveEntriesByOwner(const FToolMenuOwner InOwner)
{
	return InOwner.IsSet()
			   ? Blocks.RemoveAll([&InOwner](const FToolMenuEntry& Entry) { return Entry.Owner == InOwner; })
			   : 0;
}
