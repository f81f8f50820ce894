#include "Types/CachedAttribute.h"

#include "Widgets/SWidget.h"

FCachedAttributeBase::~FCachedAttributeBase()
{
	SetRegistered(nullptr, false);
}

void FCachedAttributeBase::SetRegistered(SWidget* NewOwner, bool bIsBound)
{
	SWidget* const NewRegistration = bIsBound ? NewOwner : nullptr;
	if (NewRegistration == RegisteredWith)
	{
		return;
	}
	if (RegisteredWith != nullptr)
	{
		RegisteredWith->UnregisterBoundAttribute(*this);
	}
	RegisteredWith = NewRegistration;
	if (RegisteredWith != nullptr)
	{
		RegisteredWith->RegisterBoundAttribute(*this);
	}
}

void FCachedAttributeBase::NotifyChanged(SWidget* Owner, EInvalidateWidgetReason ChangeReason)
{
	if (Owner != nullptr)
	{
		Owner->Invalidate(ChangeReason);
	}
}
