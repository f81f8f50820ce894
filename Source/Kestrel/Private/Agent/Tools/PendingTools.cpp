#include "Agent/Tools/PendingTools.h"

void FKestrelPendingTools::Add(const TSharedRef<FKestrelToolPlan>& Plan, EKestrelAnswer Answer)
{
	Tools.Add({ Plan, Answer });
}

TArray<FKestrelPendingTools::FTool> FKestrelPendingTools::Take()
{
	TArray<FTool> Taken = MoveTemp(Tools);
	Tools.Empty();
	return Taken;
}

void FKestrelPendingTools::Answer(int32 Index, EKestrelAnswer Given)
{
	if (!Tools.IsValidIndex(Index) || Tools[Index].Answer == Given)
	{
		return;
	}
	const bool bChangesWhatRuns =
		(Tools[Index].Answer == EKestrelAnswer::Rejected) != (Given == EKestrelAnswer::Rejected);
	Tools[Index].Answer = Given;
	if (bChangesWhatRuns && !Tools[Index].Plan->LeavesAllAsItIs())
	{
		PlanAgain();
	}
}

void FKestrelPendingTools::PlanAgain(const TSharedRef<FKestrelAssetFinder>& Finder)
{
	FKestrelToolPlanner Planner(EKestrelLookAhead::Limited, Finder);
	for (FTool& Each : Tools)
	{
		if (Each.Answer == EKestrelAnswer::Rejected)
		{
			continue;
		}
		const TSharedRef<FKestrelToolPlan> Again = Planner.PlanAgain(*Each.Plan);
		Each.Answer = Again->LooksLike(*Each.Plan) ? Each.Answer : EKestrelAnswer::None;
		Each.Plan = Again;
	}
}

bool FKestrelPendingTools::AreAllAnswered() const
{
	return !Tools.ContainsByPredicate([](const FTool& Each) { return Each.Answer == EKestrelAnswer::None; });
}

bool FKestrelPendingTools::WillAllFail() const
{
	const auto WillWork = [](const FTool& Each) {
		return Each.Answer != EKestrelAnswer::Rejected && Each.Plan->Refusal.IsEmpty();
	};
	return !Tools.IsEmpty() && !Tools.ContainsByPredicate(WillWork);
}

bool FKestrelPendingTools::OnlyRead() const
{
	const auto DoesMore = [](const FTool& Each) {
		return Each.Answer == EKestrelAnswer::None &&
			   (Each.Plan->Kind != EKestrelToolKind::Read || Each.Plan->StandsOut());
	};
	return !AreAllAnswered() && !Tools.ContainsByPredicate(DoesMore);
}
