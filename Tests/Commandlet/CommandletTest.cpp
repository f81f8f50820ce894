#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "Interfaces/IPluginManager.h"
#include "Interfaces/IProjectManager.h"
#include "Misc/CommandLine.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "Modules/ModuleManager.h"
#include "ScratchDirectory.h"

#include <gtest/gtest.h>

// A commandlet: an editor process without a Slate application, as for cooking.
TEST(CommandletTest, ThePluginLoadsAndUnloadsWithoutWindows)
{
	const FScratchDirectory Scratch;
	const FString Project = Scratch.Path / TEXT("Moor.uproject");
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("{\"FileVersion\":3}"), *Project));
	FText FailReason;
	ASSERT_TRUE(IProjectManager::Get().LoadProjectFile(Project, FailReason));
	FConfigCacheIni::InitializeConfigSystem();
	FCommandLine::Set(TEXT("-PLUGIN=" PLUGIN_UNDER_TEST));
	ASSERT_FALSE(FSlateApplication::IsInitialized());

	FModuleManager& Modules = FModuleManager::Get();
	for (int32 Start = 0; Start < 2; ++Start)
	{
		IPluginManager::Get().LoadModulesForEnabledPlugins(ELoadingPhase::Default);
		Modules.LoadModule("Kestrel");
		ASSERT_TRUE(Modules.IsModuleLoaded("Kestrel"));
		EXPECT_FALSE(FGlobalTabmanager::Get()->HasTabSpawner("Kestrel"));
		EXPECT_TRUE(Modules.UnloadModule("Kestrel"));
	}
}
