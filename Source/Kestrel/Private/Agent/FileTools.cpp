#include "Agent/Agent.h"
#include "Agent/FileHistory.h"
#include "Agent/FileUtils.h"
#include "Agent/TextFile.h"
#include "Agent/ToolInput.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/Paths.h"
#include "Widget/KestrelInterface.h"

namespace FileTools
{
/** The text before a change. False when there is none: then nothing may be recorded, and the change says why it fails.
 */
bool ReadBefore(const FString& FullPath, FString& OutText)
{
	TArray<uint8> Bytes;
	return FPaths::FileExists(FullPath) &&
		   KestrelTextFile::Load(FullPath, OutText, Bytes) != KestrelTextFile::EContent::Unreadable;
}

/** The key for a change that is about to be made. Undo is for it from now on, whatever was taken back before. */
const FString& BeginRecord()
{
	FAgent& Agent = FAgent::Get();
	Agent.SetUndoConversationID(Agent.GetConversationId());
	return Agent.GetConversationId();
}

void RecordVersion(const FString& FullPath, const FString& Before)
{
	FFileHistory::Get().StoreFileVersion(BeginRecord(), FullPath, Before);
}

void RecordCreation(const FString& FullPath, const FString& Text)
{
	FFileHistory::Get().StoreFileCreation(BeginRecord(), FullPath, Text);
}

void RecordDeletion(const FString& FullPath, const FString& Before)
{
	FFileHistory::Get().StoreFileDeletion(BeginRecord(), FullPath, Before);
}

/** A change that failed has no difference to show. @return the change's result */
FString ShowDiff(const FString& Result, const FString& FullPath, const FString& Before, const FString& After)
{
	if (!FFileUtils::IsError(Result))
	{
		FKestrelInterface::Get().OnAddDiffMessage(FullPath, Before, After);
	}
	return Result;
}

FString ReplaceExisting(const FString& FullPath, const FString& Text)
{
	FString Before;
	if (!ReadBefore(FullPath, Before))
	{
		return FFileUtils::ReplaceFile(FullPath, Text);
	}
	RecordVersion(FullPath, Before);
	return ShowDiff(FFileUtils::ReplaceFile(FullPath, Text), FullPath, Before, Text);
}

FString CreateNew(const FString& FullPath, const FString& Text)
{
	RecordCreation(FullPath, Text);
	return ShowDiff(FFileUtils::CreateNewFileWithContent(FullPath, Text), FullPath, FString(), Text);
}

/** The path that the C++ tools are given in two fields, made absolute. */
bool ReadCppPath(const FJsonObject& Input, FString& OutFullPath)
{
	FString FilePath;
	FString FileName;
	const bool bRead =
		KestrelTools::ReadFields(Input, { { TEXT("filepath"), &FilePath }, { TEXT("filename"), &FileName } });
	OutFullPath = FFileUtils::ToAbsolutePath(FPaths::Combine(FilePath, FileName));
	return bRead;
}

/** The lines that a "view_range" asks for, counted from 1. */
struct FViewRange
{
	int32 StartLine = 1;
	int32 EndLine = -1;
};

/** The element as a whole number, its fraction cut off; what does not fit becomes the nearest that does. */
bool ReadLineNumber(const TSharedPtr<FJsonValue>& Value, int32& OutLine)
{
	double Number = 0.0;
	if (!Value.IsValid() || !Value->TryGetNumber(Number))
	{
		return false;
	}
	OutLine = static_cast<int32>(FMath::Clamp(Number, static_cast<double>(MIN_int32), static_cast<double>(MAX_int32)));
	return true;
}

/** The first two elements; what follows them is no reason to read nothing. */
bool ReadViewRange(const TArray<TSharedPtr<FJsonValue>>& Values, FViewRange& OutRange)
{
	return Values.Num() >= 2 && ReadLineNumber(Values[0], OutRange.StartLine) &&
		   ReadLineNumber(Values[1], OutRange.EndLine);
}

/** The file that "read_file" means, empty when there is none: a bare name may also lie in the project's Source. */
FString FindFileToRead(const FString& Path)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	const FString FullPath = FFileUtils::ToAbsolutePath(Path);
	if (Files.FileExists(*FullPath))
	{
		return FullPath;
	}
	FString InSource = FFileUtils::ToAbsolutePath(TEXT("Source") / FPaths::GetCleanFilename(FullPath));
	FPaths::NormalizeFilename(InSource);
	return Files.FileExists(*InSource) ? InSource : FString();
}

