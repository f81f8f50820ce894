#include "ISettingsModule.h"

#include "ISettingsViewer.h"
#include "Modules/ModuleManager.h"
#include "SettingsContainer.h"

class FSettingsModule final : public ISettingsModule
{
public:
	TSharedPtr<ISettingsSection> RegisterSettings(const FName& ContainerName, const FName& CategoryName,
		const FName& SectionName, const FText& DisplayName, const FText& Description,
		const TWeakObjectPtr<UObject>& SettingsObject) override
	{
		if (ContainerName.IsNone() || CategoryName.IsNone() || SectionName.IsNone())
		{
			return nullptr;
		}
		TSharedPtr<FSettingsContainer>& Container = Containers.FindOrAdd(ContainerName);
		if (!Container)
		{
			Container = MakeShared<FSettingsContainer>(ContainerName);
		}
		return Container->AddSection(CategoryName, SectionName, DisplayName, Description, SettingsObject);
	}

	void UnregisterSettings(const FName& ContainerName, const FName& CategoryName, const FName& SectionName) override
	{
		if (const TSharedPtr<FSettingsContainer> Container = Containers.FindRef(ContainerName))
		{
			Container->RemoveSection(CategoryName, SectionName);
		}
	}

	TSharedPtr<ISettingsContainer> GetContainer(const FName& ContainerName) override
	{
		return Containers.FindRef(ContainerName);
	}

	void GetContainerNames(TArray<FName>& OutNames) const override { Containers.GenerateKeyArray(OutNames); }

	void RegisterViewer(const FName& ContainerName, ISettingsViewer& SettingsViewer) override
	{
		Viewers.Add(ContainerName, &SettingsViewer);
	}

	void UnregisterViewer(const FName& ContainerName) override { Viewers.Remove(ContainerName); }

	void ShowViewer(const FName& ContainerName, const FName& CategoryName, const FName& SectionName) override
	{
		if (ISettingsViewer* const* Viewer = Viewers.Find(ContainerName))
		{
			(*Viewer)->ShowSettings(CategoryName, SectionName);
		}
	}

private:
	TMap<FName, TSharedPtr<FSettingsContainer>> Containers;
	TMap<FName, ISettingsViewer*> Viewers;
};

IMPLEMENT_MODULE(FSettingsModule, Settings)
