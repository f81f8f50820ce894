#include "Containers/Ticker.h"
#include "HAL/HostClock.h"
#include "HAL/PlatformProcess.h"
#include "HostGameModules.h"
#include "IHotReload.h"
#include "Interfaces/IProjectManager.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "Misc/OutputDeviceRedirector.h"
#include "ScratchDirectory.h"
#include "UObject/Package.h"
#include "UObject/StrongObjectPtr.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>

namespace
{
const TCHAR* const NestHeader = TEXT(R"(#pragma once
#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "UObject/ObjectPtr.h"
#include "Twig.h"
#include "Nest.generated.h"

UENUM(BlueprintType)
enum class EBird : uint8
{
	Robin,
	Wren,
};

UCLASS()
class UNest : public UTwig
{
	GENERATED_BODY()

public:
	UPROPERTY()
	@TYPE@ Eggs = @EGGS@;

	UPROPERTY()
	EBird Bird = EBird::Robin;

	UPROPERTY()
	TObjectPtr<UEnum> Kinds;

	UPROPERTY()
	TObjectPtr<UNest> Neighbour;

	UPROPERTY()
	TMap<TObjectPtr<UNest>, int32> Distances;

	UFUNCTION()
	int32 CountTwigs() const;
};
)");

const TCHAR* const NestSource = TEXT(R"(#include "Nest.h"
#include "Modules/ModuleManager.h"

int32 UNest::CountTwigs() const
{
	return TwigsOf(@EGGS@);
}

IMPLEMENT_GAME_MODULE(FDefaultGameModuleImpl, Nest)
)");

const TCHAR* const TwigHeader = TEXT(R"(#pragma once
#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "Twig.generated.h"

TWIG_API int32 TwigsOf(int32 Eggs);

UCLASS()
class TWIG_API UTwig : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY()
	int32 Length = 10 * @EGGS@;
};
)");

/** Keeps the lines of hot reload. */
class FReloadLog final : public FOutputDevice
{
public:
	FReloadLog() { GLog->AddOutputDevice(this); }
	~FReloadLog() override { GLog->RemoveOutputDevice(this); }
	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type, const FName& Category) override
	{
		EXPECT_NE(Category, FName("LogCompile"));
		Text += Category == FName("LogHotReload") ? FString(V) + TEXT("\n") : FString();
	}
	FString Text;
};

/** A project with two modules in a folder whose name is a trial for every program that gets to see it. */
class FHotReloadTest : public testing::Test
{
protected:
	FScratchDirectory Scratch;
	FString ProjectDir = Scratch.Path / TEXT("it's $HOME : \"game\"");
	FReloadLog Log;
	TOptional<ECompilationResult::Type> Finished; // what the event told last
	FString Output;

	void SetUp() override
	{
		Write(TEXT("Game.uproject"),
			TEXT("{\"FileVersion\":3,\"Modules\":[{\"Name\":\"Nest\",\"Type\":\"Runtime\"},"
				 "{\"Name\":\"Twig\",\"Type\":\"Runtime\"},{\"Name\":\"Shop\",\"Type\":\"ServerOnly\"}]}"));
		Write(TEXT("Source/Twig/Twig.Build.cs"),
			TEXT("PublicDependencyModuleNames.AddRange(new string[] { \"Core\", \"CoreUObject\" });"
				 "PublicIncludePaths.Add(ModuleDirectory);"));
		Write(TEXT("Source/Twig/Twig.cpp"),
			TEXT("#include \"Twig.h\"\n#include \"Modules/ModuleManager.h\"\n"
				 "int32 TwigsOf(int32 Eggs) { return 10 * Eggs; }\nIMPLEMENT_MODULE(FDefaultGameModuleImpl, Twig)\n"));
		Write(TEXT("Source/Nest/Nest.Build.cs"),
			TEXT("PrivateDependencyModuleNames.AddRange(new string[] { \"Core\", \"CoreUObject\", \"Twig\" });"
				 "PublicIncludePaths.Add(ModuleDirectory);"));
		WriteNest(TEXT("int32"), TEXT("3"));

		FText FailReason;
		ASSERT_TRUE(IProjectManager::Get().LoadProjectFile(ProjectDir / TEXT("Game.uproject"), FailReason));
		FConfigCacheIni::InitializeConfigSystem();
		Reload().OnModuleCompilerFinished().AddLambda(
			[this](const FString& Text, ECompilationResult::Type Result, bool) {
				Finished = Result;
				Output = Text;
			});
	}

	void TearDown() override { Reload().OnModuleCompilerFinished().Clear(); }

	static IHotReloadModule& Reload() { return IHotReloadModule::Get(); }

	void Write(const TCHAR* Name, const FString& Text) const
	{
		ASSERT_TRUE(FFileHelper::SaveStringToFile(
			Text, *(ProjectDir / Name), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM));
	}

