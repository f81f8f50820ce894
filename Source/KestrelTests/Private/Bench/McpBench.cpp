#include "Containers/Ticker.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformTime.h"
#include "HttpRequestHandler.h"
#include "HttpServerModule.h"
#include "HttpServerRequest.h"
#include "HttpServerResponse.h"
#include "IHttpRouter.h"
#include "Mcp/McpServer.h"
#include "Misc/CommandLine.h"
#include "Misc/FileHelper.h"
#include "Misc/Parse.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"

/**
 * What the server for other assistants adds to the engine's HTTP server: beside it, on the same port, stand a handler
 * with nothing behind it, and one that reads the file that clients read. The launcher asks all of them, and ends the
 * test by making a file.
 */
namespace McpBench
{
constexpr int32 BareLength = 8 * 1024; // characters, as many as the list of tools has
constexpr double MillisecondsPerSecond = 1000.0;

/** The files are this one with an extension: "bare" with the bare handler's port, "stop", and "frames". */
FString ReportFile()
{
	FString File;
	FParse::Value(FCommandLine::Get(), TEXT("-KestrelMcpBench="), File);
	return File;
}

class FBareHandler : public IAutomationLatentCommand
{
public:
	virtual bool Update() override
	{
		if (FKestrelMcpServer::Get().GetState() != EKestrelMcpServerState::Listening)
		{
			return false;
		}
		if (!Router.IsValid())
		{
			Bind();
			return false;
		}
		if (FrameStart > 0)
		{
			Milliseconds.Add(
				FPlatformTime::ToSeconds64(FPlatformTime::Cycles64() - FrameStart) * MillisecondsPerSecond);
		}
		if (!IFileManager::Get().FileExists(*(ReportFile() + TEXT(".stop"))))
		{
			return false;
		}
		FTSTicker::RemoveTicker(Ticker);
		for (const FHttpRouteHandle& Route : Routes)
		{
			Router->UnbindRoute(Route);
		}
		Report();
		return true;
	}

private:
	void Bind()
	{
		const FString Text = FString::ChrN(BareLength, TEXT('x'));
		FString Port = FKestrelMcpServer::Get().GetUrl();
		Port = Port.RightChop(FCString::Strlen(TEXT("http://127.0.0.1:")));
		Router = FHttpServerModule::Get().GetHttpRouter(static_cast<uint32>(FCString::Atoi(*Port)), true);
		Routes = { Bind(TEXT("/bare"), [Text]() { return Text; }), Bind(TEXT("/file"), []() {
					  FString Contents;
					  FFileHelper::LoadFileToString(Contents, *(FPaths::ProjectDir() / TEXT("Config/DefaultGame.ini")));
					  return Contents;
				  }) };
		// The core ticker comes first in a frame, and the tests last.
		Ticker = FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateLambda([this](float) {
			FrameStart = FPlatformTime::Cycles64();
			return true;
		}));
		FFileHelper::SaveStringToFile(TEXT("ready"), *(ReportFile() + TEXT(".bare")));
	}

	FHttpRouteHandle Bind(const TCHAR* Path, TFunction<FString()> MakeText)
	{
		return Router->BindRoute(FHttpPath(Path), EHttpServerRequestVerbs::VERB_POST,
			FHttpRequestHandler::CreateLambda(
				[MakeText](const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete) {
					OnComplete(FHttpServerResponse::Create(MakeText(), TEXT("text/plain")));
					return true;
				}));
	}

	void Report()
	{
		Milliseconds.Sort();
		constexpr double Share = 0.99;
		const int32 Index = FMath::Min(static_cast<int32>(Milliseconds.Num() * Share), Milliseconds.Num() - 1);
		FFileHelper::SaveStringToFile(
			FString::Printf(TEXT("%f %d"), Milliseconds[Index], Milliseconds.Num()), *(ReportFile() + TEXT(".frames")));
	}

	TSharedPtr<IHttpRouter> Router;
	TArray<FHttpRouteHandle> Routes;
	FTSTicker::FDelegateHandle Ticker;
	uint64 FrameStart = 0;       // cycles
	TArray<double> Milliseconds; // of the work in each frame
};
}

/** It exists only with -KestrelMcpBench=<file>. */
IMPLEMENT_COMPLEX_AUTOMATION_TEST(FKestrelMcpBench, "KestrelMcpBench", KestrelTest::Flags)

void FKestrelMcpBench::GetTests(TArray<FString>& OutBeautifiedNames, TArray<FString>& OutTestCommands) const
{
	if (!McpBench::ReportFile().IsEmpty())
	{
		OutBeautifiedNames.Add(TEXT("Server"));
		OutTestCommands.Add(TEXT("Server"));
	}
}

bool FKestrelMcpBench::RunTest(const FString& Parameters)
{
	ADD_LATENT_AUTOMATION_COMMAND(McpBench::FBareHandler());
	return true;
}
