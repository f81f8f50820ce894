#include "CheckConfig.h"
#include "ConversationStore.h"
#include "ModelBackend.h"
#include "OfflineResponder.h"
#include "ScriptResponder.h"
#include "Server.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <pthread.h>
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

std::unique_ptr<Backend> MakeBackend(const Options& Settings)
{
	if (Settings.Responder != "model")
	{
		return std::make_unique<ConversationStore>(MakeResponder(Settings));
	}
	ModelConfig Config = ModelConfig::Load(Settings.ConfigFile);
	std::unique_ptr<ModelStore> Store = OpenModelStore(Config.Database, Settings.StateFolder);
	return std::make_unique<ModelBackend>(std::move(Config), std::move(Store));
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

/** From here on only WaitForStop sees the signals. */
sigset_t BlockStopSignals()
{
	sigset_t Signals;
	sigemptyset(&Signals);
	sigaddset(&Signals, SIGINT);
	sigaddset(&Signals, SIGTERM);
	pthread_sigmask(SIG_BLOCK, &Signals, nullptr);
	std::signal(SIGPIPE, SIG_IGN);
	// A file that reaches the limit of its size is reported like a full disk.
	std::signal(SIGXFSZ, SIG_IGN);
	return Signals;
}

int Serve(const Options& Settings)
{
	const sigset_t Signals = BlockStopSignals();
	const std::unique_ptr<Backend> Answers = MakeBackend(Settings);
	Server Https(Settings, *Answers);
	if (!Settings.ReadyFile.empty())
	{
		WriteReadyFile(Settings.ReadyFile, Https);
	}
	std::thread Waiter([&Https, &Answers, &Signals] {
		int Signal = 0;
		sigwait(&Signals, &Signal);
		Answers->Stop();
		Https.Stop();
	});
	std::cout << "Listening on https://127.0.0.1:" << Https.GetPort() << "/ (" << Settings.Responder << ")"
			  << std::endl;
	Https.Run();
	// Run also ends by itself, when the socket is lost: the waiter must not be left behind.
	pthread_kill(Waiter.native_handle(), SIGTERM);
	Waiter.join();
	std::cout << "Stopped." << std::endl;
	return 0;
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
	try
	{
		return Serve(Settings);
	}
	catch (const std::exception& Error)
	{
		std::cerr << Error.what() << "\n";
		return 1;
	}
}
