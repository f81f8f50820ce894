#include "Mcp/McpServer.h"

#include "Agent/Approval/ProjectDefaults.h"
#include "Agent/Text/DisplayText.h"
#include "Agent/Tools/ToolPlan.h"
#include "HttpModule.h"
#include "HttpServerModule.h"
#include "Interfaces/IHttpRequest.h"
#include "Interfaces/IHttpResponse.h"
#include "KestrelLog.h"
#include "KestrelSettings.h"
#include "Mcp/McpAccess.h"
#include "Mcp/McpApproval.h"
#include "Misc/App.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"

#define LOCTEXT_NAMESPACE "KestrelMcp"

namespace McpServer
{
constexpr int32 MaxPortsTried = 20;
constexpr float ProbeTimeoutSeconds = 10.0f;
constexpr float IdleCheckSeconds = 60.0f;
constexpr int32 ServiceUnavailable = 503;
constexpr int32 InternalError = -32603;
}

FKestrelMcpServer& FKestrelMcpServer::Get()
{
	static FKestrelMcpServer Instance;
	return Instance;
}

FKestrelMcpServer::FKestrelMcpServer()
{
	Dispatcher.GetCalls().OnChanged.AddLambda([this]() { OnChanged.Broadcast(); });
	Dispatcher.GetCalls().OnWithdrawn.BindRaw(this, &FKestrelMcpServer::NoteWithdrawn);
	Dispatcher.GetClients().OnChanged.AddLambda([this]() { OnChanged.Broadcast(); });
}

FKestrelMcpServer::~FKestrelMcpServer() = default;

bool FKestrelMcpServer::IsTurnedOnByProject() const
{
	return KestrelMcpApproval::GetAllowedByCommandLine().IsEmpty() &&
		   KestrelProjectDefaults::SetUserSetting(TEXT("bLetOtherAssistantsIn"));
}

bool FKestrelMcpServer::IsWanted() const
{
	const bool bIsAttended = !FApp::IsUnattended() && GetDefault<UKestrelSettings>()->bLetOtherAssistantsIn;
	return bIsAttended || !KestrelMcpApproval::GetAllowedByCommandLine().IsEmpty();
}

void FKestrelMcpServer::Initialize()
{
	if (!IsWanted())
	{
		return;
	}
	// Requests are handled in frames, and there are none while modules load.
	StartTicker = FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateLambda([this](float) {
		Start();
		return false;
	}));
}

void FKestrelMcpServer::Shutdown()
{
	FTSTicker::RemoveTicker(StartTicker);
	Stop();
}

void FKestrelMcpServer::ApplySettings()
{
	IsWanted() ? Start() : Stop();
}

void FKestrelMcpServer::Start()
{
	if (State == EKestrelMcpServerState::Starting || State == EKestrelMcpServerState::Listening)
	{
		return;
	}
	if (IsTurnedOnByProject())
	{
		Fail(LOCTEXT("ByProject",
			"The project's own configuration turns the server on, and only you can let other "
			"assistants in. Remove bLetOtherAssistantsIn from its EditorPerUserSettings.ini files."));
		return;
	}
	File = FKestrelMcpServerFile::ReadOrMake();
	for (int32 Tries = 0; Tries < McpServer::MaxPortsTried; ++Tries)
	{
		const FString ForeignAddress = KestrelMcpAccess::FindForeignBindAddress(File.Port);
		if (!ForeignAddress.IsEmpty())
		{
			Fail(FText::Format(
				LOCTEXT("ForeignAddress",
					"The project's configuration ([HTTPServer.Listeners] in DefaultEngine.ini) makes servers listen on {0}, "
					"where other machines reach them. Remove that, or leave other assistants out."),
				FText::FromString(KestrelDisplayText::EscapeLine(ForeignAddress))));
			return;
		}
		Endpoint = MakeShared<FKestrelMcpEndpoint>(Dispatcher, File.Port, File.Token);
		if (Endpoint->Bind())
		{
			break;
		}
		Endpoint.Reset();
		File.ChooseAnotherPort();
	}
	if (!Endpoint.IsValid())
	{
		Fail(LOCTEXT("NoPort", "No free port was found."));
		return;
	}
	Url = File.MakeUrl();
	State = EKestrelMcpServerState::Starting;
	Probe();
	OnChanged.Broadcast();
}

void FKestrelMcpServer::Probe()
{
	// Another program may have the port, whatever the engine's server thinks: the token is not for it.
	const FHttpRequestRef Request = FHttpModule::Get().CreateRequest();
	Request->SetVerb(TEXT("GET"));
	Request->SetURL(Url / Endpoint->GetNonce());
	Request->SetTimeout(McpServer::ProbeTimeoutSeconds);
	const TWeakPtr<FKestrelMcpEndpoint> Probed = Endpoint;
	Request->OnProcessRequestComplete().BindLambda([this, Probed](FHttpRequestPtr, FHttpResponsePtr, bool) {
		if (Probed.IsValid() && Probed.Pin() == Endpoint)
		{
			OnProbed();
		}
	});
	Request->ProcessRequest();
}

void FKestrelMcpServer::OnProbed()
{
	if (!Endpoint->WasProbed())
	{
		Fail(FText::Format(LOCTEXT("NotUs", "The server cannot be reached at {0}, or another program answers there."),
			FText::FromString(Url)));
		return;
	}
	// Whoever finds the address in it sends the token there.
	if (!File.Write())
	{
		Fail(FText::Format(LOCTEXT("NoFile", "The token could not be written for you alone: {0}"),
			FText::FromString(FKestrelMcpServerFile::GetPath())));
		return;
	}
	State = EKestrelMcpServerState::Listening;
	UE_LOG(LogKestrel, Log, TEXT("Listening for other assistants at %s"), *Url);
	IdleTicker = FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateLambda([this](float) {
		Dispatcher.GetClients().EndIdle();
		return true;
	}),
		McpServer::IdleCheckSeconds);
	OnChanged.Broadcast();
}

void FKestrelMcpServer::Fail(const FText& Reason)
{
	Stop();
	State = EKestrelMcpServerState::Failed;
	Failure = Reason;
	UE_LOG(LogKestrel, Warning, TEXT("Other assistants are not let in: %s"), *Reason.ToString());
	OnChanged.Broadcast();
}

void FKestrelMcpServer::Stop()
{
	FTSTicker::RemoveTicker(IdleTicker);
	Dispatcher.GetCalls().WithdrawAll(FKestrelMcpAnswer::Fail(
		McpServer::InternalError, TEXT("The server has been turned off in the editor"), McpServer::ServiceUnavailable));
	Dispatcher.GetClients().EndAll();
	if (Endpoint.IsValid() && FHttpServerModule::IsAvailable())
	{
		Endpoint->Unbind();
	}
	Endpoint.Reset();
	State = EKestrelMcpServerState::Off;
	Notice = FText::GetEmpty();
	OnChanged.Broadcast();
}

void FKestrelMcpServer::TurnOff()
{
	UKestrelSettings* Settings = GetMutableDefault<UKestrelSettings>();
	Settings->bLetOtherAssistantsIn = false;
	Settings->SaveConfig(CPF_Config);
	Stop();
}

void FKestrelMcpServer::NoteWithdrawn(const FKestrelMcpCall& Call)
{
	Notice = FText::Format(LOCTEXT("Withdrawn", "{0} no longer waits for this, and it was not run: {1} {2}"),
		FText::FromString(Call.Client->Name), Call.Plan->Verb,
		FText::FromString(KestrelDisplayText::EscapeLine(Call.Plan->Target.Left(200))));
}

#undef LOCTEXT_NAMESPACE
