#include "ModelBackend.h"
#include "RunningServer.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <functional>
#include <numeric>

// What the service adds to a model server, which here answers at once or after a while. Each measurement prints a line
// "NAME NUMBER...", which Tools/service_bench.py compares with what is aimed at.

namespace
{
using BenchClock = std::chrono::steady_clock;

double SecondsOf(const std::function<void()>& Work)
{
	const auto Start = BenchClock::now();
	Work();
	return std::chrono::duration<double>(BenchClock::now() - Start).count();
}

/** A model server that always says the same. */
class SteadyModel
{
public:
	explicit SteadyModel(double Seconds)
	{
		Http.new_task_queue = [] { return new httplib::ThreadPool(256); };
		Http.set_keep_alive_max_count(1'000'000);
		Http.set_tcp_nodelay(true);
		Http.Post("/v1/chat/completions", [Seconds](const httplib::Request&, httplib::Response& Response) {
			std::this_thread::sleep_for(std::chrono::duration<double>(Seconds));
			Response.set_content(
				"data: {\"choices\":[{\"index\":0,\"delta\":{\"content\":\"I have done it.\"}}]}\n\n"
				"data: {\"choices\":[{\"index\":0,\"delta\":{},\"finish_reason\":\"stop\"}]}\n\ndata: [DONE]\n\n",
				"text/event-stream");
		});
		Port = Http.bind_to_any_port("127.0.0.1");
		Thread = std::thread([this] { Http.listen_after_bind(); });
	}
	~SteadyModel()
	{
		Http.stop();
		Thread.join();
	}

	int Port = 0;

private:
	httplib::Server Http;
	std::thread Thread;
};

/** The service with a model, and what is needed to talk to it. */
class Bench
{
public:
	explicit Bench(double ModelSeconds)
		: Model(ModelSeconds)
	{
		ModelConfig Config;
		Config.Server.BaseUrl = "http://127.0.0.1:" + std::to_string(Model.Port) + "/v1";
		Config.Server.Model = "steady";
		Store = std::make_shared<ModelStore>(SqlDatabase::OpenSqlite(Folder.Path + "/conversations.sqlite"));
		Https = std::make_unique<RunningServer>(std::make_unique<ModelBackend>(Config, Store), Options(), Store.get());
	}

	std::unique_ptr<httplib::SSLClient> MakeClient() const
	{
		auto Client = Https->MakeClient();
		Client->set_keep_alive(true);
		Client->set_tcp_nodelay(true);
		return Client;
	}

	/** One turn, polled until its answer is there. @return its request id; empty if it failed */
	static std::string PlayTurn(
		httplib::SSLClient& Client, const std::string& Conversation, bool bFirst, double PollSeconds = 0)
	{
		// As long as what a tool finds: a long conversation fills the context and is summarized again and again.
		static const std::string Text(1000, 'x');
		const std::string Body =
			bFirst ? R"({"message": "Do it.", "file_structure": {}})" : R"({"message": ")" + Text + R"("})";
		const auto Begun = Client.Post("/command", { { "conversation-id", Conversation } }, Body, "application/json");
		if (!Begun || Begun->status != 200)
		{
			return "";
		}
		const std::string Id = Json::parse(Begun->body)["request_id"];
		for (;;)
		{
			const auto Polled = Client.Get("/status?request_id=" + Id);
			if (!Polled || Polled->body.find("PROCESSING") == std::string::npos)
			{
				return Polled && Polled->body.find("COMPLETED") != std::string::npos ? Id : "";
			}
			std::this_thread::sleep_for(std::chrono::duration<double>(PollSeconds));
		}
	}

