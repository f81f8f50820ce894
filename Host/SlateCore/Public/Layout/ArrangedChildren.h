#pragma once

#include "CoreMinimal.h"
#include "Layout/ArrangedWidget.h"
#include "Layout/Visibility.h"

/** What a widget has made of its children: those that pass the filter, each with its place, back to front. */
class FArrangedChildren
{
public:
	explicit FArrangedChildren(EVisibility InVisibilityFilter)
		: VisibilityFilter(InVisibilityFilter)
	{
	}

	/** Drops a widget that the filter does not let pass: for Visible those which are not drawn. */
	void AddWidget(const FArrangedWidget& InWidget);
	/** The same with the child's visibility given by a panel that has it at hand. */
	void AddWidget(EVisibility Visibility, const FArrangedWidget& InWidget)
	{
		if (Accepts(Visibility))
		{
			Array.Add(InWidget);
		}
	}
	bool Accepts(EVisibility InVisibility) const
	{
		return VisibilityFilter == EVisibility::Hidden ? InVisibility.TakesSpace() : InVisibility.IsVisible();
	}

	int32 Num() const { return Array.Num(); }
	const FArrangedWidget& operator[](int32 Index) const { return Array[Index]; }
	const TArray<FArrangedWidget>& GetInternalArray() const { return Array; }

private:
	const EVisibility VisibilityFilter;
	TArray<FArrangedWidget> Array;
};
