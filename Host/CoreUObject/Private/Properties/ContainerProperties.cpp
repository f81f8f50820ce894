#include "Properties/PropertyText.h"
#include "UObject/UnrealType.h"

namespace ContainerProperties
{
FString GetFullType(const FProperty& Property)
{
	FString Extended;
	const FString Type = Property.GetCPPType(&Extended);
	return Type + Extended;
}

/** What an element is compared with when it is written: a struct's members may be left out that are as they start. */
class FElementDefault
{
public:
	explicit FElementDefault(const FProperty& Property)
	{
		if (Property.IsA<FStructProperty>())
		{
			Buffer = MakeUnique<FPropertyValueBuffer>(Property);
		}
	}
	const void* GetFor(const void* Element) const { return Buffer ? Buffer->Get() : Element; }

private:
	TUniquePtr<FPropertyValueBuffer> Buffer;
};

void ExportElement(
	FString& ValueStr, const FProperty& Property, const void* Element, const FElementDefault& Default, int32 PortFlags)
{
	Property.ExportTextItem_Direct(ValueStr, Element, Default.GetFor(Element), nullptr, PortFlags | PPF_Delimited);
}

/** An empty list is written as nothing at all in some places, and has to be read again. */
bool IsEmptyText(const TCHAR* Buffer)
{
	return *Buffer == u'\0' || *Buffer == u',' || *Buffer == u')';
}

FSetSlotLayout GetSetLayout(const FProperty& Element)
{
	return FSetSlotLayout::Of(Element.GetSize(), Element.GetMinAlignment());
}

/** As the typed containers compare: texts ignore case there, which Identical does not. */
bool KeysMatch(const FProperty& Property, const void* A, const void* B)
{
	return Property.IsA<FStrProperty>() ? FStrProperty::GetPropertyValue(A) == FStrProperty::GetPropertyValue(B)
										: Property.Identical(A, B);
}

/** Finds the slot whose value, at its start, is equal to Key. */
int32 FindSlot(const FSetStorage& Storage, const FSetSlotLayout& Layout, const FProperty& KeyProperty, const void* Key)
{
	const uint32 Hash = KeyProperty.GetValueTypeHash(Key);
	for (int32 Index = Storage.FirstInChain(Hash); Index != INDEX_NONE; Index = Storage.Link(Index, Layout).Next)
	{
		if (Storage.Link(Index, Layout).Hash == Hash && KeysMatch(KeyProperty, Storage.GetData(Index, Layout), Key))
		{
			return Index;
		}
	}
	return INDEX_NONE;
}
}

FArrayProperty::FArrayProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags)
	: FProperty(InOwner, InName, InFlags)
{
	ElementSize = sizeof(FScriptArray);
}

FArrayProperty::~FArrayProperty()
{
	delete Inner;
}

FString FArrayProperty::GetCPPType(FString* ExtendedTypeText, uint32) const
{
	if (ExtendedTypeText)
	{
		*ExtendedTypeText = TEXT("<") + ContainerProperties::GetFullType(*Inner) + TEXT(">");
	}
	return TEXT("TArray");
}

bool FArrayProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && Inner->SameType(static_cast<const FArrayProperty*>(Other)->Inner);
}

void FArrayProperty::CollectTypes(FReferenceCollector& Collector) const
{
	Inner->CollectTypes(Collector);
}

void FArrayProperty::LinkInternal()
{
	Inner->LinkInternal();
}

void FArrayProperty::DestroyElement(void* Dest) const
{
	FScriptArrayHelper(this, Dest).EmptyValues();
	static_cast<FScriptArray*>(Dest)->~FScriptArray();
}

void FArrayProperty::CopySingleValue(void* Dest, const void* Src) const
{
	if (Dest == Src)
	{
		return;
	}
	const FScriptArrayHelper From(this, Src);
	const FScriptArrayHelper To(this, Dest);
	To.EmptyAndAddValues(From.Num());
	for (int32 Index = 0; Index < From.Num(); ++Index)
	{
		Inner->CopySingleValue(To.GetRawPtr(Index), From.GetRawPtr(Index));
	}
}

bool FArrayProperty::Identical(const void* A, const void* B, uint32 PortFlags) const
{
	const FScriptArrayHelper Left(this, A);
	if (!B)
	{
		return Left.Num() == 0;
	}
	const FScriptArrayHelper Right(this, B);
	if (Left.Num() != Right.Num())
	{
		return false;
	}
	for (int32 Index = 0; Index < Left.Num(); ++Index)
	{
		if (!Inner->Identical(Left.GetRawPtr(Index), Right.GetRawPtr(Index), PortFlags))
		{
			return false;
		}
	}
	return true;
}

