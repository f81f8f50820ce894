#pragma once

#include "Kismet/BlueprintFunctionLibrary.h"
#include "KismetSystemLibrary.generated.h"

/** What Blueprints and scripts ask of the editor and of any object. */
UCLASS(meta = (ScriptName = "SystemLibrary"))
class ENGINE_API UKismetSystemLibrary : public UBlueprintFunctionLibrary
{
	GENERATED_BODY()

public:
	/** Not null, and not about to be destroyed. */
	UFUNCTION(BlueprintPure, Category = "Utilities")
	static bool IsValid(const UObject* Object);
	UFUNCTION(BlueprintPure, Category = "Utilities")
	static bool IsValidClass(UClass* Class);
	/** Empty for no object, as are the other texts about objects. */
	UFUNCTION(BlueprintPure, Category = "Utilities")
	static FString GetObjectName(const UObject* Object);
	UFUNCTION(BlueprintPure, Category = "Utilities")
	static FString GetPathName(const UObject* Object);
	UFUNCTION(BlueprintPure, Category = "Utilities")
	static FString GetDisplayName(const UObject* Object);
	UFUNCTION(BlueprintPure, Category = "Utilities", meta = (DisplayName = "Get Display Name (Class)"))
	static FString GetClassDisplayName(const UClass* Class);
	UFUNCTION(BlueprintPure, Category = "Utilities")
	static UObject* GetOuterObject(const UObject* Object);

	UFUNCTION(BlueprintPure, Category = "Utilities|Platform")
	static FString GetEngineVersion();
	UFUNCTION(BlueprintPure, Category = "Utilities|Platform")
	static FString GetGameName();
	UFUNCTION(BlueprintPure, Category = "Utilities|Paths")
	static FString GetProjectDirectory();
	UFUNCTION(BlueprintPure, Category = "Utilities|Paths")
	static FString GetProjectContentDirectory();
	UFUNCTION(BlueprintPure, Category = "Utilities|Paths")
	static FString GetProjectSavedDirectory();
	UFUNCTION(BlueprintPure, Category = "Utilities|Paths")
	static FString ConvertToAbsolutePath(const FString& Filename);

	/** Writes to the log. There is no game screen to print to, so bPrintToScreen changes nothing. */
	UFUNCTION(BlueprintCallable, Category = "Development", meta = (WorldContext = "WorldContextObject"))
	static void PrintString(const UObject* WorldContextObject, const FString& InString = TEXT("Hello"),
		bool bPrintToScreen = true, bool bPrintToLog = true);
};
