#pragma once

#include "Internationalization/Text.h"

class UObject;

/**
 * A transaction as long as it lives. One inside another becomes part of it. Without an editor it does nothing.
 */
class UNREALED_API FScopedTransaction
{
public:
	[[nodiscard]] explicit FScopedTransaction(const FText& SessionName, const bool bShouldActuallyTransact = true);
	[[nodiscard]] FScopedTransaction(const TCHAR* TransactionContext, const FText& SessionName, UObject* PrimaryObject,
		const bool bShouldActuallyTransact = true);
	~FScopedTransaction();
	UE_NONCOPYABLE(FScopedTransaction)

	/** The changes stay and cannot be undone. */
	void Cancel();
	bool IsOutstanding() const { return Index >= 0; }

protected:
	int32 Index = -1;
};
