#include "ToolCatalog.h"

#include "EmbeddedFiles.h"
#include "JsonFields.h"
#include "ModelRequest.h"
#include "SchemaCheck.h"

#include <algorithm>

namespace
{
/** Puts what a note says about a field into the field's schema, except what the field holds as a string. */
void AddFieldNotes(const Json& Notes, Json& Properties, Json& Documents)
{
	for (const auto& [Field, Note] : Notes.items())
	{
		for (const auto& [Key, Value] : Note.items())
		{
			if (Key == "description")
			{
				Properties[Field][Key] = ::GetText(Properties[Field], "description") + " " + Value.get<std::string>();
			}
			else if (Key == "contentSchema")
			{
				Documents[Field] = Value;
				Properties[Field]["contentMediaType"] = "application/json";
				Properties[Field][Key] = Value;
			}
			else
			{
				Properties[Field][Key] = Value;
			}
		}
	}
}

/** A document that the model sent in place of the string that is to hold it. */
void PackDocuments(const Json& Documents, Json& Input)
{
	for (const auto& [Field, Schema] : Documents.items())
	{
		if (GetMember(Input, Field.c_str()).is_object())
		{
			Input[Field] = ToRequestBody(Input[Field]);
		}
	}
}

std::string CheckDocuments(const Json& Documents, const Json& Input)
{
	for (const auto& [Field, Schema] : Documents.items())
	{
		if (!GetMember(Input, Field.c_str()).is_string())
		{
			continue;
		}
		const Json Document = ParseUntrustedJson(Input[Field].get<std::string>());
		if (Document.is_discarded())
		{
			return Field + ": the string is not valid JSON";
		}
		if (const std::string Problem = CheckAgainstSchema(Schema, Document); !Problem.empty())
		{
			return "in the document " + Field + ", " + Problem;
		}
	}
	return "";
}
}

ToolCatalog::ToolCatalog()
{
	const Json Notes = Json::parse(EmbeddedFiles::ToolNotes);
	for (const Json& Each : Json::parse(EmbeddedFiles::Tools))
	{
		const std::string Name = Each["name"];
		const Json& Note = GetMember(Notes, Name.c_str());
		Json Tool = { { "name", Name }, { "description", Each["description"] },
			{ "input_schema", Each["input_schema"] } };
		if (const std::string Advice = ::GetText(Note, "advice"); !Advice.empty())
		{
			Tool["description"] = Each["description"].get<std::string>() + " " + Advice;
		}
		AddFieldNotes(GetMember(Note, "fields"), Tool["input_schema"]["properties"], Documents[Name]);
		Kinds[Name] = Each["kind"];
		Tools.push_back(std::move(Tool));
	}
}

const ToolCatalog& ToolCatalog::Get()
{
	static const ToolCatalog Catalog;
	return Catalog;
}

const Json* ToolCatalog::Find(const std::string& Name) const
{
	const auto Found =
		std::find_if(Tools.begin(), Tools.end(), [&Name](const Json& Each) { return Each["name"] == Name; });
	return Found == Tools.end() ? nullptr : &*Found;
}

std::vector<std::string> ToolCatalog::ReadOnlyTools() const
{
	std::vector<std::string> Names;
	for (const auto& [Name, Kind] : Kinds.items())
	{
		// Ending the turn changes nothing either.
		if (Kind == "Read" || Kind == "Finish")
		{
			Names.push_back(Name);
		}
	}
	return Names;
}

std::string ToolCatalog::Check(ToolCall& Call) const
{
	const Json* const Tool = Find(Call.Name);
	if (!Tool)
	{
		return "There is no tool of this name.";
	}
	if (!Call.InputError.empty())
	{
		return Call.InputError;
	}
	const Json& OfTool = GetMember(Documents, Call.Name.c_str());
	PackDocuments(OfTool, Call.Input);
	const std::string Problem = CheckAgainstSchema((*Tool)["input_schema"], Call.Input);
	return Problem.empty() ? CheckDocuments(OfTool, Call.Input) : Problem;
}