	void WriteNest(const TCHAR* Type, const TCHAR* Eggs, const TCHAR* AtTheEnd = TEXT("")) const
	{
		Write(TEXT("Source/Nest/Nest.h"),
			FString(NestHeader).Replace(TEXT("@TYPE@"), Type).Replace(TEXT("@EGGS@"), Eggs));
		Write(TEXT("Source/Twig/Twig.h"), FString(TwigHeader).Replace(TEXT("@EGGS@"), Eggs));
		Write(
			TEXT("Source/Nest/Own Things/N\u00e9st.cpp"), FString(NestSource).Replace(TEXT("@EGGS@"), Eggs) + AtTheEnd);
	}

	/** Ticks as the editor does until the compile has ended. */
	ECompilationResult::Type Finish()
	{
		Finished.Reset();
		for (int32 Tick = 0; Tick < 20'000 && Reload().IsCurrentlyCompiling(); ++Tick)
		{
			EXPECT_TRUE(FHostClock::Get().IsHeld());
			FPlatformProcess::Sleep(0.005f);
			FTSTicker::GetCoreTicker().Tick(0.005f);
		}
		EXPECT_FALSE(FHostClock::Get().IsHeld());
		EXPECT_TRUE(Finished.IsSet());
		return Finished.Get(ECompilationResult::Unknown);
	}

	ECompilationResult::Type CompileAndFinish()
	{
		EXPECT_EQ(Reload().DoHotReloadFromEditor(EHotReloadFlags::None), ECompilationResult::Succeeded);
		return Finish();
	}

	static UClass* NestClass() { return FindObject<UClass>(nullptr, TEXT("/Script/Nest.Nest")); }

	static FString Get(UObject* Object, const TCHAR* Property)
	{
		FString Text;
		Object->GetClass()->FindPropertyByName(Property)->ExportTextItem_InContainer(
			Text, Object, nullptr, nullptr, PPF_None);
		return Text;
	}

	static void Set(UObject* Object, const TCHAR* Property, const FString& Value)
	{
		EXPECT_TRUE(
			Object->GetClass()->FindPropertyByName(Property)->ImportText_InContainer(*Value, Object, Object, PPF_None));
	}

	static int32 CountTwigs(UObject* Object)
	{
		int32 Twigs = 0;
		Object->ProcessEvent(Object->FindFunctionChecked(TEXT("CountTwigs")), &Twigs);
		return Twigs;
	}

	/** Errors name file and line; what the Build.cs does not list cannot be included. */
	void FailToCompile()
	{
		WriteNest(TEXT("int32"), TEXT("4"), TEXT("int Broken = ;\n#include \"Dom/JsonObject.h\"\n"));
		EXPECT_EQ(CompileAndFinish(), ECompilationResult::OtherCompilationError);
		const FString Source = ProjectDir / TEXT("Source/Nest/Own Things/N\u00e9st.cpp");
		EXPECT_TRUE(Output.Contains(Source + TEXT(":10:14: error: expected expression"))) << TCHAR_TO_UTF8(*Output);
		EXPECT_TRUE(Output.Contains(TEXT("'Dom/JsonObject.h' file not found"))) << TCHAR_TO_UTF8(*Output);
		EXPECT_FALSE(Output.Contains(TEXT("-Werror"))) << "a command line helps nobody: " << TCHAR_TO_UTF8(*Output);
		EXPECT_TRUE(Log.Text.Contains(TEXT(":10:14: error: expected expression")));
	}

	/** The new class is in place of the old one: for what was made of it, for its defaults, and for its code. */
	static void ExpectReplaced(const UClass* OldClass, UObject* Untouched, UObject* Changed)
	{
		UClass* const NewClass = NestClass();
		ASSERT_TRUE(NewClass);
		EXPECT_NE(NewClass, OldClass);
		EXPECT_TRUE(OldClass->GetName().StartsWith(TEXT("HOTRELOADED_Nest_")));
		EXPECT_TRUE(OldClass->HasAnyClassFlags(CLASS_NewerVersionExists));
		EXPECT_TRUE(Get(NewClass->GetDefaultObject(), TEXT("Eggs")).Equals(TEXT("5")));
		EXPECT_TRUE(NewClass->GetDefaultObject()->GetPathName().Equals(TEXT("/Script/Nest.Default__Nest")));
		EXPECT_EQ(Untouched->GetClass(), NewClass) << "a kept pointer leads to the new object";
		EXPECT_TRUE(Untouched->GetPathName().Equals(TEXT("/Engine/Transient.Untouched")));
		EXPECT_TRUE(Get(Untouched, TEXT("Eggs")).Equals(TEXT("5")));
		EXPECT_TRUE(Get(Untouched, TEXT("Length")).Equals(TEXT("50"))) << "the parent in the other module is new, too";
		EXPECT_EQ(NewClass->GetSuperClass(), FindObject<UClass>(nullptr, TEXT("/Script/Twig.Twig")));
		EXPECT_EQ(CountTwigs(Untouched), 50) << "new code runs";
		EXPECT_TRUE(Get(Changed, TEXT("Eggs")).Equals(TEXT("7")));
		EXPECT_TRUE(Get(Changed, TEXT("Bird")).Equals(TEXT("Wren")));
		EXPECT_TRUE(Get(Changed, TEXT("Kinds")).Contains(TEXT("/Script/Nest.EBird")));
		EXPECT_TRUE(Get(Changed, TEXT("Neighbour")).Contains(TEXT("/Engine/Transient.Untouched")));
		EXPECT_TRUE(Get(Changed, TEXT("Distances")).Contains(TEXT("/Engine/Transient.Untouched")));
		CollectGarbage(RF_NoFlags);
		EXPECT_EQ(CountTwigs(Changed), 50) << "the old objects are gone, the new ones are not";
	}
};
}

