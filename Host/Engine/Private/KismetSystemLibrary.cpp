#include "Kismet/KismetSystemLibrary.h"

#include "Engine/World.h"
#include "Misc/App.h"
#include "Misc/EngineVersion.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"

DEFINE_LOG_CATEGORY_STATIC(LogBlueprintUserMessages, Log, All);

bool UKismetSystemLibrary::IsValid(const UObject* Object)
{
	return ::IsValid(Object);
}

bool UKismetSystemLibrary::IsValidClass(UClass* Class)
{
	return ::IsValid(Class);
}

FString UKismetSystemLibrary::GetObjectName(const UObject* Object)
{
	return Object ? Object->GetName() : FString();
}

FString UKismetSystemLibrary::GetPathName(const UObject* Object)
{
	return Object ? Object->GetPathName() : FString();
}

FString UKismetSystemLibrary::GetDisplayName(const UObject* Object)
{
	return GetObjectName(Object);
}

FString UKismetSystemLibrary::GetClassDisplayName(const UClass* Class)
{
	return Class ? Class->GetName() : FString();
}

UObject* UKismetSystemLibrary::GetOuterObject(const UObject* Object)
{
	return Object ? Object->GetOuter() : nullptr;
}

FString UKismetSystemLibrary::GetEngineVersion()
{
	return FEngineVersion::Current().ToString();
}

FString UKismetSystemLibrary::GetGameName()
{
	return FApp::GetProjectName();
}

FString UKismetSystemLibrary::GetProjectDirectory()
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
}

FString UKismetSystemLibrary::GetProjectContentDirectory()
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectContentDir());
}

FString UKismetSystemLibrary::GetProjectSavedDirectory()
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir());
}

FString UKismetSystemLibrary::ConvertToAbsolutePath(const FString& Filename)
{
	return FPaths::ConvertRelativePathToFull(Filename);
}

void UKismetSystemLibrary::PrintString(
	const UObject*, const FString& InString, bool, bool bPrintToLog, FLinearColor, float, const FName)
{
	UE_CLOG(bPrintToLog, LogBlueprintUserMessages, Log, TEXT("%s"), *InString);
}

void UKismetSystemLibrary::PrintText(const UObject* WorldContextObject, const FText InText, bool bPrintToScreen,
	bool bPrintToLog, FLinearColor TextColor, float Duration, const FName Key)
{
	PrintString(WorldContextObject, InText.ToString(), bPrintToScreen, bPrintToLog, TextColor, Duration, Key);
}

double UKismetSystemLibrary::GetGameTimeInSeconds(const UObject* WorldContextObject)
{
	const UWorld* const World = WorldContextObject ? WorldContextObject->GetWorld() : nullptr;
	return World ? World->GetTimeSeconds() : 0.0;
}
