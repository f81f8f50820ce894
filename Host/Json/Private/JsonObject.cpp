#include "Dom/JsonObject.h"

#include "JsonGlobals.h"

TSharedPtr<FJsonValue> FJsonObject::TryGetField(FStringView FieldName) const
{
	return Values.FindRef(FString(FieldName));
}

void FJsonObject::SetField(const FString& FieldName, const TSharedPtr<FJsonValue>& Value)
{
	Values.Add(FieldName, Value);
}

void FJsonObject::RemoveField(FStringView FieldName)
{
	Values.Remove(FString(FieldName));
}

bool FJsonObject::TryGetStringField(FStringView FieldName, FString& OutString) const
{
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	return Field && Field->TryGetString(OutString);
}

bool FJsonObject::TryGetBoolField(FStringView FieldName, bool& OutBool) const
{
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	return Field && Field->TryGetBool(OutBool);
}

bool FJsonObject::TryGetArrayField(FStringView FieldName, const TArray<TSharedPtr<FJsonValue>>*& OutArray) const
{
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	return Field && Field->TryGetArray(OutArray);
}

bool FJsonObject::TryGetObjectField(FStringView FieldName, const TSharedPtr<FJsonObject>*& OutObject) const
{
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	return Field && Field->TryGetObject(OutObject);
}

bool FJsonObject::TryGetStringArrayField(FStringView FieldName, TArray<FString>& OutArray) const
{
	const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
	if (!TryGetArrayField(FieldName, Array))
	{
		return false;
	}
	TArray<FString> Result;
	for (const TSharedPtr<FJsonValue>& Value : *Array)
	{
		FString Text;
		if (!Value->TryGetString(Text))
		{
			return false;
		}
		Result.Add(MoveTemp(Text));
	}
	OutArray = MoveTemp(Result);
	return true;
}

const TArray<TSharedPtr<FJsonValue>>& FJsonObject::GetArrayField(FStringView FieldName) const
{
	static const TArray<TSharedPtr<FJsonValue>> Empty;
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	return Field ? Field->AsArray() : (GetRequired(FieldName), Empty);
}

const TSharedPtr<FJsonObject>& FJsonObject::GetObjectField(FStringView FieldName) const
{
	static const TSharedPtr<FJsonObject> Empty = MakeShared<FJsonObject>();
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	return Field ? Field->AsObject() : (GetRequired(FieldName), Empty);
}

void FJsonObject::SetStringField(const FString& FieldName, const FString& Value)
{
	SetField(FieldName, MakeShared<FJsonValueString>(Value));
}

void FJsonObject::SetNumberField(const FString& FieldName, double Number)
{
	SetField(FieldName, MakeShared<FJsonValueNumber>(Number));
}

void FJsonObject::SetBoolField(const FString& FieldName, bool bInValue)
{
	SetField(FieldName, MakeShared<FJsonValueBoolean>(bInValue));
}

void FJsonObject::SetArrayField(const FString& FieldName, const TArray<TSharedPtr<FJsonValue>>& Array)
{
	SetField(FieldName, MakeShared<FJsonValueArray>(Array));
}

void FJsonObject::SetObjectField(const FString& FieldName, const TSharedPtr<FJsonObject>& JsonObject)
{
	if (!JsonObject)
	{
		SetField(FieldName, MakeShared<FJsonValueNull>());
		return;
	}
	SetField(FieldName, MakeShared<FJsonValueObject>(JsonObject));
}

TSharedRef<FJsonValue> FJsonObject::GetRequired(FStringView FieldName) const
{
	const TSharedPtr<FJsonValue> Field = TryGetField(FieldName);
	if (Field)
	{
		return Field.ToSharedRef();
	}
	UE_LOG(LogJson, Warning, TEXT("Field %s was not found."), *FString(FieldName));
	return MakeShared<FJsonValueNull>();
}
