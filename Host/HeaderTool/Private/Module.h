#pragma once

#include "Model.h"

#include <string>
#include <vector>

/** One module's headers with all that may be known while they are read. */
struct FModule
{
	std::string Name;
	std::string ApiMacro;
	std::vector<FParsedHeader> Headers;
	FTypeRegistry Types;                    // of this module and of those it uses
	std::vector<FKnownHeader> KnownHeaders; // of the modules it uses
};

/** Reads the types that another module's run has left in its manifest. False when the file cannot be read. */
bool ReadManifest(const std::string& Path, FModule& Module);

/** The manifest's text: one line for each type and each header, its parts separated by tabs. */
std::string WriteManifest(const FModule& Module);

/** Enters the module's own types into Types and finds out what each base class and each variable's type is. */
void ResolveModule(FModule& Module, FErrors& Errors);

/** Finds the property class of a type as written. Returns an error text, or an empty one. */
std::string ResolvePropertyType(const FTypeName& Type, const FTypeRegistry& Types, FPropertyType& OutProperty);

/** As what a parameter lies in the block of parameters: an enum of an old form in a byte, all else as it is. */
FTypeName GetStoredType(const FTypeName& Type, const FTypeRegistry& Types);
