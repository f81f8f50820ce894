#include "Agent/Text/JsonBuilder.h"

#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "HAL/UnrealMemory.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonWriter.h"

namespace JsonBuilder
{
/** Whether no writer escapes a character. Of others, the engine's own writer is asked. */
bool IsPlain(TCHAR C)
{
	return C >= ' ' && C < 0x7F && C != '"' && C != '\\' && C != '/';
}

bool IsPlain(const FString& Value)
{
	bool bPlain = true;
	for (const TCHAR C : Value)
	{
		bPlain &= IsPlain(C);
	}
	return bPlain;
}
}

void FKestrelJsonBuilder::Reserve(int32 NumCharacters)
{
	Capacity = FMath::Max(Capacity, NumCharacters);
	Text.Reserve(Capacity);
}

void FKestrelJsonBuilder::Append(const TCHAR* Characters, int32 Num)
{
	if (Text.Len() + Num >= Capacity)
	{
		Reserve(FMath::Max(Capacity * 2, Text.Len() + Num + 1)); // twofold: copying megabytes is what costs
	}
	Text.Append(Characters, Num);
}

void FKestrelJsonBuilder::Flush()
{
	Append(Pending, NumPending);
	NumPending = 0;
}

void FKestrelJsonBuilder::Put(FStringView Characters)
{
	const int32 Num = Characters.Len();
	if (NumPending + Num > MaxPending)
	{
		Flush();
		if (Num > MaxPending)
		{
			Append(Characters.GetData(), Num);
			return;
		}
	}
	FMemory::Memcpy(Pending + NumPending, Characters.GetData(), Num * sizeof(TCHAR));
	NumPending += Num;
}

FString FKestrelJsonBuilder::TakeText()
{
	Flush();
	Capacity = 0;
	return MoveTemp(Text);
}

void FKestrelJsonBuilder::Key(FStringView Plain)
{
	BeginValue();
	Put('"');
	Put(Plain);
	Put('"');
	Put(':');
	bNeedsComma = false;
}

void FKestrelJsonBuilder::Open(TCHAR Bracket)
{
	BeginValue();
	Put(Bracket);
	bNeedsComma = false;
}

void FKestrelJsonBuilder::Close(TCHAR Bracket)
{
	Put(Bracket);
	bNeedsComma = true;
}

void FKestrelJsonBuilder::String(const FString& Value)
{
	if (!JsonBuilder::IsPlain(Value))
	{
		Raw(Quote(Value));
		return;
	}
	BeginValue();
	Put('"');
	Put(FStringView(Value));
	Put('"');
}

void FKestrelJsonBuilder::Object(const TSharedRef<FJsonObject>& Value)
{
	Raw(KestrelJson::ToCondensedText(Value));
}

void FKestrelJsonBuilder::Raw(FStringView Json)
{
	BeginValue();
	Put(Json);
}

void FKestrelJsonBuilder::Paste(FStringView Piece)
{
	Put(Piece);
	bNeedsComma = false;
}

void FKestrelJsonBuilder::GoBackTo(const FMark& Mark)
{
	Flush();
	Text.RemoveAt(Mark.Length, Text.Len() - Mark.Length, EAllowShrinking::No);
	bNeedsComma = Mark.bNeedsComma;
}

FString FKestrelJsonBuilder::Quote(const FString& Value)
{
	if (JsonBuilder::IsPlain(Value))
	{
		return TEXT("\"") + Value + TEXT("\"");
	}
	FString Array;
	const TSharedRef<TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>> Writer =
		TJsonWriterFactory<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>::Create(&Array);
	Writer->WriteArrayStart();
	Writer->WriteValue(Value);
	Writer->WriteArrayEnd();
	Writer->Close();
	return Array.Mid(1, Array.Len() - 2);
}
