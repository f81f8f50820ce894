#pragma once

#include "Containers/UnrealString.h"
#include "Misc/EngineVersionBase.h"

/** Major.Minor.Patch-Changelist+Branch */
class FEngineVersion
{
public:
	FEngineVersion() = default;
	FEngineVersion(uint16 InMajor, uint16 InMinor, uint16 InPatch, uint32 InChangelist, const FString& InBranch)
		: Major(InMajor)
		, Minor(InMinor)
		, Patch(InPatch)
		, Changelist(InChangelist)
		, Branch(InBranch)
	{
	}

	static const FEngineVersion& Current();

	uint16 GetMajor() const { return Major; }
	uint16 GetMinor() const { return Minor; }
	uint16 GetPatch() const { return Patch; }
	uint32 GetChangelist() const { return Changelist; }
	FString GetBranch() const { return Branch; }
	/** Up to the named component. */
	FString ToString(EVersionComponent LastComponent = EVersionComponent::Branch) const;

private:
	uint16 Major = 0;
	uint16 Minor = 0;
	uint16 Patch = 0;
	uint32 Changelist = 0;
	FString Branch;
};
