#include "Serialization/JsonSerializer.h"

// The library's own assertions and exceptions stay out: errors come as values.
#define RAPIDJSON_ASSERT(x) check(x)
#define RAPIDJSON_NOEXCEPT noexcept
#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

namespace JsonSerializer
{
/** UTF-16 units as they are: an escape may name half of a pair, and the library's own encoder would stop the program.
 */
struct FEncoding : rapidjson::UTF16<TCHAR>
{
	template <typename OutputStream>
	static void Encode(OutputStream& Output, unsigned CodePoint)
	{
		if (CodePoint <= 0xFFFF)
		{
			Output.Put(static_cast<TCHAR>(CodePoint));
			return;
		}
		rapidjson::UTF16<TCHAR>::Encode(Output, CodePoint);
	}
};

/** The value of four hexadecimal digits; -1 when there are fewer. */
int32 ReadHexUnit(const TCHAR* Digits)
{
	int32 Unit = 0;
	for (int32 Index = 0; Index < 4; ++Index)
	{
		const TCHAR Digit = Digits[Index];
		if (!FChar::IsHexDigit(Digit))
		{
			return INDEX_NONE;
		}
		Unit = Unit * 16 + (Digit <= u'9' ? Digit - u'0' : (Digit | 0x20) - u'a' + 10);
	}
	return Unit;
}

/**
 * Puts surrogates in the place of their escapes. Each \u is one unit, paired or not, but the library refuses a whole
 * document for half a pair; units that stand in it as they are it passes on.
 */
FString UnescapeSurrogates(const FString& Text)
{
	FString Result;
	const TCHAR* const Units = *Text;
	int32 NumTaken = 0;
	for (int32 Index = 0; Index + 1 < Text.Len(); ++Index)
	{
		if (Units[Index] != u'\\')
		{
			continue;
		}
		const int32 Unit = Units[Index + 1] == u'u' ? ReadHexUnit(Units + Index + 2) : INDEX_NONE;
		if (Unit >= 0xD800 && Unit <= 0xDFFF)
		{
			constexpr int32 EscapeLength = 6;
			Result.Append(FStringView(Units + NumTaken, Index - NumTaken));
			Result.AppendChar(static_cast<TCHAR>(Unit));
			NumTaken = Index + EscapeLength;
			Index = NumTaken - 1;
			continue;
		}
		++Index; // what is escaped, as a second backslash
	}
	Result.Append(FStringView(Units + NumTaken, Text.Len() - NumTaken));
	return Result;
}

/** Builds values from the parser's events. */
class FValueBuilder : public rapidjson::BaseReaderHandler<FEncoding, FValueBuilder>
{
public:
	TSharedPtr<FJsonValue> Root;
	bool bTooDeep = false;

	bool Default() { return false; }
	bool Null() { return Put(MakeShared<FJsonValueNull>()); }
	bool Bool(bool bValue) { return Put(MakeShared<FJsonValueBoolean>(bValue)); }
	bool Int(int Value) { return Double(Value); }
	bool Uint(unsigned Value) { return Double(Value); }
	bool Int64(int64_t Value) { return Double(static_cast<double>(Value)); }
	bool Uint64(uint64_t Value) { return Double(static_cast<double>(Value)); }
	bool Double(double Value) { return Put(MakeShared<FJsonValueNumber>(Value)); }
	bool String(const TCHAR* Text, rapidjson::SizeType Length, bool)
	{
		return Put(MakeShared<FJsonValueString>(FString(FStringView(Text, static_cast<int32>(Length)))));
	}
	bool Key(const TCHAR* Text, rapidjson::SizeType Length, bool)
	{
		Open.Last().Key = FString(FStringView(Text, static_cast<int32>(Length)));
		return true;
	}
	bool StartObject() { return Start(MakeShared<FJsonObject>()); }
	bool EndObject(rapidjson::SizeType)
	{
		const FLevel Level = Open.Pop();
		return Put(MakeShared<FJsonValueObject>(Level.Object));
	}
	bool StartArray() { return Start(nullptr); }
	bool EndArray(rapidjson::SizeType)
	{
		FLevel Level = Open.Pop();
		return Put(MakeShared<FJsonValueArray>(MoveTemp(Level.Array)));
	}

private:
	struct FLevel
	{
		TSharedPtr<FJsonObject> Object; // null for an array
		TArray<TSharedPtr<FJsonValue>> Array;
		FString Key;
	};

	bool Start(TSharedPtr<FJsonObject> Object)
	{
		bTooDeep = Open.Num() >= FJsonSerializer::DeepestNesting;
		Open.Emplace_GetRef().Object = MoveTemp(Object);
		return !bTooDeep;
	}

	bool Put(TSharedPtr<FJsonValue> Value)
	{
		if (Open.IsEmpty())
		{
			Root = MoveTemp(Value);
		}
		else if (Open.Last().Object)
		{
			Open.Last().Object->SetField(MoveTemp(Open.Last().Key), MoveTemp(Value));
		}
		else
		{
			Open.Last().Array.Add(MoveTemp(Value));
		}
		return true;
	}

