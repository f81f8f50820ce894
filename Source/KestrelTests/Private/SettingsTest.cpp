#include "Kestrel.h"
#include "KestrelSettings.h"
#include "KestrelStage.h"
#include "Support/KestrelTest.h"
#include "UObject/Class.h"
#include "UObject/UnrealType.h"

namespace SettingsTest
{
/** What the settings page does when a box is ticked. */
void ChangeBox(UKestrelSettings& Settings, const TCHAR* Box, bool bValue)
{
	FBoolProperty* Property = FindFProperty<FBoolProperty>(UKestrelSettings::StaticClass(), Box);
	Property->SetPropertyValue_InContainer(&Settings, bValue);
	FPropertyChangedEvent Event(Property, EPropertyChangeType::ValueSet);
	Settings.PostEditChangeProperty(Event);
}

struct FBoxCase
{
	const TCHAR* Box;
	TArray<FString> UKestrelSettings::*List;
	const TCHAR* Defaults;
};

const FBoxCase BoxCases[] = {
	{ TEXT("bResetSupportedFileExtensions"), &UKestrelSettings::SupportedFileExtensions,
		TEXT("py,cs,json,cpp,h,uasset,umap,ini,uproject,csv") },
	{ TEXT("bResetExcludedDirectories"), &UKestrelSettings::ExcludedDirectories,
		TEXT(
			"__ExternalObjects__,__ExternalActors__,Binaries,Intermediate,Saved,Build,DerivedDataCache,Engine,Shared,.git") },
};

struct FStageCase
{
	const TCHAR* Ini;
	const TCHAR* ApiUrl;
	const TCHAR* ApiKey;
};

const FStageCase StageCases[] = {
	{ TEXT("[Kestrel]\nStage=dev\nDevApiUrl=d\nDevApiKey=k\nSandboxApiUrl=s\n"), TEXT("d"), TEXT("k") },
	{ TEXT("[Kestrel]\nStage=Sandbox\nSandboxApiUrl=s\nSandbox2ApiUrl=s2\n"), TEXT("s"), TEXT("") },
	{ TEXT("[Kestrel]\nStage=SANDBOX2\nSandboxApiUrl=s\nSandbox2ApiUrl=s2/v1\nSandbox2ApiKey=\"k 2\"\n"), TEXT("s2/v1"),
		TEXT("k 2") },
	{ TEXT("[Kestrel]\nStage=Dev\nDevApiKey=only\n"), TEXT(""), TEXT("only") },
	{ TEXT("[Kestrel]\nStage=Production\nDevApiUrl=d\n"), TEXT(""), TEXT("") },
	{ TEXT("[Kestrel]\nDevApiUrl=d\n"), TEXT(""), TEXT("") },
	{ TEXT("[Other]\nStage=Dev\nDevApiUrl=d\n"), TEXT(""), TEXT("") },
};

/** Addresses that do not lead where they seem to. */
const TCHAR* const RefusedUrls[] = { TEXT("api.kestrel.example@localhost:1/v1"), TEXT("localhost:1/v1?x="),
	TEXT("localhost:1/v1#api"), TEXT("api.example\\localhost/v1"), TEXT("api.example localhost"),
	TEXT("api.example\x7F/v1"), TEXT("api.k\u0435strel.example/v1"), TEXT("https://localhost:1/v1"), TEXT("/v1"),
	TEXT(":1/v1") };
}

