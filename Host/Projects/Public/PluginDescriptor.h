#pragma once

#include "ModuleDescriptor.h"

/** A plugin that another one names in its descriptor. */
struct FPluginReferenceDescriptor
{
	FString Name;
	bool bEnabled = false;
	bool bOptional = false; // does without it
};

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
	TArray<FPluginReferenceDescriptor> Plugins;
	bool bCanContainContent = false;
	bool bEnabledByDefault = true;

	bool Load(const FString& FileName, FText& OutFailReason);
};
