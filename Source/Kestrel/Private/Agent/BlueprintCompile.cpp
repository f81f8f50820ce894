#include "Agent/BlueprintDocument.h"
#include "Agent/BlueprintPackage.h"
#include "Agent/JsonText.h"
#include "Agent/KestrelBlueprintUtils.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "AssetToolsModule.h"
#include "Dom/JsonObject.h"
#include "Engine/Blueprint.h"
#include "Factories/BlueprintFactory.h"
#include "IAssetTools.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Misc/PackageName.h"
#include "Misc/ScopedSlowTask.h"
#include "Modules/ModuleManager.h"
#include "UObject/Package.h"
#include "UObject/StrongObjectPtr.h"
#include "UObject/UObjectIterator.h"

#define LOCTEXT_NAMESPACE "Kestrel"

namespace BlueprintCompile
{
const TCHAR* const NoBlueprint = TEXT("Provided asset is not a valid Blueprint.");

FString MakeResult(const TCHAR* Field, const FString& Text)
{
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(Field, Text);
	return FKestrelBlueprintUtils::SerializeJson(Result);
}

/** On disk or in memory. Files' names may differ in letter case where packages' names do not, so both are asked. */
bool IsTaken(const FString& PackageName, const FString& ObjectPath)
{
	TArray<FAssetData> Assets;
	FModuleManager::LoadModuleChecked<FAssetRegistryModule>("AssetRegistry")
		.Get()
		.GetAssetsByPackageName(FName(*PackageName), Assets);
	return Assets.Num() > 0 || FPackageName::DoesPackageExist(PackageName) || FindObject<UObject>(nullptr, *ObjectPath);
}

/**
 * Whether the asset tools would make the asset at once. For a name that is taken or cannot be one, or a class that
 * Blueprints cannot have as parent, they would open a dialog.
 */
bool CanCreate(const FString& PackagePath, const FString& Name, const UClass& ParentClass)
{
	const FString PackageName = PackagePath / Name;
	const FString ObjectPath = PackageName + TEXT(".") + Name;
	const bool bPossible =
		KestrelBlueprintDocument::CanBeName(Name) && KestrelBlueprintDocument::CanBeName(ObjectPath) &&
		FName::IsValidXName(Name, INVALID_OBJECTNAME_CHARACTERS) && FPackageName::IsValidLongPackageName(PackageName);
	return bPossible && FKismetEditorUtilities::CanCreateBlueprintOfClass(&ParentClass) &&
		   !IsTaken(PackageName, ObjectPath);
}

UObject* CreateAsset(const FString& PackagePath, const FString& Name, UClass& ParentClass)
{
	// Kept, since making the asset may collect garbage.
	const TStrongObjectPtr<UBlueprintFactory> Factory(NewObject<UBlueprintFactory>(GetTransientPackage()));
	Factory->ParentClass = &ParentClass;
	return FModuleManager::LoadModuleChecked<FAssetToolsModule>("AssetTools")
		.Get()
		.CreateAsset(Name, PackagePath, UBlueprint::StaticClass(), Factory.Get());
}

/** Puts the text of a result under the one or the other name. @return whether it is a success */
bool TakeOver(const FString& Result, const TCHAR* ErrorField, const TCHAR* SuccessField, FJsonObject& Object)
{
	const TSharedPtr<FJsonObject> Parsed = KestrelJson::ParseObject(Result);
	FString Text;
	const bool bFailed = !Parsed.IsValid() || Parsed->TryGetStringField(TEXT("Error"), Text);
	if (!bFailed)
	{
		Parsed->TryGetStringField(TEXT("Success"), Text);
	}
	Object.SetStringField(bFailed ? ErrorField : SuccessField, Text);
	return !bFailed;
}

/** @return whether both worked */
bool SaveAndCompile(UBlueprint& Blueprint, FJsonObject& Object)
{
	Object.SetStringField(TEXT("BlueprintPath"), Blueprint.GetPathName());
	const bool bSaved =
		TakeOver(FKestrelBlueprintUtils::SaveBlueprint(&Blueprint), TEXT("SaveError"), TEXT("SaveResult"), Object);
	const bool bCompiled = TakeOver(
		FKestrelBlueprintUtils::CompileBlueprint(&Blueprint), TEXT("CompileError"), TEXT("CompileResult"), Object);
	return bSaved && bCompiled;
}
}

