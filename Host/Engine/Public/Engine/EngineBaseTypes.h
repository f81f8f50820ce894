#pragma once

#include "Containers/EnumAsByte.h"
#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "EngineBaseTypes.generated.h"

class AActor;
class UActorComponent;
class ULevel;
class UWorld;

/** What moves on in a tick of the world. */
enum ELevelTick
{
	LEVELTICK_TimeOnly = 0,      // the time alone
	LEVELTICK_ViewportsOnly = 1, // what ticks in the editor's viewports; nothing here does
	LEVELTICK_All = 2,
	LEVELTICK_PauseTick = 3, // what ticks while the game is paused
};

/** When in a frame something ticks: groups come one after the other, in this order. */
UENUM(BlueprintType)
enum ETickingGroup : int
{
	TG_PrePhysics UMETA(DisplayName = "Pre Physics"),
	TG_StartPhysics UMETA(Hidden),
	TG_DuringPhysics UMETA(DisplayName = "During Physics"),
	TG_EndPhysics UMETA(Hidden),
	TG_PostPhysics UMETA(DisplayName = "Post Physics"),
	TG_PostUpdateWork UMETA(DisplayName = "Post Update Work"),
	TG_LastDemotable UMETA(Hidden),
	TG_NewlySpawned UMETA(Hidden),
	TG_MAX,
};

UENUM(BlueprintType, meta = (ScriptName = "InputEventType"))
enum EInputEvent : int
{
	IE_Pressed = 0,
	IE_Released = 1,
	IE_Repeat = 2,
	IE_DoubleClick = 3,
	IE_Axis = 4,
	IE_MAX = 5,
};

/** Why something's play ends. */
UENUM(BlueprintType)
namespace EEndPlayReason
{
enum Type : int
{
	/** The actor or component is destroyed explicitly. */
	Destroyed,
	/** The world is changed for another. */
	LevelTransition,
	/** Play in the editor ends. */
	EndPlayInEditor,
	/** The level is streamed out. */
	RemovedFromWorld,
	/** The application ends. */
	Quit,
};
}

/** Where a game is to be played: a map, and options such as "game=/Script/Module.GameMode". */
USTRUCT()
struct FURL
{
	GENERATED_BODY()

	UPROPERTY()
	FString Map;

	UPROPERTY()
	TArray<FString> Op;

	/** What stands behind Match ("game=") in an option; Default when there is no such option. */
	const TCHAR* GetOption(const TCHAR* Match, const TCHAR* Default) const;
	bool HasOption(const TCHAR* Test) const { return GetOption(Test, nullptr) != nullptr; }
	void AddOption(const TCHAR* Str) { Op.Add(Str); }
};

/**
 * Something that the world calls once a frame, or less often, as long as it is registered and enabled.
 *
 * Copying takes over the settings and not the registration.
 */
USTRUCT()
struct FTickFunction
{
	GENERATED_BODY()

	FTickFunction();
	FTickFunction(const FTickFunction& Other);
	FTickFunction& operator=(const FTickFunction& Other);
	virtual ~FTickFunction();

	UPROPERTY(EditDefaultsOnly, Category = "Tick", AdvancedDisplay)
	TEnumAsByte<ETickingGroup> TickGroup = TG_PrePhysics;

	UPROPERTY(EditDefaultsOnly, Category = "Tick", AdvancedDisplay)
	uint8 bTickEvenWhenPaused : 1;

	/** If not, it is never even registered. For constructors. */
	UPROPERTY()
	uint8 bCanEverTick : 1;

	UPROPERTY(EditDefaultsOnly, Category = "Tick")
	uint8 bStartWithTickEnabled : 1;

	/** Seconds between two ticks; 0 ticks each frame. */
	UPROPERTY(EditDefaultsOnly, Category = "Tick", meta = (DisplayName = "Tick Interval (secs)"))
	float TickInterval = 0.0f;

	void RegisterTickFunction(ULevel* Level);
	void UnRegisterTickFunction();
	bool IsTickFunctionRegistered() const { return World.IsValid(); }
	void SetTickFunctionEnable(bool bInEnabled);
	bool IsTickFunctionEnabled() const { return bEnabled; }

	/** For the world: runs the tick when its interval has passed. */
	void RunIfDue(float DeltaTime, ELevelTick TickType);

protected:
	/** DeltaTime is the time since the last run, in seconds. */
	virtual void Run(float DeltaTime, ELevelTick TickType) {}

private:
	TWeakObjectPtr<UWorld> World;
	bool bEnabled = false;
	float SecondsSinceRun = 0.0f;
};

USTRUCT()
struct FActorTickFunction : public FTickFunction
{
	GENERATED_BODY()

	FActorTickFunction() = default;
	FActorTickFunction(const FActorTickFunction& Other)
		: FTickFunction(Other)
	{
	}
	FActorTickFunction& operator=(const FActorTickFunction& Other)
	{
		FTickFunction::operator=(Other);
		return *this;
	}

	AActor* Target = nullptr; // stays the same when settings are copied

protected:
	void Run(float DeltaTime, ELevelTick TickType) override;
};

USTRUCT()
struct FActorComponentTickFunction : public FTickFunction
{
	GENERATED_BODY()

	FActorComponentTickFunction() = default;
	FActorComponentTickFunction(const FActorComponentTickFunction& Other)
		: FTickFunction(Other)
	{
	}
	FActorComponentTickFunction& operator=(const FActorComponentTickFunction& Other)
	{
		FTickFunction::operator=(Other);
		return *this;
	}

	UActorComponent* Target = nullptr; // stays the same when settings are copied

protected:
	void Run(float DeltaTime, ELevelTick TickType) override;
};
