#pragma once

#include "Server.h"
#include "TestFolder.h"

#include <httplib.h>
#include <memory>
#include <thread>

/** A service that runs until the end of a test, and clients that trust its authority. */
class RunningServer
{
public:
	RunningServer(const Responder& Chosen, Options Settings)
	{
		Settings.StateFolder = Folder.Path + "/state";
		Https = std::make_unique<Server>(Settings, Chosen);
		Thread = std::thread([this] { Https->Run(); });
	}
	~RunningServer() { Stop(); }
	RunningServer(const RunningServer&) = delete;
	RunningServer& operator=(const RunningServer&) = delete;

	/** Returns when every thread of it has ended. */
	void Stop()
	{
		if (Thread.joinable())
		{
			Https->Stop();
			Thread.join();
		}
	}
	std::unique_ptr<httplib::SSLClient> MakeClient() const
	{
		auto Client = std::make_unique<httplib::SSLClient>("localhost", Https->GetPort());
		Client->set_ca_cert_path(Https->GetCertificates().Authority.c_str());
		Client->enable_server_certificate_verification(true);
		return Client;
	}
	int GetPort() const { return Https->GetPort(); }
	std::string GetStateFolder() const { return Folder.Path + "/state"; }

private:
	const TestFolder Folder;
	std::unique_ptr<Server> Https;
	std::thread Thread;
};
