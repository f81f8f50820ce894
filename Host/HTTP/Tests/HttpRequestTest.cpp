#include "CoreMinimal.h"
#include "GenericPlatform/GenericPlatformHttp.h"
#include "HAL/HostClock.h"
#include "HAL/PlatformTime.h"
#include "HttpModule.h"
#include "Misc/CommandLine.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "Modules/ModuleManager.h"
#include "ScratchDirectory.h"
#include "TestHttpsServer.h"
#include "Utf8.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace
{
/** One request and what its delegate was told. */
struct FCall
{
	explicit FCall(const FString& URL)
		: Request(FHttpModule::Get().CreateRequest())
	{
		Request->SetURL(URL);
		Request->OnProcessRequestComplete().BindLambda(
			[this](FHttpRequestPtr Completed, FHttpResponsePtr InResponse, bool bInSucceeded) {
				EXPECT_TRUE(IsInGameThread());
				++NumCompletions;
				bClockWasHeld = FHostClock::Get().IsHeld();
				bSucceeded = bInSucceeded;
				Response = InResponse;
				EXPECT_EQ(Completed->GetResponse(), InResponse);
			});
	}
	~FCall() { Request->OnProcessRequestComplete().Unbind(); }
	UE_NONCOPYABLE(FCall)

	/** Started, not completed inside, then driven to its end. */
	void Run()
	{
		EXPECT_TRUE(Request->ProcessRequest());
		EXPECT_EQ(NumCompletions, 0) << "completed inside ProcessRequest";
		EXPECT_FALSE(Request->GetResponse().IsValid());
		RunOn();
	}
	void RunOn() const
	{
		constexpr double LongestSeconds = 20.0;
		const double Start = FPlatformTime::Seconds();
		while (NumCompletions == 0 && FPlatformTime::Seconds() - Start < LongestSeconds)
		{
			FHttpModule::Get().GetHttpManager().WaitForActivity(0.05f);
			FHttpModule::Get().GetHttpManager().Tick(0.0f);
		}
		EXPECT_EQ(NumCompletions, 1);
	}
	std::string GetBody() const { return Response ? ToUtf8(Response->GetContentAsString()) : "no response"; }
	void ExpectFailure(const char* What) const
	{
		EXPECT_EQ(NumCompletions, 1) << What;
		EXPECT_FALSE(bSucceeded) << What;
		EXPECT_FALSE(Response.IsValid()) << What;
		EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Failed) << What;
	}

	TSharedRef<IHttpRequest> Request;
	int32 NumCompletions = 0;
	bool bSucceeded = false;
	bool bClockWasHeld = false;
	FHttpResponsePtr Response;
};

class FHttpRequestTest : public testing::Test
{
protected:
	FHttpRequestTest()
		: Server(Authority, "DNS:localhost,DNS:api.example.com")
	{
		setenv("no_proxy", "*", 1);
		FPaths::SetProjectFilePath(Scratch.Path / TEXT("Game.uproject"));
		FFileHelper::SaveStringToFile(
			FString(Authority.GetPem().c_str()), *(Scratch.Path / TEXT("Keys/authority.pem")));
		Configure(TEXT("[SSL]\nDebuggingCertificatePath=Keys/authority.pem\n"));
		FCommandLine::Set(TEXT(""));
	}
	~FHttpRequestTest() override
	{
		FModuleManager::Get().UnloadModule(TEXT("HTTP"));
		EXPECT_FALSE(FHostClock::Get().IsHeld());
	}

	/** Before the module is loaded. */
	void Configure(const FString& Ini) const
	{
		FFileHelper::SaveStringToFile(Ini, *(Scratch.Path / TEXT("Config/DefaultEngine.ini")));
		FConfigCacheIni::InitializeConfigSystem();
	}
	FString Url(const TCHAR* Path, const FTestHttpsServer& To) const
	{
		return FString::Printf(TEXT("https://localhost:%d%s"), To.GetPort(), Path);
	}
	FString Url(const TCHAR* Path) const { return Url(Path, Server); }

	FScratchDirectory Scratch;
	FTestAuthority Authority;
	FTestHttpsServer Server;
};
}

