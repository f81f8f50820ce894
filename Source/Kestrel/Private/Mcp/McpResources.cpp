#include "Mcp/McpResources.h"

#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/Assets/BlueprintPackage.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Files/KeyGuard.h"
#include "Agent/Files/PathReview.h"
#include "Agent/Project/CompilationManager.h"
#include "Agent/Project/SearchReview.h"
#include "Agent/Project/TreeReview.h"
#include "Agent/Text/DisplayText.h"
#include "Agent/Tools/ToolPlan.h"
#include "AssetRegistry/AssetData.h"
#include "BehaviorTree/BehaviorTree.h"
#include "Containers/StringConv.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Engine/Blueprint.h"
#include "HAL/FileManager.h"
#include "Mcp/McpApproval.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"

namespace McpResources
{
const TCHAR* const Json = TEXT("application/json");
const TCHAR* const Text = TEXT("text/plain");
const TCHAR* const CompileUri = TEXT("kestrel://compile/output");
constexpr int32 MaxValues = 100;
constexpr int32 MaxLength = 1024 * 1024; // characters of a resource

/** A kind of resource: the tool that reads it, and what that is given. */
struct FKind
{
	const TCHAR* UriPrefix; // the whole URI of one without a variable
	const TCHAR* Variable;  // of the template; null for a single resource
	const TCHAR* Name;
	const TCHAR* Description;
	const TCHAR* MimeType;
	const TCHAR* ToolName;
	const TCHAR* Field;
	const TCHAR* ExtraField; // null for none
	const TCHAR* ExtraValue;
};

const FKind Kinds[] = {
	{ TEXT("kestrel://project/tree"), nullptr, TEXT("Project tree"), TEXT("The project's files and folders."), Json,
		KestrelToolNames::GetFileSystemTree, TEXT("dir_path"), nullptr, nullptr },
	{ TEXT("kestrel://project/files/"), TEXT("path"), TEXT("Project file"),
		TEXT("A text file, by its path below the project directory."), Text, KestrelToolNames::ReadFile, TEXT("path"),
		nullptr, nullptr },
	{ TEXT("kestrel://blueprints/"), TEXT("blueprint_name"), TEXT("Blueprint"), TEXT("A Blueprint as a document."),
		Json, KestrelToolNames::ReadBlueprint, TEXT("blueprint_name"), TEXT("data_subset"), TEXT("All") },
	{ TEXT("kestrel://behavior-trees/"), TEXT("behavior_tree_name"), TEXT("Behavior tree"),
		TEXT("A behavior tree with its blackboard, as a document."), Json, KestrelToolNames::ReadBehaviorTree,
		TEXT("behavior_tree_name"), nullptr, nullptr },
};

FString MakeTemplate(const FKind& Kind)
{
	return FString::Printf(TEXT("%s{+%s}"), Kind.UriPrefix, Kind.Variable);
}

TSharedRef<FJsonObject> Describe(const TCHAR* Name, const TCHAR* Description, const TCHAR* MimeType)
{
	const TSharedRef<FJsonObject> Entry = MakeShared<FJsonObject>();
	Entry->SetStringField(TEXT("name"), Name);
	Entry->SetStringField(TEXT("title"), Name);
	Entry->SetStringField(TEXT("description"), Description);
	Entry->SetStringField(TEXT("mimeType"), MimeType);
	return Entry;
}

int32 ToDigit(TCHAR Character)
{
	const TCHAR Lower = FChar::ToLower(Character);
	const bool bIsDigit = Lower >= TEXT('0') && Lower <= TEXT('9');
	return bIsDigit ? Lower - TEXT('0') : Lower >= TEXT('a') && Lower <= TEXT('f') ? Lower - TEXT('a') + 10 : -1;
}

/** "%20" as a space, in UTF-8. */
FString Decode(const FString& Encoded)
{
	const FTCHARToUTF8 Utf8(*Encoded, Encoded.Len());
	TArray<ANSICHAR> Bytes;
	for (int32 Index = 0; Index < Utf8.Length(); ++Index)
	{
		const ANSICHAR* Next = Utf8.Get() + Index;
		const bool bEscape =
			*Next == '%' && Index + 2 < Utf8.Length() && ToDigit(Next[1]) >= 0 && ToDigit(Next[2]) >= 0;
		Bytes.Add(bEscape ? static_cast<ANSICHAR>(ToDigit(Next[1]) * 16 + ToDigit(Next[2])) : *Next);
		Index += bEscape ? 2 : 0;
	}
	const FUTF8ToTCHAR Text16(Bytes.GetData(), Bytes.Num());
	return FString::ConstructFromPtrSize(Text16.Get(), Text16.Length());
}

const FKind* FindKind(const FString& Uri)
{
	for (const FKind& Kind : Kinds)
	{
		const bool bFits =
			Kind.Variable ? Uri.StartsWith(Kind.UriPrefix, ESearchCase::CaseSensitive) && !Uri.Equals(Kind.UriPrefix)
						  : Uri.Equals(Kind.UriPrefix);
		if (bFits)
		{
			return &Kind;
		}
	}
	return nullptr;
}

/** What the tool for it says; a text that begins with "Error:" is a failure. */
FString Read(const FKind& Kind, const FString& Value)
{
	const TSharedRef<FJsonObject> Input = MakeShared<FJsonObject>();
	Input->SetStringField(Kind.Field, Value);
	if (Kind.ExtraField)
	{
		Input->SetStringField(Kind.ExtraField, Kind.ExtraValue);
	}
	FKestrelToolPlanner Planner(EKestrelLookAhead::Unlimited);
	const TSharedRef<FKestrelToolPlan> Plan = Planner.Plan(Kind.ToolName, FString(), Input);
	if (!Plan->Refusal.IsEmpty())
	{
		return Plan->Refusal;
	}
	return KestrelMcpApproval::Decide(*Plan) == EKestrelMcpDecision::Run
			   ? Plan->Apply(EKestrelStatusLine::Hidden)
			   : FString(TEXT("Error: Only the tools can read this, with the approval of the person at the editor."));
}

TSharedRef<FJsonObject> MakeContents(const FString& Uri, const TCHAR* MimeType, const FString& Contents)
{
	const TSharedRef<FJsonObject> Entry = MakeShared<FJsonObject>();
	Entry->SetStringField(TEXT("uri"), Uri);
	Entry->SetStringField(TEXT("mimeType"), MimeType);
	Entry->SetStringField(TEXT("text"), KestrelKeyGuard::Hide(Contents));
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetArrayField(TEXT("contents"), { MakeShared<FJsonValueObject>(Entry) });
	return Result;
}

/** The engine's strings never begin with an empty one. */
bool BeginsWith(const FString& Name, const FString& Begin)
{
	return Begin.IsEmpty() || Name.StartsWith(Begin, ESearchCase::IgnoreCase);
}

/** The files and folders of one folder of the project that begin like a path; not what lies in them. */
TArray<FString> CompletePath(const FString& Value)
{
	int32 Slash = INDEX_NONE;
	Value.FindLastChar(TEXT('/'), Slash);
	const FString Folder = Value.Left(Slash + 1);
	const FString FullFolder = FFileUtils::ToAbsolutePath(Folder);
	TArray<FString> Paths;
	if (!FPaths::IsUnderDirectory(FullFolder, FPaths::ConvertRelativePathToFull(FPaths::ProjectDir())) ||
		!FKestrelPathReview::Of(FullFolder).Cautions.IsEmpty())
	{
		return Paths;
	}
	TArray<FString> Files;
	TArray<FString> Folders;
	IFileManager::Get().FindFiles(Files, *(FullFolder / TEXT("*")), true, false);
	IFileManager::Get().FindFiles(Folders, *(FullFolder / TEXT("*")), false, true);
	const FKestrelSearchReview Review;
	const FString Begin = Value.RightChop(Slash + 1);
	const auto Add = [&](const TArray<FString>& Names, bool bAreFolders) {
		for (const FString& Name : Names)
		{
			if (BeginsWith(Name, Begin) && KestrelTreeReview::MayTell(Review, FullFolder / Name, bAreFolders))
			{
				Paths.Add(Folder + Name + (bAreFolders ? TEXT("/") : TEXT("")));
			}
		}
	};
	Add(Files, false);
	Add(Folders, true);
	return Paths;
}

TArray<FString> ListAssets(const UClass& Class)
{
	const FKestrelSearchReview Review;
	TArray<FString> Names;
	for (const FAssetData& Asset : KestrelBlueprintLookup::ListAssets(Class))
	{
		// What has no file is only in memory, and nobody else's.
		const FString File = KestrelBlueprintPackage::GetFileName(Asset.PackageName.ToString());
		if (File.IsEmpty() || KestrelTreeReview::MayTell(Review, File, /*bIsFolder*/ false))
		{
			Names.Add(Asset.AssetName.ToString());
		}
	}
	return Names;
}
}

