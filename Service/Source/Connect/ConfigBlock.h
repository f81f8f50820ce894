#pragma once

#include <string>

/**
 * Lines at the end of a configuration file, between two comments by which they are found again. The rest of the file
 * stays as it is, byte for byte, and is so again when they are removed.
 */
namespace ConfigBlock
{
/** @param Lines  each with "\n" at its end; the file's own line endings are used. @param bNewFile  there was none */
std::string Add(const std::string& Text, const std::string& Lines, bool bNewFile);

struct Removed
{
	std::string Text;         // what is left
	std::string Lines;        // what was between the comments; empty if there was no block
	bool bRemoveFile = false; // it was made for the block, and nothing else is in it
};
Removed Remove(const std::string& Text);

/** Whether a section sets a key, as the engine reads it: without regard to case. */
bool Sets(const std::string& Text, const std::string& Section, const std::string& Key);
}
