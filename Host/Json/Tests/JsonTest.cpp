#include "CoreMinimal.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"
#include "Utf8.h"

#include <gtest/gtest.h>
#include <random>

namespace
{
TSharedPtr<FJsonObject> Parse(const FString& Text)
{
	TSharedPtr<FJsonObject> Object;
	FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Object);
	return Object;
}

std::string Condensed(const TSharedPtr<FJsonObject>& Object)
{
	FString Text;
	const TSharedRef<TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>> Writer =
		TJsonWriterFactory<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>::Create(&Text);
	EXPECT_TRUE(FJsonSerializer::Serialize(Object.ToSharedRef(), Writer));
	return ToUtf8(Text);
}

std::string Pretty(const TSharedPtr<FJsonObject>& Object)
{
	FString Text;
	EXPECT_TRUE(FJsonSerializer::Serialize(Object.ToSharedRef(), TJsonWriterFactory<>::Create(&Text)));
	return ToUtf8(Text);
}
}

TEST(JsonWriterTest, CondensedHasNoWhiteSpaceAndKeepsTheOrder)
{
	const char* Text = R"({"b":1,"a":[true,null,"x"],"c":{},"d":[],"e":-0.5,"f":"é/\"\\\n"})";
	EXPECT_EQ(Condensed(Parse(FString(Text))), Text);
	EXPECT_EQ(Condensed(Parse(TEXT("{\"n\":0.1,\"m\":1e20,\"o\":3.0,\"c\":\"\\u0001\\u00e9\"}"))),
		"{\"n\":0.10000000000000001,\"m\":1e+20,\"o\":3,\"c\":\"\\u0001é\"}");
}

TEST(JsonWriterTest, PrettyIsTheEnginesLayout)
{
	EXPECT_EQ(
		Pretty(Parse(
			TEXT("{\"n\":1,\"o\":{\"s\":\"x\"},\"e\":{},\"a\":[1,2],\"t\":[\"x\",\"y\"],\"m\":[],\"l\":[{\"k\":1}]}"))),
		"{\n\t\"n\": 1,\n\t\"o\":\n\t{\n\t\t\"s\": \"x\"\n\t},\n\t\"e\":\n\t{\n\t},\n\t\"a\": [ 1, 2 ],\n\t\"t\": [\n\t\t\"x\",\n\t\t\"y\"\n\t],\n"
		"\t\"m\": [],\n\t\"l\": [\n\t\t{\n\t\t\t\"k\": 1\n\t\t}\n\t]\n}");
	EXPECT_EQ(Pretty(MakeShared<FJsonObject>()), "{\n}") << "an empty object is two lines";
}

TEST(JsonWriterTest, TheTextAppearsOnlyAtClose)
{
	FString Text = TEXT("before");
	const TSharedRef<TJsonWriter<>> Writer = TJsonWriterFactory<>::Create(&Text);
	Writer->WriteArrayStart();
	Writer->WriteValue(FString(TEXT("x")));
	EXPECT_FALSE(Writer->Close()) << "not complete";
	Writer->WriteArrayEnd();
	EXPECT_TRUE(Writer->Close());
	EXPECT_EQ(ToUtf8(Text), "[\n\t\"x\"\n]");
}

TEST(JsonWriterDeathTest, NamesAndPlacesMustFit)
{
	FString Text;
	TJsonWriter<> Writer(&Text, 0);
	Writer.WriteObjectStart();
	EXPECT_DEATH(Writer.WriteValue(1), "needs a name");
	EXPECT_DEATH(Writer.WriteArrayEnd(), "wrong kind");
}

TEST(JsonObjectTest, NamesIgnoreCaseAndTheLastWinsInTheFirstPlace)
{
	const TSharedPtr<FJsonObject> Object = Parse(TEXT("{\"a\":1,\"b\":2,\"A\":3}"));
	EXPECT_EQ(Condensed(Object), R"({"A":3,"b":2})");
	EXPECT_TRUE(Object->HasField(TEXT("B")));
	Object->SetStringField(TEXT("B"), TEXT("x"));
	EXPECT_EQ(Condensed(Object), R"({"A":3,"B":"x"})");
}

