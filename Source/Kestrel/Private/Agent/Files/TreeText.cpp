#include "Agent/Files/TreeText.h"

#include "Agent/Files/FileUtils.h"
#include "Agent/Files/FolderWalk.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"
#include "Misc/Timespan.h"

namespace TreeText
{
/**
 * A folder that had changed so shortly before it was walked may change again without another time: file systems count
 * in steps of up to two seconds.
 */
const FTimespan StepOfTimes = FTimespan::FromSeconds(2.0);
const TCHAR* const NoClassName = TEXT("\"#\"");

/** The name as a JSON string. */
void AppendName(const FString& Name, FString& OutText)
{
	bool bIsPlain = true;
	for (const TCHAR C : Name)
	{
		bIsPlain &= C >= TEXT(' ') && C < 0x7F && C != TEXT('"') && C != TEXT('\\');
	}
	if (bIsPlain)
	{
		OutText.AppendChar(TEXT('"'));
		OutText += Name;
		OutText.AppendChar(TEXT('"'));
		return;
	}
	const TSharedRef<FJsonObject> Holder = MakeShared<FJsonObject>();
	Holder->SetBoolField(Name, true);
	FString Written = KestrelJson::ToCondensedText(Holder);
	Written.RemoveFromEnd(TEXT(":true}"));
	OutText += Written.RightChop(1);
}

/** A file or folder of the tree, and what stands behind its name. */
struct FField
{
	FString Name;
	FString Value;
};

/**
 * An object takes names that differ in letter case only for the same: the last one stands in the place of the first.
 */
void MergeSameNames(TArray<FField>& InOutFields)
{
	TMap<FString, int32> Places;
	TArray<FField> Merged;
	for (FField& Field : InOutFields)
	{
		const int32* Known = Places.Find(Field.Name);
		if (Known)
		{
			Merged[*Known] = MoveTemp(Field);
		}
		else
		{
			Places.Add(Field.Name, Merged.Num());
			Merged.Add(MoveTemp(Field));
		}
	}
	InOutFields = MoveTemp(Merged);
}

bool HasSameNames(const TArray<FField>& Fields)
{
	TSet<FString> Names;
	Names.Reserve(Fields.Num());
	for (const FField& Field : Fields)
	{
		bool bIsKnown = false;
		Names.Add(Field.Name, &bIsKnown);
		if (bIsKnown)
		{
			return true;
		}
	}
	return false;
}

FString Join(const TArray<FField>& Fields)
{
	FString Text;
	for (const FField& Field : Fields)
	{
		Text.AppendChar(Text.IsEmpty() ? TEXT('{') : TEXT(','));
		AppendName(Field.Name, Text);
		Text.AppendChar(TEXT(':'));
		Text += Field.Value;
	}
	Text.AppendChar(TEXT('}'));
	return Text;
}
}

FKestrelTreeText& FKestrelTreeText::Get()
{
	static FKestrelTreeText Instance;
	return Instance;
}

FString FKestrelTreeText::Make(const FString& Path, const FKestrelTreeFilter& Filter)
{
	if (IsFresh(Path, Filter))
	{
		return Text;
	}
	RootPath = Path;
	RootFilter = Filter;
	ExcludedNames.Empty();
	for (const FString& Entry : Filter.ExcludedDirs)
	{
		ExcludedNames.Add(KestrelTree::CleanExcludedEntry(Entry));
	}
	Stamps.Empty();
	Text.Empty();
	const FDateTime Start = FDateTime::UtcNow();
	if (!IsDirectoryExcluded(KestrelTree::ToComparedPath(Path), Filter.ExcludedDirs))
	{
		FKestrelFolder Folder(Path);
		Text = MakeFolder(Folder);
	}
	Text = Text.IsEmpty() ? FString(TEXT("{}")) : Text;
	bIsValid = !Stamps.IsEmpty() && !Stamps.ContainsByPredicate([&Start](const FStamp& Stamp) {
		return Stamp.Time == FDateTime::MinValue() || Stamp.Time + TreeText::StepOfTimes > Start;
	});
	return Text;
}

bool FKestrelTreeText::IsFresh(const FString& Path, const FKestrelTreeFilter& Filter) const
{
	if (!bIsValid || !Path.Equals(RootPath) || !(Filter == RootFilter))
	{
		return false;
	}
	IPlatformFile& PlatformFile = FPlatformFileManager::Get().GetPlatformFile();
	return !Stamps.ContainsByPredicate(
		[&PlatformFile](const FStamp& Stamp) { return PlatformFile.GetTimeStamp(*Stamp.Path) != Stamp.Time; });
}

FString FKestrelTreeText::MakeFolder(FKestrelFolder& Folder)
{
	const FDateTime Time = FPlatformFileManager::Get().GetPlatformFile().GetTimeStamp(*Folder.GetPath());
	FKestrelFolder::FListing Listing = Folder.List();
	Stamps.Add({ Folder.GetPath(), Time });
	TArray<TreeText::FField> Fields;
	Fields.Reserve(Listing.Files.Num() + Listing.Folders.Num());
	for (FString& File : Listing.Files)
	{
		if (RootFilter.SupportedExtensions.Contains(FPaths::GetExtension(File)))
		{
			Fields.Add({ MoveTemp(File), TreeText::NoClassName });
		}
	}
	for (FString& Name : Listing.Folders)
	{
		int32 Backslash = INDEX_NONE;
		const bool bIsPath = Name.FindChar(TEXT('\\'), Backslash); // to the exclusion, not to the system
		if (bIsPath ? IsDirectoryExcluded(Name, RootFilter.ExcludedDirs) : ExcludedNames.Contains(Name))
		{
			continue;
		}
		FKestrelFolder Sub(Folder, Name);
		FString SubTree = MakeFolder(Sub);
		if (!SubTree.IsEmpty())
		{
			Fields.Add({ MoveTemp(Name), MoveTemp(SubTree) });
		}
	}
	if (TreeText::HasSameNames(Fields))
	{
		TreeText::MergeSameNames(Fields);
	}
	return Fields.IsEmpty() ? FString() : TreeText::Join(Fields);
}

FString KestrelTree::CleanExcludedEntry(const FString& Entry)
{
	FString Clean = Entry.Replace(TEXT("\\"), TEXT("/")).TrimStartAndEnd();
	Clean.RemoveFromStart(TEXT("/"));
	Clean.RemoveFromEnd(TEXT("/"));
	return Clean;
}

FString KestrelTree::ToComparedPath(const FString& Path)
{
	FString Full = FPaths::ConvertRelativePathToFull(Path);
	FPaths::NormalizeDirectoryName(Full);
	FString ProjectDir = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	FPaths::NormalizeDirectoryName(ProjectDir);
	return FPaths::IsUnderDirectory(Full, ProjectDir) ? Full.RightChop(ProjectDir.Len()) : Path;
}
