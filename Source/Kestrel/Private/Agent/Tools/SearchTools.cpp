#include "Agent/Project/ProjectSearch.h"
#include "Agent/Tools/ToolPlan.h"
#include "Agent/Tools/ToolWork.h"

#define LOCTEXT_NAMESPACE "KestrelSearchTools"

namespace SearchTools
{
const FKestrelToolField Reference = { TEXT("reference_string"), EKestrelFieldType::Text,
	TEXT("The text to find; case-insensitive.") };

void PlanSearch(FKestrelProjectView&, FKestrelToolPlan& Plan)
{
	Plan.Target = Plan.Input.Get(Reference);
}

/** Searches in slices. */
class FSearchWork : public FKestrelToolWork
{
public:
	explicit FSearchWork(const FKestrelToolPlan& Plan)
		: Search(Plan.Input.Get(Reference))
	{
	}

	virtual bool Step(double Deadline) override { return Search.Step(Deadline); }
	virtual float GetProgress() const override { return Search.GetProgress(); }
	virtual bool IsElsewhere() const override { return Search.IsElsewhere(); }
	virtual void Finish() override { Search.Finish(); }
	virtual FString GetResult() override { return Search.MakeText(); }

private:
	FKestrelProjectSearch Search;
};

TSharedRef<FKestrelToolWork> BeginSearch(const FKestrelToolPlan& Plan)
{
	return MakeShared<FSearchWork>(Plan);
}
}

void KestrelTools::AddSearchTools(TArray<FKestrelTool>& OutTools)
{
	using namespace SearchTools;
	OutTools.Add({ KestrelToolNames::FindReference, EKestrelToolKind::Read, LOCTEXT("Search", "Search"),
		TEXT("Lists the C++ files and the Blueprint members of the project in which a text occurs."), { Reference },
		MissingRequiredFields, TEXT("Finding Reference In All Files ..."), EKestrelNameInPanel::Hidden, PlanSearch,
		nullptr, EKestrelAnswers::AtOnce, BeginSearch });
}

#undef LOCTEXT_NAMESPACE
