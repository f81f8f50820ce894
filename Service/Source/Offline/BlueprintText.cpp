#include "BlueprintText.h"

#include "JsonFields.h"

#include <algorithm>

namespace
{
constexpr size_t MaxListed = 40;

/** "  - a\n  - b\n", at most some. */
std::string ToBullets(const std::vector<std::string>& Lines)
{
	std::string Text;
	for (size_t Index = 0; Index < std::min(Lines.size(), MaxListed); ++Index)
	{
		Text += "  - " + Lines[Index] + "\n";
	}
	return Text + (Lines.size() > MaxListed ? "  ... and " + std::to_string(Lines.size() - MaxListed) + " more\n" : "");
}

std::string DescribeElement(const Json& Type)
{
	const std::string Object = GetText(Type, "SubCategoryObject");
	return Object.empty() ? GetText(Type, "Category") : Object.substr(Object.find_last_of("./") + 1);
}

std::string DescribeType(const Json& Type)
{
	const std::string Container = GetText(Type, "Container");
	const std::string Element = DescribeElement(Type);
	if (Container.empty() || Container == "None")
	{
		return Element;
	}
	const bool bMap = Type.contains("ValueType");
	return Container + " of " + Element + (bMap ? " to " + DescribeElement(Type["ValueType"]) : "");
}

std::string DescribeVariables(const Json& Variables)
{
	std::vector<std::string> Lines;
	for (const auto& [Name, Variable] : Variables.items())
	{
		const std::string Value = GetText(Variable, "Value");
		Lines.push_back(
			Name + ": " + DescribeType(Variable.value("Type", Json::object())) + (Value.empty() ? "" : " = " + Value));
	}
	return "Variables (" + std::to_string(Lines.size()) + "):\n" + ToBullets(Lines);
}

std::string DescribeParameters(const Json& Function, const char* Key)
{
	std::string Text;
	for (const Json& Parameter : GetList(Function, Key))
	{
		Text += (Text.empty() ? "" : ", ") + GetText(Parameter, "Name") + ": " +
				DescribeType(Parameter.value("Type", Json::object()));
	}
	return Text;
}

std::string DescribeFunctions(const Json& Functions)
{
	std::vector<std::string> Lines;
	for (const Json& Function : Functions)
	{
		const std::string OutParams = DescribeParameters(Function, "OutParams");
		const Json Result = Function.value("ReturnType", Json()); // the text "void", or an object
		const std::string Returned = Result.is_object() ? DescribeType(Result.value("Type", Json::object())) : "";
		const std::string Outputs = Returned + (Returned.empty() || OutParams.empty() ? "" : ", ") + OutParams;
		Lines.push_back(GetText(Function, "Name") + "(" + DescribeParameters(Function, "InParams") + ")" +
						(Outputs.empty() ? "" : " -> " + Outputs));
	}
	return "Functions (" + std::to_string(Lines.size()) + "):\n" + ToBullets(Lines);
}

std::string DescribeNames(const char* Heading, const Json& Objects)
{
	std::vector<std::string> Lines;
	for (const Json& Object : Objects)
	{
		const std::string Class = GetText(Object, "ClassName");
		Lines.push_back(GetText(Object, "Name") + (Class.empty() ? "" : ": " + Class));
	}
	return std::string(Heading) + " (" + std::to_string(Lines.size()) + "):\n" + ToBullets(Lines);
}

/** A title on one line. */
std::string Flatten(std::string Title)
{
	std::replace(Title.begin(), Title.end(), '\n', ' ');
	return Title;
}

std::string DescribeGraph(const Json& Graph)
{
	std::vector<std::string> Lines;
	for (const Json& Node : GetList(Graph, "Nodes"))
	{
		std::string Targets;
		for (const Json& Pin : GetList(Node, "Pins"))
		{
			for (const Json& Link : GetText(Pin, "Category") == "exec" && GetText(Pin, "Direction") == "Output"
										? GetList(Pin, "Connections")
										: Json::array())
			{
				Targets += (Targets.empty() ? " -> " : ", ") + Flatten(GetText(Link, "Node"));
			}
		}
		Lines.push_back(Flatten(GetText(Node, "Title")) + Targets);
	}
	return "Graph " + GetText(Graph, "Name") + " (" + std::to_string(Lines.size()) + " nodes):\n" + ToBullets(Lines);
}

void ListTreeNode(const Json& Node, size_t Depth, std::vector<std::string>& Lines)
{
	constexpr size_t MaxDepth = 64;
	if (Depth > MaxDepth)
	{
		return;
	}
	const std::string Indent(Depth * 2, ' ');
	Lines.push_back(Indent + GetText(Node, "NodeName") + " (" + GetText(Node, "Type") + ")");
	for (const Json& Auxiliary : GetList(Node, "AuxiliaryNodes"))
	{
		Lines.push_back(Indent + "  [" + GetText(Auxiliary, "NodeType") + "] " + GetText(Auxiliary, "NodeName"));
	}
	for (const Json& Child : GetList(Node, "Children"))
	{
		ListTreeNode(Child, Depth + 1, Lines);
	}
}
}

