#pragma once

#include "Internationalization/Text.h"
#include "Misc/Guid.h"

class UObject;

/** What is known of a transaction from outside. */
struct FTransactionContext
{
	bool IsValid() const { return TransactionId.IsValid(); }

	FGuid TransactionId;
	FGuid OperationId;
	FText Title;
	FString Context;
	UObject* PrimaryObject = nullptr;
};

/** A record of changes that is being made. */
class ITransaction
{
public:
	virtual ~ITransaction() = default;
	/** Keeps the object's present state; called before each change, of which the first counts. */
	virtual void SaveObject(UObject* Object) = 0;
	/** Told of an object that was made while the transaction is open: undoing takes it out of the way. */
	virtual void SaveNewObject(UObject* Object) = 0;
};