TEST(JsonObjectTest, FieldsConvertWhereTheEngineConverts)
{
	const TSharedPtr<FJsonObject> Object =
		Parse(TEXT("{\"n\":5,\"f\":2.5,\"t\":true,\"s\":\"12\",\"z\":null,\"a\":[],\"big\":1e12}"));
	FString Text;
	EXPECT_TRUE(Object->TryGetStringField(TEXT("n"), Text));
	EXPECT_EQ(ToUtf8(Text), "5");
	EXPECT_TRUE(Object->TryGetStringField(TEXT("t"), Text));
	EXPECT_EQ(ToUtf8(Text), "true");
	EXPECT_FALSE(Object->TryGetStringField(TEXT("z"), Text));
	EXPECT_TRUE(Object->HasField(TEXT("z"))) << "a null member is there";
	EXPECT_FALSE(Object->TryGetStringField(TEXT("a"), Text));
	int32 Number = 0;
	EXPECT_TRUE(Object->TryGetNumberField(TEXT("s"), Number));
	EXPECT_EQ(Number, 12);
	EXPECT_FALSE(Object->TryGetNumberField(TEXT("big"), Number)) << "out of range";
	bool bValue = false;
	EXPECT_TRUE(Object->TryGetBoolField(TEXT("n"), bValue));
	EXPECT_TRUE(bValue);
	const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
	EXPECT_FALSE(Object->TryGetArrayField(TEXT("n"), Array));
}

TEST(JsonReaderTest, RefusesWhatIsNoDocument)
{
	for (const TCHAR* Text : { TEXT(""), TEXT("5"), TEXT("\"x\""), TEXT("{\"a\":1} x"), TEXT("{'a':1}"),
			 TEXT("{\"a\":1,}"), TEXT("{\"a\""), TEXT("<html>"), TEXT("[1]"), TEXT("{\"a\":\"\\q\"}") })
	{
		EXPECT_FALSE(Parse(Text).IsValid()) << ToUtf8(Text);
	}
	TArray<TSharedPtr<FJsonValue>> Array;
	EXPECT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(TEXT("[1,[2]]")), Array));
	EXPECT_EQ(Array.Num(), 2);
}

TEST(JsonReaderTest, EscapesGiveUnits)
{
	const TSharedPtr<FJsonObject> Object = Parse(TEXT("{\"e\":\"\\ud83d\\ude00 \\u00e9\\t\"}"));
	ASSERT_TRUE(Object.IsValid());
	EXPECT_EQ(ToUtf8(Object->GetStringField(TEXT("e"))), "\U0001F600 é\t");
}

