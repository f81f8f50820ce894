#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/ICursor.h"
#include "Input/DragAndDrop.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/ArrangedChildren.h"
#include "Layout/ChildrenBase.h"
#include "Layout/Clipping.h"
#include "Layout/Geometry.h"
#include "Layout/Visibility.h"
#include "Misc/Attribute.h"
#include "Styling/WidgetStyle.h"
#include "Types/CachedAttribute.h"
#include "Types/PaintArgs.h"
#include "Types/SlateEnums.h"
#include "Types/SlateVector2.h"
#include "Types/WidgetActiveTimerDelegate.h"
#include "Widgets/Accessibility/SlateWidgetAccessibleTypes.h"
#include "Widgets/InvalidateWidgetReason.h"
#include "Widgets/SlateControlledConstruction.h"

class FActiveTimerHandle;
class FSlateAccessibleWidget;
class FSlateWindowElementList;
struct FSlateBaseNamedArgs;

DECLARE_DELEGATE_RetVal_TwoParams(FReply, FPointerEventHandler, const FGeometry&, const FPointerEvent&);

/**
 * A piece of user interface: a node of the widget tree.
 *
 * A frame goes over the tree three times. Bound attributes are asked for their values, desired sizes are computed from
 * the leaves up (only where something has changed), and the shown widgets are painted from the root down. Painting
 * gives a widget its place and runs its active timers and its Tick, so a widget that is not shown does neither.
 */
class SWidget : public FSlateControlledConstruction, public TSharedFromThis<SWidget>
{
public:
	virtual ~SWidget() override;

	/** Called by the declaration, before Construct; not for others. */
	void SWidgetConstruct(const FSlateBaseNamedArgs& Args);

	// Events. The geometry is the widget's own. Pointer and key events go to the innermost widget first and on to its
	// parents until one of them has handled the event.
	virtual FReply OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent);
	virtual void OnFocusLost(const FFocusEvent& InFocusEvent);
	virtual FReply OnKeyChar(const FGeometry& MyGeometry, const FCharacterEvent& InCharacterEvent);
	/** From the window down to the focused widget, before OnKeyDown; handled here means that nobody gets OnKeyDown. */
	virtual FReply OnPreviewKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent);
	/** Takes the keys that move the focus if the widget can have it, so an override ends with the parent's OnKeyDown.
	 */
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent);
	virtual FReply OnKeyUp(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent);
	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent);
	virtual FReply OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent);
	/** Comes in the place of the second OnMouseButtonDown, which a widget that only counts presses has to call. */
	virtual FReply OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent);
	virtual FReply OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent);
	virtual FReply OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent);

	/** Somebody else has the pointer now, before its button was let go. */
	virtual void OnMouseCaptureLost(const FCaptureLostEvent& CaptureLostEvent);
	/** The pointer has moved with the button down that FReply::DetectDrag asked for; MouseEvent is the press. */
	virtual FReply OnDragDetected(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent);
	/** Something is dragged into the widget, and out of it again or dropped. */
	virtual void OnDragEnter(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent);
	virtual void OnDragLeave(const FDragDropEvent& DragDropEvent);
	/** From the innermost widget up, like all pointer events; handled: it could be dropped here. */
	virtual FReply OnDragOver(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent);
	virtual FReply OnDrop(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent);

	/** While the widget is painted and GetCanTick. InCurrentTime is application time in seconds. */
	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime);
	void SetCanTick(bool bInCanTick) { bCanTick = bInCanTick; }

	/**
	 * Has TickFunction called every TickPeriod seconds (0: every frame) while the widget is painted, for the first time
	 * after one full period. It ends when the function returns Stop, when it is unregistered, or with the widget. Two
	 * registrations are two timers.
	 */
	TSharedRef<FActiveTimerHandle> RegisterActiveTimer(float TickPeriod, FWidgetActiveTimerDelegate TickFunction);
	/** No effect on a timer that is not, or no longer, registered. */
	void UnRegisterActiveTimer(const TSharedRef<FActiveTimerHandle>& ActiveTimerHandle);
	bool HasActiveTimers() const { return ActiveTimers.Num() > 0; }

	/** Asks all bound attributes from here down and computes the desired sizes. The application does so each frame. */
	void SlatePrepass(float InLayoutScaleMultiplier);
	void SlatePrepass() { SlatePrepass(1.0f); }
	/** In Slate units; nothing before the first prepass. */
	UE::Slate::FDeprecateVector2DResult GetDesiredSize() const
	{
		return UE::Slate::FDeprecateVector2DResult(DesiredSize);
	}
	/** The place and size at the last paint. */
	const FGeometry& GetCachedGeometry() const { return CachedGeometry; }

	/** Gives each shown child its place in AllottedGeometry. */
	void ArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const;
	/** One step of the frame's last pass, see the class; returns the highest layer that was drawn on. */
	int32 Paint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const;

	virtual FChildren* GetChildren() = 0;
	/** Null at the top of a tree, such as for a window. */
	TSharedPtr<SWidget> GetParentWidget() const { return ParentWidget.Pin(); }

	virtual bool SupportsKeyboardFocus() const { return false; }
	virtual bool HasKeyboardFocus() const;
	/** True for a parent of the focused widget, at any distance. */
	bool HasFocusedDescendants() const;
	/** Why the widget has the focus; unset when it has not. */
	TOptional<EFocusCause> HasAnyUserFocus() const;
	bool HasMouseCapture() const;
	bool IsHovered() const;

	void SetEnabled(TAttribute<bool> InEnabledState);
	/** The widget's own state; that of its parents is applied when painting and routing events. */
	bool IsEnabled() const { return EnabledAttribute.Get(); }
	virtual void SetVisibility(TAttribute<EVisibility> InVisibility);
	EVisibility GetVisibility() const { return VisibilityAttribute.Get(); }
	FText GetToolTipText() const { return ToolTipAttribute.Get(FText::GetEmpty()); }
	/** Unset: that of the parent. */
	virtual TOptional<EMouseCursor::Type> GetCursor() const;
	EWidgetClipping GetClipping() const { return Clipping; }

	/** The class name as it was given to SNew. */
	FName GetType() const { return TypeOfWidget; }
	FString GetTypeAsString() const { return TypeOfWidget.ToString(); }

	void Invalidate(EInvalidateWidgetReason InvalidateReason);

	/** What the widget says to somebody who cannot see it; by default what its class shows as text. */
	FText GetAccessibleText(EAccessibleType AccessibleType = EAccessibleType::Main) const;
	/** The words of this widget and, for want of own words, those of the widgets in it. */
	virtual FText GetAccessibleSummary() const;
	bool IsAccessible() const;
	/** False for a widget that speaks for what is in it, such as a button for its label. */
	virtual bool CanChildrenBeAccessible() const { return true; }
	EAccessibleBehavior GetAccessibleBehavior(EAccessibleType AccessibleType = EAccessibleType::Main) const;
	void SetAccessibleBehavior(EAccessibleBehavior InBehavior, const TAttribute<FText>& InText = TAttribute<FText>(),
		EAccessibleType AccessibleType = EAccessibleType::Main);
	virtual TSharedRef<FSlateAccessibleWidget> CreateAccessibleWidget();
	/** Unique among the widgets of this run. */
	int32 GetId() const { return UniqueId; }

	// For the tree's own machinery.
	void AssignParentWidget(const TSharedPtr<SWidget>& InParent);
	/** Only if InExpectedParent is the parent; the widget may stand elsewhere by now. */
	void ConditionallyDetachParentWidget(SWidget* InExpectedParent);
	void RegisterBoundAttribute(FCachedAttributeBase& Attribute);
	void UnregisterBoundAttribute(FCachedAttributeBase& Attribute);
	/** Asks the bound attributes of this widget; of a collapsed one only the visibility, which may show it again. */
	void UpdateBoundAttributes();
	/** Computes what is out of date of the desired sizes from here down. */
	void Prepass(float InLayoutScaleMultiplier);
	/** Asks the bound attributes of all widgets that Root shows. */
	static void UpdateAllBoundAttributes(const TArray<TSharedRef<SWidget>>& Roots);

