#pragma once

#include "CoreMinimal.h"
#include "Modules/ModuleInterface.h"

class FLayoutExtender;

/** The editor's main window, as far as others have a say in it. */
class FLevelEditorModule : public IModuleInterface
{
public:
	DECLARE_MULTICAST_DELEGATE_OneParam(FOnRegisterLayoutExtensions, FLayoutExtender& /*Extender*/);

	/** Asked once, when the window's tabs are laid out. */
	virtual FOnRegisterLayoutExtensions& OnRegisterLayoutExtensions() { return RegisterLayoutExtensions; }

private:
	FOnRegisterLayoutExtensions RegisterLayoutExtensions;
};
