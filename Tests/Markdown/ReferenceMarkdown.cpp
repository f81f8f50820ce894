#include "ReferenceMarkdown.h"

#include <cstdint>
#include <md4c.h>
#include <vector>

namespace
{
using namespace ReferenceStyle;

struct FContainer
{
	bool bQuote = false;
	std::string Marker;
};

struct FList
{
	bool bTight = false;
	bool bOrdered = false;
	unsigned Number = 0;
	char Delimiter = 0;
};

std::string ToUtf8(uint32_t CodePoint)
{
	if (CodePoint == 0 || CodePoint > 0x10FFFF || (CodePoint >= 0xD800 && CodePoint < 0xE000))
	{
		CodePoint = 0xFFFD;
	}
	std::string Result;
	const int NumMore = CodePoint < 0x80 ? 0 : CodePoint < 0x800 ? 1 : CodePoint < 0x10000 ? 2 : 3;
	const uint32_t Lead[] = { 0, 0xC0, 0xE0, 0xF0 };
	Result += static_cast<char>(Lead[NumMore] | (CodePoint >> (6 * NumMore)));
	for (int More = NumMore - 1; More >= 0; --More)
	{
		Result += static_cast<char>(0x80 | ((CodePoint >> (6 * More)) & 0x3F));
	}
	return Result;
}

/** Of those that the test documents have. */
std::string DecodeEntity(const std::string& Entity)
{
	if (Entity.size() > 3 && Entity[1] == '#')
	{
		const bool bHex = Entity[2] == 'x' || Entity[2] == 'X';
		return ToUtf8(static_cast<uint32_t>(std::stoul(Entity.substr(bHex ? 3 : 2), nullptr, bHex ? 16 : 10)));
	}
	return Entity == "&lt;" ? "<" : Entity == "&gt;" ? ">" : Entity == "&amp;" ? "&" : Entity;
}

/** Collects blocks from the events of the parser. */
class FCollector
{
public:
	std::string Result;

	void EnterBlock(MD_BLOCKTYPE Type, void* Detail);
	void LeaveBlock(MD_BLOCKTYPE Type);
	void EnterSpan(MD_SPANTYPE Type, void* Detail);
	void LeaveSpan(MD_SPANTYPE Type);
	void AddText(MD_TEXTTYPE Type, const std::string& Text);

private:
	void BeginBlock(const std::string& Kind)
	{
		FlushTight();
		Block = Kind;
		bInBlock = true;
	}

	void EndBlock()
	{
		for (FContainer& Container : Containers)
		{
			Result += Container.bQuote ? "> " : "[" + Container.Marker + "] ";
			Container.Marker.clear();
		}
		Result += Block + TakeSpans() + "\n";
		bInBlock = false;
		Block.clear();
	}

	/** Text of an item of a tight list stands in no paragraph. */
	void FlushTight()
	{
		if (!Spans.empty() && !bInBlock)
		{
			Block = "tight p ";
			EndBlock();
		}
	}

	std::string TakeSpans()
	{
		std::string Text;
		for (const FReferenceSpan& Span : Spans)
		{
			Text += DescribeSpan(Span);
		}
		Spans.clear();
		return Text;
	}

	void Append(const std::string& Text, unsigned MoreStyle = 0)
	{
		const unsigned Style =
			MoreStyle | (NumStrong ? Strong : 0) | (NumEmphasis ? Emphasis : 0) | (NumStrike ? Strike : 0);
		const std::string Address = Addresses.empty() ? "" : Addresses.back();
		if (Spans.empty() || Spans.back().Style != Style || Spans.back().Address != Address)
		{
			Spans.push_back({ "", Style, Address });
		}
		Spans.back().Text += Text;
	}

