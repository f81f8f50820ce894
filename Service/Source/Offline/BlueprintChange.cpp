#include "BlueprintChange.h"

#include "JsonFields.h"

#include <algorithm>
#include <set>
#include <utility>

namespace
{
/** A kind of value in the two forms in which the tool takes types. */
struct TypeName
{
	const char* Word;
	const char* Category;
	const char* SubCategory;
	const char* Object; // path of the struct or class
	const char* PropertyKind;
	const char* Struct; // of a property that is one
};

const TypeName TypeNames[] = {
	{ "bool", "bool", "", "", "BoolProperty", "" },
	{ "boolean", "bool", "", "", "BoolProperty", "" },
	{ "byte", "byte", "", "", "ByteProperty", "" },
	{ "int", "int", "", "", "IntProperty", "" },
	{ "integer", "int", "", "", "IntProperty", "" },
	{ "int64", "int64", "", "", "Int64Property", "" },
	{ "float", "real", "double", "", "DoubleProperty", "" },
	{ "double", "real", "double", "", "DoubleProperty", "" },
	{ "name", "name", "", "", "NameProperty", "" },
	{ "string", "string", "", "", "StrProperty", "" },
	{ "text", "text", "", "", "TextProperty", "" },
	{ "vector", "struct", "", "/Script/CoreUObject.Vector", "StructProperty", "Vector" },
	{ "rotator", "struct", "", "/Script/CoreUObject.Rotator", "StructProperty", "Rotator" },
	{ "transform", "struct", "", "/Script/CoreUObject.Transform", "StructProperty", "Transform" },
	{ "actor", "object", "", "/Script/Engine.Actor", "ObjectProperty", "" },
	{ "pawn", "object", "", "/Script/Engine.Pawn", "ObjectProperty", "" },
	{ "object", "object", "", "/Script/CoreUObject.Object", "ObjectProperty", "" },
};

/** Takes "[]" from the end. */
bool TakeArray(std::string& Word)
{
	const bool bArray = Word.size() > 2 && Word.compare(Word.size() - 2, 2, "[]") == 0;
	Word.resize(Word.size() - (bArray ? 2 : 0));
	return bArray;
}

const TypeName* FindTypeName(std::string Word)
{
	TakeArray(Word);
	Word = ToLower(Word);
	const auto Found = std::find_if(
		std::begin(TypeNames), std::end(TypeNames), [&Word](const TypeName& Each) { return Each.Word == Word; });
	return Found == std::end(TypeNames) ? nullptr : Found;
}

/** As the tool reads the types of variables; an unknown word goes through, so that the tool says what it thinks. */
Json MakePinType(std::string Word)
{
	const TypeName* const Type = FindTypeName(Word);
	const bool bArray = TakeArray(Word);
	Json Result = { { "Category", Type ? Type->Category : Word } };
	if (Type && *Type->SubCategory)
	{
		Result["SubCategory"] = Type->SubCategory;
	}
	if (Type && *Type->Object)
	{
		Result["SubCategoryObject"] = Type->Object;
	}
	if (bArray)
	{
		Result["Container"] = "Array";
	}
	return Result;
}

/** As it reads those of parameters. */
Json MakePropertyType(std::string Word)
{
	if (TakeArray(Word))
	{
		return { { "Type", "ArrayProperty" }, { "InnerType", MakePropertyType(Word) } };
	}
	const TypeName* const Type = FindTypeName(Word);
	Json Result = { { "Type", Type ? Type->PropertyKind : Word } };
	if (Type && *Type->Struct)
	{
		Result["StructType"] = Type->Struct;
	}
	else if (Type && *Type->Object)
	{
		Result["PropertyClass"] = Type->Object;
	}
	return Result;
}

Json MakeParameters(const std::vector<Plain::Parameter>& Parameters)
{
	Json Result = Json::array();
	for (const Plain::Parameter& Each : Parameters)
	{
		Json Parameter = MakePropertyType(Each.Type);
		Parameter["Name"] = Each.Name;
		Result.push_back(Parameter);
	}
	return Result;
}

/** Of the first node with the title; null when it has no such pin. */
const Json* FindPin(const Json& Nodes, const std::string& Title, const std::string& PinName)
{
	for (const Json& Node : Nodes)
	{
		if (GetText(Node, "Title") != Title || !Node.contains("Pins"))
		{
			continue;
		}
		for (const Json& Pin : Node["Pins"])
		{
			if (GetText(Pin, "Name") == PinName)
			{
				return &Pin;
			}
		}
		return nullptr;
	}
	return nullptr;
}

/** The nodes of the function with the name; empty when it has none or there is no such function. */
Json FindNodes(const Json& Document, const std::string& Function)
{
	for (const Json& Each : GetList(Document, "Functions"))
	{
		if (ToLower(GetText(Each, "Name")) == ToLower(Function) && Each.contains("EdGraph"))
		{
			return GetList(Each["EdGraph"], "Nodes");
		}
	}
	return Json::array();
}
/** The end of a function's flow, or the step before the node that returns the results. Only titles can name nodes. */
struct FlowEnd
{
	std::string Preceding;
	std::string Following; // empty at the end
	const Json* Then = nullptr;
};

FlowEnd FollowFlow(const Json& Nodes, const Json& Entry)
{
	FlowEnd End{ GetText(Entry, "Title"), "", nullptr };
	End.Then = FindPin(Nodes, End.Preceding, "then");
	std::set<std::string> Seen;
	while (End.Then && Seen.insert(End.Preceding).second && !GetList(*End.Then, "Connections").empty())
	{
		End.Following = GetText((*End.Then)["Connections"][0], "Node");
		const Json* const Next = FindPin(Nodes, End.Following, "then");
		if (!Next)
		{
			break;
		}
		End.Preceding = std::exchange(End.Following, "");
		End.Then = Next;
	}
	return End;
}
}

