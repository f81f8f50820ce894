#include "PangoFonts.h"

#include <utility>

namespace PangoFonts
{
constexpr double DotsPerInch = 96.0;
constexpr int32 AsciiEnd = 128;
constexpr int32 SpacesOfTab = 4;

/** What a typeface of the editor's font is among the system's fonts. */
struct FTypeface
{
	const TCHAR* Name;
	const char* Family;
	PangoWeight Weight;
	PangoStyle Style;
};

const FTypeface Typefaces[] = {
	{ TEXT("Regular"), "Sans", PANGO_WEIGHT_NORMAL, PANGO_STYLE_NORMAL },
	{ TEXT("Italic"), "Sans", PANGO_WEIGHT_NORMAL, PANGO_STYLE_ITALIC },
	{ TEXT("Bold"), "Sans", PANGO_WEIGHT_BOLD, PANGO_STYLE_NORMAL },
	{ TEXT("BoldItalic"), "Sans", PANGO_WEIGHT_BOLD, PANGO_STYLE_ITALIC },
	{ TEXT("Light"), "Sans", PANGO_WEIGHT_LIGHT, PANGO_STYLE_NORMAL },
	{ TEXT("Medium"), "Sans", PANGO_WEIGHT_MEDIUM, PANGO_STYLE_NORMAL },
	{ TEXT("Black"), "Sans", PANGO_WEIGHT_HEAVY, PANGO_STYLE_NORMAL },
	{ TEXT("BoldCondensed"), "Sans", PANGO_WEIGHT_BOLD, PANGO_STYLE_NORMAL },
	{ TEXT("BoldCondensedItalic"), "Sans", PANGO_WEIGHT_BOLD, PANGO_STYLE_ITALIC },
	{ TEXT("Mono"), "Monospace", PANGO_WEIGHT_NORMAL, PANGO_STYLE_NORMAL },
};

const FTypeface& FindTypeface(FName Name)
{
	for (const FTypeface& Typeface : Typefaces)
	{
		if (Name == FName(Typeface.Name))
		{
			return Typeface;
		}
	}
	return Typefaces[0];
}

bool IsAscii(FStringView Text)
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

bool IsHighSurrogate(TCHAR C)
{
	return (C & 0xFC00) == 0xD800;
}

/** Whether a character beyond the first 65,536 begins here. */
bool IsPair(FStringView Text, int32 Index)
{
	return IsHighSurrogate(Text[Index]) && Index + 1 < Text.Len() && (Text[Index + 1] & 0xFC00) == 0xDC00;
}

/** A text as Pango gets it, and which of its bytes is which character. */
class FShownText
{
public:
	explicit FShownText(FStringView Text)
	{
		Offsets.Reserve(Text.Len() + 1);
		for (int32 Index = 0; Index < Text.Len(); ++Index)
		{
			Offsets.Add(Bytes.Num());
			if (Text[Index] == TEXT('\t'))
			{
				// The library's own tab stops know nothing of where in its widget a text begins.
				Bytes.Append("    ", SpacesOfTab);
			}
			else if (IsPair(Text, Index))
			{
				Offsets.Add(Bytes.Num());
				Append(0x10000 + ((Text[Index] & 0x3FFu) << 10) + (Text[Index + 1] & 0x3FFu));
				++Index;
			}
			else
			{
				constexpr gunichar Replacement = 0xFFFD;
				Append((Text[Index] & 0xF800) == 0xD800 ? Replacement : Text[Index]);
			}
		}
		Offsets.Add(Bytes.Num());
	}

	const char* GetBytes() const { return Bytes.GetData(); }
	int32 GetNumBytes() const { return Bytes.Num(); }
	int32 ToByte(int32 Index) const { return Offsets[Index]; }
	/** The first character that does not begin before a byte. */
	int32 ToIndex(int32 Byte) const
	{
		int32 Low = 0;
		int32 High = Offsets.Num() - 1;
		while (Low < High)
		{
			const int32 Middle = (Low + High) / 2;
			(Offsets[Middle] < Byte ? Low : High) = Offsets[Middle] < Byte ? Middle + 1 : Middle;
		}
		return Low;
	}

private:
	void Append(gunichar Character)
	{
		char Encoded[6];
		Bytes.Append(Encoded, g_unichar_to_utf8(Character, Encoded));
	}

