#pragma once

#include "CoreMinimal.h"

class FUICommandList;
class UToolMenu;

/** What the menu Edit offers for the editor's transactions: undo, redo and their history. */
class FEditMenu
{
public:
	/** Only what can be done can be chosen. The keys are those of FGenericCommands. */
	static void MapCommands(FUICommandList& Commands);
	static void Fill(UToolMenu& Menu, const TSharedRef<FUICommandList>& Commands);
};
