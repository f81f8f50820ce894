#include "Agent/Tools/ToolPlan.h"

#include "Agent/Blueprints/Assets/BlueprintPackage.h"
#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Files/PathReview.h"
#include "Agent/Text/DisplayText.h"
#include "Agent/Work/TextWork.h"
#include "Dom/JsonObject.h"
#include "Misc/PackageName.h"

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

bool AreSame(const TArray<FText>& A, const TArray<FText>& B)
{
	bool bSame = A.Num() == B.Num();
	for (int32 Index = 0; bSame && Index < A.Num(); ++Index)
	{
		bSame = A[Index].EqualTo(B[Index]);
	}
	return bSame;
}

/** A package's file with links resolved; empty when it has none, or they cannot be. */
FString ResolvePackage(const FString& PackageName)
{
	const FString FileName = KestrelBlueprintPackage::GetFileName(PackageName);
	return FileName.IsEmpty() ? FString() : KestrelNativeFile::ResolveLinks(FileName);
}
}

void FKestrelToolPlan::AddCautions(const FKestrelPathReview& Review)
{
	const auto Add = [this](const TArray<FText>& Reasons) {
		for (const FText& Reason : Reasons)
		{
			const bool bIsKnown =
				Cautions.ContainsByPredicate([&Reason](const FText& Known) { return Known.EqualTo(Reason); });
			if (!bIsKnown)
			{
				Cautions.Add(Reason);
			}
		}
	};
	Add(Review.Cautions);
	if (Kind != EKestrelToolKind::Read)
	{
		Add(Review.CautionsOfChange);
	}
}

void FKestrelToolPlan::AddPlace(const FKestrelPathReview& Review, const FString& PackageName)
{
	Places.Add(FKestrelToolPlace::Of(Review, PackageName));
	AddCautions(Review);
}

FKestrelToolSubject FKestrelToolPlan::MakeSubject() const
{
	FKestrelToolSubject Subject;
	Subject.ToolName = Tool ? FString(Tool->WireName) : FString();
	Subject.Kind = Kind;
	Subject.Places = Places;
	Subject.bHasUnknownPlaces = bHasUnknownPlaces;
	Subject.bIsRisky = StandsOut();
	return Subject;
}

bool FKestrelToolPlan::LooksLike(const FKestrelToolPlan& Other) const
{
	if (bCannotBeShown || Other.bCannotBeShown || Change.IsSet() != Other.Change.IsSet())
	{
		return false;
	}
	const bool bSameChange =
		!Change.IsSet() || (Change->Before.Equals(Other.Change->Before) && Change->After.Equals(Other.Change->After));
	return bSameChange && Target.Equals(Other.Target) && RealPath.Equals(Other.RealPath) &&
		   Refusal.Equals(Other.Refusal) && Verb.EqualTo(Other.Verb) && ToolPlan::AreSame(Cautions, Other.Cautions) &&
		   FString::Join(Summary, TEXT("\n")).Equals(FString::Join(Other.Summary, TEXT("\n")));
}

FText FKestrelToolPlan::Describe() const
{
	FString Text = Verb.ToString();
	if (!Target.IsEmpty())
	{
		Text += TEXT(" ") + KestrelDisplayText::Elide(KestrelDisplayText::EscapeLine(Target));
	}
	if (NumReplacements.IsSet())
	{
		Text +=
			TEXT(": ") + FText::Format(LOCTEXT("Replacements", "{0} {0}|plural(one=replacement,other=replacements)"),
							 NumReplacements.GetValue())
							 .ToString();
	}
	return FText::FromString(Text);
}

void FKestrelToolPlan::SetFile(FKestrelProjectView& View, const FString& FullPath)
{
	const bool bReads = Kind == EKestrelToolKind::Read;
	const FKestrelPathReview Review =
		View.Review(FullPath, bReads ? EKestrelReviewFor::Reading : EKestrelReviewFor::Change);
	FilePath = FullPath;
	RealPath = Review.RealPath;
	Target = Review.ShownPath;
	LinkTarget = Review.LinkTarget;
	AddPlace(Review, FString());
}

void FKestrelToolPlan::AddFile(FKestrelProjectView& View, const FString& FullPath)
{
	AddPlace(View.Review(FullPath), FString());
}

