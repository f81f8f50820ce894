#include "Agent/Approval/ApprovalRules.h"

#include "Agent/Approval/ProjectDefaults.h"
#include "Agent/Files/PathReview.h"
#include "KestrelProjectSettings.h"
#include "KestrelSettings.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"

namespace ApprovalRules
{
const TCHAR* const ReadingTools[] = { KestrelToolNames::ReadFile, KestrelToolNames::ReadBlueprint,
	KestrelToolNames::ReadBehaviorTree, KestrelToolNames::FindReference };

bool IsBelowProject(const FString& Path)
{
	return !Path.IsEmpty() && FPaths::IsRelative(Path);
}

/** @param ShownPath  below the project directory, or in full */
FString ToFullPath(const FString& ShownPath)
{
	static const FString ProjectDir = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	return IsBelowProject(ShownPath) ? FPaths::ConvertRelativePathToFull(ProjectDir / ShownPath) : ShownPath;
}

/** @param ShownPath  below the project directory, or in full */
void AddPackageName(const FString& ShownPath, TArray<FString>& OutNames)
{
	const FString FullPath = ToFullPath(ShownPath);
	FString Name;
	if (!FullPath.IsEmpty() && FPackageName::TryConvertFilenameToLongPackageName(FullPath, Name))
	{
		OutNames.Add(Name);
	}
}
}

FKestrelToolPlace FKestrelToolPlace::Of(const FKestrelPathReview& Review, const FString& PackageName)
{
	FKestrelToolPlace Place{ Review.ShownPath, Review.RealShownPath, PackageName };
	ApprovalRules::AddPackageName(Review.ShownPath, Place.FilePackageNames);
	if (!Review.RealShownPath.Equals(Review.ShownPath))
	{
		ApprovalRules::AddPackageName(Review.RealShownPath, Place.FilePackageNames);
	}
	return Place;
}

FKestrelApprovalRules::FKestrelApprovalRules()
{
	const TArray<FKestrelApprovalRule>& UserRules = GetDefault<UKestrelSettings>()->ApprovalRules;
	const bool bAllowRisky = UserRules.ContainsByPredicate(
		[](const FKestrelApprovalRule& Rule) { return Rule.Decision == EKestrelApproval::AllowRisky; });
	// Rules in there are the project's, whatever list they are in.
	const bool bAreOfUser = !bAllowRisky || !KestrelProjectDefaults::SetUserSetting(TEXT("ApprovalRules"));
	Add(UserRules, bAreOfUser ? EKestrelApproval::AllowRisky : EKestrelApproval::Allow);
	Add(GetDefault<UKestrelProjectSettings>()->ApprovalRules, EKestrelApproval::Allow);
}

FKestrelApprovalRules::FKestrelApprovalRules(
	const TArray<FKestrelApprovalRule>& UserRules, const TArray<FKestrelApprovalRule>& ProjectRules)
{
	Add(UserRules, EKestrelApproval::AllowRisky);
	// Whoever made the project may not be whoever opens it.
	Add(ProjectRules, EKestrelApproval::Allow);
}

void FKestrelApprovalRules::Add(const TArray<FKestrelApprovalRule>& Given, EKestrelApproval Most)
{
	for (const FKestrelApprovalRule& Each : Given)
	{
		const bool bIsTooMuch = Each.Decision == EKestrelApproval::AllowRisky && Most == EKestrelApproval::Allow;
		bMayRestrict |= Each.Decision == EKestrelApproval::Ask || Each.Decision == EKestrelApproval::Deny;
		Rules.Add({ bIsTooMuch ? Most : Each.Decision, Each.Tool.TrimStartAndEnd(), FKestrelPathPattern(Each.Path) });
	}
}

EKestrelRuling FKestrelApprovalRules::Judge(const FKestrelToolSubject& Subject) const
{
	EKestrelRuling Strongest = EKestrelRuling::None;
	for (const FRule& Rule : Rules)
	{
		Strongest = FMath::Max(Strongest, Rule.Judge(Subject));
	}
	return Strongest;
}