bool IsInProject(const FString& Folder)
{
	FString FullPath = FPaths::ConvertRelativePathToFull(Folder);
	// False for a path that climbs above the root; such a one still begins with the project's.
	return FPaths::CollapseRelativeDirectories(FullPath) && FPaths::IsUnderDirectory(FullPath, FPaths::ProjectDir());
}
}

FString FAgent::UseCreateFileTool(const FString& Id, const FJsonObject& Input)
{
	FString Path;
	FString Text;
	if (!KestrelTools::ReadFields(Input, { { TEXT("path"), &Path }, { TEXT("file_text"), &Text } }))
	{
		return KestrelTools::MissingFields;
	}
	KestrelTools::ShowStatus(TEXT("Creating File..."));
	const FString FullPath = FFileUtils::ToAbsolutePath(Path);
	if (FPaths::FileExists(FullPath))
	{
		return FileTools::ReplaceExisting(FullPath, Text);
	}
	if (FPaths::GetCleanFilename(FullPath).IsEmpty())
	{
		return TEXT("Error: The provided path must include a filename");
	}
	return FileTools::CreateNew(FullPath, Text);
}

FString FAgent::UseCreateOrReplaceCPPTool(const FString& Id, const FJsonObject& Input)
{
	FString FullPath;
	if (!FileTools::ReadCppPath(Input, FullPath))
	{
		return KestrelTools::MissingFields;
	}
	return FPaths::FileExists(FullPath) ? UseUpdateAndReplaceCPPTool(Id, Input) : UseCreateCPPTool(Id, Input);
}

FString FAgent::UseCreateCPPTool(const FString& Id, const FJsonObject& Input)
{
	FString FullPath;
	FString Contents;
	if (!FileTools::ReadCppPath(Input, FullPath) ||
		!KestrelTools::ReadFields(Input, { { TEXT("contents"), &Contents } }))
	{
		return KestrelTools::MissingFields;
	}
	KestrelTools::ShowStatus(TEXT("Creating File ..."));
	return FileTools::CreateNew(FullPath, Contents);
}

FString FAgent::UseUpdateAndReplaceCPPTool(const FString& Id, const FJsonObject& Input)
{
	FString FullPath;
	FString Contents;
	if (!FileTools::ReadCppPath(Input, FullPath) ||
		!KestrelTools::ReadFields(Input, { { TEXT("contents"), &Contents } }))
	{
		return KestrelTools::MissingFields;
	}
	KestrelTools::ShowStatus(TEXT("Updating/Replacing File ..."));
	return FileTools::ReplaceExisting(FullPath, Contents);
}

FString FAgent::UseUpdateFileTool(const FString& Id, const FJsonObject& Input)
{
	FString Path;
	FString OldString;
	FString NewString;
	if (!KestrelTools::ReadFields(
			Input, { { TEXT("path"), &Path }, { TEXT("old_string"), &OldString }, { TEXT("new_string"), &NewString } }))
	{
		return TEXT("Error: Missing required fields. Need path, old_string, and new_string.");
	}
	KestrelTools::ShowStatus(TEXT("Updating File Content..."));
	const FString FullPath = FFileUtils::ToAbsolutePath(Path);
	FString Before;
	if (!FileTools::ReadBefore(FullPath, Before))
	{
		return FFileUtils::ReadFile(FullPath);
	}
	FileTools::RecordVersion(FullPath, Before);
	FString After;
	const FString Result = FFileUtils::UpdateFile(FullPath, OldString, NewString, Before, After);
	return FileTools::ShowDiff(Result, FullPath, Before, After);
}

