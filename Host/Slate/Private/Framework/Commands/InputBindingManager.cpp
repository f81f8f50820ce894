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
