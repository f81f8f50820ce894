#pragma once

#include "Containers/UnrealString.h"
#include "UObject/NameTypes.h"

class FJsonObject;

namespace ELoadingPhase
{
/** In order of time. */
enum Type
{
	EarliestPossible,
	PostConfigInit,
	PostSplashScreen,
	PreEarlyLoadingScreen,
	PreLoadingScreen,
	PreDefault,
	Default,
	PostDefault,
	PostEngineInit,
	None,
	Max,
};
bool FromString(const FString& Text, Type& OutPhase);
}

namespace EHostType
{
enum Type
{
	Runtime,
	RuntimeNoCommandlet,
	RuntimeAndProgram,
	CookedOnly,
	UncookedOnly,
	Developer,
	DeveloperTool,
	Editor,
	EditorNoCommandlet,
	EditorAndProgram,
	Program,
	ServerOnly,
	ClientOnly,
	ClientOnlyNoCommandlet,
	Max,
};
bool FromString(const FString& Text, Type& OutType);
}

/** A module as a descriptor file names it. */
struct FModuleDescriptor
{
	FName Name;
	EHostType::Type Type = EHostType::Runtime;
	ELoadingPhase::Type LoadingPhase = ELoadingPhase::Default;

	bool Read(const FJsonObject& Object, FText& OutFailReason);
	/** Whether an editor on this platform loads it. */
	bool IsLoadedInEditor() const;

private:
	bool bAllowedOnPlatform = true;
};
