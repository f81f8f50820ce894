#include "Agent/Chat/ConversationStore.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Chat/Transcript.h"
#include "Agent/Files/NativeFile.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "KestrelSettings.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"
#include "Support/Dice.h"
#include "Support/KestrelTest.h"
#include "UObject/Class.h"
#include "Widget/ConversationExport.h"

namespace ConversationStoreTest
{
FString MakeId()
{
	return FGuid::NewGuid().ToString();
}

/** With the permissions that the store gives its files. */
void SaveAsOwn(const TArray<uint8>& Bytes, const FString& File)
{
	FFileHelper::SaveArrayToFile(Bytes, *File);
	KestrelNativeFile::RestrictToOwner(File);
}

FKestrelTranscriptEntry Say(const FString& Text)
{
	return FKestrelTranscriptEntry::MakeStatus(
		Text, FKestrelInterface::UserColor, FKestrelInterface::BoldFontName, FKestrelInterface::UserFontSize);
}

/** A conversation with a message, as an editor that has ended leaves it. @return its id */
FString Leave(const FString& Folder, const FString& Prompt, const FString& Message = TEXT("done"))
{
	FKestrelTranscript Transcript;
	Transcript.Open(Folder);
	const FString Id = MakeId();
	Transcript.Begin(Id, Prompt);
	Transcript.Add(Say(Message));
	return Id;
}

FString FileOf(const FString& Folder, const FString& Id)
{
	return Folder / Id + TEXT(".jsonl");
}

void SetAge(const FString& File, double Days)
{
	FPlatformFileManager::Get().GetPlatformFile().SetTimeStamp(*File, FDateTime::UtcNow() - FTimespan::FromDays(Days));
}

/** What an editor that starts finds of the last conversation, an element a block. */
FString Restore(const FString& Folder)
{
	FKestrelTranscript Transcript;
	Transcript.Open(Folder);
	Transcript.RestoreLast();
	TArray<FString> Texts;
	for (const FKestrelTranscriptEntry& Entry : Transcript.GetEntries())
	{
		Texts.Add(Entry.Text);
	}
	return FString::Join(Texts, TEXT("|"));
}

FString JoinTitles(FKestrelConversationStore& Store)
{
	TArray<FString> Titles;
	for (const FKestrelConversationInfo& Info : Store.List())
	{
		Titles.Add(Info.Title);
	}
	return FString::Join(Titles, TEXT("|"));
}

TArray<FString> FindFiles(const FString& Folder)
{
	TArray<FString> Names;
	IFileManager::Get().FindFiles(Names, *(Folder / TEXT("*")), true, false);
	Names.Sort();
	return Names;
}
}

