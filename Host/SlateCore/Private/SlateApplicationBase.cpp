#include "Application/SlateApplicationBase.h"

#include "Modules/ModuleManager.h"
#include "Rendering/SlateRenderer.h"
#include "Widgets/SWidget.h"

IMPLEMENT_MODULE(FDefaultModuleImpl, SlateCore)

namespace SlateApplicationBase
{
static TSharedPtr<FSlateApplicationBase>& Current()
{
	static TSharedPtr<FSlateApplicationBase> Application;
	return Application;
}
}

FSlateApplicationBase::~FSlateApplicationBase() = default;

FSlateApplicationBase& FSlateApplicationBase::Get()
{
	checkf(IsInitialized(), TEXT("There is no Slate application: ask FSlateApplication::IsInitialized first"));
	return *SlateApplicationBase::Current();
}

bool FSlateApplicationBase::IsInitialized()
{
	return SlateApplicationBase::Current().IsValid();
}

void FSlateApplicationBase::SetCurrent(const TSharedPtr<FSlateApplicationBase>& Application)
{
	SlateApplicationBase::Current() = Application;
}
