#include "SchemaCheck.h"

#define VALIJSON_USE_EXCEPTIONS 1
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validation_results.hpp>
#include <valijson/validator.hpp>

namespace
{
/** The library knows only the unordered kind. */
nlohmann::json ToUnordered(const Json& Value)
{
	return nlohmann::json::parse(Value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

/** "<root>[path]" as "path". */
std::string DescribePlace(const valijson::ValidationResults::Error& Error)
{
	std::string Place;
	for (size_t Index = 1; Index < Error.context.size(); ++Index)
	{
		std::string Part = Error.context[Index];
		Part = Part.size() > 2 && Part.front() == '[' ? Part.substr(1, Part.size() - 2) : Part;
		Place += (Place.empty() ? "" : ".") + Part;
	}
	return Place.empty() ? "the input" : Place;
}
}

std::string CheckAgainstSchema(const Json& Schema, const Json& Value)
{
	constexpr size_t MaxErrors = 5;
	const nlohmann::json SchemaDocument = ToUnordered(Schema);
	const nlohmann::json Target = ToUnordered(Value);
	valijson::Schema Parsed;
	valijson::SchemaParser Parser;
	Parser.populateSchema(valijson::adapters::NlohmannJsonAdapter(SchemaDocument), Parsed);
	valijson::Validator Validator;
	valijson::ValidationResults Results;
	Validator.validate(Parsed, valijson::adapters::NlohmannJsonAdapter(Target), &Results);
	std::string Text;
	valijson::ValidationResults::Error Error;
	for (size_t Index = 0; Index < MaxErrors && Results.popError(Error); ++Index)
	{
		Text += (Text.empty() ? "" : "\n") + DescribePlace(Error) + ": " + Error.description;
	}
	return Text;
}
