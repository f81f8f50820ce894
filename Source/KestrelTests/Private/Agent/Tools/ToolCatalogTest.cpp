#include "Agent/Text/JsonText.h"
#include "Agent/Tools/ToolTable.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Misc/FileHelper.h"
#include "Support/KestrelTest.h"

namespace ToolCatalogTest
{
TSharedRef<FJsonObject> Describe(const FKestrelTool& Tool)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TEXT("name"), Tool.WireName);
	Object->SetStringField(TEXT("kind"), KestrelTest::NameOf(Tool.Kind));
	Object->SetStringField(TEXT("description"), Tool.Description);
	Object->SetObjectField(TEXT("input_schema"), KestrelTools::MakeInputSchema(Tool));
	return Object;
}

/** The service's copy, one tool by name; invalid if it has none. */
TSharedPtr<FJsonObject> FindInService(const FString& Name)
{
	FString Text;
	FFileHelper::LoadFileToString(Text, *(KestrelTest::PluginDir() / TEXT("Service/Source/Model/Tools.json")));
	const TSharedPtr<FJsonObject> File = KestrelJson::ParseObject(TEXT("{\"tools\":") + Text + TEXT("}"));
	const TArray<TSharedPtr<FJsonValue>>* Tools = nullptr;
	if (File.IsValid() && File->TryGetArrayField(TEXT("tools"), Tools))
	{
		for (const TSharedPtr<FJsonValue>& Tool : *Tools)
		{
			if (Tool->AsObject()->GetStringField(TEXT("name")).Equals(Name))
			{
				return Tool->AsObject();
			}
		}
	}
	return nullptr;
}
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelToolCatalogTest, "Kestrel.Tools.TheServiceKnowsEachToolAsItIs", KestrelTest::Flags)

bool FKestrelToolCatalogTest::RunTest(const FString&)
{
	for (const FKestrelTool& Tool : KestrelTools::GetAll())
	{
		const TSharedPtr<FJsonObject> InService = ToolCatalogTest::FindInService(Tool.WireName);
		const FString Expected = KestrelJson::ToCondensedText(ToolCatalogTest::Describe(Tool));
		const FString Actual = InService.IsValid() ? KestrelJson::ToCondensedText(InService.ToSharedRef()) : FString();
		KestrelTest::TestSameText(
			*this, FString(TEXT("Service/Source/Model/Tools.json: ")) + Tool.WireName, Actual, Expected);
	}
	return true;
}
