#pragma once

#include "Agent/Project/TextNeedle.h"
#include "CoreMinimal.h"

class UEnum;
class UStruct;

/** Hashes and letters of the names in a package's bytes. */
namespace KestrelPackageNames
{
constexpr uint32 HashStart = 2166136261u;

/** FNV-1a (draft-eastlake-fnv), on lower-case bytes. */
constexpr uint32 AddToHash(uint32 Hash, uint8 LowerByte)
{
	return (Hash ^ LowerByte) * 16777619u;
}

/** Lower case for letters and digits; 0 for all others. */
constexpr uint8 FoldLetter(uint8 Byte)
{
	return (Byte >= 'a' && Byte <= 'z') || (Byte >= '0' && Byte <= '9') ? Byte
		   : Byte >= 'A' && Byte <= 'Z'                                 ? static_cast<uint8>(Byte + ('a' - 'A'))
																		: static_cast<uint8>(0);
}

constexpr int32 TrigramBits = 15;

/** Puts one more letter behind the last ones. */
constexpr uint32 AddToTrigram(uint32 Letters, uint8 LowerByte)
{
	constexpr uint32 LetterBits = 5; // two digits share a code, so that all codes fit
	const uint32 Code = LowerByte >= 'a' ? LowerByte - 'a' : 26u + (LowerByte - '0') / 2u;
	return ((Letters << LetterBits) | Code) & ((1u << TrigramBits) - 1u);
}

/** Spreads similar trigrams over all TrigramBits bits. */
constexpr uint32 MixTrigram(uint32 Letters)
{
	return (Letters * 40503u) & ((1u << TrigramBits) - 1u);
}
}

/** A row of letters and digits that what is looked for has in it. */
struct FKestrelSearchWord
{
	explicit FKestrelSearchWord(const FString& InText);

	/** Whether a text shows the word, in any letter case. */
	bool IsIn(const FString& Shown) const { return Shown.Contains(Text); }
	/** Takes over a name that stands for the word in packages: it is shown as something that the word is in. */
	void AddName(FName Name);

	FString Text;                     // in lower case
	FKestrelTextNeedle Needle;        // of the same
	TArray<uint32> Trigrams;          // of the letters, mixed; empty for words that are too short
	TSet<uint32> NameHashes;          // of names that stand for it
	TArray<TArray<uint32>> NameParts; // the trigrams of these names
	bool bIsAnywhere = false;         // it may come from where no package tells
};

/**
 * What the packages of Blueprints are asked for before they are loaded: the words of the text that is looked for.
 *
 * What a Blueprint shows are names and texts of its package; names of what the package refers to, which the package
 * holds, too; display names that stand behind these in the editor's classes; and words that nodes add. A word that
 * neither nodes add nor a number can be must therefore be in the bytes of the package, or of one that it depends on, or
 * the name of something must be there that is shown with the word.
 */
class KESTREL_API FKestrelSearchWords
{
public:
	explicit FKestrelSearchWords(const FString& Text);

	/** Without words nothing can be told, and all packages have to be loaded. */
	bool IsEmpty() const { return Words.IsEmpty(); }
	const TArray<FKestrelSearchWord>& GetWords() const { return Words; }
	/** A bit for each word. */
	uint32 GetAllBits() const { return (1u << Words.Num()) - 1u; }

	/** Takes over the names of a class, struct, function or enumeration that stand for words. */
	void AddNamesOf(const UStruct& Struct);
	void AddNamesOf(const UEnum& Enum);
	/** Takes over former names, which are in packages still, from the redirects of the configuration. */
	void AddFormerNames();

	/** The classes of nodes of which nobody knows what they show: a package that has one of them is loaded. */
	const TSet<uint32>& GetUnknownNodes() const { return UnknownNodes; }
	/** The same for equal sets of classes. */
	uint32 GetUnknownNodesKey() const { return UnknownNodesKey; }

private:
	void FindUnknownNodes();

	TArray<FKestrelSearchWord> Words;
	TSet<uint32> UnknownNodes; // hashes
	uint32 UnknownNodesKey = 0;
};
