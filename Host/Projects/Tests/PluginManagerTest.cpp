#include "CoreMinimal.h"
#include "Interfaces/IPluginManager.h"
#include "Interfaces/IProjectManager.h"
#include "Misc/FileHelper.h"
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
