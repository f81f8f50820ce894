#pragma once

#include "CoreMinimal.h"

/** What an operation had to say. */
struct FSourceControlResultInfo
{
	TArray<FText> InfoMessages;
	TArray<FText> ErrorMessages;
};

/** What a provider is asked to do. Created for each request, as `ISourceControlOperation::Create<FMarkForAdd>()`. */
class ISourceControlOperation : public TSharedFromThis<ISourceControlOperation, ESPMode::ThreadSafe>
{
public:
	virtual ~ISourceControlOperation() = default;

	template <typename Type, typename... TArgs>
	static TSharedRef<Type, ESPMode::ThreadSafe> Create(TArgs&&... Args)
	{
		return MakeShared<Type, ESPMode::ThreadSafe>(Forward<TArgs>(Args)...);
	}

	/** By which providers know the kind of operation: that of the type, without its F. */
	virtual FName GetName() const = 0;

	const FSourceControlResultInfo& GetResultInfo() const { return ResultInfo; }
	void AddErrorMessge(const FText& InError) { ResultInfo.ErrorMessages.Add(InError); }

private:
	FSourceControlResultInfo ResultInfo;
};

using FSourceControlOperationRef = TSharedRef<ISourceControlOperation, ESPMode::ThreadSafe>;
using FSourceControlOperationPtr = TSharedPtr<ISourceControlOperation, ESPMode::ThreadSafe>;
