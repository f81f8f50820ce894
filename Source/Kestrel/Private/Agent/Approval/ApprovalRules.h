#pragma once

#include "Agent/Approval/PathPattern.h"
#include "Agent/Approval/ToolNames.h"
#include "CoreMinimal.h"
#include "KestrelApprovalRule.h"

struct FKestrelPathReview;

/** A file that a tool is about, by all its names. */
struct KESTREL_API FKestrelToolPlace
{
	/** @param PackageName  of the asset that the tool names; else empty */
	static FKestrelToolPlace Of(const FKestrelPathReview& Review, const FString& PackageName);

	/** As the tool names it: below the project directory, or in full. */
	FString GivenPath;
	/** The place itself, likewise, with links resolved; empty when they cannot be. */
	FString RealPath;
	/** Of an asset that the tool names: its package; else empty. */
	FString PackageName;
	/** What a file below the content folders is as a package, by its given and its real path; not for all it is one. */
	TArray<FString> FilePackageNames = {};
};

/** What rules judge. */
struct FKestrelToolSubject
{
	FString ToolName;
	EKestrelToolKind Kind = EKestrelToolKind::Run;
	/** None for a tool that is about no file in particular. */
	TArray<FKestrelToolPlace> Places;
	/** It is about more than its places, and nobody can say what: only a rule for all paths allows it. */
	bool bHasUnknownPlaces = false;
	/** Only a rule of the user's that says so allows it. */
	bool bIsRisky = false;
};

/** What the rules say about a tool, all taken together. */
enum class EKestrelRuling : uint8
{
	/** Nothing. */
	None,
	Allow,
	Ask,
	Deny,
};

/**
 * The rules for approval: the user's own, and the project's. Deny beats Ask, and Ask beats Allow. A rule allows what
 * matches it by the file's real path; it denies, or asks for, what matches it by any of the file's names.
 */
class KESTREL_API FKestrelApprovalRules
{
public:
	/** Those of the settings, as they are now. */
	FKestrelApprovalRules();
	FKestrelApprovalRules(
		const TArray<FKestrelApprovalRule>& UserRules, const TArray<FKestrelApprovalRule>& ProjectRules);

	EKestrelRuling Judge(const FKestrelToolSubject& Subject) const;
	/** Whether some rule denies anything, or asks for it. */
	bool MayRestrict() const { return bMayRestrict; }
	/** Whether a rule denies reading a file with one of the tools that read, or asks for it. */
	bool RestrictReading(const FKestrelToolPlace& Place) const;
	/** Whether some rule lets anything run without asking. */
	bool AllowAnything() const;

private:
	struct FRule
	{
		EKestrelApproval Decision;
		FString Tool;
		FKestrelPathPattern Path;

		EKestrelRuling Judge(const FKestrelToolSubject& Subject) const;
		bool IsAbout(const FKestrelToolSubject& Subject) const;
		/** By any of its names. */
		bool Covers(const FKestrelToolPlace& Place) const;
		/** By the place itself. */
		bool CoversWhole(const FKestrelToolPlace& Place) const;
	};

	void Add(const TArray<FKestrelApprovalRule>& Given, EKestrelApproval Most);

	TArray<FRule> Rules;
	bool bMayRestrict = false; // else nothing is denied or asked for
};
