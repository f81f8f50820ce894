#include "Containers/Ticker.h"

#include "CoreGlobals.h"
#include "HAL/PlatformTime.h"

FTSTicker& FTSTicker::GetCoreTicker()
{
	// Never destroyed: static objects may remove their tickers while the process ends.
	static FTSTicker* Ticker = new FTSTicker;
	return *Ticker;
}

FTSTicker::FDelegateHandle FTSTicker::AddTicker(const FTickerDelegate& InDelegate, float InDelay)
{
	const TSharedRef<FElement> Element = MakeShared<FElement>();
	Element->Delegate = InDelegate;
	Element->DelaySeconds = InDelay;
	Element->DueTime = FPlatformTime::Seconds() + InDelay;
	Elements.Add(Element);
	return Element;
}

FTSTicker::FDelegateHandle FTSTicker::AddTicker(const TCHAR* InName, float InDelay, TFunction<bool(float)> Function)
{
	return AddTicker(FTickerDelegate::CreateLambda(MoveTemp(Function)), InDelay);
}

void FTSTicker::RemoveTicker(FDelegateHandle Handle)
{
	if (const TSharedPtr<FElement> Element = Handle.Pin())
	{
		Element->bRemoved = true;
		GetCoreTicker().Elements.Remove(Element);
	}
}

void FTSTicker::Tick(float DeltaTime)
{
	checkf(IsInGameThread(), TEXT("The core ticker belongs to the game thread"));
	const double Now = FPlatformTime::Seconds();
	const TArray<TSharedPtr<FElement>> Snapshot = Elements;
	for (const TSharedPtr<FElement>& Element : Snapshot)
	{
		if (Element->bRemoved || Now < Element->DueTime)
		{
			continue;
		}
		// No catching up: the next call is counted from this one.
		Element->DueTime = Now + Element->DelaySeconds;
		const bool bGoOn = Element->Delegate.IsBound() && Element->Delegate.Execute(DeltaTime);
		if (!bGoOn)
		{
			Element->bRemoved = true;
			Elements.Remove(Element);
		}
	}
}

double FTSTicker::GetNextDueTime() const
{
	double Next = 1e300;
	for (const TSharedPtr<FElement>& Element : Elements)
	{
		Next = FMath::Min(Next, Element->DueTime);
	}
	return Next;
}
