#pragma once

#include "CoreMinimal.h"
#include "Framework/Commands/InputBindingManager.h"
#include "Framework/Commands/InputChord.h"
#include "Framework/Commands/UICommandInfo.h"

/** What UI_COMMAND calls; not for others. */
void MakeUICommand_InternalUseOnly(FBindingContext* This, TSharedPtr<FUICommandInfo>& OutCommand,
	const TCHAR* InSubNamespace, const TCHAR* InCommandName, const TCHAR* InCommandNameUnderscoreTooltip,
	const ANSICHAR* DotCommandName, const TCHAR* FriendlyName, const TCHAR* InDescription,
	const EUserInterfaceActionType CommandType, const FInputChord& InDefaultChord,
	const FInputChord& InAlternateDefaultChord = FInputChord());

/**
 * Makes the command of a member of a TCommands class, in RegisterCommands. Label and description are literals, not
 * empty; LOCTEXT_NAMESPACE must be defined. A second default chord may follow the first.
 */
#define UI_COMMAND(CommandId, FriendlyName, InDescription, CommandType, InDefaultChord, ...)                           \
	MakeUICommand_InternalUseOnly(this, CommandId, TEXT(LOCTEXT_NAMESPACE), TEXT(#CommandId),                          \
		TEXT(#CommandId) TEXT("_ToolTip"), "." #CommandId, TEXT(FriendlyName), TEXT(InDescription), CommandType,       \
		InDefaultChord, ##__VA_ARGS__);

/**
 * Base of a set of commands, of which there is one instance between Register and Unregister. FInputBindingManager keeps
 * it alive through its first command, so a set without any is gone at once.
 */
template <typename CommandContextType>
class TCommands : public FBindingContext
{
public:
	static bool IsRegistered() { return Instance.IsValid(); }

	/** Asserts that the set is registered. */
	static const CommandContextType& Get()
	{
		checkf(IsRegistered(), TEXT("These commands are not registered: call Register first"));
		return *Instance.Pin();
	}

	/** No effect the second time. */
	static void Register()
	{
		if (IsRegistered())
		{
			return;
		}
		const TSharedRef<CommandContextType> NewInstance = MakeShareable(new CommandContextType());
		Instance = NewInstance;
		static_cast<TCommands&>(NewInstance.Get()).RegisterCommands();
		CommandsChanged.Broadcast(NewInstance.Get());
	}

	static void Unregister()
	{
		const TSharedPtr<CommandContextType> Removed = Instance.Pin();
		if (!Removed.IsValid())
		{
			return;
		}
		FInputBindingManager::Get().RemoveContextByName(Removed->GetContextName());
		CommandsChanged.Broadcast(*Removed);
		Instance.Reset();
	}

	virtual void RegisterCommands() = 0;

protected:
	TCommands(
		const FName InContextName, const FText& InContextDesc, const FName InContextParent, const FName InStyleSetName)
		: FBindingContext(InContextName, InContextDesc, InContextParent, InStyleSetName)
	{
	}

private:
	inline static TWeakPtr<CommandContextType> Instance;
};
