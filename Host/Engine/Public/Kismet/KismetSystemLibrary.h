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

	/** True: there are no clients here. */
	UFUNCTION(BlueprintPure, Category = "Networking", meta = (WorldContext = "WorldContextObject"))
	static bool IsServer(const UObject* WorldContextObject) { return true; }
	/** Seconds since the play of the object's world began; 0 without a world. */
	UFUNCTION(BlueprintPure, Category = "Utilities|Time", meta = (WorldContext = "WorldContextObject"))
	static double GetGameTimeInSeconds(const UObject* WorldContextObject);

	UFUNCTION(BlueprintPure, Category = "Math|Integer", meta = (BlueprintThreadSafe))
	static int32 MakeLiteralInt(int32 Value) { return Value; }
	UFUNCTION(BlueprintPure, Category = "Math|Float", meta = (BlueprintThreadSafe))
	static double MakeLiteralDouble(double Value) { return Value; }
	UFUNCTION(BlueprintPure, Category = "Math|Boolean", meta = (BlueprintThreadSafe))
	static bool MakeLiteralBool(bool Value) { return Value; }
	UFUNCTION(BlueprintPure, Category = "Utilities|Name", meta = (BlueprintThreadSafe))
	static FName MakeLiteralName(FName Value) { return Value; }
	UFUNCTION(BlueprintPure, Category = "Utilities|String", meta = (BlueprintThreadSafe))
	static FString MakeLiteralString(FString Value) { return Value; }
	UFUNCTION(BlueprintPure, Category = "Utilities|Text", meta = (BlueprintThreadSafe))
	static FText MakeLiteralText(FText Value) { return Value; }

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

	/** Writes to the log. There is no game screen to print to, so what is said about it changes nothing. */
	UFUNCTION(BlueprintCallable, Category = "Development", meta = (WorldContext = "WorldContextObject"))
	static void PrintString(const UObject* WorldContextObject, const FString& InString = TEXT("Hello"),
		bool bPrintToScreen = true, bool bPrintToLog = true, FLinearColor TextColor = FLinearColor(0.0f, 0.66f, 1.0f),
		float Duration = 2.f, const FName Key = NAME_None);
	UFUNCTION(BlueprintCallable, Category = "Development", meta = (WorldContext = "WorldContextObject"))
	static void PrintText(const UObject* WorldContextObject, const FText InText = INVTEXT("Hello"),
		bool bPrintToScreen = true, bool bPrintToLog = true, FLinearColor TextColor = FLinearColor(0.0f, 0.66f, 1.0f),
		float Duration = 2.f, const FName Key = NAME_None);
};
