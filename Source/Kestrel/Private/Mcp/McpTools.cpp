#include "Mcp/McpTools.h"

#include "Agent/Files/FileUtils.h"
#include "Agent/Files/KeyGuard.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Mcp/McpClient.h"
#include "Mcp/McpHistoryTools.h"

namespace McpTools
{
/** Characters of a result. Clients cut larger ones, and it is made and sent on the game thread. */
constexpr int32 MaxResultLength = 1024 * 1024;

const TCHAR* const DocumentTools[] = { KestrelToolNames::GetFileSystemTree, KestrelToolNames::ReadBlueprint,
	KestrelToolNames::ModifyBlueprint, KestrelToolNames::ReadBehaviorTree, KestrelToolNames::SaveAndCompileBlueprints,
	KestrelToolNames::FindReference };

const TCHAR* const AsksFirst =
	TEXT(" A person at the editor approves it first. While the result has a call_id, call get_call_result with it.");

/** What the table says of a tool is for an assistant that is told the result of a compile later. */
FString Describe(const FKestrelTool& Tool)
{
	const FString Text =
		FCString::Strcmp(Tool.WireName, KestrelToolNames::Compile) == 0
			? TEXT("Compiles the game's C++ code in the running editor and returns the compiler's messages.")
			: Tool.Description;
	return Tool.Kind == EKestrelToolKind::Read ? Text : Text + AsksFirst;
}

/** "update_file" as "Update file". */
FString MakeTitle(const TCHAR* WireName)
{
	FString Title = FString(WireName).Replace(TEXT("_"), TEXT(" "));
	Title[0] = FChar::ToUpper(Title[0]);
	return Title;
}

/** All four are given: a client takes one that is missing for the worst. */
TSharedRef<FJsonObject> MakeAnnotations(const FKestrelTool& Tool)
{
	const bool bReads = Tool.Kind == EKestrelToolKind::Read;
	const bool bCompiles = Tool.Kind == EKestrelToolKind::Compile;
	const TSharedRef<FJsonObject> Annotations = MakeShared<FJsonObject>();
	Annotations->SetStringField(TEXT("title"), MakeTitle(Tool.WireName));
	Annotations->SetBoolField(TEXT("readOnlyHint"), bReads);
	Annotations->SetBoolField(TEXT("destructiveHint"), !bReads && !bCompiles);
	Annotations->SetBoolField(TEXT("idempotentHint"), bReads || bCompiles);
	Annotations->SetBoolField(TEXT("openWorldHint"), Tool.Kind == EKestrelToolKind::Run);
	return Annotations;
}

TSharedRef<FJsonObject> MakeSchema(const FKestrelTool& Tool, bool bStateless)
{
	const TSharedRef<FJsonObject> Schema = KestrelTools::MakeInputSchema(Tool);
	if (!bStateless || Tool.Kind == EKestrelToolKind::Read)
	{
		return Schema;
	}
	const TSharedRef<FJsonObject> Field = MakeShared<FJsonObject>();
	Field->SetStringField(TEXT("type"), TEXT("string"));
	Field->SetStringField(TEXT("description"),
		TEXT("The changes_id of an earlier result: this belongs to the same changes, to be undone together."));
	Schema->GetObjectField(TEXT("properties"))->SetObjectField(KestrelMcpTools::ChangesId, Field);
	if (KestrelMcpHistoryTools::IsOne(Tool))
	{
		Schema->SetArrayField(TEXT("required"), { MakeShared<FJsonValueString>(KestrelMcpTools::ChangesId) });
	}
	return Schema;
}

TSharedPtr<FJsonValue> MakeEntry(const FKestrelTool& Tool, bool bStateless)
{
	const TSharedRef<FJsonObject> Entry = MakeShared<FJsonObject>();
	Entry->SetStringField(TEXT("name"), Tool.WireName);
	Entry->SetStringField(TEXT("title"), MakeTitle(Tool.WireName));
	Entry->SetStringField(TEXT("description"), Describe(Tool));
	Entry->SetObjectField(TEXT("inputSchema"), MakeSchema(Tool, bStateless));
	Entry->SetObjectField(TEXT("annotations"), MakeAnnotations(Tool));
	return MakeShared<FJsonValueObject>(Entry);
}

const FKestrelTool& GetResultTool()
{
	static const FKestrelTool Tool = { KestrelMcpTools::GetCallResult, EKestrelToolKind::Read, FText::GetEmpty(),
		TEXT("Returns the result of a call that had to wait, as soon as there is one. A call that nobody asks for is "
			 "withdrawn after 45 seconds."),
		{ { KestrelMcpTools::CallId, EKestrelFieldType::Text, TEXT("The call_id that the call has returned.") } },
		nullptr, nullptr, EKestrelNameInPanel::Shown, nullptr, nullptr };
	return Tool;
}

bool IsDocument(const FString& ToolName)
{
	for (const TCHAR* Each : DocumentTools)
	{
		if (ToolName.Equals(Each))
		{
			return true;
		}
	}
	return false;
}

FString Shorten(const FString& Text)
{
	return Text.Len() <= MaxResultLength
			   ? Text
			   : Text.Left(MaxResultLength) +
					 FString::Printf(
						 TEXT("\n[Cut here: %d more characters. Read a part, with view_range for instance.]"),
						 Text.Len() - MaxResultLength);
}

TSharedPtr<FJsonValue> MakeTextContent(const FString& Text)
{
	const TSharedRef<FJsonObject> Content = MakeShared<FJsonObject>();
	Content->SetStringField(TEXT("type"), TEXT("text"));
	Content->SetStringField(TEXT("text"), Text);
	return MakeShared<FJsonValueObject>(Content);
}

TSharedRef<FJsonObject> MakeTextResult(const FString& Text, bool bIsError)
{
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetArrayField(TEXT("content"), { MakeTextContent(Text) });
	Result->SetBoolField(TEXT("isError"), bIsError);
	return Result;
}
}

