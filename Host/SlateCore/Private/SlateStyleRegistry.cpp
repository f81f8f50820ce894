#include "Styling/SlateStyleRegistry.h"

#include "Application/SlateApplicationBase.h"
#include "Rendering/SlateRenderer.h"
#include "Styling/ISlateStyle.h"

namespace SlateStyleRegistry
{
static TMap<FName, const ISlateStyle*>& Styles()
{
	// Never destroyed: style sets that are static objects may be unregistered while the process ends.
	static TMap<FName, const ISlateStyle*>& All = *new TMap<FName, const ISlateStyle*>();
	return All;
}
}

void FSlateStyleRegistry::RegisterSlateStyle(const ISlateStyle& InSlateStyle)
{
	const FName Name = InSlateStyle.GetStyleSetName();
	checkf(FindSlateStyle(Name) == nullptr, TEXT("A style set named '%s' is registered already"), *Name.ToString());
	SlateStyleRegistry::Styles().Add(Name, &InSlateStyle);
	if (FSlateApplicationBase::IsInitialized() && FSlateApplicationBase::Get().GetRenderer() != nullptr)
	{
		FSlateApplicationBase::Get().GetRenderer()->LoadStyleResources(InSlateStyle);
	}
}

void FSlateStyleRegistry::UnRegisterSlateStyle(const ISlateStyle& InSlateStyle)
{
	UnRegisterSlateStyle(InSlateStyle.GetStyleSetName());
}

void FSlateStyleRegistry::UnRegisterSlateStyle(const FName InSlateStyleName)
{
	SlateStyleRegistry::Styles().Remove(InSlateStyleName);
}

const ISlateStyle* FSlateStyleRegistry::FindSlateStyle(const FName& InSlateStyleName)
{
	return SlateStyleRegistry::Styles().FindRef(InSlateStyleName);
}

void FSlateStyleRegistry::IterateAllStyles(const TFunction<bool(const ISlateStyle&)>& IteratorFunction)
{
	TArray<const ISlateStyle*> Snapshot;
	SlateStyleRegistry::Styles().GenerateValueArray(Snapshot);
	for (const ISlateStyle* const Style : Snapshot)
	{
		if (!IteratorFunction(*Style))
		{
			return;
		}
	}
}