FString FKestrelBlueprintUtils::CreateBlueprintAsset(
	const FString& PackagePath, const FString& BlueprintName, const FString& ParentClassName)
{
	UClass* ParentClass = GetBlueprintClassFromBlueprintName(ParentClassName);
	if (!ParentClass)
	{
		return FString::Printf(TEXT("Error: Parent class '%s' not found or could not be loaded."), *ParentClassName);
	}
	const bool bCreated = BlueprintCompile::CanCreate(PackagePath, BlueprintName, *ParentClass) &&
						  BlueprintCompile::CreateAsset(PackagePath, BlueprintName, *ParentClass);
	return bCreated ? FString::Printf(TEXT("Success: Blueprint '%s' created at '%s'."), *BlueprintName, *PackagePath)
					: FString::Printf(
						  TEXT("Error: Failed to create Blueprint '%s' at '%s'. Check if the path is valid and the "
							   "name is unique."),
						  *BlueprintName, *PackagePath);
}

FString FKestrelBlueprintUtils::SaveBlueprint(UObject* Asset)
{
	UBlueprint* Blueprint = Cast<UBlueprint>(Asset);
	if (!Blueprint)
	{
		return BlueprintCompile::MakeResult(TEXT("Error"), BlueprintCompile::NoBlueprint);
	}
	const FString Name = Blueprint->GetName();
	return KestrelBlueprintPackage::Save(*Blueprint, RF_Public | RF_Standalone)
			   ? BlueprintCompile::MakeResult(
					 TEXT("Success"), FString::Printf(TEXT("Blueprint '%s' saved successfully."), *Name))
			   : BlueprintCompile::MakeResult(
					 TEXT("Error"), FString::Printf(TEXT("Failed to save Blueprint asset: %s"), *Name));
}

FString FKestrelBlueprintUtils::CompileBlueprint(UObject* Asset)
{
	UBlueprint* Blueprint = Cast<UBlueprint>(Asset);
	if (!Blueprint)
	{
		return BlueprintCompile::MakeResult(TEXT("Error"), BlueprintCompile::NoBlueprint);
	}
	const TStrongObjectPtr<UBlueprint> Kept(Blueprint); // compiling collects garbage
	FKismetEditorUtilities::CompileBlueprint(Blueprint);
	const FString Name = Blueprint->GetName();
	return Blueprint->Status == BS_UpToDate ? BlueprintCompile::MakeResult(TEXT("Success"),
												  FString::Printf(TEXT("Blueprint '%s' compiled successfully."), *Name))
											: BlueprintCompile::MakeResult(TEXT("Error"),
												  FString::Printf(TEXT("Failed to compile Blueprint '%s'."), *Name));
}

void FKestrelBlueprintUtils::CompileDirtyBlueprints()
{
	TArray<TStrongObjectPtr<UBlueprint>> Dirty; // compiling collects garbage
	for (TObjectIterator<UBlueprint> It; It; ++It)
	{
		if (IsValid(*It) && It->GetOutermost()->IsDirty())
		{
			Dirty.Emplace(*It);
		}
	}
	for (const TStrongObjectPtr<UBlueprint>& Blueprint : Dirty)
	{
		FKismetEditorUtilities::CompileBlueprint(Blueprint.Get());
	}
}

FString FKestrelBlueprintUtils::SaveAndCompileAllDirtyBlueprints()
{
	TArray<FAssetData> Assets;
	FModuleManager::LoadModuleChecked<FAssetRegistryModule>("AssetRegistry")
		.Get()
		.GetAssetsByClass(UBlueprint::StaticClass()->GetClassPathName(), Assets);
	FScopedSlowTask Progress(
		static_cast<float>(Assets.Num()), LOCTEXT("SavingBlueprints", "Saving and compiling Blueprints..."));
	Progress.MakeDialogDelayed(1.0f); // seconds
	TArray<TSharedPtr<FJsonValue>> Results;
	bool bAllWorked = true;
	for (const FAssetData& Asset : Assets)
	{
		Progress.EnterProgressFrame();
		UBlueprint* Blueprint = Cast<UBlueprint>(Asset.GetAsset());
		if (Blueprint && Blueprint->GetOutermost()->IsDirty())
		{
			const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
			bAllWorked &= BlueprintCompile::SaveAndCompile(*Blueprint, *Object);
			Results.Add(MakeShared<FJsonValueObject>(Object));
		}
	}
	const TSharedRef<FJsonObject> Document = MakeShared<FJsonObject>();
	Document->SetArrayField(TEXT("BlueprintResults"), Results);
	Document->SetStringField(bAllWorked ? TEXT("Success") : TEXT("Error"),
		bAllWorked ? TEXT("All dirty Blueprints were processed successfully.")
				   : TEXT("Some Blueprints failed to save or compile."));
	return SerializeJson(Document);
}

#undef LOCTEXT_NAMESPACE
