#include "Framework/Commands/InputBindingManager.h"

#include "Framework/Commands/UICommandList.h"

FInputBindingManager& FInputBindingManager::Get()
{
	static FInputBindingManager Manager;
	return Manager;
}

TSharedPtr<FBindingContext> FInputBindingManager::GetContextByName(const FName& InContextName)
{
	const FContextEntry* const Entry = Contexts.Find(InContextName);
	return Entry != nullptr ? Entry->Context : nullptr;
}

void FInputBindingManager::RemoveContextByName(const FName& InContextName)
{
	Contexts.Remove(InContextName);
}

TSharedPtr<FUICommandInfo> FInputBindingManager::FindCommandInContext(
	const FName InBindingContext, const FName CommandName) const
{
	const FContextEntry* const Entry = Contexts.Find(InBindingContext);
	return Entry != nullptr ? Entry->Commands.FindRef(CommandName) : nullptr;
}

void FInputBindingManager::CreateInputCommand(
	const TSharedRef<FBindingContext>& InBindingContext, TSharedRef<FUICommandInfo> InCommandInfo)
{
	FContextEntry& Entry = Contexts.FindOrAdd(InBindingContext->GetContextName());
	Entry.Context = InBindingContext;
	const FName CommandName = InCommandInfo->GetCommandName();
	checkf(!Entry.Commands.Contains(CommandName), TEXT("The context '%s' has a command '%s' already"),
		*InBindingContext->GetContextName().ToString(), *CommandName.ToString());
	Entry.Commands.Add(CommandName, InCommandInfo);
}

void FInputBindingManager::RegisterCommandList(
	const FName InBindingContext, const TSharedRef<FUICommandList>& CommandList)
{
	Contexts.FindOrAdd(InBindingContext).CommandLists.AddUnique(CommandList);
}

void FInputBindingManager::UnregisterCommandList(
	const FName InBindingContext, const TSharedRef<FUICommandList>& CommandList)
{
	FContextEntry* const Entry = Contexts.Find(InBindingContext);
	if (Entry != nullptr)
	{
		Entry->CommandLists.Remove(CommandList);
	}
}

TArray<TSharedRef<FUICommandList>> FInputBindingManager::GetCommandLists(const FName InBindingContext) const
{
	TArray<TSharedRef<FUICommandList>> Lists;
	const FContextEntry* const Entry = Contexts.Find(InBindingContext);
	if (Entry == nullptr)
	{
		return Lists;
	}
	for (const TWeakPtr<FUICommandList>& Weak : Entry->CommandLists)
	{
		const TSharedPtr<FUICommandList> List = Weak.Pin();
		if (List.IsValid())
		{
			Lists.Add(List.ToSharedRef());
		}
	}
	return Lists;
}
