#pragma once

#include "Model.h"

#include <string>
#include <vector>

struct FHeaderToolOptions
{
	std::string ModuleName;
	std::string ApiMacro;
	std::string OutputFolder;
	std::string ManifestPath;
	std::vector<std::string> UsedManifests; // of the modules whose types may be used
	std::vector<std::string> IncludeRoots;  // folders from which the module's sources include its headers
	std::vector<std::string> Headers;
};

/**
 * Reads the headers and writes, for each, <Stem>.generated.h and <Stem>.gen.cpp, and for all the manifest. A file whose
 * text stays the same keeps its time stamp. With errors, nothing is written.
 */
void RunHeaderTool(const FHeaderToolOptions& Options, FErrors& Errors);
