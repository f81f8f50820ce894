#pragma once

#include "CoreMinimal.h"
#include "Framework/MultiBox/MultiBoxDefs.h"
#include "ToolMenuMisc.h"
#include "ToolMenuOwner.h"
#include "ToolMenuSection.h"
#include "UObject/Object.h"

#include "ToolMenu.generated.h"

/** A menu or toolbar that everybody may extend, whether or not it is shown anywhere. */
UCLASS()
class UToolMenu : public UObject
{
	GENERATED_BODY()

public:
	/**
	 * The reference is good until another section is added to this menu. Label and position are those of the first
	 * call that makes the section.
	 */
	FToolMenuSection& FindOrAddSection(const FName SectionName);
	FToolMenuSection& FindOrAddSection(const FName SectionName, const TAttribute<FText>& InLabel,
		const FToolMenuInsert InPosition = FToolMenuInsert());
	/** The same; it may exist. */
	FToolMenuSection& AddSection(const FName SectionName, const TAttribute<FText>& InLabel = TAttribute<FText>(),
		const FToolMenuInsert InPosition = FToolMenuInsert());
	/** Null if there is none. */
	FToolMenuSection* FindSection(const FName SectionName);
	void RemoveSection(const FName SectionName);
	/** In a section that is made if need be. */
	FToolMenuEntry& AddMenuEntry(const FName SectionName, const FToolMenuEntry& Args);
	/**
	 * An entry in a section that is made if need be, and the menu that it opens: "<MenuName>.<InName>".
	 *
	 * @return the menu, which may have been extended before
	 */
	UToolMenu* AddSubMenu(const FToolMenuOwner InOwner, const FName SectionName, const FName InName,
		const TAttribute<FText>& InLabel, const TAttribute<FText>& InToolTip = TAttribute<FText>());

	FName MenuName;
	/** A menu whose entries this one begins with. */
	FName MenuParent;
	EMultiBoxType MenuType = EMultiBoxType::Menu;
	FToolMenuOwner MenuOwner;
	TArray<FToolMenuSection> Sections;

private:
	friend class UToolMenus;
	bool bRegistered = false;
};
