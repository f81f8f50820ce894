#include "Delegates/IDelegateInstance.h"

#include <atomic>

FDelegateHandle::FDelegateHandle(EGenerateNewHandleType)
{
	static std::atomic<uint64> NextID = 1;
	ID = NextID++;
}
