#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "Policies/PrettyJsonPrintPolicy.h"
#include "Templates/SharedPointer.h"

/** The writer behind TJsonWriter, for either print policy. Asserts when a name is missing in an object or given in an
 * array. */
class FJsonTextWriter
{
public:
	FJsonTextWriter(FString* InOut, bool bInPretty, int32 InitialIndent);
	UE_NONCOPYABLE(FJsonTextWriter)

	void WriteObjectStart();
	void WriteObjectStart(const FString& Identifier);
	void WriteObjectEnd();
	void WriteArrayStart();
	void WriteArrayStart(const FString& Identifier);
	void WriteArrayEnd();

	void WriteValue(const FString& Value);
	void WriteValue(const TCHAR* Value) { WriteValue(FString(Value)); }
	void WriteValue(bool Value);
	void WriteValue(double Value);
	void WriteValue(float Value) { WriteValue(static_cast<double>(Value)); }
	void WriteValue(int32 Value);
	void WriteValue(int64 Value);
	void WriteNull();
	void WriteIdentifierPrefix(const FString& Identifier);
	template <typename ValueType>
	void WriteValue(const FString& Identifier, const ValueType& Value)
	{
		WriteIdentifierPrefix(Identifier);
		WriteValue(Value);
	}
	void WriteNull(const FString& Identifier)
	{
		WriteIdentifierPrefix(Identifier);
		WriteNull();
	}

	/** Hands the text over. True when the document is complete. */
	bool Close();

private:
	enum class EToken
	{
		None,
		Comma,
		CurlyOpen,
		CurlyClose,
		SquareOpen,
		SquareClose,
		Identifier,
		ShortValue, // number, boolean, null: these stay on one line in a pretty array
		String,
	};

	bool IsInObject() const { return !Scopes.IsEmpty() && Scopes.Last(); }
	void BeforeValue(bool bShort);
	void BeforeContainer(bool bObject);
	void Open(TCHAR Bracket, EToken Token, bool bObject);
	void CloseScope(TCHAR Bracket, EToken Token, bool bObject);
	void CommaIfNeeded();
	void NewLine();
	void WriteQuoted(const FString& Value);
	void WriteShort(const FString& ShortText);
	void PutEscaped(FStringView Value);
	void PutEscape(TCHAR C);
	void Put(TCHAR C) { *MakeRoom(1) = C; }
	void Put(FStringView Units);
	/** The place for that many units, which the caller writes. */
	TCHAR* MakeRoom(int32 NumUnits);

	FString* const Out;
	const bool bPretty;
	int32 Indent;
	TArray<TCHAR> Text;  // not terminated
	TArray<bool> Scopes; // true for an object
	EToken Previous = EToken::None;
};

template <typename CharType = TCHAR, typename PrintPolicy = TPrettyJsonPrintPolicy<CharType>>
class TJsonWriter : public FJsonTextWriter
{
public:
	TJsonWriter(FString* InOut, int32 InitialIndent)
		: FJsonTextWriter(InOut, PrintPolicy::bPretty, InitialIndent)
	{
	}
};

/** The factory without arguments gives a pretty writer. */
template <typename CharType = TCHAR, typename PrintPolicy = TPrettyJsonPrintPolicy<CharType>>
class TJsonWriterFactory
{
public:
	static TSharedRef<TJsonWriter<CharType, PrintPolicy>> Create(FString* Stream, int32 InitialIndent = 0)
	{
		return MakeShared<TJsonWriter<CharType, PrintPolicy>>(Stream, InitialIndent);
	}
};