void FKestrelToolPlan::SetPackage(FKestrelProjectView& View, const FString& PackageName)
{
	Target = PackageName;
	const FString FileName = KestrelBlueprintPackage::GetFileName(PackageName);
	if (!FileName.IsEmpty())
	{
		const FKestrelPathReview Review = View.Review(FileName);
		FilePath = FileName;
		RealPath = Review.RealPath;
		LinkTarget = Review.LinkTarget;
		AddPlace(Review, PackageName);
	}
}

void FKestrelToolPlan::SetAsset(FKestrelProjectView& View, UClass* (*GetClass)(), const FString& Name)
{
	GetAssetClass = GetClass;
	Asset = View.GetAssets().Find(*GetClass(), Name);
	if (!Asset.IsFound())
	{
		Target = Name;
		const TArray<FString> Closest =
			View.HasTimeForNotes() ? View.GetAssets().FindClosest(*GetClass(), Name) : TArray<FString>();
		Notes.Add(Closest.IsEmpty()
					  ? LOCTEXT("NoAsset", "nothing has this name")
					  : FText::Format(LOCTEXT("ClosestAssets", "nothing has this name; close to it are: {0}"),
							FText::FromString(KestrelDisplayText::EscapeLine(FString::Join(Closest, TEXT(", "))))));
		return;
	}
	SetPackage(View, Asset.GetPackageName());
	if (Kind != EKestrelToolKind::Read)
	{
		Watch = View.GetAssets().Watch(Asset.ObjectPath);
		Watches = View.GetAssets().GetWatches();
	}
}

bool FKestrelToolPlan::SetNewAsset(FKestrelProjectView& View, const FString& PackageName)
{
	const FString Name = FPackageName::GetShortName(PackageName);
	const FString ObjectPath = PackageName + TEXT(".") + Name;
	if (KestrelBlueprintPackage::GetFileName(PackageName).IsEmpty() || !KestrelBlueprintDocument::FitsName(ObjectPath))
	{
		return false;
	}
	SetPackage(View, PackageName);
	Watch = View.GetAssets().Watch(ObjectPath);
	Watches = View.GetAssets().GetWatches();
	if (Refusal.IsEmpty())
	{
		View.GetAssets().Create({ Name, ObjectPath });
	}
	return true;
}

void FKestrelToolPlan::SetUnsavedAssets(FKestrelProjectView& View)
{
	UnsavedPackages.Emplace();
	Watches = View.GetAssets().GetWatches();
	TArray<FString> Targets;
	for (const FString& PackageName : View.GetAssets().ListUnsaved())
	{
		const FString FileName = KestrelBlueprintPackage::GetFileName(PackageName);
		const FKestrelPathReview Review = FileName.IsEmpty() ? FKestrelPathReview() : View.Review(FileName);
		UnsavedPackages->Add(PackageName, Review.RealPath);
		Targets.Add(Review.LinkTarget.IsEmpty() ? PackageName : PackageName + TEXT(" -> ") + Review.LinkTarget);
		AddPlace(Review, PackageName);
	}
	Target = FString::Join(Targets, TEXT(", "));
	if (Targets.Num() > 1)
	{
		// The list may leave out the middle of a long line.
		Notes.Add(FText::Format(LOCTEXT("NumPackages", "{0} packages"), Targets.Num()));
		SetChange(View, FString(), FString::Join(Targets, TEXT("\n")));
	}
}

void FKestrelToolPlan::LeaveForLater()
{
	bIsBeyondLimits = true;
	NoteThatItCannotBeShown();
}

void FKestrelToolPlan::NoteThatItCannotBeShown()
{
	if (!bCannotBeShown)
	{
		bCannotBeShown = true;
		Notes.Add(LOCTEXT("BeyondLimits", "too large to show what changes"));
	}
}

void FKestrelToolPlan::SetChange(FKestrelProjectView& View, FString Before, FString After)
{
	if (!bIsBeyondLimits && !View.TakeRoomFor(After.Len()))
	{
		LeaveForLater();
	}
	if (!bIsBeyondLimits)
	{
		Change = FKestrelChange{ MoveTemp(Before), MoveTemp(After) };
		if (!KestrelDisplayText::IsWorthComparing(Change->Before, Change->After))
		{
			NoteThatItCannotBeShown();
		}
	}
}

