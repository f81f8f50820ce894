#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FJsonValue;

/** JSON as texts, in the forms that go over the wire. */
namespace KestrelJson
{
/** Without any white space. */
FString ToCondensedText(const TSharedRef<FJsonObject>& Object);
/** In the engine's layout for people, a tab a level. */
FString ToPrettyText(const TArray<TSharedPtr<FJsonValue>>& Array);
/** Invalid when the text is no JSON object. */
TSharedPtr<FJsonObject> ParseObject(const FString& Text);
}
