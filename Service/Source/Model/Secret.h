#pragma once

#include <algorithm>
#include <string>

/** A key. It has no way into a log or a message but Reveal, and is hidden where a server repeats it. */
class Secret
{
public:
	Secret() = default;
	explicit Secret(std::string InText)
		: Text(std::move(InText))
	{
	}

	bool IsEmpty() const { return Text.empty(); }
	const std::string& Reveal() const { return Text; }

	/** A text from outside without the key in it; shorter keys, which local servers take, are words like any others. */
	std::string HideIn(std::string Other) const
	{
		static const std::string Hidden = "[key]";
		for (size_t At = IsRecognized() ? Other.find(Text) : std::string::npos; At != std::string::npos;
			 At = Other.find(Text, At + Hidden.size()))
		{
			Other.replace(At, Text.size(), Hidden);
		}
		return Other;
	}

	/** The same for a text that is still coming: what could be the beginning of the key is left out at its end. */
	std::string HideInBeginning(std::string Other) const
	{
		Other = HideIn(std::move(Other));
		for (size_t Length = IsRecognized() ? std::min(Text.size() - 1, Other.size()) : 0; Length > 0; --Length)
		{
			if (Other.compare(Other.size() - Length, Length, Text, 0, Length) == 0)
			{
				Other.resize(Other.size() - Length);
				break;
			}
		}
		return Other;
	}

private:
	static constexpr size_t ShortestRecognized = 8;

	bool IsRecognized() const { return Text.size() >= ShortestRecognized; }

	std::string Text;
};
