#pragma once

#include "CoreMinimal.h"
#include "Misc/EnumClassFlags.h"

/** How a piece of text is set off from the rest. */
enum class EMarkdownStyle : uint8
{
	None = 0,
	Strong = 1 << 0,
	Emphasis = 1 << 1,
	Strike = 1 << 2,
	Code = 1 << 3,
};
ENUM_CLASS_FLAGS(EMarkdownStyle)

/** A piece of text of one style. */
struct FMarkdownSpan
{
	/** As it is to be shown: no markers, entities resolved; "\n" is a line break that the author asked for. */
	FString Text;
	EMarkdownStyle Style = EMarkdownStyle::None;
	/** Where a link or an image leads, as it was written and not checked in any way; empty for other text. */
	FString Address;
};

/** Neighbours differ in style or address, and none is empty. */
using FMarkdownText = TArray<FMarkdownSpan>;

/** A quote or an item of a list that a block stands in. */
struct FMarkdownContainer
{
	bool bQuote = false;
	/** Of an item, at its first block only: a bullet ("-"), or a number with its delimiter ("3."). */
	FString Marker;
};

enum class EMarkdownBlock : uint8
{
	Paragraph, // without text, an item that has nothing in it
	Heading,
	Code,
	Rule,
	Table,
};

enum class EMarkdownAlignment : uint8
{
	Left,
	Center,
	Right,
};

struct FMarkdownTable
{
	/** One for each column, at most MaxColumns. */
	TArray<EMarkdownAlignment> Columns;
	/** The first is the heading. A row can have fewer cells than there are columns, and never has more. */
	TArray<TArray<FMarkdownText>> Rows;
};

struct FMarkdownBlock
{
	EMarkdownBlock Kind = EMarkdownBlock::Paragraph;
	/** From the outermost. */
	TArray<FMarkdownContainer> Containers;
	/** The block belongs to an item of a list without blank lines. */
	bool bTight = false;
	/** Of a heading: 1 to 6. */
	int32 Level = 0;
	/** Of a paragraph or a heading. */
	FMarkdownText Text;
	/** Of code: its lines, each with "\n" at its end, and the word that says what it is written in, "cpp" for instance.
	 */
	FString Code;
	FString Language;
	FMarkdownTable Table;
};

/** What exceeds these is text without markers. */
namespace KestrelMarkdown
{
/** Containers in one another. */
constexpr int32 MaxContainers = 24;
/** Of a table. */
constexpr int32 MaxColumns = 64;
/** UTF-16 units of a paragraph. */
constexpr int32 MaxInlines = 20000;
/**
 * Blocks, cells of tables and pieces of text: each is something to lay out. The rest of a text that has more is one
 * block of code.
 */
constexpr int32 MaxParts = 20000;
}
