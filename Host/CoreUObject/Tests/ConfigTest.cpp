#include "HAL/FileManager.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "ReflectedTestTypes.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>
#include <string>

UTestSettings::UTestSettings()
{
	Extensions = { TEXT("cpp"), TEXT("h") };
}

void UTestSettings::PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent)
{
	Super::PostEditChangeProperty(PropertyChangedEvent);
	Changes.Add(PropertyChangedEvent.GetPropertyName());
}

namespace ConfigTest
{
const TCHAR* const Section = TEXT("[/Script/CoreUObjectTests.TestSettings]\n");

/** A project of its own in a temporary folder, with a fresh configuration. */
class FConfigTest : public testing::Test
{
protected:
	void SetUp() override
	{
		Folder = FPaths::CreateTempFilename(UTF8_TO_TCHAR(testing::TempDir().c_str()), TEXT("ConfigTest"), TEXT(""));
		FPaths::SetProjectFilePath(Folder / TEXT("Test.uproject"));
		FConfigCacheIni::InitializeConfigSystem();
	}

	void TearDown() override
	{
		delete GConfig;
		GConfig = nullptr;
		FPaths::SetProjectFilePath(FString());
		IFileManager::Get().DeleteDirectory(*Folder, false, true);
	}

	FString SavedFile(const TCHAR* Name) const { return Folder / TEXT("Saved/Config/LinuxEditor") / Name; }

	void WriteFile(const FString& File, const FString& Text) const
	{
		ASSERT_TRUE(FFileHelper::SaveStringToFile(Text, *File));
	}

	/** An object as the default object would be after the next start. */
	template <typename T>
	T* Restart()
	{
		FConfigCacheIni::InitializeConfigSystem();
		T* Object = NewObject<T>(GetTransientPackageAsObject());
		static_cast<UTestSettings*>(Object)->Extensions = { TEXT("cpp"), TEXT("h") };
		Object->LoadConfig();
		return Object;
	}

	std::string Read(const FString& File) const
	{
		FString Text;
		FFileHelper::LoadFileToString(Text, *File);
		return TCHAR_TO_UTF8(*Text);
	}

	FString Folder;
};

std::string Join(const TArray<FString>& Texts)
{
	return TCHAR_TO_UTF8(*FString::Join(Texts, TEXT(" ")));
}
}

using namespace ConfigTest;

TEST_F(FConfigTest, SavedValuesComeBackAtTheNextStart)
{
	UTestSettings* Settings = NewObject<UTestSettings>();
	Settings->ApiKey = TEXT(" with \"quotes\" and spaces ");
	Settings->bDisplay = false;
	Settings->bReset = true;
	Settings->Extensions = { TEXT("a"), TEXT("b"), TEXT("a") };
	Settings->Policy = ETestState::KeepLast30Days;
	Settings->Point.Label = TEXT("named");
	Settings->Forgotten = 50;
	Settings->SaveConfig(CPF_Config, nullptr, GConfig, false);

	const std::string Text = Read(SavedFile(TEXT("TestUserSettings.ini")));
	EXPECT_NE(Text.find("[/Script/CoreUObjectTests.TestSettings]"), std::string::npos) << Text;
	EXPECT_NE(Text.find("Policy=KeepLast30Days"), std::string::npos) << Text;
	EXPECT_EQ(Text.find("bReset"), std::string::npos) << Text;
	EXPECT_EQ(Text.find("Forgotten"), std::string::npos) << Text;

	const UTestSettings* Loaded = Restart<UTestSettings>();
	EXPECT_TRUE(Loaded->ApiKey.Equals(Settings->ApiKey)) << Text;
	EXPECT_FALSE(Loaded->bDisplay);
	EXPECT_FALSE(Loaded->bReset);
	EXPECT_EQ(Join(Loaded->Extensions), "a b a");
	EXPECT_EQ(Loaded->Policy, ETestState::KeepLast30Days);
	EXPECT_TRUE(Loaded->Point.Label.Equals(TEXT("named")));
	EXPECT_EQ(Loaded->Point.X, 3);
}

