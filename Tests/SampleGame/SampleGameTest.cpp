#include "Components/SphereComponent.h"
#include "Containers/Ticker.h"
#include "EdGraphSchema_K2.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Engine/World.h"
#include "GameFramework/Character.h"
#include "GameFramework/CharacterMovementComponent.h"
#include "GameFramework/GameModeBase.h"
#include "GameFramework/PlayerController.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformProcess.h"
#include "HostGameModules.h"
#include "IHotReload.h"
#include "Interfaces/IProjectManager.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "ScopedTransaction.h"
#include "ScratchDirectory.h"
#include "UObject/Package.h"
#include "UObject/UnrealType.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace
{
std::string ToStd(const FString& Text)
{
	return TCHAR_TO_UTF8(*Text);
}

/** The sample project in a folder of its own. Its classes are known by reflection alone, as to an editor. */
class FSampleGameTest : public testing::Test
{
protected:
	FScratchDirectory Scratch;
	const FString ProjectDir = Scratch.Path / TEXT("Harrier");

	void SetUp() override
	{
		std::filesystem::copy(SAMPLE_PROJECT, TCHAR_TO_UTF8(*ProjectDir), std::filesystem::copy_options::recursive);
		FText FailReason;
		ASSERT_TRUE(IProjectManager::Get().LoadProjectFile(ProjectDir / TEXT("Harrier.uproject"), FailReason));
		FConfigCacheIni::InitializeConfigSystem();
		FString Errors;
		ASSERT_EQ(FHostGameModules::Prepare(Errors), EGameModules::Ready) << ToStd(Errors);
		ASSERT_TRUE(IProjectManager::Get().LoadModulesForProject(ELoadingPhase::Default));
	}

	static UClass* FindGameClass(const TCHAR* Name)
	{
		UClass* const Class = FindObject<UClass>(nullptr, *(FString(TEXT("/Script/Harrier.")) + Name));
		EXPECT_TRUE(Class) << ToStd(Name);
		return Class;
	}

	static std::string Get(UObject* Object, const TCHAR* Property)
	{
		FString Text;
		Object->GetClass()->FindPropertyByName(Property)->ExportTextItem_InContainer(
			Text, Object, nullptr, nullptr, PPF_None);
		return ToStd(Text);
	}

	template <typename ReturnType, typename ArgumentType>
	static ReturnType Call(UObject* Object, const TCHAR* Function, ArgumentType Argument)
	{
		struct FParms
		{
			ArgumentType Argument;
			ReturnType Result;
		} Parms{ Argument, {} };
		Object->ProcessEvent(Object->FindFunctionChecked(Function), &Parms);
		return Parms.Result;
	}

	static void Set(UObject* Object, const TCHAR* Property, const TCHAR* Value)
	{
		ASSERT_TRUE(
			Object->GetClass()->FindPropertyByName(Property)->ImportText_InContainer(Value, Object, Object, PPF_None));
	}

	static UObject* GetPart(AActor* Actor, const TCHAR* Name) { return Actor->GetDefaultSubobjectByName(Name); }

	/** Of the character. */
	void EditHeader(const TCHAR* Old, const TCHAR* New) const
	{
		const FString Header = ProjectDir / TEXT("Source/Harrier/Player/HarrierCharacter.h");
		FString Text;
		ASSERT_TRUE(FFileHelper::LoadFileToString(Text, *Header));
		ASSERT_EQ(Text.ReplaceInline(Old, New), 1);
		ASSERT_TRUE(FFileHelper::SaveStringToFile(Text, *Header));
	}

	static void Reload()
	{
		IHotReloadModule& HotReload = IHotReloadModule::Get();
		ASSERT_EQ(HotReload.DoHotReloadFromEditor(EHotReloadFlags::None), ECompilationResult::Succeeded);
		for (int32 Tick = 0; Tick < 20'000 && HotReload.IsCurrentlyCompiling(); ++Tick)
		{
			FPlatformProcess::Sleep(0.005f);
			FTSTicker::GetCoreTicker().Tick(0.005f);
		}
	}

	static void ExpectDelegateKnowsSignature()
	{
		const FMulticastDelegateProperty* const OnHealthChanged =
			FindFProperty<FMulticastDelegateProperty>(FindGameClass(TEXT("HealthComponent")), TEXT("OnHealthChanged"));
		ASSERT_TRUE(OnHealthChanged);
		EXPECT_EQ(ToStd(OnHealthChanged->SignatureFunction->GetPathName()),
			"/Script/Harrier.OnHealthChanged__DelegateSignature");
	}

	/** A Blueprint of the walker in which somebody has set values, and has removed a variable again. */
	struct FHero
	{
		UBlueprint* Blueprint;

		explicit FHero(UClass* Parent)
		{
			FModuleManager::Get().LoadModuleChecked<IModuleInterface>(TEXT("UnrealEd"));
			Blueprint = FKismetEditorUtilities::CreateBlueprint(
				Parent, CreatePackage(TEXT("/Game/BP_Hero")), TEXT("BP_Hero"), BPTYPE_Normal);
			Set(GetDefaults(), TEXT("RunSpeed"), TEXT("900"));
			Set(GetPart(GetDefaults(), TEXT("Health")), TEXT("MaxHealth"), TEXT("250"));
			FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("Mood"),
				FEdGraphPinType(UEdGraphSchema_K2::PC_Byte, NAME_None, FindMood(), EPinContainerType::None, false,
					FEdGraphTerminalType()));
			const FScopedTransaction Transaction(FText::FromString(TEXT("Change")));
			Blueprint->Modify();
			Blueprint->NewVariables.Empty();
		}

		AActor* GetDefaults() const { return Cast<AActor>(Blueprint->GeneratedClass->GetDefaultObject()); }
		static UEnum* FindMood() { return FindObject<UEnum>(nullptr, TEXT("/Script/Harrier.EWardenMood")); }

		/** New code came: what was set stays, what was not is new, and what is undone is of the new types. */
		void ExpectKept() const
		{
			EXPECT_EQ(Get(GetDefaults(), TEXT("WalkSpeed")), "350.000000");
			EXPECT_EQ(Get(GetDefaults(), TEXT("RunSpeed")), "900.000000");
			EXPECT_EQ(GetPart(GetDefaults(), TEXT("Health"))->GetClass(), FindGameClass(TEXT("HealthComponent")));
			EXPECT_EQ(Get(GetPart(GetDefaults(), TEXT("Health")), TEXT("MaxHealth")), "250.000000");
			ASSERT_TRUE(GEditor->UndoTransaction());
			ASSERT_EQ(Blueprint->NewVariables.Num(), 1);
			ASSERT_TRUE(FindMood());
			EXPECT_EQ(Blueprint->NewVariables[0].VarType.PinSubCategoryObject.Get(), FindMood());
		}
	};
};

struct FPlay
{
	UWorld* const World = UWorld::CreateWorld(EWorldType::Game, false);
	APlayerController* Player = nullptr;

	FPlay()
	{
		World->SetGameMode(FURL());
		World->InitializeActorsForPlay(FURL());
		World->BeginPlay();
		AGameModeBase* const Mode = World->GetAuthGameMode();
		Player = Mode->SpawnPlayerController();
		Mode->RestartPlayerAtTransform(Player, FTransform::Identity);
	}
	~FPlay()
	{
		World->DestroyWorld(false);
		CollectGarbage(RF_NoFlags);
	}
	void Tick(int32 Times, float Seconds = 0.1f) const
	{
		for (int32 Index = 0; Index < Times; ++Index)
		{
			World->Tick(LEVELTICK_All, Seconds);
		}
	}
	ACharacter* GetWalker() const { return Player->GetCharacter(); }
};
}

