#pragma once

#include "Containers/Map.h"
#include "Dom/JsonValue.h"

/** A JSON object. Its members' names ignore case and keep the order in which they were set. */
class FJsonObject
{
public:
	TMap<FString, TSharedPtr<FJsonValue>> Values;

	bool HasField(FStringView FieldName) const { return TryGetField(FieldName).IsValid(); }
	/** Invalid when there is no such member. */
	TSharedPtr<FJsonValue> TryGetField(FStringView FieldName) const;
	// Names and values come as copies: those that the caller has no more use for are moved here.
	void SetField(FString FieldName, TSharedPtr<FJsonValue> Value);
	void RemoveField(FStringView FieldName);

	/** Numbers and booleans come as text; null, arrays and objects give false. */
	bool TryGetStringField(FStringView FieldName, FString& OutString) const;
	bool TryGetBoolField(FStringView FieldName, bool& OutBool) const;
	/** The pointer lives as long as this object. */
	bool TryGetArrayField(FStringView FieldName, const TArray<TSharedPtr<FJsonValue>>*& OutArray) const;
	bool TryGetObjectField(FStringView FieldName, const TSharedPtr<FJsonObject>*& OutObject) const;
	bool TryGetStringArrayField(FStringView FieldName, TArray<FString>& OutArray) const;
	template <typename NumberType>
	requires std::is_arithmetic_v<NumberType>
	bool TryGetNumberField(FStringView FieldName, NumberType& OutNumber) const
	{
		const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
		return Field && Field->TryGetNumber(OutNumber);
	}

	/** A missing or wrong member logs and gives an empty value. */
	FString GetStringField(FStringView FieldName) const { return GetRequired(FieldName)->AsString(); }
	bool GetBoolField(FStringView FieldName) const { return GetRequired(FieldName)->AsBool(); }
	const TArray<TSharedPtr<FJsonValue>>& GetArrayField(FStringView FieldName) const;
	const TSharedPtr<FJsonObject>& GetObjectField(FStringView FieldName) const;

	void SetStringField(FString FieldName, FString Value);
	void SetNumberField(FString FieldName, double Number);
	void SetBoolField(FString FieldName, bool bInValue);
	void SetArrayField(FString FieldName, TArray<TSharedPtr<FJsonValue>> Array);
	/** Objects are shared, not copied; a null one is written as null. */
	void SetObjectField(FString FieldName, TSharedPtr<FJsonObject> JsonObject);

private:
	TSharedRef<FJsonValue> GetRequired(FStringView FieldName) const;
};