bool IsTypeName(const std::string& Word)
{
	return FindTypeName(Word) != nullptr;
}

Json MakeVariable(const Plain::AddVariable& Request)
{
	Json Variable = { { "Type", MakePinType(Request.Type) } };
	if (!Request.Value.empty())
	{
		Variable["Value"] = Request.Value;
	}
	if (Request.bReplicated)
	{
		Variable["Replication"] = "Replicated";
	}
	return { { "Variables", { { Request.Name, Variable } } } };
}

Json MakeFunction(const Plain::AddFunction& Request)
{
	const Json Function = { { "Name", Request.Name }, { "InParams", MakeParameters(Request.Inputs) },
		{ "OutParams", MakeParameters(Request.Outputs) } };
	return { { "Functions", Json::array({ Function }) } };
}

Json MakePrintNode(const Plain::PlacePrintNode& Request)
{
	const Json Link = { { "Node", Request.Preceding }, { "Pin", "then" } };
	Json Pins = Json::array({ { { "PinName", "execute" }, { "Connections", Json::array({ Link }) } },
		{ { "PinName", "InString" }, { "Value", Request.Text } } });
	if (!Request.Following.empty())
	{
		const Json Onward = { { "Node", Request.Following }, { "Pin", "execute" } };
		Pins.push_back({ { "PinName", "then" }, { "Connections", Json::array({ Onward }) } });
	}
	const Json Node = { { "Class", "UK2Node_CallFunction" },
		{ "Properties", { { "FunctionName", "PrintString" }, { "Pins", Pins } } } };
	const Json Function = { { "Name", Request.Function }, { "EdGraph", { { "Nodes", Json::array({ Node }) } } } };
	return { { "Functions", Json::array({ Function }) } };
}

std::optional<Plain::PlacePrintNode> FindPlace(
	const Plain::AddPrintNode& Request, const std::string& Document, std::string& Problem)
{
	const Json Nodes = FindNodes(Json::parse(Document, nullptr, false), Request.Function);
	const auto Entry = std::find_if(
		Nodes.begin(), Nodes.end(), [](const Json& Node) { return GetText(Node, "Class") == "K2Node_FunctionEntry"; });
	if (Entry == Nodes.end())
	{
		Problem = "The Blueprint " + Request.Blueprint + " has no function " + Request.Function + " with a graph.";
		return {};
	}
	const FlowEnd End = FollowFlow(Nodes, *Entry);
	const bool bUnique = std::count_if(Nodes.begin(), Nodes.end(),
							 [&End](const Json& Node) { return GetText(Node, "Title") == End.Preceding; }) == 1;
	const bool bEnds = End.Then && (GetList(*End.Then, "Connections").empty() || !End.Following.empty());
	if (!bUnique || !bEnds)
	{
		Problem = "I cannot tell where the flow of " + Request.Function + " ends: \"" + End.Preceding +
				  "\" is the title of more than one node, or goes on.";
		return {};
	}
	return Plain::PlacePrintNode{ Request.Blueprint, Request.Function, Request.Text, End.Preceding, End.Following };
}
