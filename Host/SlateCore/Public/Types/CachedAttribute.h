#pragma once

#include "CoreMinimal.h"
#include "Misc/Attribute.h"
#include "Widgets/InvalidateWidgetReason.h"

class SWidget;

/** FText has no ==, and FString's ignores case. */
template <typename ValueType>
bool IsSameSlateValue(const ValueType& A, const ValueType& B)
{
	return A == B;
}
inline bool IsSameSlateValue(const FText& A, const FText& B)
{
	return A.ToString().Equals(B.ToString());
}

/**
 * A widget's property that may be bound to a getter. The getter runs once a frame, before layout, while the widget is
 * shown; reads in between answer what it said then, and its default before the first frame.
 */
class FCachedAttributeBase
{
public:
	UE_NONCOPYABLE(FCachedAttributeBase)

	/** Asks the getter. True when the answer differs from the one before. */
	virtual bool Update() = 0;
	EInvalidateWidgetReason GetReason() const { return Reason; }

protected:
	explicit FCachedAttributeBase(EInvalidateWidgetReason InReason)
		: Reason(InReason)
	{
	}
	virtual ~FCachedAttributeBase();

	/** Bound attributes are known to their widget, which asks them each frame. Owner may be null: not yet in a widget.
	 */
	void SetRegistered(SWidget* NewOwner, bool bIsBound);
	static void NotifyChanged(SWidget* Owner, EInvalidateWidgetReason Reason);

private:
	const EInvalidateWidgetReason Reason;
	SWidget* RegisteredWith = nullptr;
};

template <typename ValueType>
class TCachedAttribute final : public FCachedAttributeBase
{
public:
	explicit TCachedAttribute(EInvalidateWidgetReason InReason, ValueType InDefault = ValueType{})
		: FCachedAttributeBase(InReason)
		, Value(MoveTemp(InDefault))
	{
	}
	virtual ~TCachedAttribute() override = default;

	/** Takes over what is set in NewAttribute; one that is not set leaves everything as it is. */
	void Assign(SWidget* Owner, const TAttribute<ValueType>& NewAttribute)
	{
		if (!NewAttribute.IsSet())
		{
			return;
		}
		Attribute = NewAttribute;
		SetRegistered(Owner, Attribute.IsBound());
		if (!Attribute.IsBound() && Update())
		{
			NotifyChanged(Owner, GetReason());
		}
	}
	/** For a slot, which learns of its widget only when it is added. */
	void SetOwner(SWidget* Owner) { SetRegistered(Owner, Attribute.IsBound()); }

	const ValueType& Get() const { return Value; }
	bool IsBound() const { return Attribute.IsBound(); }

	virtual bool Update() override
	{
		if (!Attribute.IsSet())
		{
			return false;
		}
		ValueType NewValue = Attribute.Get();
		if (IsSameSlateValue(NewValue, Value))
		{
			return false;
		}
		Value = MoveTemp(NewValue);
		return true;
	}

private:
	TAttribute<ValueType> Attribute;
	ValueType Value;
};
