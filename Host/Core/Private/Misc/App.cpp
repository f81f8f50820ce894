#include "Misc/App.h"

#include "Misc/CommandLine.h"
#include "Misc/CoreDelegates.h"
#include "Misc/EngineVersion.h"
#include "Misc/EngineVersionComparison.h"
#include "Misc/Parse.h"
#include "Misc/Paths.h"

FString FApp::GetBranchName()
{
	return FEngineVersion::Current().GetBranch();
}

const TCHAR* FApp::GetProjectName()
{
	static FString Name;
	Name = FPaths::GetBaseFilename(FPaths::GetProjectFilePath());
	return *Name;
}

bool FApp::IsUnattended()
{
	return FParse::Param(FCommandLine::Get(), TEXT("unattended"));
}

const FEngineVersion& FEngineVersion::Current()
{
	// The version that the host's interfaces are those of.
	static const FEngineVersion Version(
		ENGINE_MAJOR_VERSION, ENGINE_MINOR_VERSION, ENGINE_PATCH_VERSION, 35576357, TEXT("++UE5+Release-5.4"));
	return Version;
}

FString FEngineVersion::ToString(EVersionComponent LastComponent) const
{
	FString Text = FString::Printf(TEXT("%d"), Major);
	if (LastComponent >= EVersionComponent::Minor)
	{
		Text.Appendf(TEXT(".%d"), Minor);
	}
	if (LastComponent >= EVersionComponent::Patch)
	{
		Text.Appendf(TEXT(".%d"), Patch);
	}
	if (LastComponent >= EVersionComponent::Changelist)
	{
		Text.Appendf(TEXT("-%u"), Changelist);
	}
	if (LastComponent >= EVersionComponent::Branch && !Branch.IsEmpty())
	{
		Text.Appendf(TEXT("+%s"), *Branch);
	}
	return Text;
}

FSimpleMulticastDelegate& FCoreDelegates::GetOnPostEngineInit()
{
	static FSimpleMulticastDelegate Delegate;
	return Delegate;
}

FSimpleMulticastDelegate& FCoreDelegates::GetOnEnginePreExit()
{
	static FSimpleMulticastDelegate Delegate;
	return Delegate;
}
