#pragma once

#include <random>
#include <string>
#include <string_view>

/** Changes texts at random, the same way in every run. */
class FTextMutator
{
public:
	/** Alphabet: what is put in, best the characters that mean something to the reader of the text. */
	explicit FTextMutator(std::string_view InAlphabet)
		: Alphabet(InAlphabet)
	{
	}

	/** The text after up to MaxChanges changes: a character replaced, put in or taken out, or the end cut off. */
	std::string Mutate(std::string Text, unsigned MaxChanges = 4)
	{
		for (unsigned Change = Below(MaxChanges + 1); Change > 0 && !Text.empty(); --Change)
		{
			const size_t At = Below(Text.size());
			switch (Below(8))
			{
			case 0:
				Text.erase(At);
				break;
			case 1:
			case 2:
				Text.erase(At, 1 + Below(3));
				break;
			case 3:
			case 4:
				Text[At] = AnyCharacter();
				break;
			default:
				Text.insert(At, 1, AnyCharacter());
				break;
			}
		}
		return Text;
	}

	/** A number from 0 to Limit - 1. */
	size_t Below(size_t Limit) { return Random() % Limit; }

	char AnyCharacter() { return Alphabet[Below(Alphabet.size())]; }

private:
	const std::string_view Alphabet;
	std::mt19937 Random{ 20261121 };
};
