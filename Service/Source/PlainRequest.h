#pragma once

#include <optional>
#include <string>
#include <vector>

/** One thing that a person asked for in plain words. */
struct PlainRequest
{
	enum class Kind
	{
		ReadFile,
		ListFolder,
		Finish,
	};

	Kind What = Kind::Finish;
	std::string Path; // of a file, or of a folder ("" is the project itself)
	std::optional<int> FirstLine;
	std::optional<int> LastLine; // -1 is the last line of the file
};

/**
 * Understands "read FILE", "show lines 5-12 of FILE", "read FILE lines 5 to 12", "read A.h and B.h",
 * "list the files in FOLDER", "show the tree", "finish". Letter case does not count outside paths; a path with blanks
 * stands in quotes.
 *
 * @return what was asked for, in order; empty when nothing was understood
 */
std::vector<PlainRequest> UnderstandPlainRequests(const std::string& Text);
