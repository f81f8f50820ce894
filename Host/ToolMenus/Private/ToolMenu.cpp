#include "ToolMenu.h"

#include "ToolMenus.h"

FToolMenuSection& UToolMenu::FindOrAddSection(const FName SectionName)
{
	return FindOrAddSection(SectionName, TAttribute<FText>());
}

FToolMenuSection& UToolMenu::FindOrAddSection(
	const FName SectionName, const TAttribute<FText>& InLabel, const FToolMenuInsert InPosition)
{
	FToolMenuSection* const Existing = FindSection(SectionName);
	if (Existing != nullptr)
	{
		return *Existing;
	}
	FToolMenuSection NewSection;
	NewSection.Name = SectionName;
	NewSection.Label = InLabel;
	NewSection.InsertPosition = InPosition;
	NewSection.Owner = UToolMenus::Get()->CurrentOwner();
	return Sections[Sections.Add(NewSection)];
}

FToolMenuSection& UToolMenu::AddSection(
	const FName SectionName, const TAttribute<FText>& InLabel, const FToolMenuInsert InPosition)
{
	return FindOrAddSection(SectionName, InLabel, InPosition);
}

FToolMenuSection* UToolMenu::FindSection(const FName SectionName)
{
	return Sections.FindByPredicate(
		[SectionName](const FToolMenuSection& Section) { return Section.Name == SectionName; });
}

void UToolMenu::RemoveSection(const FName SectionName)
{
	Sections.RemoveAll([SectionName](const FToolMenuSection& Section) { return Section.Name == SectionName; });
	UToolMenus::Get()->RefreshAllWidgets();
}

FToolMenuEntry& UToolMenu::AddMenuEntry(const FName SectionName, const FToolMenuEntry& Args)
{
	return FindOrAddSection(SectionName).AddEntry(Args);
}

UToolMenu* UToolMenu::AddSubMenu(const FToolMenuOwner InOwner, const FName SectionName, const FName InName,
	const TAttribute<FText>& InLabel, const TAttribute<FText>& InToolTip)
{
	FToolMenuEntry Entry(InOwner, InName, EMultiBlockType::MenuEntry);
	Entry.Label = InLabel;
	Entry.ToolTip = InToolTip;
	Entry.bIsSubMenu = true;
	FindOrAddSection(SectionName).AddEntry(Entry);
	UToolMenu* const Menu = UToolMenus::Get()->ExtendMenu(UToolMenus::JoinMenuPaths(MenuName, InName));
	Menu->bRegistered = true;
	return Menu;
}