TEST_F(FHotReloadTest, AGameModuleIsBuiltChangedAndPutInPlaceOfTheOldOne)
{
	EXPECT_EQ(Reload().DoHotReloadFromEditor(EHotReloadFlags::None), ECompilationResult::Unsupported);
	EXPECT_TRUE(Log.Text.Contains(TEXT("RebindPackages not possible (no packages specified)")));
	EXPECT_FALSE(Reload().IsCurrentlyCompiling());

	// A library that is missing is built before the project is opened.
	FString Errors;
	ASSERT_EQ(FHostGameModules::Prepare(Errors), EGameModules::Ready) << TCHAR_TO_UTF8(*Errors);
	ASSERT_TRUE(IProjectManager::Get().LoadModulesForProject(ELoadingPhase::Default));
	EXPECT_TRUE(Reload().IsAnyGameModuleLoaded());
	EXPECT_TRUE(Reload().GetModuleCompileMethod("Nest").Equals(TEXT("External")));
	UClass* const OldClass = NestClass();
	ASSERT_TRUE(OldClass);
	const TStrongObjectPtr<UObject> Untouched(NewObject<UObject>(GetTransientPackage(), OldClass, TEXT("Untouched")));
	const TStrongObjectPtr<UObject> Changed(NewObject<UObject>(GetTransientPackage(), OldClass, TEXT("Changed")));
	Set(Changed.Get(), TEXT("Eggs"), TEXT("7"));
	Set(Changed.Get(), TEXT("Bird"), TEXT("Wren"));
	Set(Changed.Get(), TEXT("Kinds"), TEXT("/Script/Nest.EBird"));
	Set(Changed.Get(), TEXT("Neighbour"), Untouched->GetPathName());
	Set(Changed.Get(), TEXT("Distances"), TEXT("((\"") + Untouched->GetPathName() + TEXT("\", 4))"));
	EXPECT_EQ(CountTwigs(Untouched.Get()), 30);
	// As the components of a Blueprint are kept.
	const TStrongObjectPtr<UObject> Template(
		NewObject<UObject>(GetTransientPackage(), OldClass, TEXT("Template"), RF_Public | RF_ArchetypeObject));
	Set(Template.Get(), TEXT("Eggs"), TEXT("8"));

	// Nothing has changed; meanwhile no second compile is accepted, and its refusal brings no event.
	EXPECT_EQ(Reload().DoHotReloadFromEditor(EHotReloadFlags::None), ECompilationResult::Succeeded);
	EXPECT_EQ(Reload().DoHotReloadFromEditor(EHotReloadFlags::None), ECompilationResult::Unsupported);
	EXPECT_EQ(Finish(), ECompilationResult::UpToDate);
	EXPECT_EQ(NestClass(), OldClass);

	FailToCompile();
	EXPECT_EQ(NestClass(), OldClass);

	// Mended, with another type and default.
	bool bReloadComplete = false;
	const FDelegateHandle Handle = FCoreUObjectDelegates::ReloadCompleteDelegate.AddLambda(
		[&bReloadComplete](EReloadCompleteReason) { bReloadComplete = true; });
	WriteNest(TEXT("int64"), TEXT("5"));
	EXPECT_EQ(CompileAndFinish(), ECompilationResult::Succeeded) << TCHAR_TO_UTF8(*Output);
	FCoreUObjectDelegates::ReloadCompleteDelegate.Remove(Handle);
	EXPECT_TRUE(bReloadComplete);
	EXPECT_TRUE(Reload().GetModuleCompileMethod("Nest").Equals(TEXT("Runtime")));

	ExpectReplaced(OldClass, Untouched.Get(), Changed.Get());
	UClass* const NewClass = NestClass();
	EXPECT_EQ(Template->GetClass(), NewClass) << "a template of the old class could not be saved";
	EXPECT_TRUE(Template->HasAllFlags(RF_Public | RF_ArchetypeObject));
	EXPECT_TRUE(Get(Template.Get(), TEXT("Eggs")).Equals(TEXT("8")));

	// A compile that is cancelled leaves things as they are.
	WriteNest(TEXT("int32"), TEXT("6"));
	EXPECT_EQ(Reload().DoHotReloadFromEditor(EHotReloadFlags::None), ECompilationResult::Succeeded);
	Reload().RequestStopCompilation();
	EXPECT_EQ(Finish(), ECompilationResult::Canceled);
	EXPECT_EQ(NestClass(), NewClass);

	GConfig->SetBool(TEXT("HotReload"), TEXT("bEnabled"), false, GEngineIni);
	EXPECT_EQ(Reload().DoHotReloadFromEditor(EHotReloadFlags::None), ECompilationResult::Unsupported);
	EXPECT_FALSE(Reload().IsCurrentlyCompiling());
}

