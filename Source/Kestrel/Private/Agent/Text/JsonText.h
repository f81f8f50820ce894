#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FJsonValue;

/** JSON as texts, in the forms that go over the wire. */
namespace KestrelJson
{
/** Values are destroyed and read recursively, so that the depth of a text from outside is that of the stack. */
constexpr int32 MaxDepth = 256;
/** Without any white space. */
KESTREL_API FString ToCondensedText(const TSharedRef<FJsonObject>& Object);
/** In the engine's layout for people, a tab a level. */
FString ToPrettyText(const TArray<TSharedPtr<FJsonValue>>& Array);
FString ToPrettyText(const TSharedRef<FJsonObject>& Object);
/** As it goes over the wire. */
TArray<uint8> ToUtf8(const FString& Text);
/** Whether a text is nested deeper than any document is, so that it had better not be parsed. */
bool IsTooDeep(const FString& Text);
/** Invalid when the text is no JSON object, or one that is nested deeper than any document is. */
KESTREL_API TSharedPtr<FJsonObject> ParseObject(const FString& Text);
/** The same for an array. */
TOptional<TArray<TSharedPtr<FJsonValue>>> ParseArray(const FString& Text);
}
