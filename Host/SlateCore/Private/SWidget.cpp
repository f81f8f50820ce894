#include "Widgets/SWidget.h"

#include "Application/ActiveTimerHandle.h"
#include "Application/SlateApplicationBase.h"
#include "Rendering/DrawElements.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SLeafWidget.h"
#include "Widgets/SNullWidget.h"
#include "Widgets/SPanel.h"

class SNullWidgetContent final : public SLeafWidget
{
public:
	SLATE_BEGIN_ARGS(SNullWidgetContent) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		SetCanTick(false);
		// It fills its slot, and must not be hit there.
		SetVisibility(EVisibility::Hidden);
	}

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override { return FVector2D(0.0, 0.0); }
};

TSharedRef<SWidget> SNullWidget::NullWidget = SNew(SNullWidgetContent);

/** The widgets that have bound attributes: those which need looking after each frame even if nothing has changed. */
struct FBoundWidgets
{
	static TArray<SWidget*>& Get()
	{
		// Never destroyed: the last widgets go when the process ends, in no order that is known here.
		static TArray<SWidget*>& Widgets = *new TArray<SWidget*>();
		return Widgets;
	}

	static void Add(SWidget& Widget) { Widget.IndexInBoundWidgets = Get().Add(&Widget); }

	static void Remove(SWidget& Widget)
	{
		TArray<SWidget*>& Widgets = Get();
		SWidget* const Last = Widgets.Last();
		Widgets[Widget.IndexInBoundWidgets] = Last;
		Last->IndexInBoundWidgets = Widget.IndexInBoundWidgets;
		Widgets.RemoveAt(Widgets.Num() - 1);
		Widget.IndexInBoundWidgets = INDEX_NONE;
	}
};

static int32 MakeUniqueWidgetId()
{
	static int32 LastId = 0;
	return ++LastId;
}

SWidget::SWidget()
	: UniqueId(MakeUniqueWidgetId())
{
}

SWidget::~SWidget()
{
	if (IndexInBoundWidgets != INDEX_NONE)
	{
		FBoundWidgets::Remove(*this);
	}
}

void SWidget::SWidgetConstruct(const FSlateBaseNamedArgs& Args)
{
	SetEnabled(Args._IsEnabled);
	VisibilityAttribute.Assign(this, Args._Visibility);
	ToolTipAttribute = Args._ToolTipText;
	Cursor = Args._Cursor;
	RenderOpacity = Args._RenderOpacity.Get(1.0f);
	Clipping = Args._Clipping.Get(EWidgetClipping::Inherit);
	Tag = Args._Tag;
	if (Args._AccessibleText.IsSet())
	{
		SetAccessibleBehavior(EAccessibleBehavior::Custom, Args._AccessibleText);
	}
}

FReply SWidget::OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent)
{
	return FReply::Unhandled();
}

void SWidget::OnFocusLost(const FFocusEvent& InFocusEvent)
{
}

FReply SWidget::OnKeyChar(const FGeometry& MyGeometry, const FCharacterEvent& InCharacterEvent)
{
	return FReply::Unhandled();
}

FReply SWidget::OnPreviewKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	return FReply::Unhandled();
}

FReply SWidget::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	if (InKeyEvent.GetKey() != EKeys::Tab || !SupportsKeyboardFocus() || InKeyEvent.IsControlDown() ||
		InKeyEvent.IsAltDown())
	{
		return FReply::Unhandled();
	}
	return FReply::Handled().SetNavigation(InKeyEvent.IsShiftDown() ? EUINavigation::Previous : EUINavigation::Next);
}

FReply SWidget::OnKeyUp(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	return FReply::Unhandled();
}

FReply SWidget::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return FReply::Unhandled();
}

FReply SWidget::OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return FReply::Unhandled();
}

FReply SWidget::OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent)
{
	return FReply::Unhandled();
}

FReply SWidget::OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return FReply::Unhandled();
}

void SWidget::OnMouseCaptureLost(const FCaptureLostEvent& CaptureLostEvent)
{
}

