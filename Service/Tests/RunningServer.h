#pragma once

#include "ConversationStore.h"
#include "Server.h"
#include "TestFolder.h"

#include <httplib.h>
#include <memory>
#include <thread>

/** The conversations of a responder. */
template <typename ResponderType, typename... ArgumentTypes>
std::unique_ptr<Backend> AnswerWith(ArgumentTypes&&... Arguments)
{
	return std::make_unique<ConversationStore>(
		std::make_unique<ResponderType>(std::forward<ArgumentTypes>(Arguments)...));
}

/** A service that runs until the end of a test, and clients that trust its authority. */
class RunningServer
{
public:
	RunningServer(std::unique_ptr<Backend> Chosen, Options Settings, ModelStore* Store = nullptr)
		: Answers(std::move(Chosen))
	{
		Settings.StateFolder = Folder.Path + "/state";
		Https = std::make_unique<Server>(Settings, *Answers, Store);
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
			Answers->Stop();
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
	const std::unique_ptr<Backend> Answers;
	std::unique_ptr<Server> Https;
	std::thread Thread;
};
