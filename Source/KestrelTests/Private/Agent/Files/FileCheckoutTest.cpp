#include "Agent/Agent.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Support/TestLocking.h"

namespace FileCheckoutTest
{
const TCHAR* const Conversation = TEXT("file-checkout");

/** A folder of files that revision control keeps read-only, and a conversation that changes them. */
class FCheckedInFolder
{
public:
	FCheckedInFolder()
	{
		FAgent::Get().SetConversationId(Conversation);
		for (const TCHAR* Name : { TEXT("Free.h"), TEXT("Refused.h"), TEXT("Taken.h") })
		{
			Folder.Write(Name, TEXT("one"));
			SetReadOnly(Name, true);
		}
	}
	~FCheckedInFolder()
	{
		for (const TCHAR* Name : { TEXT("Free.h"), TEXT("Refused.h"), TEXT("Taken.h") })
		{
			SetReadOnly(Name, false);
		}
		FFileHistory::Get().UndoAllChanges(Conversation);
		FFileHistory::Get().ForgetRedo(Conversation);
		FAgent::Get().ClearConversationId();
	}
	UE_NONCOPYABLE(FCheckedInFolder)

	void SetReadOnly(const TCHAR* Name, bool bReadOnly) const
	{
		FPlatformFileManager::Get().GetPlatformFile().SetReadOnly(*Folder.Full(Name), bReadOnly);
	}
	bool IsReadOnly(const TCHAR* Name) const
	{
		return FPlatformFileManager::Get().GetPlatformFile().IsReadOnly(*Folder.Full(Name));
	}
	FString Read(const TCHAR* Name) const { return FFileUtils::ReadFile(Folder.Full(Name)); }
	bool IsCheckedOut(const TCHAR* Name) const
	{
		return FKestrelTestLocking::GetState(Folder.Full(Name))->IsCheckedOut();
	}

	const FKestrelTestFolder Folder;
};

/** A tool that changes a file; "%s" stands for the folder and "%f" for the file. */
struct FToolCase
{
	const TCHAR* Tool;
	TArray<FString> Fields;
	const TCHAR* After;
};

const TArray<FToolCase>& GetToolCases()
{
	static const TArray<FToolCase> Cases = {
		{ TEXT("update_file"),
			{ TEXT("path"), TEXT("%s/%f"), TEXT("old_string"), TEXT("one"), TEXT("new_string"), TEXT("two") },
			TEXT("two") },
		{ TEXT("insert_into_file"),
			{ TEXT("path"), TEXT("%s/%f"), TEXT("insert_line"), TEXT("1"), TEXT("new_string"), TEXT("two") },
			TEXT("one\ntwo\n") },
		{ TEXT("create_file"), { TEXT("path"), TEXT("%s/%f"), TEXT("file_text"), TEXT("two") }, TEXT("two") },
		{ TEXT("create_cpp_file"),
			{ TEXT("filepath"), TEXT("%s"), TEXT("filename"), TEXT("%f"), TEXT("contents"), TEXT("two") },
			TEXT("two") },
		{ TEXT("update_and_replace_cpp_file"),
			{ TEXT("filepath"), TEXT("%s"), TEXT("filename"), TEXT("%f"), TEXT("contents"), TEXT("two") },
			TEXT("two") },
	};
	return Cases;
}

FString Use(const FToolCase& Case, const FCheckedInFolder& Files, const TCHAR* Name)
{
	TArray<FString> Fields = Case.Fields;
	for (FString& Field : Fields)
	{
		Field = Field.Replace(TEXT("%s"), *Files.Folder.Name).Replace(TEXT("%f"), Name);
	}
	return KestrelTest::UseTool(Case.Tool, Fields);
}
}

