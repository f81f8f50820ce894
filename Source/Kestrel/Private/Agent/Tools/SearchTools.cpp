#include "Agent/Project/ProjectSearch.h"
#include "Agent/Tools/ToolPlan.h"

#define LOCTEXT_NAMESPACE "KestrelSearchTools"

namespace SearchTools
{
const FKestrelToolField Reference = { TEXT("reference_string"), EKestrelFieldType::Text,
	TEXT("The text to find; case-insensitive.") };

void PlanSearch(FKestrelProjectView&, FKestrelToolPlan& Plan)
{
	Plan.Target = Plan.Input.Get(Reference);
}

TSharedRef<IKestrelTextWork> BeginSearch(const FKestrelToolPlan& Plan)
{
	return MakeShared<FKestrelProjectSearch>(Plan.Input.Get(Reference));
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