	TArray<char> Bytes;
	TArray<int32> Offsets;
};

/** What may happen before each character of a text, and behind the last. */
TArray<PangoLogAttr> GetAttributes(const FShownText& Shown)
{
	TArray<PangoLogAttr> Attributes;
	Attributes.SetNum(static_cast<int32>(g_utf8_strlen(Shown.GetBytes(), Shown.GetNumBytes())) + 1);
	pango_get_log_attrs(Shown.GetBytes(), Shown.GetNumBytes(), -1, pango_language_get_default(), Attributes.GetData(),
		Attributes.Num());
	return Attributes;
}

double ToUnits(int Pango)
{
	return static_cast<double>(Pango) / PANGO_SCALE;
}

int ToPango(double Units)
{
	return static_cast<int>(Units * PANGO_SCALE);
}
}

struct FPangoFonts::FFace
{
	FFace(FName InTypeface, float InSize, int32 InIndex)
		: Index(InIndex)
		, Typeface(InTypeface)
		, Size(InSize)
		, Description(pango_font_description_new())
	{
		const PangoFonts::FTypeface& Face = PangoFonts::FindTypeface(Typeface);
		pango_font_description_set_family_static(Description, Face.Family);
		pango_font_description_set_weight(Description, Face.Weight);
		pango_font_description_set_style(Description, Face.Style);
		pango_font_description_set_size(Description, static_cast<int>(Size * PANGO_SCALE));
	}
	~FFace() { pango_font_description_free(Description); }
	UE_NONCOPYABLE(FFace)

	const int32 Index;
	const FName Typeface;
	const float Size;
	PangoFontDescription* const Description;
	float LineHeight = 0.0f;
	float Baseline = 0.0f; // from the bottom of the line
	double AsciiWidths[PangoFonts::AsciiEnd] = {};
};

FPangoFonts::FPangoFonts()
	: Context(pango_font_map_create_context(pango_cairo_font_map_get_default()))
{
	pango_cairo_context_set_resolution(Context.get(), PangoFonts::DotsPerInch);
	pango_context_set_round_glyph_positions(Context.get(), FALSE);
	cairo_font_options_t* const Options = cairo_font_options_create();
	cairo_font_options_set_hint_metrics(Options, CAIRO_HINT_METRICS_OFF);
	cairo_font_options_set_hint_style(Options, CAIRO_HINT_STYLE_SLIGHT);
	cairo_font_options_set_antialias(Options, CAIRO_ANTIALIAS_GRAY);
	pango_cairo_context_set_font_options(Context.get(), Options);
	cairo_font_options_destroy(Options);

	Layout.reset(pango_layout_new(Context.get()));
	pango_layout_set_single_paragraph_mode(Layout.get(), TRUE);
	PangoAttrList* const Attributes = pango_attr_list_new();
	pango_attr_list_insert(Attributes, pango_attr_font_features_new("kern=0, liga=0, clig=0, calt=0"));
	pango_layout_set_attributes(Layout.get(), Attributes);
	pango_attr_list_unref(Attributes);
}

FPangoFonts::~FPangoFonts() = default;

void FPangoFonts::SetText(FStringView Text, const FFace& Face) const
{
	SetText(PangoFonts::FShownText(Text), Face);
}

void FPangoFonts::SetText(const PangoFonts::FShownText& Text, const FFace& Face) const
{
	pango_layout_set_font_description(Layout.get(), Face.Description);
	pango_layout_set_text(Layout.get(), Text.GetBytes(), Text.GetNumBytes());
}

FVector2D FPangoFonts::MeasureByLayout(FStringView Text, const FFace& Face) const
{
	SetText(Text, Face);
	PangoRectangle Logical;
	pango_layout_get_extents(Layout.get(), nullptr, &Logical);
	return FVector2D(PangoFonts::ToUnits(Logical.width), PangoFonts::ToUnits(Logical.height));
}

const FPangoFonts::FFace& FPangoFonts::FindFace(const FSlateFontInfo& FontInfo) const
{
	for (const TUniquePtr<FFace>& Face : Faces)
	{
		if (Face->Typeface == FontInfo.TypefaceFontName && Face->Size == FontInfo.Size)
		{
			return *Face;
		}
	}
	FFace& Face = *Faces[Faces.Add(MakeUnique<FFace>(FontInfo.TypefaceFontName, FontInfo.Size, Faces.Num()))];
	for (TCHAR C = u' '; C < PangoFonts::AsciiEnd - 1; ++C)
	{
		Face.AsciiWidths[C] = MeasureByLayout(FStringView(&C, 1), Face).X;
	}
	// A tab is drawn as spaces, see SetText.
	Face.AsciiWidths[u'\t'] = PangoFonts::SpacesOfTab * Face.AsciiWidths[u' '];
	Face.LineHeight = static_cast<float>(FMath::CeilToInt(MeasureByLayout(TEXT("Xg"), Face).Y));
	Face.Baseline = static_cast<float>(PangoFonts::ToUnits(pango_layout_get_baseline(Layout.get()))) - Face.LineHeight;
	return Face;
}

