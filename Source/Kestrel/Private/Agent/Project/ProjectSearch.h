#pragma once

#include "Agent/Project/SourceSearch.h"
#include "Agent/Work/SlicedWork.h"
#include "CoreMinimal.h"

/** FKestrelFindUtils::FindInAllFiles in slices. */
class KESTREL_API FKestrelProjectSearch : public IKestrelSlicedWork
{
public:
	explicit FKestrelProjectSearch(const FString& InReferenceString);

	virtual bool Step(double Deadline) override;
	virtual float GetProgress() const override { return Sources.GetProgress(); }
	virtual bool IsElsewhere() const override { return Sources.IsElsewhere(); }
	virtual void Finish() override;

	/** The document, at the end. */
	FString MakeText();

private:
	const FString ReferenceString;
	FKestrelSourceSearch Sources;
};
