#pragma once

#include "ModuleDescriptor.h"

/** The content of a .uplugin file. */
struct FPluginDescriptor
{
	int32 Version = 0;
	FString VersionName;
	FString FriendlyName;
	FString Description;
	FString Category;
	FString CreatedBy;
	TArray<FModuleDescriptor> Modules;
	bool bCanContainContent = false;
	bool bEnabledByDefault = true;

	bool Load(const FString& FileName, FText& OutFailReason);
};