FVector2D FPangoFonts::Measure(FStringView Text, const FSlateFontInfo& FontInfo) const
{
	const FFace& Face = FindFace(FontInfo);
	double Width = 0.0;
	for (const TCHAR C : Text)
	{
		if (C >= PangoFonts::AsciiEnd)
		{
			return FVector2D(MeasureByLayout(Text, Face).X, Face.LineHeight);
		}
		Width += Face.AsciiWidths[C];
	}
	return FVector2D(Width, Face.LineHeight);
}

float FPangoFonts::GetMaxCharacterHeight(const FSlateFontInfo& FontInfo) const
{
	return FindFace(FontInfo).LineHeight;
}

float FPangoFonts::GetBaseline(const FSlateFontInfo& FontInfo) const
{
	return FindFace(FontInfo).Baseline;
}

int32 FPangoFonts::FindCharacterIndexAtOffset(
	FStringView Text, const FSlateFontInfo& FontInfo, float HorizontalOffset) const
{
	if (PangoFonts::IsAscii(Text))
	{
		return FSlateFontMeasure::FindCharacterIndexAtOffset(Text, FontInfo, HorizontalOffset);
	}
	const PangoFonts::FShownText Shown(Text);
	SetText(Shown, FindFace(FontInfo));
	int Byte = 0;
	int NumBehind = 0;
	PangoLayoutLine* const Line = pango_layout_get_line_readonly(Layout.get(), 0);
	pango_layout_line_x_to_index(Line, PangoFonts::ToPango(HorizontalOffset), &Byte, &NumBehind);
	const char* Place = Shown.GetBytes() + Byte;
	for (; NumBehind > 0; --NumBehind)
	{
		Place = g_utf8_next_char(Place);
	}
	return Shown.ToIndex(static_cast<int32>(Place - Shown.GetBytes()));
}

float FPangoFonts::FindOffsetOfCharacterIndex(FStringView Text, const FSlateFontInfo& FontInfo, int32 Index) const
{
	if (PangoFonts::IsAscii(Text))
	{
		return FSlateFontMeasure::FindOffsetOfCharacterIndex(Text, FontInfo, Index);
	}
	const PangoFonts::FShownText Shown(Text);
	SetText(Shown, FindFace(FontInfo));
	PangoRectangle Strong;
	pango_layout_get_cursor_pos(Layout.get(), Shown.ToByte(Index), &Strong, nullptr);
	return static_cast<float>(PangoFonts::ToUnits(Strong.x));
}

TArray<FSlateFontMeasure::FSpan> FPangoFonts::FindSpansOfCharacters(
	FStringView Text, const FSlateFontInfo& FontInfo, int32 Begin, int32 End) const
{
	if (PangoFonts::IsAscii(Text))
	{
		return FSlateFontMeasure::FindSpansOfCharacters(Text, FontInfo, Begin, End);
	}
	const PangoFonts::FShownText Shown(Text);
	SetText(Shown, FindFace(FontInfo));
	int* Ranges = nullptr;
	int NumRanges = 0;
	PangoLayoutLine* const Line = pango_layout_get_line_readonly(Layout.get(), 0);
	pango_layout_line_get_x_ranges(Line, Shown.ToByte(Begin), Shown.ToByte(End), &Ranges, &NumRanges);
	TArray<FSpan> Spans;
	for (int Range = 0; Range < NumRanges; ++Range)
	{
		Spans.Add({ static_cast<float>(PangoFonts::ToUnits(Ranges[2 * Range])),
			static_cast<float>(PangoFonts::ToUnits(Ranges[2 * Range + 1])) });
	}
	g_free(Ranges);
	return Spans;
}

bool FPangoFonts::IsCaretStop(FStringView Text, int32 Index) const
{
	if (Index <= 0 || Index >= Text.Len() || PangoFonts::IsAscii(Text.Mid(Index - 1, 2)))
	{
		return true;
	}
	// What is seen as one letter is no longer than this to either side.
	constexpr int32 Reach = 64;
	const int32 Begin = FMath::Max(Index - Reach, 0);
	const PangoFonts::FShownText Shown(Text.Mid(Begin, 2 * Reach));
	const int32 Byte = Shown.ToByte(Index - Begin);
	if (Shown.ToIndex(Byte) != Index - Begin)
	{
		return false; // the second half of a pair
	}
	const TArray<PangoLogAttr> Attributes = PangoFonts::GetAttributes(Shown);
	return Attributes[static_cast<int32>(g_utf8_strlen(Shown.GetBytes(), Byte))].is_cursor_position != 0;
}

