#include "HotReloadModule.h"

#include "HAL/HostClock.h"
#include "HAL/PlatformProcess.h"
#include "HostGameModules.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/OutputDeviceRedirector.h"
#include "UObject/Package.h"
#include "UObject/ReflectedTypeReload.h"

DEFINE_LOG_CATEGORY_STATIC(LogHotReload, Log, All);

IMPLEMENT_MODULE(FHotReloadModule, HotReload)

namespace HotReloadModule
{
constexpr float PollSeconds = 0.005f;

FName GetPackageName(FName ModuleName)
{
	return FName(*(TEXT("/Script/") + ModuleName.ToString()));
}

TArray<FName> GetLoadedGameModules()
{
	TArray<FName> Names;
	for (const FString& Name : FGameBuild::GetProjectModules())
	{
		if (FModuleManager::Get().IsModuleLoaded(FName(*Name)))
		{
			Names.Add(FName(*Name));
		}
	}
	return Names;
}

/** False where the user has switched reloading off, as when another tool takes care of it. */
bool IsEnabled()
{
	bool bEnabled = true;
	if (GConfig)
	{
		GConfig->GetBool(TEXT("HotReload"), TEXT("bEnabled"), bEnabled, GEngineIni);
	}
	return bEnabled;
}
}

void FHotReloadModule::ShutdownModule()
{
	if (Build)
	{
		LetGoOfBuild();
	}
}

ECompilationResult::Type FHotReloadModule::DoHotReloadFromEditor(EHotReloadFlags Flags)
{
	TArray<UPackage*> Packages;
	for (const FName& Module : HotReloadModule::GetLoadedGameModules())
	{
		// Modules that declare no reflected type have no package.
		if (UPackage* const Package =
				FindObject<UPackage>(nullptr, *HotReloadModule::GetPackageName(Module).ToString()))
		{
			Packages.Add(Package);
		}
	}
	// There is no package to ask for where the modules could not be loaded so far.
	return Packages.IsEmpty() && FHostGameModules::AreSomeNotLoaded() ? Compile(Flags, *GLog)
																	  : RebindPackages(Packages, Flags, *GLog);
}

ECompilationResult::Type FHotReloadModule::RebindPackages(
	const TArray<UPackage*>& Packages, EHotReloadFlags Flags, FOutputDevice& Ar)
{
	if (Packages.IsEmpty())
	{
		Ar.Serialize(TEXT("RebindPackages not possible (no packages specified)"), ELogVerbosity::Warning,
			LogHotReload.GetCategoryName());
		return ECompilationResult::Unsupported;
	}
	return Compile(Flags, Ar);
}

ECompilationResult::Type FHotReloadModule::Compile(EHotReloadFlags Flags, FOutputDevice& Ar)
{
	const bool bWait = EnumHasAnyFlags(Flags, EHotReloadFlags::WaitForCompletion);
	if (!StartBuild(Ar))
	{
		return ECompilationResult::Unsupported;
	}
	return bWait ? FinishBuild() : ECompilationResult::Succeeded;
}

bool FHotReloadModule::StartBuild(FOutputDevice& Ar)
{
	checkf(IsInGameThread(), TEXT("Compiles are started on the game thread"));
	FText FailReason;
	TUniquePtr<FGameBuild> NewBuild = MakeUnique<FGameBuild>();
	if (IsCurrentlyCompiling())
	{
		FailReason = FText::FromString(TEXT("another compile is going on"));
	}
	else if (!HotReloadModule::IsEnabled())
	{
		FailReason = FText::FromString(TEXT("hot reload is switched off ([HotReload] bEnabled=False)"));
	}
	else if (NewBuild->Start(FailReason))
	{
		Build = MoveTemp(NewBuild);
		Output.Empty();
		FHostClock::Get().Hold();
		TickerHandle = FTSTicker::GetCoreTicker().AddTicker(
			TEXT("HotReload"), 0.0f, [this](float DeltaTime) { return Tick(DeltaTime); });
		return true;
	}
	Ar.Serialize(*(TEXT("The compile was not started: ") + FailReason.ToString()), ELogVerbosity::Warning,
		LogHotReload.GetCategoryName());
	return false;
}

