#include "Agent/Project/SearchWords.h"

#include "Agent/Project/NodeTitles.h"
#include "EdGraph/EdGraphNode.h"
#include "Internationalization/Culture.h"
#include "Internationalization/Internationalization.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/Parse.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"
#include "UObject/UObjectHash.h"
#include "UObject/UnrealType.h"

namespace SearchWords
{
constexpr int32 MaxWords = 16;
constexpr int32 MaxNames = 500; // that stand for one word; more of them are in nearly all packages
constexpr int32 AsciiEnd = 0x80;
constexpr int32 TrigramLength = 3;

// Under which the editor shows what has another name in the code.
const FName DisplayKeys[] = { TEXT("DisplayName"), TEXT("FriendlyName"), TEXT("CompactNodeTitle") };

bool IsAscii(const FString& Text)
{
	for (const TCHAR C : Text)
	{
		if (C >= AsciiEnd)
		{
			return false;
		}
	}
	return true;
}

uint8 Fold(TCHAR C)
{
	return C < AsciiEnd ? KestrelPackageNames::FoldLetter(static_cast<uint8>(C)) : static_cast<uint8>(0);
}

/** A name in a package is a whole row of letters, digits and underscores. */
uint32 HashName(const FString& Name)
{
	uint32 Hash = KestrelPackageNames::HashStart;
	for (const TCHAR C : Name)
	{
		const uint8 Letter = Fold(C);
		Hash = KestrelPackageNames::AddToHash(Hash, Letter ? Letter : static_cast<uint8>(C));
	}
	return Hash;
}

TArray<uint32> MakeTrigrams(const FString& Text)
{
	TArray<uint32> Trigrams;
	uint32 Letters = 0;
	int32 Length = 0;
	for (const TCHAR C : Text)
	{
		const uint8 Letter = Fold(C);
		Length = Letter ? Length + 1 : 0;
		Letters = Letter ? KestrelPackageNames::AddToTrigram(Letters, Letter) : 0;
		if (Length >= TrigramLength)
		{
			Trigrams.AddUnique(KestrelPackageNames::MixTrigram(Letters));
		}
	}
	return Trigrams;
}

/** In other languages the words that nodes add are others than those that are known. */
bool AreTitlesEnglish()
{
	return FInternationalization::Get().GetCurrentLanguage()->GetTwoLetterISOLanguageName().Equals(TEXT("en"));
}

/** Words that are digits alone can be a name's number, which packages hold apart. */
bool CanBeTold(const FString& Word)
{
	bool bHasLetter = false;
	for (const TCHAR C : Word)
	{
		bHasLetter |= !FChar::IsDigit(C);
	}
	return bHasLetter && !KestrelNodeTitles::GetAddedWords().ContainsByPredicate(
							 [&Word](const FString& Added) { return Added.Contains(Word); });
}

/** In lower case; each letter that is not ASCII ends a word. */
TArray<FString> Split(const FString& Text)
{
	TArray<FString> Words;
	FString Word;
	for (const TCHAR C : Text)
	{
		if (const uint8 Letter = Fold(C))
		{
			Word.AppendChar(static_cast<TCHAR>(Letter));
		}
		else if (!Word.IsEmpty())
		{
			Words.AddUnique(Word);
			Word.Empty();
		}
	}
	if (!Word.IsEmpty())
	{
		Words.AddUnique(Word);
	}
	return Words;
}

/** What a class, function or property is shown as, if that is not its name. */
template <typename FieldType>
bool IsShownWith(const FKestrelSearchWord& Word, const FieldType& Field)
{
	for (const FName& Key : DisplayKeys)
	{
		if (Field.HasMetaData(Key) && Word.IsIn(Field.GetMetaData(Key)))
		{
			return true;
		}
	}
	return false;
}

/** What a Blueprint inherits is shown with the class that declares it, and the package names but the parent. */
void AddNamesOfChildren(FKestrelSearchWord& Word, const UClass* Class)
{
	TArray<UClass*> Children;
	if (Class)
	{
		GetDerivedClasses(Class, Children);
	}
	for (const UClass* Child : Children)
	{
		if (Child->HasAnyClassFlags(CLASS_Native)) // of others, the package is looked at
		{
			Word.AddName(Child->GetFName());
		}
	}
}
}

FKestrelSearchWord::FKestrelSearchWord(const FString& InText)
	: Text(InText)
	, Needle(InText)
	, Trigrams(SearchWords::MakeTrigrams(InText))
{
}

