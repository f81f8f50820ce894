#pragma once

#include "CoreMinimal.h"

/** Opens sources in the programmer's editor. */
class FSourceCodeNavigation
{
public:
	/**
	 * The host leaves the choice of the editor to the desktop, which cannot be told a line.
	 *
	 * @param AbsoluteSourcePath  of any text file
	 * @param LineNumber          from 1; 0: none
	 * @return false if nothing opens it
	 */
	static bool OpenSourceFile(const FString& AbsoluteSourcePath, int32 LineNumber = 0, int32 ColumnNumber = 0);
};
