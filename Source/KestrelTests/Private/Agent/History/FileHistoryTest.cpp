#include "Agent/FileHistory.h"
#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"

namespace FileHistoryTest
{
/** A conversation of its own: what the tools change in its lifetime is recorded under its id. */
class FConversation
{
public:
	FConversation()
	{
		FAgent::Get().SetConversationId(Id);
		FAgent::Get().SetUndoConversationID(Id);
		FAgent::Get().SetRedoConversationID(FString());
	}
	~FConversation()
	{
		FAgent::Get().ClearConversationId();
		FAgent::Get().SetUndoConversationID(FString());
		FAgent::Get().SetRedoConversationID(FString());
		FAgent::Get().ClearToolResults();
	}
	UE_NONCOPYABLE(FConversation)

	FString Create(const FString& Path, const FString& Text) const
	{
		return KestrelTest::UseTool(TEXT("create_file"), { TEXT("path"), Path, TEXT("file_text"), Text });
	}
	FString Delete(const FString& Path) const
	{
		return KestrelTest::UseTool(TEXT("delete_file"), { TEXT("path"), Path });
	}

	const FString Id = FGuid::NewGuid().ToString();
};

/** The names and bytes of all files in a folder, sorted. */
FString Snapshot(const FKestrelTestFolder& Folder)
{
	TArray<FString> Files;
	IFileManager::Get().FindFilesRecursive(Files, *Folder.Path, TEXT("*"), true, false);
	Files.Sort();
	FString Text;
	for (const FString& File : Files)
	{
		TArray<uint8> Bytes;
		FFileHelper::LoadFileToArray(Bytes, *File);
		Text += FPaths::GetCleanFilename(File) + TEXT("=");
		for (const uint8 Byte : Bytes)
		{
			Text += FString::Printf(TEXT("%02x"), Byte);
		}
		Text += TEXT(" ");
	}
	return Text;
}

struct FStory
{
	const TCHAR* What;
	void (*Tell)(const FConversation& Conversation, const FKestrelTestFolder& Folder);
};

const FStory Stories[] = {
	{ TEXT("created files"),
		[](const FConversation& Conversation, const FKestrelTestFolder& Folder) {
			Conversation.Create(Folder.Full(TEXT("new.txt")), TEXT("new"));
			Conversation.Create(Folder.Full(TEXT("umlaut.txt")), TEXT("\u00E4"));
		} },
	{ TEXT("modified files, however often"),
		[](const FConversation& Conversation, const FKestrelTestFolder& Folder) {
			Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("second"));
			KestrelTest::UseTool(
				TEXT("insert_into_file"), { TEXT("path"), Folder.Full(TEXT("a.txt")), TEXT("insert_line"), TEXT("0"),
											  TEXT("new_string"), TEXT("\u00E4") });
			KestrelTest::UseTool(
				TEXT("update_file"), { TEXT("path"), Folder.Full(TEXT("utf16.txt")), TEXT("old_string"), TEXT("x"),
										 TEXT("new_string"), TEXT("y") });
		} },
	{ TEXT("deleted files, whatever they hold"),
		[](const FConversation& Conversation, const FKestrelTestFolder& Folder) {
			for (const TCHAR* File :
				{ TEXT("a.txt"), TEXT("utf8.txt"), TEXT("utf16.txt"), TEXT("binary.dat"), TEXT("empty.txt") })
			{
				Conversation.Delete(Folder.Full(File));
			}
		} },
	{ TEXT("files that came and went"),
		[](const FConversation& Conversation, const FKestrelTestFolder& Folder) {
			Conversation.Create(Folder.Full(TEXT("brief.txt")), TEXT("one"));
			Conversation.Create(Folder.Full(TEXT("brief.txt")), TEXT("two"));
			Conversation.Delete(Folder.Full(TEXT("brief.txt")));
			Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("changed"));
			Conversation.Delete(Folder.Full(TEXT("a.txt")));
		} },
	{ TEXT("a file that was deleted and recreated"),
		[](const FConversation& Conversation, const FKestrelTestFolder& Folder) {
			Conversation.Delete(Folder.Full(TEXT("utf8.txt")));
			Conversation.Create(Folder.Full(TEXT("utf8.txt")), TEXT("anew"));
		} },
	{ TEXT("a file that someone else changed in between"),
		[](const FConversation& Conversation, const FKestrelTestFolder& Folder) {
			Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("ours"));
			Folder.Write(TEXT("a.txt"), TEXT("theirs \u00E4"));
		} },
};
}

