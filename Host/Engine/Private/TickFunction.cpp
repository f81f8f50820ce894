#include "Components/ActorComponent.h"
#include "Engine/EngineBaseTypes.h"
#include "Engine/Level.h"
#include "Engine/World.h"
#include "GameFramework/Actor.h"

const TCHAR* FURL::GetOption(const TCHAR* Match, const TCHAR* Default) const
{
	const int32 Length = FCString::Strlen(Match);
	for (const FString& Option : Op)
	{
		if (FCString::Strnicmp(*Option, Match, Length) == 0)
		{
			return *Option + Length;
		}
	}
	return Default;
}

FTickFunction::FTickFunction()
	: bTickEvenWhenPaused(false)
	, bCanEverTick(false)
	, bStartWithTickEnabled(true)
{
}

FTickFunction::FTickFunction(const FTickFunction& Other)
	: FTickFunction()
{
	*this = Other;
}

FTickFunction& FTickFunction::operator=(const FTickFunction& Other)
{
	TickGroup = Other.TickGroup;
	bTickEvenWhenPaused = Other.bTickEvenWhenPaused;
	bCanEverTick = Other.bCanEverTick;
	bStartWithTickEnabled = Other.bStartWithTickEnabled;
	TickInterval = Other.TickInterval;
	return *this;
}

FTickFunction::~FTickFunction()
{
	UnRegisterTickFunction();
}

void FTickFunction::RegisterTickFunction(ULevel* Level)
{
	if (!IsTickFunctionRegistered() && bCanEverTick && Level)
	{
		World = Level->OwningWorld.Get();
		World->TickFunctions.Add(this);
		bEnabled = bStartWithTickEnabled;
		SecondsSinceRun = 0.0f;
	}
}

void FTickFunction::UnRegisterTickFunction()
{
	// The world may be on its way out together with what ticks in it.
	if (UWorld* const Present = World.GetEvenIfUnreachable())
	{
		Present->TickFunctions.Remove(this);
	}
	World.Reset();
	bEnabled = false;
}

void FTickFunction::SetTickFunctionEnable(bool bInEnabled)
{
	// Before it is registered, it says how to begin.
	if (!IsTickFunctionRegistered())
	{
		bStartWithTickEnabled = bInEnabled;
	}
	else if (bEnabled != bInEnabled)
	{
		bEnabled = bInEnabled;
		SecondsSinceRun = 0.0f;
	}
}

void FTickFunction::RunIfDue(float DeltaTime, ELevelTick TickType)
{
	SecondsSinceRun += DeltaTime;
	if (!bEnabled || SecondsSinceRun < TickInterval || (TickType == LEVELTICK_PauseTick && !bTickEvenWhenPaused))
	{
		return;
	}
	const float SecondsPassed = SecondsSinceRun;
	SecondsSinceRun = 0.0f;
	Run(SecondsPassed, TickType);
}

void FActorTickFunction::Run(float DeltaTime, ELevelTick TickType)
{
	if (IsValid(Target) && !Target->IsActorBeingDestroyed())
	{
		Target->Tick(DeltaTime);
	}
}

void FActorComponentTickFunction::Run(float DeltaTime, ELevelTick TickType)
{
	if (IsValid(Target) && Target->IsRegistered())
	{
		Target->TickComponent(DeltaTime, TickType, this);
	}
}
