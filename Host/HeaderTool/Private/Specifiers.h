#pragma once

#include "Model.h"

#include <string>
#include <string_view>
#include <vector>

/** One entry of the list in UCLASS(...), UPROPERTY(...) and their like. */
struct FSpecifier
{
	std::string Name;
	std::vector<std::string> Values; // what stands behind '='; several when in brackets
	int Line = 0;
};

struct FSpecifierList
{
	std::vector<FSpecifier> Specifiers;
	FMetaData Meta; // what stands in meta = (...)
};

/** Each call returns the text of the first error, or an empty text. What it cannot use it leaves as it was. */
std::string ApplyClassSpecifiers(const FSpecifierList& List, FParsedStruct& Class);
std::string ApplyStructSpecifiers(const FSpecifierList& List, FParsedStruct& Struct);
std::string ApplyEnumSpecifiers(const FSpecifierList& List, FParsedEnum& Enum);
std::string ApplyEnumeratorSpecifiers(const FSpecifierList& List, FParsedEnumerator& Enumerator);
std::string ApplyPropertySpecifiers(const FSpecifierList& List, FParsedProperty& Property);
std::string ApplyFunctionSpecifiers(const FSpecifierList& List, FParsedFunction& Function);
