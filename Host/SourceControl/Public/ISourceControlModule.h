#pragma once

#include "ISourceControlProvider.h"
#include "Modules/ModuleInterface.h"
#include "Modules/ModuleManager.h"

/** The project's revision control: at any time there is one provider, if need be one that does nothing. */
class ISourceControlModule : public IModuleInterface
{
public:
	/** Loads the module if need be. */
	static ISourceControlModule& Get()
	{
		return FModuleManager::LoadModuleChecked<ISourceControlModule>("SourceControl");
	}

	/** Whether there is a provider that does something; it need not be available. */
	virtual bool IsEnabled() const = 0;
	virtual ISourceControlProvider& GetProvider() const = 0;
	/**
	 * Takes the provider of the name, which a module has registered as the modular feature "SourceControl"; the
	 * provider without any function if there is none. "None" goes back to what the project itself has.
	 */
	virtual void SetProvider(const FName& InName) = 0;
};
