#include "Mcp/McpServerFile.h"

#include "Agent/Files/NativeFile.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "HAL/FileManager.h"
#include "Mcp/McpEndpoint.h"
#include "Mcp/McpSecret.h"
#include "Misc/CommandLine.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Parse.h"
#include "Misc/Paths.h"

namespace McpServerFile
{
// Those that no service is registered for (RFC 6335).
constexpr uint32 FirstPort = 49152;
constexpr uint32 LastPort = 65535;
constexpr int32 TokenLength = 64;

bool IsToken(const FString& Text)
{
	for (int32 Index = 0; Index < Text.Len(); ++Index)
	{
		if (!FChar::IsHexDigit(Text[Index]))
		{
			return false;
		}
	}
	return Text.Len() == TokenLength;
}
}

FString FKestrelMcpServerFile::GetPath()
{
	FString Path = FPaths::ProjectSavedDir() / TEXT("Kestrel/OtherAssistants.json");
	FParse::Value(FCommandLine::Get(), TEXT("KestrelMcpFile="), Path);
	return FPaths::ConvertRelativePathToFull(Path);
}

FKestrelMcpServerFile FKestrelMcpServerFile::ReadOrMake()
{
	FKestrelMcpServerFile File;
	const FString Path = GetPath();
	FString Text;
	// A project may have brought one, with a token that others know.
	const bool bIsOwn = KestrelNativeFile::IsRegularFile(Path) && KestrelNativeFile::ReadLink(Path).IsEmpty() &&
						KestrelNativeFile::IsReadByOwnerOnly(Path) && FFileHelper::LoadFileToString(Text, *Path);
	const TSharedPtr<FJsonObject> Object = bIsOwn ? KestrelJson::ParseObject(Text) : nullptr;
	if (!Object.IsValid() || !Object->TryGetNumberField(TEXT("port"), File.Port) ||
		!Object->TryGetStringField(TEXT("token"), File.Token) || File.Port < McpServerFile::FirstPort ||
		File.Port > McpServerFile::LastPort || !McpServerFile::IsToken(File.Token))
	{
		File.Token = KestrelMcpSecret::Make();
		File.ChooseAnotherPort();
	}
	return File;
}

void FKestrelMcpServerFile::ChooseAnotherPort()
{
	Port = McpServerFile::FirstPort + FGuid::NewGuid().A % (McpServerFile::LastPort - McpServerFile::FirstPort + 1);
}

FString FKestrelMcpServerFile::MakeUrl() const
{
	return FString::Printf(TEXT("http://127.0.0.1:%u%s"), Port, FKestrelMcpEndpoint::Path);
}

bool FKestrelMcpServerFile::Write() const
{
	const FString Path = GetPath();
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TEXT("url"), MakeUrl());
	Object->SetNumberField(TEXT("port"), Port);
	Object->SetStringField(TEXT("token"), Token);
	// Nothing secret is in it until nobody else can read it.
	IFileManager::Get().Delete(*Path, false, true, true);
	constexpr auto Utf8 = FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM;
	if (!FFileHelper::SaveStringToFile(FString(), *Path, Utf8))
	{
		return false;
	}
	KestrelNativeFile::RestrictToOwner(Path);
	return KestrelNativeFile::IsReadByOwnerOnly(Path) &&
		   FFileHelper::SaveStringToFile(KestrelJson::ToPrettyText(Object), *Path, Utf8);
}
