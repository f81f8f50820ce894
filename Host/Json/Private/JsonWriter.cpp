#include "Serialization/JsonWriter.h"

#include <algorithm>

FJsonTextWriter::FJsonTextWriter(FString* InOut, bool bInPretty, int32 InitialIndent)
	: Out(InOut)
	, bPretty(bInPretty)
	, Indent(InitialIndent)
{
}

void FJsonTextWriter::CommaIfNeeded()
{
	const bool bFirst = Previous == EToken::None || Previous == EToken::CurlyOpen || Previous == EToken::SquareOpen ||
						Previous == EToken::Identifier || Previous == EToken::Comma;
	if (!bFirst)
	{
		Put(u',');
	}
}

void FJsonTextWriter::NewLine()
{
	if (bPretty)
	{
		Put(LINE_TERMINATOR);
		for (int32 Level = 0; Level < Indent; ++Level)
		{
			Put(u'\t');
		}
	}
}

void FJsonTextWriter::WriteIdentifierPrefix(const FString& Identifier)
{
	checkf(IsInObject(), TEXT("A name was given outside an object"));
	CommaIfNeeded();
	NewLine();
	WriteQuoted(Identifier);
	Put(u':');
	Previous = EToken::Identifier;
}

void FJsonTextWriter::BeforeValue(bool bShort)
{
	checkf(!IsInObject() || Previous == EToken::Identifier, TEXT("A value of an object needs a name"));
	if (Previous == EToken::Identifier)
	{
		if (bPretty)
		{
			Put(u' ');
		}
		return;
	}
	CommaIfNeeded();
	if (Scopes.IsEmpty() || !bPretty)
	{
		return;
	}
	const bool bSameLine = bShort && (Previous == EToken::SquareOpen || Previous == EToken::ShortValue);
	if (bSameLine)
	{
		Put(u' ');
		return;
	}
	NewLine();
}

void FJsonTextWriter::BeforeContainer(bool bObject)
{
	checkf(!IsInObject() || Previous == EToken::Identifier, TEXT("A container inside an object needs a name"));
	if (Previous == EToken::Identifier && bObject)
	{
		// The brace of a member stands on a line of its own; the bracket of an array does not.
		NewLine();
		return;
	}
	if (Previous == EToken::Identifier)
	{
		if (bPretty)
		{
			Put(u' ');
		}
		return;
	}
	CommaIfNeeded();
	if (!Scopes.IsEmpty())
	{
		NewLine();
	}
}

void FJsonTextWriter::Open(TCHAR Bracket, EToken Token, bool bObject)
{
	BeforeContainer(bObject);
	Put(Bracket);
	++Indent;
	Scopes.Add(bObject);
	Previous = Token;
}

void FJsonTextWriter::CloseScope(TCHAR Bracket, EToken Token, bool bObject)
{
	checkf(!Scopes.IsEmpty() && Scopes.Last() == bObject, TEXT("The wrong kind of scope is closed"));
	--Indent;
	Scopes.Pop();
	if (!bObject && Previous == EToken::ShortValue)
	{
		if (bPretty)
		{
			Put(u' ');
		}
	}
	else if (bObject || Previous != EToken::SquareOpen)
	{
		NewLine();
	}
	Put(Bracket);
	Previous = Token;
}

void FJsonTextWriter::WriteObjectStart()
{
	Open(u'{', EToken::CurlyOpen, true);
}

void FJsonTextWriter::WriteObjectStart(const FString& Identifier)
{
	WriteIdentifierPrefix(Identifier);
	WriteObjectStart();
}

void FJsonTextWriter::WriteObjectEnd()
{
	CloseScope(u'}', EToken::CurlyClose, true);
}

void FJsonTextWriter::WriteArrayStart()
{
	Open(u'[', EToken::SquareOpen, false);
}

void FJsonTextWriter::WriteArrayStart(const FString& Identifier)
{
	WriteIdentifierPrefix(Identifier);
	WriteArrayStart();
}

