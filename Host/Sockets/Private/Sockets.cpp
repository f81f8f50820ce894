#include "IPAddress.h"
#include "Modules/ModuleManager.h"

class FSocketsModule : public IModuleInterface
{
};

IMPLEMENT_MODULE(FSocketsModule, Sockets)
