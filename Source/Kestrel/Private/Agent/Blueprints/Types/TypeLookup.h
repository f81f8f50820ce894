#pragma once

#include "CoreMinimal.h"

class UClass;
class UEnum;
class UObject;
class UScriptStruct;

/**
 * Finds types by what a document calls them: a path ("/Script/Engine.Actor", "/Game/Doors/BP_Door") or a name, without
 * the prefix of C++ ("Actor", "LinearColor", "BP_Door"). Types in memory come first, native ones before others; those
 * of assets are loaded. Null when nothing has the name. A Blueprint stands for its class.
 */
namespace KestrelTypeLookup
{
UClass* FindClass(const FString& NameOrPath);
/** The same without loading anything: null also for a class that an asset would bring. */
UClass* FindClassInMemory(const FString& NameOrPath);
UScriptStruct* FindStruct(const FString& NameOrPath);
UEnum* FindEnum(const FString& NameOrPath);
/** The type that pins of the category need: an enum for bytes, a struct or a class; for others any object by path. */
UObject* FindForCategory(FName PinCategory, const FString& NameOrPath);
}
