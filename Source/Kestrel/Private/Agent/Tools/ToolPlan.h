#pragma once

#include "Agent/Approval/ApprovalRules.h"
#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Tools/AssetView.h"
#include "Agent/Tools/ProjectView.h"
#include "Agent/Tools/ToolInput.h"
#include "Agent/Tools/ToolTable.h"
#include "CoreMinimal.h"

class FJsonObject;
class IKestrelTextWork;
class UClass;

/** How a tool changes its file. */
enum class EKestrelFileOperation : uint8
{
	None,
	Create,
	Replace,
	Update,
	Insert,
	Delete,
};

/** Whether the panel tells that a tool is at work. */
enum class EKestrelStatusLine : uint8
{
	Shown,
	Hidden,
};

/** A text before and after a change. */
struct FKestrelChange
{
	FString Before; // empty for what is new
	FString After;  // empty for what is deleted
};

/**
 * What one tool use would do: made once from its input, shown to the person who approves, and carried out as it is.
 *
 * Strings are as given; whoever shows them escapes them (KestrelDisplayText).
 */
struct KESTREL_API FKestrelToolPlan
{
	/** The place of a file that the tool is about, with everything to know of it. */
	void SetFile(FKestrelProjectView& View, const FString& FullPath);
	/** One of several files that the tool changes, for the rules and the cautions. */
	void AddFile(FKestrelProjectView& View, const FString& FullPath);
	/** The asset that a name leads to, with everything to know of its file. */
	void SetAsset(FKestrelProjectView& View, UClass* (*GetClass)(), const FString& Name);
	/** A Blueprint that the tool will create, unless it is refused; false when there can be none with this name. */
	bool SetNewAsset(FKestrelProjectView& View, const FString& PackageName);
	/** All assets with unsaved changes. */
	void SetUnsavedAssets(FKestrelProjectView& View);
	/** What changes is beyond the limits. */
	void LeaveForLater();
	/** What changes, unless that is too large to keep. */
	void SetChange(FKestrelProjectView& View, FString Before, FString After);
	/** The file as the tool expects to find it. */
	void Expect(const FKestrelFileState& State);
	/** The tool will fail with this result, and do nothing. */
	void Refuse(const FString& Result);
	void Caution(const FText& Reason) { Cautions.Add(Reason); }

	/**
	 * Whether everything that was looked at when the plan was made is still as it was, or as the tools before it have
	 * left it.
	 *
	 * @param Finder  what asks where names lead now: one for all plans that are asked before something comes or goes
	 */
	bool StillHolds(FKestrelAssetFinder& Finder) const;
	bool StillHolds() const;
	/** Runs the tool. @return its result */
	FString Apply(EKestrelStatusLine StatusLine = EKestrelStatusLine::Shown) const;
	/** Begins to run the tool, which goes on in slices. The plan has to outlive the work. */
	TSharedRef<IKestrelTextWork> Begin(EKestrelStatusLine StatusLine = EKestrelStatusLine::Shown) const;
	/** Whether others find the project's files and assets as they were, once it has run. */
	bool LeavesAllAsItIs() const { return Kind == EKestrelToolKind::Read; }
	bool AnswersLater() const { return Tool && Tool->Answers == EKestrelAnswers::Later; }

	/** "Change Source/A.h: 3 replacements", with what is not seen in names as escapes, and the middle of long ones left
	 * out. */
	FText Describe() const;
	/** Whether a person who has seen one of two plans of a tool use has seen the other. */
	bool LooksLike(const FKestrelToolPlan& Other) const;
	/** What rules for approval judge. */
	FKestrelToolSubject MakeSubject() const;

	/** To be looked at twice: it says why in Cautions, it deletes or runs something, or cannot be shown. */
	bool StandsOut() const
	{
		return !Cautions.IsEmpty() || bCannotBeShown || Kind == EKestrelToolKind::Delete ||
			   Kind == EKestrelToolKind::Run;
	}

