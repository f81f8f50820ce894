#pragma once

#include "CoreMinimal.h"
#include "Delegates/IDelegateInstance.h"
#include "Layout/Visibility.h"
#include "Types/WidgetActiveTimerDelegate.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class FActiveTimerHandle;
class STextBlock;

/** One quiet line that says how the conversation is going. It changes by itself only while the agent works. */
class SKestrelStatusLine : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelStatusLine) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
	virtual ~SKestrelStatusLine() override;

private:
	void Refresh();
	/** Nothing else tells of them. */
	EActiveTimerReturnType CountSeconds(double InCurrentTime, float InDeltaTime);

	TSharedPtr<STextBlock> Line;
	FDelegateHandle ChangedHandle;
	TWeakPtr<FActiveTimerHandle> Timer;
};
