#include "Mcp/McpApproval.h"

#include "Agent/Approval/ApprovalRules.h"
#include "Agent/Files/PathReview.h"
#include "Agent/Tools/ToolPlan.h"
#include "Misc/CommandLine.h"
#include "Misc/Parse.h"

namespace McpApproval
{
/** Neither elsewhere, nor in the project's version control, where a file may be a program that runs by itself. */
bool StaysInProject(const FKestrelToolPlan& Plan)
{
	return Plan.FilePath.IsEmpty() || FKestrelPathReview::Of(Plan.FilePath).bIsOfProject;
}

EKestrelMcpDecision DecideAlone(const FKestrelToolPlan& Plan, bool bMayChange)
{
	const bool bReads = Plan.Kind == EKestrelToolKind::Read;
	const bool bRuns = Plan.Kind == EKestrelToolKind::Run; // a script can do anything
	const bool bMay = bReads ? Plan.Cautions.IsEmpty() : bMayChange && !bRuns && StaysInProject(Plan);
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
	const EKestrelRuling Ruling = FKestrelApprovalRules().Judge(Plan.MakeSubject());
	const FString Allowed = GetAllowedByCommandLine();
	if (Ruling == EKestrelRuling::Deny)
	{
		return EKestrelMcpDecision::Deny;
	}
	if (!Allowed.IsEmpty())
	{
		// There is nobody to ask.
		return Ruling == EKestrelRuling::Ask
				   ? EKestrelMcpDecision::Refuse
				   : McpApproval::DecideAlone(Plan, Allowed.Equals(TEXT("change"), ESearchCase::IgnoreCase));
	}
	const bool bNeedsNobody = Plan.Kind == EKestrelToolKind::Read && Plan.Cautions.IsEmpty();
	const bool bMayRun = Ruling == EKestrelRuling::Allow || (bNeedsNobody && Ruling == EKestrelRuling::None);
	return bMayRun ? EKestrelMcpDecision::Run : EKestrelMcpDecision::Ask;
}
