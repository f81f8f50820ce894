#include "CheckConfig.h"
#include "ConnectCommand.h"
#include "ConversationStore.h"
#include "KeyCommand.h"
#include "Log.h"
#include "ModelBackend.h"
#include "OfflineResponder.h"
#include "Platform.h"
#include "ScriptResponder.h"
#include "Server.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <thread>

namespace
{
std::unique_ptr<Responder> MakeResponder(const Options& Settings)
{
	if (Settings.Responder == "script")
	{
		return std::make_unique<ScriptResponder>(Settings.ScriptFolder);
	}
	return std::make_unique<OfflineResponder>();
}

/** What answers, and where it keeps what lasts, if anywhere. */
struct Answering
{
	std::shared_ptr<ModelStore> Store;
	std::unique_ptr<Backend> Answers;
};

Answering MakeAnswering(const Options& Settings)
{
	if (Settings.Responder != "model")
	{
		return { nullptr, std::make_unique<ConversationStore>(MakeResponder(Settings)) };
	}
	ModelConfig Config = ModelConfig::Load(Settings.ConfigFile);
	LogContent(Config.bLogContent);
	const std::shared_ptr<ModelStore> Store = OpenModelStore(Config.Database, Settings.StateFolder);
	return { Store, std::make_unique<ModelBackend>(std::move(Config), Store) };
}

/** Under its final name only when it is whole: somebody waits for it. */
void WriteReadyFile(const std::string& Path, const Server& Https)
{
	const Json Content = { { "port", Https.GetPort() },
		{ "authority", std::filesystem::absolute(Https.GetCertificates().Authority).string() } };
	const std::string Temporary = Path + ".tmp";
	std::ofstream File(Temporary);
	File << Content.dump(2) << "\n";
	File.close();
	if (!File)
	{
		throw std::runtime_error("The ready file cannot be written: " + Temporary + ": " + std::strerror(errno));
	}
	std::filesystem::rename(Temporary, Path);
}

void Serve(const Options& Settings)
{
	Platform::BeginWaitingForStop();
	const auto [Store, Answers] = MakeAnswering(Settings);
	Server Https(Settings, *Answers, Store.get());
	if (!Settings.ReadyFile.empty())
	{
		WriteReadyFile(Settings.ReadyFile, Https);
	}
	std::thread Waiter([&Https, Stopped = Answers.get()] {
		Platform::WaitForStop();
		Stopped->Stop();
		Https.Stop();
	});
	std::cout << "Listening on https://" << Settings.Listen << ":" << Https.GetPort() << "/ (" << Settings.Responder
			  << ")" << std::endl;
	Https.Run();
	// Run also ends by itself, when the socket is lost: the waiter must not be left behind.
	Platform::EndWaitingForStop();
	Waiter.join();
	std::cout << "Stopped." << std::endl;
}

int RunAndReport(const std::function<void()>& Work)
{
	try
	{
		Work();
		return 0;
	}
	catch (const std::exception& Error)
	{
		std::cerr << Error.what() << "\n";
		return 1;
	}
}

int CheckConfigAndReport(const std::string& Path)
{
	try
	{
		return CheckConfig(Path, std::cout) ? 0 : 1;
	}
	catch (const std::exception& Error)
	{
		std::cout << "Configuration: no:\n" << Error.what() << std::endl;
		return 1;
	}
}
}

int main(int ArgC, char** ArgV)
{
	if (ArgC == 3 && std::strcmp(ArgV[1], "check-config") == 0)
	{
		return CheckConfigAndReport(ArgV[2]);
	}
	if (ArgC > 1 && std::strcmp(ArgV[1], "keys") == 0)
	{
		return RunAndReport([&] { RunKeyCommand({ ArgV + 2, ArgV + ArgC }, std::cout); });
	}
	if (ArgC > 1 && (std::strcmp(ArgV[1], "connect") == 0 || std::strcmp(ArgV[1], "disconnect") == 0))
	{
		bool bAgreed = false;
		const int Code = RunAndReport([&] {
			bAgreed = RunConnectCommand({ ArgV + 1, ArgV + ArgC }, std::cin, std::cout);
		});
		return bAgreed ? 0 : std::max(Code, 1);
	}
	Options Settings;
	try
	{
		Settings = Options::Parse(ArgC, ArgV);
	}
	catch (const std::exception& Error)
	{
		std::cerr << Error.what() << "\n" << Options::Usage();
		return 2;
	}
	return RunAndReport([&] { Serve(Settings); });
}
