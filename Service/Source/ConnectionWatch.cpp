#include "ConnectionWatch.h"

#include "Platform.h"

#include <algorithm>

namespace
{
/** For answers that are under way when the service is told to stop. */
constexpr ConnectionWatch::Seconds LastTime(3.0);
}

thread_local ConnectionWatch::Connection* ConnectionWatch::Current = nullptr;

int ConnectionWatch::ContextIndex()
{
	static const int Index = SSL_CTX_get_ex_new_index(0, nullptr, nullptr, nullptr, nullptr);
	return Index;
}

int ConnectionWatch::ConnectionIndex()
{
	static const int Index = SSL_get_ex_new_index(0, nullptr, nullptr, nullptr, &ConnectionWatch::OnFreed);
	return Index;
}

ConnectionWatch::ConnectionWatch(SSL_CTX* Context, Seconds InRequestTime)
	: RequestTime(InRequestTime)
{
	SSL_CTX_set_ex_data(Context, ContextIndex(), this);
	// The first thing that happens on a connection, before a byte of it is read.
	SSL_CTX_set_info_callback(Context, &ConnectionWatch::OnHandshake);
	Watcher = std::thread([this] { Watch(); });
}

ConnectionWatch::~ConnectionWatch()
{
	{
		const std::lock_guard Lock(Mutex);
		bQuit = true;
	}
	Changed.notify_all();
	Watcher.join();
}

void ConnectionWatch::OnHandshake(const SSL* Ssl, int Where, int)
{
	// It comes once more when a client negotiates again.
	if ((Where & SSL_CB_HANDSHAKE_START) != 0 && !SSL_get_ex_data(Ssl, ConnectionIndex()))
	{
		void* const Owner = SSL_CTX_get_ex_data(SSL_get_SSL_CTX(Ssl), ContextIndex());
		static_cast<ConnectionWatch*>(Owner)->Add(const_cast<SSL*>(Ssl));
	}
}

void ConnectionWatch::OnFreed(void*, void* Data, CRYPTO_EX_DATA*, int, long, void*)
{
	// The socket is still open here, so its number cannot be another connection's yet.
	if (Connection* const Ended = static_cast<Connection*>(Data))
	{
		Ended->Owner->Remove(Ended);
	}
}

void ConnectionWatch::Add(SSL* Ssl)
{
	auto Made =
		std::make_unique<Connection>(Connection{ this, Ssl, SSL_get_fd(Ssl), State::Waiting, After(RequestTime) });
	const std::lock_guard Lock(Mutex);
	SSL_set_ex_data(Ssl, ConnectionIndex(), Made.get());
	Current = Made.get();
	EndOldestWaiting();
	if (bStopping)
	{
		End(*Made);
	}
	WakeBefore(Made->Deadline);
	Connections.insert(Made.release());
}

void ConnectionWatch::Remove(Connection* Ended)
{
	const std::lock_guard Lock(Mutex);
	Connections.erase(Ended);
	Current = nullptr;
	delete Ended;
}

void ConnectionWatch::EndOldestWaiting()
{
	Connection* Oldest = nullptr;
	size_t NumWaiting = 0;
	for (Connection* Each : Connections)
	{
		if (Each->Now == State::Waiting)
		{
			++NumWaiting;
			Oldest = !Oldest || Each->Deadline < Oldest->Deadline ? Each : Oldest;
		}
	}
	if (NumWaiting >= MostWaiting)
	{
		End(*Oldest);
	}
}

void ConnectionWatch::BeginAnswer()
{
	SetState(State::Answering);
}

void ConnectionWatch::BeginReply()
{
	SetState(State::Replying);
}

void ConnectionWatch::EndReply()
{
	SetState(State::Waiting);
}

void ConnectionWatch::EndConnection()
{
	// The thread gives way to others, as one that waits for a request does.
	SetState(State::Waiting);
	if (Current)
	{
		// Also what has been decrypted with the request already.
		SSL_set_shutdown(Current->Ssl, SSL_SENT_SHUTDOWN | SSL_RECEIVED_SHUTDOWN);
		Platform::HangUp(Current->Socket);
	}
}

void ConnectionWatch::SetState(State Now)
{
	const std::lock_guard Lock(Mutex);
	if (!Current || Current->Now == State::Ended)
	{
		return;
	}
	Current->Now = Now;
	if (bStopping && Now == State::Waiting)
	{
		End(*Current);
	}
	else if (!bStopping)
	{
		Current->Deadline = Now == State::Answering ? Clock::time_point::max() : After(RequestTime);
		WakeBefore(Current->Deadline);
	}
}

void ConnectionWatch::WakeBefore(Clock::time_point Deadline)
{
	// A thread that is woken for each request would cost more than the requests.
	if (Deadline < NextLook)
	{
		Changed.notify_all();
	}
}

void ConnectionWatch::Stop()
{
	const std::lock_guard Lock(Mutex);
	bStopping = true;
	for (Connection* Each : Connections)
	{
		if (Each->Now == State::Waiting)
		{
			End(*Each);
		}
		else if (Each->Now != State::Ended)
		{
			Each->Deadline = After(LastTime);
		}
	}
	Changed.notify_all();
}

void ConnectionWatch::End(Connection& Ended)
{
	// Its thread wakes up, finds the connection closed, and cleans up.
	Platform::ShutDownConnection(Ended.Socket);
	Ended.Now = State::Ended;
	Ended.Deadline = Clock::time_point::max();
}

void ConnectionWatch::Watch()
{
	std::unique_lock Lock(Mutex);
	while (!bQuit)
	{
		NextLook = After(Seconds(60.0));
		for (Connection* Each : Connections)
		{
			if (Each->Deadline <= Clock::now())
			{
				End(*Each);
			}
			NextLook = std::min(NextLook, Each->Deadline);
		}
		Changed.wait_until(Lock, NextLook);
	}
}

ConnectionWatch::Clock::time_point ConnectionWatch::After(Seconds Time)
{
	return Clock::now() + std::chrono::duration_cast<Clock::duration>(Time);
}
