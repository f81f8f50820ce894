#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"

#include "Application/SlateApplicationBase.h"
#include "Widgets/SNullWidget.h"
#include "Widgets/SWidget.h"

namespace Accessibility
{
/** The accessible widgets below Widget that have no other accessible one between, in their order on the screen. */
static void CollectChildren(const TSharedRef<SWidget>& Widget, TArray<TSharedRef<SWidget>>& OutChildren)
{
	if (!Widget->CanChildrenBeAccessible())
	{
		return;
	}
	FChildren& Children = *Widget->GetChildren();
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		const TSharedRef<SWidget> Child = Children.GetChildAt(Index);
		if (!Child->GetVisibility().IsVisible())
		{
			continue;
		}
		if (Child->IsAccessible())
		{
			OutChildren.Add(Child);
		}
		else
		{
			CollectChildren(Child, OutChildren);
		}
	}
}

static TArray<TSharedRef<SWidget>> CollectChildren(const TSharedPtr<SWidget>& Widget)
{
	TArray<TSharedRef<SWidget>> Children;
	if (Widget.IsValid())
	{
		CollectChildren(Widget.ToSharedRef(), Children);
	}
	return Children;
}
}

FText SWidget::GetAccessibleText(EAccessibleType AccessibleType) const
{
	switch (GetAccessibleBehavior(AccessibleType))
	{
	case EAccessibleBehavior::Custom:
		return AccessibleTextAttribute.Get(FText::GetEmpty());
	case EAccessibleBehavior::Summary:
		return GetAccessibleSummary();
	case EAccessibleBehavior::ToolTip:
		return GetToolTipText();
	case EAccessibleBehavior::Auto:
		return GetDefaultAccessibleText();
	case EAccessibleBehavior::NotAccessible:
		break;
	}
	return FText::GetEmpty();
}

FText SWidget::GetAccessibleSummary() const
{
	const FText OwnText = GetDefaultAccessibleText();
	if (!OwnText.IsEmpty())
	{
		return OwnText;
	}
	TArray<FString> Parts;
	FChildren& Children = *const_cast<SWidget*>(this)->GetChildren();
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		const TSharedRef<SWidget> Child = Children.GetChildAt(Index);
		const FString Part = Child->GetVisibility().IsVisible() ? Child->GetAccessibleSummary().ToString() : FString();
		if (!Part.IsEmpty())
		{
			Parts.Add(Part);
		}
	}
	return FText::FromString(FString::Join(Parts, TEXT(", ")));
}

bool SWidget::IsAccessible() const
{
	return GetAccessibleBehavior() != EAccessibleBehavior::NotAccessible;
}

EAccessibleBehavior SWidget::GetAccessibleBehavior(EAccessibleType AccessibleType) const
{
	if (AccessibleType == EAccessibleType::Summary)
	{
		return EAccessibleBehavior::Summary;
	}
	return AccessibleBehavior.IsSet() ? AccessibleBehavior.GetValue() : GetDefaultAccessibleBehavior();
}

void SWidget::SetAccessibleBehavior(
	EAccessibleBehavior InBehavior, const TAttribute<FText>& InText, EAccessibleType AccessibleType)
{
	AccessibleBehavior = InBehavior;
	AccessibleTextAttribute = InText;
}

TSharedRef<FSlateAccessibleWidget> SWidget::CreateAccessibleWidget()
{
	return MakeShared<FSlateAccessibleWidget>(AsShared(), EAccessibleWidgetType::Layout);
}

FSlateAccessibleWidget::FSlateAccessibleWidget(TSharedRef<SWidget> InWidget, EAccessibleWidgetType InWidgetType)
	: Widget(InWidget)
	, WidgetType(InWidgetType)
	, Id(InWidget->GetId())
{
}

TSharedPtr<IAccessibleWidget> FSlateAccessibleWidget::GetParent()
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	TSharedPtr<SWidget> Parent = Pinned.IsValid() ? Pinned->GetParentWidget() : nullptr;
	while (Parent.IsValid() && !Parent->IsAccessible())
	{
		Parent = Parent->GetParentWidget();
	}
	return Parent.IsValid() ? TSharedPtr<IAccessibleWidget>(Parent->CreateAccessibleWidget()) : nullptr;
}

TSharedPtr<IAccessibleWidget> FSlateAccessibleWidget::GetChildAt(int32 Index)
{
	if (Index != NextInWalk || !Walked.IsValidIndex(Index) || !Walked[Index].IsValid())
	{
		Walked.Empty();
		for (const TSharedRef<SWidget>& Child : Accessibility::CollectChildren(Widget.Pin()))
		{
			Walked.Add(Child);
		}
	}
	NextInWalk = Index + 1;
	const TSharedPtr<SWidget> Child = Walked.IsValidIndex(Index) ? Walked[Index].Pin() : nullptr;
	return Child ? TSharedPtr<IAccessibleWidget>(Child->CreateAccessibleWidget()) : nullptr;
}

int32 FSlateAccessibleWidget::GetNumberOfChildren()
{
	return Accessibility::CollectChildren(Widget.Pin()).Num();
}

FString FSlateAccessibleWidget::GetWidgetName() const
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	return Pinned.IsValid() ? Pinned->GetAccessibleText().ToString() : FString();
}

FBox2D FSlateAccessibleWidget::GetBounds() const
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	if (!Pinned)
	{
		return FBox2D();
	}
	const FSlateRect Rect = Pinned->GetCachedGeometry().GetLayoutBoundingRect();
	return FBox2D(Rect.GetTopLeft(), FVector2D(Rect.Right, Rect.Bottom));
}

FString FSlateAccessibleWidget::GetHelpText() const
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	return Pinned.IsValid() ? Pinned->GetToolTipText().ToString() : FString();
}

bool FSlateAccessibleWidget::IsEnabled() const
{
	TSharedPtr<SWidget> Current = Widget.Pin();
	bool bEnabled = Current.IsValid();
	while (bEnabled && Current.IsValid())
	{
		bEnabled = Current->IsEnabled();
		Current = Current->GetParentWidget();
	}
	return bEnabled;
}

bool FSlateAccessibleWidget::IsHidden() const
{
	bool bShown = Widget.IsValid();
	for (TSharedPtr<SWidget> Current = Widget.Pin(); bShown && Current.IsValid(); Current = Current->GetParentWidget())
	{
		bShown = Current->GetVisibility().IsVisible();
	}
	return !bShown;
}

bool FSlateAccessibleWidget::SupportsFocus() const
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	return Pinned.IsValid() && Pinned->SupportsKeyboardFocus();
}

bool FSlateAccessibleWidget::HasFocus() const
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	if (!Pinned.IsValid() || Pinned->HasKeyboardFocus())
	{
		return Pinned.IsValid();
	}
	// A combo box speaks for the button in it, which has the focus.
	return !Pinned->CanChildrenBeAccessible() && Pinned->HasFocusedDescendants();
}

void FSlateAccessibleWidget::SetFocus()
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	if (Pinned.IsValid() && Pinned->SupportsKeyboardFocus())
	{
		FSlateApplicationBase::Get().SetKeyboardFocus(Pinned, EFocusCause::SetDirectly);
	}
}

TSharedRef<IAccessibleWidget> FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(const TSharedRef<SWidget>& Widget)
{
	return Widget->CreateAccessibleWidget();
}
