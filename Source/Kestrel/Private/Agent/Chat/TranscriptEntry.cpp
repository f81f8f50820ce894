#include "Agent/Chat/TranscriptEntry.h"

#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"

namespace TranscriptEntry
{
/** The kinds as files have them, in the order of the enumeration. */
const TCHAR* const KindNames[] = { TEXT("status"), TEXT("hint"), TEXT("change") };

const TCHAR* const KindField = TEXT("kind");
const TCHAR* const TextField = TEXT("text");
const TCHAR* const ColorFields[] = { TEXT("red"), TEXT("green"), TEXT("blue") };
constexpr int32 NumColorFields = UE_ARRAY_COUNT(ColorFields);
const TCHAR* const FontField = TEXT("font");
const TCHAR* const SizeField = TEXT("size");
const TCHAR* const BeforeField = TEXT("before");
const TCHAR* const AfterField = TEXT("after");
const TCHAR* const LoggedField = TEXT("logged");

TOptional<EKestrelTranscriptKind> ReadKind(const FJsonObject& Object)
{
	FString Name;
	Object.TryGetStringField(KindField, Name);
	constexpr int32 NumKinds = UE_ARRAY_COUNT(KindNames);
	for (int32 Index = 0; Index < NumKinds; ++Index)
	{
		if (Name.Equals(KindNames[Index]))
		{
			return static_cast<EKestrelTranscriptKind>(Index);
		}
	}
	return TOptional<EKestrelTranscriptKind>();
}

void WriteStyle(FJsonObject& Object, const FKestrelTranscriptEntry& Entry)
{
	const float Parts[NumColorFields] = { Entry.Color.R, Entry.Color.G, Entry.Color.B };
	for (int32 Index = 0; Index < NumColorFields; ++Index)
	{
		Object.SetNumberField(ColorFields[Index], Parts[Index]);
	}
	Object.SetStringField(FontField, Entry.FontStyle.ToString());
	Object.SetNumberField(SizeField, Entry.FontSize);
}

/** The font styles of messages; the first is for what has none of them. */
const TCHAR* const FontNames[] = { TEXT("Regular"), TEXT("Bold"), TEXT("Italic") };

/** A file that somebody else has made must not bring text that nobody can see. */
void ReadStyle(const FJsonObject& Object, FKestrelTranscriptEntry& OutEntry)
{
	constexpr double MinFontSize = 6.0;
	constexpr double MaxFontSize = 24.0;
	constexpr double MinBrightness = 0.3; // of the brightest part, on the panel's dark ground
	double Parts[NumColorFields] = { 1.0, 1.0, 1.0 };
	for (int32 Index = 0; Index < NumColorFields; ++Index)
	{
		Object.TryGetNumberField(ColorFields[Index], Parts[Index]);
		Parts[Index] = FMath::Clamp(Parts[Index], 0.0, 1.0);
	}
	const bool bVisible = FMath::Max3(Parts[0], Parts[1], Parts[2]) >= MinBrightness;
	OutEntry.Color = bVisible ? FLinearColor(static_cast<float>(Parts[0]), static_cast<float>(Parts[1]),
									static_cast<float>(Parts[2]))
							  : FLinearColor::White;
	double Size = MinFontSize;
	Object.TryGetNumberField(SizeField, Size);
	OutEntry.FontSize = static_cast<float>(FMath::Clamp(Size, MinFontSize, MaxFontSize));
	FString Font;
	Object.TryGetStringField(FontField, Font);
	OutEntry.FontStyle = FName(FontNames[0]);
	for (const TCHAR* Known : FontNames)
	{
		OutEntry.FontStyle = Font.Equals(Known) ? FName(Known) : OutEntry.FontStyle;
	}
}
}

FKestrelTranscriptEntry FKestrelTranscriptEntry::MakeStatus(
	const FString& Message, const FLinearColor& InColor, const FName& InFontStyle, float InFontSize)
{
	FKestrelTranscriptEntry Entry;
	Entry.Text = Message;
	Entry.Color = InColor;
	Entry.FontStyle = InFontStyle;
	Entry.FontSize = InFontSize;
	return Entry;
}

FKestrelTranscriptEntry FKestrelTranscriptEntry::MakeHint(const FString& Hint)
{
	FKestrelTranscriptEntry Entry;
	Entry.Kind = EKestrelTranscriptKind::Hint;
	Entry.Text = Hint;
	return Entry;
}

FKestrelTranscriptEntry FKestrelTranscriptEntry::MakeChange(const FString& FilePath, FString InBefore, FString InAfter)
{
	FKestrelTranscriptEntry Entry;
	Entry.Kind = EKestrelTranscriptKind::Change;
	Entry.Text = FilePath;
	Entry.Before = MoveTemp(InBefore);
	Entry.After = MoveTemp(InAfter);
	return Entry;
}

FKestrelTranscriptEntry FKestrelTranscriptEntry::WithoutTexts() const
{
	FKestrelTranscriptEntry Entry = MakeChange(Text, FString(), FString());
	Entry.bTextsLeftOut = true;
	Entry.bIsLogged = bIsLogged;
	return Entry;
}

FString FKestrelTranscriptEntry::ToLine(int32 MaxChangeLength) const
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TranscriptEntry::KindField, TranscriptEntry::KindNames[static_cast<int32>(Kind)]);
	Object->SetStringField(TranscriptEntry::TextField, Text);
	if (Kind == EKestrelTranscriptKind::Status)
	{
		TranscriptEntry::WriteStyle(*Object, *this);
	}
	const int64 ChangeLength = static_cast<int64>(Before.Len()) + After.Len();
	if (Kind == EKestrelTranscriptKind::Change && !bTextsLeftOut && ChangeLength <= MaxChangeLength)
	{
		Object->SetStringField(TranscriptEntry::BeforeField, Before);
		Object->SetStringField(TranscriptEntry::AfterField, After);
	}
	if (!bIsLogged)
	{
		Object->SetBoolField(TranscriptEntry::LoggedField, false);
	}
	return KestrelJson::ToCondensedText(Object);
}

TOptional<FKestrelTranscriptEntry> FKestrelTranscriptEntry::FromLine(const FString& Line)
{
	const TSharedPtr<FJsonObject> Object = KestrelJson::ParseObject(Line);
	FKestrelTranscriptEntry Entry;
	if (!Object.IsValid() || !Object->TryGetStringField(TranscriptEntry::TextField, Entry.Text))
	{
		return TOptional<FKestrelTranscriptEntry>();
	}
	const TOptional<EKestrelTranscriptKind> ReadKind = TranscriptEntry::ReadKind(*Object);
	if (!ReadKind.IsSet())
	{
		return TOptional<FKestrelTranscriptEntry>();
	}
	Entry.Kind = ReadKind.GetValue();
	if (Entry.Kind == EKestrelTranscriptKind::Status)
	{
		TranscriptEntry::ReadStyle(*Object, Entry);
	}
	if (Entry.Kind == EKestrelTranscriptKind::Change)
	{
		Entry.bTextsLeftOut = !Object->TryGetStringField(TranscriptEntry::BeforeField, Entry.Before) ||
							  !Object->TryGetStringField(TranscriptEntry::AfterField, Entry.After);
	}
	Object->TryGetBoolField(TranscriptEntry::LoggedField, Entry.bIsLogged);
	return Entry;
}
