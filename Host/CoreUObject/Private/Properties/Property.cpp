#include "CoreGlobals.h"
#include "Misc/OutputDevice.h"
#include "Properties/PropertyText.h"
#include "UObject/EnumProperty.h"
#include "UObject/UnrealType.h"

#include <cstdlib>
#include <cstring>

void* FProperty::MemoryToValue(void* Container, int32 ArrayIndex) const
{
	checkf(Container, TEXT("%s: the container is null"), *GetPathName());
	checkf(ArrayIndex >= 0 && ArrayIndex < ArrayDim, TEXT("%s has no element %d"), *GetPathName(), ArrayIndex);
	return static_cast<uint8*>(Container) + Offset_Internal + static_cast<SIZE_T>(ArrayIndex) * ElementSize;
}

void* FProperty::ObjectToValue(UObject* Container, int32 ArrayIndex) const
{
	checkf(Container, TEXT("%s: the container is null"), *GetPathName());
	const UClass* const OwnerClass = GetDirectOwnerClass();
	checkf(!OwnerClass || Container->IsA(OwnerClass),
		TEXT("'%s' is of class '%s' however property '%s' belongs to class '%s'"), *Container->GetName(),
		*Container->GetClass()->GetName(), *GetName(), *OwnerClass->GetName());
	return MemoryToValue(Container, ArrayIndex);
}

const UClass* FProperty::GetDirectOwnerClass() const
{
	const UObject* const Object = Owner.ToUObject();
	return Object && Object->IsA(UClass::StaticClass()) ? static_cast<const UClass*>(Object) : nullptr;
}

FProperty* FProperty::GetOwnerProperty() const
{
	const FField* Field = this;
	while (Field->Owner.ToField())
	{
		Field = Field->Owner.ToField();
	}
	return static_cast<FProperty*>(const_cast<FField*>(Field));
}

bool FProperty::SameType(const FProperty* Other) const
{
	return Other && GetClass() == Other->GetClass();
}

void FProperty::InitializeValue(void* Dest) const
{
	for (int32 Index = 0; Index < ArrayDim; ++Index)
	{
		InitializeElement(static_cast<uint8*>(Dest) + static_cast<SIZE_T>(Index) * ElementSize);
	}
}

void FProperty::DestroyValue(void* Dest) const
{
	for (int32 Index = 0; Index < ArrayDim; ++Index)
	{
		DestroyElement(static_cast<uint8*>(Dest) + static_cast<SIZE_T>(Index) * ElementSize);
	}
}

void FProperty::CopyCompleteValue(void* Dest, const void* Src) const
{
	for (int32 Index = 0; Index < ArrayDim; ++Index)
	{
		const SIZE_T Offset = static_cast<SIZE_T>(Index) * ElementSize;
		CopySingleValue(static_cast<uint8*>(Dest) + Offset, static_cast<const uint8*>(Src) + Offset);
	}
}

void FProperty::ClearValue(void* Data) const
{
	const FPropertyValueBuffer Empty(*this);
	CopySingleValue(Data, Empty.Get());
}

bool FProperty::Identical_InContainer(const void* A, const void* B, int32 ArrayIndex, uint32 PortFlags) const
{
	return Identical(MemoryToValue(const_cast<void*>(A), ArrayIndex),
		B ? MemoryToValue(const_cast<void*>(B), ArrayIndex) : nullptr, PortFlags);
}

uint32 FProperty::GetValueTypeHash(const void* Src) const
{
	checkf(HasAnyPropertyFlags(CPF_HasGetValueTypeHash), TEXT("The type of %s has no hash"), *GetPathName());
	return GetValueTypeHashInternal(Src);
}

uint32 FProperty::GetValueTypeHashInternal(const void* Src) const
{
	checkf(false, TEXT("Internal error: %s has no hash"), *GetClass()->GetName());
	return 0;
}

bool FProperty::ExportText_Direct(FString& ValueStr, const void* Data, const void* Delta, UObject* Parent,
	int32 PortFlags, UObject* ExportRootScope) const
{
	if (Data != Delta && Identical(Data, Delta, static_cast<uint32>(PortFlags)))
	{
		return false;
	}
	ExportText_Internal(ValueStr, Data, Delta, Parent, PortFlags, ExportRootScope);
	return true;
}

bool FProperty::ExportText_InContainer(int32 Index, FString& ValueStr, const void* Data, const void* Delta,
	UObject* Parent, int32 PortFlags, UObject* ExportRootScope) const
{
	return ExportText_Direct(ValueStr, MemoryToValue(const_cast<void*>(Data), Index),
		Delta ? MemoryToValue(const_cast<void*>(Delta), Index) : nullptr, Parent, PortFlags, ExportRootScope);
}

const TCHAR* FProperty::ImportText_Direct(
	const TCHAR* Buffer, void* PropertyPtr, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	return Buffer ? ImportText_Internal(Buffer, PropertyPtr, OwnerObject, PortFlags, ErrorText) : nullptr;
}

bool FProperty::ShouldPort(uint32 PortFlags) const
{
	return !HasAnyPropertyFlags(CPF_TextExportTransient) &&
		   (!HasAnyPropertyFlags(CPF_Deprecated) || (PortFlags & PPF_Copy));
}

FPropertyValueBuffer::FPropertyValueBuffer(const FProperty& InProperty)
	: Property(InProperty)
	, Memory(std::aligned_alloc(16, (static_cast<SIZE_T>(InProperty.GetSize()) + 15) / 16 * 16))
{
	std::memset(Memory, 0, static_cast<SIZE_T>(InProperty.GetSize()));
	Property.InitializeValue(Memory);
}

FPropertyValueBuffer::~FPropertyValueBuffer()
{
	Property.DestroyValue(Memory);
	std::free(Memory);
}
