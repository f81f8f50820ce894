#pragma once

#include "Agent/Tools/ToolPlan.h"
#include "CoreMinimal.h"

/** What the user has said about a tool that waits. */
enum class EKestrelAnswer : uint8
{
	None,
	Accepted,
	Rejected,
};

/**
 * The tools that wait for the user, in the order in which they run. Each can be accepted or rejected by itself. Those
 * behind a tool are planned on top of what it would do, and so they are planned again without one that is rejected;
 * one that would do something else then is no longer accepted.
 */
class KESTREL_API FKestrelPendingTools
{
public:
	struct FTool
	{
		TSharedRef<FKestrelToolPlan> Plan;
		EKestrelAnswer Answer = EKestrelAnswer::None;
	};

	void Add(const TSharedRef<FKestrelToolPlan>& Plan, EKestrelAnswer Answer = EKestrelAnswer::None);
	void Empty() { Tools.Empty(); }
	/** All of them, which wait no more. */
	TArray<FTool> Take();

	int32 Num() const { return Tools.Num(); }
	bool IsEmpty() const { return Tools.IsEmpty(); }
	const TArray<FTool>& GetTools() const { return Tools; }

	/** @param Index  of a tool; one out of range is ignored */
	void Answer(int32 Index, EKestrelAnswer Given);
	/** Whether nothing is left to be asked. */
	bool AreAllAnswered() const;
	/** Whether each that is not rejected will fail. */
	bool WillAllFail() const;
	/** Whether each that is not answered only reads, and nothing about it stands out. */
	bool OnlyRead() const;
	/** Plans those that are not rejected as they are without the others, on what is on the disk now. */
	void PlanAgain(const TSharedRef<FKestrelAssetFinder>& Finder = MakeShared<FKestrelAssetFinder>());

private:
	TArray<FTool> Tools;
};
