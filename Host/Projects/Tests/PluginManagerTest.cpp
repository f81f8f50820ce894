#include "CoreMinimal.h"
#include "Interfaces/IPluginManager.h"
#include "Interfaces/IProjectManager.h"
#include "Misc/FileHelper.h"
#include "Modules/ModuleManager.h"
#include "ScratchDirectory.h"

#include <gtest/gtest.h>

namespace
{
class FPluginManagerTest : public testing::Test
{
protected:
	FScratchDirectory Scratch;

	void Write(const TCHAR* Name, const TCHAR* Text) const
	{
		EXPECT_TRUE(FFileHelper::SaveStringToFile(Text, *(Scratch.Path / Name)));
	}

	void OpenProject(const TCHAR* Text)
	{
		Write(TEXT("Game.uproject"), Text);
		FText Reason;
		EXPECT_TRUE(IProjectManager::Get().LoadProjectFile(Scratch.Path / TEXT("Game.uproject"), Reason))
			<< TCHAR_TO_UTF8(*Reason.ToString());
		IPluginManager::Get().RefreshPluginsList();
	}
};
}

TEST_F(FPluginManagerTest, FindsWhatTheProjectHasAndHidesWhatItTurnsOff)
{
	Write(TEXT("Plugins/Deep/One/One.uplugin"), TEXT("{\"FileVersion\":3}"));
	Write(TEXT("Plugins/Deep/One/Inner/Inner.uplugin"), TEXT("{\"FileVersion\":3}"));
	Write(TEXT("Plugins/Two/Two.uplugin"), TEXT("{\"FileVersion\":3}"));
	Write(TEXT("Plugins/Broken/Broken.uplugin"), TEXT("{\"FileVersion\":"));
	OpenProject(TEXT("{\"FileVersion\":3,\"Plugins\":[{\"Name\":\"two\",\"Enabled\":false}]}"));
	const TSharedPtr<IPlugin> One = IPluginManager::Get().FindPlugin(TEXT("one"));
	ASSERT_TRUE(One.IsValid());
	EXPECT_TRUE(FPaths::IsSamePath(One->GetBaseDir(), Scratch.Path / TEXT("Plugins/Deep/One")));
	EXPECT_FALSE(One->GetBaseDir().EndsWith(TEXT("/")));
	for (const TCHAR* Absent : { TEXT("Two"), TEXT("Inner"), TEXT("Broken"), TEXT("Nothing") })
	{
		EXPECT_FALSE(IPluginManager::Get().FindPlugin(Absent).IsValid()) << TCHAR_TO_UTF8(Absent);
	}
}

TEST_F(FPluginManagerTest, APluginIsLeftOutWithoutThePluginsThatItNeeds)
{
	struct FCase
	{
		const TCHAR* Reference;
		bool bFound;
	};
	const FCase Cases[] = {
		{ TEXT("\"Name\":\"Gone\",\"Enabled\":true"), false },
		{ TEXT("\"Name\":\"Gone\",\"Enabled\":false"), true },
		{ TEXT("\"Name\":\"Gone\",\"Enabled\":true,\"Optional\":true"), true },
		{ TEXT("\"Name\":\"There\",\"Enabled\":true"), true },
		{ TEXT("\"Name\":\"TurnedOff\",\"Enabled\":true"), false },
		// A module that is loaded is no plugin for that.
		{ TEXT("\"Name\":\"BuiltInTest\",\"Enabled\":true"), false },
		{ TEXT("\"Name\":\"PythonScriptPlugin\",\"Enabled\":true"), true },
	};
	const auto MakeModule = []() -> IModuleInterface* { return new FDefaultModuleImpl; };
	FModuleManager::Get().RegisterStaticallyLinkedModule(TEXT("BuiltInTest"), MakeModule);
	FModuleManager::Get().RegisterStaticallyLinkedModule(TEXT("PythonScriptPlugin"), MakeModule);
	Write(TEXT("Plugins/There/There.uplugin"), TEXT("{\"FileVersion\":3}"));
	Write(TEXT("Plugins/TurnedOff/TurnedOff.uplugin"), TEXT("{\"FileVersion\":3,\"EnabledByDefault\":false}"));
	Write(TEXT("Plugins/After/After.uplugin"),
		TEXT("{\"FileVersion\":3,\"Plugins\":[{\"Name\":\"Needs\",\"Enabled\":true}]}"));
	for (const FCase& Case : Cases)
	{
		const FString Text = FString::Printf(TEXT("{\"FileVersion\":3,\"Plugins\":[{%s}]}"), Case.Reference);
		Write(TEXT("Plugins/Needs/Needs.uplugin"), *Text);
		OpenProject(TEXT("{\"FileVersion\":3}"));
		EXPECT_EQ(IPluginManager::Get().FindPlugin(TEXT("Needs")).IsValid(), Case.bFound)
			<< TCHAR_TO_UTF8(Case.Reference);
		EXPECT_EQ(IPluginManager::Get().FindPlugin(TEXT("After")).IsValid(), Case.bFound);
	}
	EXPECT_TRUE(IPluginManager::Get().LoadModulesForEnabledPlugins(ELoadingPhase::PreDefault));
	EXPECT_TRUE(FModuleManager::Get().IsModuleLoaded(TEXT("PythonScriptPlugin")));
	OpenProject(TEXT("{\"FileVersion\":3,\"Plugins\":[{\"Name\":\"PythonScriptPlugin\",\"Enabled\":false}]}"));
	EXPECT_FALSE(IPluginManager::Get().FindPlugin("PythonScriptPlugin").IsValid());
}

TEST_F(FPluginManagerTest, ABrokenProjectIsNamedWithItsReason)
{
	struct FCase
	{
		const TCHAR* Text;
		const TCHAR* Reason;
	};
	const FCase Cases[] = {
		{ TEXT("{"), TEXT("is no JSON object") },
		{ TEXT("{}"), TEXT("FileVersion") },
		{ TEXT("{\"FileVersion\":3,\"Modules\":[{\"Name\":\"G\",\"Type\":\"Nope\"}]}"), TEXT("module G has no known") },
	};
	for (const FCase& Case : Cases)
	{
		Write(TEXT("Bad.uproject"), Case.Text);
		FText Reason;
		EXPECT_FALSE(IProjectManager::Get().LoadProjectFile(Scratch.Path / TEXT("Bad.uproject"), Reason));
		EXPECT_TRUE(Reason.ToString().Contains(Case.Reason)) << TCHAR_TO_UTF8(*Reason.ToString());
	}
}

TEST_F(FPluginManagerTest, AModuleThatWasNotBuiltIsAFailedLoad)
{
	Write(TEXT("Plugins/P/P.uplugin"),
		TEXT(
			"{\"FileVersion\":3,\"Modules\":[{\"Name\":\"PModule\",\"Type\":\"Editor\",\"LoadingPhase\":\"PostDefault\"},{\"Name\":\"PServer\",\"Type\":\"ServerOnly\"}]}"));
	OpenProject(TEXT("{\"FileVersion\":3}"));
	EXPECT_TRUE(IPluginManager::Get().LoadModulesForEnabledPlugins(ELoadingPhase::Default));
	EXPECT_FALSE(IPluginManager::Get().LoadModulesForEnabledPlugins(ELoadingPhase::PostDefault));
}
