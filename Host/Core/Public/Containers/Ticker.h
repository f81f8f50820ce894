#pragma once

#include "Containers/Array.h"
#include "Delegates/Delegate.h"
#include "Templates/Function.h"

using FTickerDelegate = TDelegate<bool(float)>;

/** Calls functions at intervals on the game thread, once a frame at most. */
class FTSTicker
{
	struct FElement;

public:
	using FDelegateHandle = TWeakPtr<FElement>;

	static FTSTicker& GetCoreTicker();

	/** First called at the first tick at least InDelay seconds after adding, then every InDelay; ends with false. */
	FDelegateHandle AddTicker(const FTickerDelegate& InDelegate, float InDelay = 0.0f);
	FDelegateHandle AddTicker(const TCHAR* InName, float InDelay, TFunction<bool(float)> Function);
	/** From inside the callback itself it is safe; an expired handle does nothing. */
	static void RemoveTicker(FDelegateHandle Handle);

	void Tick(float DeltaTime);
	/** When the next element is due (seconds of FPlatformTime); a large number when there is none. */
	double GetNextDueTime() const;

private:
	struct FElement
	{
		FTickerDelegate Delegate;
		double DelaySeconds = 0.0;
		double DueTime = 0.0;
		bool bRemoved = false;
	};

	TArray<TSharedPtr<FElement>> Elements;
};
