#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/FileHistory.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/KeyGuard.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Files/NearMatch.h"
#include "Agent/Files/PathReview.h"
#include "Agent/Files/TreeWork.h"
#include "Agent/Project/TreeReview.h"
#include "Agent/Tools/ToolPlan.h"
#include "Agent/Work/TextWork.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"

#define LOCTEXT_NAMESPACE "KestrelFileTools"

namespace FileTools
{
const TCHAR* const PathDescription = TEXT("The file, relative to the project directory or absolute.");
const FKestrelToolField Path = { TEXT("path"), EKestrelFieldType::Text, PathDescription };
const FKestrelToolField OnlyPath = { Path.Name, EKestrelFieldType::Text, PathDescription, EKestrelPresence::Required,
	TEXT("Error: Missing required path field") };
const FKestrelToolField FileText = { TEXT("file_text"), EKestrelFieldType::Text, TEXT("The file's whole text.") };
const FKestrelToolField CppFolder = { TEXT("filepath"), EKestrelFieldType::Text,
	TEXT("The file's folder, relative to the project directory or absolute.") };
const FKestrelToolField CppName = { TEXT("filename"), EKestrelFieldType::Text,
	TEXT("The file's name with its extension.") };
const FKestrelToolField Contents = { TEXT("contents"), EKestrelFieldType::Text, TEXT("The file's whole text.") };
const FKestrelToolField OldString = { TEXT("old_string"), EKestrelFieldType::Text,
	TEXT("The text to replace, wherever it occurs; case-sensitive.") };
const FKestrelToolField NewString = { TEXT("new_string"), EKestrelFieldType::Text, TEXT("The new text.") };
const FKestrelToolField InsertLine = { TEXT("insert_line"), EKestrelFieldType::WholeNumberText,
	TEXT("How many lines stay above the new text: 0 puts it at the top.") };
const FKestrelToolField ViewRange = { TEXT("view_range"), EKestrelFieldType::LineRange,
	TEXT("The first and the last line to read, counted from 1; -1 as the last means the end of the file."),
	EKestrelPresence::Optional };
const FKestrelToolField DirPath = { TEXT("dir_path"), EKestrelFieldType::Text,
	TEXT("The folder, relative to the project directory."), EKestrelPresence::Required,
	TEXT("Error: Missing dir_path field") };

FString GetFullPath(const FKestrelToolPlan& Plan)
{
	return FFileUtils::ToAbsolutePath(Plan.Input.Get(Path));
}

/** The C++ tools are given a path in two fields. */
FString GetFullCppPath(const FKestrelToolPlan& Plan)
{
	return FFileUtils::ToAbsolutePath(FPaths::Combine(Plan.Input.Get(CppFolder), Plan.Input.Get(CppName)));
}

/**
 * The file that the tool changes. The user's settings are none: their key would get into copies, records and logs.
 *
 * @return false, with the refusal set, for a file that must not be changed
 */
bool SetChangedFile(FKestrelProjectView& View, const FString& FullPath, FKestrelToolPlan& Plan)
{
	Plan.SetFile(View, FullPath);
	if (KestrelKeyGuard::IsKeptIn(Plan.RealPath))
	{
		Plan.Refuse(FFileUtils::MakeError(TEXT("File can hold your API key and is not changed by tools"), FullPath));
	}
	return Plan.Refusal.IsEmpty();
}

/** What the tool leaves behind, for those after it; what is too long to be shown is not kept either. */
void LeaveChange(FKestrelProjectView& View, const FKestrelToolPlan& Plan)
{
	if (!Plan.Change.IsSet() || Plan.Change->After.Len() > FKestrelProjectView::MaxShownLength)
	{
		View.WriteUnseen(Plan.FilePath);
	}
	else
	{
		View.Write(Plan.FilePath, Plan.Change->After);
	}
}

/** @return false, with the refusal set, when there is no text that could be changed and brought back */
bool ExpectText(const FKestrelFileState& State, FKestrelToolPlan& Plan)
{
	Plan.Expect(State);
	if (!State.bExists)
	{
		Plan.Refuse(FFileUtils::MakeError(TEXT("File does not exist"), Plan.FilePath));
	}
	else if (State.bIsTooLarge)
	{
		Plan.Refuse(FFileUtils::MakeError(TEXT("File is larger than 256 MB and was left as it is"), Plan.FilePath));
	}
	else if (!State.bIsRead && !State.bIsBeyondLimits)
	{
		Plan.Refuse(FFileUtils::MakeError(TEXT("Failed to read file"), Plan.FilePath));
	}
	return Plan.Refusal.IsEmpty();
}

void NoteEncoding(const FString& After, FKestrelToolPlan& Plan)
{
	if (FFileUtils::IsSavedAsUtf16(After))
	{
		Plan.Notes.Add(LOCTEXT("Utf16", "saved as UTF-16, which not every compiler accepts"));
	}
}

/** Why a file cannot be created, as far as that can be seen; empty when it should work. */
FString PredictCreation(const FString& FullPath, FKestrelProjectView& View)
{
	constexpr int32 MaxNameBytes = 255; // of the usual file systems
	constexpr int32 MaxNewFolders = 64; // nobody needs as many, and each is looked at several times
	const FString Folder = FPaths::GetPath(FullPath);
	if (KestrelNativeFile::IsTooLong(FullPath))
	{
		return FFileUtils::MakeError(TEXT("Failed to create directory"), Folder);
	}
	int32 NumNewFolders = 0;
	for (FString Above = Folder; !Above.IsEmpty() && !FPaths::DirectoryExists(Above); Above = FPaths::GetPath(Above))
	{
		if (++NumNewFolders > MaxNewFolders || View.Exists(Above) || KestrelNativeFile::IsDanglingLink(Above) ||
			FTCHARToUTF8(*FPaths::GetCleanFilename(Above)).Length() > MaxNameBytes)
		{
			return FFileUtils::MakeError(TEXT("Failed to create directory"), Folder);
		}
	}
	const FString Name = FPaths::GetCleanFilename(FullPath);
	const bool bNameFits = !Name.IsEmpty() && FTCHARToUTF8(*Name).Length() <= MaxNameBytes;
	// What a dangling link leads to may lie anywhere.
	return bNameFits && !View.IsFolder(FullPath) && !KestrelNativeFile::IsDanglingLink(FullPath)
			   ? FString()
			   : FFileUtils::MakeError(TEXT("Failed to create file"), FullPath);
}

void PlanReplacement(const FString& Text, FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	Plan.Kind = EKestrelToolKind::Change;
	Plan.Verb = LOCTEXT("Replace", "Replace");
	Plan.Operation = EKestrelFileOperation::Replace;
	const FKestrelFileState& State = View.Look(Plan.FilePath);
	if (ExpectText(State, Plan))
	{
		Plan.SetChange(View, State.Text, Text);
		LeaveChange(View, Plan);
	}
}

void PlanCreation(const FString& Text, FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	Plan.Operation = EKestrelFileOperation::Create;
	Plan.Expect(View.Look(Plan.FilePath));
	const FString Problem = PredictCreation(Plan.FilePath, View);
	if (!Problem.IsEmpty())
	{
		Plan.Refuse(Problem);
		return;
	}
	Plan.SetChange(View, FString(), Text);
	NoteEncoding(Text, Plan);
	LeaveChange(View, Plan);
}

void PlanCreateFile(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	if (!SetChangedFile(View, GetFullPath(Plan), Plan))
	{
		return;
	}
	const FString& Text = Plan.Input.Get(FileText);
	if (View.Exists(Plan.FilePath))
	{
		PlanReplacement(Text, View, Plan);
	}
	else if (FPaths::GetCleanFilename(Plan.FilePath).IsEmpty())
	{
		Plan.Refuse(TEXT("Error: The provided path must include a filename"));
	}
	else
	{
		PlanCreation(Text, View, Plan);
	}
}

/** To create a file that exists means to replace it. */
void PlanCreateCpp(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	if (!SetChangedFile(View, GetFullCppPath(Plan), Plan))
	{
		return;
	}
	if (View.Exists(Plan.FilePath))
	{
		Plan.Status = KestrelTools::Find(KestrelToolNames::ReplaceCpp)->Status;
		PlanReplacement(Plan.Input.Get(Contents), View, Plan);
	}
	else
	{
		PlanCreation(Plan.Input.Get(Contents), View, Plan);
	}
}

void PlanReplaceCpp(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	if (!SetChangedFile(View, GetFullCppPath(Plan), Plan))
	{
		return;
	}
	PlanReplacement(Plan.Input.Get(Contents), View, Plan);
}

/** @return false, with the refusal set, when the file cannot be edited as text */
bool ExpectEditableText(const FKestrelFileState& State, FKestrelToolPlan& Plan)
{
	if (ExpectText(State, Plan) && State.Content == KestrelTextFile::EContent::Binary)
	{
		Plan.Refuse(FFileUtils::MakeError(FFileUtils::BytesAreNoText, Plan.FilePath));
	}
	return Plan.Refusal.IsEmpty() && !State.bIsBeyondLimits;
}

/**
 * How long a text can become at most. A match may be shorter than the old string, which can have four spaces where the
 * text has a tab.
 */
int64 GetLongestResult(const FString& Text, const FString& Old, const FString& New)
{
	constexpr int32 SpacesPerTab = 4;
	const int64 ShortestMatch = FMath::Max(1, Old.Len() / SpacesPerTab);
	return Text.Len() + FMath::Max<int64>(0, New.Len() - ShortestMatch) * (Text.Len() / ShortestMatch);
}

/**
 * How long the replacements would make the text. Old strings of a character and new ones of many can make more of a
 * file than memory holds, so they are counted before any of it is made.
 */
int64 CountResult(const FString& Text, FKestrelToolPlan& Plan)
{
	FString Rest;
	int32 NumReplacements = 0;
	const FString Error =
		FFileUtils::ReplaceInText(Plan.FilePath, Text, Plan.Input.Get(OldString), FString(), Rest, NumReplacements);
	return Error.IsEmpty() ? Rest.Len() + static_cast<int64>(NumReplacements) * Plan.Input.Get(NewString).Len() : 0;
}

/** @return false, with the refusal or the mark set, when the text would become too long to be written, or shown */
bool ExpectLength(const FString& Text, const FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	if (GetLongestResult(Text, Plan.Input.Get(OldString), Plan.Input.Get(NewString)) <= View.GetRoom())
	{
		return true;
	}
	const int64 Length = CountResult(Text, Plan);
	if (Length > FKestrelProjectView::MaxTextLength)
	{
		Plan.Refuse(FFileUtils::MakeError(TEXT("File would become larger than 256 MB"), Plan.FilePath));
	}
	else if (Length > View.GetRoom())
	{
		Plan.LeaveForLater();
	}
	return Length <= View.GetRoom();
}

void PlanUpdate(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	Plan.Operation = EKestrelFileOperation::Update;
	if (!SetChangedFile(View, GetFullPath(Plan), Plan))
	{
		return;
	}
	const FKestrelFileState& State = View.Look(Plan.FilePath);
	if (!ExpectEditableText(State, Plan))
	{
		return;
	}
	if (!ExpectLength(State.Text, View, Plan))
	{
		if (Plan.bIsBeyondLimits)
		{
			View.WriteUnseen(Plan.FilePath);
		}
		return;
	}
	FString After;
	int32 NumReplacements = 0;
	Plan.Refusal = FFileUtils::ReplaceInText(
		Plan.FilePath, State.Text, Plan.Input.Get(OldString), Plan.Input.Get(NewString), After, NumReplacements);
	if (!Plan.Refusal.IsEmpty())
	{
		const FText NearMatch = View.HasTimeForNotes()
									? KestrelNearMatch::Describe(State.Text, Plan.Input.Get(OldString))
									: FText::GetEmpty();
		if (!NearMatch.IsEmpty())
		{
			Plan.Notes.Add(NearMatch);
		}
		return; // and yet it runs: a text that nearly matches has the file checked out
	}
	Plan.NumReplacements = NumReplacements;
	Plan.SetChange(View, View.TakeText(Plan.FilePath), MoveTemp(After));
	LeaveChange(View, Plan);
}

void PlanInsertion(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	Plan.Operation = EKestrelFileOperation::Insert;
	if (!SetChangedFile(View, GetFullPath(Plan), Plan))
	{
		return;
	}
	const int32 LineIndex = FCString::Atoi(*Plan.Input.Get(InsertLine));
	if (LineIndex < 0)
	{
		Plan.Refuse(TEXT("Error: insert_line must be a non-negative integer."));
		return;
	}
	const FKestrelFileState& State = View.Look(Plan.FilePath);
	if (!ExpectEditableText(State, Plan))
	{
		return;
	}
	FString After = FFileUtils::InsertIntoText(State.Text, LineIndex, Plan.Input.Get(NewString), Plan.LineIndex);
	NoteEncoding(After, Plan);
	Plan.SetChange(View, View.TakeText(Plan.FilePath), MoveTemp(After));
	LeaveChange(View, Plan);
}

void PlanDeletionOf(const FString& FullPath, FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	Plan.Operation = EKestrelFileOperation::Delete;
	if (!SetChangedFile(View, FullPath, Plan))
	{
		return;
	}
	const FKestrelFileState& State = View.Look(FullPath);
	if (!State.bExists)
	{
		// It runs all the same, as revision control may know the file still.
		if (FFileUtils::GetRevisionControl(FullPath) != EKestrelRevisionControl::Unknown)
		{
			Plan.Caution(LOCTEXT("StillKnown", "is marked for deletion in revision control all the same"));
		}
		Plan.Expect(State);
		Plan.Refusal = FFileUtils::MakeError(TEXT("File does not exist at path"), FullPath);
		return;
	}
	if (ExpectText(State, Plan))
	{
		Plan.SetChange(View, State.Text, FString());
		View.Delete(FullPath);
	}
}

void PlanDeletion(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	PlanDeletionOf(GetFullPath(Plan), View, Plan);
}

void PlanCppDeletion(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	PlanDeletionOf(GetFullCppPath(Plan), View, Plan);
}

/** Undo is for this conversation from now on, whatever was undone before. @return false when there could be none */
bool Record(const FKestrelToolPlan& Plan)
{
	FAgent& Agent = FAgent::Get();
	Agent.OfferUndoOfThisConversation();
	FFileHistory& History = FFileHistory::Get();
	const FString& Key = Agent.GetConversationId();
	const FString& Before = Plan.Change->Before;
	if (Plan.Operation == EKestrelFileOperation::Create)
	{
		return History.StoreFileCreation(Key, Plan.FilePath, Plan.Change->After);
	}
	if (Plan.Operation == EKestrelFileOperation::Delete || Before.IsEmpty())
	{
		// A version without text is not kept; a deleted file without text is, and undo leads to it as well.
		return History.StoreFileDeletion(Key, Plan.FilePath, Before);
	}
	return History.StoreFileVersion(Key, Plan.FilePath, Before);
}

/** @return the result of the change */
FString Write(const FKestrelToolPlan& Plan)
{
	switch (Plan.Operation)
	{
	case EKestrelFileOperation::Create:
		return FFileUtils::CreateNewFileWithContent(Plan.FilePath, Plan.Change->After);
	case EKestrelFileOperation::Replace:
		return FFileUtils::ReplaceFile(Plan.FilePath, Plan.Change->After);
	case EKestrelFileOperation::Update:
		return FFileUtils::WriteUpdatedText(Plan.FilePath, Plan.Change->After, Plan.NumReplacements.GetValue());
	case EKestrelFileOperation::Insert:
		return FFileUtils::WriteInsertedText(Plan.FilePath, Plan.Change->After, Plan.LineIndex);
	case EKestrelFileOperation::Delete:
		return FFileUtils::DeleteFile(Plan.FilePath);
	case EKestrelFileOperation::None:
		break;
	}
	return FString();
}

FString ApplyChange(const FKestrelToolPlan& Plan)
{
	if (Plan.Operation == EKestrelFileOperation::Update && !Plan.Refusal.IsEmpty())
	{
		FString Before;
		FString After;
		return FFileUtils::UpdateFile(
			Plan.FilePath, Plan.Input.Get(OldString), Plan.Input.Get(NewString), Before, After);
	}
	if (!Plan.Change.IsSet())
	{
		return Write(Plan); // there is no file to change, which is its result
	}
	if (!Record(Plan))
	{
		return FFileUtils::MakeError(
			TEXT("No record for undo could be kept, so the file was left as it is"), Plan.FilePath);
	}
	const FString Result = Write(Plan);
	if (FFileUtils::IsError(Result))
	{
		FFileHistory::Get().ForgetUnchanged(FAgent::Get().GetConversationId(), Plan.FilePath);
	}
	else
	{
		// Redone, what was undone before would overwrite this change.
		FFileHistory::Get().ForgetRedo(FAgent::Get().GetConversationId());
		FFileHistory::Get().NoteLeft(FAgent::Get().GetConversationId(), Plan.FilePath);
		FKestrelInterface::Get().OnAddDiffMessage(Plan.FilePath, Plan.Change->Before, Plan.Change->After);
	}
	return Result;
}

/** The file that "read_file" means: a name that is not found may also lie in the project's Source. */
FString FindFileToRead(const FString& FullPath, FKestrelProjectView& View)
{
	if (View.Exists(FullPath))
	{
		return FullPath;
	}
	FString InSource = FFileUtils::ToAbsolutePath(TEXT("Source") / FPaths::GetCleanFilename(FullPath));
	FPaths::NormalizeFilename(InSource);
	return View.Exists(InSource) ? InSource : FString();
}

void PlanReading(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	const FString Asked = GetFullPath(Plan);
	const FString Found = FindFileToRead(Asked, View);
	Plan.SetFile(View, Found.IsEmpty() ? Asked : Found);
	if (Plan.Input.AreLinesBroken())
	{
		Plan.Refuse(TEXT("Error: view_range must be an array of two numbers"));
	}
	else if (Found.IsEmpty())
	{
		Plan.Refuse(TEXT("Error: File not found"));
	}
	else if (!View.IsOrdinaryFile(Found))
	{
		Plan.Refuse(FFileUtils::MakeError(TEXT("Failed to read file"), Found));
	}
}

/**
 * A log or a dump may be larger than memory, and a model takes in much less: a file is loaded whole, also for some of
 * its lines, and its text waits in memory for the next request.
 */
FString ApplyReading(const FKestrelToolPlan& Plan)
{
	constexpr int64 MaxFileBytes = 64 * 1024 * 1024;
	if (IFileManager::Get().FileSize(*Plan.FilePath) > MaxFileBytes)
	{
		return FFileUtils::MakeError(TEXT("File is larger than 64 MB and was not read"), Plan.FilePath);
	}
	const TOptional<FKestrelLineRange> Lines = Plan.Input.GetLines();
	return Lines.IsSet() ? FFileUtils::ReadFileLineRange(Plan.FilePath, Lines->StartLine, Lines->EndLine)
						 : FFileUtils::ReadFile(Plan.FilePath);
}

/** Joined, not made absolute: "/" is the project's own root then, and not the machine's. */
FString GetFolder(const FKestrelToolPlan& Plan)
{
	FString Folder = FPaths::ProjectDir() / Plan.Input.Get(DirPath);
	FPaths::NormalizeFilename(Folder);
	return Folder;
}

bool IsInProject(const FString& Folder)
{
	FString FullPath = FPaths::ConvertRelativePathToFull(Folder);
	// False for a path that climbs above the root; such a one still begins with the project's.
	return FPaths::CollapseRelativeDirectories(FullPath) && FPaths::IsUnderDirectory(FullPath, FPaths::ProjectDir());
}

void PlanTree(FKestrelProjectView& View, FKestrelToolPlan& Plan)
{
	const FString Folder = GetFolder(Plan);
	Plan.Target = Plan.Input.Get(DirPath) / TEXT("");
	if (!IsInProject(Folder))
	{
		// A whole disk would be walked.
		Plan.Refuse(FString::Printf(TEXT("Error: The folder lies outside of the project: %s"), *Folder));
		return;
	}
	Plan.SetFile(View, FPaths::ConvertRelativePathToFull(Folder));
	Plan.Target /= TEXT("");
}

/** Lists the folder on another thread. */
class FTreeWork : public IKestrelTextWork
{
public:
	explicit FTreeWork(const FKestrelToolPlan& Plan)
		: Folder(GetFolder(Plan))
		, Tree(Folder)
	{
	}

