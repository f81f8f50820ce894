#pragma once

#include "Kismet/BlueprintFunctionLibrary.h"
#include "UObject/NoExportTypes.h"
#include "KismetStringLibrary.generated.h"

/** Texts for Blueprints and scripts. Positions count from 0. */
UCLASS(meta = (BlueprintThreadSafe, ScriptName = "StringLibrary"))
class ENGINE_API UKismetStringLibrary : public UBlueprintFunctionLibrary
{
	GENERATED_BODY()

public:
	UFUNCTION(BlueprintPure, meta = (DisplayName = "Append", CompactNodeTitle = "+"), Category = "Utilities|String")
	static FString Concat_StrStr(const FString& A, const FString& B) { return A + B; }
	UFUNCTION(BlueprintPure, Category = "Utilities|String")
	static int32 Len(const FString& S) { return S.Len(); }
	UFUNCTION(BlueprintPure, Category = "Utilities|String")
	static bool IsEmpty(const FString& InString) { return InString.IsEmpty(); }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "Equal Exactly (String)", CompactNodeTitle = "==="),
		Category = "Utilities|String")
	static bool EqualEqual_StrStr(const FString& A, const FString& B) { return A.Equals(B); }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "Equal, Case Insensitive (String)", CompactNodeTitle = "=="),
		Category = "Utilities|String")
	static bool EqualEqual_StriStri(const FString& A, const FString& B) { return A == B; }
	UFUNCTION(BlueprintPure, Category = "Utilities|String")
	static bool Contains(
		const FString& SearchIn, const FString& Substring, bool bUseCase = false, bool bSearchFromEnd = false);
	UFUNCTION(BlueprintPure, Category = "Utilities|String")
	static FString Replace(const FString& SourceString, const FString& From, const FString& To);
	UFUNCTION(BlueprintPure, Category = "Utilities|String")
	static FString ToUpper(const FString& SourceString) { return SourceString.ToUpper(); }
	UFUNCTION(BlueprintPure, Category = "Utilities|String")
	static FString ToLower(const FString& SourceString) { return SourceString.ToLower(); }

	UFUNCTION(BlueprintPure, meta = (DisplayName = "To String (Integer)", CompactNodeTitle = "->", BlueprintAutocast),
		Category = "Utilities|String")
	static FString Conv_IntToString(int32 InInt) { return FString::FromInt(InInt); }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "To String (Float)", CompactNodeTitle = "->", BlueprintAutocast),
		Category = "Utilities|String")
	static FString Conv_DoubleToString(double InDouble) { return FString::SanitizeFloat(InDouble); }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "To String (Boolean)", CompactNodeTitle = "->", BlueprintAutocast),
		Category = "Utilities|String")
	static FString Conv_BoolToString(bool InBool) { return InBool ? TEXT("true") : TEXT("false"); }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "To String (Name)", CompactNodeTitle = "->", BlueprintAutocast),
		Category = "Utilities|String")
	static FString Conv_NameToString(FName InName) { return InName.ToString(); }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "To String (Vector)", CompactNodeTitle = "->", BlueprintAutocast),
		Category = "Utilities|String")
	static FString Conv_VectorToString(FVector InVec) { return InVec.ToString(); }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "To String (Object)", CompactNodeTitle = "->", BlueprintAutocast),
		Category = "Utilities|String")
	static FString Conv_ObjectToString(UObject* InObj) { return InObj ? InObj->GetName() : TEXT("None"); }
	/** 0 for what is no number. */
	UFUNCTION(BlueprintPure, meta = (DisplayName = "String To Integer", CompactNodeTitle = "->"),
		Category = "Utilities|String")
	static int32 Conv_StringToInt(const FString& InString) { return FCString::Atoi(*InString); }
};
