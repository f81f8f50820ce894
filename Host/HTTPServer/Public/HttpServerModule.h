#pragma once

#include "Containers/Map.h"
#include "IHttpRouter.h"
#include "Modules/ModuleInterface.h"

class FHttpListener;

/**
 * HTTP servers of the editor, one a port, for all who ask for that port.
 *
 * They listen on 127.0.0.1, or where DefaultBindAddress of section [HTTPServer.Listeners] in the engine's ini says.
 * Handlers run in Tick, on the game thread. An answer is one response with a whole body; nothing tells a handler that
 * its client has gone. A port stays in use until the module is shut down.
 */
class FHttpServerModule : public IModuleInterface
{
public:
	FHttpServerModule();
	~FHttpServerModule() override;

	static FHttpServerModule& Get();
	static bool IsAvailable();

	void StartupModule() override;
	void ShutdownModule() override;

	/**
	 * @param bFailOnBindFailure  whether null is returned when the port cannot be used; otherwise StartAllListeners
	 *                            logs it, and nobody is told
	 */
	TSharedPtr<IHttpRouter> GetHttpRouter(uint32 Port, bool bFailOnBindFailure = false);
	/** Of every port; those that have been started go on. */
	void StartAllListeners();
	bool Tick(float DeltaTime);

	/** Whether a client waits for its answer. */
	bool HasWaitingRequests() const;
	/** Sleeps until a request has come, or for MaxSeconds. */
	void WaitForRequests(float MaxSeconds);

private:
	TMap<uint32, TSharedPtr<FHttpListener>> Listeners;
	bool bListens = false;
};