FReply SWidget::OnDragDetected(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return FReply::Unhandled();
}

void SWidget::OnDragEnter(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent)
{
}

void SWidget::OnDragLeave(const FDragDropEvent& DragDropEvent)
{
}

FReply SWidget::OnDragOver(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent)
{
	return FReply::Unhandled();
}

FReply SWidget::OnDrop(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent)
{
	return FReply::Unhandled();
}

FReply SWidget::OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return FReply::Unhandled();
}

void SWidget::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
}

TSharedRef<FActiveTimerHandle> SWidget::RegisterActiveTimer(float TickPeriod, FWidgetActiveTimerDelegate TickFunction)
{
	const TSharedRef<FActiveTimerHandle> Handle = MakeShared<FActiveTimerHandle>(
		TickPeriod, MoveTemp(TickFunction), FSlateApplicationBase::Get().GetCurrentTime());
	ActiveTimers.Add(Handle);
	return Handle;
}

void SWidget::UnRegisterActiveTimer(const TSharedRef<FActiveTimerHandle>& ActiveTimerHandle)
{
	ActiveTimers.Remove(ActiveTimerHandle);
}

void SWidget::ExecuteActiveTimers(double CurrentTime)
{
	// A timer's function may register and unregister timers of this widget.
	const TArray<TSharedRef<FActiveTimerHandle>> Snapshot = ActiveTimers;
	for (const TSharedRef<FActiveTimerHandle>& Timer : Snapshot)
	{
		if (ActiveTimers.Contains(Timer) && Timer->ExecuteIfPending(CurrentTime) == EActiveTimerReturnType::Stop)
		{
			ActiveTimers.Remove(Timer);
		}
	}
}

void SWidget::SlatePrepass(float InLayoutScaleMultiplier)
{
	UpdateBoundAttributesBelow();
	Prepass(InLayoutScaleMultiplier);
}

void SWidget::Prepass(float InLayoutScaleMultiplier)
{
	if (!bNeedsPrepass)
	{
		return;
	}
	bNeedsPrepass = false;
	PrepassChildren(InLayoutScaleMultiplier);
	DesiredSize = ComputeDesiredSize(InLayoutScaleMultiplier);
}

void SWidget::PrepassChildren(float InLayoutScaleMultiplier)
{
	FChildren& Children = *GetChildren();
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		SWidget& Child = Children.GetChildAt(Index).Get();
		if (Child.GetVisibility().TakesSpace())
		{
			Child.Prepass(InLayoutScaleMultiplier);
		}
	}
}

void SWidget::Invalidate(EInvalidateWidgetReason InvalidateReason)
{
	constexpr EInvalidateWidgetReason ReasonsToMeasure =
		EInvalidateWidgetReason::Layout | EInvalidateWidgetReason::ChildOrder | EInvalidateWidgetReason::Visibility |
		EInvalidateWidgetReason::Prepass;
	if ((InvalidateReason & ReasonsToMeasure) != EInvalidateWidgetReason::None)
	{
		MarkPrepassAsDirty();
	}
}

void SWidget::MarkPrepassAsDirty()
{
	bNeedsPrepass = true;
	OnLayoutOutOfDate(nullptr);
	// Above a widget that is out of date all are, up to one that is collapsed. The parent itself is looked at in any
	// case: this widget may just have ceased to be collapsed.
	SWidget* Child = this;
	for (TSharedPtr<SWidget> Parent = GetParentWidget(); Parent.IsValid(); Parent = Parent->GetParentWidget())
	{
		Parent->OnLayoutOutOfDate(Child);
		if (Parent->bNeedsPrepass)
		{
			return;
		}
		Parent->bNeedsPrepass = true;
		Child = Parent.Get();
	}
}