void FKestrelToolPlan::Expect(const FKestrelFileState& State)
{
	Expected = State.WithoutText();
	if (State.bIsBeyondLimits)
	{
		LeaveForLater();
	}
}

void FKestrelToolPlan::Refuse(const FString& Result)
{
	Refusal = Result;
	bRuns = false;
}

bool FKestrelToolPlan::StillHolds() const
{
	FKestrelAssetFinder Finder;
	return StillHolds(Finder);
}

bool FKestrelToolPlan::StillHolds(FKestrelAssetFinder& Finder) const
{
	if (!FilePath.IsEmpty() && !KestrelNativeFile::ResolveLinks(FilePath).Equals(RealPath))
	{
		return false;
	}
	if (!AssetsStillHold(Finder))
	{
		return false;
	}
	if (!Expected.IsSet())
	{
		return true;
	}
	FKestrelProjectView Now(EKestrelLookAhead::Limited);
	return Expected->IsStateOf(Now.Look(FilePath));
}

bool FKestrelToolPlan::AssetsStillHold(FKestrelAssetFinder& Finder) const
{
	if (GetAssetClass && !Finder.Find(*GetAssetClass(), Asset.Name).IsSameAssetAs(Asset))
	{
		return false;
	}
	if (UnsavedPackages.IsSet())
	{
		// Fewer are no surprise: a tool before may have saved what it changed.
		for (const FString& Package : FKestrelAssetView().ListUnsaved())
		{
			const FString* ShownPath = UnsavedPackages->Find(Package);
			if (!ShownPath || !ShownPath->Equals(ToolPlan::ResolvePackage(Package)))
			{
				return false;
			}
		}
	}
	return !Watch || Watch->IsUnchanged();
}

/** A plan that is carried out. */
class FKestrelToolPlan::FWork : public IKestrelTextWork
{
public:
	FWork(const FKestrelToolPlan& InPlan, EKestrelStatusLine StatusLine)
		: Plan(InPlan)
	{
		if (Plan.Status && StatusLine == EKestrelStatusLine::Shown)
		{
			FKestrelInterface::Get().AddOwnStatusMessage(Plan.Status);
		}
		if (Plan.bRuns && Plan.Tool->Begin)
		{
			Slices = Plan.Tool->Begin(Plan);
		}
	}

	virtual bool Step(double Deadline) override { return !Slices || Slices->Step(Deadline); }
	virtual float GetProgress() const override { return Slices ? Slices->GetProgress() : -1.0f; }
	virtual bool IsElsewhere() const override { return Slices && Slices->IsElsewhere(); }
	virtual void Finish() override
	{
		if (Slices)
		{
			Slices->Finish();
		}
	}

	virtual FString TakeText() override
	{
		if (!Plan.bRuns)
		{
			return Plan.Refusal;
		}
		return Slices ? Slices->TakeText() : Plan.Run();
	}

private:
	const FKestrelToolPlan& Plan;
	TSharedPtr<IKestrelTextWork> Slices; // null for a tool that works at once
};

TSharedRef<IKestrelTextWork> FKestrelToolPlan::Begin(EKestrelStatusLine StatusLine) const
{
	return MakeShared<FWork>(*this, StatusLine);
}

FString FKestrelToolPlan::Apply(EKestrelStatusLine StatusLine) const
{
	FWork Work(*this, StatusLine);
	Work.Finish();
	return Work.TakeText();
}

FString FKestrelToolPlan::Run() const
{
	// What nobody else has touched until now is expected to be as this tool leaves it.
	const TArray<TSharedRef<FKestrelAssetWatch>> ExpectedAssets = FindExpected();
	const FString Result = RunWhole();
	for (const TSharedRef<FKestrelAssetWatch>& Each : ExpectedAssets)
	{
		Each->LookAgain();
	}
	return Result;
}

TArray<TSharedRef<FKestrelAssetWatch>> FKestrelToolPlan::FindExpected() const
{
	TArray<TSharedRef<FKestrelAssetWatch>> Found;
	if (!Watches)
	{
		return Found;
	}
	for (const auto& Pair : *Watches)
	{
		const bool bMayChange = !Watch || Pair.Value == Watch || Pair.Value->InheritsFrom(*Watch);
		if (bMayChange && Pair.Value->IsUnchanged())
		{
			Found.Add(Pair.Value);
		}
	}
	return Found;
}

FString FKestrelToolPlan::RunWhole() const
{
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
