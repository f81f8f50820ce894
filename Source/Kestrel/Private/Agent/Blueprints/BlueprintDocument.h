#pragma once

#include "CoreMinimal.h"

class FJsonObject;
class FProperty;
class UFunction;
class UObject;

/** What the documents of Blueprints and behavior trees have in common. */
namespace KestrelBlueprintDocument
{
/** An object with the one member "Error". */
TSharedRef<FJsonObject> MakeError(const FString& Message);
/** Whether the settings want the property or function to be listed. */
bool IsWanted(const FProperty& Property);
bool IsWanted(const UFunction& Function);
/** "Type" and "Value", the latter as the container has it. */
TSharedRef<FJsonObject> DescribeVariable(const void* Container, const FProperty& Property);
/** A member for each property of the container's class that is wanted, its own and its parents'. */
TSharedRef<FJsonObject> DescribeVariables(const UObject& Container);
/** Whether a text from outside can be a name: the engine ends the process for one that is too long. */
bool FitsName(const FString& Text);
/** The same, as a name; none when it cannot be one. */
FName ToName(const FString& Text);
/** Whether a path may be given to LoadObject: the engine ends the process for some that are none. */
bool CanBeLoaded(const FString& ObjectPath);
}
