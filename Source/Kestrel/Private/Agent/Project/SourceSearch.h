#pragma once

#include "Agent/Files/FolderWalk.h"
#include "Agent/Project/SearchReview.h"
#include "Agent/Work/BackgroundWork.h"
#include "Async/ParallelFor.h"
#include "CoreMinimal.h"

class FJsonObject;
class FKestrelTextNeedle;

/**
 * FKestrelFindUtils::FindInAllCppFiles in slices. The folders are walked on the game thread, where the rules are; the
 * files are read on all cores.
 */
class KESTREL_API FKestrelSourceSearch : public IKestrelSlicedWork
{
public:
	explicit FKestrelSourceSearch(const FString& ReferenceString, EParallelForFlags InFlags = EParallelForFlags::None);
	virtual ~FKestrelSourceSearch() override;

	virtual bool Step(double Deadline) override;
	virtual float GetProgress() const override;
	virtual bool IsElsewhere() const override { return Scan.IsValid(); }

	/** At the end: sets what was found on Result. */
	void Report(FJsonObject& Result);

private:
	enum class EFinding : uint8
	{
		Nothing,
		Found,
		TooLarge,
	};

	/** Starts the next walk, while there is one. @return false when there is none */
	bool BeginWalk();
	void TakeFiles();
	void BeginScan();
	static EFinding Look(const FString& File, const FKestrelTextNeedle& Needle, TArray<uint8>& Bytes);

	const TSharedRef<const FKestrelTextNeedle> Needle;
	const EParallelForFlags Flags;
	FKestrelSearchReview Review;
	int32 NumWalks = 0; // that have begun
	TUniquePtr<FKestrelFileWalk> Walk;
	TSharedRef<TArray<FString>> Files = MakeShared<TArray<FString>>();
	TUniquePtr<TKestrelBackgroundWork<TArray<EFinding>>> Scan;
};
