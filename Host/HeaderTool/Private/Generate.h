#pragma once

#include "Module.h"

#include <string>

/** The text of <Stem>.generated.h: forward declarations and what GENERATED_BODY() stands for in each type. */
std::string GenerateHeader(const FModule& Module, const FParsedHeader& Header);

/** The text of <Stem>.gen.cpp: the description of each type, which registers itself when the library is loaded. */
std::string GenerateSource(const FModule& Module, const FParsedHeader& Header);

/** "FString Name, const FVector& Place": the parameters as in the declaration, without the return value. */
std::string FormatParameters(const FParsedFunction& Function);
/** The return type as in the declaration. */
std::string FormatReturnType(const FParsedFunction& Function);
/** Whether the class leaves the declaration of <Name>_Implementation to GENERATED_BODY(). */
bool NeedsImplementationDeclared(const FParsedStruct& Class, const FParsedFunction& Function);
