#pragma once

#include "Containers/UnrealString.h"

class FProperty;
class UEnum;
class UField;
class UFunction;

/** What reflected things are called in Python. The metadata "ScriptName" overrides the rules. */
namespace PyNames
{
/** "KeepLast30Days" is "keep_last30_days", "HTTPPort" is "http_port"; a word of the language gets "_" at its end. */
FString ToSnakeCase(const FString& Name);
/** "auto_approve" for the bool bAutoApprove. */
FString GetName(const FProperty& Property);
FString GetName(const UFunction& Function);
/** A class or struct without prefix: "Actor"; an enum without its E. */
FString GetTypeName(const UField& Type);
/** "KEEP_ALL" */
FString GetEntryName(const UEnum& Enum, int32 Index);
}