DEFINE_SPEC(FKestrelFileHistorySpec, "Kestrel.FileHistory", KestrelTest::Flags)
void FKestrelFileHistorySpec::Define()
{
	for (const FileHistoryTest::FStory& Story : FileHistoryTest::Stories)
	{
		It(FString(TEXT("undoes and redoes ")) + Story.What, [this, &Story]() {
			const FKestrelTestFolder Folder;
			Folder.Write(TEXT("a.txt"), TEXT("first\n"));
			Folder.Write(TEXT("utf8.txt"), TEXT("\u00E4"));
			Folder.Write(TEXT("empty.txt"), TEXT(""));
			FFileHelper::SaveStringToFile(
				TEXT("x"), *Folder.Full(TEXT("utf16.txt")), FFileHelper::EEncodingOptions::ForceUnicode);
			FFileHelper::SaveArrayToFile(TArray<uint8>{ 'b', 0, 0xFF, 'c' }, *Folder.Full(TEXT("binary.dat")));
			const FString Before = FileHistoryTest::Snapshot(Folder);
			const FileHistoryTest::FConversation Conversation;
			Story.Tell(Conversation, Folder);
			const FString After = FileHistoryTest::Snapshot(Folder);

			FFileHistory& History = FFileHistory::Get();
			for (int32 Round = 0; Round < 2; ++Round)
			{
				TestTrue(TEXT("undo"), History.UndoAllChanges(Conversation.Id));
				KestrelTest::TestSameText(*this, TEXT("undone"), FileHistoryTest::Snapshot(Folder), Before);
				TestFalse(TEXT("nothing more to undo"), History.GetFileHistories().Contains(Conversation.Id));
				TestTrue(TEXT("redo"), History.RedoAllChanges(Conversation.Id));
				KestrelTest::TestSameText(*this, TEXT("redone"), FileHistoryTest::Snapshot(Folder), After);
				TestFalse(TEXT("nothing more to redo"), History.GetRedoHistories().Contains(Conversation.Id));
			}
		});
	}

	It("keeps conversations apart, and knows none that it does not know", [this]() {
		const FKestrelTestFolder Folder;
		const FString File = Folder.Full(TEXT("a.txt"));
		Folder.Write(TEXT("a.txt"), TEXT("zero"));
		FFileHistory& History = FFileHistory::Get();
		const FileHistoryTest::FConversation First;
		First.Create(File, TEXT("one"));
		{
			const FileHistoryTest::FConversation Second;
			Second.Create(File, TEXT("two"));
			TestTrue(TEXT("undo the second"), History.UndoChanges(Second.Id.ToLower(), File));
			KestrelTest::TestSameText(*this, TEXT("after the second"), FFileUtils::ReadFile(File), TEXT("one"));
			TestFalse(TEXT("once"), History.UndoChanges(Second.Id, File));
		}
		TestFalse(TEXT("an unknown key"), History.UndoAllChanges(TEXT("unknown")));
		TestFalse(TEXT("an unknown path"), History.UndoChanges(First.Id, TEXT("unknown")));
		TestFalse(TEXT("no path"), History.UndoChanges(First.Id, FString()));
		TestFalse(TEXT("nothing undone yet"), History.CanRedo(First.Id, File));
		TestTrue(TEXT("undo the first"), History.UndoAllChanges(First.Id));
		KestrelTest::TestSameText(*this, TEXT("after the first"), FFileUtils::ReadFile(File), TEXT("zero"));
		TestTrue(TEXT("can be redone"), History.CanRedo(First.Id, File));
	});

	It("does not record an empty text, and does nothing where nothing is changed", [this]() {
		const FKestrelTestFolder Folder;
		const FString File = Folder.Full(TEXT("a.txt"));
		FFileHistory& History = FFileHistory::Get();
		const FileHistoryTest::FConversation Conversation;
		History.StoreFileVersion(Conversation.Id, File, FString());
		History.StoreFileVersion(Conversation.Id, FString(), TEXT("x"));
		TestFalse(TEXT("recorded"), History.CanUndo(Conversation.Id, File));
		Folder.Write(TEXT("a.txt"), TEXT("x"));
		History.StoreFileVersion(Conversation.Id, File, TEXT("x"));
		TestTrue(TEXT("recorded"), History.CanUndo(Conversation.Id, File));
		TestFalse(TEXT("nothing to undo"), History.UndoAllChanges(Conversation.Id));
		TestFalse(TEXT("nothing to make again"), History.CanRedo(Conversation.Id, File));
	});

	It("leaves no folders of a file that is gone again", [this]() {
		const FKestrelTestFolder Folder;
		const FileHistoryTest::FConversation Conversation;
		const FString File = Folder.Full(TEXT("new/folder/a.txt"));
		Conversation.Create(File, TEXT("new"));
		Conversation.Delete(File);
		FFileHistory::Get().UndoAllChanges(Conversation.Id);
		TestFalse(TEXT("folders"), FPaths::DirectoryExists(Folder.Full(TEXT("new"))));
	});

	It("finds the way back when two paths lead to one file", [this]() {
		const FKestrelTestFolder Folder;
		const FileHistoryTest::FConversation Conversation;
		FFileHistory& History = FFileHistory::Get();
		Folder.Write(TEXT("a.txt"), TEXT("one"));
		History.StoreFileVersion(Conversation.Id, Folder.Full(TEXT("a.txt")), TEXT("one"));
		Folder.Write(TEXT("a.txt"), TEXT("two"));
		History.StoreFileVersion(Conversation.Id, Folder.Name / TEXT("a.txt"), TEXT("two"));
		Folder.Write(TEXT("a.txt"), TEXT("three"));
		for (int32 Round = 0; Round < 2; ++Round)
		{
			History.UndoAllChanges(Conversation.Id);
			KestrelTest::TestSameText(
				*this, TEXT("undone"), FFileUtils::ReadFile(Folder.Full(TEXT("a.txt"))), TEXT("one"));
			History.RedoAllChanges(Conversation.Id);
			KestrelTest::TestSameText(
				*this, TEXT("redone"), FFileUtils::ReadFile(Folder.Full(TEXT("a.txt"))), TEXT("three"));
		}
	});

	It("undoes a file once, though one of its paths led nowhere meanwhile", [this]() {
		const FKestrelTestFolder Folder;
		const FileHistoryTest::FConversation Conversation;
		FFileHistory& History = FFileHistory::Get();
		Folder.Write(TEXT("a.txt"), TEXT("first"));
		KestrelNativeFile::MakeLink(Folder.Full(TEXT("link.txt")), Folder.Full(TEXT("a.txt")));
		Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("one"));
		Conversation.Create(Folder.Full(TEXT("link.txt")), TEXT("two"));
		Conversation.Delete(Folder.Full(TEXT("a.txt")));
		for (int32 Round = 0; Round < 2; ++Round)
		{
			History.UndoAllChanges(Conversation.Id);
			TestFalse(TEXT("nothing is left to undo"), History.UndoAllChanges(Conversation.Id));
			KestrelTest::TestSameText(
				*this, TEXT("undone"), FFileUtils::ReadFile(Folder.Full(TEXT("a.txt"))), TEXT("first"));
			History.RedoAllChanges(Conversation.Id);
			TestFalse(TEXT("redone"), FPaths::FileExists(Folder.Full(TEXT("a.txt"))));
		}
	});

	It("redoes changes behind links that were deleted afterwards", [this]() {
		const FKestrelTestFolder Folder;
		const FString File = Folder.Full(TEXT("a.txt"));
		const FString Links[] = { Folder.Full(TEXT("link.txt")), Folder.Full(TEXT("other.txt")) };
		Folder.Write(TEXT("a.txt"), TEXT("first"));
		const FileHistoryTest::FConversation Conversation;
		FFileHistory& History = FFileHistory::Get();
		Conversation.Create(File, TEXT("one"));
		for (const FString& Link : Links)
		{
			KestrelNativeFile::MakeLink(Link, File);
			Conversation.Create(Link, FPaths::GetBaseFilename(Link));
		}
		for (const FString& Link : Links)
		{
			Conversation.Delete(Link);
		}
		for (int32 Round = 0; Round < 2; ++Round)
		{
			History.UndoAllChanges(Conversation.Id);
			KestrelTest::TestSameText(*this, TEXT("undone"), FFileUtils::ReadFile(Links[0]), TEXT("first"));
			TestFalse(TEXT("nothing is left to undo"), History.GetFileHistories().Contains(Conversation.Id));
			History.RedoAllChanges(Conversation.Id);
			KestrelTest::TestSameText(*this, TEXT("redone"), FFileUtils::ReadFile(File), TEXT("other"));
			TestFalse(TEXT("links"), FPaths::FileExists(Links[0]) || FPaths::FileExists(Links[1]));
			TestFalse(TEXT("nothing is left to redo"), History.GetRedoHistories().Contains(Conversation.Id));
		}
	});

	It("keeps a text that somebody else has written between", [this]() {
		using FTell = void (*)(const FileHistoryTest::FConversation& Conversation, const FKestrelTestFolder& Folder);
		const TPair<const TCHAR*, FTell> Stories[] = {
			{ TEXT("after the deletion of a file"),
				[](const FileHistoryTest::FConversation& Conversation, const FKestrelTestFolder& Folder) {
					Conversation.Delete(Folder.Full(TEXT("a.txt")));
					Folder.Write(TEXT("a.txt"), TEXT("work"));
					FFileHistory::Get().UndoAllChanges(Conversation.Id);
				} },
			{ TEXT("between two changes"),
				[](const FileHistoryTest::FConversation& Conversation, const FKestrelTestFolder& Folder) {
					Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("one"));
					Folder.Write(TEXT("a.txt"), TEXT("work"));
					KestrelTest::UseTool(
						TEXT("insert_into_file"), { TEXT("path"), Folder.Full(TEXT("a.txt")), TEXT("insert_line"),
													  TEXT("0"), TEXT("new_string"), TEXT("top") });
					FFileHistory::Get().UndoAllChanges(Conversation.Id);
				} },
			{ TEXT("between two changes, of which the second deletes it"),
				[](const FileHistoryTest::FConversation& Conversation, const FKestrelTestFolder& Folder) {
					Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("one"));
					Folder.Write(TEXT("a.txt"), TEXT("work"));
					Conversation.Delete(Folder.Full(TEXT("a.txt")));
					FFileHistory::Get().UndoAllChanges(Conversation.Id);
				} },
			{ TEXT("between two changes, of which the second is the way back"),
				[](const FileHistoryTest::FConversation& Conversation, const FKestrelTestFolder& Folder) {
					Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("one"));
					Folder.Write(TEXT("a.txt"), TEXT("work"));
					Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("first"));
					FFileHistory::Get().UndoAllChanges(Conversation.Id);
				} },
			{ TEXT("between two changes by two paths"),
				[](const FileHistoryTest::FConversation& Conversation, const FKestrelTestFolder& Folder) {
					Conversation.Create(Folder.Full(TEXT("link.txt")), TEXT("one"));
					Folder.Write(TEXT("a.txt"), TEXT("work"));
					Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("two"));
					FFileHistory::Get().UndoAllChanges(Conversation.Id);
				} },
			{ TEXT("behind a link that was deleted after the change"),
				[](const FileHistoryTest::FConversation& Conversation, const FKestrelTestFolder& Folder) {
					Conversation.Create(Folder.Full(TEXT("link.txt")), TEXT("one"));
					Conversation.Delete(Folder.Full(TEXT("link.txt")));
					Folder.Write(TEXT("a.txt"), TEXT("work"));
					FFileHistory::Get().UndoAllChanges(Conversation.Id);
				} },
			{ TEXT("to a file that a deleted link led to"),
				[](const FileHistoryTest::FConversation& Conversation, const FKestrelTestFolder& Folder) {
					Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("one"));
					Conversation.Delete(Folder.Full(TEXT("link.txt")));
					Folder.Write(TEXT("a.txt"), TEXT("work"));
					FFileHistory::Get().UndoAllChanges(Conversation.Id);
				} },
			{ TEXT("behind a link that somebody has led elsewhere"),
				[](const FileHistoryTest::FConversation& Conversation, const FKestrelTestFolder& Folder) {
					Conversation.Create(Folder.Full(TEXT("link.txt")), TEXT("one"));
					IFileManager::Get().Delete(*Folder.Full(TEXT("link.txt")));
					Folder.Write(TEXT("b.txt"), TEXT("other"));
					KestrelNativeFile::MakeLink(Folder.Full(TEXT("link.txt")), Folder.Full(TEXT("b.txt")));
					Folder.Write(TEXT("a.txt"), TEXT("work"));
					FFileHistory::Get().UndoAllChanges(Conversation.Id);
				} },
			{ TEXT("after an undo"),
				[](const FileHistoryTest::FConversation& Conversation, const FKestrelTestFolder& Folder) {
					Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("one"));
					FFileHistory::Get().UndoAllChanges(Conversation.Id);
					Folder.Write(TEXT("a.txt"), TEXT("work"));
					FFileHistory::Get().RedoAllChanges(Conversation.Id);
				} },
		};
		for (const TPair<const TCHAR*, FTell>& Story : Stories)
		{
			const FKestrelTestFolder Folder;
			Folder.Write(TEXT("a.txt"), TEXT("first"));
			KestrelNativeFile::MakeLink(Folder.Full(TEXT("link.txt")), Folder.Full(TEXT("a.txt")));
			TArray<FString> Kept;
			const TGuardValue<FOnTextKeptDelegate> Guard(FFileHistory::Get().OnTextKept,
				FOnTextKeptDelegate::CreateLambda([&Kept](const FString&, const FString& Copy) { Kept.Add(Copy); }));
			Story.Value(FileHistoryTest::FConversation(), Folder);
			if (TestEqual(Story.Key, Kept.Num(), 1))
			{
				KestrelTest::TestSameText(*this, Story.Key, FFileUtils::ReadFile(Kept[0]), TEXT("work"));
				IFileManager::Get().DeleteDirectory(*FPaths::GetPath(Kept[0]), false, true);
			}
		}
	});

	It("keeps no copies of its own texts, even when two paths lead to one file", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("first"));
		KestrelNativeFile::MakeLink(Folder.Full(TEXT("link.txt")), Folder.Full(TEXT("a.txt")));
		int32 NumKept = 0;
		const TGuardValue<FOnTextKeptDelegate> Guard(FFileHistory::Get().OnTextKept,
			FOnTextKeptDelegate::CreateLambda([&NumKept](const FString&, const FString&) { ++NumKept; }));
		const FileHistoryTest::FConversation Conversation;
		for (const TCHAR* Name : { TEXT("a.txt"), TEXT("link.txt"), TEXT("a.txt") })
		{
			Conversation.Create(Folder.Full(Name), FGuid::NewGuid().ToString());
		}
		Conversation.Delete(Folder.Full(TEXT("link.txt")));
		Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("last"));
		for (int32 Round = 0; Round < 2; ++Round)
		{
			FFileHistory::Get().UndoAllChanges(Conversation.Id);
			KestrelTest::TestSameText(
				*this, TEXT("undone"), FFileUtils::ReadFile(Folder.Full(TEXT("a.txt"))), TEXT("first"));
			FFileHistory::Get().RedoAllChanges(Conversation.Id);
		}
		TestEqual(TEXT("copies"), NumKept, 0);
	});

	It("leaves what is behind a deleted link alone", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("first"));
		if (!KestrelNativeFile::MakeLink(Folder.Full(TEXT("link.txt")), Folder.Full(TEXT("a.txt"))))
		{
			return;
		}
		for (const bool bCreatesFileInstead : { false, true })
		{
			const FileHistoryTest::FConversation Conversation;
			Conversation.Delete(Folder.Full(TEXT("link.txt")));
			if (bCreatesFileInstead)
			{
				Conversation.Create(Folder.Full(TEXT("link.txt")), TEXT("new"));
			}
			Folder.Write(TEXT("a.txt"), TEXT("work"));
			FFileHistory::Get().UndoAllChanges(Conversation.Id);
			KestrelTest::TestSameText(
				*this, TEXT("text"), FFileUtils::ReadFile(Folder.Full(TEXT("a.txt"))), TEXT("work"));
			KestrelTest::TestSameText(*this, TEXT("link"), KestrelNativeFile::ReadLink(Folder.Full(TEXT("link.txt"))),
				Folder.Full(TEXT("a.txt")));
			TestFalse(
				TEXT("something left"), FFileHistory::Get().CanUndo(Conversation.Id, Folder.Full(TEXT("link.txt"))));
		}
	});

	It("undoes and redoes nothing behind a link that leads on to another file", [this]() {
		const FKestrelTestFolder Folder;
		const FString Middle = Folder.Full(TEXT("middle.txt"));
		const FString Link = Folder.Full(TEXT("link.txt"));
		const auto LeadTo = [&Middle, &Folder](const TCHAR* Name) {
			IFileManager::Get().Delete(*Middle);
			return KestrelNativeFile::MakeLink(Middle, Folder.Full(Name));
		};
		Folder.Write(TEXT("a.txt"), TEXT("first"));
		Folder.Write(TEXT("victim.txt"), TEXT("victim"));
		if (!LeadTo(TEXT("a.txt")) || !KestrelNativeFile::MakeLink(Link, Middle))
		{
			return;
		}
		const auto TestVictim = [this, &Folder](const TCHAR* What) {
			KestrelTest::TestSameText(
				*this, What, FFileUtils::ReadFile(Folder.Full(TEXT("victim.txt"))), TEXT("victim"));
		};
		const FileHistoryTest::FConversation Conversation;
		FFileHistory& History = FFileHistory::Get();
		Conversation.Create(Link, TEXT("new"));
		LeadTo(TEXT("victim.txt"));
		TestFalse(TEXT("undone"), History.UndoAllChanges(Conversation.Id));
		TestVictim(TEXT("after undo"));
		LeadTo(TEXT("a.txt"));
		TestTrue(TEXT("undone where it was"), History.UndoAllChanges(Conversation.Id));
		KestrelTest::TestSameText(*this, TEXT("file"), FFileUtils::ReadFile(Folder.Full(TEXT("a.txt"))), TEXT("first"));
		LeadTo(TEXT("victim.txt"));
		TestFalse(TEXT("redone"), History.RedoAllChanges(Conversation.Id));
		TestVictim(TEXT("after redo"));
	});

	It("undoes nothing behind a folder that has become a link", [this]() {
		const FKestrelTestFolder Folder;
		const FKestrelTestFolder Other;
		Folder.Write(TEXT("in/a.txt"), TEXT("first"));
		Other.Write(TEXT("a.txt"), TEXT("victim"));
		const FileHistoryTest::FConversation Conversation;
		Conversation.Create(Folder.Full(TEXT("in/a.txt")), TEXT("new"));
		IFileManager::Get().DeleteDirectory(*Folder.Full(TEXT("in")), false, true);
		if (KestrelNativeFile::MakeLink(Folder.Full(TEXT("in")), Other.Path))
		{
			FFileHistory::Get().UndoAllChanges(Conversation.Id);
			KestrelTest::TestSameText(
				*this, TEXT("victim"), FFileUtils::ReadFile(Other.Full(TEXT("a.txt"))), TEXT("victim"));
		}
	});

	It("keeps what could not be undone, to be tried again", [this]() {
		const FKestrelTestFolder Folder;
		const FileHistoryTest::FConversation Conversation;
		Folder.Write(TEXT("in/a.txt"), TEXT("old"));
		Conversation.Delete(Folder.Full(TEXT("in/a.txt")));
		IFileManager::Get().DeleteDirectory(*Folder.Full(TEXT("in")));
		Folder.Write(TEXT("in"), TEXT("a file where the folder was"));

		FFileHistory& History = FFileHistory::Get();
		TestFalse(TEXT("undo"), History.UndoAllChanges(Conversation.Id));
		TestTrue(TEXT("can be tried again"), History.CanUndo(Conversation.Id, Folder.Full(TEXT("in/a.txt"))));
		TestFalse(TEXT("is not to be redone"), History.CanRedo(Conversation.Id, Folder.Full(TEXT("in/a.txt"))));
		IFileManager::Get().Delete(*Folder.Full(TEXT("in")));
		TestTrue(TEXT("undo again"), History.UndoAllChanges(Conversation.Id));
		KestrelTest::TestSameText(
			*this, TEXT("file"), FFileUtils::ReadFile(Folder.Full(TEXT("in/a.txt"))), TEXT("old"));
	});

	It("undoes five hundred files in one go", [this]() {
		const FKestrelTestFolder Folder;
		for (int32 Index = 0; Index < 500; ++Index)
		{
			Folder.Write(FString::Printf(TEXT("%d.txt"), Index), FString::Printf(TEXT("old %d"), Index));
		}
		const FString Before = FileHistoryTest::Snapshot(Folder);
		const FileHistoryTest::FConversation Conversation;
		for (int32 Index = 0; Index < 500; ++Index)
		{
			const FString File = Folder.Full(FString::Printf(TEXT("%d.txt"), Index));
			Index % 2 == 0 ? Conversation.Create(File, TEXT("new")) : Conversation.Delete(File);
		}
		TestTrue(TEXT("changed"), FileHistoryTest::Snapshot(Folder) != Before);
		FFileHistory::Get().UndoAllChanges(Conversation.Id);
		TestTrue(TEXT("as before"), FileHistoryTest::Snapshot(Folder).Equals(Before));
	});
}

