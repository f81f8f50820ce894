#include "Agent/Tools/ToolTable.h"

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"

namespace ToolTable
{
TSharedRef<FJsonObject> MakeType(const TCHAR* Type)
{
	const TSharedRef<FJsonObject> Schema = MakeShared<FJsonObject>();
	Schema->SetStringField(TEXT("type"), Type);
	return Schema;
}

TSharedRef<FJsonObject> MakeFieldSchema(const FKestrelToolField& Field)
{
	const bool bRange = Field.Type == EKestrelFieldType::LineRange;
	const TSharedRef<FJsonObject> Schema = MakeType(bRange ? TEXT("array") : TEXT("string"));
	Schema->SetStringField(TEXT("description"), Field.Description);
	if (Field.Type == EKestrelFieldType::WholeNumberText)
	{
		Schema->SetStringField(TEXT("pattern"), TEXT("^[0-9]+$"));
	}
	if (bRange)
	{
		constexpr int32 NumEnds = 2;
		Schema->SetObjectField(TEXT("items"), MakeType(TEXT("integer")));
		Schema->SetNumberField(TEXT("minItems"), NumEnds);
		Schema->SetNumberField(TEXT("maxItems"), NumEnds);
	}
	return Schema;
}
}

const TArray<FKestrelTool>& KestrelTools::GetAll()
{
	static const TArray<FKestrelTool> Tools = []() {
		TArray<FKestrelTool> All;
		AddTurnTools(All);
		AddFileTools(All);
		AddBlueprintTools(All);
		AddSearchTools(All);
		return All;
	}();
	return Tools;
}

const FKestrelTool* KestrelTools::Find(const FString& WireName)
{
	return GetAll().FindByPredicate(
		[&WireName](const FKestrelTool& Tool) { return WireName.Equals(Tool.WireName, ESearchCase::IgnoreCase); });
}

TSharedRef<FJsonObject> KestrelTools::MakeInputSchema(const FKestrelTool& Tool)
{
	const TSharedRef<FJsonObject> Properties = MakeShared<FJsonObject>();
	TArray<TSharedPtr<FJsonValue>> Required;
	for (const FKestrelToolField& Field : Tool.Fields)
	{
		Properties->SetObjectField(Field.Name, ToolTable::MakeFieldSchema(Field));
		if (Field.Presence == EKestrelPresence::Required)
		{
			Required.Add(MakeShared<FJsonValueString>(Field.Name));
		}
	}
	const TSharedRef<FJsonObject> Schema = ToolTable::MakeType(TEXT("object"));
	Schema->SetObjectField(TEXT("properties"), Properties);
	Schema->SetArrayField(TEXT("required"), Required);
	Schema->SetBoolField(TEXT("additionalProperties"), false);
	return Schema;
}
