#pragma once

#include "Certificates.h"
#include "ConversationStore.h"
#include "Options.h"

#include <memory>

namespace httplib
{
class SSLServer;
}

/**
 * The service's two endpoints over HTTPS, below any path: POST …/command and GET …/status?request_id=….
 * It listens on this machine only.
 */
class Server
{
public:
	/** @throws std::runtime_error when the certificates cannot be made or the port is taken */
	Server(const Options& InOptions, const Responder& InResponder);
	~Server();

	int GetPort() const { return Port; }
	const CertificateFiles& GetCertificates() const { return Certificates; }
	/** Serves until Stop is called from another thread; requests in flight are answered first. */
	void Run();
	void Stop();

private:
	void AddRoutes();

	const Options Settings;
	const CertificateFiles Certificates;
	ConversationStore Store;
	std::unique_ptr<httplib::SSLServer> Https;
	int Port = 0;
};
