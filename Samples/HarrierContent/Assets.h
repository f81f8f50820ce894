#pragma once

#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"

/** What all assets of the sample are made with. A step that fails ends the program: the assets are right or not there.
 */
namespace HarrierContent
{
/** A class, enum or struct by its full path. */
UObject* Find(const TCHAR* Path);
UClass* FindClass(const TCHAR* Path);

/** An object in a package of its own: "/Game/Folder/Name". */
UObject* MakeAsset(const TCHAR* PackageName, UClass* Class);
template <typename AssetType>
AssetType* MakeAsset(const TCHAR* PackageName)
{
	return static_cast<AssetType*>(MakeAsset(PackageName, AssetType::StaticClass()));
}
UBlueprint* MakeBlueprint(const TCHAR* PackageName, UClass* Parent);

/** A type of pins by its category and what the category needs. */
FEdGraphPinType TypeOf(FName Category, UObject* SubCategoryObject = nullptr);
FEdGraphPinType RealType(FName SubCategory = UEdGraphSchema_K2::PC_Double);
FEdGraphPinType In(EPinContainerType Container, FEdGraphPinType Element);
FEdGraphPinType MapOf(FEdGraphPinType Key, const FEdGraphPinType& Value);

struct FVariable
{
	const TCHAR* Name;
	FEdGraphPinType Type;
	const TCHAR* Default;
};
void AddVariables(UBlueprint& Blueprint, const TArray<FVariable>& Variables);
/** Adds a component under the root. */
void AddComponent(UBlueprint& Blueprint, UClass* Class, const TCHAR* Name);

/** Writes a value as text into a property of the object. */
void SetValue(UObject& Object, const TCHAR* Property, const TCHAR* Value);

/** Must come out without warnings. */
void Compile(UBlueprint& Blueprint);
/**
 * Writes the package of the asset.
 *
 * Identities are random when an object is made. In the file they are numbered instead, so that the same content is the
 * same file.
 */
void Save(const UObject& Asset);

void MakeWarden();
void MakeWardenEvents(UBlueprint& Warden);
void MakeNightWarden();
void MakeLedger();
void MakeWardenTree();
}
