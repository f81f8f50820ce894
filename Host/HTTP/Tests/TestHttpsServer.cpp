#include "TestHttpsServer.h"

#include <arpa/inet.h>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace TestHttpsServer
{
constexpr int PollMilliseconds = 20;

std::string Message(const std::string& Status, const std::string& Headers, const std::string& Body)
{
	return "HTTP/1.1 " + Status + "\r\n" + Headers + "Content-Length: " + std::to_string(Body.size()) +
		   "\r\nConnection: close\r\n\r\n" + Body;
}

size_t BodySize(const std::string& Head)
{
	const std::string Name = "\r\nContent-Length: ";
	const size_t Found = Head.find(Name);
	return Found == std::string::npos ? 0 : std::strtoul(Head.c_str() + Found + Name.size(), nullptr, 10);
}

/** The head with its blank line, and the body; empty when the client went away. */
std::string ReadRequest(SSL* Connection)
{
	std::string Request;
	char Buffer[4096];
	for (;;)
	{
		const size_t End = Request.find("\r\n\r\n");
		if (End != std::string::npos && Request.size() >= End + 4 + BodySize(Request.substr(0, End + 2)))
		{
			return Request;
		}
		const int Num = SSL_read(Connection, Buffer, sizeof(Buffer));
		if (Num <= 0)
		{
			return std::string();
		}
		Request.append(Buffer, static_cast<size_t>(Num));
	}
}
}

FTestHttpsServer::FTestHttpsServer(const FTestAuthority& Authority, const std::string& Names)
	: Context(SSL_CTX_new(TLS_server_method()))
{
	std::signal(SIGPIPE, SIG_IGN); // clients go away in the middle of an answer
	Authority.Issue(Context, Names);
	sockaddr_in Address = {};
	Address.sin_family = AF_INET;
	Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
	socklen_t Size = sizeof(Address);
	Listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
	bind(Listener, reinterpret_cast<sockaddr*>(&Address), Size);
	listen(Listener, SOMAXCONN);
	getsockname(Listener, reinterpret_cast<sockaddr*>(&Address), &Size);
	Port = ntohs(Address.sin_port);
	Acceptor = std::thread(&FTestHttpsServer::Accept, this);
}

FTestHttpsServer::~FTestHttpsServer()
{
	{
		const std::lock_guard Lock(Mutex);
		bStopping = true;
	}
	Changed.notify_all();
	Acceptor.join();
	for (std::thread& Connection : Connections)
	{
		Connection.join();
	}
	close(Listener);
	SSL_CTX_free(Context);
}

void FTestHttpsServer::Accept()
{
	while (!bStopping)
	{
		pollfd Waiting = { Listener, POLLIN, 0 };
		if (poll(&Waiting, 1, TestHttpsServer::PollMilliseconds) > 0)
		{
			++NumConnections;
			Connections.emplace_back(&FTestHttpsServer::Serve, this, accept(Listener, nullptr, nullptr));
		}
	}
}

void FTestHttpsServer::Serve(int Socket)
{
	SSL* Connection = SSL_new(Context);
	SSL_set_fd(Connection, Socket);
	if (SSL_accept(Connection) == 1)
	{
		const std::string Reply = Answer(TestHttpsServer::ReadRequest(Connection));
		if (!Reply.empty())
		{
			SSL_write(Connection, Reply.data(), static_cast<int>(Reply.size()));
		}
		SSL_shutdown(Connection);
	}
	SSL_free(Connection);
	close(Socket);
}

std::string FTestHttpsServer::Answer(const std::string& Request)
{
	using namespace TestHttpsServer;
	const size_t PathStart = Request.find(' ') + 1;
	const std::string Path = Request.substr(PathStart, Request.find(' ', PathStart) - PathStart);
	const std::string Argument = Path.substr(Path.rfind('/') + 1);
	if (Path.starts_with("/status/"))
	{
		return Message(Argument + " Some reason", "", "status " + Argument);
	}
	if (Path == "/empty")
	{
		return Message("200 OK", "content-TYPE:  text/plain \r\nX-First: one:two\r\nX-Second: \xC3\xA9\r\n", "");
	}
	if (Path.starts_with("/bytes/"))
	{
		return Message("200 OK", "", std::string(std::strtoul(Argument.c_str(), nullptr, 10), 'x'));
	}
	if (Path.starts_with("/redirect/"))
	{
		const size_t Query = Path.find('?');
		const std::string Target = Query == std::string::npos ? "/echo" : Path.substr(Query + 1);
		const std::string Code = Path.substr(std::string_view("/redirect/").size(), 3);
		return Message(Code + " Elsewhere", "Location: " + Target + "\r\nX-First: of the redirect\r\n", "moved");
	}
	if (Path == "/drop")
	{
		return "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nshort";
	}
	if (Path == "/wait")
	{
		WaitForRelease();
	}
	if (Path == "/release")
	{
		const std::lock_guard Lock(Mutex);
		bReleased = true;
		Changed.notify_all();
	}
	return Message("200 OK", "", Request);
}

void FTestHttpsServer::WaitForRelease()
{
	std::unique_lock Lock(Mutex);
	Changed.wait(Lock, [this] { return bReleased || bStopping; });
	bReleased = false;
}