TSharedRef<FJsonObject> KestrelMcpTools::MakeList(bool bStateless)
{
	TArray<TSharedPtr<FJsonValue>> Entries;
	for (const FKestrelTool& Tool : KestrelTools::GetAll())
	{
		if (Tool.Kind != EKestrelToolKind::Finish)
		{
			Entries.Add(McpTools::MakeEntry(Tool, bStateless));
		}
	}
	for (const FKestrelTool& Tool : KestrelMcpHistoryTools::GetAll())
	{
		Entries.Add(McpTools::MakeEntry(Tool, bStateless));
	}
	Entries.Add(McpTools::MakeEntry(McpTools::GetResultTool(), bStateless));
	const TSharedRef<FJsonObject> List = MakeShared<FJsonObject>();
	List->SetArrayField(TEXT("tools"), Entries);
	return List;
}

const FKestrelTool* KestrelMcpTools::Find(const FString& Name)
{
	const auto HasName = [&Name](const FKestrelTool& Tool) {
		return Name.Equals(Tool.WireName, ESearchCase::CaseSensitive) && Tool.Kind != EKestrelToolKind::Finish;
	};
	if (HasName(McpTools::GetResultTool()))
	{
		return &McpTools::GetResultTool();
	}
	const FKestrelTool* OfHistory = KestrelMcpHistoryTools::GetAll().FindByPredicate(HasName);
	return OfHistory ? OfHistory : KestrelTools::GetAll().FindByPredicate(HasName);
}

TSharedRef<FJsonObject> KestrelMcpTools::MakeResult(
	const FKestrelMcpClient& Client, const FString& ToolName, const FString& Text)
{
	const FString Shown = KestrelKeyGuard::Hide(Text);
	const bool bIsError = FFileUtils::IsError(Shown);
	const TSharedRef<FJsonObject> Result = McpTools::MakeTextResult(McpTools::Shorten(Shown), bIsError);
	const bool bMayBeDocument = !bIsError && Client.TakesStructuredContent() && McpTools::IsDocument(ToolName) &&
								Shown.Len() <= McpTools::MaxResultLength;
	const TSharedPtr<FJsonObject> Document = bMayBeDocument ? KestrelJson::ParseObject(Shown) : nullptr;
	if (Document.IsValid())
	{
		Result->SetObjectField(TEXT("structuredContent"), Document);
	}
	return Result;
}

void KestrelMcpTools::AddChangesId(FJsonObject& Result, const FString& Key)
{
	TArray<TSharedPtr<FJsonValue>> Content = Result.GetArrayField(TEXT("content"));
	Content.Add(McpTools::MakeTextContent(FString::Printf(
		TEXT("changes_id: %s\nGive it to your further changes, and to undo_changes, which reverts them together."),
		*Key)));
	Result.SetArrayField(TEXT("content"), Content);
}

TSharedRef<FJsonObject> KestrelMcpTools::MakeWaiting(
	const FKestrelMcpClient& Client, const FString& Handle, const FString& WaitsFor)
{
	if (Client.IsStateless())
	{
		const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
		Result->SetStringField(TEXT("resultType"), TEXT("input_required"));
		Result->SetStringField(TEXT("requestState"), Handle);
		return Result;
	}
	const TSharedRef<FJsonObject> State = MakeShared<FJsonObject>();
	State->SetStringField(TEXT("state"), TEXT("waiting"));
	State->SetStringField(TEXT("waits_for"), WaitsFor);
	State->SetStringField(CallId, Handle);
	State->SetStringField(TEXT("next"), TEXT("Call get_call_result with this call_id."));
	const TSharedRef<FJsonObject> Result =
		McpTools::MakeTextResult(KestrelJson::ToCondensedText(State), /*bIsError*/ false);
	if (Client.TakesStructuredContent())
	{
		Result->SetObjectField(TEXT("structuredContent"), State);
	}
	return Result;
}
