#include "Agent/Files/TreeText.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Text/JsonText.h"
#include "Agent/Work/BackgroundWork.h"
#include "Dom/JsonObject.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Misc/Timespan.h"
#include "Support/Dice.h"
#include "Support/KestrelTest.h"

namespace TreeTextTest
{
const FKestrelTreeFilter Filter = { { TEXT("h"), TEXT("TXT"), TEXT("") }, { TEXT("Saved"), TEXT(" /Build/ ") } };

/** Names that an object, an exclusion or JSON could stumble over. */
const TCHAR* const Names[] = { TEXT("a.h"), TEXT("A.h"), TEXT("b.txt"), TEXT("B.TXT"), TEXT("c.cpp"), TEXT("Saved"),
	TEXT("build"), TEXT("Builds"), TEXT("no ending"), TEXT("\u00E4.h"), TEXT("q\"uote.h"), TEXT("x\\Saved"),
	TEXT("\u202E.txt"), TEXT("d.h.txt"), TEXT("Empty") };

/** What an object of the same folder would be written as. */
FString MakeByObject(const FString& Path)
{
	return KestrelJson::ToCondensedText(
		FFileUtils::BuildJsonTree(Path, Filter.SupportedExtensions, Filter.ExcludedDirs, TSet<FName>()).ToSharedRef());
}

/** The text, made from an earlier tree if that is still true. */
FString Make(
	TSharedPtr<const FKestrelTreeText>& InOutKept, const FString& Path, const FKestrelTreeFilter& Wanted = Filter)
{
	FKestrelTaskControl Control;
	InOutKept = KestrelTree::MakeText(InOutKept, Path, Wanted, Control);
	return InOutKept->Text;
}

void Fill(const FString& Folder, FKestrelDice& Dice, int32 Depth)
{
	IFileManager& Files = IFileManager::Get();
	Files.MakeDirectory(*Folder, true);
	for (const TCHAR* Name : Names)
	{
		const int32 What = Dice.Roll(6);
		if (What == 0 && Depth > 0)
		{
			Fill(Folder / Name, Dice, Depth - 1);
		}
		else if (What < 3)
		{
			FFileHelper::SaveStringToFile(TEXT("x"), *(Folder / Name));
		}
	}
}
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelTreeTextTest, "Kestrel.TreeText.IsWhatAnObjectOfTheFolderIsWrittenAs", KestrelTest::Flags)
bool FKestrelTreeTextTest::RunTest(const FString& Parameters)
{
	constexpr int32 NumRounds = 40;
	FKestrelDice Dice;
	for (int32 Round = 0; Round < NumRounds; ++Round)
	{
		const FKestrelTestFolder Folder;
		TreeTextTest::Fill(Folder.Full(TEXT("Tree")), Dice, 3);
		const FString Path = Folder.Full(TEXT("Tree"));
		TSharedPtr<const FKestrelTreeText> Kept;
		if (!KestrelTest::TestSameText(*this, FString::Printf(TEXT("round %d"), Round), TreeTextTest::Make(Kept, Path),
				TreeTextTest::MakeByObject(Path)))
		{
			break;
		}
	}
	return true;
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelTreeCacheTest, "Kestrel.TreeText.IsMadeAnewWhenAFolderHasChanged", KestrelTest::Flags)
bool FKestrelTreeCacheTest::RunTest(const FString& Parameters)
{
	const FKestrelTestFolder Folder;
	const FString Sub = Folder.Full(TEXT("Sub"));
	Folder.Write(TEXT("Sub/a.h"), TEXT("one"));
	TSharedPtr<const FKestrelTreeText> Kept;
	const auto Lists = [&](const TCHAR* File) {
		return TreeTextTest::Make(Kept, Folder.Path).Contains(File, ESearchCase::CaseSensitive);
	};
	TestTrue(TEXT("at first"), Lists(TEXT("a.h")) && !Lists(TEXT("b.h")));
	Folder.Write(TEXT("Sub/b.h"), TEXT("two"));
	TestTrue(TEXT("changed at once"), Lists(TEXT("b.h")));

	// Folders that have been as they are for a while are not walked again.
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	const FDateTime LongAgo = FDateTime::UtcNow() - FTimespan::FromHours(1.0);
	Files.SetTimeStamp(*Sub, LongAgo);
	Files.SetTimeStamp(*Folder.Path, LongAgo);
	TreeTextTest::Make(Kept, Folder.Path);
	Files.DeleteFile(*(Sub / TEXT("b.h")));
	Files.SetTimeStamp(*Sub, LongAgo);
	TestTrue(TEXT("kept"), Lists(TEXT("b.h")));
	Files.SetTimeStamp(*Sub, LongAgo + FTimespan::FromMinutes(1.0));
	TestFalse(TEXT("another time"), Lists(TEXT("b.h")));
	FKestrelTreeFilter Other = TreeTextTest::Filter;
	Other.ExcludedDirs.Add(TEXT("sub"));
	KestrelTest::TestSameText(*this, TEXT("another filter"), TreeTextTest::Make(Kept, Folder.Path, Other), TEXT("{}"));
	return true;
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelTreeDepthTest, "Kestrel.TreeText.LeavesOutFoldersThatLieTooDeepForADocument", KestrelTest::Flags)
bool FKestrelTreeDepthTest::RunTest(const FString& Parameters)
{
	constexpr int32 NumFolders = KestrelJson::MaxDepth + 50;
	const FKestrelTestFolder Folder;
	FString Below;
	for (int32 Depth = 1; Depth <= NumFolders; ++Depth)
	{
		Below /= TEXT("d");
		if (Depth == KestrelJson::MaxDepth - 1)
		{
			Folder.Write(*(Below / TEXT("last.h")), TEXT("x"));
		}
	}
	Folder.Write(*(Below / TEXT("deep.h")), TEXT("x"));
	TSharedPtr<const FKestrelTreeText> Kept;
	const FString Text = TreeTextTest::Make(Kept, Folder.Path);
	TestTrue(TEXT("can be parsed"), KestrelJson::ParseObject(Text).IsValid());
	TestTrue(TEXT("the last folder that fits"), Text.Contains(TEXT("last.h")));
	TestFalse(TEXT("a deeper one"), Text.Contains(TEXT("deep.h")));
	return KestrelTest::TestSameText(*this, TEXT("as an object"), Text, TreeTextTest::MakeByObject(Folder.Path));
}
