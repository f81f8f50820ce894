#include "OperatorPages.h"

#include "CommandBody.h"
#include "EmbeddedFiles.h"
#include "Log.h"
#include "Metrics.h"

#include <algorithm>
#include <cstdlib>
#include <httplib.h>

namespace
{
constexpr const char* OwnPaths[] = { "/", "/operator.css", "/operator.js", "/operator/overview",
	"/operator/conversations", "/operator/conversation", "/metrics", "/health" };

void SendPage(httplib::Response& Response, const HttpReply& Reply)
{
	// Nothing but what the service itself serves is loaded, and nobody frames it.
	static const httplib::Headers Protection = {
		{ "Content-Security-Policy",
			"default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; img-src data:; base-uri 'none'; "
			"form-action 'none'; frame-ancestors 'none'" },
		{ "X-Content-Type-Options", "nosniff" },
		{ "Referrer-Policy", "no-referrer" },
		{ "Cache-Control", "no-store" },
	};
	Response.status = Reply.Code;
	for (const auto& [Name, Value] : Protection)
	{
		Response.set_header(Name, Value);
	}
	Response.set_content(Reply.Body, Reply.ContentType);
}

HttpReply RefuseOperator(int Code, const std::string& Error)
{
	return HttpReply::FromJson({ { "error", Error } }, Code);
}

std::string BearerOf(const httplib::Request& Request)
{
	static const std::string Scheme = "Bearer ";
	const std::string Value = Request.get_header_value("Authorization");
	return Value.rfind(Scheme, 0) == 0 ? Value.substr(Scheme.size()) : "";
}
}

bool OperatorPages::IsOwnPath(const std::string& Path)
{
	return std::find(std::begin(OwnPaths), std::end(OwnPaths), Path) != std::end(OwnPaths);
}

void OperatorPages::AddView(httplib::Server& Https, const char* Path, MakeFunction Make)
{
	Https.Get(Path, [this, Make](const httplib::Request& Request, httplib::Response& Response) {
		if (!Allowed.HasOperator())
		{
			SendPage(Response, RefuseOperator(404, "The service was started without an operator key."));
			return;
		}
		if (!Allowed.IsOperator(BearerOf(Request)))
		{
			SendPage(Response, RefuseOperator(401, "The operator key is missing or wrong."));
			return;
		}
		try
		{
			SendPage(Response, Make(Request));
		}
		catch (const std::exception& Error)
		{
			WriteLog("operator_request_failed", { { "error", Error.what() } });
			SendPage(Response, RefuseOperator(500, Error.what()));
		}
	});
}

void OperatorPages::AddRoutes(httplib::Server& Https, const std::function<void()>& CheckHealth)
{
	Https.Get("/health", [CheckHealth](const httplib::Request&, httplib::Response& Response) {
		try
		{
			CheckHealth();
			SendPage(Response, HttpReply::FromJson({ { "status", "ok" } }));
		}
		catch (const std::exception& Error)
		{
			// What is wrong is for the log: anybody may ask.
			WriteLog("unhealthy", { { "error", Error.what() } });
			SendPage(Response, HttpReply::FromJson({ { "status", "failing" } }, 503));
		}
	});
	AddView(Https, "/metrics", [](const httplib::Request&) {
		return HttpReply{ 200, GetMetrics().Render(), "text/plain; version=0.0.4" };
	});
	if (!Store)
	{
		return;
	}
	const std::pair<const char*, HttpReply> Files[] = {
		{ "/", { 200, EmbeddedFiles::OperatorPage, "text/html; charset=utf-8" } },
		{ "/operator.css", { 200, EmbeddedFiles::OperatorStyle, "text/css; charset=utf-8" } },
		{ "/operator.js", { 200, EmbeddedFiles::OperatorScript, "text/javascript; charset=utf-8" } },
	};
	for (const auto& [Path, Content] : Files)
	{
		Https.Get(Path,
			[Content = Content](const httplib::Request&, httplib::Response& Response) { SendPage(Response, Content); });
	}
	AddView(Https, "/operator/overview",
		[this](const httplib::Request&) { return HttpReply::FromJson(OperatorViews(*Store).GetOverview()); });
	AddView(Https, "/operator/conversations", [this](const httplib::Request& Request) {
		const std::string BeforeId = Request.get_param_value("before_id");
		const int64_t Before = std::strtoll(Request.get_param_value("before").c_str(), nullptr, 10);
		return IsUtf8(BeforeId) ? HttpReply::FromJson(OperatorViews(*Store).GetConversations(Before, BeforeId))
								: RefuseOperator(400, "A parameter is not valid UTF-8.");
	});
	AddView(Https, "/operator/conversation", [this](const httplib::Request& Request) {
		const std::string Id = Request.get_param_value("id");
		const Json Found = IsUtf8(Id) ? OperatorViews(*Store).GetConversation(Id) : Json();
		return Found.is_null() ? RefuseOperator(404, "There is no such conversation.") : HttpReply::FromJson(Found);
	});
}
