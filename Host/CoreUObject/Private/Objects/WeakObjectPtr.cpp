#include "UObject/WeakObjectPtr.h"

#include "Objects/ObjectTable.h"

FWeakObjectPtr& FWeakObjectPtr::operator=(const UObject* Object)
{
	ObjectIndex = Object ? static_cast<int32>(Object->GetUniqueID()) : INDEX_NONE;
	ObjectSerialNumber = Object ? FObjectTable::Get().GetEntry(*Object).SerialNumber : 0;
	return *this;
}

UObject* FWeakObjectPtr::GetEvenIfUnreachable() const
{
	const FObjectTable::FEntry* Entry = FObjectTable::Get().FindEntry(ObjectIndex);
	return Entry && Entry->SerialNumber == ObjectSerialNumber ? Entry->Object : nullptr;
}

UObject* FWeakObjectPtr::Get() const
{
	UObject* Object = GetEvenIfUnreachable();
	return ::IsValid(Object) && !Object->IsUnreachable() ? Object : nullptr;
}