void FArrayProperty::CollectReferences(void* Value, FReferenceCollector& Collector) const
{
	const FScriptArrayHelper Array(this, Value);
	for (int32 Index = 0; Index < Array.Num(); ++Index)
	{
		Inner->CollectReferences(Array.GetRawPtr(Index), Collector);
	}
}

void FArrayProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32 PortFlags, UObject*) const
{
	const FScriptArrayHelper Array(this, PropertyValue);
	const ContainerProperties::FElementDefault Default(*Inner);
	for (int32 Index = 0; Index < Array.Num(); ++Index)
	{
		ValueStr += Index == 0 ? TEXT("(") : TEXT(",");
		ContainerProperties::ExportElement(ValueStr, *Inner, Array.GetRawPtr(Index), Default, PortFlags);
	}
	ValueStr += Array.Num() == 0 ? TEXT("") : TEXT(")");
}

const TCHAR* FArrayProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	const FScriptArrayHelper Array(this, Value);
	Array.EmptyValues();
	if (ContainerProperties::IsEmptyText(Buffer))
	{
		return Buffer;
	}
	return PropertyText::ReadList(Buffer, [&](const TCHAR* Text) {
		return Inner->ImportText_Direct(
			Text, Array.GetRawPtr(Array.AddValue()), OwnerObject, PortFlags | PPF_Delimited, ErrorText);
	});
}

uint8* FScriptArrayHelper::GetRawPtr(int32 Index) const
{
	checkf(IsValidIndex(Index), TEXT("Array index out of bounds: %d into an array of size %d"), Index, Num());
	return Array->At(Index, Inner->GetSize());
}

int32 FScriptArrayHelper::AddValues(int32 Count) const
{
	const int32 Index = Num();
	InsertValues(Index, Count);
	return Index;
}

void FScriptArrayHelper::InsertValues(int32 Index, int32 Count) const
{
	checkf(Index >= 0 && Index <= Num() && Count >= 0, TEXT("Insertion of %d values at %d into an array of size %d"),
		Count, Index, Num());
	Array->InsertZeroed(Index, Count, Inner->GetSize(), Inner->GetMinAlignment());
	for (int32 Each = Index; Each < Index + Count; ++Each)
	{
		Inner->InitializeValue(GetRawPtr(Each));
	}
}

void FScriptArrayHelper::RemoveValues(int32 Index, int32 Count) const
{
	checkf(Index >= 0 && Count >= 0 && Index + Count <= Num(),
		TEXT("Removal of %d values at %d of an array of size %d"), Count, Index, Num());
	for (int32 Each = Index; Each < Index + Count; ++Each)
	{
		Inner->DestroyValue(GetRawPtr(Each));
	}
	if (Count > 0)
	{
		Array->Remove(Index, Count, Inner->GetSize());
	}
}

void FScriptArrayHelper::Resize(int32 Count) const
{
	if (Count < Num())
	{
		RemoveValues(Count, Num() - Count);
	}
	else
	{
		AddValues(Count - Num());
	}
}

void FScriptArrayHelper::EmptyAndAddValues(int32 Count) const
{
	EmptyValues();
	AddValues(Count);
}

void FScriptArrayHelper::SwapValues(int32 A, int32 B) const
{
	uint8* const Left = GetRawPtr(A);
	std::swap_ranges(Left, Left + (A == B ? 0 : Inner->GetSize()), GetRawPtr(B));
}

FSetProperty::FSetProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags)
	: FProperty(InOwner, InName, InFlags)
{
	ElementSize = sizeof(FScriptSet);
}

FSetProperty::~FSetProperty()
{
	delete ElementProp;
}

FString FSetProperty::GetCPPType(FString* ExtendedTypeText, uint32) const
{
	if (ExtendedTypeText)
	{
		*ExtendedTypeText = TEXT("<") + ContainerProperties::GetFullType(*ElementProp) + TEXT(">");
	}
	return TEXT("TSet");
}

bool FSetProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && ElementProp->SameType(static_cast<const FSetProperty*>(Other)->ElementProp);
}

void FSetProperty::CollectTypes(FReferenceCollector& Collector) const
{
	ElementProp->CollectTypes(Collector);
}

void FSetProperty::LinkInternal()
{
	ElementProp->LinkInternal();
}

void FSetProperty::DestroyElement(void* Dest) const
{
	FScriptSetHelper(this, Dest).EmptyElements();
	static_cast<FScriptSet*>(Dest)->~FScriptSet();
}

