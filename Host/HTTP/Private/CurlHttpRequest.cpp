#include "CurlHttpRequest.h"

#include "Containers/StringConv.h"
#include "CoreGlobals.h"
#include "HAL/PlatformTime.h"
#include "HttpManagerState.h"
#include "HttpModule.h"
#include "Math/UnrealMathUtility.h"
#include "Misc/App.h"
#include "Misc/EngineVersion.h"

#include <algorithm>
#include <cctype>
#include <memory>

DEFINE_LOG_CATEGORY_STATIC(LogHttp, Log, All);

namespace CurlHttpRequest
{
constexpr int32 MaxRedirects = 10;

using FUrlHandle = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

/** One part of a URL; empty when it has none. */
std::string GetPart(const FUrlHandle& Url, CURLUPart Part)
{
	char* Text = nullptr;
	const bool bFound = curl_url_get(Url.get(), Part, &Text, CURLU_DEFAULT_PORT) == CURLUE_OK;
	std::string Result = bFound ? Text : "";
	curl_free(Text);
	return Result;
}

/** "scheme://host:port", in lower case and with the scheme's port when none is given; empty for what is no URL. */
std::string GetOrigin(const char* Address)
{
	const FUrlHandle Url(curl_url(), &curl_url_cleanup);
	if (curl_url_set(Url.get(), CURLUPART_URL, Address, 0) != CURLUE_OK)
	{
		return std::string();
	}
	std::string Origin =
		GetPart(Url, CURLUPART_SCHEME) + "://" + GetPart(Url, CURLUPART_HOST) + ":" + GetPart(Url, CURLUPART_PORT);
	std::transform(Origin.begin(), Origin.end(), Origin.begin(), [](unsigned char C) { return std::tolower(C); });
	return Origin;
}

bool IsRedirect(long Code)
{
	return Code == 301 || Code == 302 || Code == 303 || Code == 307 || Code == 308;
}

double WallSeconds()
{
	return FPlatformTime::ToSeconds64(FPlatformTime::Cycles64());
}

FString Find(const TArray<FHttpHeader>& Headers, const FString& Name)
{
	const FHttpHeader* Header = Headers.FindByPredicate([&](const FHttpHeader& Each) { return Each.Name == Name; });
	return Header ? Header->Value : FString();
}

TArray<FString> Lines(const TArray<FHttpHeader>& Headers)
{
	TArray<FString> Result;
	for (const FHttpHeader& Header : Headers)
	{
		Result.Add(Header.Name + TEXT(": ") + Header.Value);
	}
	return Result;
}

bool HasLineBreak(const FString& Text)
{
	return Text.Contains(TEXT("\r")) || Text.Contains(TEXT("\n"));
}
}

FString FCurlHttpResponse::GetHeader(const FString& HeaderName) const
{
	return CurlHttpRequest::Find(Headers, HeaderName);
}

TArray<FString> FCurlHttpResponse::GetAllHeaders() const
{
	return CurlHttpRequest::Lines(Headers);
}

FString FCurlHttpResponse::GetContentAsString() const
{
	return FString(FUtf8StringView(reinterpret_cast<const UTF8CHAR*>(Content.GetData()), Content.Num()));
}

FCurlHttpRequest::~FCurlHttpRequest()
{
	ReleaseHandle();
}

FString FCurlHttpRequest::GetHeader(const FString& HeaderName) const
{
	return CurlHttpRequest::Find(Headers, HeaderName);
}

TArray<FString> FCurlHttpRequest::GetAllHeaders() const
{
	return CurlHttpRequest::Lines(Headers);
}

bool FCurlHttpRequest::CanChange(const TCHAR* What) const
{
	// Each time: the setters share this place, and each misuse has its own text.
	return ensureAlwaysMsgf(
		Status != EHttpRequestStatus::Processing, TEXT("%s of a request that has been started"), What);
}

void FCurlHttpRequest::SetVerb(const FString& InVerb)
{
	if (CanChange(TEXT("SetVerb")))
	{
		Verb = InVerb.ToUpper();
	}
}

void FCurlHttpRequest::SetURL(const FString& InURL)
{
	if (CanChange(TEXT("SetURL")))
	{
		URL = InURL;
	}
}