FString FAgent::UseInsertIntoFileTool(const FString& Id, const FJsonObject& Input)
{
	FString Path;
	FString InsertLine;
	FString NewString;
	if (!KestrelTools::ReadFields(Input,
			{ { TEXT("path"), &Path }, { TEXT("insert_line"), &InsertLine }, { TEXT("new_string"), &NewString } }))
	{
		return TEXT("Error: Missing required fields. Need path, insert_line, and new_string.");
	}
	KestrelTools::ShowStatus(TEXT("Inserting content into file..."));
	const int32 LineIndex = FCString::Atoi(*InsertLine);
	if (LineIndex < 0)
	{
		return TEXT("Error: insert_line must be a non-negative integer.");
	}
	const FString FullPath = FFileUtils::ToAbsolutePath(Path);
	FString Before;
	if (!FileTools::ReadBefore(FullPath, Before))
	{
		return FFileUtils::InsertIntoFile(FullPath, LineIndex, NewString);
	}
	FileTools::RecordVersion(FullPath, Before);
	const FString Result = FFileUtils::InsertIntoFile(FullPath, LineIndex, NewString);
	return FileTools::ShowDiff(Result, FullPath, Before, FFileUtils::ReadFile(FullPath));
}

FString FAgent::UseDeleteFileTool(const FString& Id, const FJsonObject& Input)
{
	FString Path;
	if (!KestrelTools::ReadFields(Input, { { TEXT("path"), &Path } }))
	{
		return KestrelTools::MissingPath;
	}
	KestrelTools::ShowStatus(TEXT("Deleting File..."));
	const FString FullPath = FFileUtils::ToAbsolutePath(Path);
	FString Before;
	if (!FileTools::ReadBefore(FullPath, Before))
	{
		return FFileUtils::DeleteFile(FullPath);
	}
	FileTools::RecordDeletion(FullPath, Before);
	return FileTools::ShowDiff(FFileUtils::DeleteFile(FullPath), FullPath, Before, FString());
}

FString FAgent::UseDeleteCPPTool(const FString& Id, const FJsonObject& Input)
{
	FString FullPath;
	if (!FileTools::ReadCppPath(Input, FullPath))
	{
		return KestrelTools::MissingFields;
	}
	FJsonObject InputWithPath;
	InputWithPath.Values = Input.Values;
	InputWithPath.SetStringField(TEXT("path"), FullPath);
	return UseDeleteFileTool(Id, InputWithPath);
}

FString FAgent::UseReadTool(const FString& Id, const FJsonObject& Input)
{
	FString Path;
	if (!KestrelTools::ReadFields(Input, { { TEXT("path"), &Path } }))
	{
		return KestrelTools::MissingPath;
	}
	KestrelTools::ShowStatus(TEXT("Reading File..."));

	const TArray<TSharedPtr<FJsonValue>>* ViewRange = nullptr;
	const bool bHasViewRange = Input.TryGetArrayField(TEXT("view_range"), ViewRange);
	FileTools::FViewRange Range;
	if (bHasViewRange && !FileTools::ReadViewRange(*ViewRange, Range))
	{
		return TEXT("Error: view_range must be an array of two numbers");
	}
	const FString FullPath = FileTools::FindFileToRead(Path);
	if (FullPath.IsEmpty())
	{
		return TEXT("Error: File not found");
	}
	return bHasViewRange ? FFileUtils::ReadFileLineRange(FullPath, Range.StartLine, Range.EndLine)
						 : FFileUtils::ReadFile(FullPath);
}

FString FAgent::UseGetFileSystemTool(const FString& Id, const FJsonObject& Input)
{
	FString DirPath;
	if (!KestrelTools::ReadFields(Input, { { TEXT("dir_path"), &DirPath } }))
	{
		return TEXT("Error: Missing dir_path field");
	}
	// Joined, not made absolute: the names of the folders that the project itself lies in must not exclude it.
	// "/" is the project's own root then, and not the machine's.
	FString Folder = FPaths::ProjectDir() / DirPath;
	FPaths::NormalizeFilename(Folder);
	if (!FileTools::IsInProject(Folder))
	{
		// A whole disk would be walked on the game thread.
		return FString::Printf(TEXT("Error: The folder lies outside of the project: %s"), *Folder);
	}
	return FFileUtils::GetSubDirectoryStructureAsJsonObject(Folder);
}
