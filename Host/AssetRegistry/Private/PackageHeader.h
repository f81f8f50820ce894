#pragma once

#include "AssetRegistry/AssetData.h"

/** What the beginning of a package file says. */
namespace PackageHeader
{
enum class EResult : uint8
{
	Read,
	/** Written by the real engine, in its binary form. */
	Binary,
	/** Not a package, or one that is damaged. */
	Unreadable,
};

/**
 * Reads the assets of a package without its objects.
 *
 * A package file is a JSON object, whose first members are "Package", its long name, and "Assets": an array of objects
 * with "Name" and "Class" (a path such as "/Script/Engine.Blueprint"). What follows "Assets" is not looked at.
 *
 * @param PackageName  the name that the file's place gives it; what the file says of itself may be out of date
 */
EResult Load(const FString& FileName, const FString& PackageName, TArray<FAssetData>& OutAssets);
}