TEST_F(FHttpRequestTest, AnyStatusCodeIsASuccess)
{
	for (const int32 Code : { 200, 202, 404, 500, 599 })
	{
		FCall Call(Url(*FString::Printf(TEXT("/status/%d"), Code)));
		Call.Run();
		ASSERT_TRUE(Call.bSucceeded) << Code;
		EXPECT_EQ(Call.Response->GetResponseCode(), Code);
		EXPECT_EQ(Call.GetBody(), "status " + std::to_string(Code));
		EXPECT_EQ(Call.Request->GetStatus(), EHttpRequestStatus::Succeeded);
	}
}

TEST_F(FHttpRequestTest, WhatIsRefusedCompletesInsideProcessRequest)
{
	struct FCase
	{
		const TCHAR* Url;
		const TCHAR* HeaderName;
		const TCHAR* HeaderValue;
	};
	const FCase Cases[] = {
		{ TEXT(""), TEXT("X"), TEXT("") },
		{ TEXT("ftp://localhost/x"), TEXT("X"), TEXT("") },
		{ TEXT("file:///etc/hostname"), TEXT("X"), TEXT("") },
		{ TEXT("localhost/echo"), TEXT("X"), TEXT("") },
		{ TEXT("https://localhost/echo"), TEXT("X"), TEXT("a\r\nX-Smuggled: b") },
		{ TEXT("https://localhost/echo"), TEXT("X\nY"), TEXT("a") },
	};
	for (const FCase& Case : Cases)
	{
		FCall Call(Case.Url);
		Call.Request->SetHeader(Case.HeaderName, Case.HeaderValue);
		EXPECT_FALSE(Call.Request->ProcessRequest());
		Call.ExpectFailure(TCHAR_TO_UTF8(Case.Url));
		EXPECT_FALSE(FHostClock::Get().IsHeld());
	}
}

TEST_F(FHttpRequestTest, WhatDoesNotArriveIsAFailureWithoutAResponse)
{
	const FTestAuthority Unknown;
	const FTestHttpsServer OfUnknown(Unknown, "DNS:localhost");
	const FTestHttpsServer OfOtherName(Authority, "DNS:elsewhere.example.com");
	const FString NoServer = [this] {
		const FTestHttpsServer Gone(Authority, "DNS:localhost");
		return Url(TEXT("/echo"), Gone);
	}();
	const TPair<const char*, FString> Cases[] = {
		{ "no connection", NoServer },
		{ "unknown authority", Url(TEXT("/echo"), OfUnknown) },
		{ "certificate of another host", Url(TEXT("/echo"), OfOtherName) },
		{ "closed in the middle", Url(TEXT("/drop")) },
		{ "malformed", TEXT("https://") },
		{ "time-out", Url(TEXT("/wait")) },
	};
	for (const auto& [What, Address] : Cases)
	{
		FCall Call(Address);
		Call.Request->SetTimeout(FString(What).Equals(TEXT("time-out")) ? 0.2f : 0.0f);
		Call.Run();
		Call.ExpectFailure(What);
	}
}

TEST_F(FHttpRequestTest, ACancelledRequestCompletesOnceWithFalse)
{
	FCall Call(Url(TEXT("/wait")));
	Call.Request->CancelRequest();
	EXPECT_EQ(Call.Request->GetStatus(), EHttpRequestStatus::NotStarted) << "nothing to cancel";
	EXPECT_TRUE(Call.Request->ProcessRequest());
	Call.Request->CancelRequest();
	Call.Request->CancelRequest();
	EXPECT_EQ(Call.NumCompletions, 0);
	Call.RunOn();
	Call.ExpectFailure("cancelled");
}

