#include "Agent/Files/TreeText.h"

#include "Agent/Files/FileUtils.h"
#include "Agent/Files/FolderWalk.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Work/BackgroundWork.h"
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

/** Writes a tree while its folders are walked. */
class FWriter
{
public:
	/** @param InOutTree  gets the stamps */
	FWriter(FKestrelTreeText& InOutTree, FKestrelTaskControl& InControl)
		: Tree(InOutTree)
		, Control(InControl)
	{
		for (const FString& Entry : Tree.Filter.ExcludedDirs)
		{
			ExcludedNames.Add(KestrelTree::CleanExcludedEntry(Entry));
		}
	}

	/** @return the object of the whole tree; empty when there is nothing in it */
	FString Write()
	{
		FKestrelFolder Folder(Tree.Path);
		return WriteFolder(Folder);
	}

private:
	FString WriteFolder(FKestrelFolder& Folder)
	{
		if (Control.IsCanceled())
		{
			return FString();
		}
		const FDateTime Time = FPlatformFileManager::Get().GetPlatformFile().GetTimeStamp(*Folder.GetPath());
		FKestrelFolder::FListing Listing = Folder.List();
		Tree.Stamps.Add({ Folder.GetPath(), Time });
		Control.NumDone.Increment();
		TArray<FField> Fields;
		Fields.Reserve(Listing.Files.Num() + Listing.Folders.Num());
		for (FString& File : Listing.Files)
		{
			if (Tree.Filter.SupportedExtensions.Contains(FPaths::GetExtension(File)))
			{
				Fields.Add({ MoveTemp(File), NoClassName });
			}
		}
		for (FString& Name : Listing.Folders)
		{
			AddFolder(Folder, Name, Fields);
		}
		if (HasSameNames(Fields))
		{
			MergeSameNames(Fields);
		}
		return Fields.IsEmpty() ? FString() : Join(Fields);
	}

	void AddFolder(FKestrelFolder& Above, FString& Name, TArray<FField>& OutFields)
	{
		if (IsExcluded(Name))
		{
			return;
		}
		FKestrelFolder Folder(Above, Name);
		FString Text = WriteFolder(Folder);
		if (!Text.IsEmpty())
		{
			OutFields.Add({ MoveTemp(Name), MoveTemp(Text) });
		}
	}

	bool IsExcluded(const FString& Name) const
	{
		int32 Backslash = INDEX_NONE;
		const bool bIsPath = Name.FindChar(TEXT('\\'), Backslash); // to the exclusion, not to the system
		return bIsPath ? IsDirectoryExcluded(Name, Tree.Filter.ExcludedDirs) : ExcludedNames.Contains(Name);
	}

	FKestrelTreeText& Tree;
	FKestrelTaskControl& Control;
	TSet<FString> ExcludedNames; // as they are compared
};
}

FKestrelKeptTree& FKestrelKeptTree::Get()
{
	static FKestrelKeptTree Instance;
	return Instance;
}

bool FKestrelTreeText::IsFresh(const FString& WantedPath, const FKestrelTreeFilter& WantedFilter) const
{
	if (!bCanTellChanges || !WantedPath.Equals(Path) || !(WantedFilter == Filter))
	{
		return false;
	}
	IPlatformFile& PlatformFile = FPlatformFileManager::Get().GetPlatformFile();
	return !Stamps.ContainsByPredicate(
		[&PlatformFile](const FStamp& Stamp) { return PlatformFile.GetTimeStamp(*Stamp.Path) != Stamp.Time; });
}

TSharedRef<const FKestrelTreeText> KestrelTree::MakeText(const TSharedPtr<const FKestrelTreeText>& Kept,
	const FString& Path, const FKestrelTreeFilter& Filter, FKestrelTaskControl& Control)
{
	if (Kept && Kept->IsFresh(Path, Filter))
	{
		return Kept.ToSharedRef();
	}
	const TSharedRef<FKestrelTreeText> Tree = MakeShared<FKestrelTreeText>();
	Tree->Path = Path;
	Tree->Filter = Filter;
	const FDateTime Start = FDateTime::UtcNow();
	if (!IsDirectoryExcluded(ToComparedPath(Path), Filter.ExcludedDirs))
	{
		Tree->Text = TreeText::FWriter(*Tree, Control).Write();
	}
	Tree->Text = Tree->Text.IsEmpty() ? FString(TEXT("{}")) : Tree->Text;
	const auto MayHideChange = [&Start](const FKestrelTreeText::FStamp& Stamp) {
		return Stamp.Time == FDateTime::MinValue() || Stamp.Time + TreeText::StepOfTimes > Start;
	};
	Tree->bCanTellChanges = !Tree->Stamps.IsEmpty() && !Tree->Stamps.ContainsByPredicate(MayHideChange);
	return Tree;
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
