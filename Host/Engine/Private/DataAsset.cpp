#include "Engine/DataAsset.h"

UDataAsset::UDataAsset(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
{
}

void UDataAsset::PostInitProperties()
{
	Super::PostInitProperties();
	NativeClass = GetClass(); // also in a child's default object, which starts as its parent's
}
