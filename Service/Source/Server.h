#pragma once

#include "Backend.h"
#include "Certificates.h"
#include "ConnectionWatch.h"
#include "Options.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace httplib
{
class SSLServer;
struct Request;
struct Response;
}

/**
 * The service's two endpoints over HTTPS, below any path: POST …/command and GET …/status?request_id=….
 * It listens on this machine only.
 */
class Server
{
public:
	/** @throws std::runtime_error when the certificates cannot be made or the port is taken */
	Server(const Options& InOptions, Backend& InBackend);
	~Server();

	int GetPort() const { return Port; }
	const CertificateFiles& GetCertificates() const { return Certificates; }
	/**
	 * Serves until Stop is called from another thread. Requests in flight are answered first, as far as their clients
	 * take the answers within seconds; delays of a script are cut short.
	 */
	void Run();
	void Stop();

private:
	void AddRoutes();
	HttpReply Command(const httplib::Request& Request);
	void Answer(httplib::Response& Response, const std::function<HttpReply()>& Make);

	const Options Settings;
	const CertificateFiles Certificates;
	Backend& Answers;
	std::unique_ptr<httplib::SSLServer> Https;
	std::unique_ptr<ConnectionWatch> Watch;
	int Port = 0;
	std::mutex StopMutex;
	std::condition_variable Stopping;
	bool bStopping = false;
};
