#pragma once

#include "Agent/Tools/ToolTable.h"
#include "CoreMinimal.h"

/** "undo_changes" and "redo_changes": a client reverts all that it has changed, or makes it again. */
namespace KestrelMcpHistoryTools
{
const TArray<FKestrelTool>& GetAll();
bool IsOne(const FKestrelTool& Tool);
/** A plan of one of these tools for the conversation of the client at work. */
TSharedRef<FKestrelToolPlan> Plan(const FKestrelTool& Tool, const FString& ConversationId, const FString& ToolUseId);
}
