#pragma once

#include <string>

/** The bits of EMarkdownStyle. */
namespace ReferenceStyle
{
constexpr unsigned Strong = 1;
constexpr unsigned Emphasis = 2;
constexpr unsigned Strike = 4;
constexpr unsigned Code = 8;
}

/** A piece of text in one style. */
struct FReferenceSpan
{
	std::string Text;
	unsigned Style = 0;
	std::string Address;
};

/** Both readers' spans in one form. */
std::string DescribeSpan(const FReferenceSpan& Span);

/** What md4c reads in a document: a line for each block, with the containers around it. */
std::string DescribeWithReference(const std::string& Source);

/** The same for cmark with its extensions for tables and strikethrough. */
std::string DescribeWithSecondReference(const std::string& Source);
