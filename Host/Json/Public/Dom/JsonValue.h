#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "Serialization/JsonTypes.h"
#include "Templates/SharedPointer.h"

class FJsonObject;

/**
 * One JSON value.
 *
 * TryGet… returns false if there is no such value; numbers, booleans and strings convert into each other. As… logs an
 * error and gives an empty value instead.
 */
class FJsonValue
{
public:
	virtual ~FJsonValue() = default;
	UE_NONCOPYABLE(FJsonValue)

	virtual bool TryGetString(FString& OutString) const { return false; }
	virtual bool TryGetNumber(double& OutNumber) const { return false; }
	virtual bool TryGetBool(bool& OutBool) const { return false; }
	virtual bool TryGetArray(const TArray<TSharedPtr<FJsonValue>>*& OutArray) const { return false; }
	virtual bool TryGetObject(const TSharedPtr<FJsonObject>*& OutObject) const { return false; }
	bool TryGetNumber(float& OutNumber) const;
	/** False for what lies outside the type; fractions are rounded to the nearest. */
	bool TryGetNumber(int32& OutNumber) const;
	bool TryGetNumber(int64& OutNumber) const;
	bool TryGetNumber(uint32& OutNumber) const;
	bool TryGetNumber(uint8& OutNumber) const;

	FString AsString() const;
	double AsNumber() const;
	bool AsBool() const;
	const TArray<TSharedPtr<FJsonValue>>& AsArray() const;
	virtual const TSharedPtr<FJsonObject>& AsObject() const;
	bool IsNull() const { return Type == EJson::Null || Type == EJson::None; }

	const EJson Type;

protected:
	explicit FJsonValue(EJson InType)
		: Type(InType)
	{
	}
	virtual FString GetType() const = 0;
	void ErrorMessage(const TCHAR* InWanted) const;
};

class FJsonValueString : public FJsonValue
{
public:
	explicit FJsonValueString(const FString& InString)
		: FJsonValue(EJson::String)
		, Value(InString)
	{
	}
	explicit FJsonValueString(FString&& InString)
		: FJsonValue(EJson::String)
		, Value(MoveTemp(InString))
	{
	}
	using FJsonValue::TryGetNumber;
	bool TryGetString(FString& OutString) const override;
	bool TryGetNumber(double& OutNumber) const override;
	bool TryGetBool(bool& OutBool) const override;

protected:
	FString GetType() const override { return TEXT("String"); }

private:
	FString Value;
};

class FJsonValueNumber : public FJsonValue
{
public:
	explicit FJsonValueNumber(double InNumber)
		: FJsonValue(EJson::Number)
		, Value(InNumber)
	{
	}
	using FJsonValue::TryGetNumber;
	bool TryGetString(FString& OutString) const override;
	bool TryGetNumber(double& OutNumber) const override;
	bool TryGetBool(bool& OutBool) const override;

protected:
	FString GetType() const override { return TEXT("Number"); }

private:
	double Value;
};

class FJsonValueBoolean : public FJsonValue
{
public:
	explicit FJsonValueBoolean(bool InBool)
		: FJsonValue(EJson::Boolean)
		, Value(InBool)
	{
	}
	using FJsonValue::TryGetNumber;
	bool TryGetString(FString& OutString) const override;
	bool TryGetNumber(double& OutNumber) const override;
	bool TryGetBool(bool& OutBool) const override;

protected:
	FString GetType() const override { return TEXT("Boolean"); }

private:
	bool Value;
};

class FJsonValueArray : public FJsonValue
{
public:
	explicit FJsonValueArray(const TArray<TSharedPtr<FJsonValue>>& InArray)
		: FJsonValue(EJson::Array)
		, Value(InArray)
	{
	}
	explicit FJsonValueArray(TArray<TSharedPtr<FJsonValue>>&& InArray)
		: FJsonValue(EJson::Array)
		, Value(MoveTemp(InArray))
	{
	}
	bool TryGetArray(const TArray<TSharedPtr<FJsonValue>>*& OutArray) const override;

protected:
	FString GetType() const override { return TEXT("Array"); }

private:
	TArray<TSharedPtr<FJsonValue>> Value;
};

class FJsonValueObject : public FJsonValue
{
public:
	explicit FJsonValueObject(TSharedPtr<FJsonObject> InObject)
		: FJsonValue(EJson::Object)
		, Value(MoveTemp(InObject))
	{
	}
	bool TryGetObject(const TSharedPtr<FJsonObject>*& OutObject) const override;
	const TSharedPtr<FJsonObject>& AsObject() const override { return Value; }

protected:
	FString GetType() const override { return TEXT("Object"); }

private:
	TSharedPtr<FJsonObject> Value;
};

class FJsonValueNull : public FJsonValue
{
public:
	FJsonValueNull()
		: FJsonValue(EJson::Null)
	{
	}

protected:
	FString GetType() const override { return TEXT("Null"); }
};
