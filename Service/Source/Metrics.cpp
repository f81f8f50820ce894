#include "Metrics.h"

#include <iterator>
#include <sstream>

namespace
{
struct MetricDescription
{
	const char* Name;
	const char* Help;
	const char* Label; // empty for none
};

constexpr MetricDescription Descriptions[] = {
	{ "kestrel_http_requests_total", "Requests that were answered.", "code" },
	{ "kestrel_turns_total", "Turns that have ended.", "result" },
	{ "kestrel_turn_seconds_total", "Seconds that turns took from their request to their answer.", "" },
	{ "kestrel_model_requests_total", "Requests to the model server, retries not counted.", "key" },
	{ "kestrel_model_faults_total", "Requests to the model server that failed in the end.", "" },
	{ "kestrel_tokens_total", "Tokens sent to the model and received from it.", "key" },
	{ "kestrel_cost_total", "Cost of the tokens, in the currency of the prices.", "key" },
	{ "kestrel_rate_limited_total", "Turns that were refused because there were too many.", "key" },
};
static_assert(std::size(Descriptions) == static_cast<size_t>(Metric::Count));

std::string EscapeLabel(const std::string& Text)
{
	std::string Escaped;
	for (const char C : Text)
	{
		Escaped += C == '"' || C == '\\' ? std::string("\\") + C : C == '\n' ? "\\n" : std::string(1, C);
	}
	return Escaped;
}
}

void Metrics::Add(Metric Which, const std::string& Label, double Amount)
{
	const std::lock_guard Lock(Mutex);
	Values[{ Which, Label }] += Amount;
}

std::string Metrics::Render() const
{
	std::ostringstream Text;
	Text.precision(15);
	const std::lock_guard Lock(Mutex);
	for (size_t Index = 0; Index < std::size(Descriptions); ++Index)
	{
		const MetricDescription& Each = Descriptions[Index];
		const Metric Which = static_cast<Metric>(Index);
		Text << "# HELP " << Each.Name << " " << Each.Help << "\n# TYPE " << Each.Name << " counter\n";
		for (auto At = Values.lower_bound({ Which, "" }); At != Values.end() && At->first.first == Which; ++At)
		{
			Text << Each.Name;
			if (*Each.Label != '\0')
			{
				Text << "{" << Each.Label << "=\"" << EscapeLabel(At->first.second) << "\"}";
			}
			Text << " " << At->second << "\n";
		}
	}
	return Text.str();
}

Metrics& GetMetrics()
{
	static Metrics TheMetrics;
	return TheMetrics;
}
