#pragma once

#include "TestAuthority.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/**
 * An HTTPS server on this machine, one request a connection. What it does depends on the path:
 *
 * /echo          answers 200 with the request as it came in, head and body
 * /status/NNN    answers with that code and the body "status NNN"
 * /empty         answers 200 with some headers and no body
 * /bytes/N       answers 200 with N bytes
 * /wait          answers 200 after somebody asked for /release
 * /release       answers 200
 * /redirect/NNN  sends with that code to where the query says, and to /echo without one
 * /drop          closes the connection in the middle of a body
 */
class FTestHttpsServer
{
public:
	FTestHttpsServer(const FTestAuthority& Authority, const std::string& Names);
	/** Closes the connections that still wait. */
	~FTestHttpsServer();
	FTestHttpsServer(const FTestHttpsServer&) = delete;
	FTestHttpsServer& operator=(const FTestHttpsServer&) = delete;

	int GetPort() const { return Port; }
	/** Clients that have come, whether or not they sent a request. */
	int GetNumConnections() const { return NumConnections; }

private:
	void Accept();
	void Serve(int Socket);
	std::string Answer(const std::string& Request);
	void WaitForRelease();

	SSL_CTX* const Context;
	int Listener = -1;
	int Port = 0;
	std::atomic<bool> bStopping = false;
	std::atomic<int> NumConnections = 0;
	std::mutex Mutex;
	std::condition_variable Changed;
	bool bReleased = false;
	std::vector<std::thread> Connections;
	std::thread Acceptor;
};
