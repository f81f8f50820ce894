#include "ConfigBlock.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace
{
// What was done besides, so that it can be undone, stands at the end of the first line.
const std::string BlockBegin = "; Begin of what 'kestrel-service connect' wrote; 'disconnect' removes it";
const std::string BlockEnd = "; End of what 'kestrel-service connect' wrote";
const std::string LineBreakAdded = " and the line break before it";
const std::string FileMade = " and the file";

std::string ToLower(std::string Text)
{
	std::transform(Text.begin(), Text.end(), Text.begin(), [](unsigned char C) { return std::tolower(C); });
	return Text;
}

std::string TrimBoth(const std::string& Text)
{
	const size_t Begin = Text.find_first_not_of(" \t\r");
	return Begin == std::string::npos ? "" : Text.substr(Begin, Text.find_last_not_of(" \t\r") - Begin + 1);
}

std::string WithLineEnding(const std::string& Lines, const std::string& LineEnding)
{
	std::string Text;
	std::istringstream Stream(Lines);
	for (std::string Line; std::getline(Stream, Line);)
	{
		Text += Line + LineEnding;
	}
	return Text;
}
}

std::string ConfigBlock::Add(const std::string& Text, const std::string& Lines, bool bNewFile)
{
	const std::string LineEnding = Text.find("\r\n") != std::string::npos ? "\r\n" : "\n";
	const bool bNeedsLineBreak = !Text.empty() && Text.back() != '\n';
	const std::string Begin = BlockBegin + (bNeedsLineBreak ? LineBreakAdded : "") + (bNewFile ? FileMade : "") + "\n";
	return Text + (bNeedsLineBreak ? LineEnding : "") + WithLineEnding(Begin + Lines + BlockEnd + "\n", LineEnding);
}

ConfigBlock::Removed ConfigBlock::Remove(const std::string& Text)
{
	const size_t Begin = Text.find(BlockBegin);
	const size_t End = Begin == std::string::npos ? Begin : Text.find(BlockEnd, Begin);
	if (End == std::string::npos || (Begin > 0 && Text[Begin - 1] != '\n'))
	{
		return { Text, "", false };
	}
	const size_t LinesBegin = Text.find('\n', Begin) + 1;
	const std::string FirstLine = Text.substr(Begin, LinesBegin - Begin);
	const size_t After = Text.find('\n', End);
	std::string Before = Text.substr(0, Begin);
	if (FirstLine.find(LineBreakAdded) != std::string::npos && !Before.empty())
	{
		Before.resize(Before.size() - (Before.size() > 1 && Before[Before.size() - 2] == '\r' ? 2 : 1));
	}
	const std::string Left = Before + (After == std::string::npos ? "" : Text.substr(After + 1));
	return { Left, Text.substr(LinesBegin, End - LinesBegin),
		Left.empty() && FirstLine.find(FileMade) != std::string::npos };
}

bool ConfigBlock::Sets(const std::string& Text, const std::string& Section, const std::string& Key)
{
	static const std::string ByteOrderMark = "\xEF\xBB\xBF";
	std::string Lines = Text.rfind(ByteOrderMark, 0) == 0 ? Text.substr(ByteOrderMark.size()) : Text;
	// The engine ends lines at each of both.
	std::replace(Lines.begin(), Lines.end(), '\r', '\n');
	std::istringstream Stream(Lines);
	std::string Current;
	for (std::string Line; std::getline(Stream, Line);)
	{
		Line = ToLower(TrimBoth(Line));
		if (!Line.empty() && Line[0] == '[')
		{
			Current = Line;
		}
		const size_t KeyAt = Line.find_first_not_of("+-.!");
		const size_t Equals = Line.find('=');
		if (Current == "[" + ToLower(Section) + "]" && KeyAt != std::string::npos && Equals != std::string::npos &&
			Equals >= KeyAt && TrimBoth(Line.substr(KeyAt, Equals - KeyAt)) == ToLower(Key))
		{
			return true;
		}
	}
	return false;
}
