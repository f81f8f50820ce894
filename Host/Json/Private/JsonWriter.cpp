#include "Serialization/JsonWriter.h"

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
		Text.AppendChar(u',');
	}
}

void FJsonTextWriter::NewLine()
{
	if (bPretty)
	{
		Text += LINE_TERMINATOR;
		for (int32 Level = 0; Level < Indent; ++Level)
		{
			Text.AppendChar(u'\t');
		}
	}
}

void FJsonTextWriter::WriteIdentifierPrefix(const FString& Identifier)
{
	checkf(IsInObject(), TEXT("A name was given outside an object"));
	CommaIfNeeded();
	NewLine();
	WriteQuoted(Identifier);
	Text.AppendChar(u':');
	Previous = EToken::Identifier;
}

void FJsonTextWriter::BeforeValue(bool bShort)
{
	checkf(!IsInObject() || Previous == EToken::Identifier, TEXT("A value of an object needs a name"));
	if (Previous == EToken::Identifier)
	{
		if (bPretty)
		{
			Text.AppendChar(u' ');
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
		Text.AppendChar(u' ');
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
			Text.AppendChar(u' ');
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
	Text.AppendChar(Bracket);
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
			Text.AppendChar(u' ');
		}
	}
	else if (bObject || Previous != EToken::SquareOpen)
	{
		NewLine();
	}
	Text.AppendChar(Bracket);
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
	Text += ShortText;
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

void FJsonTextWriter::WriteQuoted(const FString& Value)
{
	Text.AppendChar(u'"');
	int32 PlainStart = 0;
	const auto FlushPlain = [&](int32 End) { Text.Append(FStringView(Value).Mid(PlainStart, End - PlainStart)); };
	for (int32 Index = 0; Index < Value.Len(); ++Index)
	{
		const TCHAR C = Value[Index];
		if (C >= 0x20 && C != u'"' && C != u'\\')
		{
			continue;
		}
		FlushPlain(Index);
		PlainStart = Index + 1;
		switch (C)
		{
		case u'"':
			Text += TEXT("\\\"");
			break;
		case u'\\':
			Text += TEXT("\\\\");
			break;
		case u'\n':
			Text += TEXT("\\n");
			break;
		case u'\r':
			Text += TEXT("\\r");
			break;
		case u'\t':
			Text += TEXT("\\t");
			break;
		case u'\b':
			Text += TEXT("\\b");
			break;
		case u'\f':
			Text += TEXT("\\f");
			break;
		default:
			Text.Appendf(TEXT("\\u%04x"), static_cast<uint32>(C));
			break;
		}
	}
	FlushPlain(Value.Len());
	Text.AppendChar(u'"');
}

bool FJsonTextWriter::Close()
{
	*Out = Text;
	return Previous != EToken::None && Scopes.IsEmpty();
}
