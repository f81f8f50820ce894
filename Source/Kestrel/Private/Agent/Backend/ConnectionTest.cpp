#include "Agent/Backend/HTTPAPI.h"
#include "Agent/Backend/ServiceReply.h"
#include "Agent/Text/DisplayText.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "HttpModule.h"
#include "Interfaces/IHttpRequest.h"
#include "Interfaces/IHttpResponse.h"
#include "Kestrel.h"

#define LOCTEXT_NAMESPACE "KestrelConnectionTest"

namespace KestrelConnectionTest
{
constexpr float LongestReplySeconds = 15.0f;
/** No service gives out such an id. */
const TCHAR* const NoRequestId = TEXT("connection-test");

FText DescribeReply(const FHttpRequestPtr& Request, const FHttpResponsePtr& Response, bool bSucceeded)
{
	constexpr int32 Unauthorized = 401;
	constexpr int32 Forbidden = 403;
	const FText Host = FText::FromString(KestrelDisplayText::EscapeLine(FKestrelModule::GetApiHost()));
	if (!bSucceeded || !Request.IsValid() || !Response.IsValid())
	{
		return FText::Format(
			LOCTEXT("NoAnswer", "{0} cannot be reached. LogHttp in the output log has the reason."), Host);
	}
	const int32 Code = Response->GetResponseCode();
	if (KestrelServiceReply::IsOfAnotherServer(*Request, *Response))
	{
		return FText::Format(LOCTEXT("Redirected", "{0} points to another address, so it is not used."), Host);
	}
	if (Code == Unauthorized || Code == Forbidden)
	{
		return FText::Format(LOCTEXT("KeyRefused", "{0} answers, but refuses the key."), Host);
	}
	return KestrelJson::ParseObject(Response->GetContentAsString()).IsValid()
			   ? FText::Format(LOCTEXT("Works", "{0} answers and takes the key."), Host)
			   : FText::Format(LOCTEXT("Other", "{0} answers with HTTP status {1}, but not as a Kestrel service does."),
					 Host, Code);
}
}

void FHTTPAPI::TestConnection(const FOnConnectionTestedDelegate& OnTested)
{
	if (FKestrelModule::IsStageRefused())
	{
		OnTested.ExecuteIfBound(
			LOCTEXT("StageRefused", "Nothing was sent: the address in Config/DefaultPlugin.ini is refused."));
		return;
	}
	const FHttpRequestRef Request = FHttpModule::Get().CreateRequest();
	Request->SetVerb(TEXT("GET"));
	Request->SetURL(MakeStatusUrl(KestrelConnectionTest::NoRequestId));
	Request->SetHeader(ApiKeyHeader, FKestrelModule::GetApiKey());
	Request->SetTimeout(KestrelConnectionTest::LongestReplySeconds);
	Request->OnProcessRequestComplete().BindLambda(
		[OnTested](FHttpRequestPtr Sent, FHttpResponsePtr Response, bool bSucceeded) {
			OnTested.ExecuteIfBound(KestrelConnectionTest::DescribeReply(Sent, Response, bSucceeded));
		});
	Send(Request);
}

#undef LOCTEXT_NAMESPACE
