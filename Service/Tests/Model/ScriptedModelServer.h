#pragma once

#include "ModelRequest.h"

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/** What a scripted server does with one request. */
struct ScriptedReply
{
	enum class Ending
	{
		Close,
		Reset,  // as when the server's process is killed
		Silence // the connection stays open, and nothing more comes
	};

	std::string Head = "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\n\r\n"; // empty for none
	std::string Body;
	Ending End = Ending::Close;
	bool bByteByByte = false;
};

/** A reply in one of the formats: what a model says, as JSON {"text", "calls": [{"id", "name", "input"}], "usage"}. */
std::string RenderStream(ModelFormat Format, const Json& Said);

/**
 * A model server on this machine that plays replies in order, and checks each request: the form of the messages, one
 * result for each call, schemas, headers. A request that no reply is left for is an error too.
 */
class ScriptedModelServer
{
public:
	ScriptedModelServer(ModelFormat InFormat, std::vector<ScriptedReply> InReplies);
	~ScriptedModelServer();
	ScriptedModelServer(const ScriptedModelServer&) = delete;
	ScriptedModelServer& operator=(const ScriptedModelServer&) = delete;

	std::string GetUrl() const { return "http://127.0.0.1:" + std::to_string(Port) + "/v1"; }
	void Add(ScriptedReply Reply);
	/** The bodies so far. */
	std::vector<Json> GetRequests() const;
	size_t CountRequests() const { return GetRequests().size(); }
	/** Waits until the client has closed a connection that the server keeps open. @return false after 20 seconds */
	bool WaitForHangUp() const;
	/** What was wrong with requests, a line each. */
	std::string GetProblems() const;

private:
	void Serve();
	void ServeOne(int Connection);

	const ModelFormat Format;
	int Listener = -1;
	int Port = 0;
	std::thread Thread;
	mutable std::mutex Mutex;
	std::vector<ScriptedReply> Replies;
	size_t NextReply = 0;
	std::vector<Json> Requests;
	std::string Problems;
	std::vector<int> Silent; // connections to close at the end
};

/** @return what a model server would refuse the request for; empty if nothing */
std::string FindRequestProblem(ModelFormat Format, const std::string& Head, const Json& Body);
