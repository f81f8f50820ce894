#include "Agent/History/HistoryStore.h"
#include "Agent/Files/FileRescue.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"
#include "Support/Dice.h"
#include "Support/KestrelTest.h"

namespace HistoryStoreTest
{
/** Conversations are found by their time, and those of other tests would be in the way. */
void Clear()
{
	FKestrelHistoryStore::RemoveAll();
}

FFileHistoryEntry MakeEntry(const TCHAR* Content)
{
	FFileHistoryEntry Entry;
	Entry.ActionType = EFileActionType::Modification;
	Entry.Content = Content;
	return Entry;
}

/** The paths of the records that the next start would follow, with their contents. */
FString Load()
{
	const TOptional<FKestrelHistoryStore::FConversation> Last = FKestrelHistoryStore::LoadLast();
	FString Text;
	if (Last.IsSet())
	{
		for (const auto& Pair : Last->Undo)
		{
			Text += FPaths::GetCleanFilename(Pair.Key) + TEXT("=") + Pair.Value.Content + TEXT(" ");
		}
	}
	return Text;
}
}

DEFINE_SPEC(FKestrelHistoryStoreSpec, "Kestrel.HistoryStore", KestrelTest::Flags)
void FKestrelHistoryStoreSpec::Define()
{
	using namespace HistoryStoreTest;

	It("remembers how a file was left", [this]() {
		Clear();
		const FString Id = FGuid::NewGuid().ToString();
		FFileHistoryEntry Entry = MakeEntry(TEXT("x"));
		FKestrelHistoryStore::Write(Id, EKestrelHistorySide::Undo, TEXT("Config/a.txt"), Entry);
		Entry.Left = FKestrelFileMark{ true, 0xFEDCBA98 };
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("x"));
		const FString Copy = FFileRescue(Folder.Full(TEXT("a.txt"))).Keep();
		Entry.KeptCopies = { Copy, Folder.Full(TEXT("a.txt")) };
		FKestrelHistoryStore::WriteLeft(Entry);
		const TOptional<FKestrelHistoryStore::FConversation> Last = FKestrelHistoryStore::LoadLast();
		const FFileHistoryEntry* Loaded = Last.IsSet() ? Last->Undo.Find(TEXT("Config/a.txt")) : nullptr;
		if (TestTrue(TEXT("mark"), Loaded && Loaded->Left.IsSet() && Loaded->Left->IsSameAs(Entry.Left.GetValue())))
		{
			KestrelTest::TestSameText(
				*this, TEXT("copies, as far as they are some"), FString::Join(Loaded->KeptCopies, TEXT(" ")), Copy);
		}
		IFileManager::Get().DeleteDirectory(*FPaths::GetPath(Copy), false, true);

		// A project can bring one that would take minutes to read.
		FFileHelper::SaveStringToFile(
			TEXT("1 5\n") + FString::ChrN(1 << 20, u'x'), *(Entry.RecordFile + TEXT(".left")));
		const TOptional<FKestrelHistoryStore::FConversation> Huge = FKestrelHistoryStore::LoadLast();
		const FFileHistoryEntry* Unmarked = Huge.IsSet() ? Huge->Undo.Find(TEXT("Config/a.txt")) : nullptr;
		TestTrue(TEXT("a mark that is too long"), Unmarked && !Unmarked->Left.IsSet());
		FKestrelHistoryStore::Remove(Entry);
		TArray<FString> Left;
		IFileManager::Get().FindFiles(Left, *(FPaths::GetPath(Entry.RecordFile) / TEXT("*")), true, false);
		TestEqual(TEXT("files left"), Left.Num(), 0);
	});

	It("is not misled by a folder from the future", [this]() {
		Clear();
		FFileHistoryEntry Own = MakeEntry(TEXT("own"));
		FFileHistoryEntry Brought = MakeEntry(TEXT("brought"));
		FKestrelHistoryStore::Write(FGuid::NewGuid().ToString(), EKestrelHistorySide::Undo, TEXT("Config/a.txt"), Own);
		FKestrelHistoryStore::Write(
			FGuid::NewGuid().ToString(), EKestrelHistorySide::Undo, TEXT("Config/b.txt"), Brought);
		FPlatformFileManager::Get().GetPlatformFile().SetTimeStamp(
			*FPaths::GetPath(Brought.RecordFile), FDateTime::UtcNow() + FTimespan::FromDays(1000.0));
		KestrelTest::TestSameText(*this, TEXT("last"), Load(), TEXT("a.txt=own "));
		Clear();
	});

	It("brings back what it was given, and removes it", [this]() {
		Clear();
		const FString Id = FGuid::NewGuid().ToString();
		FFileHistoryEntry Text = MakeEntry(TEXT("\u00E4 one"));
		FFileHistoryEntry Large = MakeEntry(*FString::ChrN(5 << 20, u'x'));
		FFileHistoryEntry Bytes = MakeEntry(TEXT("b"));
		Bytes.Bytes = { 'b', 0, 0xFF };
		Bytes.Mode = 0751;
		FKestrelHistoryStore::Write(Id, EKestrelHistorySide::Undo, TEXT("Config/a.txt"), Text);
		FKestrelHistoryStore::Write(Id, EKestrelHistorySide::Undo, TEXT("Config/b.dat"), Bytes);
		FKestrelHistoryStore::Write(Id, EKestrelHistorySide::Redo, TEXT("Config/c.txt"), Large);
		const TOptional<FKestrelHistoryStore::FConversation> Last = FKestrelHistoryStore::LoadLast();
		if (TestTrue(TEXT("loaded"), Last.IsSet() && Last->Undo.Num() == 2 && Last->Redo.Num() == 1))
		{
			KestrelTest::TestSameText(*this, TEXT("id"), Last->Id, Id);
			KestrelTest::TestSameText(
				*this, TEXT("text"), Last->Undo.Find(TEXT("Config/a.txt"))->Content, TEXT("\u00E4 one"));
			TestTrue(TEXT("bytes"), Last->Undo.Find(TEXT("Config/b.dat"))->Bytes == Bytes.Bytes);
			TestEqual(TEXT("mode"), Last->Undo.Find(TEXT("Config/b.dat"))->Mode, 0751);
			TestTrue(TEXT("large"), Last->Redo.Find(TEXT("Config/c.txt"))->Content.Equals(Large.Content));
		}
		for (const FFileHistoryEntry& Entry : { Text, Bytes, Large })
		{
			FKestrelHistoryStore::Remove(Entry);
		}
		KestrelTest::TestSameText(*this, TEXT("nothing is left"), Load(), TEXT(""));
		FFileHistoryEntry Newer = MakeEntry(TEXT("x"));
		const FString NewerId = FGuid::NewGuid().ToString();
		FKestrelHistoryStore::Write(NewerId, EKestrelHistorySide::Undo, TEXT("Config/a.txt"), Newer);
		FPlatformFileManager::Get().GetPlatformFile().SetTimeStamp(
			*FPaths::GetPath(Newer.RecordFile), FDateTime::UtcNow() - FTimespan::FromDays(1.0));
		KestrelTest::TestSameText(*this, TEXT("an older conversation is over"), Load(), TEXT(""));
	});

	It("follows no record out of the project, into version control or over a link", [this]() {
		Clear();
		const FString Id = FGuid::NewGuid().ToString();
		for (const TCHAR* Path : { TEXT("/tmp/outside.txt"), TEXT("../outside.txt"), TEXT(".git/hooks/pre-commit"),
				 TEXT("Saved/Kestrel/Rescue/a.txt"), TEXT("Plugins/kestrel-unreal/a.cpp"),
				 TEXT("Saved/Config/LinuxEditor/Editor.ini") })
		{
			FFileHistoryEntry Entry = MakeEntry(TEXT("evil"));
			FKestrelHistoryStore::Write(Id, EKestrelHistorySide::Undo, Path, Entry);
		}
		for (const TCHAR* Target : { TEXT("/tmp/outside.txt"), TEXT("../../outside.txt"), TEXT("DefaultGame.ini") })
		{
			FFileHistoryEntry Entry = MakeEntry(TEXT("evil"));
			Entry.LinkTarget = Target;
			FKestrelHistoryStore::Write(
				Id, EKestrelHistorySide::Undo, FString(TEXT("Config/")) + FGuid::NewGuid().ToString(), Entry);
		}
		FFileHistoryEntry Good = MakeEntry(TEXT("good"));
		FKestrelHistoryStore::Write(Id, EKestrelHistorySide::Undo, TEXT("Config/good.txt"), Good);
		KestrelTest::TestSameText(*this, TEXT("followed"), Load(), TEXT("good.txt=good "));
		Clear();
	});

	It("is not held up by records whose paths no tool could have had", [this]() {
		Clear();
		const FString Id = FGuid::NewGuid().ToString();
		const auto Write = [&Id](const FString& Path) {
			FFileHistoryEntry Entry = MakeEntry(TEXT("x"));
			FKestrelHistoryStore::Write(Id, EKestrelHistorySide::Undo, Path, Entry);
		};
		Write(TEXT("Config/a.txt"));
		Write(TEXT("Config/") + FString::ChrN(400000, u'/').Replace(TEXT("/"), TEXT("d/")) + TEXT("b.txt"));
		constexpr int32 NumLong = 150;
		const FString Long =
			TEXT("Config/") + FString::ChrN(400, u'/').Replace(TEXT("/"), TEXT("ddddddd/")); // 3,200 characters
		for (int32 Index = 0; Index < NumLong; ++Index)
		{
			Write(Long + FString::FromInt(Index));
		}
		const TOptional<FKestrelHistoryStore::FConversation> Last = FKestrelHistoryStore::LoadLast();
		if (TestTrue(TEXT("there is one"), Last.IsSet()))
		{
			TestTrue(TEXT("an ordinary path"), Last->Undo.Contains(TEXT("Config/a.txt")));
			TestEqual(TEXT("all but the longest are told"), Last->Undo.Num() + Last->NotFollowed.Num(), 1 + NumLong);
			TestTrue(TEXT("there is an end to it"), Last->Undo.Num() < NumLong);
		}
		Clear();
	});

	It("reads damaged records as none, or as what they were", [this]() {
		Clear();
		const FString Id = FGuid::NewGuid().ToString();
		FFileHistoryEntry Entry = MakeEntry(TEXT("content"));
		FKestrelHistoryStore::Write(Id, EKestrelHistorySide::Undo, TEXT("Config/a.txt"), Entry);
		TArray<uint8> Whole;
		FFileHelper::LoadFileToArray(Whole, *Entry.RecordFile);
		AddExpectedError(TEXT("Compressed data"), EAutomationExpectedErrorFlags::Contains, 0);
		FKestrelDice Dice;
		for (int32 Round = 0; Round < KestrelTest::GetNumFuzzRounds(); ++Round)
		{
			TArray<uint8> Damaged = Whole;
			for (int32 NumChanges = 1 + Dice.Roll(3); NumChanges > 0; --NumChanges)
			{
				Damaged[Dice.Roll(Damaged.Num())] = static_cast<uint8>(Dice.Roll(256));
			}
			Damaged.SetNum(Dice.Roll(4) == 0 ? Dice.Roll(Damaged.Num()) : Damaged.Num());
			FFileHelper::SaveArrayToFile(Damaged, *Entry.RecordFile);
			Load();
		}
		FFileHelper::SaveArrayToFile(Whole, *Entry.RecordFile);
		KestrelTest::TestSameText(*this, TEXT("whole"), Load(), TEXT("a.txt=content "));
		Clear();
	});

	It("keeps as much and as long as it may, and nothing that is not its own", [this]() {
		Clear();
		const FString Root = FPaths::ProjectSavedDir() / TEXT("Kestrel") / TEXT("History");
		TArray<FFileHistoryEntry> Entries;
		for (int32 Index = 0; Index < 3; ++Index)
		{
			FFileHistoryEntry Entry = MakeEntry(TEXT("content"));
			FKestrelHistoryStore::Write(
				FGuid::NewGuid().ToString(), EKestrelHistorySide::Undo, TEXT("Config/a.txt"), Entry);
			FPlatformFileManager::Get().GetPlatformFile().SetTimeStamp(
				*FPaths::GetPath(Entry.RecordFile), FDateTime::UtcNow() - FTimespan::FromDays(Index * 20.0));
			Entries.Add(Entry);
		}
		FFileHelper::SaveStringToFile(TEXT("x"), *(Root / TEXT("notes") / TEXT("mine.undo")));
		const auto AreThere = [&Entries]() {
			FString Text;
			for (const FFileHistoryEntry& Entry : Entries)
			{
				Text += FPaths::FileExists(Entry.RecordFile) ? TEXT("1") : TEXT("0");
			}
			return Text;
		};
		FKestrelHistoryStore::RemoveOld(30, MAX_int64);
		KestrelTest::TestSameText(*this, TEXT("by age"), AreThere(), TEXT("110"));
		FKestrelHistoryStore::RemoveOld(30, IFileManager::Get().FileSize(*Entries[0].RecordFile));
		KestrelTest::TestSameText(*this, TEXT("by size"), AreThere(), TEXT("100"));
		FKestrelHistoryStore::RemoveAll();
		KestrelTest::TestSameText(*this, TEXT("all"), AreThere(), TEXT("000"));
		TestTrue(TEXT("not its own"), FPaths::FileExists(Root / TEXT("notes") / TEXT("mine.undo")));
		IFileManager::Get().DeleteDirectory(*(Root / TEXT("notes")), false, true);
	});
}
