#pragma once

#include "CoreMinimal.h"
#include "Subsystems/AssetEditorSubsystem.h"
#include "UObject/WeakObjectPtrTemplates.h"

class SBlueprintEditor;
class SDockTab;
class UBlueprint;

/** A tab with a Blueprint in it. It lives as long as its tab. */
class FBlueprintEditor final : public IAssetEditorInstance, public TSharedFromThis<FBlueprintEditor>
{
public:
	/** Opens a tab in front of the others, in a row with them. */
	static void Open(UBlueprint& Blueprint);

	virtual FName GetEditorName() const override { return "BlueprintEditor"; }
	virtual void FocusWindow(UObject* ObjectToFocusOn) override;
	virtual bool CloseWindow(EAssetEditorCloseReason InCloseReason) override;
	const TSharedPtr<SBlueprintEditor>& GetWidget() const { return Widget; }

private:
	void Init(UBlueprint& InBlueprint);
	void OnTabClosed();
	/** With an asterisk as long as there are changes that are not saved. */
	FText GetTitle() const;

	TWeakObjectPtr<UBlueprint> Blueprint;
	TWeakPtr<SDockTab> Tab;
	TSharedPtr<SBlueprintEditor> Widget;
};
