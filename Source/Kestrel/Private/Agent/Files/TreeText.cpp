#include "Agent/Files/TreeText.h"

#include "Agent/Files/FileUtils.h"
#include "Agent/Files/FolderWalk.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Work/BackgroundWork.h"
#include "Async/ParallelFor.h"
#include "Dom/JsonObject.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "HAL/ThreadSafeCounter.h"
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
		return WriteFolder(Folder, 0, Tree.Stamps);
	}

private:
	/** Folders that lie deeper have so little in them that it is not worth sharing out. */
	static constexpr int32 SharedDepth = 3;

	FString WriteFolder(FKestrelFolder& Folder, int32 Depth, TArray<FKestrelTreeText::FStamp>& OutStamps)
	{
		if (Control.IsCanceled())
		{
			return FString();
		}
		const FDateTime Time = FPlatformFileManager::Get().GetPlatformFile().GetTimeStamp(*Folder.GetPath());
		FKestrelFolder::FListing Listing = Folder.List();
		OutStamps.Add({ Folder.GetPath(), Time });
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
		if (KestrelTree::MayHaveFolders(Depth))
		{
			Listing.Folders.RemoveAll([this](const FString& Name) { return IsExcluded(Name); });
			AddFolders(Folder, Listing.Folders, Depth, Fields, OutStamps);
		}
		if (HasSameNames(Fields))
		{
			MergeSameNames(Fields);
		}
		return Fields.IsEmpty() ? FString() : Join(Fields);
	}

	void AddFolders(FKestrelFolder& Above, TArray<FString>& Names, int32 Depth, TArray<FField>& OutFields,
		TArray<FKestrelTreeText::FStamp>& OutStamps)
	{
		const bool bShared = Depth < SharedDepth && Names.Num() > 1;
		TArray<FString> Texts;
		Texts.SetNum(Names.Num());
		TArray<TArray<FKestrelTreeText::FStamp>> Stamps;
		Stamps.SetNum(bShared ? Names.Num() : 0);
		const auto Write = [&](int32 Index) {
			FKestrelFolder Folder(Above, Names[Index]);
			Texts[Index] = WriteFolder(Folder, Depth + 1, bShared ? Stamps[Index] : OutStamps);
		};
		ParallelFor(Names.Num(), Write, bShared ? EParallelForFlags::Unbalanced : EParallelForFlags::ForceSingleThread);
		for (TArray<FKestrelTreeText::FStamp>& Each : Stamps)
		{
			OutStamps += MoveTemp(Each);
		}
		for (int32 Index = 0; Index < Names.Num(); ++Index)
		{
			if (!Texts[Index].IsEmpty())
			{
				OutFields.Add({ MoveTemp(Names[Index]), MoveTemp(Texts[Index]) });
			}
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
	constexpr int32 NumOfBatch = 256;
	FThreadSafeCounter NumChanged;
	ParallelFor(FMath::DivideAndRoundUp(Stamps.Num(), NumOfBatch), [&](int32 Batch) {
		const int32 End = FMath::Min((Batch + 1) * NumOfBatch, Stamps.Num());
		for (int32 Index = Batch * NumOfBatch; Index < End && NumChanged.GetValue() == 0; ++Index)
		{
			if (PlatformFile.GetTimeStamp(*Stamps[Index].Path) != Stamps[Index].Time)
			{
				NumChanged.Increment();
			}
		}
	});
	return NumChanged.GetValue() == 0;
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
	Tree->Utf8 = KestrelJson::ToUtf8(Tree->Text);
	const auto MayHideChange = [&Start](const FKestrelTreeText::FStamp& Stamp) {
		return Stamp.Time == FDateTime::MinValue() || Stamp.Time + TreeText::StepOfTimes > Start;
	};
	Tree->bCanTellChanges = !Tree->Stamps.IsEmpty() && !Tree->Stamps.ContainsByPredicate(MayHideChange);
	return Tree;
}

bool KestrelTree::MayHaveFolders(int32 Depth)
{
	return Depth + 1 < KestrelJson::MaxDepth;
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
