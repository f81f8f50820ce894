#pragma once

#include "Access.h"
#include "Backend.h"
#include "Certificates.h"
#include "ConnectionWatch.h"
#include "OperatorPages.h"
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
 * It listens on this machine only, unless clients need keys.
 */
class Server
{
public:
	/**
	 * @param Store  has named keys, and what the operator page shows; null where there is none
	 * @throws std::runtime_error when the certificates cannot be made, the port is taken or everybody could get in
	 */
	Server(const Options& InOptions, Backend& InBackend, ModelStore* Store = nullptr);
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
	HttpReply Command(const httplib::Request& Request, const std::string& KeyName);
	/** @return the name of the request's key; nothing, with the response made, if it may not come in */
	std::optional<std::string> Admit(const httplib::Request& Request, httplib::Response& Response) const;
	void Answer(httplib::Response& Response, const std::function<HttpReply()>& Make);

	const Options Settings;
	const CertificateFiles Certificates;
	Backend& Answers;
	const std::unique_ptr<KeyRing> Keys; // null without a store
	const Access Allowed;
	OperatorPages Pages;
	std::unique_ptr<httplib::SSLServer> Https;
	std::unique_ptr<ConnectionWatch> Watch;
	int Port = 0;
	std::mutex StopMutex;
	std::condition_variable Stopping;
	bool bStopping = false;
};
