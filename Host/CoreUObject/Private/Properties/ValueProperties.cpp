#include "Properties/PropertyText.h"
#include "UObject/EnumProperty.h"
#include "UObject/ObjectText.h"
#include "UObject/TextProperty.h"
#include "UObject/UnrealType.h"

#include <cstdlib>

namespace ValueProperties
{
/** The word of a number at the start of the text; empty when there is none. */
FString ReadNumber(const TCHAR* Buffer)
{
	const TCHAR* End = Buffer + (*Buffer == u'-' || *Buffer == u'+');
	const TCHAR* const Digits = End;
	while (FChar::IsDigit(*End) || *End == u'.' || ((*End == u'e' || *End == u'E') && End != Digits) ||
		   ((*End == u'-' || *End == u'+') && (End[-1] == u'e' || End[-1] == u'E')))
	{
		++End;
	}
	return End == Digits ? FString() : FString::ConstructFromPtrSize(Buffer, static_cast<int32>(End - Buffer));
}

bool IsNumber(const FString& Text)
{
	return !Text.IsEmpty() && ReadNumber(*Text).Len() == Text.Len();
}

void SetInteger(const FNumericProperty& Property, void* Value, const FString& Number)
{
	if (Property.IsA<FUInt64Property>())
	{
		Property.SetIntPropertyValue(Value, static_cast<uint64>(std::strtoull(TCHAR_TO_UTF8(*Number), nullptr, 10)));
	}
	else
	{
		Property.SetIntPropertyValue(Value, FCString::Atoi64(*Number));
	}
}

FString EnumText(const UEnum* Enum, int64 Value)
{
	const FString Name = Enum->GetNameStringByValue(Value);
	return Name.IsEmpty() ? LexToString(Value) : Name;
}

/** Reads an enumerator's name, short or full, or its number. Null for what is neither. */
const TCHAR* ReadEnum(const TCHAR* Buffer, const UEnum* Enum, int64& OutValue)
{
	FString Token;
	const TCHAR* End = PropertyText::ReadToken(Buffer, Token);
	if (!End)
	{
		return nullptr;
	}
	const int32 Index = Enum->GetIndexByNameString(Token);
	if (Index != INDEX_NONE)
	{
		OutValue = Enum->GetValueByIndex(Index);
		return End;
	}
	OutValue = FCString::Atoi64(*Token);
	return IsNumber(Token) ? End : nullptr;
}

const TCHAR* EndOf(const TCHAR* Buffer)
{
	return Buffer + FCString::Strlen(Buffer);
}

bool ReadBool(const FString& Token, bool& bOutValue)
{
	static const TCHAR* const TrueWords[] = { TEXT("1"), TEXT("True"), TEXT("Yes"), TEXT("On") };
	static const TCHAR* const FalseWords[] = { TEXT("0"), TEXT("False"), TEXT("No"), TEXT("Off") };
	for (int32 Index = 0; Index < 4; ++Index)
	{
		if (Token == TrueWords[Index] || Token == FalseWords[Index])
		{
			bOutValue = Token == TrueWords[Index];
			return true;
		}
	}
	return false;
}

/** Reads `MACRO("a", "b")` with any number of texts. Null when the text does not start so. */
const TCHAR* ReadTextMacro(const TCHAR* Buffer, const TCHAR* Macro, TArray<FString>& OutTexts)
{
	const int32 Length = FCString::Strlen(Macro);
	if (FCString::Strncmp(Buffer, Macro, Length) != 0)
	{
		return nullptr;
	}
	return PropertyText::ReadList(Buffer + Length,
		[&OutTexts](const TCHAR* Text) { return PropertyText::ReadQuoted(Text, OutTexts.Emplace_GetRef()); });
}
}

FString FNumericProperty::GetNumericPropertyValueToString(const void* Data) const
{
	if (IsFloatingPoint())
	{
		return FString::Printf(TEXT("%f"), GetFloatingPointPropertyValue(Data));
	}
	return IsA<FUInt64Property>() ? LexToString(GetUnsignedIntPropertyValue(Data))
								  : LexToString(GetSignedIntPropertyValue(Data));
}

void FNumericProperty::SetNumericPropertyValueFromString(void* Data, const TCHAR* Value) const
{
	if (IsFloatingPoint())
	{
		SetFloatingPointPropertyValue(Data, FCString::Atod(Value));
	}
	else
	{
		ValueProperties::SetInteger(*this, Data, Value);
	}
}

void FNumericProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32 PortFlags, UObject*) const
{
	FString Text = GetNumericPropertyValueToString(PropertyValue);
	if (IsFloatingPoint() && (PortFlags & ObjectText::PPF_RoundTrip))
	{
		const double Number = GetFloatingPointPropertyValue(PropertyValue);
		const bool bSingle = IsA<FFloatProperty>();
		const double Back = FCString::Atod(*Text);
		if ((bSingle ? static_cast<double>(static_cast<float>(Back)) : Back) != Number)
		{
			Text = FString::Printf(TEXT("%.*g"), bSingle ? 9 : 17, Number);
		}
	}
	ValueStr += Text;
}

const TCHAR* FNumericProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject*, int32, FOutputDevice*) const
{
	const FString Number = ValueProperties::ReadNumber(Buffer);
	if (Number.IsEmpty())
	{
		return nullptr;
	}
	SetNumericPropertyValueFromString(Value, *Number);
	return Buffer + Number.Len();
}

FString FByteProperty::GetCPPType(FString*, uint32) const
{
	return Enum ? TEXT("TEnumAsByte<") + Enum->CppType + TEXT(">") : FString(TEXT("uint8"));
}

bool FByteProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && static_cast<const FByteProperty*>(Other)->Enum == Enum;
}

void FByteProperty::CollectTypes(FReferenceCollector& Collector) const
{
	Collector.AddReferencedObject(Enum);
}

void FByteProperty::ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue,
	UObject* Parent, int32 PortFlags, UObject* ExportRootScope) const
{
	if (Enum)
	{
		ValueStr += ValueProperties::EnumText(Enum, GetPropertyValue(PropertyValue));
		return;
	}
	Super::ExportText_Internal(ValueStr, PropertyValue, DefaultValue, Parent, PortFlags, ExportRootScope);
}

const TCHAR* FByteProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	if (!Enum)
	{
		return Super::ImportText_Internal(Buffer, Value, OwnerObject, PortFlags, ErrorText);
	}
	int64 EnumValue = 0;
	const TCHAR* End = ValueProperties::ReadEnum(Buffer, Enum, EnumValue);
	if (End)
	{
		SetPropertyValue(Value, static_cast<uint8>(EnumValue));
	}
	return End;
}

FEnumProperty::~FEnumProperty()
{
	delete UnderlyingProp;
}

void FEnumProperty::AddCppProperty(FProperty* Property)
{
	UnderlyingProp = CastFieldChecked<FNumericProperty>(Property);
}

FString FEnumProperty::GetCPPType(FString*, uint32) const
{
	return Enum->CppType;
}

bool FEnumProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && static_cast<const FEnumProperty*>(Other)->Enum == Enum;
}

void FEnumProperty::CollectTypes(FReferenceCollector& Collector) const
{
	Collector.AddReferencedObject(Enum);
}

void FEnumProperty::LinkInternal()
{
	ElementSize = UnderlyingProp->ElementSize;
	PropertyFlags |= CPF_IsPlainOldData | CPF_NoDestructor | CPF_ZeroConstructor | CPF_HasGetValueTypeHash;
}

void FEnumProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32, UObject*) const
{
	ValueStr += ValueProperties::EnumText(Enum, UnderlyingProp->GetSignedIntPropertyValue(PropertyValue));
}

const TCHAR* FEnumProperty::ImportText_Internal(const TCHAR* Buffer, void* Value, UObject*, int32, FOutputDevice*) const
{
	int64 EnumValue = 0;
	const TCHAR* End = ValueProperties::ReadEnum(Buffer, Enum, EnumValue);
	if (End)
	{
		UnderlyingProp->SetIntPropertyValue(Value, EnumValue);
	}
	return End;
}

FBoolProperty::FBoolProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags)
	: FProperty(InOwner, InName, InFlags)
{
	ElementSize = sizeof(bool);
	PropertyFlags |= CPF_IsPlainOldData | CPF_NoDestructor | CPF_ZeroConstructor | CPF_HasGetValueTypeHash;
}

void FBoolProperty::SetBoolSize(uint32 InSize, bool bInNativeBool, uint8 InBitMask)
{
	ElementSize = static_cast<int32>(InSize);
	bNativeBool = bInNativeBool;
	BitMask = InBitMask;
}

bool FBoolProperty::GetPropertyValue(const void* A) const
{
	return bNativeBool ? *static_cast<const bool*>(A) : (*static_cast<const uint8*>(A) & BitMask) != 0;
}

void FBoolProperty::SetPropertyValue(void* A, bool bValue) const
{
	if (bNativeBool)
	{
		*static_cast<bool*>(A) = bValue;
		return;
	}
	uint8& Byte = *static_cast<uint8*>(A);
	Byte = static_cast<uint8>(bValue ? Byte | BitMask : Byte & ~BitMask);
}

FString FBoolProperty::GetCPPType(FString*, uint32) const
{
	return bNativeBool ? TEXT("bool") : TEXT("uint8");
}

void FBoolProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32, UObject*) const
{
	ValueStr += GetPropertyValue(PropertyValue) ? TEXT("True") : TEXT("False");
}

const TCHAR* FBoolProperty::ImportText_Internal(const TCHAR* Buffer, void* Value, UObject*, int32, FOutputDevice*) const
{
	FString Token;
	bool bValue = false;
	const TCHAR* End = PropertyText::ReadToken(Buffer, Token);
	if (!End || !ValueProperties::ReadBool(Token, bValue))
	{
		return nullptr;
	}
	SetPropertyValue(Value, bValue);
	return End;
}

FString FStrProperty::GetCPPType(FString*, uint32) const
{
	return TEXT("FString");
}

bool FStrProperty::Identical(const void* A, const void* B, uint32) const
{
	return GetPropertyValue(A).Equals(B ? GetPropertyValue(B) : FString());
}

void FStrProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32 PortFlags, UObject*) const
{
	const FString& Text = GetPropertyValue(PropertyValue);
	ValueStr += (PortFlags & PPF_Delimited) ? PropertyText::Quote(Text) : Text;
}

const TCHAR* FStrProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject*, int32 PortFlags, FOutputDevice*) const
{
	if (PortFlags & PPF_Delimited)
	{
		return PropertyText::ReadQuoted(Buffer, *GetPropertyValuePtr(Value));
	}
	SetPropertyValue(Value, Buffer);
	return ValueProperties::EndOf(Buffer);
}

FString FNameProperty::GetCPPType(FString*, uint32) const
{
	return TEXT("FName");
}

void FNameProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32 PortFlags, UObject*) const
{
	const FString Text = GetPropertyValue(PropertyValue).ToString();
	ValueStr += (PortFlags & PPF_Delimited) ? PropertyText::Quote(Text) : Text;
}

const TCHAR* FNameProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject*, int32 PortFlags, FOutputDevice*) const
{
	FString Text = Buffer;
	const TCHAR* const End =
		(PortFlags & PPF_Delimited) ? PropertyText::ReadToken(Buffer, Text) : ValueProperties::EndOf(Buffer);
	if (!End || Text.Len() >= NAME_SIZE)
	{
		return nullptr;
	}
	SetPropertyValue(Value, Text == TEXT("None") ? FName() : FName(*Text));
	return End;
}

FString FTextProperty::GetCPPType(FString*, uint32) const
{
	return TEXT("FText");
}

bool FTextProperty::Identical(const void* A, const void* B, uint32) const
{
	const FText& Left = GetPropertyValue(A);
	const FText& Right = B ? GetPropertyValue(B) : FText::GetEmpty();
	return Left.EqualTo(Right) && FTextInspector::GetNamespace(Left).Equals(FTextInspector::GetNamespace(Right)) &&
		   FTextInspector::GetKey(Left).Equals(FTextInspector::GetKey(Right));
}

void FTextProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32 PortFlags, UObject*) const
{
	const FText& Text = GetPropertyValue(PropertyValue);
	if (Text.IsCultureInvariant() || (PortFlags & PPF_PropertyWindow))
	{
		ValueStr += (PortFlags & PPF_Delimited) ? PropertyText::Quote(Text.ToString()) : Text.ToString();
		return;
	}
	ValueStr += FString::Printf(TEXT("NSLOCTEXT(%s, %s, %s)"), *PropertyText::Quote(FTextInspector::GetNamespace(Text)),
		*PropertyText::Quote(FTextInspector::GetKey(Text)), *PropertyText::Quote(Text.ToString()));
}

const TCHAR* FTextProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject*, int32 PortFlags, FOutputDevice*) const
{
	TArray<FString> Parts;
	if (const TCHAR* End = ValueProperties::ReadTextMacro(Buffer, TEXT("NSLOCTEXT"), Parts); End && Parts.Num() == 3)
	{
		SetPropertyValue(Value, MakeLocalizableText(*Parts[0], *Parts[1], *Parts[2]));
		return End;
	}
	Parts.Empty();
	if (const TCHAR* End = ValueProperties::ReadTextMacro(Buffer, TEXT("INVTEXT"), Parts); End && Parts.Num() == 1)
	{
		SetPropertyValue(Value, FText::FromString(Parts[0]));
		return End;
	}

	FString Text;
	const TCHAR* const QuotedEnd = PropertyText::ReadQuoted(Buffer, Text);
	if (!QuotedEnd && (PortFlags & PPF_Delimited))
	{
		return nullptr;
	}
	SetPropertyValue(Value, FText::FromString(QuotedEnd ? Text : FString(Buffer)));
	return QuotedEnd ? QuotedEnd : ValueProperties::EndOf(Buffer);
}