std::string DescribeBlueprint(const std::string& Content)
{
	const Json Document = Json::parse(Content, nullptr, false);
	if (!Document.is_object())
	{
		return Content;
	}
	if (Document.contains("Error"))
	{
		return "That did not work: " + GetText(Document, "Error");
	}
	std::string Text = "The Blueprint " + GetText(Document, "Name") + " (" + GetText(Document, "Path") + "):\n\n";
	if (Document.contains("Variables"))
	{
		Text += DescribeVariables(Document["Variables"]);
	}
	if (Document.contains("Functions"))
	{
		Text += DescribeFunctions(Document["Functions"]);
	}
	if (Document.contains("Components"))
	{
		Text += DescribeNames("Components", Document["Components"]);
	}
	if (Document.contains("Interfaces"))
	{
		Text += DescribeNames("Interfaces", Document["Interfaces"]);
	}
	for (const Json& Graph : GetList(Document, "Graphs"))
	{
		Text += DescribeGraph(Graph);
	}
	return Text;
}

std::string DescribeBehaviorTree(const std::string& Content)
{
	const Json Document = Json::parse(Content, nullptr, false);
	if (!Document.is_object())
	{
		return Content;
	}
	if (Document.contains("Error"))
	{
		return "That did not work: " + GetText(Document, "Error");
	}
	std::string Text = "The behavior tree " + GetText(Document, "Name") + " (" + GetText(Document, "Path") + "):\n\n";
	if (Document.contains("Blackboard"))
	{
		std::vector<std::string> Keys;
		for (const Json& Key : GetList(Document["Blackboard"], "Keys"))
		{
			Keys.push_back(GetText(Key, "Name") + ": " + GetText(Key, "Type"));
		}
		Text += "Blackboard " + GetText(Document["Blackboard"], "Name") + ":\n" + ToBullets(Keys);
	}
	std::vector<std::string> Lines;
	if (Document.contains("RootNode"))
	{
		ListTreeNode(Document["RootNode"], 0, Lines);
	}
	return Text + "Nodes:\n" + ToBullets(Lines);
}

std::string DescribeSavedBlueprints(const std::string& Content)
{
	const Json Document = Json::parse(Content, nullptr, false);
	if (!Document.is_object())
	{
		return Content;
	}
	std::vector<std::string> Lines;
	for (const Json& Result : GetList(Document, "BlueprintResults"))
	{
		std::string Line = GetText(Result, "BlueprintPath");
		for (const char* Key : { "SaveResult", "SaveError", "CompileResult", "CompileError" })
		{
			Line += Result.contains(Key) ? "\n      " + GetText(Result, Key) : "";
		}
		Lines.push_back(Line);
	}
	const std::string Outcome = GetText(Document, "Success") + GetText(Document, "Error");
	return Lines.empty() ? "No Blueprint has unsaved changes." : Outcome + "\n" + ToBullets(Lines);
}

std::string DescribeChangedBlueprint(const std::string& Content)
{
	const Json Document = Json::parse(Content, nullptr, false);
	if (!Document.is_object())
	{
		return Content;
	}
	std::vector<std::string> Lines;
	for (const char* Key : { "VariableModifications", "FunctionModifications" })
	{
		for (const Json& Message : GetList(Document, Key))
		{
			Lines.push_back(Message.is_string() ? Message.get<std::string>() : Message.dump());
		}
	}
	return GetText(Document, "Success") + GetText(Document, "Message") + (Lines.empty() ? "" : "\n" + ToBullets(Lines));
}

std::string DescribeBlueprintReferences(const Json& Matches, size_t MaxLines)
{
	std::string Text;
	std::string Last;
	size_t NumBlueprints = 0;
	for (size_t Index = 0; Index < Matches.size(); ++Index)
	{
		const std::string Blueprint = GetText(Matches[Index], "Blueprint");
		const bool bNew = Blueprint != Last;
		NumBlueprints += bNew ? 1 : 0;
		Last = Blueprint;
		if (Index < MaxLines)
		{
			const std::string Name = Flatten(GetText(Matches[Index], "Name"));
			Text += (bNew ? "\n  " + Blueprint + ":" : "") + "\n    " + GetText(Matches[Index], "Type") +
					(Name.empty() ? "" : " " + Name);
		}
	}
	if (Matches.empty())
	{
		return "";
	}
	return "It is in " + std::to_string(NumBlueprints) + (NumBlueprints == 1 ? " Blueprint:" : " Blueprints:") + Text +
		   (Matches.size() > MaxLines ? "\n    ... and more" : "");
}
