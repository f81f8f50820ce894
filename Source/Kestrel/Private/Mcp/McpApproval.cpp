#include "Mcp/McpApproval.h"

#include "Agent/Files/NativeFile.h"
#include "Agent/Tools/ToolPlan.h"
#include "Misc/CommandLine.h"
#include "Misc/Parse.h"
#include "Misc/Paths.h"

namespace McpApproval
{
bool StaysInProject(const FKestrelToolPlan& Plan)
{
	const FString ProjectDir =
		KestrelNativeFile::ResolveLinks(FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()));
	return Plan.FilePath.IsEmpty() || (!Plan.RealPath.IsEmpty() && FPaths::IsUnderDirectory(Plan.RealPath, ProjectDir));
}

EKestrelMcpDecision DecideAlone(const FKestrelToolPlan& Plan, bool bMayChange)
{
	const bool bReads = Plan.Kind == EKestrelToolKind::Read;
	const bool bRuns = Plan.Kind == EKestrelToolKind::Run; // a script can do anything
	const bool bMay = StaysInProject(Plan) && (bReads ? Plan.Cautions.IsEmpty() : bMayChange && !bRuns);
	return bMay ? EKestrelMcpDecision::Run : EKestrelMcpDecision::Refuse;
}
}

FString KestrelMcpApproval::GetAllowedByCommandLine()
{
	FString Allowed;
	FParse::Value(FCommandLine::Get(), TEXT("KestrelMcp="), Allowed);
	return Allowed;
}

EKestrelMcpDecision KestrelMcpApproval::Decide(const FKestrelToolPlan& Plan)
{
	const FString Allowed = GetAllowedByCommandLine();
	if (!Allowed.IsEmpty())
	{
		return McpApproval::DecideAlone(Plan, Allowed.Equals(TEXT("change"), ESearchCase::IgnoreCase));
	}
	const bool bNeedsNobody = Plan.Kind == EKestrelToolKind::Read && Plan.Cautions.IsEmpty();
	return bNeedsNobody ? EKestrelMcpDecision::Run : EKestrelMcpDecision::Ask;
}