TArray<int32> FPangoFonts::FindLineBreakPlaces(FStringView Text) const
{
	if (PangoFonts::IsAscii(Text))
	{
		return FSlateFontMeasure::FindLineBreakPlaces(Text);
	}
	const PangoFonts::FShownText Shown(Text);
	const TArray<PangoLogAttr> Attributes = PangoFonts::GetAttributes(Shown);
	TArray<int32> Places;
	int32 Character = 0;
	for (int32 Index = 0; Index < Text.Len(); ++Index, ++Character)
	{
		if (Index > 0 && Attributes[Character].is_line_break)
		{
			Places.Add(Index);
		}
		if (Text[Index] == TEXT('\t'))
		{
			Character += PangoFonts::SpacesOfTab - 1;
		}
		else if (PangoFonts::IsPair(Text, Index))
		{
			++Index;
		}
	}
	return Places;
}

TArray<int32> FPangoFonts::BreakPiece(
	FStringView Piece, const FFace& Face, float WrapWidth, ELongWords LongWords, bool bIsLastPiece) const
{
	const PangoFonts::FShownText Shown(Piece);
	SetText(Shown, Face);
	pango_layout_set_width(Layout.get(), PangoFonts::ToPango(WrapWidth));
	pango_layout_set_wrap(Layout.get(), LongWords == ELongWords::Keep ? PANGO_WRAP_WORD : PANGO_WRAP_WORD_CHAR);
	TArray<int32> Lengths;
	int32 Begin = 0;
	for (GSList* Entry = pango_layout_get_lines_readonly(Layout.get()); Entry; Entry = Entry->next)
	{
		const PangoLayoutLine& Line = *static_cast<PangoLayoutLine*>(Entry->data);
		// What the last line of a part would go on with is in the next one.
		if (Entry->next || bIsLastPiece || Lengths.Num() == 0)
		{
			const int32 End = Shown.ToIndex(Line.start_index + Line.length);
			Lengths.Add(End - Begin);
			Begin = End;
		}
	}
	pango_layout_set_width(Layout.get(), -1);
	return Lengths;
}

TArray<int32> FPangoFonts::FindLineBreaks(
	FStringView Text, const FSlateFontInfo& FontInfo, float WrapWidth, ELongWords LongWords) const
{
	if (PangoFonts::IsAscii(Text))
	{
		return FSlateFontMeasure::FindLineBreaks(Text, FontInfo, WrapWidth, LongWords);
	}
	// A long text is shaped in parts: Pango takes more than twice the time for twice the text. A word that is longer
	// than a part is not kept whole.
	constexpr int32 PieceLength = 4096;
	const FFace& Face = FindFace(FontInfo);
	TArray<int32> Lengths;
	int32 Begin = 0;
	do
	{
		const FStringView Rest = Text.Mid(Begin, Text.Len() - Begin);
		const bool bIsLastPiece = Rest.Len() <= PieceLength;
		int32 Length = FMath::Min(Rest.Len(), PieceLength);
		Length -= !bIsLastPiece && PangoFonts::IsHighSurrogate(Rest[Length - 1]) ? 1 : 0;
		for (const int32 LineLength : BreakPiece(Rest.Left(Length), Face, WrapWidth, LongWords, bIsLastPiece))
		{
			Lengths.Add(LineLength);
			Begin += LineLength;
		}
	}
	while (Begin < Text.Len());
	return Lengths;
}

PangoLayout* FPangoFonts::LayOut(FStringView Text, const FSlateFontInfo& FontInfo) const
{
	const FFace& Face = FindFace(FontInfo);
	std::u16string Key(Text.GetData(), static_cast<size_t>(Text.Len()));
	Key.append(reinterpret_cast<const char16_t*>(&Face.Index), sizeof(Face.Index) / sizeof(char16_t));
	TGObjectPtr<PangoLayout>& Kept = KeptLines[Key];
	if (Kept)
	{
		return Kept.get();
	}
	const auto Older = OlderLines.find(Key);
	if (Older != OlderLines.end())
	{
		Kept = std::move(Older->second);
		OlderLines.erase(Older);
	}
	else
	{
		SetText(Text, Face);
		Kept.reset(pango_layout_copy(Layout.get()));
	}
	PangoLayout* const Line = Kept.get();
	if (KeptLines.size() >= MaxKeptLines)
	{
		OlderLines = std::exchange(KeptLines, FKeptLines());
	}
	return Line;
}
