#include "HttpServerModule.h"

#include "CoreGlobals.h"
#include "HttpListener.h"
#include "Misc/ConfigCacheIni.h"
#include "Modules/ModuleManager.h"

IMPLEMENT_MODULE(FHttpServerModule, HTTPServer)

namespace HttpServerModule
{
const FName Name("HTTPServer");

FHttpListener::FArrivals& GetArrivals()
{
	static FHttpListener::FArrivals Arrivals;
	return Arrivals;
}

FString GetBindAddress()
{
	FString Address;
	if (GConfig)
	{
		GConfig->GetString(TEXT("HTTPServer.Listeners"), TEXT("DefaultBindAddress"), Address, GEngineIni);
	}
	const bool bLocal = Address.IsEmpty() || Address.Equals(TEXT("localhost"));
	return bLocal ? TEXT("127.0.0.1") : Address.Equals(TEXT("any")) ? TEXT("0.0.0.0") : Address;
}
}

FHttpServerModule::FHttpServerModule() = default;
FHttpServerModule::~FHttpServerModule() = default;

FHttpServerModule& FHttpServerModule::Get()
{
	checkf(IsInGameThread(), TEXT("The HTTPServer module is used on the game thread"));
	return FModuleManager::LoadModuleChecked<FHttpServerModule>(HttpServerModule::Name);
}

bool FHttpServerModule::IsAvailable()
{
	return FModuleManager::Get().IsModuleLoaded(HttpServerModule::Name);
}

void FHttpServerModule::StartupModule()
{
}

void FHttpServerModule::ShutdownModule()
{
	Listeners.Empty();
}

TSharedPtr<IHttpRouter> FHttpServerModule::GetHttpRouter(uint32 Port, bool bFailOnBindFailure)
{
	TSharedPtr<FHttpListener> Listener = Listeners.FindRef(Port);
	if (!Listener)
	{
		Listener = MakeShared<FHttpListener>(Port, HttpServerModule::GetArrivals());
		if (bFailOnBindFailure && !Listener->Bind(HttpServerModule::GetBindAddress()))
		{
			return nullptr;
		}
		Listeners.Add(Port, Listener);
		if (bListens && Listener->Bind(HttpServerModule::GetBindAddress()))
		{
			Listener->Start();
		}
	}
	return Listener->Router;
}

void FHttpServerModule::StartAllListeners()
{
	bListens = true;
	for (const auto& Pair : Listeners)
	{
		if (Pair.Value->Bind(HttpServerModule::GetBindAddress()))
		{
			Pair.Value->Start();
		}
	}
}

bool FHttpServerModule::Tick(float DeltaTime)
{
	checkf(IsInGameThread(), TEXT("Requests are handled on the game thread"));
	TArray<TSharedPtr<FHttpListener>> All;
	Listeners.GenerateValueArray(All); // a handler may ask for another port
	for (const TSharedPtr<FHttpListener>& Listener : All)
	{
		Listener->Tick();
	}
	return true;
}

bool FHttpServerModule::HasWaitingRequests() const
{
	for (const auto& Pair : Listeners)
	{
		if (Pair.Value->HasWaitingRequests())
		{
			return true;
		}
	}
	return false;
}

void FHttpServerModule::WaitForRequests(float MaxSeconds)
{
	FHttpListener::FArrivals& Arrivals = HttpServerModule::GetArrivals();
	std::unique_lock<std::mutex> Lock(Arrivals.Mutex);
	Arrivals.Changed.wait_for(Lock, std::chrono::duration<float>(MaxSeconds), [&Arrivals] { return Arrivals.bAny; });
	Arrivals.bAny = false;
}