void FSetProperty::CopySingleValue(void* Dest, const void* Src) const
{
	if (Dest == Src)
	{
		return;
	}
	const FScriptSetHelper From(this, Src);
	const FScriptSetHelper To(this, Dest);
	To.EmptyElements();
	for (int32 Index = 0; Index < From.GetMaxIndex(); ++Index)
	{
		if (From.IsValidIndex(Index))
		{
			To.AddElement(From.GetElementPtr(Index));
		}
	}
}

bool FSetProperty::Identical(const void* A, const void* B, uint32 PortFlags) const
{
	const FScriptSetHelper Left(this, A);
	if (!B)
	{
		return Left.Num() == 0;
	}
	const FScriptSetHelper Right(this, B);
	bool bIdentical = Left.Num() == Right.Num();
	for (int32 Index = 0; Index < Left.GetMaxIndex() && bIdentical; ++Index)
	{
		if (Left.IsValidIndex(Index))
		{
			const int32 Found = Right.FindElementIndex(Left.GetElementPtr(Index));
			bIdentical = Found != INDEX_NONE &&
						 ElementProp->Identical(Left.GetElementPtr(Index), Right.GetElementPtr(Found), PortFlags);
		}
	}
	return bIdentical;
}

void FSetProperty::CollectReferences(void* Value, FReferenceCollector& Collector) const
{
	const FScriptSetHelper Set(this, Value);
	for (int32 Index = 0; Index < Set.GetMaxIndex(); ++Index)
	{
		if (Set.IsValidIndex(Index))
		{
			ElementProp->CollectReferences(Set.GetElementPtr(Index), Collector);
		}
	}
	if (Collector.ReplacesReferences())
	{
		const FPropertyValueBuffer Sorted(*this);
		for (int32 Index = 0; Index < Set.GetMaxIndex(); ++Index)
		{
			if (Set.IsValidIndex(Index))
			{
				FScriptSetHelper(this, Sorted.Get()).AddElement(Set.GetElementPtr(Index));
			}
		}
		CopySingleValue(Value, Sorted.Get());
	}
}

void FSetProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32 PortFlags, UObject*) const
{
	const FScriptSetHelper Set(this, PropertyValue);
	const ContainerProperties::FElementDefault Default(*ElementProp);
	const TCHAR* Separator = TEXT("(");
	for (int32 Index = 0; Index < Set.GetMaxIndex(); ++Index)
	{
		if (Set.IsValidIndex(Index))
		{
			ValueStr += Separator;
			ContainerProperties::ExportElement(ValueStr, *ElementProp, Set.GetElementPtr(Index), Default, PortFlags);
			Separator = TEXT(",");
		}
	}
	ValueStr += Set.Num() == 0 ? TEXT("()") : TEXT(")");
}

const TCHAR* FSetProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	const FScriptSetHelper Set(this, Value);
	Set.EmptyElements();
	if (ContainerProperties::IsEmptyText(Buffer))
	{
		return Buffer;
	}
	return PropertyText::ReadList(Buffer, [&](const TCHAR* Text) {
		const FPropertyValueBuffer Element(*ElementProp);
		Text = ElementProp->ImportText_Direct(Text, Element.Get(), OwnerObject, PortFlags | PPF_Delimited, ErrorText);
		if (Text)
		{
			Set.AddElement(Element.Get());
		}
		return Text;
	});
}

FScriptSetHelper::FScriptSetHelper(const FSetProperty* InProperty, const void* InSet)
	: Element(InProperty->ElementProp)
	, Set(static_cast<FScriptSet*>(const_cast<void*>(InSet)))
	, Layout(ContainerProperties::GetSetLayout(*Element))
{
}

uint8* FScriptSetHelper::GetElementPtr(int32 Index) const
{
	checkf(IsValidIndex(Index), TEXT("The set has no element %d"), Index);
	return static_cast<uint8*>(Set->GetData(Index, Layout));
}

int32 FScriptSetHelper::FindElementIndex(const void* ElementToFind) const
{
	return ContainerProperties::FindSlot(*Set, Layout, *Element, ElementToFind);
}

void FScriptSetHelper::AddElement(const void* ElementToAdd) const
{
	const int32 Existing = FindElementIndex(ElementToAdd);
	if (Existing != INDEX_NONE)
	{
		Element->CopySingleValue(GetElementPtr(Existing), ElementToAdd);
		return;
	}
	const int32 Index = Set->AddSlot(Element->GetValueTypeHash(ElementToAdd), Layout);
	Element->InitializeValue(GetElementPtr(Index));
	Element->CopySingleValue(GetElementPtr(Index), ElementToAdd);
}