TEST_F(FHttpRequestTest, TheServerSeesHeadersInOrderAndTheBodyAsUtf8)
{
	FCall Call(Url(TEXT("/echo?q=a%20b")));
	Call.Request->SetVerb(TEXT("post"));
	Call.Request->SetHeader(TEXT("X-First"), TEXT("old"));
	Call.Request->SetHeader(TEXT("X-Empty"), TEXT(""));
	Call.Request->SetHeader(TEXT("X-Blank"), TEXT("  "));
	Call.Request->SetHeader(TEXT("X-Last"), TEXT("\u00e9"));
	Call.Request->SetHeader(TEXT("x-FIRST"), TEXT("new"));
	EXPECT_EQ(ToUtf8(Call.Request->GetHeader(TEXT("X-first"))), "new");
	Call.Request->SetContentAsString(TEXT("{\"a\":\"\u00e9\U0001F600\"}"));
	EXPECT_EQ(Call.Request->GetContentLength(), 14u);
	Call.Run();
	const std::string Seen = Call.GetBody();
	EXPECT_TRUE(Seen.starts_with("POST /echo?q=a%20b HTTP/1.1\r\n")) << Seen;
	EXPECT_NE(Seen.find("\r\nX-First: new\r\nX-Empty:\r\nX-Blank:\r\nX-Last: \xC3\xA9\r\n"), std::string::npos) << Seen;
	EXPECT_TRUE(Seen.ends_with("\r\n\r\n{\"a\":\"\xC3\xA9\xF0\x9F\x98\x80\"}")) << Seen;
	EXPECT_NE(Seen.find("\r\nContent-Length: 14\r\n"), std::string::npos) << Seen;
	for (const char* Unwanted : { "Content-Type", "Expect", "old" })
	{
		EXPECT_EQ(Seen.find(Unwanted), std::string::npos) << Unwanted;
	}
}

TEST_F(FHttpRequestTest, APostWithoutABodyAndAGetWithOneAreSentAsTheyAre)
{
	FCall Post(Url(TEXT("/echo")));
	Post.Request->SetVerb(TEXT("POST"));
	Post.Run();
	EXPECT_TRUE(Post.GetBody().starts_with("POST ")) << Post.GetBody();
	EXPECT_NE(Post.GetBody().find("\r\nContent-Length: 0\r\n"), std::string::npos) << Post.GetBody();

	FCall Get(Url(TEXT("/echo")));
	Get.Request->SetContentAsString(TEXT("body"));
	Get.Run();
	EXPECT_TRUE(Get.GetBody().starts_with("GET ")) << Get.GetBody();
	EXPECT_TRUE(Get.GetBody().ends_with("\r\n\r\nbody")) << Get.GetBody();
}

TEST_F(FHttpRequestTest, ResponseHeadersIgnoreCaseAndKeepTheirOrder)
{
	FCall Call(Url(TEXT("/empty")));
	Call.Run();
	ASSERT_TRUE(Call.bSucceeded);
	EXPECT_EQ(Call.Response->GetContentLength(), 0u);
	EXPECT_TRUE(Call.Response->GetContentAsString().IsEmpty());
	EXPECT_EQ(ToUtf8(Call.Response->GetContentType()), "text/plain");
	EXPECT_EQ(ToUtf8(Call.Response->GetHeader(TEXT("x-first"))), "one:two");
	EXPECT_TRUE(Call.Response->GetHeader(TEXT("X-Absent")).IsEmpty());
	TArray<FString> Headers = Call.Response->GetAllHeaders();
	Headers.SetNum(3);
	EXPECT_EQ(
		ToUtf8(FString::Join(Headers, TEXT("|"))), "content-TYPE: text/plain|X-First: one:two|X-Second: \xC3\xA9");
}