	std::vector<FContainer> Containers;
	std::vector<FList> Lists;
	std::vector<FReferenceSpan> Spans;
	std::vector<std::string> Addresses;
	std::string Block;
	std::string Table;
	bool bInBlock = false;
	bool bInCode = false;
	int NumStrong = 0;
	int NumEmphasis = 0;
	int NumStrike = 0;
};

std::string TextOf(const MD_ATTRIBUTE& Attribute)
{
	std::string Text;
	for (unsigned Index = 0; Attribute.text && Attribute.substr_offsets[Index] < Attribute.size; ++Index)
	{
		const MD_OFFSET Begin = Attribute.substr_offsets[Index];
		const std::string Part(Attribute.text + Begin, Attribute.substr_offsets[Index + 1] - Begin);
		Text += Attribute.substr_types[Index] == MD_TEXT_ENTITY ? DecodeEntity(Part) : Part;
	}
	return Text;
}

void FCollector::EnterBlock(MD_BLOCKTYPE Type, void* Detail)
{
	switch (Type)
	{
	case MD_BLOCK_QUOTE:
		FlushTight();
		Containers.push_back({ true, "" });
		break;
	case MD_BLOCK_UL:
		FlushTight();
		Lists.push_back({ static_cast<MD_BLOCK_UL_DETAIL*>(Detail)->is_tight != 0, false, 0,
			static_cast<MD_BLOCK_UL_DETAIL*>(Detail)->mark });
		break;
	case MD_BLOCK_OL:
		FlushTight();
		Lists.push_back({ static_cast<MD_BLOCK_OL_DETAIL*>(Detail)->is_tight != 0, true,
			static_cast<MD_BLOCK_OL_DETAIL*>(Detail)->start,
			static_cast<MD_BLOCK_OL_DETAIL*>(Detail)->mark_delimiter });
		break;
	case MD_BLOCK_LI:
		FlushTight();
		Containers.push_back({ false, Lists.back().bOrdered ? "#" + std::string(1, Lists.back().Delimiter) : "-" });
		break;
	case MD_BLOCK_HR:
		BeginBlock("rule");
		break;
	case MD_BLOCK_H:
		BeginBlock("h" + std::to_string(static_cast<MD_BLOCK_H_DETAIL*>(Detail)->level) + " ");
		break;
	case MD_BLOCK_CODE:
		BeginBlock("code(" + TextOf(static_cast<MD_BLOCK_CODE_DETAIL*>(Detail)->lang) + ") ");
		bInCode = true;
		break;
	case MD_BLOCK_P:
		BeginBlock("p ");
		break;
	case MD_BLOCK_TABLE:
		BeginBlock("table ");
		break;
	case MD_BLOCK_TR:
		Table += "\n  |";
		break;
	case MD_BLOCK_TH:
	case MD_BLOCK_TD:
		if (Type == MD_BLOCK_TH)
		{
			Block += "LLCR"[static_cast<MD_BLOCK_TD_DETAIL*>(Detail)->align];
		}
		break;
	default:
		break;
	}
}

void FCollector::LeaveBlock(MD_BLOCKTYPE Type)
{
	switch (Type)
	{
	case MD_BLOCK_LI:
		FlushTight();
		if (!Containers.back().Marker.empty())
		{
			Block = "p ";
			EndBlock();
		}
		Containers.pop_back();
		break;
	case MD_BLOCK_QUOTE:
		FlushTight();
		Containers.pop_back();
		break;
	case MD_BLOCK_UL:
	case MD_BLOCK_OL:
		FlushTight();
		Lists.pop_back();
		break;
	case MD_BLOCK_TABLE:
		Block += Table;
		Table.clear();
		EndBlock();
		break;
	case MD_BLOCK_TH:
	case MD_BLOCK_TD:
		Table += TakeSpans() + "|";
		break;
	case MD_BLOCK_CODE:
		bInCode = false;
		[[fallthrough]];
	case MD_BLOCK_HR:
	case MD_BLOCK_H:
	case MD_BLOCK_P:
		EndBlock();
		break;
	default:
		break;
	}
}

void FCollector::EnterSpan(MD_SPANTYPE Type, void* Detail)
{
	NumStrong += Type == MD_SPAN_STRONG;
	NumEmphasis += Type == MD_SPAN_EM;
	NumStrike += Type == MD_SPAN_DEL;
	if (Type == MD_SPAN_A)
	{
		Addresses.push_back(TextOf(static_cast<MD_SPAN_A_DETAIL*>(Detail)->href));
	}
	if (Type == MD_SPAN_IMG)
	{
		Addresses.push_back(TextOf(static_cast<MD_SPAN_IMG_DETAIL*>(Detail)->src));
	}
}

void FCollector::LeaveSpan(MD_SPANTYPE Type)
{
	NumStrong -= Type == MD_SPAN_STRONG;
	NumEmphasis -= Type == MD_SPAN_EM;
	NumStrike -= Type == MD_SPAN_DEL;
	if (Type == MD_SPAN_A || Type == MD_SPAN_IMG)
	{
		Addresses.pop_back();
	}
}

void FCollector::AddText(MD_TEXTTYPE Type, const std::string& Text)
{
	switch (Type)
	{
	case MD_TEXT_BR:
		Append("\n");
		break;
	case MD_TEXT_SOFTBR:
		Append(" ");
		break;
	case MD_TEXT_ENTITY:
		Append(DecodeEntity(Text));
		break;
	case MD_TEXT_CODE:
		if (bInCode)
		{
			Block += Text;
		}
		else
		{
			Append(Text, Code);
		}
		break;
	default:
		Append(Text);
		break;
	}
}
}

std::string DescribeSpan(const FReferenceSpan& Span)
{
	std::string Marks;
	for (unsigned Bit = 0; Bit < 4; ++Bit)
	{
		Marks += Span.Style & (1u << Bit) ? std::string(1, "sexc"[Bit]) : "";
	}
	return "{" + Marks + ":" + Span.Text + (Span.Address.empty() ? "" : "->" + Span.Address) + "}";
}

std::string DescribeWithReference(const std::string& Source)
{
	FCollector Collector;
	MD_PARSER Parser = {};
	Parser.flags = MD_FLAG_TABLES | MD_FLAG_STRIKETHROUGH | MD_FLAG_NOHTML;
	Parser.enter_block = [](MD_BLOCKTYPE Type, void* Detail, void* User) {
		static_cast<FCollector*>(User)->EnterBlock(Type, Detail);
		return 0;
	};
	Parser.leave_block = [](MD_BLOCKTYPE Type, void*, void* User) {
		static_cast<FCollector*>(User)->LeaveBlock(Type);
		return 0;
	};
	Parser.enter_span = [](MD_SPANTYPE Type, void* Detail, void* User) {
		static_cast<FCollector*>(User)->EnterSpan(Type, Detail);
		return 0;
	};
	Parser.leave_span = [](MD_SPANTYPE Type, void*, void* User) {
		static_cast<FCollector*>(User)->LeaveSpan(Type);
		return 0;
	};
	Parser.text = [](MD_TEXTTYPE Type, const MD_CHAR* Text, MD_SIZE Size, void* User) {
		static_cast<FCollector*>(User)->AddText(Type, std::string(Text, Size));
		return 0;
	};
	md_parse(Source.data(), static_cast<MD_SIZE>(Source.size()), &Parser, &Collector);
	return Collector.Result;
}
