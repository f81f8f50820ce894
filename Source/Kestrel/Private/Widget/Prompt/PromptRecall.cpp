#include "Widget/Prompt/PromptRecall.h"

TOptional<FString> FKestrelPromptRecall::Older(const FString& Shown, const TArray<FString>& Sent)
{
	if (Entries.IsEmpty())
	{
		Entries = Sent;
		Index = Entries.Add(Shown);
	}
	if (Index == 0)
	{
		return TOptional<FString>();
	}
	Entries[Index] = Shown;
	return Entries[--Index];
}

TOptional<FString> FKestrelPromptRecall::Newer(const FString& Shown)
{
	if (Entries.IsEmpty() || Index == Entries.Num() - 1)
	{
		return TOptional<FString>();
	}
	Entries[Index] = Shown;
	return Entries[++Index];
}

void FKestrelPromptRecall::Reset()
{
	Entries.Empty();
	Index = 0;
}
