#pragma once

#include "Containers/Map.h"
#include "Containers/UnrealString.h"

/**
 * Which libraries hold the modules of a plugin or project, as its build wrote it down: the file
 * Binaries/Linux/HostEditor-<flavour>.modules. Builds of several flavours lie side by side.
 */
struct FHostModuleManifest
{
	/** Of which build of the editor the libraries are for; empty where nobody has to know. */
	FString BuildId;
	TMap<FString, FString> Libraries; // file names beside the manifest, by module name

	/** Name of this build of the editor ("dev"). */
	static const TCHAR* GetFlavour();
	/** BaseDir/Binaries/Linux */
	static FString GetFolder(const FString& BaseDir);
	static FString GetFileName(const FString& BaseDir);

	/** False when there is none, or none that can be read. */
	bool Load(const FString& BaseDir);
	bool Save(const FString& BaseDir) const;
	/** Tells the module manager where the modules lie. */
	void Announce(const FString& BaseDir) const;
};
