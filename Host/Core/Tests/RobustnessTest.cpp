#include "CoreMinimal.h"
#include "Misc/CommandLine.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "Misc/Parse.h"
#include "MutateText.h"
#include "ScratchDirectory.h"

#include <gtest/gtest.h>

namespace
{
std::string ReadAll(const FString& Filename)
{
	FString Text;
	FFileHelper::LoadFileToString(Text, *Filename);
	return TCHAR_TO_UTF8(*Text);
}
}

TEST(ConfigRobustnessTest, WhatWasReadIsReadTheSameFromItsOwnFile)
{
	const std::string Seeds[] = {
		"[S]\nUrl=http://h/x;y \nQuoted=\"  kept \"\nLong=a\\\nb\n+List=2\n.List=2\n-List=1\nEmpty=\n",
		"; Comment\r\n[/Script/Module.Class]\r\nK_3=(A=\"x\",B=\"y\\\"\")\r\n!List=ClearArray\r\n[T]\r\nk = \\n\r\n",
	};
	FTextMutator Mutator("[]=\"\\+-.!; \t\r\nn'a_0\x01\xc3\xa9");
	FScratchDirectory Scratch;
	const FString Filename = Scratch.Path / TEXT("Mine.ini");
	for (int32 Round = 0; Round < 3000; ++Round)
	{
		const std::string Text = Mutator.Mutate(Seeds[Round % 2], 8);
		FConfigFile First;
		First.ProcessInputFileContents(FString(Text.c_str()));
		ASSERT_TRUE(First.Write(Filename, FConfigFile()));
		const std::string Written = ReadAll(Filename);
		FConfigFile Second;
		Second.Read(Filename);
		ASSERT_TRUE(First.Write(Filename, Second));
		ASSERT_EQ(ReadAll(Filename), "") << "of:\n" << Text << "\nwritten:\n" << Written;
		ASSERT_TRUE(Second.Write(Filename, First));
		ASSERT_EQ(ReadAll(Filename), "") << "of:\n" << Text << "\nwritten:\n" << Written;
	}
}

TEST(CommandLineRobustnessTest, ArgumentsComeBackAsTheWordsTheyWere)
{
	const std::string Seeds[] = { "-prompt=read \"a b.h\"", "/my games/a.uproject", "-ini:Engine:[S]:K=a b,[T]:L=c" };
	FTextMutator Mutator("-= \t\"\\\n\r\v'a");
	for (int32 Round = 0; Round < 20000; ++Round)
	{
		std::string Words[] = { "editor", Mutator.Mutate(Seeds[Round % 3]), Mutator.Mutate("-a=b c\\", 6) };
		char* ArgV[] = { Words[0].data(), Words[1].data(), Words[2].data() };
		const FString Line = FCommandLine::BuildFromArgV(3, ArgV);
		const TCHAR* Stream = *Line;
		for (const std::string& Word : { Words[1], Words[2] })
		{
			ASSERT_EQ(std::string(TCHAR_TO_UTF8(*FCommandLine::Token(Stream))), Word) << TCHAR_TO_UTF8(*Line);
		}
		ASSERT_TRUE(FCommandLine::Token(Stream).IsEmpty()) << TCHAR_TO_UTF8(*Line);
	}
}

TEST(CommandLineRobustnessTest, AnyTextHasAnEndAndItsValuesAreWithinIt)
{
	FTextMutator Mutator("-= \t\"\\'a");
	for (int32 Round = 0; Round < 20000; ++Round)
	{
		const FString Line(Mutator.Mutate("-say=\"a \\\"b\\\"\" -a -port=80", 8).c_str());
		FString Value;
		int32 Number = 0;
		FParse::Value(*Line, TEXT("a="), Value);
		FParse::Value(*Line, TEXT("port="), Number);
		FParse::Param(*Line, TEXT("a"));
		ASSERT_LE(Value.Len(), Line.Len());
		int32 NumWords = 0;
		for (const TCHAR* Stream = *Line; *Stream; ++NumWords)
		{
			FCommandLine::Token(Stream);
			ASSERT_LE(NumWords, Line.Len());
		}
	}
}

TEST(StringConversionRobustnessTest, ValidTextIsKeptAndBrokenTextIsMendedOnce)
{
	FTextMutator Mutator("a\x80\xbf\xc1\xc3\xa9\xe0\x9f\xed\xa0\xef\xf0\x90\xf4\x8f\xf5\xff");
	for (int32 Round = 0; Round < 20000; ++Round)
	{
		const std::string Bytes = Mutator.Mutate("a\u00e9\u20ac\U0001F600\U0010FFFF\uFFFD", 6);
		const FUTF8ToTCHAR Units(Bytes.data(), static_cast<int32>(Bytes.size()));
		const FTCHARToUTF8 Mended(Units.Get(), Units.Length());
		const std::string Once(Mended.Get(), static_cast<size_t>(Mended.Length()));
		const FUTF8ToTCHAR UnitsAgain(Mended.Get(), Mended.Length());
		ASSERT_TRUE(FString(Units.Get()).Equals(FString(UnitsAgain.Get())));
		ASSERT_EQ(Bytes == Once, Once.find("\uFFFD") == Bytes.find("\uFFFD") && Bytes.size() == Once.size());

		// Units cut and swapped at will: only halves of pairs are replaced.
		TArray<TCHAR> Broken;
		for (int32 Index = 0; Index < 6; ++Index)
		{
			const TCHAR Pieces[] = { u'a', 0xD83D, 0xDE00, 0xDBFF, 0xDC00, 0x20AC };
			Broken.Add(Pieces[Mutator.Below(6)]);
		}
		const FTCHARToUTF8 Encoded(Broken.GetData(), Broken.Num());
		const FUTF8ToTCHAR Decoded(Encoded.Get(), Encoded.Length());
		ASSERT_EQ(Decoded.Length(), Broken.Num());
		for (int32 Index = 0; Index < Broken.Num(); ++Index)
		{
			ASSERT_TRUE(Decoded.Get()[Index] == Broken[Index] || Decoded.Get()[Index] == 0xFFFD);
		}
	}
}