void FCurlHttpRequest::SetHeader(const FString& HeaderName, const FString& HeaderValue)
{
	if (!CanChange(TEXT("SetHeader")))
	{
		return;
	}
	FHttpHeader* Present = Headers.FindByPredicate([&](const FHttpHeader& Each) { return Each.Name == HeaderName; });
	if (Present)
	{
		Present->Value = HeaderValue;
		return;
	}
	Headers.Add({ HeaderName, HeaderValue });
}

void FCurlHttpRequest::SetContent(const TArray<uint8>& ContentPayload)
{
	if (CanChange(TEXT("SetContent")))
	{
		Content = ContentPayload;
	}
}

void FCurlHttpRequest::SetContent(TArray<uint8>&& ContentPayload)
{
	if (CanChange(TEXT("SetContent")))
	{
		Content = MoveTemp(ContentPayload);
	}
}

void FCurlHttpRequest::SetContentAsString(const FString& ContentString)
{
	if (CanChange(TEXT("SetContentAsString")))
	{
		const FTCHARToUTF8 Utf8(*ContentString, ContentString.Len());
		Content = TArray<uint8>(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
	}
}

void FCurlHttpRequest::SetTimeout(float InTimeoutSecs)
{
	if (CanChange(TEXT("SetTimeout")))
	{
		TimeoutSeconds = InTimeoutSecs;
	}
}

bool FCurlHttpRequest::Refuse(const TCHAR* Reason)
{
	UE_LOG(LogHttp, Warning, TEXT("Request not started: %s"), Reason);
	Status = EHttpRequestStatus::Failed;
	CompleteDelegate.ExecuteIfBound(AsShared(), nullptr, false);
	return false;
}

bool FCurlHttpRequest::ProcessRequest()
{
	checkf(IsInGameThread(), TEXT("Requests are started on the game thread"));
	if (Status == EHttpRequestStatus::Processing)
	{
		UE_LOG(LogHttp, Warning, TEXT("The request is in flight already"));
		return false;
	}
	if (!URL.StartsWith(TEXT("https://")) && !URL.StartsWith(TEXT("http://")))
	{
		return Refuse(TEXT("the URL is neither https nor http"));
	}
	FHttpManager::FState& Manager = *FHttpModule::Get().GetHttpManager().State;
	if (Manager.bClosed)
	{
		return Refuse(TEXT("the HTTP module is shutting down"));
	}
	const bool bBrokenHeader = Headers.ContainsByPredicate([](const FHttpHeader& Header) {
		return CurlHttpRequest::HasLineBreak(Header.Name) || CurlHttpRequest::HasLineBreak(Header.Value);
	});
	if (bBrokenHeader)
	{
		return Refuse(TEXT("a header holds a line break"));
	}

	Status = EHttpRequestStatus::Processing;
	bCancelled = false;
	NumRedirects = 0;
	StartTime = CurlHttpRequest::WallSeconds();
	Response = MakeShared<FCurlHttpResponse>();
	SetUpHandle();
	SetUpTls(Manager.Transport);
	Manager.Start(StaticCastSharedRef<FCurlHttpRequest>(AsShared()));
	return true;
}

void FCurlHttpRequest::SetUpHandle()
{
	Handle = curl_easy_init();
	checkf(Handle, TEXT("libcurl gives no handle"));
	const FHttpModule& Module = FHttpModule::Get();
	curl_easy_setopt(Handle, CURLOPT_URL, TCHAR_TO_UTF8(*URL));
	curl_easy_setopt(Handle, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
	curl_easy_setopt(Handle, CURLOPT_NOSIGNAL, 1L);
	curl_easy_setopt(Handle, CURLOPT_PROTOCOLS_STR, "https,http");
	// libcurl would take the request's own headers, keys among them, to any host: FollowRedirect decides instead.
	curl_easy_setopt(Handle, CURLOPT_FOLLOWLOCATION, 0L);
	curl_easy_setopt(Handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(Module.GetHttpConnectionTimeout() * 1000.0f));
	curl_easy_setopt(Handle, CURLOPT_LOW_SPEED_LIMIT, 1L);
	curl_easy_setopt(Handle, CURLOPT_LOW_SPEED_TIME, static_cast<long>(Module.GetHttpActivityTimeout()));
	TotalSeconds = TimeoutSeconds > 0.0f ? TimeoutSeconds : Module.GetHttpTotalTimeout();
	curl_easy_setopt(Handle, CURLOPT_TIMEOUT_MS, static_cast<long>(TotalSeconds * 1000.0f));

	MaxResponseBytes = Module.GetMaxResponseBytes();
	curl_easy_setopt(Handle, CURLOPT_WRITEFUNCTION, &FCurlHttpRequest::ReceiveBody);
	curl_easy_setopt(Handle, CURLOPT_WRITEDATA, this);
	curl_easy_setopt(Handle, CURLOPT_HEADERFUNCTION, &FCurlHttpRequest::ReceiveHeader);
	curl_easy_setopt(Handle, CURLOPT_HEADERDATA, this);
	SetUpMethod();
	SetUpHeaders();
}

void FCurlHttpRequest::SetUpMethod()
{
	const bool bPost = Verb.Equals(TEXT("POST"));
	if (bPost || Content.Num() > 0)
	{
		curl_easy_setopt(Handle, CURLOPT_POST, 1L);
		curl_easy_setopt(Handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(Content.Num()));
		curl_easy_setopt(
			Handle, CURLOPT_POSTFIELDS, Content.Num() > 0 ? reinterpret_cast<const char*>(Content.GetData()) : "");
	}
	if (Verb.Equals(TEXT("HEAD")))
	{
		curl_easy_setopt(Handle, CURLOPT_NOBODY, 1L);
	}
	if (!bPost)
	{
		curl_easy_setopt(Handle, CURLOPT_CUSTOMREQUEST, TCHAR_TO_UTF8(*Verb));
	}
}

void FCurlHttpRequest::SetUpTls(const FCurlTransport& Transport)
{
	curl_easy_setopt(Handle, CURLOPT_SSL_VERIFYPEER, 1L);
	curl_easy_setopt(Handle, CURLOPT_SSL_VERIFYHOST, 2L);
	if (!Transport.Authorities.empty())
	{
		// Not copied: the manager keeps the text for longer than any transfer lives.
		curl_blob Blob{ const_cast<char*>(Transport.Authorities.data()), Transport.Authorities.size(),
			CURL_BLOB_NOCOPY };
		curl_easy_setopt(Handle, CURLOPT_CAINFO_BLOB, &Blob);
	}
	if (!Transport.ResolveOption.empty())
	{
		ConnectTo = curl_slist_append(nullptr, Transport.ResolveOption.c_str());
		curl_easy_setopt(Handle, CURLOPT_CONNECT_TO, ConnectTo);
	}
}

void FCurlHttpRequest::SetUpHeaders()
{
	curl_easy_setopt(Handle, CURLOPT_USERAGENT,
		TCHAR_TO_UTF8(*FString::Printf(TEXT("%s/%s"), FApp::GetProjectName(),
			*FEngineVersion::Current().ToString(EVersionComponent::Changelist))));
	for (const FHttpHeader& Header : Headers)
	{
		// A header without a value is written with a semicolon, or libcurl leaves it out.
		const bool bBlank = Header.Value.TrimStartAndEnd().IsEmpty();
		const FString Line = bBlank ? Header.Name + TEXT(";") : Header.Name + TEXT(": ") + Header.Value;
		HeaderList = curl_slist_append(HeaderList, TCHAR_TO_UTF8(*Line));
	}
	if (CurlHttpRequest::Find(Headers, TEXT("Content-Type")).IsEmpty())
	{
		// libcurl would call any body a web form.
		HeaderList = curl_slist_append(HeaderList, "Content-Type:");
	}
	// No waiting for "100 Continue" before the body.
	HeaderList = curl_slist_append(HeaderList, "Expect:");
	curl_easy_setopt(Handle, CURLOPT_HTTPHEADER, HeaderList);
}

void FCurlHttpRequest::ReleaseHandle()
{
	if (Handle)
	{
		curl_easy_cleanup(Handle);
		Handle = nullptr;
	}
	curl_slist_free_all(HeaderList);
	curl_slist_free_all(ConnectTo);
	HeaderList = nullptr;
	ConnectTo = nullptr;
}

size_t FCurlHttpRequest::ReceiveBody(char* Data, size_t Size, size_t Count, void* Request)
{
	const FCurlHttpRequest& Owner = *static_cast<FCurlHttpRequest*>(Request);
	FCurlHttpResponse& Received = *Owner.Response;
	const size_t NumBytes = Size * Count;
	if (Received.Content.Num() + static_cast<int64>(NumBytes) > Owner.MaxResponseBytes)
	{
		return 0;
	}
	Received.Content.Append(reinterpret_cast<const uint8*>(Data), static_cast<int32>(NumBytes));
	return NumBytes;
}

size_t FCurlHttpRequest::ReceiveHeader(char* Data, size_t Size, size_t Count, void* Request)
{
	FCurlHttpResponse& Received = *static_cast<FCurlHttpRequest*>(Request)->Response;
	const FString Line =
		FString(FUtf8StringView(reinterpret_cast<const UTF8CHAR*>(Data), static_cast<int32>(Size * Count)));
	FHttpHeader Header;
	if (Line.StartsWith(TEXT("HTTP/")))
	{
		// A new message: what a redirect answered does not count.
		Received.Headers.Empty();
		Received.Content.Empty();
	}
	else if (Line.Split(TEXT(":"), &Header.Name, &Header.Value))
	{
		Header.Value.TrimStartAndEndInline();
		Received.Headers.Add(Header);
	}
	return Size * Count;
}

void FCurlHttpRequest::CancelRequest()
{
	if (Status == EHttpRequestStatus::Processing)
	{
		bCancelled = true;
	}
}

const FHttpResponsePtr FCurlHttpRequest::GetResponse() const
{
	return Status == EHttpRequestStatus::Succeeded ? Response : nullptr;
}

ERedirect FCurlHttpRequest::FollowRedirect()
{
	long Code = 0;
	char* Target = nullptr;
	char* Source = nullptr;
	curl_easy_getinfo(Handle, CURLINFO_RESPONSE_CODE, &Code);
	curl_easy_getinfo(Handle, CURLINFO_REDIRECT_URL, &Target);
	curl_easy_getinfo(Handle, CURLINFO_EFFECTIVE_URL, &Source);
	if (!CurlHttpRequest::IsRedirect(Code) || !Target || !Source)
	{
		return ERedirect::None;
	}
	const std::string Origin = CurlHttpRequest::GetOrigin(Target);
	if (Origin.empty() || Origin != CurlHttpRequest::GetOrigin(Source))
	{
		UE_LOG(LogHttp, Warning, TEXT("%s %s is redirected to another server, %hs, and is not sent there"), *Verb, *URL,
			Origin.c_str());
		return ERedirect::None;
	}
	if (++NumRedirects > CurlHttpRequest::MaxRedirects)
	{
		return ERedirect::TooMany;
	}

	const std::string Address = Target; // belongs to the handle, which is about to change
	curl_easy_setopt(Handle, CURLOPT_URL, Address.c_str());
	const bool bPost = Verb.Equals(TEXT("POST"));
	if (Code == 303 ? !Verb.Equals(TEXT("HEAD")) : bPost && (Code == 301 || Code == 302))
	{
		curl_easy_setopt(Handle, CURLOPT_HTTPGET, 1L);
		curl_easy_setopt(Handle, CURLOPT_CUSTOMREQUEST, nullptr);
	}
	if (TotalSeconds > 0.0f)
	{
		// The limit is for the whole request, but libcurl counts from the start of each transfer.
		const double LeftSeconds = TotalSeconds - (CurlHttpRequest::WallSeconds() - StartTime);
		curl_easy_setopt(Handle, CURLOPT_TIMEOUT_MS, FMath::Max(1L, static_cast<long>(LeftSeconds * 1000.0)));
	}
	return ERedirect::Follow;
}

void FCurlHttpRequest::Finish(CURLcode Result)
{
	long Code = 0;
	curl_easy_getinfo(Handle, CURLINFO_RESPONSE_CODE, &Code);
	Response->ResponseCode = static_cast<int32>(Code);
	Response->URL = URL;
	ReleaseHandle();

	const bool bSucceeded = Result == CURLE_OK && !bCancelled;
	UE_CLOG(!bSucceeded && !bCancelled, LogHttp, Display, TEXT("%s %s failed: %hs"), *Verb, *URL,
		curl_easy_strerror(Result));
	if (!bSucceeded)
	{
		Response.Reset();
	}
	EndTime = CurlHttpRequest::WallSeconds();
	Status = bSucceeded ? EHttpRequestStatus::Succeeded : EHttpRequestStatus::Failed;
	CompleteDelegate.ExecuteIfBound(AsShared(), Response, bSucceeded);
}