	const TestFolder Folder;
	SteadyModel Model;
	std::shared_ptr<ModelStore> Store;
	std::unique_ptr<RunningServer> Https;
};

double Percentile(std::vector<double> Values, double Share)
{
	std::sort(Values.begin(), Values.end());
	return Values[static_cast<size_t>(Share * static_cast<double>(Values.size() - 1))];
}

/** The kilobytes that this process has in memory. */
double GetKilobytes()
{
	std::ifstream File("/proc/self/status");
	for (std::string Word; File >> Word;)
	{
		if (Word == "VmRSS:")
		{
			double Kilobytes = 0;
			File >> Kilobytes;
			return Kilobytes;
		}
	}
	return 0;
}

void MeasureLatency()
{
	constexpr int NumTurns = 300;
	constexpr double PollSeconds = 0.0005; // without a pause the client would take the service's time
	Bench Service(0);
	httplib::Client Direct("127.0.0.1", Service.Model.Port);
	Direct.set_keep_alive(true);
	Direct.set_tcp_nodelay(true);
	const auto Client = Service.MakeClient();
	std::vector<double> Without;
	std::vector<double> With;
	for (int Index = 0; Index < NumTurns; ++Index)
	{
		Without.push_back(SecondsOf([&] { Direct.Post("/v1/chat/completions", "{}", "application/json"); }));
		With.push_back(SecondsOf([&] { Bench::PlayTurn(*Client, "talk" + std::to_string(Index), true, PollSeconds); }));
	}
	const double Median = Percentile(Without, 0.5);
	std::printf(
		"Latency %.3f %.3f\n", (Percentile(With, 0.5) - Median) * 1000, (Percentile(With, 0.99) - Median) * 1000);
}

void MeasureConversations()
{
	constexpr int NumAtOnce = 200;
	constexpr int NumOpen = 1000;
	Bench Service(1.0);
	std::atomic<int> NumFailed = 0;
	const auto Play = [&](int First, int Last) {
		std::vector<std::thread> Threads;
		for (int Index = First; Index < Last; ++Index)
		{
			Threads.emplace_back([&Service, &NumFailed, Index] {
				const auto Client = Service.MakeClient();
				// A client closes its connection between polls, or many would wait for one that does not.
				Client->set_keep_alive(false);
				Client->set_read_timeout(60);
				NumFailed += Bench::PlayTurn(*Client, "talk" + std::to_string(Index), true, 0.3).empty() ? 1 : 0;
			});
		}
		for (std::thread& Each : Threads)
		{
			Each.join();
		}
	};
	Play(0, NumAtOnce / 4); // what the process needs once
	const double Before = GetKilobytes();
	const double Seconds = SecondsOf([&] { Play(NumAtOnce / 4, NumAtOnce / 4 + NumAtOnce); });
	for (int First = NumAtOnce / 4 + NumAtOnce; First < NumOpen; First += NumAtOnce)
	{
		Play(First, std::min(NumOpen, First + NumAtOnce));
	}
	std::printf("Conversations %d %.1f %.2f\n", NumFailed.load(), (GetKilobytes() - Before) / NumOpen, Seconds);
}

/** Requests a second, one after the other on one connection. */
template <typename ClientType>
double CountGets(ClientType& Client, const std::string& Path)
{
	constexpr int NumGets = 4000;
	return NumGets / SecondsOf([&] {
		for (int Index = 0; Index < NumGets; ++Index)
		{
			Client.Get(Path);
		}
	});
}

void MeasurePolls()
{
	Bench Service(0);
	const auto Client = Service.MakeClient();
	const std::string Id = Bench::PlayTurn(*Client, "talk", true);
	const std::string Path = "/status?request_id=" + Id;
	const std::string Body = Client->Get(Path)->body;

	const std::string State = Service.Https->GetStateFolder();
	httplib::SSLServer Bare((State + "/server.pem").c_str(), (State + "/server-key.pem").c_str());
	Bare.set_keep_alive_max_count(1'000'000);
	Bare.set_tcp_nodelay(true);
	Bare.Get("/status", [&Body](const httplib::Request&, httplib::Response& Response) {
		Response.set_content(Body, "application/json");
	});
	const int Port = Bare.bind_to_any_port("127.0.0.1");
	std::thread Thread([&Bare] { Bare.listen_after_bind(); });
	httplib::SSLClient BareClient("localhost", Port);
	BareClient.set_ca_cert_path((State + "/authority.pem").c_str());
	BareClient.set_keep_alive(true);
	BareClient.set_tcp_nodelay(true);
	double Ours = 0;
	double Theirs = 0;
	for (int Round = 0; Round < 3; ++Round)
	{
		Theirs = std::max(Theirs, CountGets(BareClient, Path));
		Ours = std::max(Ours, CountGets(*Client, Path));
	}
	Bare.stop();
	Thread.join();
	std::printf("Polls %.0f %.0f\n", Ours, Theirs);
}

void MeasureLongConversation()
{
	constexpr int NumTurns = 500;
	constexpr int Part = 100;
	Bench Service(0);
	const auto Client = Service.MakeClient();
	std::vector<double> Seconds;
	for (int Index = 0; Index < NumTurns; ++Index)
	{
		Seconds.push_back(SecondsOf([&] { Bench::PlayTurn(*Client, "talk", Index == 0); }));
	}
	std::printf("LongConversation %.3f %.3f\n",
		Percentile({ Seconds.begin() + Part, Seconds.begin() + 2 * Part }, 0.5) * 1000,
		Percentile({ Seconds.end() - Part, Seconds.end() }, 0.5) * 1000);
}
}

int main()
{
	MeasureLatency();
	MeasurePolls();
	MeasureLongConversation();
	MeasureConversations();
}