void FKestrelSearchWord::AddName(FName Name)
{
	// A package holds the number of a name apart, unless it is written otherwise than the engine writes numbers.
	for (const FString& Spelling : { Name.ToString(), Name.GetPlainNameString() })
	{
		if (bIsAnywhere || IsIn(Spelling))
		{
			continue; // then the word itself is found
		}
		bool bKnown = false;
		NameHashes.Add(SearchWords::HashName(Spelling), &bKnown);
		if (!bKnown)
		{
			NameParts.Add(SearchWords::MakeTrigrams(Spelling));
		}
		bIsAnywhere = NameHashes.Num() > SearchWords::MaxNames || !SearchWords::IsAscii(Spelling);
	}
}

FKestrelSearchWords::FKestrelSearchWords(const FString& Text)
{
	if (!SearchWords::AreTitlesEnglish())
	{
		return;
	}
	for (const FString& Word : SearchWords::Split(Text))
	{
		if (Words.Num() < SearchWords::MaxWords && SearchWords::CanBeTold(Word))
		{
			Words.Emplace(Word);
		}
	}
	FindUnknownNodes();
}

void FKestrelSearchWords::FindUnknownNodes()
{
	TArray<UClass*> Classes;
	GetDerivedClasses(UEdGraphNode::StaticClass(), Classes);
	for (const UClass* Class : Classes)
	{
		// There are no nodes of abstract classes, and "K2Node" stands in packages as a namespace of texts.
		if (Class->HasAnyClassFlags(CLASS_Abstract) || KestrelNodeTitles::IsKnownClass(Class->GetFName()))
		{
			continue;
		}
		for (const FString& Spelling : { Class->GetName(), Class->GetFName().GetPlainNameString() })
		{
			if (!SearchWords::IsAscii(Spelling))
			{
				Words.Empty(); // it cannot be recognised
			}
			const uint32 Hash = SearchWords::HashName(Spelling);
			bool bKnown = false;
			UnknownNodes.Add(Hash, &bKnown);
			UnknownNodesKey += bKnown ? 0 : Hash;
		}
	}
}

void FKestrelSearchWords::AddNamesOf(const UStruct& Struct)
{
	const UClass* Owner = Struct.GetTypedOuter<UClass>();
	const UClass* Class = Cast<UClass>(&Struct);
	for (FKestrelSearchWord& Word : Words)
	{
		bool bShown = SearchWords::IsShownWith(Word, Struct) || Word.IsIn(Struct.GetName());
		for (TFieldIterator<FProperty> It(&Struct, EFieldIterationFlags::None); It; ++It)
		{
			if (SearchWords::IsShownWith(Word, **It))
			{
				Word.AddName(It->GetFName());
				bShown = true;
			}
			bShown |= Word.IsIn(It->GetName());
		}
		if (bShown)
		{
			Word.AddName(Struct.GetFName());
			SearchWords::AddNamesOfChildren(Word, Class);
			// A class that implements an interface gets graphs for the functions that it has not got yet.
			if (Owner && Owner->HasAnyClassFlags(CLASS_Interface))
			{
				Word.AddName(Owner->GetFName());
			}
		}
	}
}

void FKestrelSearchWords::AddNamesOf(const UEnum& Enum)
{
	for (FKestrelSearchWord& Word : Words)
	{
		bool bShown = Word.IsIn(Enum.GetDisplayNameText().ToString());
		for (int32 Index = 0; Index < Enum.NumEnums() && !bShown; ++Index)
		{
			bShown = Word.IsIn(Enum.GetNameStringByIndex(Index)) ||
					 Word.IsIn(Enum.GetDisplayNameTextByIndex(Index).ToString());
		}
		if (bShown)
		{
			Word.AddName(Enum.GetFName());
		}
	}
}

void FKestrelSearchWords::AddFormerNames()
{
	for (const TCHAR* Kind : { TEXT("FunctionRedirects"), TEXT("PropertyRedirects"), TEXT("ClassRedirects"),
			 TEXT("StructRedirects"), TEXT("EnumRedirects") })
	{
		TArray<FString> Lines;
		GConfig->GetArray(TEXT("CoreRedirects"), Kind, Lines, GEngineIni);
		for (const FString& Line : Lines)
		{
			FString OldName;
			if (!FParse::Value(*Line, TEXT("OldName="), OldName))
			{
				continue;
			}
			const TCHAR* const Separators[] = { TEXT("/"), TEXT("."), TEXT(":") };
			TArray<FString> Parts;
			OldName.ParseIntoArray(Parts, Separators, UE_ARRAY_COUNT(Separators));
			for (FKestrelSearchWord& Word : Words)
			{
				if (!Parts.IsEmpty() && Parts.Last().Len() < NAME_SIZE && Word.IsIn(Line))
				{
					Word.AddName(FName(*Parts.Last()));
				}
			}
		}
	}
}
