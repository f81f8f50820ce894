#pragma once

#include "CoreMinimal.h"

class SWidget;

/** Whether an event was dealt with, and by whom. */
class FReplyBase
{
public:
	bool IsEventHandled() const { return bIsHandled; }

protected:
	explicit FReplyBase(bool InIsHandled)
		: bIsHandled(InIsHandled)
	{
	}

	bool bIsHandled;
	TSharedPtr<SWidget> EventHandler;
};

template <typename ReplyType>
class TReplyBase : public FReplyBase
{
protected:
	explicit TReplyBase(bool InIsHandled)
		: FReplyBase(InIsHandled)
	{
	}

	ReplyType& Me() { return static_cast<ReplyType&>(*this); }
};