TEST_F(FHttpRequestTest, ARedirectWithinTheServerIsFollowed)
{
	struct FCase
	{
		const TCHAR* Verb;
		const TCHAR* Path;
		const char* ExpectedStart;
		const char* ExpectedEnd;
	};
	const FString Whole = FString::Printf(TEXT("/redirect/302?https://LOCALHOST:%d/echo"), Server.GetPort());
	const FCase Cases[] = {
		{ TEXT("POST"), TEXT("/redirect/302"), "GET /echo ", "\r\n\r\n" },
		{ TEXT("POST"), TEXT("/redirect/303"), "GET /echo ", "\r\n\r\n" },
		{ TEXT("POST"), TEXT("/redirect/307"), "POST /echo ", "\r\n\r\npayload" },
		{ TEXT("PUT"), TEXT("/redirect/301"), "PUT /echo ", "\r\n\r\npayload" },
		{ TEXT("PUT"), TEXT("/redirect/303"), "GET /echo ", "\r\n\r\n" },
		{ TEXT("POST"), TEXT("/redirect/308?/redirect/302"), "GET /echo ", "\r\n\r\n" },
		{ TEXT("POST"), *Whole, "GET /echo ", "\r\n\r\n" },
	};
	for (const FCase& Case : Cases)
	{
		SCOPED_TRACE(ToUtf8(Case.Path));
		FCall Call(Url(Case.Path));
		Call.Request->SetVerb(Case.Verb);
		Call.Request->SetHeader(TEXT("X-Key"), TEXT("secret"));
		Call.Request->SetContentAsString(TEXT("payload"));
		Call.Run();
		ASSERT_TRUE(Call.bSucceeded);
		EXPECT_TRUE(Call.GetBody().starts_with(Case.ExpectedStart)) << Call.GetBody();
		EXPECT_TRUE(Call.GetBody().ends_with(Case.ExpectedEnd)) << Call.GetBody();
		EXPECT_NE(Call.GetBody().find("X-Key: secret"), std::string::npos);
		EXPECT_TRUE(Call.Response->GetHeader(TEXT("X-First")).IsEmpty()) << "left from the redirect";
		EXPECT_EQ(ToUtf8(Call.Response->GetURL()), ToUtf8(Url(Case.Path)));
	}
}

TEST_F(FHttpRequestTest, ARedirectToAnotherServerIsTheReplyAndNobodyElseIsContacted)
{
	const FTestHttpsServer Other(Authority, "DNS:localhost,IP:127.0.0.1");
	const FString Targets[] = {
		Url(TEXT("/echo"), Other),
		FString::Printf(TEXT("https://127.0.0.1:%d/echo"), Server.GetPort()),
		FString::Printf(TEXT("http://localhost:%d/echo"), Server.GetPort()),
		FString::Printf(TEXT("http://localhost:%d/echo"), Other.GetPort()),
		FString::Printf(TEXT("//localhost:%d/echo"), Other.GetPort()),
		FString::Printf(TEXT("https://localhost:%d@127.0.0.1:%d/echo"), Server.GetPort(), Other.GetPort()),
		TEXT("https://localhost/echo"),
		TEXT("file:///etc/hostname"),
	};
	for (const FString& Target : Targets)
	{
		for (const TCHAR* Code : { TEXT("301"), TEXT("307") })
		{
			SCOPED_TRACE(ToUtf8(Target));
			const int NumConnections = Server.GetNumConnections();
			FCall Call(Url(*FString::Printf(TEXT("/redirect/%s?%s"), Code, *Target)));
			Call.Request->SetHeader(TEXT("X-Key"), TEXT("secret"));
			Call.Run();
			ASSERT_TRUE(Call.bSucceeded);
			EXPECT_EQ(ToUtf8(FString::FromInt(Call.Response->GetResponseCode())), ToUtf8(Code));
			EXPECT_EQ(ToUtf8(Call.Response->GetHeader(TEXT("Location"))), ToUtf8(Target));
			EXPECT_EQ(Call.GetBody(), "moved");
			EXPECT_EQ(Server.GetNumConnections(), NumConnections + 1);
			EXPECT_EQ(Other.GetNumConnections(), 0);
		}
	}
}

TEST_F(FHttpRequestTest, RedirectsInACircleEnd)
{
	FCall Call(Url(TEXT("/redirect/302?/redirect/302?/redirect/302?/redirect/302?/redirect/302?/redirect/302?"
						"/redirect/302?/redirect/302?/redirect/302?/redirect/302?/redirect/302")));
	Call.Run();
	Call.ExpectFailure("eleven redirects");
	FCall Waiting(Url(TEXT("/redirect/302?/wait")));
	Waiting.Request->SetTimeout(0.3f);
	Waiting.Run();
	Waiting.ExpectFailure("the limit holds for all of them");
}

