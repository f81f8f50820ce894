#pragma once

#include "CoreMinimal.h"
#include "Framework/Commands/UICommandInfo.h"

class FUICommandList;

/** All commands by context and name. It is what keeps a set of commands alive. */
class FInputBindingManager
{
public:
	static FInputBindingManager& Get();

	/** Null for an unknown context. */
	TSharedPtr<FBindingContext> GetContextByName(const FName& InContextName);
	/** Forgets the context and its commands; no effect for an unknown one. */
	void RemoveContextByName(const FName& InContextName);
	TSharedPtr<FUICommandInfo> FindCommandInContext(const FName InBindingContext, const FName CommandName) const;
	/** Called for each new command; asserts that its name is new in its context. */
	void CreateInputCommand(
		const TSharedRef<FBindingContext>& InBindingContext, TSharedRef<FUICommandInfo> InCommandInfo);

private:
	struct FContextEntry
	{
		TSharedPtr<FBindingContext> Context;
		TMap<FName, TSharedPtr<FUICommandInfo>> Commands;
		TArray<TWeakPtr<FUICommandList>> CommandLists;
	};

	TMap<FName, FContextEntry> Contexts;
};
