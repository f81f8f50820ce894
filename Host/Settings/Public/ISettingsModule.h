#pragma once

#include "ISettingsContainer.h"
#include "Modules/ModuleInterface.h"

class ISettingsViewer;

/** Where modules announce the settings that a person can edit. */
class ISettingsModule : public IModuleInterface
{
public:
	/**
	 * Adds a section; one of the same path is replaced.
	 *
	 * @return null when a name is missing
	 */
	virtual TSharedPtr<ISettingsSection> RegisterSettings(const FName& ContainerName, const FName& CategoryName,
		const FName& SectionName, const FText& DisplayName, const FText& Description,
		const TWeakObjectPtr<UObject>& SettingsObject) = 0;
	/** Removes a section. An unknown path is left alone. */
	virtual void UnregisterSettings(
		const FName& ContainerName, const FName& CategoryName, const FName& SectionName) = 0;

	/** Null when nothing was ever registered in it. */
	virtual TSharedPtr<ISettingsContainer> GetContainer(const FName& ContainerName) = 0;
	virtual void GetContainerNames(TArray<FName>& OutNames) const = 0;

	virtual void RegisterViewer(const FName& ContainerName, ISettingsViewer& SettingsViewer) = 0;
	virtual void UnregisterViewer(const FName& ContainerName) = 0;
	/** Opens the page, if the container has a viewer. */
	virtual void ShowViewer(const FName& ContainerName, const FName& CategoryName, const FName& SectionName) = 0;
};
