#include "Assets.h"

#include "Engine/SimpleConstructionScript.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Kismet2/CompilerResultsLog.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "UObject/Package.h"
#include "UObject/SavePackage.h"
#include "UObject/UnrealType.h"

namespace Assets
{
constexpr uint32 AssetMark = 0x4D6F6F72; // in front of all numbered identities

/** Whether the text between "(" and ")" is an identity. */
bool IsGuid(const FString& Text)
{
	TArray<FString> Parts;
	Text.ParseIntoArray(Parts, TEXT(","));
	return Parts.Num() == 4 && Parts[0].StartsWith(TEXT("A=")) && Parts[1].StartsWith(TEXT("B=")) &&
		   Parts[2].StartsWith(TEXT("C=")) && Parts[3].StartsWith(TEXT("D="));
}

/** The text with its identities numbered in the order in which they are met. */
FString NumberGuids(const FString& Text)
{
	TMap<FString, FString> Numbered;
	FString Result;
	int32 Kept = 0;
	for (int32 Start = Text.Find(TEXT("(A=")); Start != INDEX_NONE;
		 Start = Text.Find(TEXT("(A="), ESearchCase::CaseSensitive, ESearchDir::FromStart, Start + 1))
	{
		const int32 End = Text.Find(TEXT(")"), ESearchCase::CaseSensitive, ESearchDir::FromStart, Start);
		const FString Guid = Text.Mid(Start + 1, End - Start - 1);
		if (End == INDEX_NONE || !IsGuid(Guid))
		{
			continue;
		}
		if (!Numbered.Contains(Guid))
		{
			Numbered.Add(Guid, FString::Printf(TEXT("A=%u,B=0,C=0,D=%d"), AssetMark, Numbered.Num() + 1));
		}
		Result += Text.Mid(Kept, Start + 1 - Kept) + Numbered[Guid];
		Kept = End;
	}
	return Result + Text.Mid(Kept);
}
}

UObject* HarrierContent::Find(const TCHAR* Path)
{
	UObject* const Object = FindObject<UObject>(nullptr, Path);
	checkf(Object, TEXT("There is no %s"), Path);
	return Object;
}

UClass* HarrierContent::FindClass(const TCHAR* Path)
{
	return CastChecked<UClass>(Find(Path));
}

UObject* HarrierContent::MakeAsset(const TCHAR* PackageName, UClass* Class)
{
	return NewObject<UObject>(CreatePackage(PackageName), Class, FName(*FPackageName::GetShortName(PackageName)),
		RF_Public | RF_Standalone | RF_Transactional);
}

UBlueprint* HarrierContent::MakeBlueprint(const TCHAR* PackageName, UClass* Parent)
{
	return FKismetEditorUtilities::CreateBlueprint(
		Parent, CreatePackage(PackageName), FName(*FPackageName::GetShortName(PackageName)), BPTYPE_Normal);
}

FEdGraphPinType HarrierContent::TypeOf(FName Category, UObject* SubCategoryObject)
{
	FEdGraphPinType Type;
	Type.PinCategory = Category;
	Type.PinSubCategoryObject = SubCategoryObject;
	return Type;
}

FEdGraphPinType HarrierContent::RealType(FName SubCategory)
{
	FEdGraphPinType Type = TypeOf(UEdGraphSchema_K2::PC_Real);
	Type.PinSubCategory = SubCategory;
	return Type;
}

FEdGraphPinType HarrierContent::In(EPinContainerType Container, FEdGraphPinType Element)
{
	Element.ContainerType = Container;
	return Element;
}

FEdGraphPinType HarrierContent::MapOf(FEdGraphPinType Key, const FEdGraphPinType& Value)
{
	Key.PinValueType = FEdGraphTerminalType::FromPinType(Value);
	return In(EPinContainerType::Map, Key);
}

void HarrierContent::AddVariables(UBlueprint& Blueprint, const TArray<FVariable>& Variables)
{
	for (const FVariable& Variable : Variables)
	{
		const bool bAdded =
			FBlueprintEditorUtils::AddMemberVariable(&Blueprint, Variable.Name, Variable.Type, Variable.Default);
		checkf(bAdded, TEXT("%s cannot have a variable %s"), *Blueprint.GetName(), Variable.Name);
	}
}

void HarrierContent::AddComponent(UBlueprint& Blueprint, UClass* Class, const TCHAR* Name)
{
	USimpleConstructionScript* const Script = Blueprint.SimpleConstructionScript;
	Script->AddNode(Script->CreateNode(Class, Name));
	FBlueprintEditorUtils::MarkBlueprintAsStructurallyModified(&Blueprint);
}

void HarrierContent::SetValue(UObject& Object, const TCHAR* Property, const TCHAR* Value)
{
	const FProperty* const Found = Object.GetClass()->FindPropertyByName(Property);
	checkf(Found && Found->ImportText_InContainer(Value, &Object, &Object, PPF_None), TEXT("%s.%s cannot be %s"),
		*Object.GetName(), Property, Value);
}

void HarrierContent::Compile(UBlueprint& Blueprint)
{
	FCompilerResultsLog Log;
	FKismetEditorUtilities::CompileBlueprint(&Blueprint, EBlueprintCompileOptions::SkipGarbageCollection, &Log);
	checkf(Blueprint.Status == BS_UpToDate, TEXT("%s does not compile"), *Blueprint.GetName());
}

void HarrierContent::Save(const UObject& Asset)
{
	UPackage* const Package = Asset.GetPackage();
	const FString File =
		FPackageName::LongPackageNameToFilename(Package->GetName(), FPackageName::GetAssetPackageExtension());
	FSavePackageArgs Args;
	Args.TopLevelFlags = RF_Standalone;
	FString Text;
	const bool bSaved = UPackage::SavePackage(Package, nullptr, *File, Args) &&
						FFileHelper::LoadFileToString(Text, *File) &&
						FFileHelper::SaveStringToFile(
							Assets::NumberGuids(Text), *File, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
	checkf(bSaved, TEXT("%s cannot be saved"), *File);
}