void SWidget::ArrangeChildren(const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const
{
	OnArrangeChildren(AllottedGeometry, ArrangedChildren);
}

int32 SWidget::Paint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	SWidget& This = const_cast<SWidget&>(*this);
	// A timer or Tick may remove this very widget from the tree.
	const TSharedRef<SWidget> KeptAlive = This.AsShared();

	This.CachedGeometry = AllottedGeometry;
	if (HasActiveTimers())
	{
		This.ExecuteActiveTimers(Args.GetCurrentTime());
		for (const TSharedRef<FActiveTimerHandle>& Timer : ActiveTimers)
		{
			Args.NoteTimer(Timer->GetNextExecutionTime());
		}
	}
	if (bCanTick)
	{
		This.Tick(AllottedGeometry, Args.GetCurrentTime(), Args.GetDeltaTime());
	}

	const FSlateRect CullingRect = Clipping == EWidgetClipping::ClipToBounds
									   ? MyCullingRect.IntersectionWith(AllottedGeometry.GetLayoutBoundingRect())
									   : MyCullingRect;
	const FWidgetStyle Style = FWidgetStyle(InWidgetStyle).BlendOpacity(RenderOpacity);
	return OnPaint(Args, AllottedGeometry, CullingRect, OutDrawElements, LayerId, Style, bParentEnabled);
}

int32 SWidget::PaintChildren(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	FArrangedChildren Arranged(EVisibility::Visible);
	ArrangeChildren(AllottedGeometry, Arranged);
	int32 TopLayer = LayerId;
	const bool bEnabled = ShouldBeEnabled(bParentEnabled);
	for (const FArrangedWidget& Child : Arranged.GetInternalArray())
	{
		if (FSlateRect::DoRectanglesIntersect(MyCullingRect, Child.Geometry.GetLayoutBoundingRect()))
		{
			TopLayer = FMath::Max(TopLayer, Child.Widget->Paint(Args, Child.Geometry, MyCullingRect, OutDrawElements,
												LayerId, InWidgetStyle, bEnabled));
		}
	}
	return TopLayer;
}

bool SWidget::HasKeyboardFocus() const
{
	return FSlateApplicationBase::IsInitialized() &&
		   FSlateApplicationBase::Get().GetKeyboardFocusedWidget().Get() == this;
}

bool SWidget::HasFocusedDescendants() const
{
	if (!FSlateApplicationBase::IsInitialized())
	{
		return false;
	}
	TSharedPtr<SWidget> Widget = FSlateApplicationBase::Get().GetKeyboardFocusedWidget();
	while (Widget.IsValid())
	{
		Widget = Widget->GetParentWidget();
		if (Widget.Get() == this)
		{
			return true;
		}
	}
	return false;
}

TOptional<EFocusCause> SWidget::HasAnyUserFocus() const
{
	if (!HasKeyboardFocus())
	{
		return NullOpt;
	}
	return FSlateApplicationBase::Get().GetKeyboardFocusCause();
}

bool SWidget::HasMouseCapture() const
{
	return FSlateApplicationBase::IsInitialized() && FSlateApplicationBase::Get().HasMouseCapture(AsShared());
}

bool SWidget::IsHovered() const
{
	return FSlateApplicationBase::IsInitialized() && FSlateApplicationBase::Get().IsWidgetHovered(*this);
}

void SWidget::SetEnabled(TAttribute<bool> InEnabledState)
{
	EnabledAttribute.Assign(this, InEnabledState);
}

void SWidget::SetVisibility(TAttribute<EVisibility> InVisibility)
{
	VisibilityAttribute.Assign(this, InVisibility);
}

TOptional<EMouseCursor::Type> SWidget::GetCursor() const
{
	return Cursor.Get(TOptional<EMouseCursor::Type>());
}

void SWidget::AssignParentWidget(const TSharedPtr<SWidget>& InParent)
{
	if (this != &SNullWidget::NullWidget.Get())
	{
		ParentWidget = InParent;
	}
}

void SWidget::ConditionallyDetachParentWidget(SWidget* InExpectedParent)
{
	const TSharedPtr<SWidget> Parent = GetParentWidget();
	if (!Parent.IsValid() || Parent.Get() == InExpectedParent)
	{
		ParentWidget.Reset();
	}
}

