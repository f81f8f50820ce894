#include "HttpModule.h"

#include "CoreGlobals.h"
#include "CurlHttpRequest.h"
#include "GenericPlatform/GenericPlatformHttp.h"
#include "HAL/HostClock.h"
#include "HttpManagerState.h"
#include "Misc/ConfigCacheIni.h"
#include "Modules/ModuleManager.h"

IMPLEMENT_MODULE(FHttpModule, HTTP)

void FHttpManager::FState::Start(const TSharedRef<FCurlHttpRequest>& Request)
{
	InFlight.Add(Request);
	FHostClock::Get().Hold();
	curl_multi_add_handle(Multi, Request->GetHandle());
}

void FHttpManager::FState::End(const TSharedRef<FCurlHttpRequest>& Request, CURLcode Result)
{
	curl_multi_remove_handle(Multi, Request->GetHandle());
	InFlight.Remove(Request);
	FHostClock::Get().Release();
	Request->Finish(Result);
}

void FHttpManager::FState::Arrived(const TSharedRef<FCurlHttpRequest>& Request, CURLcode Result)
{
	const ERedirect Redirect = Result == CURLE_OK ? Request->FollowRedirect() : ERedirect::None;
	if (Redirect == ERedirect::Follow)
	{
		curl_multi_remove_handle(Multi, Request->GetHandle());
		curl_multi_add_handle(Multi, Request->GetHandle());
		return;
	}
	End(Request, Redirect == ERedirect::TooMany ? CURLE_TOO_MANY_REDIRECTS : Result);
}

FHttpManager::FHttpManager()
	: State(std::make_unique<FState>())
{
}

FHttpManager::~FHttpManager() = default;

bool FHttpManager::HasRequestsInFlight() const
{
	return !State->InFlight.IsEmpty();
}

void FHttpManager::Tick(float DeltaSeconds)
{
	checkf(IsInGameThread(), TEXT("HTTP is driven from the game thread"));
	int NumRunning = 0;
	curl_multi_perform(State->Multi, &NumRunning);

	const TArray<TSharedRef<FCurlHttpRequest>> Snapshot = State->InFlight;
	for (const TSharedRef<FCurlHttpRequest>& Request : Snapshot)
	{
		if (Request->IsCancelled())
		{
			State->End(Request, CURLE_ABORTED_BY_CALLBACK);
		}
	}
	int NumQueued = 0;
	while (const CURLMsg* Message = curl_multi_info_read(State->Multi, &NumQueued))
	{
		const TSharedRef<FCurlHttpRequest>* Request = State->InFlight.FindByPredicate(
			[Message](const TSharedRef<FCurlHttpRequest>& Each) { return Each->GetHandle() == Message->easy_handle; });
		if (Message->msg == CURLMSG_DONE && Request)
		{
			State->Arrived(TSharedRef<FCurlHttpRequest>(*Request), Message->data.result);
		}
	}
}

void FHttpManager::WaitForActivity(float MaxSeconds)
{
	if (HasRequestsInFlight())
	{
		curl_multi_poll(State->Multi, nullptr, 0, static_cast<int>(MaxSeconds * 1000.0f), nullptr);
	}
}

void FHttpManager::Shutdown()
{
	// The delegates may well try once more.
	State->bClosed = true;
	while (HasRequestsInFlight())
	{
		State->End(TSharedRef<FCurlHttpRequest>(State->InFlight[0]), CURLE_ABORTED_BY_CALLBACK);
	}
}

FHttpModule& FHttpModule::Get()
{
	checkf(IsInGameThread(), TEXT("The HTTP module is used on the game thread"));
	return FModuleManager::LoadModuleChecked<FHttpModule>(TEXT("HTTP"));
}

void FHttpModule::StartupModule()
{
	curl_global_init(CURL_GLOBAL_DEFAULT);
	if (GConfig)
	{
		GConfig->GetFloat(TEXT("HTTP"), TEXT("HttpConnectionTimeout"), ConnectionTimeoutSeconds, GEngineIni);
		GConfig->GetFloat(TEXT("HTTP"), TEXT("HttpActivityTimeout"), ActivityTimeoutSeconds, GEngineIni);
		GConfig->GetFloat(TEXT("HTTP"), TEXT("HttpTotalTimeout"), TotalTimeoutSeconds, GEngineIni);
		GConfig->GetInt(TEXT("HTTP"), TEXT("MaxResponseBytes"), MaxResponseBytes, GEngineIni);
	}
	Manager = MakeUnique<FHttpManager>();
}

void FHttpModule::ShutdownModule()
{
	Manager->Shutdown();
	Manager.Reset();
	curl_global_cleanup();
}

TSharedRef<IHttpRequest, ESPMode::ThreadSafe> FHttpModule::CreateRequest()
{
	return MakeShared<FCurlHttpRequest>();
}

FString FGenericPlatformHttp::UrlEncode(const FString& UnencodedString)
{
	const FTCHARToUTF8 Utf8(*UnencodedString, UnencodedString.Len());
	FString Encoded;
	for (int32 Index = 0; Index < Utf8.Length(); ++Index)
	{
		const uint8 Byte = static_cast<uint8>(Utf8.Get()[Index]);
		const bool bPlain = FChar::IsAlnum(Byte) || Byte == '-' || Byte == '_' || Byte == '.' || Byte == '~';
		bPlain ? Encoded.AppendChar(static_cast<TCHAR>(Byte))
			   : Encoded.Appendf(TEXT("%%%02X"), static_cast<int32>(Byte));
	}
	return Encoded;
}
