#include "HttpTransfer.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <curl/curl.h>
#include <mutex>
#include <vector>

namespace
{
using TransferClock = std::chrono::steady_clock;

/** One transfer, as its callbacks see it. */
struct RunningTransfer
{
	const ModelTimeouts& Timeouts;
	ReplyHead& Head;
	const HttpTransfer::ReceiveFunction& Receive;
	const HttpTransfer::StopFunction& ShouldStop;
	TransferClock::time_point LastByte = TransferClock::now();
	bool bReceived = false;
	FaultKind StoppedBy = FaultKind::Broken;
};

size_t OnHeader(char* Bytes, size_t Size, size_t Count, void* User)
{
	RunningTransfer& Transfer = *static_cast<RunningTransfer*>(User);
	constexpr size_t MaxHeaders = 200;
	const std::string Line(Bytes, Size * Count);
	const size_t Colon = Line.find(':');
	Transfer.LastByte = TransferClock::now();
	if (Line.rfind("HTTP/", 0) == 0)
	{
		// Of a proxy's reply, or of one to be continued, nothing is kept.
		const size_t Space = Line.find(' ');
		Transfer.Head = { Space == std::string::npos ? 0 : std::atol(Line.c_str() + Space), {} };
	}
	else if (Colon != std::string::npos && Transfer.Head.Headers.size() < MaxHeaders)
	{
		std::string Name = Line.substr(0, Colon);
		std::transform(Name.begin(), Name.end(), Name.begin(), [](unsigned char C) { return std::tolower(C); });
		const size_t Start = Line.find_first_not_of(" \t", Colon + 1);
		const size_t End = Line.find_last_not_of(" \t\r\n");
		Transfer.Head.Headers[Name] =
			Start == std::string::npos || End < Start ? "" : Line.substr(Start, End - Start + 1);
	}
	return Size * Count;
}

size_t OnBody(char* Bytes, size_t Size, size_t Count, void* User)
{
	RunningTransfer& Transfer = *static_cast<RunningTransfer*>(User);
	Transfer.LastByte = TransferClock::now();
	Transfer.bReceived = true;
	return Transfer.Receive(Transfer.Head, { Bytes, Size * Count }) ? Size * Count : 0;
}

/** @return other than 0 ends the transfer */
int OnProgress(void* User, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
	RunningTransfer& Transfer = *static_cast<RunningTransfer*>(User);
	const double Silent = std::chrono::duration<double>(TransferClock::now() - Transfer.LastByte).count();
	const double Longest = Transfer.bReceived ? Transfer.Timeouts.BetweenBytes : Transfer.Timeouts.FirstByte;
	if (Transfer.ShouldStop())
	{
		Transfer.StoppedBy = FaultKind::Cancelled;
		return 1;
	}
	Transfer.StoppedBy = Silent > Longest ? FaultKind::Silent : FaultKind::Broken;
	return Silent > Longest ? 1 : 0;
}

/** Without the path: messages name the server, and its users know the rest. */
std::string HostOf(const std::string& Url)
{
	const size_t Start = Url.find("//") + 2;
	return Url.substr(Start, Url.find('/', Start) - Start);
}

UpstreamFault DescribeFailure(
	CURLcode Code, const std::string& Detail, const RunningTransfer& Transfer, const std::string& Host)
{
	const std::string Reason = Detail.empty() ? curl_easy_strerror(Code) : Detail;
	switch (Code)
	{
	case CURLE_ABORTED_BY_CALLBACK:
		if (Transfer.StoppedBy == FaultKind::Silent)
		{
			return { FaultKind::Silent, "The model server at " + Host + " stopped answering.", {}, {} };
		}
		return { FaultKind::Cancelled, "The request was cancelled.", {}, {} };
	case CURLE_OPERATION_TIMEDOUT:
		return { FaultKind::Silent, "The model server at " + Host + " took too long: " + Reason + ".", {}, {} };
	case CURLE_COULDNT_CONNECT:
	case CURLE_COULDNT_RESOLVE_HOST:
	case CURLE_COULDNT_RESOLVE_PROXY:
		return { FaultKind::Unreachable, "The model server at " + Host + " cannot be reached: " + Reason + ".", {},
			{} };
	case CURLE_PEER_FAILED_VERIFICATION:
	case CURLE_SSL_CACERT_BADFILE:
		return { FaultKind::Refused,
			"The certificate of the model server at " + Host + " is not trusted: " + Reason +
				". server.authority_file can name a further authority.",
			{}, {} };
	case CURLE_SSL_CONNECT_ERROR:
		return { FaultKind::Refused, "No secure connection to the model server at " + Host + ": " + Reason + ".", {},
			{} };
	default:
		return { FaultKind::Broken, "The connection to the model server at " + Host + " broke: " + Reason + ".", {},
			{} };
	}
}

/**
 * A handle of libcurl's, with the connections that it has open. They are lent for one transfer each: conversations that
 * nobody writes in would otherwise keep a connection each.
 */
struct HandleLoan
{
	HandleLoan()
		: Curl(Take())
	{
	}
	~HandleLoan()
	{
		const std::lock_guard Lock(GetIdle().Mutex);
		if (GetIdle().Handles.size() < MostIdle)
		{
			GetIdle().Handles.push_back(Curl);
			return;
		}
		curl_easy_cleanup(Curl);
	}
	HandleLoan(const HandleLoan&) = delete;
	HandleLoan& operator=(const HandleLoan&) = delete;

