#include "Dom/JsonObject.h"

#include "JsonGlobals.h"

TSharedPtr<FJsonValue> FJsonObject::TryGetField(FStringView FieldName) const
{
	return Values.FindRef(FString(FieldName));
}

void FJsonObject::SetField(FString FieldName, TSharedPtr<FJsonValue> Value)
{
	Values.Add(MoveTemp(FieldName), MoveTemp(Value));
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

void FJsonObject::SetStringField(FString FieldName, FString Value)
{
	SetField(MoveTemp(FieldName), MakeShared<FJsonValueString>(MoveTemp(Value)));
}

void FJsonObject::SetNumberField(FString FieldName, double Number)
{
	SetField(MoveTemp(FieldName), MakeShared<FJsonValueNumber>(Number));
}

void FJsonObject::SetBoolField(FString FieldName, bool bInValue)
{
	SetField(MoveTemp(FieldName), MakeShared<FJsonValueBoolean>(bInValue));
}

void FJsonObject::SetArrayField(FString FieldName, TArray<TSharedPtr<FJsonValue>> Array)
{
	SetField(MoveTemp(FieldName), MakeShared<FJsonValueArray>(MoveTemp(Array)));
}

void FJsonObject::SetObjectField(FString FieldName, TSharedPtr<FJsonObject> JsonObject)
{
	if (!JsonObject)
	{
		SetField(MoveTemp(FieldName), MakeShared<FJsonValueNull>());
		return;
	}
	SetField(MoveTemp(FieldName), MakeShared<FJsonValueObject>(MoveTemp(JsonObject)));
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
