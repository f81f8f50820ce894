#pragma once

#include "CoreMinimal.h"

class UBlueprint;
class UClass;
struct FEdGraphPinType;

/** A folder in the project's content; what lies in it is gone afterwards, from memory and disk. */
class FKestrelTestContent
{
public:
	FKestrelTestContent();
	~FKestrelTestContent();
	UE_NONCOPYABLE(FKestrelTestContent)

	/** Made as the tool makes it; null when it fails. */
	UBlueprint* CreateBlueprint(const TCHAR* AssetName, const TCHAR* ParentClassName = TEXT("Actor")) const;
	/** The file of an asset of the folder. */
	FString GetFile(const TCHAR* AssetName) const;
	/** Takes the assets out of memory; they are loaded when they are asked for. */
	void Unload() const;

	const FString Path; // "/Game/…"
};

namespace KestrelTest
{
/** A type without a container. */
FEdGraphPinType MakePinType(FName Category, FName SubCategory = NAME_None, UObject* Object = nullptr);
}
