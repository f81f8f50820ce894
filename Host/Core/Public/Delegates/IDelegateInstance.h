#pragma once

#include "HAL/Platform.h"

/** Names one binding of a delegate. A default-constructed handle is invalid. */
class FDelegateHandle
{
public:
	enum EGenerateNewHandleType
	{
		GenerateNewHandle
	};

	FDelegateHandle() = default;
	explicit FDelegateHandle(EGenerateNewHandleType);

	bool IsValid() const { return ID != 0; }
	void Reset() { ID = 0; }

	friend bool operator==(const FDelegateHandle& A, const FDelegateHandle& B) { return A.ID == B.ID; }
	friend uint32 GetTypeHash(const FDelegateHandle& Handle) { return static_cast<uint32>(Handle.ID); }

private:
	uint64 ID = 0;
};
