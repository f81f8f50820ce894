#pragma once

#include "CoreMinimal.h"

class FSlotBase;
class SWidget;

/** The children of a widget, in the order in which they were given. */
class FChildren
{
public:
	explicit FChildren(SWidget* InOwner)
		: Owner(InOwner)
	{
	}
	virtual ~FChildren() = default;
	UE_NONCOPYABLE(FChildren)

	virtual int32 Num() const = 0;
	/** Asserts that there is a child at Index. */
	virtual TSharedRef<SWidget> GetChildAt(int32 Index) = 0;
	virtual TSharedRef<const SWidget> GetChildAt(int32 Index) const = 0;

	SWidget& GetOwner() const { return *Owner; }

private:
	SWidget* const Owner;
};

class FNoChildren final : public FChildren
{
public:
	explicit FNoChildren(SWidget* InOwner)
		: FChildren(InOwner)
	{
	}

	virtual int32 Num() const override { return 0; }
	virtual TSharedRef<SWidget> GetChildAt(int32 Index) override;
	virtual TSharedRef<const SWidget> GetChildAt(int32 Index) const override;
};
