#pragma once

#include "History.h"

#include <string>
#include <vector>

/**
 * The tools of the editor plugin, as a model is told about them.
 *
 * Tools.json repeats what the plugin's own table says, and a test of the plugin keeps it so. ToolNotes.json adds what
 * models need beyond that: advice, allowed values, and the form of documents that a field holds as a string.
 */
class ToolCatalog
{
public:
	static const ToolCatalog& Get();

	/** Objects with name, description and input_schema. */
	const Json& GetTools() const { return Tools; }
	/** Null for a name that is none; case-sensitive. */
	const Json* Find(const std::string& Name) const;
	std::vector<std::string> ReadOnlyTools() const;
	/**
	 * Checks a call before it goes to the editor.
	 *
	 * An object in place of a string that holds a document is turned into that string.
	 *
	 * @return what is wrong, for the model; empty when nothing is
	 */
	std::string Check(ToolCall& Call) const;

private:
	ToolCatalog();

	Json Tools;
	Json Kinds;     // by name: "Read", "Change", ...
	Json Documents; // by tool and field: the schema of the document that the string holds
};