ECompilationResult::Type FHotReloadModule::FinishBuild()
{
	while (Tick(0.0f))
	{
		FPlatformProcess::Sleep(HotReloadModule::PollSeconds);
	}
	return LastResult;
}

bool FHotReloadModule::Tick(float)
{
	if (!Build)
	{
		return false;
	}
	const bool bRuns = Build->Tick();
	LogLines();
	if (!bRuns)
	{
		EndBuild();
	}
	return bRuns;
}

void FHotReloadModule::LogLines()
{
	for (const FString& Line : Build->TakeLines())
	{
		UE_LOG(LogHotReload, Log, TEXT("%s"), *Line);
		Output += Line + LINE_TERMINATOR;
	}
}

void FHotReloadModule::EndBuild()
{
	ECompilationResult::Type Result = Build->GetResult();
	const TArray<TPair<FName, FString>> Libraries = Build->GetLibraries();
	const FString Printed = MoveTemp(Output);
	// What handles the event may start the next compile.
	LetGoOfBuild();
	const bool bLoad = Result == ECompilationResult::Succeeded ||
					   (Result == ECompilationResult::UpToDate && FHostGameModules::AreSomeNotLoaded());
	if (bLoad && !ReloadModules(Libraries))
	{
		Result = ECompilationResult::OtherCompilationError;
	}
	const bool bFailed = ECompilationResult::Failed(Result) && Result != ECompilationResult::Canceled;
	UE_CLOG(bFailed, LogHotReload, Warning, TEXT("The compile has failed"));
	UE_CLOG(!bFailed, LogHotReload, Log, TEXT("The compile has ended: %s"), ECompilationResult::ToString(Result));
	LastResult = Result;
	FinishedEvent.Broadcast(Printed, Result, bFailed);
}

bool FHotReloadModule::ReloadModules(const TArray<TPair<FName, FString>>& Libraries)
{
	bool bAllReloaded = true;
	for (const TPair<FName, FString>& Library : Libraries)
	{
		if (!FModuleManager::Get().IsModuleLoaded(Library.Key))
		{
			bAllReloaded &= LoadForTheFirstTime(Library.Key, Library.Value);
			continue;
		}
		const FReflectedTypeReload Types(HotReloadModule::GetPackageName(Library.Key));
		bAllReloaded &= FModuleManager::Get().ReloadModule(Library.Key, Library.Value);
		ReloadedModules.AddUnique(Library.Key);
		UE_LOG(LogHotReload, Log, TEXT("%s was reloaded: %d types are new"), *Library.Key.ToString(),
			Types.NumReplacedTypes());
	}
	FCoreUObjectDelegates::ReloadCompleteDelegate.Broadcast(EReloadCompleteReason::HotReloadManual);
	return bAllReloaded;
}

bool FHotReloadModule::LoadForTheFirstTime(FName Module, const FString& Library)
{
	FModuleManager::Get().AddModuleLibrary(Module, Library);
	const bool bLoaded = FModuleManager::Get().LoadModule(Module) != nullptr;
	UE_CLOG(bLoaded, LogHotReload, Log, TEXT("%s was loaded for the first time"), *Module.ToString());
	return bLoaded;
}

void FHotReloadModule::LetGoOfBuild()
{
	Build.Reset();
	FTSTicker::RemoveTicker(TickerHandle);
	FHostClock::Get().Release();
}

void FHotReloadModule::RequestStopCompilation()
{
	if (Build)
	{
		Build->RequestStop();
	}
}

bool FHotReloadModule::IsAnyGameModuleLoaded()
{
	return !HotReloadModule::GetLoadedGameModules().IsEmpty();
}

FString FHotReloadModule::GetModuleCompileMethod(FName InModuleName)
{
	if (ReloadedModules.Contains(InModuleName))
	{
		return TEXT("Runtime");
	}
	return FModuleManager::Get().IsModuleLoaded(InModuleName) ? TEXT("External") : TEXT("Unknown");
}
