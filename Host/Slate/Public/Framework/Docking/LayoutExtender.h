#pragma once

#include "CoreMinimal.h"
#include "Framework/Docking/TabManager.h"

/** Where an added tab goes, seen from the one that is there. */
enum class ELayoutExtensionPosition
{
	Before,
	After,
	/** In a stack of its own. */
	Above,
	Below,
};

/** Tabs that somebody wants in a layout that is not theirs. */
class FLayoutExtender
{
public:
	/** No effect where the layout has no place for PredicateTabId, or has one for the added tab already. */
	void ExtendLayout(FTabId PredicateTabId, ELayoutExtensionPosition Position, FTabManager::FTab TabToAdd)
	{
		Extensions.Add({ PredicateTabId, Position, TabToAdd });
	}

	/** Host: for FTabManager::FLayout. */
	struct FExtension
	{
		FTabId PredicateTabId;
		ELayoutExtensionPosition Position;
		FTabManager::FTab TabToAdd;
	};
	const TArray<FExtension>& GetExtensions() const { return Extensions; }

private:
	TArray<FExtension> Extensions;
};
