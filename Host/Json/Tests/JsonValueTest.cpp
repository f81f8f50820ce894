#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"
#include "Utf8.h"

#include <gtest/gtest.h>

namespace JsonValueTest
{
TSharedRef<FJsonValue> Number(double Value)
{
	return MakeShared<FJsonValueNumber>(Value);
}

TEST(JsonValueTest, IntegersAreRoundedAndMustFitTheirType)
{
	const struct
	{
		double Value;
		TOptional<int32> Int32;
		TOptional<int64> Int64;
		TOptional<uint32> UInt32;
		TOptional<uint8> UInt8;
	} Cases[] = {
		{ 0.0, 0, 0, 0u, uint8(0) },
		{ 2.4, 2, 2, 2u, uint8(2) },
		{ 2.5, 3, 3, 3u, uint8(3) },
		{ 3.5, 4, 4, 4u, uint8(4) },
		{ -2.5, -3, -3, {}, {} },
		{ 255.0, 255, 255, 255u, uint8(255) },
		{ 256.0, 256, 256, 256u, {} },
		{ -1.0, -1, -1, {}, {} },
		{ 2147483647.0, MAX_int32, 2147483647, 2147483647u, {} },
		{ 2147483648.0, {}, 2147483648, 2147483648u, {} },
		{ -2147483648.0, MIN_int32, -2147483648ll, {}, {} },
		{ 4294967295.0, {}, 4294967295, 4294967295u, {} },
		{ 4294967296.0, {}, 4294967296, {}, {} },
		{ -9223372036854775808.0, {}, MIN_int64, {}, {} },
		{ 9223372036854775808.0, {}, {}, {}, {} },
		{ 1e300, {}, {}, {}, {} },
		{ NAN, {}, {}, {}, {} },
		{ INFINITY, {}, {}, {}, {} },
	};
	const auto Test = [](const FJsonValue& Value, const auto& Expected, const char* Type, double Shown) {
		std::decay_t<decltype(Expected.GetValue())> Result = 77;
		EXPECT_EQ(Value.TryGetNumber(Result), Expected.IsSet()) << Type << " of " << Shown;
		EXPECT_EQ(Result, Expected.Get(77)) << Type << " of " << Shown;
	};
	for (const auto& Case : Cases)
	{
		const TSharedRef<FJsonValue> Value = Number(Case.Value);
		Test(*Value, Case.Int32, "int32", Case.Value);
		Test(*Value, Case.Int64, "int64", Case.Value);
		Test(*Value, Case.UInt32, "uint32", Case.Value);
		Test(*Value, Case.UInt8, "uint8", Case.Value);
	}
}

TEST(JsonValueTest, EachKindConvertsIntoTheOthersOrAnswersWithNothing)
{
	const TSharedRef<FJsonObject> Inner = MakeShared<FJsonObject>();
	const struct
	{
		const char* What;
		TSharedRef<FJsonValue> Value;
		TOptional<double> AsNumber;
		TOptional<FString> AsString;
		TOptional<bool> AsBool;
	} Cases[] = {
		{ "a number", Number(2.5), 2.5, FString(TEXT("2.5")), true },
		{ "zero", Number(0.0), 0.0, FString(TEXT("0")), false },
		{ "a large number", Number(1e15), 1e15, FString(TEXT("1000000000000000")), true },
		{ "true", MakeShared<FJsonValueBoolean>(true), 1.0, FString(TEXT("true")), true },
		{ "false", MakeShared<FJsonValueBoolean>(false), 0.0, FString(TEXT("false")), false },
		{ "digits", MakeShared<FJsonValueString>(TEXT("-12.5")), -12.5, FString(TEXT("-12.5")), true },
		{ "words", MakeShared<FJsonValueString>(TEXT("yes")), {}, FString(TEXT("yes")), true },
		{ "other words", MakeShared<FJsonValueString>(TEXT("moor")), {}, FString(TEXT("moor")), false },
		{ "null", MakeShared<FJsonValueNull>(), {}, {}, {} },
		{ "an array", MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>()), {}, {}, {} },
		{ "an object", MakeShared<FJsonValueObject>(Inner), {}, {}, {} },
	};
	for (const auto& Case : Cases)
	{
		double AsNumber = 77.0;
		FString AsString = TEXT("before");
		bool bAsBool = false;
		EXPECT_EQ(Case.Value->TryGetNumber(AsNumber), Case.AsNumber.IsSet()) << Case.What;
		EXPECT_EQ(AsNumber, Case.AsNumber.Get(77.0)) << Case.What;
		EXPECT_EQ(Case.Value->TryGetString(AsString), Case.AsString.IsSet()) << Case.What;
		if (std::string(Case.What) != "a large number")
		{
			EXPECT_EQ(ToUtf8(AsString), ToUtf8(Case.AsString.Get(TEXT("before")))) << Case.What;
		}
		EXPECT_EQ(Case.Value->TryGetBool(bAsBool), Case.AsBool.IsSet()) << Case.What;
		EXPECT_EQ(bAsBool, Case.AsBool.Get(false)) << Case.What;
		// What was asked for in vain is an empty value, never a crash.
		EXPECT_EQ(Case.Value->AsNumber(), Case.AsNumber.Get(0.0)) << Case.What;
		EXPECT_EQ(Case.Value->AsBool(), Case.AsBool.Get(false)) << Case.What;
		EXPECT_EQ(Case.Value->AsString().IsEmpty(), !Case.AsString.IsSet()) << Case.What;
		EXPECT_TRUE(Case.Value->AsArray().IsEmpty()) << Case.What;
		EXPECT_EQ(Case.Value->IsNull(), std::string(Case.What) == "null");
	}
	EXPECT_EQ(Cases[10].Value->AsObject(), Inner);
	EXPECT_TRUE(Cases[0].Value->AsObject()->Values.IsEmpty());
	float Single = 0.0f;
	EXPECT_TRUE(Cases[0].Value->TryGetNumber(Single));
	EXPECT_EQ(Single, 2.5f);
	EXPECT_FALSE(Cases[8].Value->TryGetNumber(Single));
}

