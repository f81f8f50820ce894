#include "Kismet/KismetStringLibrary.h"

bool UKismetStringLibrary::Contains(
	const FString& SearchIn, const FString& Substring, bool bUseCase, bool bSearchFromEnd)
{
	return SearchIn.Contains(Substring, bUseCase ? ESearchCase::CaseSensitive : ESearchCase::IgnoreCase,
		bSearchFromEnd ? ESearchDir::FromEnd : ESearchDir::FromStart);
}

FString UKismetStringLibrary::Replace(const FString& SourceString, const FString& From, const FString& To)
{
	return SourceString.Replace(*From, *To);
}
