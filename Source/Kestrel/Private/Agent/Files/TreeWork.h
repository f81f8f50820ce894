#pragma once

#include "Agent/Files/TreeText.h"
#include "Agent/Work/BackgroundWork.h"
#include "CoreMinimal.h"

/**
 * FFileUtils::GetSubDirectoryStructureAsJsonObject, on a worker thread: the folders are listed there, and what is to be
 * done with the text as well. With asset classes, which only the game thread may ask for, all of it is done at once.
 */
class KESTREL_API FKestrelTreeWork : public IKestrelSlicedWork
{
public:
	/** What becomes of the tree; runs on the worker thread. */
	using FMakeBytes = TFunction<TArray<uint8>(const FKestrelTreeText& Tree)>;

	/** @param InMakeBytes  may be empty */
	explicit FKestrelTreeWork(const FString& InPath, FMakeBytes InMakeBytes = FMakeBytes());

	virtual bool Step(double Deadline) override;
	virtual float GetProgress() const override { return Work->GetProgress(); }
	virtual bool IsElsewhere() const override { return true; }
	virtual void Finish() override;

	/** The tree, at the end. */
	const FString& GetText() { return Work->GetResult().Tree->Text; }
	/** What was made of it. */
	TArray<uint8>& GetBytes() { return Work->GetResult().Bytes; }
	/** Folders listed so far. */
	int32 GetNumFolders() const { return Work->GetNumDone(); }

private:
	struct FResult
	{
		TSharedPtr<const FKestrelTreeText> Tree;
		TArray<uint8> Bytes;
	};

	void KeepTree();

	bool bHasClasses = false;
	TUniquePtr<TKestrelBackgroundWork<FResult>> Work;
};
