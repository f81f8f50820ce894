#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/Accessibility/GenericAccessibleInterfaces.h"

class SWidget;

/**
 * A widget's place in the accessible tree. It holds the widget weakly and asks it again each time, except in a walk:
 * children asked for one after the other are those of the walk's start, so that it takes linear time.
 */
class FSlateAccessibleWidget : public IAccessibleWidget
{
public:
	FSlateAccessibleWidget(TSharedRef<SWidget> InWidget, EAccessibleWidgetType InWidgetType);

	virtual AccessibleWidgetId GetId() const override { return Id; }
	virtual bool IsValid() const override { return Widget.IsValid(); }
	virtual TSharedPtr<IAccessibleWidget> GetParent() override;
	virtual TSharedPtr<IAccessibleWidget> GetChildAt(int32 Index) override;
	virtual int32 GetNumberOfChildren() override;
	virtual EAccessibleWidgetType GetWidgetType() const override { return WidgetType; }
	virtual FString GetWidgetName() const override;
	virtual FString GetHelpText() const override;
	virtual FBox2D GetBounds() const override;
	virtual bool IsEnabled() const override;
	virtual bool IsHidden() const override;
	virtual bool SupportsFocus() const override;
	virtual bool HasFocus() const override;
	virtual void SetFocus() override;

protected:
	const TWeakPtr<SWidget> Widget;

private:
	const EAccessibleWidgetType WidgetType;
	const AccessibleWidgetId Id;
	TArray<TWeakPtr<SWidget>> Walked;
	int32 NextInWalk = INDEX_NONE;
};

/** The way into the accessible tree, usually from a window. */
class FSlateAccessibleWidgetCache
{
public:
	static TSharedRef<IAccessibleWidget> GetAccessibleWidgetChecked(const TSharedRef<SWidget>& Widget);
};