TEST_F(FSampleGameTest, IsBuiltPlayedChangedAndPlayedOn)
{
	UClass* const Character = FindGameClass(TEXT("HarrierCharacter"));
	ASSERT_TRUE(Character && Character->IsChildOf<ACharacter>());
	EXPECT_EQ(Get(Character->GetDefaultObject(), TEXT("WalkSpeed")), "300.000000");
	EXPECT_EQ(Get(FindGameClass(TEXT("HarrierGameMode"))->GetDefaultObject(), TEXT("FeathersToWin")), "12");
	ExpectDelegateKnowsSignature();

	const FPlay Play;
	ASSERT_TRUE(Play.GetWalker());
	EXPECT_EQ(Play.World->GetAuthGameMode()->GetClass(), FindGameClass(TEXT("HarrierGameMode")));
	EXPECT_EQ(Play.GetWalker()->GetClass(), Character);
	EXPECT_EQ(Play.GetWalker()->GetCharacterMovement()->MaxWalkSpeed, 300.0f);

	// A pickup gives what the satchel holds.
	AActor* const Pickup = Play.World->SpawnActor(FindGameClass(TEXT("FeatherPickup")));
	FindFProperty<FIntProperty>(Pickup->GetClass(), TEXT("Count"))->SetPropertyValue_InContainer(Pickup, 15);
	USphereComponent* const Sphere = Pickup->FindComponentByClass<USphereComponent>();
	Sphere->OnComponentBeginOverlap.Broadcast(Sphere, Play.GetWalker(), nullptr, 0, false, FHitResult());
	EXPECT_EQ(Get(Play.GetWalker(), TEXT("Feathers")), "12");
	EXPECT_EQ(Get(Pickup, TEXT("Count")), "3");

	// A wound heals after a while.
	EXPECT_EQ((Call<float>(GetPart(Play.GetWalker(), TEXT("Health")), TEXT("TakeDamage"), 30.0f)), 30.0f);
	Play.Tick(40);
	EXPECT_EQ(Get(GetPart(Play.GetWalker(), TEXT("Health")), TEXT("Health")), "70.000000");
	Play.Tick(40);
	EXPECT_GT(Get(GetPart(Play.GetWalker(), TEXT("Health")), TEXT("Health")), "75");

	// A warden comes for whoever it sees.
	ACharacter* const Warden = Play.World->SpawnActor<ACharacter>(FVector(1000, 0, 0), FRotator::ZeroRotator);
	Play.World->SpawnActor<AController>(FindGameClass(TEXT("WardenController")))->Possess(Warden);
	Play.Tick(10);
	EXPECT_LT(Warden->GetActorLocation().X, 600.0);

	const FHero Hero(Character);

	// New code: the walker keeps its feathers and gets the new speed.
	const int32 Failures = FDebug::GetNumEnsureFailures();
	EditHeader(TEXT("WalkSpeed = 300.0f"), TEXT("WalkSpeed = 350.0f"));
	Reload();
	ACharacter* const Walker = Play.GetWalker();
	ASSERT_TRUE(Walker);
	EXPECT_EQ(Walker->GetClass(), FindGameClass(TEXT("HarrierCharacter")));
	EXPECT_NE(Walker->GetClass(), Character);
	EXPECT_EQ(Get(Walker, TEXT("Feathers")), "12");
	EXPECT_EQ(Get(Walker, TEXT("WalkSpeed")), "350.000000");
	Hero.ExpectKept();
	EXPECT_TRUE(Walker->HasActorBegunPlay());
	EXPECT_EQ(Walker->GetCharacterMovement()->MaxWalkSpeed, 350.0f);
	CollectGarbage(RF_NoFlags);
	Play.Tick(10);
	EXPECT_EQ(FDebug::GetNumEnsureFailures(), Failures) << "nothing is bound twice";

	// Death reaches the walker through the delegate, once.
	UObject* const Health = GetPart(Walker, TEXT("Health"));
	EXPECT_EQ((Call<float>(Health, TEXT("TakeDamage"), 1000.0f)), 100.0f);
	EXPECT_EQ(Walker->GetController(), nullptr);
	EXPECT_EQ(Play.Player->GetPawn(), nullptr);
	EXPECT_EQ((Call<float>(Health, TEXT("TakeDamage"), 1.0f)), 0.0f);
}