TSharedRef<FJsonObject> KestrelMcpResources::MakeList()
{
	TArray<TSharedPtr<FJsonValue>> Entries;
	const auto Add = [&Entries](const TCHAR* Uri, const TSharedRef<FJsonObject>& Entry) {
		Entry->SetStringField(TEXT("uri"), Uri);
		Entries.Add(MakeShared<FJsonValueObject>(Entry));
	};
	for (const McpResources::FKind& Kind : McpResources::Kinds)
	{
		if (!Kind.Variable)
		{
			Add(Kind.UriPrefix, McpResources::Describe(Kind.Name, Kind.Description, Kind.MimeType));
		}
	}
	Add(McpResources::CompileUri,
		McpResources::Describe(TEXT("Compiler output"), TEXT("What the compiler said last."), McpResources::Text));
	const TSharedRef<FJsonObject> List = MakeShared<FJsonObject>();
	List->SetArrayField(TEXT("resources"), Entries);
	return List;
}

TSharedRef<FJsonObject> KestrelMcpResources::MakeTemplateList()
{
	TArray<TSharedPtr<FJsonValue>> Entries;
	for (const McpResources::FKind& Kind : McpResources::Kinds)
	{
		if (Kind.Variable)
		{
			const TSharedRef<FJsonObject> Entry = McpResources::Describe(Kind.Name, Kind.Description, Kind.MimeType);
			Entry->SetStringField(TEXT("uriTemplate"), McpResources::MakeTemplate(Kind));
			Entries.Add(MakeShared<FJsonValueObject>(Entry));
		}
	}
	const TSharedRef<FJsonObject> List = MakeShared<FJsonObject>();
	List->SetArrayField(TEXT("resourceTemplates"), Entries);
	return List;
}

