#pragma once

#include "CoreMinimal.h"
#include "Framework/Commands/InputChord.h"
#include "Textures/SlateIcon.h"

class FBindingContext;
class FUICommandInfo;

enum class EUserInterfaceActionType : uint8
{
	None,
	Button,
	ToggleButton,
	RadioButton,
	Check,
	CollapsedButton,
};

enum class EMultipleKeyBindingIndex : uint8
{
	Primary,
	Secondary,
	NumChords,
};

DECLARE_MULTICAST_DELEGATE_OneParam(FOnBindingContextChanged, const FBindingContext&);

/** A family of commands, such as those of one plugin. */
class FBindingContext : public TSharedFromThis<FBindingContext>
{
public:
	/** @param InContextParent  NAME_None for none */
	FBindingContext(
		const FName InContextName, const FText& InContextDesc, const FName InContextParent, const FName InStyleSetName);
	virtual ~FBindingContext() = default;

	FName GetContextName() const { return ContextName; }
	FName GetStyleSetName() const { return StyleSetName; }

	/** Raised with a context whose commands were registered or unregistered. */
	static FOnBindingContextChanged CommandsChanged;

private:
	const FName ContextName;
	const FName ContextParent;
	const FText ContextDesc;
	const FName StyleSetName;
};

/** What the user can be offered to do: a name, a label, an icon, a key. What it does is said by an FUICommandList. */
class FUICommandInfo : public TSharedFromThis<FUICommandInfo>
{
public:
	/** Asserts that the context has no command of this name. */
	static void MakeCommandInfo(const TSharedRef<FBindingContext>& InContext, TSharedPtr<FUICommandInfo>& OutCommand,
		const FName InCommandName, const FText& InCommandLabel, const FText& InCommandDesc, const FSlateIcon& InIcon,
		const EUserInterfaceActionType InUserInterfaceType, const FInputChord& InDefaultChord,
		const FInputChord& InAlternateDefaultChord = FInputChord());

	const FText& GetLabel() const { return Label; }
	const FText& GetDescription() const { return Description; }
	FName GetCommandName() const { return CommandName; }
	const FSlateIcon& GetIcon() const { return Icon; }
	EUserInterfaceActionType GetUserInterfaceType() const { return UserInterfaceType; }
	const FInputChord& GetDefaultChord(const EMultipleKeyBindingIndex InChordIndex) const;
	/** The keys as a menu shows them. */
	FText GetInputText() const { return DefaultChords[0].GetInputText(); }

private:
	FUICommandInfo() = default;

	FName BindingContext;
	FName CommandName;
	FText Label;
	FText Description;
	FSlateIcon Icon;
	EUserInterfaceActionType UserInterfaceType = EUserInterfaceActionType::None;
	FInputChord DefaultChords[static_cast<int32>(EMultipleKeyBindingIndex::NumChords)];
};
