#include "Agent/Tools/ToolInput.h"

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"

namespace ToolInput
{
/** The engine's strings and paths end at a NUL, so the rest of such a text would be shown but not used. */
bool HoldsNul(const FString& Text)
{
	for (const TCHAR Character : Text)
	{
		if (Character == 0)
		{
			return true;
		}
	}
	return false;
}

/** The element as a whole number, its fraction dropped; what does not fit becomes the nearest that does. */
bool ReadLineNumber(const TSharedPtr<FJsonValue>& Value, int32& OutLine)
{
	double Number = 0.0;
	if (!Value.IsValid() || !Value->TryGetNumber(Number))
	{
		return false;
	}
	OutLine = static_cast<int32>(FMath::Clamp(Number, static_cast<double>(MIN_int32), static_cast<double>(MAX_int32)));
	return true;
}
}

FString KestrelTools::MakeNulError(const FKestrelToolField& Field)
{
	return FString::Printf(TEXT("Error: The field '%s' holds a NUL character"), Field.Name);
}

FString FKestrelToolInput::Read(const FKestrelTool& Tool, const FJsonObject& Object)
{
	for (const FKestrelToolField& Field : Tool.Fields)
	{
		if (Field.Type == EKestrelFieldType::LineRange)
		{
			ReadLines(Field, Object);
			continue;
		}
		const FString Error = ReadText(Tool, Field, Object);
		if (!Error.IsEmpty())
		{
			return Error;
		}
	}
	return FString();
}

FString FKestrelToolInput::ReadText(const FKestrelTool& Tool, const FKestrelToolField& Field, const FJsonObject& Object)
{
	FString Text;
	if (!Object.TryGetStringField(Field.Name, Text))
	{
		return Field.Presence == EKestrelPresence::Optional ? FString()
			   : Field.MissingError                         ? FString(Field.MissingError)
															: FString(Tool.MissingFields);
	}
	if (ToolInput::HoldsNul(Text))
	{
		return KestrelTools::MakeNulError(Field);
	}
	Texts.Add({ Field.Name, Text });
	return FString();
}

void FKestrelToolInput::ReadLines(const FKestrelToolField& Field, const FJsonObject& Object)
{
	const TArray<TSharedPtr<FJsonValue>>* Values = nullptr;
	if (!Object.TryGetArrayField(Field.Name, Values))
	{
		return;
	}
	// What follows the first two elements is no reason to read nothing.
	FKestrelLineRange Range;
	bLinesBroken = Values->Num() < 2 || !ToolInput::ReadLineNumber((*Values)[0], Range.StartLine) ||
				   !ToolInput::ReadLineNumber((*Values)[1], Range.EndLine);
	Lines = Range;
}

const FString& FKestrelToolInput::Get(const FKestrelToolField& Field) const
{
	static const FString None;
	const FGivenText* Given =
		Texts.FindByPredicate([&Field](const FGivenText& Each) { return Each.FieldName == Field.Name; });
	return Given ? Given->Text : None;
}
