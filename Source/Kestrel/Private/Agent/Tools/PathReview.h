#pragma once

#include "CoreMinimal.h"

/** What a person should know about the place of a file before a tool touches it. */
struct FKestrelPathReview
{
	/** @param FullPath  absolute; need not exist */
	static FKestrelPathReview Of(const FString& FullPath);

	/**
	 * Whether a file is one that whoever made the project could have put there as well: inside the project, and neither
	 * of its version control nor of this plugin.
	 */
	bool bIsOfProject = false;
	/** The place itself, with links resolved; empty when they cannot be. */
	FString RealPath;
	/** The place as people read it: below the project directory, or in full, with where its links lead. */
	FString ShownPath;
	/** Why to look twice, whatever is done with the file; empty within the project. */
	TArray<FText> Cautions;
	/** Why to look twice before the file is changed. */
	TArray<FText> CautionsOfChange;
};
