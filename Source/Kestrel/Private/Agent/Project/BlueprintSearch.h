#pragma once

#include "Agent/Project/PackageFilter.h"
#include "Agent/Project/SearchReview.h"
#include "Agent/Work/SlicedWork.h"
#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"

class FJsonObject;
class FJsonValue;
class UBlueprint;

/** Whether texts have the searched one in them. Names are few and met often, so what they gave is kept. */
class FKestrelNameNeedle
{
public:
	explicit FKestrelNameNeedle(const FString& InText)
		: Text(InText)
	{
	}

	const FString& GetText() const { return Text; }
	/** The engine does not find the empty text, which is in every text. */
	bool IsIn(const FString& Candidate) const { return Text.IsEmpty() || Candidate.Contains(Text); }
	bool IsIn(FName Name);

private:
	const FString Text;
	TMap<FName, bool> Names;
};

/**
 * Searches all Blueprints of the project's content, as FKestrelFindUtils::FindInAllBlueprintFiles does at once. Between
 * two steps nothing is held on to but names: Blueprints may be changed, unloaded and deleted. A search that is given up
 * has changed nothing.
 *
 * While the asset registry looks through the content for the first time, a step waits for it and ends at once.
 */
class KESTREL_API FKestrelBlueprintSearch final : public IKestrelSlicedWork
{
public:
	/** @param Text  letter case is ignored; the empty text is everywhere */
	explicit FKestrelBlueprintSearch(const FString& Text);
	UE_NONCOPYABLE(FKestrelBlueprintSearch)

	bool Step(double Deadline) override;
	float GetProgress() const override;

	/** At the end: sets "blueprint_references", and what was left out (FKestrelSearchReview::Report). */
	void Report(FJsonObject& Result) const;
	/** Those that were not in memory and were loaded. */
	int32 GetNumLoaded() const { return NumLoaded; }

private:
	/** @return false as long as the registry does not know all of them */
	bool List();
	bool MayRead(const FString& File);
	void SearchNext();

	FKestrelNameNeedle Needle;
	TArray<FAssetData> Assets;
	TOptional<FKestrelPackageFilter> Filter; // once the Blueprints are listed
	bool bFiltered = false;
	int32 NextAsset = 0;
	int32 NumLoaded = 0;
	FKestrelSearchReview Review;
	FString LastFolder; // of a file that was asked for
	FString RealLastFolder;
	TArray<TSharedPtr<FJsonValue>> References;
};