	TArray<FLevel> Open;
};
}

bool FJsonSerializer::Deserialize(const TSharedRef<TJsonReader<TCHAR>>& Reader, TSharedPtr<FJsonValue>& OutValue)
{
	OutValue.Reset();
	JsonSerializer::FValueBuilder Builder;
	const bool bHasSurrogates = Reader->Text.Contains(TEXT("\\ud"), ESearchCase::CaseSensitive) ||
								Reader->Text.Contains(TEXT("\\uD"), ESearchCase::CaseSensitive);
	const FString Unescaped = bHasSurrogates ? JsonSerializer::UnescapeSurrogates(Reader->Text) : FString();
	rapidjson::GenericStringStream<JsonSerializer::FEncoding> Stream(bHasSurrogates ? *Unescaped : *Reader->Text);
	rapidjson::GenericReader<JsonSerializer::FEncoding, JsonSerializer::FEncoding> Parser;
	// Iterative: the depth of an untrusted text must not be the depth of the stack.
	const rapidjson::ParseResult Result =
		Parser.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag>(Stream, Builder);
	if (!Result)
	{
		Reader->ErrorMessage = Builder.bTooDeep
								   ? FString::Printf(TEXT("Nested deeper than %d"), DeepestNesting)
								   : FString::Printf(TEXT("%hs At: %llu"), rapidjson::GetParseError_En(Result.Code()),
										 static_cast<uint64>(Result.Offset()));
		return false;
	}
	if (Builder.Root->Type != EJson::Object && Builder.Root->Type != EJson::Array)
	{
		Reader->ErrorMessage = TEXT("The root must be an object or an array");
		return false;
	}
	OutValue = Builder.Root;
	return true;
}

bool FJsonSerializer::Deserialize(const TSharedRef<TJsonReader<TCHAR>>& Reader, TSharedPtr<FJsonObject>& OutObject)
{
	OutObject.Reset();
	TSharedPtr<FJsonValue> Value;
	const TSharedPtr<FJsonObject>* Object = nullptr;
	if (!Deserialize(Reader, Value) || !Value->TryGetObject(Object))
	{
		return false;
	}
	OutObject = *Object;
	return true;
}

bool FJsonSerializer::Deserialize(
	const TSharedRef<TJsonReader<TCHAR>>& Reader, TArray<TSharedPtr<FJsonValue>>& OutArray)
{
	OutArray.Empty();
	TSharedPtr<FJsonValue> Value;
	const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
	if (!Deserialize(Reader, Value) || !Value->TryGetArray(Array))
	{
		return false;
	}
	OutArray = *Array;
	return true;
}

namespace JsonSerializer
{
/** Writes values that hold values. */
class FTreeWriter
{
public:
	explicit FTreeWriter(FJsonTextWriter& InWriter)
		: Writer(InWriter)
	{
	}

	void WriteObject(const FJsonObject& Object)
	{
		Writer.WriteObjectStart();
		for (const auto& Pair : Object.Values)
		{
			Writer.WriteIdentifierPrefix(Pair.Key);
			WriteValue(Pair.Value.Get());
		}
		Writer.WriteObjectEnd();
	}

	void WriteArray(const TArray<TSharedPtr<FJsonValue>>& Array)
	{
		Writer.WriteArrayStart();
		for (const TSharedPtr<FJsonValue>& Value : Array)
		{
			WriteValue(Value.Get());
		}
		Writer.WriteArrayEnd();
	}

	/** Null writes null. */
	void WriteValue(const FJsonValue* Value)
	{
		switch (Value ? Value->Type : EJson::Null)
		{
		case EJson::String:
			Value->TryGetString(Text);
			Writer.WriteValue(Text);
			break;
		case EJson::Number:
			Writer.WriteValue(Value->AsNumber());
			break;
		case EJson::Boolean:
			Writer.WriteValue(Value->AsBool());
			break;
		case EJson::Array:
			WriteArray(Value->AsArray());
			break;
		case EJson::Object:
			WriteObject(*Value->AsObject());
			break;
		case EJson::None:
		case EJson::Null:
			Writer.WriteNull();
			break;
		}
	}

private:
	FJsonTextWriter& Writer;
	FString Text; // of the value that is written: one block of memory does for all of them
};
}

void FJsonSerializer::WriteObject(const FJsonObject& Object, FJsonTextWriter& Writer)
{
	JsonSerializer::FTreeWriter(Writer).WriteObject(Object);
}

void FJsonSerializer::WriteArray(const TArray<TSharedPtr<FJsonValue>>& Array, FJsonTextWriter& Writer)
{
	JsonSerializer::FTreeWriter(Writer).WriteArray(Array);
}

void FJsonSerializer::WriteValue(const TSharedPtr<FJsonValue>& Value, FJsonTextWriter& Writer)
{
	JsonSerializer::FTreeWriter(Writer).WriteValue(Value.Get());
}
