#include "Agent/ToolPreview.h"

#include "Agent/FileUtils.h"
#include "Agent/JsonText.h"
#include "Agent/TextFile.h"
#include "Agent/ToolInput.h"
#include "Dom/JsonObject.h"
#include "Misc/Paths.h"

namespace ToolPreview
{
/** The files as the tool uses before have left them. */
class FFiles
{
public:
	bool Exists(const FString& FullPath) const
	{
		const TOptional<FString>* Changed = ChangedTexts.Find(FullPath);
		return Changed ? Changed->IsSet() : FPaths::FileExists(FullPath);
	}

	FString Read(const FString& FullPath) const
	{
		if (const TOptional<FString>* Changed = ChangedTexts.Find(FullPath))
		{
			return Changed->Get(FString());
		}
		FString Text;
		TArray<uint8> Bytes;
		KestrelTextFile::Load(FullPath, Text, Bytes);
		return Text;
	}

	void Write(const FString& FullPath, const FString& Text) { ChangedTexts.Add(FullPath, Text); }
	void Delete(const FString& FullPath) { ChangedTexts.Add(FullPath, TOptional<FString>()); }

private:
	TMap<FString, TOptional<FString>> ChangedTexts; // unset: deleted
};

FString GetField(const FJsonObject& Input, const TCHAR* Name)
{
	FString Text;
	Input.TryGetStringField(Name, Text);
	return Text;
}

/** The file of a tool that has it in one field, or, like those for C++, in two. */
FString GetFullPath(const FJsonObject& Input)
{
	FString FilePath;
	FString FileName;
	if (KestrelTools::ReadFields(Input, { { TEXT("filepath"), &FilePath }, { TEXT("filename"), &FileName } }))
	{
		return FFileUtils::ToAbsolutePath(FPaths::Combine(FilePath, FileName));
	}
	return FFileUtils::ToAbsolutePath(GetField(Input, TEXT("path")));
}

void SetFile(const FString& FullPath, FKestrelToolPreview& Preview)
{
	const FString ProjectDir = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	Preview.FilePath = FullPath;
	Preview.bOutsideProject = !FPaths::IsUnderDirectory(FullPath, ProjectDir);
	Preview.Target = FullPath;
	if (!Preview.bOutsideProject)
	{
		FPaths::MakePathRelativeTo(Preview.Target, *ProjectDir);
	}
}

void SetTexts(const FString& Before, const FString& After, FKestrelToolPreview& Preview)
{
	// The list keeps the texts as long as it waits, and nobody reads more.
	constexpr int32 MaxLength = 4000000;
	Preview.bHasTexts = Before.Len() <= MaxLength && After.Len() <= MaxLength;
	if (!Preview.bHasTexts)
	{
		Preview.Before.Empty();
		return;
	}
	Preview.Before = Before;
	Preview.After = After;
}

/** @return false, with the problem told, when there is no such file */
bool ReadExisting(const FFiles& Files, FKestrelToolPreview& Preview)
{
	if (!Files.Exists(Preview.FilePath))
	{
		Preview.Problem = FFileUtils::MakeError(TEXT("File does not exist"), Preview.FilePath);
		return false;
	}
	Preview.Before = Files.Read(Preview.FilePath);
	return true;
}

void PreviewRead(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::Read;
	SetFile(GetFullPath(Input), Preview);
}

void PreviewTree(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::Read;
	Preview.Target = GetField(Input, TEXT("dir_path")) / TEXT("");
}

void PreviewWrite(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	SetFile(GetFullPath(Input), Preview);
	const bool bExists = Files.Exists(Preview.FilePath);
	Preview.Kind = bExists ? EKestrelToolKind::Change : EKestrelToolKind::Create;
	const FString Text =
		Input.HasField(TEXT("contents")) ? GetField(Input, TEXT("contents")) : GetField(Input, TEXT("file_text"));
	SetTexts(bExists ? Files.Read(Preview.FilePath) : FString(), Text, Preview);
	Files.Write(Preview.FilePath, Text);
}

void PreviewUpdate(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::Change;
	SetFile(GetFullPath(Input), Preview);
	if (!ReadExisting(Files, Preview))
	{
		return;
	}
	FString After;
	const int32 NumPlaces = FFileUtils::ReplaceInText(
		Preview.Before, GetField(Input, TEXT("old_string")), GetField(Input, TEXT("new_string")), After);
	Preview.NumPlaces = NumPlaces;
	if (NumPlaces == 0)
	{
		Preview.Problem = FFileUtils::MakeError(TEXT("String not found in file"), Preview.FilePath);
		return;
	}
	SetTexts(Preview.Before, After, Preview);
	Files.Write(Preview.FilePath, After);
}

void PreviewInsert(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::Change;
	SetFile(GetFullPath(Input), Preview);
	if (!ReadExisting(Files, Preview))
	{
		return;
	}
	const FString After = FFileUtils::InsertIntoText(
		Preview.Before, FCString::Atoi(*GetField(Input, TEXT("insert_line"))), GetField(Input, TEXT("new_string")));
	SetTexts(Preview.Before, After, Preview);
	Files.Write(Preview.FilePath, After);
}

void PreviewDelete(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::Delete;
	SetFile(GetFullPath(Input), Preview);
	if (ReadExisting(Files, Preview))
	{
		SetTexts(Preview.Before, FString(), Preview);
		Files.Delete(Preview.FilePath);
	}
}

void PreviewScript(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::Script;
	SetTexts(FString(), GetField(Input, TEXT("code")), Preview);
}

void PreviewCompile(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::Compile;
}

void PreviewSearch(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::Search;
	Preview.Target = GetField(Input, TEXT("reference_string"));
}

void PreviewReadBlueprint(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::ReadBlueprint;
	Preview.Target = GetField(Input, TEXT("blueprint_name"));
}

void PreviewReadBehaviorTree(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::ReadBlueprint;
	Preview.Target = GetField(Input, TEXT("behavior_tree_name"));
}

void PreviewCreateBlueprint(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::CreateBlueprint;
	Preview.Target =
		FString::Printf(TEXT("%s (%s)"), *(GetField(Input, TEXT("BPPath")) / GetField(Input, TEXT("BPName"))),
			*GetField(Input, TEXT("BPParentClassName")));
}

/** The modifications as a person can read them; a text that is none, as it is. */
void PreviewModifyBlueprint(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::ModifyBlueprint;
	Preview.Target = GetField(Input, TEXT("blueprint_name"));
	const FString Updates = GetField(Input, TEXT("updates"));
	const TSharedPtr<FJsonObject> Document = KestrelJson::ParseObject(Updates);
	SetTexts(FString(), Document.IsValid() ? KestrelJson::ToPrettyText(Document.ToSharedRef()) : Updates, Preview);
}

void PreviewSaveBlueprints(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& Preview)
{
	Preview.Kind = EKestrelToolKind::SaveBlueprints;
}

struct FPreviewer
{
	const TCHAR* WireName;
	void (*Preview)(const FJsonObject& Input, FFiles& Files, FKestrelToolPreview& OutPreview);
};

const FPreviewer Previewers[] = {
	{ KestrelToolNames::Compile, PreviewCompile },
	{ KestrelToolNames::ExecutePython, PreviewScript },
	{ KestrelToolNames::CreateFile, PreviewWrite },
	{ KestrelToolNames::CreateCpp, PreviewWrite },
	{ KestrelToolNames::ReplaceCpp, PreviewWrite },
	{ KestrelToolNames::UpdateFile, PreviewUpdate },
	{ KestrelToolNames::InsertIntoFile, PreviewInsert },
	{ KestrelToolNames::DeleteFile, PreviewDelete },
	{ KestrelToolNames::DeleteCpp, PreviewDelete },
	{ KestrelToolNames::ReadFile, PreviewRead },
	{ KestrelToolNames::GetFileSystemTree, PreviewTree },
	{ KestrelToolNames::CreateBlueprint, PreviewCreateBlueprint },
	{ KestrelToolNames::ReadBlueprint, PreviewReadBlueprint },
	{ KestrelToolNames::ModifyBlueprint, PreviewModifyBlueprint },
	{ KestrelToolNames::ReadBehaviorTree, PreviewReadBehaviorTree },
	{ KestrelToolNames::SaveAndCompileBlueprints, PreviewSaveBlueprints },
	{ KestrelToolNames::FindReference, PreviewSearch },
};

FKestrelToolPreview Make(const FJsonObject& ToolUse, FFiles& Files)
{
	FKestrelToolPreview Preview;
	Preview.Target = GetField(ToolUse, TEXT("name"));
	const TSharedPtr<FJsonObject>* Input = nullptr;
	if (!ToolUse.TryGetObjectField(TEXT("input"), Input))
	{
		return Preview;
	}
	for (const FPreviewer& Previewer : Previewers)
	{
		if (Preview.Target.Equals(Previewer.WireName, ESearchCase::IgnoreCase))
		{
			Preview.Target.Empty();
			Previewer.Preview(**Input, Files, Preview);
			break;
		}
	}
	return Preview;
}
}

TArray<FKestrelToolPreview> FKestrelToolPreviews::Make(const TArray<TSharedPtr<FJsonObject>>& ToolUses)
{
	ToolPreview::FFiles Files;
	TArray<FKestrelToolPreview> Previews;
	for (const TSharedPtr<FJsonObject>& ToolUse : ToolUses)
	{
		Previews.Add(ToolPreview::Make(*ToolUse, Files));
	}
	return Previews;
}