TSharedPtr<FJsonObject> KestrelMcpResources::Read(const FString& Uri, FString& OutError)
{
	if (Uri.Equals(McpResources::CompileUri))
	{
		return McpResources::MakeContents(
			Uri, McpResources::Text, FString::Join(FCompilationManager::GetCompilationLogs(), TEXT("\n")));
	}
	const McpResources::FKind* Kind = McpResources::FindKind(Uri);
	if (!Kind)
	{
		OutError = TEXT("Resource not found");
		return nullptr;
	}
	const FString Value =
		Kind->Variable ? McpResources::Decode(Uri.RightChop(FCString::Strlen(Kind->UriPrefix))) : TEXT("/");
	const FString Contents = McpResources::Read(*Kind, Value);
	if (FFileUtils::IsError(Contents) || Contents.Len() > McpResources::MaxLength)
	{
		OutError = FFileUtils::IsError(Contents) ? Contents : TEXT("Too large. Read a part of it with a tool.");
		return nullptr;
	}
	return McpResources::MakeContents(Uri, Kind->MimeType, Contents);
}

TOptional<TArray<FString>> KestrelMcpResources::Complete(const FString& Argument, const FString& Value)
{
	TArray<FString> Values;
	if (Argument.Equals(TEXT("path")))
	{
		Values = McpResources::CompletePath(Value);
	}
	else if (Argument.Equals(TEXT("blueprint_name")))
	{
		Values = McpResources::ListAssets(*UBlueprint::StaticClass());
	}
	else if (Argument.Equals(TEXT("behavior_tree_name")))
	{
		Values = McpResources::ListAssets(*UBehaviorTree::StaticClass());
	}
	else
	{
		return {};
	}
	// A name that is not what it looks like is of no use.
	Values.RemoveAll([&Value](const FString& Each) {
		return !McpResources::BeginsWith(Each, Value) || !KestrelDisplayText::EscapeLine(Each).Equals(Each);
	});
	Values.Sort();
	Values.SetNum(FMath::Min(Values.Num(), McpResources::MaxValues));
	return Values;
}
