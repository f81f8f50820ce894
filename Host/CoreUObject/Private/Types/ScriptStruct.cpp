#include "CoreGlobals.h"
#include "Properties/PropertyText.h"
#include "UObject/Class.h"
#include "UObject/UnrealType.h"

DEFINE_LOG_CATEGORY_STATIC(LogScriptStruct, Log, All);

void UScriptStruct::InitializeStruct(void* Dest, int32 Count) const
{
	if (!Ops)
	{
		Super::InitializeStruct(Dest, Count);
		return;
	}
	for (int32 Index = 0; Index < Count; ++Index)
	{
		Ops->Construct(static_cast<uint8*>(Dest) + static_cast<SIZE_T>(Index) * GetStructureSize());
	}
}

void UScriptStruct::DestroyStruct(void* Dest, int32 Count) const
{
	if (!Ops)
	{
		Super::DestroyStruct(Dest, Count);
		return;
	}
	for (int32 Index = 0; Index < Count; ++Index)
	{
		Ops->Destruct(static_cast<uint8*>(Dest) + static_cast<SIZE_T>(Index) * GetStructureSize());
	}
}

void UScriptStruct::CopyScriptStruct(void* Dest, const void* Src, int32 Count) const
{
	for (int32 Index = 0; Index < Count; ++Index)
	{
		const SIZE_T Offset = static_cast<SIZE_T>(Index) * GetStructureSize();
		uint8* const To = static_cast<uint8*>(Dest) + Offset;
		const uint8* const From = static_cast<const uint8*>(Src) + Offset;
		if (Ops)
		{
			Ops->Copy(To, From);
			continue;
		}
		for (TFieldIterator<FProperty> It(this); It; ++It)
		{
			It->CopyCompleteValue_InContainer(To, From);
		}
	}
}

bool UScriptStruct::CompareScriptStruct(const void* A, const void* B, uint32 PortFlags) const
{
	if (Ops && Ops->Identical)
	{
		return Ops->Identical(A, B);
	}
	for (TFieldIterator<FProperty> It(this); It; ++It)
	{
		for (int32 Index = 0; Index < It->ArrayDim; ++Index)
		{
			if (!It->Identical_InContainer(A, B, Index, PortFlags))
			{
				return false;
			}
		}
	}
	return true;
}

bool UScriptStruct::CanHash() const
{
	return Ops && Ops->GetTypeHash;
}

uint32 UScriptStruct::GetStructTypeHash(const void* Value) const
{
	checkf(CanHash(), TEXT("The struct %s has no hash"), *GetName());
	return Ops->GetTypeHash(Value);
}

void UScriptStruct::ExportText(FString& ValueStr, const void* Value, const void* Defaults, UObject* OwnerObject,
	int32 PortFlags, UObject* ExportRootScope) const
{
	if (Ops && Ops->ExportTextItem && Ops->ExportTextItem(Value, ValueStr, PortFlags))
	{
		return;
	}
	// An atomic struct is written whole: its members are compared with themselves.
	const void* const Delta = (StructFlags & STRUCT_Atomic) ? Value : Defaults;
	ValueStr += TEXT("(");
	const TCHAR* Separator = TEXT("");
	for (TFieldIterator<FProperty> It(this); It; ++It)
	{
		for (int32 Index = 0; Index < It->ArrayDim && It->ShouldPort(PortFlags); ++Index)
		{
			const void* const Member = It->ContainerPtrToValuePtr<void>(Value, Index);
			const void* const Default = Delta ? It->ContainerPtrToValuePtr<void>(Delta, Index) : nullptr;
			if (Member != Default && It->Identical(Member, Default, static_cast<uint32>(PortFlags | PPF_Delimited)))
			{
				continue; // written into the text itself: graphs have very many pins
			}
			ValueStr += Separator;
			It->GetFName().AppendString(ValueStr);
			if (It->ArrayDim > 1)
			{
				ValueStr += FString::Printf(TEXT("[%d]"), Index);
			}
			ValueStr += TEXT("=");
			It->ExportText_Direct(ValueStr, Member, Default, OwnerObject, PortFlags | PPF_Delimited, ExportRootScope);
			Separator = TEXT(",");
		}
	}
	ValueStr += TEXT(")");
}

namespace ScriptStruct
{
/** Reads "Name" or "Name[1]" up to and with the "=". Null when there is none. */
const TCHAR* ReadMemberName(const TCHAR* Buffer, FString& OutName, int32& OutIndex)
{
	Buffer = PropertyText::ReadToken(PropertyText::SkipBlanks(Buffer), OutName);
	if (!Buffer)
	{
		return nullptr;
	}
	OutIndex = 0;
	if (*Buffer == u'[' || *Buffer == u'(')
	{
		OutIndex = FCString::Atoi(Buffer + 1);
		while (*Buffer && *Buffer != u']' && *Buffer != u')')
		{
			++Buffer;
		}
		Buffer += *Buffer ? 1 : 0;
	}
	Buffer = PropertyText::SkipBlanks(Buffer);
	return *Buffer == u'=' ? PropertyText::SkipBlanks(Buffer + 1) : nullptr;
}
}

const TCHAR* UScriptStruct::ImportText(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
	FOutputDevice* ErrorText, const FString& StructName) const
{
	if (Ops && Ops->ImportTextItem)
	{
		return Ops->ImportTextItem(Value, Buffer, PortFlags) ? Buffer : nullptr;
	}
	return PropertyText::ReadList(Buffer, [&](const TCHAR* Text) -> const TCHAR* {
		FString Name;
		int32 Index = 0;
		Text = ScriptStruct::ReadMemberName(Text, Name, Index);
		if (!Text)
		{
			return nullptr;
		}
		const FProperty* Property = FindPropertyByName(PropertyText::FindName(Name));
		if (!Property || Index < 0 || Index >= Property->ArrayDim)
		{
			UE_LOG(LogScriptStruct, Verbose, TEXT("Unknown property in %s: %s"), *StructName, *Name);
			return PropertyText::SkipValue(Text);
		}
		return Property->ImportText_Direct(Text, Property->ContainerPtrToValuePtr<void>(Value, Index), OwnerObject,
			PortFlags | PPF_Delimited, ErrorText);
	});
}
