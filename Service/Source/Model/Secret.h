#pragma once

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

	/** A text from outside without the key in it. */
	std::string HideIn(std::string Other) const
	{
		static const std::string Hidden = "[key]";
		for (size_t At = Text.empty() ? std::string::npos : Other.find(Text); At != std::string::npos;
			 At = Other.find(Text, At + Hidden.size()))
		{
			Other.replace(At, Text.size(), Hidden);
		}
		return Other;
	}

private:
	std::string Text;
};
