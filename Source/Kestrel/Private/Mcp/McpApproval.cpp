#include "Mcp/McpApproval.h"

#include "Agent/Approval/ApprovalRules.h"
#include "Agent/Files/PathReview.h"
#include "Agent/Tools/ToolPlan.h"
#include "Mcp/McpHistoryTools.h"
#include "Misc/CommandLine.h"
#include "Misc/Parse.h"

namespace McpApproval
{
/** Neither elsewhere, nor in the project's version control, where a file may be a program that runs by itself. */
bool StaysInProject(const FKestrelToolPlan& Plan)
{
	return Plan.FilePath.IsEmpty() || FKestrelPathReview::Of(Plan.FilePath).bIsOfProject;
}

/** What the rules say; undo and redo also compile what they leave. */
EKestrelRuling Judge(const FKestrelToolPlan& Plan)
{
	const FKestrelApprovalRules Rules;
	const EKestrelRuling Ruling = Rules.Judge(Plan.MakeSubject());
	if (!Plan.Tool || !KestrelMcpHistoryTools::IsOne(*Plan.Tool) || Ruling > EKestrelRuling::Allow)
	{
		return Ruling;
	}
	FKestrelToolSubject Compile;
	Compile.ToolName = KestrelToolNames::Compile;
	Compile.Kind = EKestrelToolKind::Compile;
	const EKestrelRuling OfCompile = Rules.Judge(Compile);
	return OfCompile > EKestrelRuling::Allow ? EKestrelRuling::Ask : FMath::Min(Ruling, OfCompile);
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
	const EKestrelRuling Ruling = McpApproval::Judge(Plan);
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