bool FKestrelApprovalRules::RestrictReading(const FKestrelToolPlace& Place) const
{
	if (!bMayRestrict)
	{
		return false;
	}
	FKestrelToolSubject Subject;
	Subject.Kind = EKestrelToolKind::Read;
	Subject.Places.Add(Place);
	for (const TCHAR* Name : ApprovalRules::ReadingTools)
	{
		Subject.ToolName = Name;
		if (Judge(Subject) > EKestrelRuling::Allow)
		{
			return true;
		}
	}
	return false;
}

bool FKestrelApprovalRules::AllowAnything() const
{
	return Rules.ContainsByPredicate([](const FRule& Rule) {
		return Rule.Decision == EKestrelApproval::Allow || Rule.Decision == EKestrelApproval::AllowRisky;
	});
}

bool FKestrelApprovalRules::FRule::IsAbout(const FKestrelToolSubject& Subject) const
{
	return Tool.IsEmpty() || FKestrelPathPattern::MatchesName(KestrelToolNames::GetKindName(Subject.Kind), Tool) ||
		   FKestrelPathPattern::MatchesName(Subject.ToolName, Tool);
}

bool FKestrelApprovalRules::FRule::Covers(const FKestrelToolPlace& Place) const
{
	return Path.Matches(Place.GivenPath) || Path.Matches(Place.RealPath) || Path.Matches(Place.PackageName) ||
		   (Path.IsAbsolute() && (Path.Matches(ApprovalRules::ToFullPath(Place.GivenPath)) ||
									 Path.Matches(ApprovalRules::ToFullPath(Place.RealPath)))) ||
		   Place.FilePackageNames.ContainsByPredicate([this](const FString& Name) { return Path.Matches(Name); });
}

bool FKestrelApprovalRules::FRule::CoversWhole(const FKestrelToolPlace& Place) const
{
	if (!ApprovalRules::IsBelowProject(Place.RealPath))
	{
		return !Place.RealPath.IsEmpty() && Path.IsAbsolute() && Path.Matches(Place.RealPath);
	}
	const bool bIsWhereItSeems = Place.GivenPath.Equals(Place.RealPath);
	return Path.Matches(Place.RealPath) || (bIsWhereItSeems && Path.Matches(Place.PackageName));
}

EKestrelRuling FKestrelApprovalRules::FRule::Judge(const FKestrelToolSubject& Subject) const
{
	if (!IsAbout(Subject))
	{
		return EKestrelRuling::None;
	}
	const auto Covered = [this](const FKestrelToolPlace& Place) { return Covers(Place); };
	const auto NotWhollyCovered = [this](const FKestrelToolPlace& Place) { return !CoversWhole(Place); };
	const bool bIsAnyCovered =
		Subject.Places.IsEmpty() ? Path.MatchesAll() : Subject.Places.ContainsByPredicate(Covered);
	const bool bMustMatchAll = Subject.Places.IsEmpty() || Subject.bHasUnknownPlaces;
	const bool bAreAllCovered =
		(!bMustMatchAll || Path.MatchesAll()) && !Subject.Places.ContainsByPredicate(NotWhollyCovered);
	// What is not known may be what the rule is about.
	const EKestrelRuling Otherwise = Subject.bHasUnknownPlaces ? EKestrelRuling::Ask : EKestrelRuling::None;
	switch (Decision)
	{
	case EKestrelApproval::Deny:
		return bIsAnyCovered ? EKestrelRuling::Deny : Otherwise;
	case EKestrelApproval::Ask:
		return bIsAnyCovered ? EKestrelRuling::Ask : Otherwise;
	case EKestrelApproval::AllowRisky:
		return bAreAllCovered ? EKestrelRuling::Allow : EKestrelRuling::None;
	case EKestrelApproval::Allow:
		return bAreAllCovered && !Subject.bIsRisky ? EKestrelRuling::Allow : EKestrelRuling::None;
	}
	return EKestrelRuling::None;
}