TEST(JsonReaderTest, UnpairedSurrogateEscapesAreUnitsLikeOthers)
{
	struct FCase
	{
		const TCHAR* Escaped;
		std::u16string_view Expected;
	};
	static const TCHAR LowAlone[] = { 'a', 0xDC00, 0 };
	static const TCHAR HighAlone[] = { 0xD800, 0 };
	static const TCHAR HighBeforeText[] = { 0xD83D, 'A', 0xE9, 0 };
	static const TCHAR TwoHigh[] = { 0xD83D, 0xD83D, 0xDE00, 0 };
	static const TCHAR Swapped[] = { 0xDE00, 0xD83D, '\n', 0 };
	const FCase Cases[] = {
		{ TEXT("a\\uDc00"), LowAlone }, { TEXT("\\ud800"), HighAlone }, { TEXT("\\uD83DA\\u00e9"), HighBeforeText },
		{ TEXT("\\ud83d\\ud83d\\ude00"), TwoHigh }, { TEXT("\\ude00\\ud83d\\n"), Swapped },
		{ TEXT("\\\\ud800"), u"\\ud800" }, // a backslash, not an escape
	};
	for (const FCase& Case : Cases)
	{
		const TSharedPtr<FJsonObject> Object =
			Parse(FString::Printf(TEXT("{\"%s\":[\"%s\"],\"after\":1}"), Case.Escaped, Case.Escaped));
		ASSERT_TRUE(Object.IsValid()) << ToUtf8(Case.Escaped);
		EXPECT_EQ(Object->Values.Num(), 2);
		const FString Key = Object->Values.CreateConstIterator()->Key;
		const FString Value = Object->Values.CreateConstIterator()->Value->AsArray()[0]->AsString();
		EXPECT_EQ(std::u16string_view(*Key, Key.Len()), Case.Expected) << ToUtf8(Case.Escaped);
		EXPECT_EQ(std::u16string_view(*Value, Value.Len()), Case.Expected) << ToUtf8(Case.Escaped);
	}
	for (const TCHAR* Broken : { TEXT("{\"a\":\"\\ud8\"}"), TEXT("{\"a\":\\ud800}"), TEXT("{\"a\":\"\\ud80") })
	{
		EXPECT_FALSE(Parse(Broken).IsValid()) << ToUtf8(Broken);
	}
}

TEST(JsonReaderTest, DeepNestingIsRefusedAndNeverOverflowsTheStack)
{
	const int32 Depth = 1000000;
	TSharedPtr<FJsonValue> Value;
	const TSharedRef<TJsonReader<TCHAR>> Reader = TJsonReaderFactory<>::Create(FString::ChrN(Depth, u'['));
	EXPECT_FALSE(FJsonSerializer::Deserialize(Reader, Value));
	EXPECT_TRUE(Reader->GetErrorMessage().Contains(TEXT("deeper")));
	const int32 Allowed = FJsonSerializer::DeepestNesting;
	EXPECT_TRUE(FJsonSerializer::Deserialize(
		TJsonReaderFactory<>::Create(FString::ChrN(Allowed, u'[') + FString::ChrN(Allowed, u']')), Value));
}

TEST(JsonReaderTest, MutatedTextsAreParsedOrRefusedAndComeBackTheSame)
{
	const std::string Seeds[] = {
		R"({"status":"COMPLETED","response":{"messages":[],"response":[{"type":"text","text":"a\u00e9\ud83d\ude00\n"}],"auto_continue":true}})",
		R"([1,-2.5e10,null,true,{"":{"":[[[]]]}},"\\\"/\b\f"])",
	};
	const std::string Alphabet = "{}[]\",:\\u0019eE+-.tfn \n\x01\x7f\xc3\xa9";
	std::mt19937 Random(20261121);
	int32 NumParsed = 0;
	for (int32 Round = 0; Round < 20000; ++Round)
	{
		std::string Text = Seeds[Round % 2];
		for (uint32 Mutation = Random() % 4; Mutation > 0; --Mutation)
		{
			const size_t At = Random() % Text.size();
			switch (Random() % 3)
			{
			case 0:
				Text[At] = Alphabet[Random() % Alphabet.size()];
				break;
			case 1:
				Text.insert(At, 1, Alphabet[Random() % Alphabet.size()]);
				break;
			default:
				Text.erase(At, 1 + Random() % 3);
				break;
			}
		}
		TSharedPtr<FJsonValue> Value;
		if (!FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(FString(Text.c_str())), Value))
		{
			continue;
		}
		++NumParsed;
		FString Once;
		FString Twice;
		FJsonSerializer::Serialize(Value, FString(), TJsonWriterFactory<>::Create(&Once));
		ASSERT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Once), Value)) << Text;
		FJsonSerializer::Serialize(Value, FString(), TJsonWriterFactory<>::Create(&Twice));
		ASSERT_TRUE(Once.Equals(Twice)) << Text;
	}
	EXPECT_GT(NumParsed, 1000);
}
