#include "Dom/JsonValue.h"

#include "Dom/JsonObject.h"
#include "JsonGlobals.h"

#include <cmath>
#include <limits>

DEFINE_LOG_CATEGORY(LogJson);

namespace JsonValue
{
template <typename IntegerType>
bool ToInteger(const FJsonValue& Value, IntegerType& Out)
{
	double Number = 0.0;
	if (!Value.TryGetNumber(Number))
	{
		return false;
	}
	const double Rounded = std::round(Number); // halves away from zero
	constexpr double Lowest = static_cast<double>(std::numeric_limits<IntegerType>::min());
	// The first double past the type: its own maximum may not be one.
	constexpr IntegerType HalfOfPastHighest = std::numeric_limits<IntegerType>::max() / 2 + 1;
	constexpr double PastHighest = static_cast<double>(HalfOfPastHighest) * 2.0;
	if (!(Rounded >= Lowest && Rounded < PastHighest))
	{
		return false;
	}
	Out = static_cast<IntegerType>(Rounded);
	return true;
}

FString NumberText(double Number)
{
	return Number == std::trunc(Number) && std::fabs(Number) < 1e15 ? FString::Printf(TEXT("%.0f"), Number)
																	: FString::Printf(TEXT("%.17g"), Number);
}
}

bool FJsonValue::TryGetNumber(float& OutNumber) const
{
	double Number = 0.0;
	if (!TryGetNumber(Number))
	{
		return false;
	}
	OutNumber = static_cast<float>(Number);
	return true;
}

bool FJsonValue::TryGetNumber(int32& OutNumber) const
{
	return JsonValue::ToInteger(*this, OutNumber);
}

bool FJsonValue::TryGetNumber(int64& OutNumber) const
{
	return JsonValue::ToInteger(*this, OutNumber);
}

bool FJsonValue::TryGetNumber(uint32& OutNumber) const
{
	return JsonValue::ToInteger(*this, OutNumber);
}

bool FJsonValue::TryGetNumber(uint8& OutNumber) const
{
	return JsonValue::ToInteger(*this, OutNumber);
}

void FJsonValue::ErrorMessage(const TCHAR* InWanted) const
{
	UE_LOG(LogJson, Error, TEXT("Json Value of type '%s' used as a '%s'."), *GetType(), InWanted);
}

FString FJsonValue::AsString() const
{
	FString Result;
	if (!TryGetString(Result))
	{
		ErrorMessage(TEXT("String"));
	}
	return Result;
}

double FJsonValue::AsNumber() const
{
	double Result = 0.0;
	if (!TryGetNumber(Result))
	{
		ErrorMessage(TEXT("Number"));
	}
	return Result;
}

bool FJsonValue::AsBool() const
{
	bool bResult = false;
	if (!TryGetBool(bResult))
	{
		ErrorMessage(TEXT("Boolean"));
	}
	return bResult;
}

const TArray<TSharedPtr<FJsonValue>>& FJsonValue::AsArray() const
{
	static const TArray<TSharedPtr<FJsonValue>> Empty;
	const TArray<TSharedPtr<FJsonValue>>* Result = nullptr;
	if (TryGetArray(Result))
	{
		return *Result;
	}
	ErrorMessage(TEXT("Array"));
	return Empty;
}

const TSharedPtr<FJsonObject>& FJsonValue::AsObject() const
{
	static const TSharedPtr<FJsonObject> Empty = MakeShared<FJsonObject>();
	ErrorMessage(TEXT("Object"));
	return Empty;
}

bool FJsonValueString::TryGetString(FString& OutString) const
{
	OutString = Value;
	return true;
}

bool FJsonValueString::TryGetNumber(double& OutNumber) const
{
	if (!Value.IsNumeric())
	{
		return false;
	}
	OutNumber = FCString::Atod(*Value);
	return true;
}

bool FJsonValueString::TryGetBool(bool& OutBool) const
{
	OutBool = Value.ToBool();
	return true;
}

bool FJsonValueNumber::TryGetString(FString& OutString) const
{
	OutString = JsonValue::NumberText(Value);
	return true;
}

bool FJsonValueNumber::TryGetNumber(double& OutNumber) const
{
	OutNumber = Value;
	return true;
}

bool FJsonValueNumber::TryGetBool(bool& OutBool) const
{
	OutBool = Value != 0.0;
	return true;
}

bool FJsonValueBoolean::TryGetString(FString& OutString) const
{
	OutString = LexToString(Value);
	return true;
}

bool FJsonValueBoolean::TryGetNumber(double& OutNumber) const
{
	OutNumber = Value ? 1.0 : 0.0;
	return true;
}

bool FJsonValueBoolean::TryGetBool(bool& OutBool) const
{
	OutBool = Value;
	return true;
}

bool FJsonValueArray::TryGetArray(const TArray<TSharedPtr<FJsonValue>>*& OutArray) const
{
	OutArray = &Value;
	return true;
}

bool FJsonValueObject::TryGetObject(const TSharedPtr<FJsonObject>*& OutObject) const
{
	OutObject = &Value;
	return true;
}
