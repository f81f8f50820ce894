#include "Packages/LoadingPackage.h"

#include "Misc/PackageName.h"
#include "UObject/CopyPackage.h"

FLoadingPackage::FLoadingPackage(
	UPackage* InPackage, const FString& InSavedName, const FString& FileName, FString&& Text)
	: Package(InPackage)
	, bWasDirty(InPackage->IsDirty())
	, Import(MoveTemp(Text), InPackage, FileName, 2)
	, SavedName(InSavedName)
{
}

bool FLoadingPackage::GetPathInside(const FString& Path, FString& OutInside) const
{
	for (const FString& Name : { Package->GetName(), SavedName })
	{
		if (Path.StartsWith(Name + TEXT(".")))
		{
			OutInside = Rename(Path.RightChop(Name.Len() + 1));
			return true;
		}
	}
	return false;
}

FString FLoadingPackage::Rename(const FString& Inside) const
{
	if (!bCopy)
	{
		return Inside;
	}
	int32 End = 0;
	while (End < Inside.Len() && Inside[End] != u':' && Inside[End] != u'.')
	{
		++End;
	}
	return GetNameInCopy(Inside.Left(End), FPackageName::GetShortName(SavedName),
			   FPackageName::GetShortName(Package->GetName())) +
		   Inside.RightChop(End);
}

void FLoadingPackage::BecomeCopy()
{
	bCopy = true;
	Import.RenameRecords([this](FObjectRecord& Record) {
		FString Inside;
		if (GetPathInside(Record.ClassPath, Inside))
		{
			Record.ClassPath = Package->GetName() + TEXT(".") + Inside;
		}
		Record.Name = Record.Parent == INDEX_NONE ? Rename(Record.Name) : Record.Name;
	});
}

void FLoadingPackage::AddNeed(FLoadingPackage* Other)
{
	bool bKnown = Other == this;
	if (!bKnown)
	{
		KnownNeeds.Add(Other, &bKnown);
	}
	if (!bKnown)
	{
		Needs.Add(Other);
	}
}
