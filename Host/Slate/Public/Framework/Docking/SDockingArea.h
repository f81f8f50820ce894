#pragma once

#include "CoreMinimal.h"
#include "Framework/Docking/TabManager.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SDockingTabStack;
class SDockTab;
class SSplitter;
enum class EDockingSide : uint8;

/** Stacks of tabs beside and below each other. The first stack is where a tab opens that belongs nowhere else. */
class SDockingArea : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SDockingArea) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	/** Replaces all stacks by those of a layout, without tabs in them; there must be no open tab. */
	void RestoreFrom(const FTabManager::FArea& Layout);
	/** The stacks, with their tabs and the closed tabs that open in them. */
	TSharedRef<FTabManager::FArea> Persist() const;

	/** Opens a tab in the stack that has a place for it. */
	void AddTab(const TSharedRef<SDockTab>& Tab, bool bBringToFront);
	/** The same for a tab without a place: into the stack that has the other one, open or not. */
	void AddTabBeside(const TSharedRef<SDockTab>& Tab, FName OtherTab, bool bBringToFront);
	/** Takes a tab out of its stack and puts it into another, or into a new one beside that. */
	void MoveTab(const TSharedRef<SDockTab>& Tab, const TSharedRef<SDockingTabStack>& Stack, EDockingSide Side);
	/** Of all stacks, in order. */
	TArray<TSharedRef<SDockTab>> GetTabs() const;

private:
	TSharedRef<SDockingTabStack> MakeStack(const FTabManager::FStack& Layout);
	TSharedRef<SSplitter> MakeSplitter(const FTabManager::FSplitter& Layout);
	TArray<TSharedRef<SDockingTabStack>> GetStacks() const;
	/** The first one if there is none. */
	TSharedRef<SDockingTabStack> FindStackFor(FName TabType) const;
	TSharedRef<SDockingTabStack> AddStackBeside(const TSharedRef<SDockingTabStack>& Stack, EDockingSide Side);
	void RemoveUnusedStacks();

	TSharedPtr<SSplitter> Root;
};
