#pragma once

#include "Model.h"

#include <string>
#include <string_view>

/**
 * Reads the reflected declarations of one header.
 *
 * The preprocessor is not run: of the conditions only WITH_EDITOR, WITH_EDITORONLY_DATA, CPP, 0 and 1 are understood,
 * and what stands below any other may not be reflected.
 */
FParsedHeader ParseHeader(
	const std::string& Path, const std::string& IncludePath, std::string_view Text, FErrors& Errors);