DEFINE_SPEC(FKestrelSettingsSpec, "Kestrel.Settings", KestrelTest::Flags)
void FKestrelSettingsSpec::Define()
{
	It("has the defaults that a new user meets", [this]() {
		const UKestrelSettings& Settings = *NewObject<UKestrelSettings>();
		TestEqual(TEXT("mode"), static_cast<int32>(Settings.ModeFlag),
			static_cast<int32>(EKestrelMode::ExplainerAndImplementerMode));
		TestFalse(TEXT("asks before it acts"), Settings.bAutoApprove);
		TestTrue(TEXT("shows file changes"), Settings.bDisplayFileChangesInChat);
		TestTrue(
			TEXT("keeps logs for 30 days"), Settings.LogRetentionPolicy == EKestrelLogDeletionPolicy::KeepLast30Days);
		TestTrue(TEXT("no asset class is singled out"), Settings.GetEnabledAssetClassPatterns().IsEmpty());
	});

	It("puts a list back when its box is ticked, and unticks the box", [this]() {
		for (const SettingsTest::FBoxCase& Case : SettingsTest::BoxCases)
		{
			UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
			(Settings.*Case.List) = { TEXT("mine") };
			SettingsTest::ChangeBox(Settings, Case.Box, false);
			TestEqual(TEXT("unticking changes nothing"), (Settings.*Case.List).Num(), 1);
			SettingsTest::ChangeBox(Settings, TEXT("bDisplayFileChangesInChat"), true);
			TestEqual(TEXT("nor does another property"), (Settings.*Case.List).Num(), 1);
			SettingsTest::ChangeBox(Settings, Case.Box, true);
			KestrelTest::TestSameText(*this, Case.Box, FString::Join(Settings.*Case.List, TEXT(",")), Case.Defaults);
			TestFalse(TEXT("still ticked"), FindFProperty<FBoolProperty>(UKestrelSettings::StaticClass(), Case.Box)
												->GetPropertyValue_InContainer(&Settings));
		}
		FPropertyChangedEvent Nothing(nullptr);
		GetMutableDefault<UKestrelSettings>()->PostEditChangeProperty(Nothing);
	});

	It("saves what the user may change, and nothing else", [this]() {
		for (const TCHAR* Name : { TEXT("ApiKey"), TEXT("bDisplayFileChangesInChat"), TEXT("SupportedFileExtensions"),
				 TEXT("ExcludedDirectories"), TEXT("LogRetentionPolicy") })
		{
			TestTrue(Name,
				UKestrelSettings::StaticClass()->FindPropertyByName(Name)->HasAllPropertyFlags(CPF_Config | CPF_Edit));
		}
		for (const TCHAR* Name : { TEXT("ModeFlag"), TEXT("bAutoApprove"), TEXT("bResetSupportedFileExtensions"),
				 TEXT("bResetExcludedDirectories") })
		{
			TestFalse(Name, UKestrelSettings::StaticClass()->FindPropertyByName(Name)->HasAnyPropertyFlags(CPF_Config));
		}
	});

	It("reads the stage of the service that a project names", [this]() {
		for (const SettingsTest::FStageCase& Case : SettingsTest::StageCases)
		{
			const FKestrelTestFolder Folder;
			Folder.Write(TEXT("DefaultPlugin.ini"), Case.Ini);
			const FKestrelStage Stage = FKestrelStage::Read(Folder.Full(TEXT("DefaultPlugin.ini")));
			KestrelTest::TestSameText(*this, FString(Case.Ini) + TEXT(" url"), Stage.ApiUrl, Case.ApiUrl);
			KestrelTest::TestSameText(*this, FString(Case.Ini) + TEXT(" key"), Stage.ApiKey, Case.ApiKey);
		}
		TestTrue(TEXT("a missing file"), FKestrelStage::Read(TEXT("/no/DefaultPlugin.ini")).ApiUrl.IsEmpty());
	});

	It("refuses a stage whose address does not lead where it seems to", [this]() {
		for (const TCHAR* Url : SettingsTest::RefusedUrls)
		{
			const FKestrelTestFolder Folder;
			Folder.Write(TEXT("DefaultPlugin.ini"),
				FString::Printf(TEXT("[Kestrel]\nStage=Dev\nDevApiUrl=\"%s\"\nDevApiKey=k\n"),
					*FString(Url).Replace(TEXT("\\"), TEXT("\\\\"))));
			const FKestrelStage Stage = FKestrelStage::Read(Folder.Full(TEXT("DefaultPlugin.ini")));
			TestTrue(Url, Stage.bIsRefused && Stage.ApiUrl.IsEmpty() && Stage.ApiKey.IsEmpty());
		}
	});

	It("prefers the stage's key to the user's", [this]() {
		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		const TGuardValue<FString> Key(Settings.ApiKey, TEXT("the user's"));
		KestrelTest::TestSameText(*this, TEXT("key"), FKestrelModule::GetApiKey(), TEXT("test-key"));
		TestTrue(TEXT("host"), FKestrelModule::GetApiUrl().StartsWith(TEXT("localhost:")));
	});
}