DEFINE_SPEC(FKestrelConversationStoreSpec, "Kestrel.ConversationStore", KestrelTest::Flags)
void FKestrelConversationStoreSpec::Define()
{
	using namespace ConversationStoreTest;

	It("shows without being asked only what nobody else could have put there", [this]() {
		const FKestrelTestFolder Folder;
		FKestrelConversationStore Store;
		Store.Open(Folder.Path);
		FKestrelTranscript Transcript;
		Transcript.Open(Folder.Path);
		Transcript.Begin(ConversationStoreTest::MakeId(), TEXT("first"));
		const FString Id = Transcript.GetId();
		TArray<FKestrelTranscriptEntry> Entries;
		TestTrue(TEXT("own"), Store.ReadLast(Entries).IsSet());
		// As a checkout of a repository leaves its files.
		const FString File = Folder.Full(Id + TEXT(".jsonl"));
		FString Text;
		FFileHelper::LoadFileToString(Text, *File);
		IFileManager::Get().Delete(*File);
		FFileHelper::SaveStringToFile(Text, *File);
		const bool bHasModes = KestrelNativeFile::GetMode(File) >= 0;
		TestEqual(TEXT("somebody else's"), Store.ReadLast(Entries).IsSet(), !bHasModes);
		TestEqual(TEXT("is in the list"), Store.List().Num(), 1);
	});

	It("brings back everything that was said, with its looks", [this]() {
		const FKestrelTestFolder Folder;
		FKestrelTranscript Written;
		Written.Open(Folder.Path);
		const FString Id = MakeId();
		Written.Begin(Id, TEXT("a"));
		Written.Add(Say(TEXT("\u00E4 \"one\"\r\n\ttwo \\ \x01\x7F \U0001F600\u2028")));
		Written.Add(FKestrelTranscriptEntry::MakeHint(TEXT("hint")));
		Written.Add(FKestrelTranscriptEntry::MakeChange(TEXT("Config/a.ini"), TEXT(""), TEXT("x\n")));
		Written.Add(FKestrelTranscriptEntry::MakeChange(TEXT("big.txt"), TEXT("x"), FString::ChrN(300000, u'\u00E4')));
		FKestrelTranscript Read;
		Read.Open(Folder.Path);
		Read.RestoreLast();
		const TArray<FKestrelTranscriptEntry>& Entries = Read.GetEntries();
		if (!TestEqual(TEXT("entries"), Entries.Num(), 4))
		{
			return;
		}
		KestrelTest::TestSameText(*this, TEXT("id"), Read.GetId(), Id);
		KestrelTest::TestSameText(*this, TEXT("status"), Entries[0].Text, Written.GetEntries()[0].Text);
		TestTrue(TEXT("color"), Entries[0].Color.Equals(FKestrelInterface::UserColor));
		TestTrue(TEXT("font"), Entries[0].FontStyle == FKestrelInterface::BoldFontName);
		TestEqual(TEXT("size"), Entries[0].FontSize, FKestrelInterface::UserFontSize);
		TestTrue(TEXT("hint"), Entries[1].Kind == EKestrelTranscriptKind::Hint);
		KestrelTest::TestSameText(*this, TEXT("change"), Entries[2].Text + Entries[2].After, TEXT("Config/a.inix\n"));
		TestTrue(TEXT("a large change is named only"), Entries[3].bTextsLeftOut && Entries[3].After.IsEmpty());
		TestFalse(TEXT("as long as the editor runs it is there"), Written.GetEntries()[3].After.IsEmpty());
		TestTrue(TEXT("bytes"), IFileManager::Get().FileSize(*FileOf(Folder.Path, Id)) < 2000);
	});

	It("loses nothing but the line that an editor was writing when it died", [this]() {
		const FKestrelTestFolder Folder;
		const FString Id = Leave(Folder.Path, TEXT("prompt"), TEXT("first \u00E4"));
		const FString File = FileOf(Folder.Path, Id);
		TArray<uint8> First;
		FFileHelper::LoadFileToArray(First, *File);
		FKestrelTranscript Transcript;
		Transcript.Open(Folder.Path);
		Transcript.RestoreLast();
		Transcript.Add(Say(TEXT("second \u00E4")));
		TArray<uint8> Whole;
		FFileHelper::LoadFileToArray(Whole, *File);
		int32 NumWrong = 0;
		for (int32 Num = 0; Num <= Whole.Num(); ++Num)
		{
			SaveAsOwn(TArray<uint8>(Whole.GetData(), Num), File);
			const FString Restored = Restore(Folder.Path);
			const FString Expected = Num == Whole.Num()   ? TEXT("first \u00E4|second \u00E4")
									 : Num >= First.Num() ? TEXT("first \u00E4")
														  : TEXT("");
			NumWrong += Restored.Equals(Expected) ? 0 : 1;
			// What comes next is whole again.
			FKestrelTranscript Next;
			Next.Open(Folder.Path);
			Next.RestoreLast();
			Next.Add(Say(TEXT("third")));
			const FString Continued = Expected + (Expected.IsEmpty() ? TEXT("") : TEXT("|")) + TEXT("third");
			NumWrong += Next.GetId().IsEmpty() || Restore(Folder.Path).Equals(Continued) ? 0 : 1;
		}
		TestEqual(TEXT("wrong"), NumWrong, 0);
		TestEqual(TEXT("files"), FindFiles(Folder.Path).Num(), 1);
	});

	It("sets a damaged conversation aside, says so once, and shows the one before it", [this]() {
		const FKestrelTestFolder Folder;
		const FString Old = Leave(Folder.Path, TEXT("old"), TEXT("old"));
		SetAge(FileOf(Folder.Path, Old), 1.0);
		const FString Id = Leave(Folder.Path, TEXT("new"), TEXT("new"));
		FString Text;
		FFileHelper::LoadFileToString(Text, *FileOf(Folder.Path, Id));
		FFileHelper::SaveStringToFile(Text + TEXT("{\"kind\":\"status\"}\n"), *FileOf(Folder.Path, Id));
		FKestrelTranscript Transcript;
		Transcript.Open(Folder.Path);
		Transcript.RestoreLast();
		KestrelTest::TestSameText(*this, TEXT("shown"), Transcript.GetId(), Old);
		KestrelTest::TestSameText(*this, TEXT("set aside"),
			FString::Join(Transcript.GetStore().TakeSetAside(), TEXT("|")), Folder.Full(Id + TEXT(".damaged")));
		TestEqual(TEXT("once"), Transcript.GetStore().TakeSetAside().Num(), 0);
		TestTrue(TEXT("kept"), FPaths::FileExists(Folder.Full(Id + TEXT(".damaged"))));
		KestrelTest::TestSameText(*this, TEXT("next time"), Restore(Folder.Path), TEXT("old"));
	});

	It("reads damaged files as damaged, or as what they were", [this]() {
		const FKestrelTestFolder Folder;
		const FString File = FileOf(Folder.Path, Leave(Folder.Path, TEXT("prompt"), TEXT("message")));
		TArray<uint8> Whole;
		FFileHelper::LoadFileToArray(Whole, *File);
		FKestrelDice Dice;
		for (int32 Round = 0; Round < KestrelTest::GetNumFuzzRounds(); ++Round)
		{
			TArray<uint8> Damaged = Whole;
			for (int32 NumChanges = 1 + Dice.Roll(3); NumChanges > 0; --NumChanges)
			{
				Damaged[Dice.Roll(Damaged.Num())] = static_cast<uint8>(Dice.Roll(256));
			}
			SaveAsOwn(Damaged, File);
			Restore(Folder.Path);
			IFileManager::Get().Delete(*FPaths::ChangeExtension(File, TEXT("damaged")));
		}
		SaveAsOwn(Whole, File);
		KestrelTest::TestSameText(*this, TEXT("whole"), Restore(Folder.Path), TEXT("message"));
	});

	It("shows nothing invisible of a file that somebody else has made", [this]() {
		const TOptional<FKestrelTranscriptEntry> Entry = FKestrelTranscriptEntry::FromLine(TEXT(
			"{\"kind\":\"status\",\"text\":\"x\",\"red\":0,\"green\":-5,\"blue\":0.01,\"size\":1e30,\"font\":\"?\"}"));
		if (TestTrue(TEXT("read"), Entry.IsSet()))
		{
			TestTrue(TEXT("color"), Entry->Color.Equals(FLinearColor::White));
			TestTrue(TEXT("size"), Entry->FontSize <= 24.0f);
			TestTrue(TEXT("font"), Entry->FontStyle == FKestrelInterface::RegularFontName);
		}
	});

	It("stops storing a conversation that grows without end", [this]() {
		const FKestrelTestFolder Folder;
		FKestrelTranscript Transcript;
		Transcript.Open(Folder.Path);
		const FString Id = MakeId();
		Transcript.Begin(Id, TEXT("prompt"));
		for (int32 Index = 0; Index < 20; ++Index)
		{
			TestTrue(TEXT("no failure"), Transcript.Add(Say(FString::ChrN(1 << 20, u'x'))));
		}
		const int64 Size = IFileManager::Get().FileSize(*FileOf(Folder.Path, Id));
		TestTrue(TEXT("bytes"), Size > 10 << 20 && Size <= 16 << 20);
		TestEqual(TEXT("shown"), Transcript.GetEntries().Num(), 20);
		TestTrue(TEXT("said"),
			Restore(Folder.Path).EndsWith(TEXT("The rest of this conversation was too long to be kept.")));
	});

	It("can be read by the user alone", [this]() {
		const FKestrelTestFolder Project;
		const FString Folder = Project.Full(TEXT("Conversations"));
		const FString Id = Leave(Folder, TEXT("prompt"));
		FKestrelConversationStore Store;
		Store.Open(Folder);
		Store.Rename(Id, TEXT("name"));
		if (KestrelNativeFile::GetMode(Folder) < 0)
		{
			return;
		}
		TestEqual(TEXT("folder"), KestrelNativeFile::GetMode(Folder), 0700);
		for (const FString& Name : FindFiles(Folder))
		{
			TestEqual(*Name, KestrelNativeFile::GetMode(Folder / Name), 0600);
		}
		TArray<FKestrelTranscriptEntry> Entries;
		Store.Read(Id, Entries);
		const FString File = KestrelConversationExport::Write(Project.Full(TEXT("Exports")), Store.List()[0], Entries);
		TestEqual(TEXT("export"), KestrelNativeFile::GetMode(File), 0600);
	});

	It("follows no links out of its folder", [this]() {
		const FKestrelTestFolder Project;
		const FString Id = MakeId();
		const FString Other = Project.Full(TEXT("Other.txt"));
		Project.Write(TEXT("Other.txt"), TEXT("x"));
		IFileManager::Get().MakeDirectory(*Project.Full(TEXT("Real")), true);
		if (!KestrelNativeFile::MakeLink(Project.Full(TEXT("Linked")), Project.Full(TEXT("Real"))))
		{
			return;
		}
		KestrelNativeFile::MakeLink(FileOf(Project.Full(TEXT("Real")), Id), Other);
		FKestrelTranscript Transcript;
		Transcript.Open(Project.Full(TEXT("Real")));
		Transcript.Begin(Id, TEXT("prompt"));
		Transcript.Add(Say(TEXT("message")));
		FString Text;
		FFileHelper::LoadFileToString(Text, *Other);
		KestrelTest::TestSameText(*this, TEXT("what it leads to"), Text, TEXT("x"));
		TestEqual(TEXT("listed"), Transcript.GetStore().List().Num(), 0);
		Leave(Project.Full(TEXT("Linked")), TEXT("prompt"));
		TestEqual(TEXT("in a folder that is a link"), FindFiles(Project.Full(TEXT("Real"))).Num(), 1);
		TestTrue(TEXT("goes on without"), Transcript.Add(Say(TEXT("message"))));
	});

	It("keeps conversations as long as it is told", [this]() {
		const FKestrelTestFolder Folder;
		FKestrelConversationStore Store;
		Store.Open(Folder.Path);
		for (const double Days : { 0.5, 29.9, 30.1 })
		{
			SetAge(FileOf(Folder.Path, Leave(Folder.Path, FString::SanitizeFloat(Days))), Days);
		}
		const FString Damaged = MakeId() + TEXT(".damaged");
		Folder.Write(Damaged, TEXT("x"));
		SetAge(Folder.Full(Damaged), 31.0);
		Folder.Write(TEXT("notes.jsonl"), TEXT("x"));
		Store.DeleteOld(30, MAX_int64);
		KestrelTest::TestSameText(*this, TEXT("by age"), JoinTitles(Store), TEXT("0.5|29.9"));
		TestFalse(TEXT("damaged ones too"), FPaths::FileExists(Folder.Full(Damaged)));
		Store.DeleteOld(30, IFileManager::Get().FileSize(*FileOf(Folder.Path, Store.List()[0].Id)));
		KestrelTest::TestSameText(*this, TEXT("by size"), JoinTitles(Store), TEXT("0.5"));
		Store.DeleteAll();
		KestrelTest::TestSameText(*this, TEXT("what is not its own stays"),
			FString::Join(FindFiles(Folder.Path), TEXT("|")), TEXT("notes.jsonl"));
	});

	It("is not misled by a file from the future", [this]() {
		const FKestrelTestFolder Folder;
		SetAge(FileOf(Folder.Path, Leave(Folder.Path, TEXT("brought"), TEXT("brought"))), -1000.0);
		Leave(Folder.Path, TEXT("own"), TEXT("own"));
		KestrelTest::TestSameText(*this, TEXT("last"), Restore(Folder.Path), TEXT("own"));
	});

	It("renames and deletes conversations, whatever their titles are", [this]() {
		const FKestrelTestFolder Folder;
		FKestrelConversationStore Store;
		Store.Open(Folder.Path);
		const FString Id = Leave(Folder.Path, TEXT("\n  first line  \nsecond"));
		KestrelTest::TestSameText(*this, TEXT("its own"), JoinTitles(Store), TEXT("first line"));
		const TPair<FString, FString> Titles[] = {
			{ TEXT("Health"), TEXT("Health") },
			{ TEXT("../../a\\b:c"), TEXT("../../a\\b:c") },
			{ TEXT("one\ntwo"), TEXT("one") },
			{ TEXT("a\x07\u202Eb"), TEXT("a\u27E8U+0007\u27E9\u27E8U+202E\u27E9b") },
			{ FString::ChrN(10000, u'x'), FString::ChrN(60, u'x') + TEXT("\u2026") },
			{ TEXT(" "), TEXT("first line") },
		};
		for (const TPair<FString, FString>& Title : Titles)
		{
			TestTrue(TEXT("renamed"), Store.Rename(Id, Title.Key));
			KestrelTest::TestSameText(*this, TEXT("title"), JoinTitles(Store), Title.Value);
		}
		TestFalse(TEXT("not there"), Store.Rename(TEXT("../") + Id, TEXT("x")) || Store.Rename(MakeId(), TEXT("x")));
		Store.Rename(Id, TEXT("x"));
		Store.Delete(Id);
		TestEqual(TEXT("files"), FindFiles(Folder.Path).Num(), 0);
	});

	It("exports what was said as Markdown, under a name of its own", [this]() {
		const FKestrelTestFolder Folder;
		const TArray<FKestrelTranscriptEntry> Entries = {
			Say(TEXT(" [ User Start ]\n\nhelp\n")),
			Say(TEXT("Processing request...")),
			Say(TEXT("Processing request...")),
			Say(TEXT(" [ Kestrel ] \n\n- **one**\n- `two`\n")),
			FKestrelTranscriptEntry::MakeChange(TEXT("a.md"), TEXT("0\n1\n2\n3\n4\nold"), TEXT("0\n1\n2\n3\n4\n```")),
		};
		FKestrelConversationInfo Info;
		Info.Title = TEXT("../a/b: \u00E4 CON");
		const FString Exports = Folder.Full(TEXT("Exports"));
		const FString File = KestrelConversationExport::Write(Exports, Info, Entries);
		FString Text;
		FFileHelper::LoadFileToString(Text, *File);
		KestrelTest::TestSameText(*this, TEXT("text"), Text,
			TEXT(
				"# ../a/b: \u00E4 CON\n\n## User Start\n\nhelp\n\n> Processing request...\n\n## Kestrel\n\n- **one**\n- "
				"`two`\n\n### a.md\n\n````diff\n@@ -3 +3 @@\n 2\n 3\n 4\n-old\n+```\n````\n\n"));
		TestTrue(TEXT("in its folder"), FPaths::GetPath(File).Equals(Exports));
		TestTrue(TEXT("name"), FPaths::GetCleanFilename(File).MatchesWildcard(TEXT("a-b-CON-20*.md")));
		TestFalse(
			TEXT("nothing is overwritten"), KestrelConversationExport::Write(Exports, Info, Entries).Equals(File));
		Info.Title = TEXT("\u00E4 \u202E");
		TestTrue(TEXT("a name without letters"),
			FPaths::GetCleanFilename(KestrelConversationExport::Write(Exports, Info, Entries))
				.StartsWith(TEXT("Conversation-")));
	});

	It("never stores the key", [this]() {
		const FKestrelTestLog Log;
		const TGuardValue<FString> Key(GetMutableDefault<UKestrelSettings>()->ApiKey, TEXT("canary-of-the-user"));
		FKestrelInterface& Interface = FKestrelInterface::Get();
		Interface.BeginConversation(MakeId(), TEXT("use canary-of-the-user"));
		Interface.AddOwnStatusMessage(TEXT("with canary-of-the-user"));
		Interface.AddHint(INVTEXT("hint canary-of-the-user"));
		Interface.OnAddDiffMessage(
			TEXT("canary-of-the-user.txt"), TEXT("a canary-of-the-user"), TEXT("b canary-of-the-user"));
		FString Text;
		FFileHelper::LoadFileToString(Text, *FileOf(Log.GetConversations(), Interface.GetTranscript().GetId()));
		TestFalse(TEXT("key"), Text.Contains(TEXT("canary")));
		TestTrue(TEXT("all of it"), Text.Contains(TEXT("use [API key]")) && Text.Contains(TEXT("hint [API key]")) &&
										Text.Contains(TEXT("b [API key]")));
	});
}
