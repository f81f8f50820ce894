#include "Agent/Text/JsonText.h"

#include "Containers/StringConv.h"
#include "Dom/JsonObject.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Serialization/JsonWriter.h"

bool KestrelJson::IsTooDeep(const FString& Text)
{
	int32 Depth = 0;
	bool bInString = false;
	for (const TCHAR* C = *Text; *C; ++C)
	{
		if (bInString)
		{
			const bool bEscape = *C == '\\' && C[1];
			bInString = bEscape || *C != '"';
			C += bEscape ? 1 : 0; // what is escaped ends nothing
		}
		else
		{
			bInString = *C == '"';
			Depth += *C == '{' || *C == '[';
			Depth -= *C == '}' || *C == ']';
		}
		if (Depth > MaxDepth)
		{
			return true;
		}
	}
	return false;
}

TArray<uint8> KestrelJson::ToUtf8(const FString& Text)
{
	const FTCHARToUTF8 Converted(*Text, Text.Len());
	return TArray<uint8>(reinterpret_cast<const uint8*>(Converted.Get()), Converted.Length());
}

FString KestrelJson::ToCondensedText(const TSharedRef<FJsonObject>& Object)
{
	FString Text;
	const TSharedRef<TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>> Writer =
		TJsonWriterFactory<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>::Create(&Text);
	FJsonSerializer::Serialize(Object, Writer);
	return Text;
}

FString KestrelJson::ToPrettyText(const TArray<TSharedPtr<FJsonValue>>& Array)
{
	FString Text;
	const TSharedRef<TJsonWriter<>> Writer = TJsonWriterFactory<>::Create(&Text);
	FJsonSerializer::Serialize(Array, Writer);
	return Text;
}

FString KestrelJson::ToPrettyText(const TSharedRef<FJsonObject>& Object)
{
	FString Text;
	const TSharedRef<TJsonWriter<>> Writer = TJsonWriterFactory<>::Create(&Text);
	FJsonSerializer::Serialize(Object, Writer);
	return Text;
}

TSharedPtr<FJsonObject> KestrelJson::ParseObject(const FString& Text)
{
	if (IsTooDeep(Text))
	{
		return nullptr;
	}
	TSharedPtr<FJsonObject> Object;
	const TSharedRef<TJsonReader<>> Reader = TJsonReaderFactory<>::Create(Text);
	return FJsonSerializer::Deserialize(Reader, Object) ? Object : nullptr;
}

TOptional<TArray<TSharedPtr<FJsonValue>>> KestrelJson::ParseArray(const FString& Text)
{
	TArray<TSharedPtr<FJsonValue>> Values;
	const TSharedRef<TJsonReader<>> Reader = TJsonReaderFactory<>::Create(Text);
	if (IsTooDeep(Text) || !FJsonSerializer::Deserialize(Reader, Values))
	{
		return {};
	}
	return Values;
}
