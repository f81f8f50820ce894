#pragma once

#include "Agent/Approval/ApprovalRules.h"
#include "Agent/Files/PathReview.h"
#include "CoreMinimal.h"

class FJsonObject;

/**
 * What a search may look into. It is answered without asking, and what it answers tells, question by question, all that
 * a file holds: it leaves out whatever a tool could not read without approval, and what rules keep from being read.
 */
class FKestrelSearchReview
{
public:
	/**
	 * @param FullPath  of a file or folder
	 * @param RealPath  the same with links resolved; empty where they cannot be
	 * @return false for what is left out, and reported
	 */
	bool MayRead(const FString& FullPath, const FString& RealPath);
	/** Whether no rule denies reading it, or asks for it: what is left out is not reported. */
	bool MayReadByRules(const FString& FullPath, const FString& RealPath) const;
	/** False when that is so for every file. */
	bool HasRestrictions() const { return Rules.MayRestrict(); }

	/**
	 * Sets Field on Result, if anything was left out: an object with the "count", the "reason", and the "paths" of the
	 * first hundred.
	 */
	void Report(FJsonObject& Result, const TCHAR* Field) const;

private:
	bool Judge(const FString& FullPath, const FString& RealPath) const;
	/** For a file without links in its path, about which its name says nothing. */
	bool JudgeByFolder(const FString& RealPath);

	const FKestrelPathReviewer Reviewer;
	const FKestrelApprovalRules Rules;
	TArray<FString> Paths; // the first of those left out
	int32 NumLeftOut = 0;
	// A review takes longer than to search most files, and a folder's files come in a row.
	FString LastFolder;
	bool bMayReadLastFolder = false;
};
