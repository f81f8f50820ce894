#include "Platform.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <pthread.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{
sigset_t GetStopSignals()
{
	sigset_t Signals;
	sigemptyset(&Signals);
	sigaddset(&Signals, SIGINT);
	sigaddset(&Signals, SIGTERM);
	return Signals;
}

bool WriteAll(int File, const std::string& Content)
{
	for (size_t Written = 0; Written < Content.size();)
	{
		const ssize_t Now = write(File, Content.data() + Written, Content.size() - Written);
		if (Now < 0 && errno != EINTR)
		{
			return false;
		}
		Written += Now > 0 ? static_cast<size_t>(Now) : 0;
	}
	return fsync(File) == 0;
}
}

void Platform::CreatePrivateFile(const std::string& Path)
{
	const int File = open(Path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
	if (File >= 0)
	{
		close(File);
	}
}

void Platform::WriteWholeFile(const std::string& Path, const std::string& Content, Readers MayRead)
{
	const std::string Temporary = Path + ".tmp";
	unlink(Temporary.c_str());
	const mode_t Mode = MayRead == Readers::Owner ? 0600 : 0644;
	const int File = open(Temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, Mode);
	bool bWritten = File >= 0 && WriteAll(File, Content);
	int Reason = errno;
	if (File >= 0)
	{
		close(File);
	}
	if (bWritten)
	{
		bWritten = rename(Temporary.c_str(), Path.c_str()) == 0;
		Reason = errno;
	}
	if (!bWritten)
	{
		unlink(Temporary.c_str());
		throw std::runtime_error(std::strerror(Reason));
	}
}

void Platform::ShutDownConnection(intptr_t Socket)
{
	shutdown(static_cast<int>(Socket), SHUT_RDWR);
}

void Platform::HangUp(intptr_t Socket)
{
	const int Connection = static_cast<int>(Socket);
	const timeval Timeout = { 1, 0 };
	setsockopt(Connection, SOL_SOCKET, SO_RCVTIMEO, &Timeout, sizeof(Timeout));
	shutdown(Connection, SHUT_WR);
	const auto End = std::chrono::steady_clock::now() + std::chrono::seconds(1);
	char Discarded[16 * 1024];
	while (recv(Connection, Discarded, sizeof(Discarded), 0) > 0 && std::chrono::steady_clock::now() < End)
	{
	}
	shutdown(Connection, SHUT_RDWR);
}

void Platform::BeginWaitingForStop()
{
	const sigset_t Signals = GetStopSignals();
	pthread_sigmask(SIG_BLOCK, &Signals, nullptr);
	std::signal(SIGPIPE, SIG_IGN);
	// A file that reaches the limit of its size is reported like a full disk.
	std::signal(SIGXFSZ, SIG_IGN);
}

void Platform::WaitForStop()
{
	const sigset_t Signals = GetStopSignals();
	int Signal = 0;
	sigwait(&Signals, &Signal);
}

void Platform::EndWaitingForStop()
{
	kill(getpid(), SIGTERM);
}