TEST_F(FHotReloadTest, ModulesThatCannotBeBuiltTellWhyAndAreLoadedOnceTheyCan)
{
	// The other test has loaded modules of these names, and a process cannot unload their types.
	Write(TEXT("Game.uproject"), TEXT("{\"FileVersion\":3,\"Modules\":[{\"Name\":\"Brood\",\"Type\":\"Runtime\"}]}"));
	FText FailReason;
	ASSERT_TRUE(IProjectManager::Get().LoadProjectFile(ProjectDir / TEXT("Game.uproject"), FailReason));
	const TCHAR* const Rules =
		TEXT("PublicDependencyModuleNames.AddRange(new string[] { \"Core\", \"CoreUObject\" });");
	const TCHAR* const Header = TEXT("#pragma once\n#include \"UObject/Object.h\"\n#include \"Brood.generated.h\"\n"
									 "UCLASS()\nclass UBrood : public UObject\n{\n\tGENERATED_BODY()\n};\n");
	const TCHAR* const Source = TEXT("#include \"Brood.h\"\n#include \"Modules/ModuleManager.h\"\n"
									 "IMPLEMENT_GAME_MODULE(FDefaultGameModuleImpl, Brood)\n");
	Write(TEXT("Source/Brood/Brood.Build.cs"), Rules);
	Write(TEXT("Source/Brood/Brood.h"), TEXT("\nUCLASS()\nclass UBrood {};\n"));
	Write(TEXT("Source/Brood/Brood.cpp"), Source);

	FString Errors;
	EXPECT_EQ(FHostGameModules::Prepare(Errors), EGameModules::CannotBeBuilt);
	EXPECT_TRUE(Errors.Contains(TEXT("/Source/Brood/Brood.h(3): error: Expected a GENERATED_BODY()")))
		<< TCHAR_TO_UTF8(*Errors);
	EXPECT_TRUE(FHostGameModules::AreSomeNotLoaded());
	EXPECT_EQ(CompileAndFinish(), ECompilationResult::OtherCompilationError);
	EXPECT_TRUE(Output.Contains(TEXT("Brood.h(3): error: Expected"))) << TCHAR_TO_UTF8(*Output);

	// What the editor does not have fails each compile with that cause, until the rules no longer ask for it.
	Write(TEXT("Source/Brood/Brood.h"), Header);
	Write(TEXT("Source/Brood/Brood.Build.cs"), FString(Rules) + TEXT("PublicDependencyModuleNames.Add(\"Aviary\");"));
	EXPECT_EQ(FHostGameModules::Prepare(Errors), EGameModules::NotForThisEditor);
	EXPECT_TRUE(Errors.Contains(TEXT("does not have: Aviary"))) << TCHAR_TO_UTF8(*Errors);
	for (int32 Attempt = 0; Attempt < 2; ++Attempt)
	{
		Log.Text.Empty();
		EXPECT_EQ(CompileAndFinish(), ECompilationResult::OtherCompilationError);
		EXPECT_TRUE(Output.Contains(TEXT("does not have: Aviary"))) << TCHAR_TO_UTF8(*Output);
		EXPECT_TRUE(Log.Text.Contains(TEXT("does not have: Aviary"))) << TCHAR_TO_UTF8(*Log.Text);
	}

	Write(TEXT("Source/Brood/Brood.Build.cs"), Rules);
	EXPECT_EQ(CompileAndFinish(), ECompilationResult::Succeeded) << TCHAR_TO_UTF8(*Output);
	EXPECT_FALSE(FHostGameModules::AreSomeNotLoaded());
	EXPECT_TRUE(FindObject<UClass>(nullptr, TEXT("/Script/Brood.Brood")));
	EXPECT_EQ(CompileAndFinish(), ECompilationResult::UpToDate);
}
