#include "Agent/Blueprints/Assets/BlueprintCompileLog.h"
#include "Agent/Blueprints/Assets/BlueprintLookup.h"
#include "Agent/Blueprints/Assets/BlueprintPackage.h"
#include "Agent/Blueprints/Assets/MessageCapture.h"
#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "AssetToolsModule.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Engine/Blueprint.h"
#include "Factories/BlueprintFactory.h"
#include "IAssetTools.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Misc/PackageName.h"
#include "Misc/ScopedSlowTask.h"
#include "Modules/ModuleManager.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"
#include "UObject/Package.h"
#include "UObject/StrongObjectPtr.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UObjectIterator.h"

#define LOCTEXT_NAMESPACE "Kestrel"

namespace BlueprintCompile
{
const TCHAR* const NoBlueprint = TEXT("Provided asset is not a valid Blueprint.");

/** How long the name of a file or folder may be on the file systems of all platforms, in bytes. */
constexpr int32 MaxFileNameBytes = 255;
/** Of the Blueprints that cannot be loaded: a project may be full of them. */
constexpr int32 MaxNotLoaded = 100;

FString MakeResult(const TCHAR* Field, const FString& Text)
{
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(Field, Text);
	return FKestrelBlueprintUtils::SerializeJson(Result);
}

/** Whether the file system can hold the package and the folders it lies in. */
bool CanBeFile(const FString& PackageName)
{
	TArray<FString> Parts;
	(PackageName + FPackageName::GetAssetPackageExtension()).ParseIntoArray(Parts, TEXT("/"));
	return !Parts.ContainsByPredicate(
		[](const FString& Part) { return FTCHARToUTF8(*Part).Length() > MaxFileNameBytes; });
}

/** On disk or in memory. Files' names may differ in letter case where packages' names do not, so both are asked. */
bool IsTaken(const FString& PackageName, const FString& ObjectPath)
{
	TArray<FAssetData> Assets;
	IAssetRegistry& Registry = FModuleManager::LoadModuleChecked<FAssetRegistryModule>("AssetRegistry").Get();
	if (Registry.IsLoadingAssets())
	{
		Registry.ScanPathsSynchronous({ FPackageName::GetLongPackagePath(PackageName) });
	}
	Registry.GetAssetsByPackageName(FName(*PackageName), Assets);
	return Assets.Num() > 0 || FPackageName::DoesPackageExist(PackageName) || FindObject<UObject>(nullptr, *ObjectPath);
}

/** Whether the asset tools would make the asset at once. For a name that is taken or is none, they open a dialog. */
bool CanCreate(const FString& PackagePath, const FString& Name)
{
	const FString PackageName = PackagePath / Name;
	const FString ObjectPath = PackageName + TEXT(".") + Name;
	const bool bPossible = KestrelBlueprintDocument::FitsName(Name) && KestrelBlueprintDocument::FitsName(ObjectPath) &&
						   !FName(*Name).IsNone() && FName::IsValidXName(Name, INVALID_OBJECTNAME_CHARACTERS) &&
						   FPackageName::IsValidLongPackageName(PackageName) && CanBeFile(PackageName);
	return bPossible && !IsTaken(PackageName, ObjectPath);
}

FString MakeCreationError(const FString& PackagePath, const FString& Name)
{
	return FString::Printf(
		TEXT("Error: Failed to create Blueprint '%s' at '%s'. Check if the path is valid and the name is unique."),
		*Name, *PackagePath);
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
bool TakeOver(FJsonObject& Result, const TCHAR* ErrorField, const TCHAR* SuccessField, FJsonObject& Object)
{
	FString Text;
	const bool bFailed = Result.TryGetStringField(TEXT("Error"), Text);
	if (!bFailed)
	{
		Result.TryGetStringField(TEXT("Success"), Text);
	}
	Object.SetStringField(bFailed ? ErrorField : SuccessField, Text);
	Result.RemoveField(bFailed ? TEXT("Error") : TEXT("Success"));
	return !bFailed;
}

/** What results say beside success or failure. */
void Append(const FJsonObject& Result, FJsonObject& Object)
{
	for (const auto& Pair : Result.Values)
	{
		Object.SetField(FString(*Pair.Key), Pair.Value);
	}
}

TSharedRef<FJsonObject> Save(UBlueprint& Blueprint)
{
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	const FString Name = Blueprint.GetName();
	const KestrelBlueprintPackage::FOutcome Outcome =
		KestrelBlueprintPackage::Save(Blueprint, RF_Public | RF_Standalone);
	if (Outcome.bSaved)
	{
		Result->SetStringField(TEXT("Success"), FString::Printf(TEXT("Blueprint '%s' saved successfully."), *Name));
	}
	else
	{
		Result->SetStringField(TEXT("Error"), FString::Printf(TEXT("Failed to save Blueprint asset: %s"), *Name));
	}
	if (!Outcome.Reason.IsEmpty())
	{
		Result->SetStringField(Outcome.bSaved ? TEXT("SourceControl") : TEXT("Reason"), Outcome.Reason);
	}
	return Result;
}

TSharedRef<FJsonObject> Compile(UBlueprint& Blueprint)
{
	const TStrongObjectPtr<UBlueprint> Kept(&Blueprint); // compiling collects garbage
	FJsonObject Messages;
	KestrelBlueprintCompileLog::Compile(Blueprint, Messages);
	const bool bCompiled = Blueprint.Status == BS_UpToDate;
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	const FString Name = Blueprint.GetName();
	Result->SetStringField(bCompiled ? TEXT("Success") : TEXT("Error"),
		bCompiled ? FString::Printf(TEXT("Blueprint '%s' compiled successfully."), *Name)
				  : FString::Printf(TEXT("Failed to compile Blueprint '%s'."), *Name));
	Append(Messages, *Result);
	return Result;
}

/** @return whether both worked */
bool SaveAndCompile(UBlueprint& Blueprint, FJsonObject& Object)
{
	Object.SetStringField(TEXT("BlueprintPath"), Blueprint.GetPathName());
	const TSharedRef<FJsonObject> SaveResult = Save(Blueprint);
	const TSharedRef<FJsonObject> CompileResult = Compile(Blueprint);
	const bool bSaved = TakeOver(*SaveResult, TEXT("SaveError"), TEXT("SaveResult"), Object);
	const bool bCompiled = TakeOver(*CompileResult, TEXT("CompileError"), TEXT("CompileResult"), Object);
	Append(*SaveResult, Object);
	Append(*CompileResult, Object);
	return bSaved && bCompiled;
}

struct FDirtyBlueprints
{
	TArray<TStrongObjectPtr<UBlueprint>> Blueprints; // compiling collects garbage
	TArray<TSharedPtr<FJsonValue>> NotLoaded;        // "BlueprintPath" and "Reason" of each
};

/**
 * Those that the registry lists and then those in memory: one whose file the registry could not read once is not
 * listed, and is no less in danger.
 */
FDirtyBlueprints FindDirty()
{
	const TArray<FAssetData> Assets = KestrelBlueprintLookup::ListAssets(*UBlueprint::StaticClass());
	FScopedSlowTask Progress(
		static_cast<float>(Assets.Num()), LOCTEXT("LoadingBlueprints", "Loading the Blueprints..."));
	Progress.MakeDialogDelayed(1.0f); // seconds
	FDirtyBlueprints Dirty;
	TSet<const UBlueprint*> Known;
	const auto Add = [&Dirty, &Known](UBlueprint& Blueprint) {
		if (KestrelBlueprintPackage::IsUnsaved(Blueprint) && !Known.Contains(&Blueprint))
		{
			Known.Add(&Blueprint);
			Dirty.Blueprints.Emplace(&Blueprint);
		}
	};
	for (const FAssetData& Asset : Assets)
	{
		Progress.EnterProgressFrame();
		const FKestrelLogCapture Log;
		if (UBlueprint* Blueprint = Cast<UBlueprint>(Asset.GetAsset()))
		{
			Add(*Blueprint);
		}
		else if (Dirty.NotLoaded.Num() < MaxNotLoaded)
		{
			const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
			Object->SetStringField(TEXT("BlueprintPath"), Asset.GetObjectPathString());
			Object->SetStringField(TEXT("Reason"), Log.GetReason());
			Dirty.NotLoaded.Add(MakeShared<FJsonValueObject>(Object));
		}
	}
	for (TObjectIterator<UBlueprint> It; It; ++It)
	{
		Add(**It);
	}
	return Dirty;
}
}

FString FKestrelBlueprintUtils::PredictCreation(const FString& PackagePath, const FString& BlueprintName)
{
	return BlueprintCompile::CanCreate(PackagePath, BlueprintName)
			   ? FString()
			   : BlueprintCompile::MakeCreationError(PackagePath, BlueprintName);
}

FString FKestrelBlueprintUtils::CreateBlueprintAsset(
	const FString& PackagePath, const FString& BlueprintName, const FString& ParentClassName)
{
	UClass* ParentClass = GetBlueprintClassFromBlueprintName(ParentClassName);
	if (!ParentClass)
	{
		return FString::Printf(TEXT("Error: Parent class '%s' not found or could not be loaded."), *ParentClassName);
	}
	// For a class that Blueprints cannot have as parent, the asset tools would open a dialog, too.
	const bool bCreated = FKismetEditorUtilities::CanCreateBlueprintOfClass(ParentClass) &&
						  BlueprintCompile::CanCreate(PackagePath, BlueprintName) &&
						  BlueprintCompile::CreateAsset(PackagePath, BlueprintName, *ParentClass);
	return bCreated ? FString::Printf(TEXT("Success: Blueprint '%s' created at '%s'."), *BlueprintName, *PackagePath)
					: BlueprintCompile::MakeCreationError(PackagePath, BlueprintName);
}

FString FKestrelBlueprintUtils::SaveBlueprint(UObject* Asset)
{
	UBlueprint* Blueprint = Cast<UBlueprint>(Asset);
	if (!Blueprint)
	{
		return BlueprintCompile::MakeResult(TEXT("Error"), BlueprintCompile::NoBlueprint);
	}
	return SerializeJson(BlueprintCompile::Save(*Blueprint));
}

FString FKestrelBlueprintUtils::CompileBlueprint(UObject* Asset)
{
	UBlueprint* Blueprint = Cast<UBlueprint>(Asset);
	if (!Blueprint)
	{
		return BlueprintCompile::MakeResult(TEXT("Error"), BlueprintCompile::NoBlueprint);
	}
	return SerializeJson(BlueprintCompile::Compile(*Blueprint));
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
	const BlueprintCompile::FDirtyBlueprints Dirty = BlueprintCompile::FindDirty();
	FScopedSlowTask Progress(
		static_cast<float>(Dirty.Blueprints.Num()), LOCTEXT("SavingBlueprints", "Saving and compiling Blueprints..."));
	Progress.MakeDialogDelayed(1.0f); // seconds
	TArray<TSharedPtr<FJsonValue>> Results;
	bool bAllWorked = true;
	for (const TStrongObjectPtr<UBlueprint>& Blueprint : Dirty.Blueprints)
	{
		Progress.EnterProgressFrame();
		const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
		bAllWorked &= BlueprintCompile::SaveAndCompile(*Blueprint, *Object);
		Results.Add(MakeShared<FJsonValueObject>(Object));
	}
	const TSharedRef<FJsonObject> Document = MakeShared<FJsonObject>();
	Document->SetArrayField(TEXT("BlueprintResults"), Results);
	Document->SetStringField(bAllWorked ? TEXT("Success") : TEXT("Error"),
		bAllWorked ? TEXT("All dirty Blueprints were processed successfully.")
				   : TEXT("Some Blueprints failed to save or compile."));
	if (!Dirty.NotLoaded.IsEmpty())
	{
		Document->SetArrayField(TEXT("NotLoaded"), Dirty.NotLoaded);
	}
	return SerializeJson(Document);
}

#undef LOCTEXT_NAMESPACE