bool FScriptSetHelper::RemoveElement(const void* ElementToRemove) const
{
	const int32 Index = FindElementIndex(ElementToRemove);
	if (Index == INDEX_NONE)
	{
		return false;
	}
	Element->DestroyValue(GetElementPtr(Index));
	Set->RemoveSlot(Index, Layout);
	return true;
}

void FScriptSetHelper::EmptyElements() const
{
	for (int32 Index = 0; Index < GetMaxIndex(); ++Index)
	{
		if (IsValidIndex(Index))
		{
			Element->DestroyValue(GetElementPtr(Index));
		}
	}
	Set->Clear();
}

FMapProperty::FMapProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags)
	: FProperty(InOwner, InName, InFlags)
{
	ElementSize = sizeof(FScriptMap);
}

FMapProperty::~FMapProperty()
{
	delete KeyProp;
	delete ValueProp;
}

FString FMapProperty::GetCPPType(FString* ExtendedTypeText, uint32) const
{
	if (ExtendedTypeText)
	{
		*ExtendedTypeText = TEXT("<") + ContainerProperties::GetFullType(*KeyProp) + TEXT(",") +
							ContainerProperties::GetFullType(*ValueProp) + TEXT(">");
	}
	return TEXT("TMap");
}

bool FMapProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && KeyProp->SameType(static_cast<const FMapProperty*>(Other)->KeyProp) &&
		   ValueProp->SameType(static_cast<const FMapProperty*>(Other)->ValueProp);
}

void FMapProperty::CollectTypes(FReferenceCollector& Collector) const
{
	KeyProp->CollectTypes(Collector);
	ValueProp->CollectTypes(Collector);
}

void FMapProperty::LinkInternal()
{
	KeyProp->LinkInternal();
	ValueProp->LinkInternal();
	MapLayout = FScriptMapLayout::Of(
		KeyProp->GetSize(), KeyProp->GetMinAlignment(), ValueProp->GetSize(), ValueProp->GetMinAlignment());
}

void FMapProperty::DestroyElement(void* Dest) const
{
	FScriptMapHelper(this, Dest).EmptyValues();
	static_cast<FScriptMap*>(Dest)->~FScriptMap();
}

void FMapProperty::CopySingleValue(void* Dest, const void* Src) const
{
	if (Dest == Src)
	{
		return;
	}
	const FScriptMapHelper From(this, Src);
	const FScriptMapHelper To(this, Dest);
	To.EmptyValues();
	for (int32 Index = 0; Index < From.GetMaxIndex(); ++Index)
	{
		if (From.IsValidIndex(Index))
		{
			To.AddPair(From.GetKeyPtr(Index), From.GetValuePtr(Index));
		}
	}
}

bool FMapProperty::Identical(const void* A, const void* B, uint32 PortFlags) const
{
	const FScriptMapHelper Left(this, A);
	if (!B)
	{
		return Left.Num() == 0;
	}
	const FScriptMapHelper Right(this, B);
	bool bIdentical = Left.Num() == Right.Num();
	for (int32 Index = 0; Index < Left.GetMaxIndex() && bIdentical; ++Index)
	{
		if (Left.IsValidIndex(Index))
		{
			const int32 Found = Right.FindMapIndexWithKey(Left.GetKeyPtr(Index));
			bIdentical = Found != INDEX_NONE &&
						 KeyProp->Identical(Left.GetKeyPtr(Index), Right.GetKeyPtr(Found), PortFlags) &&
						 ValueProp->Identical(Left.GetValuePtr(Index), Right.GetValuePtr(Found), PortFlags);
		}
	}
	return bIdentical;
}

void FMapProperty::CollectReferences(void* Value, FReferenceCollector& Collector) const
{
	const FScriptMapHelper Map(this, Value);
	for (int32 Index = 0; Index < Map.GetMaxIndex(); ++Index)
	{
		if (Map.IsValidIndex(Index))
		{
			KeyProp->CollectReferences(Map.GetKeyPtr(Index), Collector);
			ValueProp->CollectReferences(Map.GetValuePtr(Index), Collector);
		}
	}
	if (Collector.ReplacesReferences())
	{
		const FPropertyValueBuffer Sorted(*this);
		for (int32 Index = 0; Index < Map.GetMaxIndex(); ++Index)
		{
			if (Map.IsValidIndex(Index))
			{
				FScriptMapHelper(this, Sorted.Get()).AddPair(Map.GetKeyPtr(Index), Map.GetValuePtr(Index));
			}
		}
		CopySingleValue(Value, Sorted.Get());
	}
}

void FMapProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32 PortFlags, UObject*) const
{
	const FScriptMapHelper Map(this, PropertyValue);
	const ContainerProperties::FElementDefault KeyDefault(*KeyProp);
	const ContainerProperties::FElementDefault ValueDefault(*ValueProp);
	const TCHAR* Separator = TEXT("((");
	for (int32 Index = 0; Index < Map.GetMaxIndex(); ++Index)
	{
		if (Map.IsValidIndex(Index))
		{
			ValueStr += Separator;
			ContainerProperties::ExportElement(ValueStr, *KeyProp, Map.GetKeyPtr(Index), KeyDefault, PortFlags);
			ValueStr += TEXT(", ");
			ContainerProperties::ExportElement(ValueStr, *ValueProp, Map.GetValuePtr(Index), ValueDefault, PortFlags);
			ValueStr += TEXT(")");
			Separator = TEXT(",(");
		}
	}
	ValueStr += Map.Num() == 0 ? TEXT("()") : TEXT(")");
}

const TCHAR* FMapProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	const FScriptMapHelper Map(this, Value);
	Map.EmptyValues();
	if (ContainerProperties::IsEmptyText(Buffer))
	{
		return Buffer;
	}
	return PropertyText::ReadList(Buffer, [&](const TCHAR* PairText) {
		const FPropertyValueBuffer KeyBuffer(*KeyProp);
		const FPropertyValueBuffer ValueBuffer(*ValueProp);
		int32 NumRead = 0;
		const TCHAR* End = PropertyText::ReadList(PairText, [&](const TCHAR* Text) {
			const FPropertyValueBuffer& Part = NumRead == 0 ? KeyBuffer : ValueBuffer;
			const FProperty& Property = NumRead == 0 ? *KeyProp : *ValueProp;
			++NumRead;
			return NumRead > 2 ? nullptr
							   : Property.ImportText_Direct(
									 Text, Part.Get(), OwnerObject, PortFlags | PPF_Delimited, ErrorText);
		});
		if (NumRead != 2)
		{
			return static_cast<const TCHAR*>(nullptr);
		}
		Map.AddPair(KeyBuffer.Get(), ValueBuffer.Get());
		return End;
	});
}

FScriptMapHelper::FScriptMapHelper(const FMapProperty* InProperty, const void* InMap)
	: Key(InProperty->KeyProp)
	, Value(InProperty->ValueProp)
	, Map(static_cast<FScriptMap*>(const_cast<void*>(InMap)))
	, Layout(InProperty->MapLayout)
{
}

uint8* FScriptMapHelper::GetKeyPtr(int32 Index) const
{
	checkf(IsValidIndex(Index), TEXT("The map has no pair %d"), Index);
	return static_cast<uint8*>(Map->GetData(Index, Layout.Slot));
}

int32 FScriptMapHelper::FindMapIndexWithKey(const void* KeyToFind) const
{
	return ContainerProperties::FindSlot(*Map, Layout.Slot, *Key, KeyToFind);
}

uint8* FScriptMapHelper::FindValueFromHash(const void* KeyToFind) const
{
	const int32 Index = FindMapIndexWithKey(KeyToFind);
	return Index == INDEX_NONE ? nullptr : GetValuePtr(Index);
}

void FScriptMapHelper::AddPair(const void* KeyToAdd, const void* ValueToAdd) const
{
	int32 Index = FindMapIndexWithKey(KeyToAdd);
	if (Index == INDEX_NONE)
	{
		Index = Map->AddSlot(Key->GetValueTypeHash(KeyToAdd), Layout.Slot);
		Key->InitializeValue(GetKeyPtr(Index));
		Value->InitializeValue(GetValuePtr(Index));
	}
	Key->CopySingleValue(GetKeyPtr(Index), KeyToAdd);
	Value->CopySingleValue(GetValuePtr(Index), ValueToAdd);
}

bool FScriptMapHelper::RemovePair(const void* KeyToRemove) const
{
	const int32 Index = FindMapIndexWithKey(KeyToRemove);
	if (Index == INDEX_NONE)
	{
		return false;
	}
	Key->DestroyValue(GetKeyPtr(Index));
	Value->DestroyValue(GetValuePtr(Index));
	Map->RemoveSlot(Index, Layout.Slot);
	return true;
}

void FScriptMapHelper::EmptyValues() const
{
	for (int32 Index = 0; Index < GetMaxIndex(); ++Index)
	{
		if (IsValidIndex(Index))
		{
			Key->DestroyValue(GetKeyPtr(Index));
			Value->DestroyValue(GetValuePtr(Index));
		}
	}
	Map->Clear();
}
