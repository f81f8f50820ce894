#include "Framework/Commands/UICommandInfo.h"

#include "Framework/Commands/Commands.h"

FOnBindingContextChanged FBindingContext::CommandsChanged;

FBindingContext::FBindingContext(
	const FName InContextName, const FText& InContextDesc, const FName InContextParent, const FName InStyleSetName)
	: ContextName(InContextName)
	, ContextParent(InContextParent)
	, ContextDesc(InContextDesc)
	, StyleSetName(InStyleSetName)
{
	checkf(!ContextName.IsNone(), TEXT("A binding context needs a name"));
}

FText FInputChord::GetInputText() const
{
	if (!IsValidChord())
	{
		return FText::GetEmpty();
	}
	FString Keys;
	Keys += bCtrl ? TEXT("Ctrl+") : TEXT("");
	Keys += bCmd ? TEXT("Cmd+") : TEXT("");
	Keys += bAlt ? TEXT("Alt+") : TEXT("");
	Keys += bShift ? TEXT("Shift+") : TEXT("");
	return FText::FromString(Keys + Key.GetDisplayName().ToString());
}

void FUICommandInfo::MakeCommandInfo(const TSharedRef<FBindingContext>& InContext,
	TSharedPtr<FUICommandInfo>& OutCommand, const FName InCommandName, const FText& InCommandLabel,
	const FText& InCommandDesc, const FSlateIcon& InIcon, const EUserInterfaceActionType InUserInterfaceType,
	const FInputChord& InDefaultChord, const FInputChord& InAlternateDefaultChord)
{
	checkf(!InCommandLabel.IsEmpty(), TEXT("The command '%s' needs a label"), *InCommandName.ToString());
	const TSharedRef<FUICommandInfo> Command = MakeShareable(new FUICommandInfo());
	Command->BindingContext = InContext->GetContextName();
	Command->CommandName = InCommandName;
	Command->Label = InCommandLabel;
	Command->Description = InCommandDesc;
	Command->Icon = InIcon;
	Command->UserInterfaceType = InUserInterfaceType;
	Command->DefaultChords[0] = InDefaultChord;
	Command->DefaultChords[1] = InAlternateDefaultChord;
	FInputBindingManager::Get().CreateInputCommand(InContext, Command);
	OutCommand = Command;
}

const FInputChord& FUICommandInfo::GetDefaultChord(const EMultipleKeyBindingIndex InChordIndex) const
{
	checkf(InChordIndex < EMultipleKeyBindingIndex::NumChords, TEXT("A command has two chords"));
	return DefaultChords[static_cast<int32>(InChordIndex)];
}

void MakeUICommand_InternalUseOnly(FBindingContext* This, TSharedPtr<FUICommandInfo>& OutCommand,
	const TCHAR* InSubNamespace, const TCHAR* InCommandName, const TCHAR* InCommandNameUnderscoreTooltip,
	const ANSICHAR* DotCommandName, const TCHAR* FriendlyName, const TCHAR* InDescription,
	const EUserInterfaceActionType CommandType, const FInputChord& InDefaultChord,
	const FInputChord& InAlternateDefaultChord)
{
	const FString Namespace = FString(TEXT("UICommands.")) + InSubNamespace;
	const FName IconName(This->GetContextName().ToString() + FString(DotCommandName));
	FUICommandInfo::MakeCommandInfo(This->AsShared(), OutCommand, FName(InCommandName),
		MakeLocalizableText(*Namespace, InCommandName, FriendlyName),
		MakeLocalizableText(*Namespace, InCommandNameUnderscoreTooltip, InDescription),
		FSlateIcon(This->GetStyleSetName(), IconName), CommandType, InDefaultChord, InAlternateDefaultChord);
}
