#pragma once

#include "CoreMinimal.h"
#include "Input/DragAndDrop.h"
#include "Input/ReplyBase.h"
#include "InputCoreTypes.h"
#include "Types/SlateEnums.h"

/**
 * What a widget answers to an event, with requests to the application that it carries out after the widget's function
 * has returned. Begins with Handled() or Unhandled(); there is no default.
 */
class FReply : public TReplyBase<FReply>
{
public:
	static FReply Handled() { return FReply(true); }
	static FReply Unhandled() { return FReply(false); }

	FReply& CaptureMouse(TSharedRef<SWidget> InMouseCaptor)
	{
		MouseCaptor = InMouseCaptor;
		return *this;
	}
	FReply& ReleaseMouseCapture()
	{
		bReleaseMouseCapture = true;
		return *this;
	}
	FReply& SetUserFocus(TSharedRef<SWidget> GiveMeFocus, EFocusCause ReasonFocusIsChanging = EFocusCause::SetDirectly,
		bool bInAllUsers = false)
	{
		FocusRecipient = GiveMeFocus;
		bClearFocus = false;
		FocusChangeReason = ReasonFocusIsChanging;
		return *this;
	}
	FReply& ClearUserFocus(EFocusCause ReasonFocusIsChanging, bool bInAllUsers = false)
	{
		FocusRecipient.Reset();
		bClearFocus = true;
		FocusChangeReason = ReasonFocusIsChanging;
		return *this;
	}
	FReply& ClearUserFocus(bool bInAllUsers = false) { return ClearUserFocus(EFocusCause::SetDirectly, bInAllUsers); }
	/** The widget is told by OnDragDetected when the pointer moves with the button down. */
	FReply& DetectDrag(const TSharedRef<SWidget>& DetectDragInMe, FKey MouseButton)
	{
		DragDetector = DetectDragInMe;
		DragButton = MouseButton;
		return *this;
	}
	/** From now on the pointer drags this, until the button is let go. */
	FReply& BeginDragDrop(TSharedRef<FDragDropOperation> InDragDropContent)
	{
		DragDropContent = InDragDropContent;
		return *this;
	}
	FReply& SetNavigation(EUINavigation InNavigation)
	{
		Navigation = InNavigation;
		return *this;
	}

	const TSharedPtr<SWidget>& GetMouseCaptor() const { return MouseCaptor; }
	bool ShouldReleaseMouse() const { return bReleaseMouseCapture; }
	const TSharedPtr<SWidget>& GetUserFocusRecepient() const { return FocusRecipient; }
	bool ShouldReleaseUserFocus() const { return bClearFocus; }
	EFocusCause GetFocusCause() const { return FocusChangeReason; }
	const TSharedPtr<SWidget>& GetDetectDragRequest() const { return DragDetector; }
	FKey GetDetectDragRequestButton() const { return DragButton; }
	const TSharedPtr<FDragDropOperation>& GetDragDropContent() const { return DragDropContent; }
	EUINavigation GetNavigationType() const { return Navigation; }

	FReply& SetHandler(const TSharedRef<SWidget>& InHandler)
	{
		EventHandler = InHandler;
		return *this;
	}

private:
	explicit FReply(bool InIsHandled)
		: TReplyBase<FReply>(InIsHandled)
	{
	}

	TSharedPtr<SWidget> MouseCaptor;
	TSharedPtr<SWidget> FocusRecipient;
	TSharedPtr<SWidget> DragDetector;
	FKey DragButton;
	TSharedPtr<FDragDropOperation> DragDropContent;
	EFocusCause FocusChangeReason = EFocusCause::SetDirectly;
	EUINavigation Navigation = EUINavigation::Invalid;
	bool bReleaseMouseCapture = false;
	bool bClearFocus = false;
};