	virtual bool Step(double Deadline) override { return Tree.Step(Deadline); }
	virtual float GetProgress() const override { return Tree.GetProgress(); }
	virtual bool IsElsewhere() const override { return Tree.IsElsewhere(); }
	virtual void Finish() override { Tree.Finish(); }
	virtual FString TakeText() override { return KestrelTreeReview::LeaveOutRestricted(Folder, Tree.GetText()); }

private:
	const FString Folder;
	FKestrelTreeWork Tree;
};

TSharedRef<IKestrelTextWork> BeginTree(const FKestrelToolPlan& Plan)
{
	return MakeShared<FTreeWork>(Plan);
}

// Names that the panel leaves out are those of the service's first tools; the others were never in its texts.
constexpr EKestrelNameInPanel Shown = EKestrelNameInPanel::Shown;
constexpr EKestrelNameInPanel Hidden = EKestrelNameInPanel::Hidden;
}

void KestrelTools::AddFileTools(TArray<FKestrelTool>& OutTools)
{
	using namespace FileTools;
	OutTools.Add({ KestrelToolNames::CreateFile, EKestrelToolKind::Create, LOCTEXT("Create", "Create"),
		TEXT("Creates a file, or replaces the whole text of one that exists."), { Path, FileText },
		MissingRequiredFields, TEXT("Creating File..."), Shown, PlanCreateFile, ApplyChange });
	OutTools.Add({ KestrelToolNames::CreateCpp, EKestrelToolKind::Create, LOCTEXT("CreateCpp", "Create"),
		TEXT("Creates a C++ source or header, or replaces the whole text of one that exists."),
		{ CppFolder, CppName, Contents }, MissingRequiredFields, TEXT("Creating File ..."), Hidden, PlanCreateCpp,
		ApplyChange });
	OutTools.Add({ KestrelToolNames::ReplaceCpp, EKestrelToolKind::Change, LOCTEXT("ReplaceCpp", "Replace"),
		TEXT("Replaces the whole text of a C++ source or header that exists."), { CppFolder, CppName, Contents },
		MissingRequiredFields, TEXT("Updating/Replacing File ..."), Hidden, PlanReplaceCpp, ApplyChange });
	OutTools.Add({ KestrelToolNames::UpdateFile, EKestrelToolKind::Change, LOCTEXT("Update", "Change"),
		TEXT("Replaces every occurrence of a text in a file."), { Path, OldString, NewString },
		TEXT("Error: Missing required fields. Need path, old_string, and new_string."),
		TEXT("Updating File Content..."), Shown, PlanUpdate, ApplyChange });
	OutTools.Add({ KestrelToolNames::InsertIntoFile, EKestrelToolKind::Change, LOCTEXT("Insert", "Insert into"),
		TEXT("Inserts text into a file as lines of its own."), { Path, InsertLine, NewString },
		TEXT("Error: Missing required fields. Need path, insert_line, and new_string."),
		TEXT("Inserting content into file..."), Shown, PlanInsertion, ApplyChange });
	OutTools.Add(
		{ KestrelToolNames::DeleteFile, EKestrelToolKind::Delete, LOCTEXT("Delete", "Delete"), TEXT("Deletes a file."),
			{ OnlyPath }, MissingRequiredFields, TEXT("Deleting File..."), Shown, PlanDeletion, ApplyChange });
	OutTools.Add({ KestrelToolNames::DeleteCpp, EKestrelToolKind::Delete, LOCTEXT("DeleteCpp", "Delete"),
		TEXT("Deletes a C++ source or header."), { CppFolder, CppName }, MissingRequiredFields,
		TEXT("Deleting File..."), Hidden, PlanCppDeletion, ApplyChange });
	OutTools.Add({ KestrelToolNames::ReadFile, EKestrelToolKind::Read, LOCTEXT("Read", "Read"),
		TEXT("Reads a text file, or some of its lines."), { OnlyPath, ViewRange }, MissingRequiredFields,
		TEXT("Reading File..."), Hidden, PlanReading, ApplyReading });
	OutTools.Add({ KestrelToolNames::GetFileSystemTree, EKestrelToolKind::Read, LOCTEXT("Tree", "List"),
		TEXT("Lists a folder of the project with its subfolders."), { DirPath }, nullptr, nullptr, Hidden, PlanTree,
		nullptr, EKestrelAnswers::AtOnce, BeginTree });
}

#undef LOCTEXT_NAMESPACE