TEST_F(FConfigTest, AnArrayInTheFileReplacesTheConstructors)
{
	EXPECT_EQ(Join(Restart<UTestSettings>()->Extensions), "cpp h") << "no key, no change";
	WriteFile(SavedFile(TEXT("TestUserSettings.ini")), FString(Section) + TEXT("+Extensions=py\n+Extensions=ini\n"));
	EXPECT_EQ(Join(Restart<UTestSettings>()->Extensions), "py ini");
}

TEST_F(FConfigTest, ValuesOfTheProjectsDefaultsAreNotSavedAgain)
{
	WriteFile(Folder / TEXT("Config/DefaultTestUserSettings.ini"), FString(Section) + TEXT("ApiKey=shared\n"));
	UTestSettings* Settings = Restart<UTestSettings>();
	EXPECT_TRUE(Settings->ApiKey.Equals(TEXT("shared")));
	Settings->bDisplay = false;
	Settings->SaveConfig(CPF_Config, nullptr, GConfig, false);
	const std::string Text = Read(SavedFile(TEXT("TestUserSettings.ini")));
	EXPECT_EQ(Text.find("ApiKey"), std::string::npos) << Text;
	EXPECT_NE(Text.find("bDisplay=False"), std::string::npos) << Text;
}

TEST_F(FConfigTest, ADefaultObjectMadeBeforeTheConfigurationIsLoadedLater)
{
	WriteFile(SavedFile(TEXT("TestEarly.ini")), TEXT("[/Script/CoreUObjectTests.TestEarlySettings]\nLevel=7\n"));
	FConfigCacheIni* Config = GConfig;
	GConfig = nullptr;
	EXPECT_EQ(GetDefault<UTestEarlySettings>()->Level, 1);
	GConfig = Config;
	ProcessNewlyLoadedUObjects();
	EXPECT_EQ(GetDefault<UTestEarlySettings>()->Level, 7);
}

TEST_F(FConfigTest, ABadValueLeavesTheDefault)
{
	WriteFile(SavedFile(TEXT("TestUserSettings.ini")), FString(Section) + TEXT("Policy=Nonsense\nbDisplay=False\n"));
	const UTestSettings* Settings = Restart<UTestSettings>();
	EXPECT_EQ(Settings->Policy, ETestState::Running);
	EXPECT_FALSE(Settings->bDisplay);
}

TEST_F(FConfigTest, AChildTakesItsParentsSection)
{
	WriteFile(SavedFile(TEXT("TestUserSettings.ini")),
		FString(Section) + TEXT("ApiKey=parent\nbDisplay=False\n"
								"[/Script/CoreUObjectTests.TestSettingsChild]\nApiKey=child\nExtra=8\n"));
	const UTestSettingsChild* Child = Restart<UTestSettingsChild>();
	EXPECT_TRUE(Child->ApiKey.Equals(TEXT("child")));
	EXPECT_FALSE(Child->bDisplay);
	EXPECT_EQ(Child->Extra, 8);
}

TEST_F(FConfigTest, SavingAnObjectUpdatesTheDefaultObject)
{
	UTestSettings* Settings = NewObject<UTestSettings>();
	Settings->ApiKey = TEXT("mine");
	Settings->SaveConfig();
	EXPECT_TRUE(GetDefault<UTestSettings>()->ApiKey.Equals(TEXT("mine")));
	GetMutableDefault<UTestSettings>()->ApiKey.Empty();
}

TEST_F(FConfigTest, TheProjectsDefaultFileCanBeWritten)
{
	UTestDefaultConfig* Settings = NewObject<UTestDefaultConfig>();
	Settings->Level = 4;
	EXPECT_TRUE(Settings->TryUpdateDefaultConfigFile());
	EXPECT_NE(Read(Folder / TEXT("Config/DefaultTestDefaults.ini")).find("Level=4"), std::string::npos);
	Settings->Level = 0;
	Settings->ReloadConfig();
	EXPECT_EQ(Settings->Level, 4);
}

TEST_F(FConfigTest, KnownNamesHaveTheEnginesFiles)
{
	EXPECT_TRUE(
		UTestSettings::StaticClass()->GetConfigName().EndsWith(TEXT("Saved/Config/LinuxEditor/TestUserSettings.ini")));
	EXPECT_TRUE(
		UTestSettingsChild::StaticClass()->GetConfigName().Equals(UTestSettings::StaticClass()->GetConfigName()));
}