TEST_F(FHttpRequestTest, RequestsRunAtOnceAndMayCompleteOutOfOrder)
{
	FCall First(Url(TEXT("/wait")));
	EXPECT_TRUE(First.Request->ProcessRequest());
	FCall Second(Url(TEXT("/echo")));
	Second.Run();
	EXPECT_TRUE(Second.bSucceeded);
	EXPECT_TRUE(Second.bClockWasHeld) << "for the first one";
	EXPECT_EQ(First.NumCompletions, 0);
	FCall Release(Url(TEXT("/release")));
	EXPECT_TRUE(Release.Request->ProcessRequest());
	First.RunOn();
	Release.RunOn();
	EXPECT_TRUE(First.bSucceeded);
	EXPECT_FALSE(FHostClock::Get().IsHeld());
}

TEST_F(FHttpRequestTest, TheModuleKeepsARequestAliveUntilItHasCompleted)
{
	int32 NumCompletions = 0;
	TWeakPtr<IHttpRequest> Weak;
	{
		const TSharedRef<IHttpRequest> Request = FHttpModule::Get().CreateRequest();
		Weak = Request;
		Request->SetURL(Url(TEXT("/echo")));
		Request->OnProcessRequestComplete().BindLambda([&NumCompletions](FHttpRequestPtr, FHttpResponsePtr,
														   bool bSucceeded) { NumCompletions += bSucceeded ? 1 : 0; });
		EXPECT_TRUE(Request->ProcessRequest());
	}
	EXPECT_TRUE(Weak.IsValid());
	FCall Later(Url(TEXT("/echo")));
	Later.Run();
	while (FHttpModule::Get().GetHttpManager().HasRequestsInFlight())
	{
		FHttpModule::Get().GetHttpManager().WaitForActivity(0.05f);
		FHttpModule::Get().GetHttpManager().Tick(0.0f);
	}
	EXPECT_EQ(NumCompletions, 1);
	EXPECT_FALSE(Weak.IsValid());
}

TEST_F(FHttpRequestTest, ADelegateMaySendItsRequestOnceMore)
{
	FCall Call(Url(TEXT("/status/503")));
	int32 NumAttempts = 0;
	FHttpRequestCompleteDelegate Inner = Call.Request->OnProcessRequestComplete();
	Call.Request->OnProcessRequestComplete().BindLambda(
		[&, Inner](FHttpRequestPtr Request, FHttpResponsePtr Response, bool bSucceeded) {
			if (++NumAttempts == 1)
			{
				Request->SetURL(Url(TEXT("/status/200")));
				EXPECT_TRUE(Request->ProcessRequest());
				return;
			}
			Inner.Execute(Request, Response, bSucceeded);
		});
	Call.Run();
	EXPECT_EQ(NumAttempts, 2);
	ASSERT_TRUE(Call.Response.IsValid());
	EXPECT_EQ(Call.Response->GetResponseCode(), 200);
}

TEST_F(FHttpRequestTest, ResolveSendsAProductionNameHereAndStillAsksForItsCertificate)
{
	const FTestHttpsServer OfOtherName(Authority, "DNS:localhost");
	struct FCase
	{
		const FTestHttpsServer& To;
		bool bReached;
	};
	for (const FCase& Case : { FCase{ Server, true }, FCase{ OfOtherName, false } })
	{
		FCommandLine::Set(*FString::Printf(
			TEXT("Game.uproject -HttpResolve=api.example.com:443:127.0.0.1:%d -log"), Case.To.GetPort()));
		FCall Call(TEXT("https://api.example.com/echo"));
		Call.Run();
		EXPECT_EQ(Call.bSucceeded, Case.bReached);
		EXPECT_EQ(Call.GetBody().find("\r\nHost: api.example.com\r\n") != std::string::npos, Case.bReached);
		FModuleManager::Get().UnloadModule(TEXT("HTTP"));
	}
}

TEST_F(FHttpRequestTest, TheDebuggingAuthorityIsTrustedOnlyWhenItIsNamed)
{
	Configure(TEXT("[HTTP]\nHttpConnectionTimeout=5\n"));
	EXPECT_EQ(FHttpModule::Get().GetHttpConnectionTimeout(), 5.0f);
	FCall Call(Url(TEXT("/echo")));
	Call.Run();
	Call.ExpectFailure("the authority is not named");
}

