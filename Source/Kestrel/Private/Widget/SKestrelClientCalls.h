#pragma once

#include "CoreMinimal.h"
#include "Delegates/IDelegateInstance.h"
#include "Input/Reply.h"
#include "Layout/Visibility.h"
#include "Widget/SKestrelApprovalList.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SKestrelApprovalList;
struct FKestrelToolPlan;

/**
 * The part of the panel that is about other assistants: whether a server listens for them, who is connected, and the
 * call that waits for approval, with what it would change. Nothing is shown while the server is off.
 */
class KESTREL_API SKestrelClientCalls : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelClientCalls) {}
	SLATE_EVENT(FOnMakeChangeView, OnMakeChangeView)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
	virtual ~SKestrelClientCalls() override;

private:
	TSharedRef<SWidget> MakeStatusRow();
	TSharedRef<SWidget> MakeCallButtons();
	void OnServerChanged();
	EVisibility GetOwnVisibility() const;
	EVisibility GetCallVisibility() const;
	EVisibility GetStopVisibility() const;
	FText GetStatus() const;
	FText GetCallHeading() const;
	/** Whether what is shown can have been read, and the panel's own conversation is at rest. */
	bool MayDecide() const;
	FText GetAllowToolTip() const;
	FReply OnAllowClicked();
	FReply OnRejectClicked();
	FReply OnStopClicked();

	TSharedPtr<SKestrelApprovalList> List;
	FString ShownHandle; // of the call in the list; empty for none
	TSharedPtr<FKestrelToolPlan> ShownPlan;
	double ShownSince = 0.0; // seconds of FPlatformTime
	FDelegateHandle ChangedHandle;
};
