#include "CurlTransport.h"

#include "Containers/StringConv.h"
#include "CoreGlobals.h"
#include "Misc/CommandLine.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "Misc/Parse.h"
#include "Misc/Paths.h"

DEFINE_LOG_CATEGORY_STATIC(LogSsl, Log, All);

namespace CurlTransport
{
std::string ReadPem(const FString& Path)
{
	TArray<uint8> Bytes;
	if (!FFileHelper::LoadFileToArray(Bytes, *Path))
	{
		return std::string();
	}
	return std::string(reinterpret_cast<const char*>(Bytes.GetData()), static_cast<size_t>(Bytes.Num())) + "\n";
}

std::string ReadAuthorities()
{
	const std::string Pem = ReadPem(TEXT("/etc/ssl/certs/ca-certificates.crt"));
	FString DebuggingPath;
	if (!GConfig || !GConfig->GetString(TEXT("SSL"), TEXT("DebuggingCertificatePath"), DebuggingPath, GEngineIni))
	{
		return Pem;
	}
	const FString FullPath =
		FPaths::ConvertRelativePathToFull(FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()), DebuggingPath);
	const std::string DebuggingPem = ReadPem(FullPath);
	UE_CLOG(DebuggingPem.empty(), LogSsl, Warning,
		TEXT("The authority of [SSL] DebuggingCertificatePath cannot be read: %s"), *FullPath);
	return Pem + DebuggingPem;
}

std::string ReadResolveOption()
{
	FString Option;
	FParse::Value(FCommandLine::Get(), TEXT("-HttpResolve="), Option);
	return TCHAR_TO_UTF8(*Option);
}
}

FCurlTransport::FCurlTransport()
	: Authorities(CurlTransport::ReadAuthorities())
	, ResolveOption(CurlTransport::ReadResolveOption())
{
}