TEST_F(FHttpRequestTest, TheClockIsHeldWhileARequestIsInFlight)
{
	FHostClock& Clock = FHostClock::Get();
	FCall Call(Url(TEXT("/echo")));
	EXPECT_FALSE(Clock.IsHeld());
	EXPECT_TRUE(Call.Request->ProcessRequest());
	EXPECT_TRUE(Clock.IsHeld());
	EXPECT_FALSE(Call.Request->ProcessRequest()) << "in flight already";
	Call.RunOn();
	EXPECT_FALSE(Call.bClockWasHeld) << "the delegate may well wait for a time";
	FHttpModule::Get().GetHttpManager().Tick(0.0f);
	EXPECT_EQ(Call.NumCompletions, 1);
}

TEST_F(FHttpRequestTest, ShutdownCompletesWhatIsInFlightAndStartsNothingNew)
{
	FCall First(Url(TEXT("/wait")));
	FCall Second(Url(TEXT("/wait")));
	FCall Retry(Url(TEXT("/echo")));
	const FHttpRequestCompleteDelegate Inner = First.Request->OnProcessRequestComplete();
	First.Request->OnProcessRequestComplete().BindLambda(
		[&Retry, Inner](FHttpRequestPtr Request, FHttpResponsePtr Response, bool bSucceeded) {
			Inner.Execute(Request, Response, bSucceeded);
			EXPECT_FALSE(Retry.Request->ProcessRequest());
		});
	EXPECT_TRUE(First.Request->ProcessRequest());
	EXPECT_TRUE(Second.Request->ProcessRequest());
	EXPECT_TRUE(FModuleManager::Get().UnloadModule(TEXT("HTTP")));
	for (const FCall* Call : { &First, &Second, &Retry })
	{
		Call->ExpectFailure("shut down");
	}
	EXPECT_FALSE(FHostClock::Get().IsHeld());
}

TEST_F(FHttpRequestTest, NothingCanBeChangedInFlight)
{
	FCall Call(Url(TEXT("/echo")));
	Call.Request->SetHeader(TEXT("X-Kept"), TEXT("1"));
	EXPECT_TRUE(Call.Request->ProcessRequest());
	const int32 NumEnsures = FDebug::GetNumEnsureFailures();
	Call.Request->SetHeader(TEXT("X-Kept"), TEXT("2"));
	Call.Request->SetVerb(TEXT("POST"));
	Call.Request->SetURL(TEXT("https://localhost/other"));
	Call.Request->SetContentAsString(TEXT("late"));
	Call.Request->SetContent({ 1, 2 });
	EXPECT_EQ(FDebug::GetNumEnsureFailures(), NumEnsures + 5);
	EXPECT_EQ(ToUtf8(Call.Request->GetHeader(TEXT("X-Kept"))), "1");
	EXPECT_EQ(ToUtf8(Call.Request->GetVerb()), "GET");
	EXPECT_EQ(ToUtf8(Call.Request->GetURL()), ToUtf8(Url(TEXT("/echo"))));
	EXPECT_EQ(Call.Request->GetContentLength(), 0u);
	Call.RunOn();
	EXPECT_TRUE(Call.bSucceeded);
}

TEST_F(FHttpRequestTest, AResponseAboveTheCeilingEndsTheRequest)
{
	Configure(TEXT("[SSL]\nDebuggingCertificatePath=Keys/authority.pem\n[HTTP]\nMaxResponseBytes=1000\n"));
	FCall Allowed(Url(TEXT("/bytes/1000")));
	Allowed.Run();
	EXPECT_EQ(Allowed.GetBody().size(), 1000u);
	FCall TooLarge(Url(TEXT("/bytes/1001")));
	TooLarge.Run();
	TooLarge.ExpectFailure("too large");
}

TEST(GenericPlatformHttpTest, UrlEncodeKeepsOnlyWhatIsUnreserved)
{
	EXPECT_EQ(
		ToUtf8(FGenericPlatformHttp::UrlEncode(TEXT("aZ09-_.~ /?&=+%\u00e9"))), "aZ09-_.~%20%2F%3F%26%3D%2B%25%C3%A9");
}