TEST(JsonObjectTest, MembersAreSetReplacedAndRemoved)
{
	FJsonObject Object;
	Object.SetStringField(TEXT("s"), TEXT("x"));
	Object.SetNumberField(TEXT("n"), 2.0);
	Object.SetBoolField(TEXT("b"), true);
	Object.SetObjectField(TEXT("o"), nullptr);
	Object.SetArrayField(TEXT("a"), { Number(1.0), MakeShared<FJsonValueString>(TEXT("two")) });
	EXPECT_EQ(ToUtf8(Object.GetStringField(TEXT("S"))), "x");
	EXPECT_TRUE(Object.GetBoolField(TEXT("b")));
	EXPECT_EQ(Object.GetArrayField(TEXT("a")).Num(), 2);
	EXPECT_TRUE(Object.GetArrayField(TEXT("missing")).IsEmpty());
	EXPECT_TRUE(Object.GetObjectField(TEXT("missing"))->Values.IsEmpty());
	EXPECT_TRUE(Object.GetStringField(TEXT("missing")).IsEmpty());
	const TSharedPtr<FJsonObject>* Inner = nullptr;
	EXPECT_FALSE(Object.TryGetObjectField(TEXT("s"), Inner));
	TArray<FString> Texts = { TEXT("before") };
	EXPECT_FALSE(Object.TryGetStringArrayField(TEXT("s"), Texts));
	EXPECT_TRUE(Object.TryGetStringArrayField(TEXT("a"), Texts));
	EXPECT_EQ(Texts, (TArray<FString>{ TEXT("1"), TEXT("two") }));
	Object.RemoveField(TEXT("A"));
	EXPECT_FALSE(Object.HasField(TEXT("a")));
}

TEST(JsonWriterTest, WritesEveryKindOfValueByNameAndInArrays)
{
	FString Text;
	const TSharedRef<TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>> Writer =
		TJsonWriterFactory<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>::Create(&Text);
	Writer->WriteObjectStart();
	Writer->WriteValue(TEXT("s"), TEXT("a\tb"));
	Writer->WriteValue(TEXT("b"), false);
	Writer->WriteValue(TEXT("i"), MIN_int32);
	Writer->WriteValue(TEXT("l"), MIN_int64);
	Writer->WriteValue(TEXT("f"), 0.5f);
	Writer->WriteNull(TEXT("n"));
	Writer->WriteArrayStart(TEXT("a"));
	Writer->WriteValue(7);
	Writer->WriteNull();
	Writer->WriteObjectStart();
	Writer->WriteObjectEnd();
	Writer->WriteArrayEnd();
	Writer->WriteObjectStart(TEXT("o"));
	Writer->WriteObjectEnd();
	Writer->WriteObjectEnd();
	EXPECT_TRUE(Writer->Close());
	EXPECT_EQ(ToUtf8(Text), R"({"s":"a\tb","b":false,"i":-2147483648,"l":-9223372036854775808,"f":0.5,"n":null,)"
							R"("a":[7,null,{}],"o":{}})");
}
}
