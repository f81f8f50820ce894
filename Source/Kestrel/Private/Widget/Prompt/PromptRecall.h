#pragma once

#include "CoreMinimal.h"

/**
 * Walks up and down through the prompts that were sent. Behind the latest lies what was being typed, and whatever is
 * changed on the way stays changed until the walk ends with Reset.
 */
class KESTREL_API FKestrelPromptRecall
{
public:
	/**
	 * @param Shown  what the prompt box holds now; comes back when the walk comes back
	 * @param Sent   the prompts that were sent, the oldest first; asked for when a walk begins
	 * @return what the prompt box should hold; unset when there is nothing older
	 */
	TOptional<FString> Older(const FString& Shown, const TArray<FString>& Sent);
	/** @return what the prompt box should hold; unset when there is nothing newer */
	TOptional<FString> Newer(const FString& Shown);
	/** A prompt was sent: the next walk begins from the end. */
	void Reset();

private:
	TArray<FString> Entries; // what was being typed comes last; empty when nobody walks
	int32 Index = 0;
};