DEFINE_SPEC(FKestrelFileCheckoutSpec, "Kestrel.FileCheckout", KestrelTest::Flags)
void FKestrelFileCheckoutSpec::Define()
{
	using namespace FileCheckoutTest;

	for (const FToolCase& Case : GetToolCases())
	{
		It(FString(TEXT("comes before the change of ")) + Case.Tool, [this, &Case]() {
			const FKestrelTestLocking Locking;
			const FKestrelTestLog Log;
			const FCheckedInFolder Files;
			if (!Locking.IsThere())
			{
				return;
			}
			TestFalse(TEXT("checked out before"), Files.IsCheckedOut(TEXT("Free.h")));
			const FString Result = Use(Case, Files, TEXT("Free.h"));
			TestFalse(Result, FFileUtils::IsError(Result));
			TestTrue(TEXT("checked out"), Files.IsCheckedOut(TEXT("Free.h")));
			KestrelTest::TestSameText(*this, TEXT("text"), Files.Read(TEXT("Free.h")), Case.After);
		});

		It(FString(TEXT("that is not given stops ")) + Case.Tool, [this, &Case]() {
			const FKestrelTestLocking Locking;
			const FKestrelTestLog Log;
			const FCheckedInFolder Files;
			if (!Locking.IsThere())
			{
				return;
			}
			for (const TCHAR* Name : { TEXT("Refused.h"), TEXT("Taken.h") })
			{
				const FString Result = Use(Case, Files, Name);
				TestTrue(Result, FFileUtils::IsError(Result) && Result.Contains(Files.Folder.Full(Name)));
				TestTrue(TEXT("is as it was"), Files.IsReadOnly(Name) && !Files.IsCheckedOut(Name));
				KestrelTest::TestSameText(*this, Name, Files.Read(Name), TEXT("one"));
			}
		});
	}

	It("is not asked for when nothing would change", [this]() {
		const FKestrelTestLocking Locking;
		const FCheckedInFolder Files;
		if (!Locking.IsThere())
		{
			return;
		}
		KestrelTest::UseTool(TEXT("update_file"), { TEXT("path"), Files.Folder.Full(TEXT("Free.h")), TEXT("old_string"),
													  TEXT("none"), TEXT("new_string"), TEXT("two") });
		KestrelTest::UseTool(TEXT("read_file"), { TEXT("path"), Files.Folder.Full(TEXT("Free.h")) });
		TestFalse(TEXT("checked out"), Files.IsCheckedOut(TEXT("Free.h")));
	});

	It("is not needed for a new file, which is marked for add until it is undone", [this]() {
		const FKestrelTestLocking Locking;
		const FKestrelTestLog Log;
		const FCheckedInFolder Files;
		if (!Locking.IsThere())
		{
			return;
		}
		const FString File = Files.Folder.Full(TEXT("New.txt"));
		KestrelTest::UseTool(TEXT("create_file"), { TEXT("path"), File, TEXT("file_text"), TEXT("new") });
		TestTrue(TEXT("added"), FKestrelTestLocking::GetState(File)->IsAdded());
		TestTrue(TEXT("known as such"), FFileUtils::GetRevisionControl(File) == EKestrelRevisionControl::Added);
		FFileHistory::Get().UndoAllChanges(Conversation);
		TestFalse(TEXT("the file is there"), FPaths::FileExists(File));
		TestFalse(TEXT("still marked"), FKestrelTestLocking::GetState(File)->IsAdded());
		FFileHistory::Get().RedoAllChanges(Conversation);
		TestTrue(TEXT("there again"), FPaths::FileExists(File));
		TestTrue(TEXT("marked again"), FKestrelTestLocking::GetState(File)->IsAdded());
	});

	It("is not what deletes a file: revision control is told", [this]() {
		const FKestrelTestLocking Locking;
		const FKestrelTestLog Log;
		const FCheckedInFolder Files;
		if (!Locking.IsThere())
		{
			return;
		}
		const FString File = Files.Folder.Full(TEXT("Free.h"));
		const FString Result = KestrelTest::UseTool(TEXT("delete_file"), { TEXT("path"), File });
		KestrelTest::TestSameText(*this, TEXT("result"), Result, TEXT("Successfully deleted file: ") + File);
		TestFalse(TEXT("there"), FPaths::FileExists(File));
		TestTrue(TEXT("marked for deletion"), FKestrelTestLocking::GetState(File)->IsDeleted());
		FFileHistory::Get().UndoAllChanges(Conversation);
		KestrelTest::TestSameText(*this, TEXT("undone"), Files.Read(TEXT("Free.h")), TEXT("one"));
		TestFalse(TEXT("no longer marked"), FKestrelTestLocking::GetState(File)->IsDeleted());
	});

	It("answers for itself, with and without a provider", [this]() {
		const FCheckedInFolder Files;
		const FString File = Files.Folder.Full(TEXT("Free.h"));
		for (const FString& Answer : { FFileUtils::CheckoutFileFromSourceControl(File),
				 FFileUtils::AddNewFileToSourceControl(File), FFileUtils::RemoveFileFromSourceControl(File, true) })
		{
			KestrelTest::TestSameText(*this, TEXT("none"), Answer, TEXT("Source control is not available"));
		}
		const FKestrelTestLocking Locking;
		if (!Locking.IsThere())
		{
			return;
		}
		KestrelTest::TestSameText(*this, TEXT("out"), FFileUtils::CheckoutFileFromSourceControl(File),
			FString::Printf(TEXT("Successfully checked out %s from source control"), *File));
		KestrelTest::TestSameText(*this, TEXT("out again"), FFileUtils::CheckoutFileFromSourceControl(File),
			FString::Printf(TEXT("File %s cannot be checked out (it may already be checked out)"), *File));
		const FString Refused = Files.Folder.Full(TEXT("Refused.h"));
		KestrelTest::TestSameText(*this, TEXT("refused"), FFileUtils::CheckoutFileFromSourceControl(Refused),
			FString::Printf(TEXT("Failed to check out %s from source control"), *Refused));
		KestrelTest::TestSameText(*this, TEXT("known already"), FFileUtils::AddNewFileToSourceControl(File),
			FString::Printf(TEXT("File %s cannot be added to source control"), *File));
		const FString New = Files.Folder.Full(TEXT("New.h"));
		KestrelTest::TestSameText(*this, TEXT("unknown"), FFileUtils::RemoveFileFromSourceControl(New, true),
			FString::Printf(TEXT("File %s is not under source control, nothing to remove"), *New));
	});
}
