#pragma once

#include "HttpManager.h"
#include "Interfaces/IHttpRequest.h"
#include "Modules/ModuleInterface.h"
#include "Templates/UniquePtr.h"

/**
 * HTTP and HTTPS. Certificates are always verified: against the system's authorities, and against those of the file
 * that DebuggingCertificatePath of section [SSL] names in the engine's ini.
 *
 * "-HttpResolve=HOST:PORT:ADDRESS:PORT" on the command line sends what is meant for the first pair to the second, as
 * curl's --connect-to does; the certificate must still be HOST's.
 */
class FHttpModule : public IModuleInterface
{
public:
	static FHttpModule& Get();

	void StartupModule() override;
	void ShutdownModule() override;

	/** Not started yet; game thread. */
	TSharedRef<IHttpRequest, ESPMode::ThreadSafe> CreateRequest();
	FHttpManager& GetHttpManager() { return *Manager; }

	float GetHttpConnectionTimeout() const { return ConnectionTimeoutSeconds; }
	float GetHttpActivityTimeout() const { return ActivityTimeoutSeconds; }
	float GetHttpTotalTimeout() const { return TotalTimeoutSeconds; }
	/** A response with a larger body ends its request; "MaxResponseBytes" of section [HTTP] in the engine's ini. */
	int32 GetMaxResponseBytes() const { return MaxResponseBytes; }

private:
	TUniquePtr<FHttpManager> Manager;
	float ConnectionTimeoutSeconds = 30.0f;
	float ActivityTimeoutSeconds = 30.0f; // with no byte either way
	float TotalTimeoutSeconds = 0.0f;     // 0: none
	int32 MaxResponseBytes = 256 * 1024 * 1024;
};
