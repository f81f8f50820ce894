#include "Agent/Blueprints/Types/JsonImportText.h"

#include "Agent/Blueprints/BlueprintDocument.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Misc/FeedbackContext.h"
#include "Serialization/JsonTypes.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/PropertyPortFlags.h"
#include "UObject/UnrealType.h"
#include "UObject/WeakObjectPtrTemplates.h"

namespace JsonImportText
{
using FSchema = UEdGraphSchema_K2;

constexpr int32 MaxDepth = 32;

FString ToText(const FJsonValue& Value, const FEdGraphPinType& Type, int32 Depth);

FEdGraphPinType GetElementType(const FEdGraphPinType& Type)
{
	FEdGraphPinType Element = Type;
	Element.ContainerType = EPinContainerType::None;
	return Element;
}

FEdGraphPinType GetMapValueType(const FEdGraphPinType& Type)
{
	FEdGraphPinType Value;
	Value.PinCategory = Type.PinValueType.TerminalCategory;
	Value.PinSubCategory = Type.PinValueType.TerminalSubCategory;
	Value.PinSubCategoryObject = Type.PinValueType.TerminalSubCategoryObject;
	return Value;
}

FEdGraphPinType GetMemberType(const FEdGraphPinType& Type, const FString& Member)
{
	const UScriptStruct* Struct = Cast<UScriptStruct>(Type.PinSubCategoryObject.Get());
	return FKestrelBlueprintUtils::ConvertPropertyToEdGraphPinType(
		Struct ? Struct->FindPropertyByName(KestrelBlueprintDocument::ToName(Member)) : nullptr);
}

/** Inside of others these are read up to a closing quote; texts of other kinds stand plain. */
bool IsQuoted(const FEdGraphPinType& Type)
{
	const FName Category = Type.PinCategory;
	return Category.IsNone() || Category == FSchema::PC_String || Category == FSchema::PC_Name ||
		   Category == FSchema::PC_Text;
}

FString Quote(const FString& Text)
{
	return TEXT("\"") + Text.ReplaceCharWithEscapedChar() + TEXT("\"");
}

/** As short as the engine writes it, unless that is another number. */
FString NumberToText(double Number)
{
	const FString Text = FString::SanitizeFloat(Number, 0);
	return FCString::Atod(*Text) == Number ? Text : FString::Printf(TEXT("%.17g"), Number);
}

/** The same without an exponent. */
FString NumberToPlainText(double Number)
{
	const FString Text = FString::SanitizeFloat(Number, 0);
	return FCString::Atod(*Text) == Number ? Text : FString::Printf(TEXT("%.17f"), Number);
}

FString NumbersToPinText(double First, double Second, double Third)
{
	return NumberToPlainText(First) + TEXT(",") + NumberToPlainText(Second) + TEXT(",") + NumberToPlainText(Third);
}

/** The name of a member ends where its value begins, so it is only let through when it is a name. */
bool CanBeMember(const FString& Key)
{
	return KestrelBlueprintDocument::FitsName(Key) && FName::IsValidXName(Key, INVALID_OBJECTNAME_CHARACTERS);
}

FString ObjectToText(const FJsonObject& Object, const FEdGraphPinType& Type, int32 Depth)
{
	TArray<FString> Members;
	for (const auto& Pair : Object.Values)
	{
		const FString Key(*Pair.Key);
		if (Type.IsMap())
		{
			const FString KeyText = ToText(FJsonValueString(Key), GetElementType(Type), Depth + 1);
			const FString ValueText = ToText(*Pair.Value, GetMapValueType(Type), Depth + 1);
			Members.Add(FString::Printf(TEXT("(%s, %s)"), *KeyText, *ValueText));
		}
		else if (CanBeMember(Key))
		{
			Members.Add(Key + TEXT("=") + ToText(*Pair.Value, GetMemberType(Type, Key), Depth + 1));
		}
	}
	return TEXT("(") + FString::Join(Members, TEXT(",")) + TEXT(")");
}

/** The members of a struct may also stand in their order, as vectors often do. */
FString ArrayToMembers(const TArray<TSharedPtr<FJsonValue>>& Array, const UScriptStruct& Struct, int32 Depth)
{
	TArray<FString> Members;
	TFieldIterator<FProperty> It(&Struct);
	for (int32 Index = 0; Index < Array.Num() && It; ++Index, ++It)
	{
		const FEdGraphPinType Type = FKestrelBlueprintUtils::ConvertPropertyToEdGraphPinType(*It);
		Members.Add(It->GetName() + TEXT("=") + ToText(*Array[Index], Type, Depth + 1));
	}
	return TEXT("(") + FString::Join(Members, TEXT(",")) + TEXT(")");
}

FString ArrayToText(const TArray<TSharedPtr<FJsonValue>>& Array, const FEdGraphPinType& Type, int32 Depth)
{
	const UScriptStruct* Struct = Type.IsContainer() ? nullptr : Cast<UScriptStruct>(Type.PinSubCategoryObject.Get());
	if (Struct)
	{
		return ArrayToMembers(Array, *Struct, Depth);
	}
	TArray<FString> Elements;
	for (const TSharedPtr<FJsonValue>& Element : Array)
	{
		Elements.Add(ToText(*Element, GetElementType(Type), Depth + 1));
	}
	return TEXT("(") + FString::Join(Elements, TEXT(",")) + TEXT(")");
}

/** Inside of others nothing cannot stand for the empty value. */
FString GetEmptyText(const FEdGraphPinType& Type)
{
	const FName Category = Type.PinCategory;
	if (IsQuoted(Type))
	{
		return Quote(FString());
	}
	if (Type.IsContainer() || Category == FSchema::PC_Struct)
	{
		return TEXT("()");
	}
	const bool bNumber = Category == FSchema::PC_Int || Category == FSchema::PC_Int64 || Category == FSchema::PC_Byte ||
						 Category == FSchema::PC_Real;
	return bNumber ? TEXT("0") : Category == FSchema::PC_Boolean ? TEXT("False") : TEXT("None");
}

/** @param Depth  how many others the value lies in */
FString ToText(const FJsonValue& Value, const FEdGraphPinType& Type, int32 Depth)
{
	if (Depth > MaxDepth)
	{
		return FString();
	}
	const bool bQuoted = Depth > 0 && IsQuoted(Type) && !Type.IsContainer();
	switch (Value.Type)
	{
	case EJson::String:
		return bQuoted ? Quote(Value.AsString()) : Value.AsString();
	case EJson::Number:
		return NumberToText(Value.AsNumber());
	case EJson::Boolean:
		return Value.AsBool() ? TEXT("True") : TEXT("False");
	case EJson::Array:
		return ArrayToText(Value.AsArray(), Type, Depth);
	case EJson::Object:
		return ObjectToText(*Value.AsObject(), Type, Depth);
	default:
		return Depth > 0 ? GetEmptyText(Type) : FString();
	}
}

/** @return whether the text can be read as the struct */
template <typename StructType>
bool Import(const FString& Text, StructType& OutStruct)
{
	const UScriptStruct* Struct = TBaseStructure<StructType>::Get();
	return Struct->ImportText(*Text, &OutStruct, nullptr, PPF_None, GWarn, Struct->GetName()) != nullptr;
}

/** The text as it is, for structs that pins have in the same form as properties. */
FString ToPinText(const FString& Text, const UObject* Struct)
{
	if (FVector Vector = FVector::ZeroVector; Struct == TBaseStructure<FVector>::Get() && Import(Text, Vector))
	{
		return NumbersToPinText(Vector.X, Vector.Y, Vector.Z);
	}
	if (FRotator Turn = FRotator::ZeroRotator; Struct == TBaseStructure<FRotator>::Get() && Import(Text, Turn))
	{
		return NumbersToPinText(Turn.Pitch, Turn.Yaw, Turn.Roll);
	}
	if (FTransform Transform; Struct == TBaseStructure<FTransform>::Get() && Import(Text, Transform))
	{
		return Transform.ToString();
	}
	if (FLinearColor Color(0, 0, 0, 0); Struct == TBaseStructure<FLinearColor>::Get() && Import(Text, Color))
	{
		return Color.ToString();
	}
	return Text;
}
}

FString KestrelJson::ToImportText(const FJsonValue& Value, const FEdGraphPinType& Type)
{
	return JsonImportText::ToText(Value, Type, 0);
}

FString KestrelJson::ToDefaultText(const FJsonValue& Value, const FEdGraphPinType& Type)
{
	const FString Text = ToImportText(Value, Type);
	const bool bStruct = Type.PinCategory == UEdGraphSchema_K2::PC_Struct && !Type.IsContainer();
	return bStruct && Text.StartsWith(TEXT("(")) ? JsonImportText::ToPinText(Text, Type.PinSubCategoryObject.Get())
												 : Text;
}