DEFINE_SPEC(FKestrelUndoSpec, "Kestrel.Undo", KestrelTest::Flags)
void FKestrelUndoSpec::Define()
{
	It("moves the conversation from one button to the other, and compiles", [this]() {
		const FKestrelTestFolder Folder;
		const FKestrelPanelRecorder Recorder;
		FKestrelInterface& Interface = FKestrelInterface::Get();
		const FileHistoryTest::FConversation Conversation;
		TestFalse(TEXT("nothing yet"), Interface.CanUndo() || Interface.CanRedo());
		Conversation.Create(Folder.Full(TEXT("a.txt")), TEXT("x"));
		TestTrue(TEXT("undo is offered"), Interface.CanUndo() && !Interface.CanRedo());
		Interface.UndoLastOperation();
		TestFalse(TEXT("undone"), FPaths::FileExists(Folder.Full(TEXT("a.txt"))));
		TestTrue(TEXT("redo is offered"), Interface.CanRedo() && !Interface.CanUndo());
		Interface.RedoLastOperation();
		KestrelTest::TestSameText(*this, TEXT("redone"), FFileUtils::ReadFile(Folder.Full(TEXT("a.txt"))), TEXT("x"));
		TestTrue(TEXT("undo is offered again"), Interface.CanUndo() && !Interface.CanRedo());

		// This project has no code, so the compiles are refused; that they were asked for is what counts here.
		TArray<FString> Asked;
		for (const TSharedPtr<FJsonValue>& Result : FAgent::Get().GetToolResults())
		{
			Asked.Add(Result->AsObject()->GetStringField(TEXT("tool_use_id")));
		}
		KestrelTest::TestSameText(*this, TEXT("compiles"), FString::Join(Asked, TEXT(" ")), TEXT("Undo Redo"));
		TestTrue(TEXT("says so"), Recorder.GetTexts().Contains(TEXT("Undoing Last Changes...")) &&
									  Recorder.GetTexts().Contains(TEXT("Redoing Last Changes...")));
	});

	It("undoes what a conversation changes after an undo, and does not redo the old change", [this]() {
		const FKestrelTestFolder Folder;
		const FKestrelPanelRecorder Recorder;
		FKestrelInterface& Interface = FKestrelInterface::Get();
		const FileHistoryTest::FConversation Conversation;
		const FString File = Folder.Full(TEXT("a.txt"));
		Folder.Write(TEXT("a.txt"), TEXT("old"));
		Conversation.Create(File, TEXT("first try"));
		Interface.UndoLastOperation();
		Conversation.Create(File, TEXT("second try"));
		TestTrue(TEXT("undo is offered, redo is not"), Interface.CanUndo() && !Interface.CanRedo());
		Interface.RedoLastOperation();
		KestrelTest::TestSameText(*this, TEXT("not overwritten"), FFileUtils::ReadFile(File), TEXT("second try"));
		Interface.UndoLastOperation();
		KestrelTest::TestSameText(*this, TEXT("undone"), FFileUtils::ReadFile(File), TEXT("old"));
		Interface.UndoLastOperation();
		TestTrue(TEXT("an undo of nothing leaves the redo"), Interface.CanRedo());
		Interface.RedoLastOperation();
		KestrelTest::TestSameText(*this, TEXT("redone"), FFileUtils::ReadFile(File), TEXT("second try"));
	});
}