protected:
	SWidget();

	/** The size the widget would like, from those of its children, which are known. In Slate units. */
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const = 0;
	virtual void OnArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const = 0;
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const = 0;

	/**
	 * For a panel that keeps what it has measured: the layout below a child is out of date, or, without a child, that
	 * of the widget itself. It may come more than once before the next measuring, and for a child that takes no space.
	 */
	virtual void OnLayoutOutOfDate(SWidget* Child) {}
	/** Brings the children's desired sizes up to date, before ComputeDesiredSize. */
	virtual void PrepassChildren(float InLayoutScaleMultiplier);

	/** Arranges and paints those children that meet MyCullingRect. */
	int32 PaintChildren(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const;
	bool ShouldBeEnabled(bool bParentEnabled) const { return bParentEnabled && IsEnabled(); }

	virtual EAccessibleBehavior GetDefaultAccessibleBehavior() const { return EAccessibleBehavior::NotAccessible; }
	virtual FText GetDefaultAccessibleText() const { return FText::GetEmpty(); }

private:
	void ExecuteActiveTimers(double CurrentTime);
	void MarkPrepassAsDirty();
	void UpdateBoundAttributesBelow();

	FName TypeOfWidget;
	FName Tag;
	TWeakPtr<SWidget> ParentWidget;
	const int32 UniqueId;

	// Before the attributes, which take themselves off the list when they are destroyed.
	TArray<FCachedAttributeBase*> BoundAttributes;
	int32 IndexInBoundWidgets = INDEX_NONE;
	TCachedAttribute<bool> EnabledAttribute{ EInvalidateWidgetReason::Paint, true };
	TCachedAttribute<EVisibility> VisibilityAttribute{ EInvalidateWidgetReason::Visibility };
	TAttribute<FText> ToolTipAttribute;
	TAttribute<FText> AccessibleTextAttribute;
	TAttribute<TOptional<EMouseCursor::Type>> Cursor;
	TOptional<EAccessibleBehavior> AccessibleBehavior;
	float RenderOpacity = 1.0f;
	EWidgetClipping Clipping = EWidgetClipping::Inherit;

	TArray<TSharedRef<FActiveTimerHandle>> ActiveTimers;
	FGeometry CachedGeometry;
	FVector2D DesiredSize = FVector2D(0.0, 0.0);
	bool bNeedsPrepass = true; // for this widget or one below it
	bool bCanTick = true;

	friend struct FBoundWidgets;
	template <typename WidgetType, typename RequiredArgsType>
	friend struct TSlateDecl;
};