	/** Null for a name that is none. */
	const FKestrelTool* Tool = nullptr;
	FString ToolUseId;
	FKestrelToolInput Input;
	EKestrelToolKind Kind = EKestrelToolKind::Run;
	/** What it does, for people; Target stands behind it. */
	FText Verb;
	FString Target;
	/** Where the links in a path lead, which Target does not tell; else empty. */
	FString LinkTarget;
	/** The files that it is about. */
	TArray<FKestrelToolPlace> Places;
	/** It is about more than these. */
	bool bHasUnknownPlaces = false;
	/** Why to look twice; a tool with a reason is not run on the service's word alone. */
	TArray<FText> Cautions;
	/** What else to know; no reason to ask. */
	TArray<FText> Notes;
	/** What of an asset changes, in lines; empty when the change itself says it. */
	TArray<FString> Summary;
	/** Of a replacement: how often it is made. */
	TOptional<int32> NumReplacements;
	/** The result, when it is known to be a failure; else empty. */
	FString Refusal;
	/** Shown in the panel while the tool works; null for none. */
	const TCHAR* Status = nullptr;

	/** What changes: a file's text; or a script, a Blueprint's modifications, packages, which have no text before. */
	TOptional<FKestrelChange> Change;
	/** The change is too large to be shown. */
	bool bCannotBeShown = false;
	/** It is not even at hand: it is too large to look at, and is loaded again when the tool runs. */
	bool bIsBeyondLimits = false;

	EKestrelFileOperation Operation = EKestrelFileOperation::None;
	FString FilePath; // absolute; empty for a tool without a file
	FString RealPath; // with links resolved, as it was when the plan was made
	/** Of an insertion: how many lines stay above it. */
	int32 LineIndex = 0;
	TOptional<FKestrelExpectedFile> Expected;

	FKestrelAssetAddress Asset; // what the name led to when the plan was made

private:
	friend class FKestrelToolPlanner;

	void NoteThatItCannotBeShown();
	/** The file of a package, which is shown by the package's name. */
	void SetPackage(FKestrelProjectView& View, const FString& PackageName);
	void AddCautions(const FKestrelPathReview& Review);
	/** @param PackageName  of an asset's file; else empty */
	void AddPlace(const FKestrelPathReview& Review, const FString& PackageName);
	bool AssetsStillHold(FKestrelAssetFinder& Finder) const;
	/** Of the assets that the tool may change, those that are as expected. */
	TArray<TSharedRef<FKestrelAssetWatch>> FindExpected() const;
	/** Of a tool that works at once. */
	FString Run() const;
	FString RunWhole() const;
	class FWork;

	/** Looks at the files that the row's tools need. */
	void Make(FKestrelProjectView& View);

	/** The class of the named asset; null for a tool without one. */
	UClass* (*GetAssetClass)() = nullptr;
	/** Of the asset that the tool changes; null for one that changes none, or all. */
	TSharedPtr<FKestrelAssetWatch> Watch;
	/** Of the assets that the tools of the answer change; null for a tool that changes none. */
	TSharedPtr<const FKestrelAssetView::FWatches> Watches;
	/** What a tool that saves all was going to save: packages, and their files with links resolved. */
	TOptional<TMap<FString, FString>> UnsavedPackages;

	bool bInputIsRead = false;
	/** False when Apply has nothing left to do. */
	bool bRuns = true;
};

/**
 * Makes plans of tool uses, each on top of those before it. Nothing is changed: neither files, nor the record for
 * undo, nor revision control.
 */
class KESTREL_API FKestrelToolPlanner
{
public:
	/** @param Finder  as FKestrelAssetView takes it */
	explicit FKestrelToolPlanner(
		EKestrelLookAhead LookAhead, const TSharedRef<FKestrelAssetFinder>& Finder = MakeShared<FKestrelAssetFinder>())
		: View(LookAhead, Finder)
	{
	}

	/** @param ToolUse  a "tool_use" block */
	TSharedRef<FKestrelToolPlan> Plan(const FJsonObject& ToolUse);
	/** @param Input  may be null, which is a failure of its own */
	TSharedRef<FKestrelToolPlan> Plan(const FString& Name, const FString& Id, const TSharedPtr<FJsonObject>& Input);
	/** The same tool use with the files as they are now. */
	TSharedRef<FKestrelToolPlan> PlanAgain(const FKestrelToolPlan& Plan);
	/** Of files, and characters that are kept. */
	int64 GetNumBytesRead() const { return View.GetNumBytesRead(); }

private:
	FKestrelProjectView View;
};
