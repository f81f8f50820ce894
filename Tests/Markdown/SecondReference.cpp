#include "ReferenceMarkdown.h"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>
#include <memory>
#include <vector>

namespace
{
using namespace ReferenceStyle;

std::string ToText(const char* Text)
{
	return Text ? Text : "";
}

/** Describes a tree block by block. */
class FDescriber
{
public:
	std::string Result;

	void DescribeChildren(cmark_node* Node)
	{
		for (cmark_node* Child = cmark_node_first_child(Node); Child; Child = cmark_node_next(Child))
		{
			DescribeBlock(Child);
		}
	}

private:
	void DescribeBlock(cmark_node* Node);
	void DescribeItem(cmark_node* Item);
	std::string DescribeTable(cmark_node* Table);
	std::string DescribeText(cmark_node* Node)
	{
		std::vector<FReferenceSpan> Spans;
		AddSpans(Node, 0, "", Spans);
		std::string Text;
		for (const FReferenceSpan& Span : Spans)
		{
			Text += DescribeSpan(Span);
		}
		return Text;
	}
	void AddSpans(cmark_node* Node, unsigned Style, const std::string& Address, std::vector<FReferenceSpan>& Spans);
	void AddBlock(const std::string& Description);

	std::vector<std::string> Containers;
};

void FDescriber::AddBlock(const std::string& Description)
{
	for (std::string& Container : Containers)
	{
		Result += Container;
		Container = Container == "> " ? Container : "[] ";
	}
	Result += Description + "\n";
}

void FDescriber::DescribeItem(cmark_node* Item)
{
	cmark_node* List = cmark_node_parent(Item);
	const bool bParen = cmark_node_get_list_delim(List) == CMARK_PAREN_DELIM;
	Containers.push_back(cmark_node_get_list_type(List) == CMARK_BULLET_LIST ? "[-] " : bParen ? "[#)] " : "[#.] ");
	DescribeChildren(Item);
	if (Containers.back() != "[] ")
	{
		AddBlock("p ");
	}
	Containers.pop_back();
}

void FDescriber::DescribeBlock(cmark_node* Node)
{
	const cmark_node_type Type = cmark_node_get_type(Node);
	cmark_node* Parent = cmark_node_parent(Node);
	if (Type == CMARK_NODE_BLOCK_QUOTE)
	{
		Containers.push_back("> ");
		DescribeChildren(Node);
		Containers.pop_back();
	}
	else if (Type == CMARK_NODE_LIST)
	{
		DescribeChildren(Node);
	}
	else if (Type == CMARK_NODE_ITEM)
	{
		DescribeItem(Node);
	}
	else if (Type == CMARK_NODE_PARAGRAPH)
	{
		const bool bTight =
			cmark_node_get_type(Parent) == CMARK_NODE_ITEM && cmark_node_get_list_tight(cmark_node_parent(Parent));
		AddBlock((bTight ? "tight p " : "p ") + DescribeText(Node));
	}
	else if (Type == CMARK_NODE_HEADING)
	{
		AddBlock("h" + std::to_string(cmark_node_get_heading_level(Node)) + " " + DescribeText(Node));
	}
	else if (Type == CMARK_NODE_CODE_BLOCK)
	{
		const std::string Info = ToText(cmark_node_get_fence_info(Node));
		AddBlock("code(" + Info.substr(0, Info.find_first_of(" \t")) + ") " + ToText(cmark_node_get_literal(Node)));
	}
	else
	{
		AddBlock(Type == CMARK_NODE_THEMATIC_BREAK              ? "rule"
				 : cmark_gfm_extensions_get_table_columns(Node) ? DescribeTable(Node)
																: ToText(cmark_node_get_type_string(Node)));
	}
}

std::string FDescriber::DescribeTable(cmark_node* Table)
{
	std::string Text = "table ";
	const uint8_t* Alignments = cmark_gfm_extensions_get_table_alignments(Table);
	const uint16_t NumColumns = cmark_gfm_extensions_get_table_columns(Table);
	for (uint16_t Column = 0; Column < NumColumns; ++Column)
	{
		Text += Alignments[Column] == 'c' ? 'C' : Alignments[Column] == 'r' ? 'R' : 'L';
	}
	for (cmark_node* Row = cmark_node_first_child(Table); Row; Row = cmark_node_next(Row))
	{
		Text += "\n  |";
		for (cmark_node* Cell = cmark_node_first_child(Row); Cell; Cell = cmark_node_next(Cell))
		{
			Text += DescribeText(Cell) + "|";
		}
	}
	return Text;
}

void FDescriber::AddSpans(
	cmark_node* Node, unsigned Style, const std::string& Address, std::vector<FReferenceSpan>& Spans)
{
	for (cmark_node* Child = cmark_node_first_child(Node); Child; Child = cmark_node_next(Child))
	{
		const cmark_node_type Type = cmark_node_get_type(Child);
		const bool bLink = Type == CMARK_NODE_LINK || Type == CMARK_NODE_IMAGE;
		const std::string Kind = ToText(cmark_node_get_type_string(Child));
		const unsigned More = (Type == CMARK_NODE_STRONG ? Strong : 0) | (Type == CMARK_NODE_EMPH ? Emphasis : 0) |
							  (Kind == "strikethrough" ? Strike : 0) | (Type == CMARK_NODE_CODE ? Code : 0);
		const std::string Text = Type == CMARK_NODE_LINEBREAK   ? "\n"
								 : Type == CMARK_NODE_SOFTBREAK ? " "
																: ToText(cmark_node_get_literal(Child));
		if (!Text.empty())
		{
			if (Spans.empty() || Spans.back().Style != (Style | More) || Spans.back().Address != Address)
			{
				Spans.push_back({ "", Style | More, Address });
			}
			Spans.back().Text += Text;
		}
		AddSpans(Child, Style | More, bLink ? ToText(cmark_node_get_url(Child)) : Address, Spans);
	}
}
}

std::string DescribeWithSecondReference(const std::string& Source)
{
	cmark_gfm_core_extensions_ensure_registered();
	const std::unique_ptr<cmark_parser, decltype(&cmark_parser_free)> Parser(
		cmark_parser_new(CMARK_OPT_DEFAULT), &cmark_parser_free);
	for (const char* Extension : { "table", "strikethrough" })
	{
		cmark_parser_attach_syntax_extension(Parser.get(), cmark_find_syntax_extension(Extension));
	}
	cmark_parser_feed(Parser.get(), Source.data(), Source.size());
	const std::unique_ptr<cmark_node, decltype(&cmark_node_free)> Document(
		cmark_parser_finish(Parser.get()), &cmark_node_free);
	FDescriber Describer;
	Describer.DescribeChildren(Document.get());
	return Describer.Result;
}
