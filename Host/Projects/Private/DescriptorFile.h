#pragma once

#include "Dom/JsonObject.h"
#include "ModuleDescriptor.h"

/** What .uplugin and .uproject files have in common. */
namespace DescriptorFile
{
/** Invalid, with the reason, for a file that cannot be read or is no JSON object. */
TSharedPtr<FJsonObject> Load(const FString& FileName, FText& OutFailReason);
bool ReadModules(const FJsonObject& Object, TArray<FModuleDescriptor>& OutModules, FText& OutFailReason);
}
