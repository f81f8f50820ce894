#pragma once

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonWriter.h"

/** Texts to values and back. */
class FJsonSerializer
{
public:
	/** Containers nested deeper than this are refused: values are destroyed and written recursively. */
	static constexpr int32 DeepestNesting = 512;

	/** False, and Out reset, on an error or another kind of root. */
	static bool Deserialize(const TSharedRef<TJsonReader<TCHAR>>& Reader, TSharedPtr<FJsonObject>& OutObject);
	static bool Deserialize(const TSharedRef<TJsonReader<TCHAR>>& Reader, TArray<TSharedPtr<FJsonValue>>& OutArray);
	static bool Deserialize(const TSharedRef<TJsonReader<TCHAR>>& Reader, TSharedPtr<FJsonValue>& OutValue);

	template <typename CharType, typename PrintPolicy>
	static bool Serialize(const TSharedRef<FJsonObject>& Object,
		const TSharedRef<TJsonWriter<CharType, PrintPolicy>>& Writer, bool bCloseWriter = true)
	{
		WriteObject(*Object, *Writer);
		return !bCloseWriter || Writer->Close();
	}
	template <typename CharType, typename PrintPolicy>
	static bool Serialize(const TArray<TSharedPtr<FJsonValue>>& Array,
		const TSharedRef<TJsonWriter<CharType, PrintPolicy>>& Writer, bool bCloseWriter = true)
	{
		WriteArray(Array, *Writer);
		return !bCloseWriter || Writer->Close();
	}
	/** An empty identifier is dropped outside an object. */
	template <typename CharType, typename PrintPolicy>
	static bool Serialize(const TSharedPtr<FJsonValue>& Value, const FString& Identifier,
		const TSharedRef<TJsonWriter<CharType, PrintPolicy>>& Writer, bool bCloseWriter = true)
	{
		if (!Identifier.IsEmpty())
		{
			Writer->WriteIdentifierPrefix(Identifier);
		}
		WriteValue(Value, *Writer);
		return !bCloseWriter || Writer->Close();
	}

private:
	static void WriteObject(const FJsonObject& Object, FJsonTextWriter& Writer);
	static void WriteArray(const TArray<TSharedPtr<FJsonValue>>& Array, FJsonTextWriter& Writer);
	static void WriteValue(const TSharedPtr<FJsonValue>& Value, FJsonTextWriter& Writer);
};
