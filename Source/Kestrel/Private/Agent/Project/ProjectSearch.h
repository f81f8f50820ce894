#pragma once

#include "Agent/Project/BlueprintSearch.h"
#include "Agent/Project/SourceSearch.h"
#include "Agent/Work/TextWork.h"
#include "CoreMinimal.h"

/**
 * FKestrelFindUtils::FindInAllFiles in slices. Blueprints are searched on the game thread while others read the
 * sources.
 */
class KESTREL_API FKestrelProjectSearch : public IKestrelTextWork
{
public:
	explicit FKestrelProjectSearch(const FString& InReferenceString);

	virtual bool Step(double Deadline) override;
	virtual float GetProgress() const override;
	virtual bool IsElsewhere() const override { return bHasBlueprints && Sources.IsElsewhere(); }
	virtual void Finish() override;

	/** The document. */
	virtual FString TakeText() override;

private:
	const FString ReferenceString;
	FKestrelSourceSearch Sources;
	FKestrelBlueprintSearch Blueprints;
	bool bHasBlueprints = false; // they are searched
};
