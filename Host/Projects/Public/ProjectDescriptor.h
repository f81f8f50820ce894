#pragma once

#include "Containers/Map.h"
#include "ModuleDescriptor.h"

/** The content of a .uproject file. */
struct FProjectDescriptor
{
	FString EngineAssociation;
	FString Category;
	FString Description;
	TArray<FModuleDescriptor> Modules;
	TMap<FString, bool> PluginsEnabled; // what the project says of a plugin by name

	bool Load(const FString& FileName, FText& OutFailReason);
};
