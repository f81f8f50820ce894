#include "Agent/Tools/ToolPlan.h"

#include "Agent/FileUtils.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Tools/PathReview.h"
#include "Dom/JsonObject.h"
#include "Widget/KestrelInterface.h"

#define LOCTEXT_NAMESPACE "KestrelToolPlan"

namespace ToolPlan
{
/** A block without an id or name is handled like one whose id or name is empty. */
FString GetString(const FJsonObject& Block, const TCHAR* Field)
{
	FString Text;
	Block.TryGetStringField(Field, Text);
	return Text;
}
}

void FKestrelToolPlan::SetFile(const FString& FullPath)
{
	const FKestrelPathReview Review = FKestrelPathReview::Of(FullPath);
	FilePath = FullPath;
	RealPath = Review.RealPath;
	Target = Review.ShownPath;
	Cautions.Append(Review.Cautions);
	if (Kind != EKestrelToolKind::Read)
	{
		Cautions.Append(Review.CautionsOfChange);
	}
}

void FKestrelToolPlan::Expect(const FKestrelFileState& State)
{
	Expected = State;
	bIsBeyondLimits = State.bIsBeyondLimits;
	if (bIsBeyondLimits)
	{
		Notes.Add(LOCTEXT("BeyondLimits", "too large to show what changes"));
	}
}

void FKestrelToolPlan::Refuse(const FString& Result)
{
	Refusal = Result;
	bRuns = false;
}

bool FKestrelToolPlan::StillHolds() const
{
	if (!FilePath.IsEmpty() && !KestrelNativeFile::ResolveLinks(FilePath).Equals(RealPath))
	{
		return false;
	}
	FKestrelProjectView Now(EKestrelLookAhead::Limited);
	return !Expected.IsSet() || Now.Look(FilePath).IsSameAs(Expected.GetValue());
}

FString FKestrelToolPlan::Apply() const
{
	if (Status)
	{
		FKestrelInterface::Get().AddOwnStatusMessage(Status);
	}
	if (!bRuns)
	{
		return Refusal;
	}
	if (!bIsBeyondLimits)
	{
		return Tool->Apply(*this);
	}
	FKestrelToolPlanner Planner(EKestrelLookAhead::Unlimited);
	const TSharedRef<FKestrelToolPlan> Whole = Planner.PlanAgain(*this);
	return Whole->bRuns ? Tool->Apply(*Whole) : Whole->Refusal;
}

void FKestrelToolPlan::Make(FKestrelProjectView& View)
{
	Kind = Tool->Kind;
	Verb = Tool->Verb;
	if (!bInputIsRead)
	{
		return;
	}
	Status = Tool->Status;
	if (Tool->Plan)
	{
		Tool->Plan(View, *this);
	}
}

TSharedRef<FKestrelToolPlan> FKestrelToolPlanner::Plan(const FJsonObject& ToolUse)
{
	const TSharedPtr<FJsonObject>* Input = nullptr;
	const bool bHasInput = ToolUse.TryGetObjectField(TEXT("input"), Input);
	return Plan(ToolPlan::GetString(ToolUse, TEXT("name")), ToolPlan::GetString(ToolUse, TEXT("id")),
		bHasInput ? *Input : nullptr);
}

TSharedRef<FKestrelToolPlan> FKestrelToolPlanner::Plan(
	const FString& Name, const FString& Id, const TSharedPtr<FJsonObject>& Input)
{
	const TSharedRef<FKestrelToolPlan> Plan = MakeShared<FKestrelToolPlan>();
	Plan->ToolUseId = Id;
	Plan->Tool = KestrelTools::Find(Name);
	if (!Plan->Tool)
	{
		Plan->Verb = LOCTEXT("UnknownTool", "Use the tool");
		Plan->Target = Name;
		Plan->Refuse(Input.IsValid() ? FString::Printf(TEXT("Error: Unknown tool '%s'"), *Name)
									 : FString(TEXT("Error: Invalid input")));
		return Plan;
	}
	const FString Error = Input.IsValid() ? Plan->Input.Read(*Plan->Tool, *Input) : TEXT("Error: Invalid input");
	Plan->bInputIsRead = Error.IsEmpty();
	if (!Plan->bInputIsRead)
	{
		Plan->Refuse(Error);
	}
	Plan->Make(View);
	return Plan;
}

TSharedRef<FKestrelToolPlan> FKestrelToolPlanner::PlanAgain(const FKestrelToolPlan& Plan)
{
	if (!Plan.bInputIsRead)
	{
		return MakeShared<FKestrelToolPlan>(Plan);
	}
	const TSharedRef<FKestrelToolPlan> Again = MakeShared<FKestrelToolPlan>();
	Again->Tool = Plan.Tool;
	Again->ToolUseId = Plan.ToolUseId;
	Again->Input = Plan.Input;
	Again->bInputIsRead = true;
	Again->Make(View);
	return Again;
}

#undef LOCTEXT_NAMESPACE