	CURL* const Curl;

private:
	static constexpr size_t MostIdle = 8;

	struct IdleHandles
	{
		~IdleHandles() { std::for_each(Handles.begin(), Handles.end(), curl_easy_cleanup); }

		std::mutex Mutex;
		std::vector<CURL*> Handles;
	};

	static IdleHandles& GetIdle()
	{
		static IdleHandles Idle;
		return Idle;
	}

	static CURL* Take()
	{
		const std::lock_guard Lock(GetIdle().Mutex);
		if (GetIdle().Handles.empty())
		{
			return curl_easy_init();
		}
		CURL* const Taken = GetIdle().Handles.back();
		GetIdle().Handles.pop_back();
		return Taken;
	}
};

long Milliseconds(double Seconds)
{
	return static_cast<long>(Seconds * 1000);
}
}

HttpTransfer::HttpTransfer(const ModelServer& InServer, const ModelTimeouts& InTimeouts)
	: Server(InServer)
	, Timeouts(InTimeouts)
{
}

std::optional<UpstreamFault> HttpTransfer::Run(
	const UpstreamRequest& Request, ReplyHead& Head, const ReceiveFunction& Receive, const StopFunction& ShouldStop)
{
	RunningTransfer Transfer{ Timeouts, Head, Receive, ShouldStop };
	const HandleLoan Loan;
	CURL* const Curl = Loan.Curl;
	char Detail[CURL_ERROR_SIZE] = "";
	curl_slist* Headers = nullptr;
	for (const std::string& Header : Request.Headers)
	{
		Headers = curl_slist_append(Headers, Header.c_str());
	}
	// Servers that do not know it would be waited for.
	Headers = curl_slist_append(Headers, "Expect:");

	curl_easy_reset(Curl);
	curl_easy_setopt(Curl, CURLOPT_URL, Request.Url.c_str());
	curl_easy_setopt(Curl, CURLOPT_PROTOCOLS_STR, "http,https");
	curl_easy_setopt(Curl, CURLOPT_HTTPHEADER, Headers);
	curl_easy_setopt(Curl, CURLOPT_NOSIGNAL, 1L);
	curl_easy_setopt(Curl, CURLOPT_ACCEPT_ENCODING, "");
	curl_easy_setopt(Curl, CURLOPT_ERRORBUFFER, Detail);
	curl_easy_setopt(Curl, CURLOPT_CONNECTTIMEOUT_MS, Milliseconds(Timeouts.Connect));
	curl_easy_setopt(Curl, CURLOPT_TIMEOUT_MS, Milliseconds(Timeouts.Request));
	curl_easy_setopt(Curl, CURLOPT_HEADERFUNCTION, OnHeader);
	curl_easy_setopt(Curl, CURLOPT_HEADERDATA, &Transfer);
	curl_easy_setopt(Curl, CURLOPT_WRITEFUNCTION, OnBody);
	curl_easy_setopt(Curl, CURLOPT_WRITEDATA, &Transfer);
	curl_easy_setopt(Curl, CURLOPT_XFERINFOFUNCTION, OnProgress);
	curl_easy_setopt(Curl, CURLOPT_XFERINFODATA, &Transfer);
	curl_easy_setopt(Curl, CURLOPT_NOPROGRESS, 0L);
	if (!Request.Body.empty())
	{
		curl_easy_setopt(Curl, CURLOPT_POSTFIELDS, Request.Body.data());
		curl_easy_setopt(Curl, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(Request.Body.size()));
	}
	if (!Server.Proxy.empty())
	{
		curl_easy_setopt(Curl, CURLOPT_PROXY, Server.Proxy.c_str());
	}
	if (!Server.AuthorityFile.empty())
	{
		// The system's folder of authorities stays in use beside it.
		curl_easy_setopt(Curl, CURLOPT_CAINFO, Server.AuthorityFile.c_str());
	}
	const CURLcode Code = curl_easy_perform(Curl);
	curl_slist_free_all(Headers);
	if (Code == CURLE_OK)
	{
		return std::nullopt;
	}
	return DescribeFailure(Code, Detail, Transfer, HostOf(Request.Url));
}