void SWidget::RegisterBoundAttribute(FCachedAttributeBase& Attribute)
{
	BoundAttributes.Add(&Attribute);
	if (IndexInBoundWidgets == INDEX_NONE)
	{
		FBoundWidgets::Add(*this);
	}
}

void SWidget::UnregisterBoundAttribute(FCachedAttributeBase& Attribute)
{
	BoundAttributes.Remove(&Attribute);
	if (BoundAttributes.Num() == 0 && IndexInBoundWidgets != INDEX_NONE)
	{
		FBoundWidgets::Remove(*this);
	}
}

void SWidget::UpdateBoundAttributes()
{
	if (VisibilityAttribute.IsBound() && VisibilityAttribute.Update())
	{
		Invalidate(VisibilityAttribute.GetReason());
	}
	if (!GetVisibility().IsVisible())
	{
		return;
	}
	for (int32 Index = 0; Index < BoundAttributes.Num(); ++Index)
	{
		FCachedAttributeBase& Attribute = *BoundAttributes[Index];
		if (&Attribute != &VisibilityAttribute && Attribute.Update())
		{
			Invalidate(Attribute.GetReason());
		}
	}
}

void SWidget::UpdateBoundAttributesBelow()
{
	UpdateBoundAttributes();
	if (!GetVisibility().IsVisible())
	{
		return;
	}
	FChildren& Children = *GetChildren();
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		Children.GetChildAt(Index)->UpdateBoundAttributesBelow();
	}
}

namespace BoundAttributePass
{
struct FEntry
{
	int32 Depth;
	TSharedRef<SWidget> Widget;
};

/** The distance from a root, INDEX_NONE for a widget that stands below none of them. */
static int32 FindDepth(const TSharedRef<SWidget>& Widget, const TArray<TSharedRef<SWidget>>& Roots)
{
	int32 Depth = 0;
	TSharedPtr<SWidget> Top = Widget;
	for (TSharedPtr<SWidget> Parent = Top->GetParentWidget(); Parent.IsValid(); Parent = Parent->GetParentWidget())
	{
		Top = Parent;
		++Depth;
	}
	return Roots.Contains(Top.ToSharedRef()) ? Depth : INDEX_NONE;
}

static bool AreParentsShown(const SWidget& Widget)
{
	for (TSharedPtr<SWidget> Parent = Widget.GetParentWidget(); Parent.IsValid(); Parent = Parent->GetParentWidget())
	{
		if (!Parent->GetVisibility().IsVisible())
		{
			return false;
		}
	}
	return true;
}
}

void SWidget::UpdateAllBoundAttributes(const TArray<TSharedRef<SWidget>>& Roots)
{
	using namespace BoundAttributePass;
	TArray<FEntry> Entries;
	for (SWidget* const Widget : FBoundWidgets::Get())
	{
		const TSharedRef<SWidget> Shared = Widget->AsShared();
		const int32 Depth = FindDepth(Shared, Roots);
		if (Depth != INDEX_NONE)
		{
			Entries.Add(FEntry{ Depth, Shared });
		}
	}
	// Parents first: whether a widget is shown depends on what theirs have just answered.
	Entries.StableSort([](const FEntry& A, const FEntry& B) { return A.Depth < B.Depth; });
	for (const FEntry& Entry : Entries)
	{
		if (AreParentsShown(Entry.Widget.Get()))
		{
			Entry.Widget->UpdateBoundAttributes();
		}
	}
}

SLeafWidget::SLeafWidget()
{
	SetCanTick(false);
}

int32 SLeafWidget::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	return LayerId;
}

SPanel::SPanel()
{
	SetCanTick(false);
}

int32 SPanel::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
	bool bParentEnabled) const
{
	return PaintChildren(
		Args, AllottedGeometry, MyCullingRect, OutDrawElements, LayerId, InWidgetStyle, bParentEnabled);
}
