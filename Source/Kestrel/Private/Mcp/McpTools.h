#pragma once

#include "Agent/Tools/ToolTable.h"
#include "CoreMinimal.h"

class FJsonObject;
class FJsonValue;
class FKestrelMcpClient;

/** The tools as clients see them: those of the tool table but for the end of a turn, and a few of the server's own. */
namespace KestrelMcpTools
{
inline const TCHAR* const GetCallResult = TEXT("get_call_result");
/** The argument of "get_call_result". */
inline const TCHAR* const CallId = TEXT("call_id");

/** An argument of what changes something, for clients without sessions: what the change belongs to. */
inline const TCHAR* const ChangesId = TEXT("changes_id");

/**
 * The result of "tools/list": always the same, in the same order.
 *
 * @param bStateless  for clients without sessions
 */
KESTREL_API TSharedRef<FJsonObject> MakeList(bool bStateless);
/** Null for a name that clients cannot call. */
const FKestrelTool* Find(const FString& Name);
/**
 * The result of "tools/call".
 *
 * @param Text      a text that begins with "Error:" is a failure
 * @param ToolName  tells whether the text is a document, which is given as structured content, too
 */
TSharedRef<FJsonObject> MakeResult(const FKestrelMcpClient& Client, const FString& ToolName, const FString& Text);
/** Tells a client without sessions in its result how to name what it has changed. */
void AddChangesId(FJsonObject& Result, const FString& Key);
/** For a call that goes on: the client is to ask for its result. */
TSharedRef<FJsonObject> MakeWaiting(const FKestrelMcpClient& Client, const FString& Handle, const FString& WaitsFor);
}
