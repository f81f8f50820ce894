#include "Modules/ModuleManager.h"
#include "CoreMinimal.h"

#include <gtest/gtest.h>

namespace
{
/** Tells in Order when it starts and ends. */
class FTellingModule : public IModuleInterface
{
public:
	explicit FTellingModule(const TCHAR* InName)
		: Name(InName)
	{
	}
	virtual void StartupModule() override { Order.Add(FString(TEXT("+")) + Name); }
	virtual void ShutdownModule() override { Order.Add(FString(TEXT("-")) + Name); }

	static TArray<FString> Order;

private:
	const FString Name;
};

TArray<FString> FTellingModule::Order;
}

TEST(ModuleManagerTest, OnlyLoadingLoadsAndTheLastLoadedGoesFirst)
{
	FModuleManager& Manager = FModuleManager::Get();
	Manager.RegisterStaticallyLinkedModule(
		"TellingA", []() -> IModuleInterface* { return new FTellingModule(TEXT("A")); });
	Manager.RegisterStaticallyLinkedModule(
		"TellingB", []() -> IModuleInterface* { return new FTellingModule(TEXT("B")); });
	EXPECT_EQ(FModuleManager::GetModulePtr<FTellingModule>("TellingA"), nullptr);
	EXPECT_TRUE(Manager.ModuleExists("TellingA"));
	EXPECT_FALSE(Manager.IsModuleLoaded("TellingA"));
	FTellingModule& Loaded = FModuleManager::LoadModuleChecked<FTellingModule>("TellingB");
	EXPECT_EQ(FModuleManager::GetModulePtr<FTellingModule>("TellingB"), &Loaded);
	EXPECT_EQ(FModuleManager::LoadModulePtr<FTellingModule>("TellingB"), &Loaded) << "once";
	EXPECT_NE(FModuleManager::LoadModulePtr<FTellingModule>("TellingA"), nullptr);
	Manager.UnloadModulesAtShutdown();
	EXPECT_STREQ(TCHAR_TO_UTF8(*FString::Join(FTellingModule::Order, TEXT(" "))), "+B +A -A -B");
	EXPECT_EQ(FModuleManager::GetModulePtr<FTellingModule>("TellingA"), nullptr);
}

TEST(ModuleManagerDeathTest, AskingForAMissingModuleAsserts)
{
	EXPECT_EQ(FModuleManager::LoadModulePtr<IModuleInterface>("NoSuchModule"), nullptr);
	EXPECT_DEATH(FModuleManager::LoadModuleChecked<IModuleInterface>("NoSuchModule"), "cannot be loaded");
	EXPECT_DEATH(FModuleManager::GetModuleChecked<IModuleInterface>("NoSuchModule"), "is not loaded");
}