void FJsonTextWriter::WriteArrayEnd()
{
	CloseScope(u']', EToken::SquareClose, false);
}

void FJsonTextWriter::WriteShort(const FString& ShortText)
{
	BeforeValue(true);
	Put(ShortText);
	Previous = EToken::ShortValue;
}

void FJsonTextWriter::WriteValue(const FString& Value)
{
	BeforeValue(false);
	WriteQuoted(Value);
	Previous = EToken::String;
}

void FJsonTextWriter::WriteValue(bool Value)
{
	WriteShort(LexToString(Value));
}

void FJsonTextWriter::WriteValue(double Value)
{
	// 17 digits keep every double; the engine writes them even where fewer would do.
	WriteShort(FString::Printf(TEXT("%.17g"), Value));
}

void FJsonTextWriter::WriteValue(int32 Value)
{
	WriteShort(LexToString(Value));
}

void FJsonTextWriter::WriteValue(int64 Value)
{
	WriteShort(LexToString(Value));
}

void FJsonTextWriter::WriteNull()
{
	WriteShort(TEXT("null"));
}

namespace JsonWriter
{
bool NeedsEscape(TCHAR C)
{
	return C < 0x20 || C == u'"' || C == u'\\';
}

/**
 * Copies a text and tells whether it is right as it is. The loop ends at the end alone, so that the compiler works on
 * many units at once.
 */
bool CopyPlain(TCHAR* __restrict Destination, const TCHAR* __restrict Source, int32 Num)
{
	bool bPlain = true;
	for (int32 Index = 0; Index < Num; ++Index)
	{
		Destination[Index] = Source[Index];
		bPlain &= !NeedsEscape(Source[Index]);
	}
	return bPlain;
}
}

void FJsonTextWriter::WriteQuoted(const FString& Value)
{
	Put(u'"');
	const int32 Start = Text.Num();
	if (!JsonWriter::CopyPlain(MakeRoom(Value.Len()), *Value, Value.Len()))
	{
		Text.SetNum(Start);
		PutEscaped(Value);
	}
	Put(u'"');
}

TCHAR* FJsonTextWriter::MakeRoom(int32 NumUnits)
{
	if (Text.Num() + NumUnits > Text.Max())
	{
		// Twofold, not by half as an array does: with documents of megabytes, copying them is what costs.
		Text.Reserve(Text.Max() * 2 + NumUnits);
	}
	return Text.GetData() + Text.AddUninitialized(NumUnits);
}

void FJsonTextWriter::Put(FStringView Units)
{
	std::copy_n(Units.GetData(), Units.Len(), MakeRoom(Units.Len()));
}

void FJsonTextWriter::PutEscaped(FStringView Value)
{
	int32 PlainStart = 0;
	for (int32 Index = 0; Index < Value.Len(); ++Index)
	{
		if (JsonWriter::NeedsEscape(Value[Index]))
		{
			Put(Value.Mid(PlainStart, Index - PlainStart));
			PutEscape(Value[Index]);
			PlainStart = Index + 1;
		}
	}
	Put(Value.Mid(PlainStart));
}

void FJsonTextWriter::PutEscape(TCHAR C)
{
	switch (C)
	{
	case u'"':
		Put(TEXT("\\\""));
		break;
	case u'\\':
		Put(TEXT("\\\\"));
		break;
	case u'\n':
		Put(TEXT("\\n"));
		break;
	case u'\r':
		Put(TEXT("\\r"));
		break;
	case u'\t':
		Put(TEXT("\\t"));
		break;
	case u'\b':
		Put(TEXT("\\b"));
		break;
	case u'\f':
		Put(TEXT("\\f"));
		break;
	default:
		Put(FString::Printf(TEXT("\\u%04x"), static_cast<uint32>(C)));
		break;
	}
}

bool FJsonTextWriter::Close()
{
	if (Text.Num() > 0) // else a second call would hand over nothing
	{
		Put(u'\0');
		Out->GetCharArray() = MoveTemp(Text);
	}
	return Previous != EToken::None && Scopes.IsEmpty();
}
