#include "PangoFonts.h"

namespace PangoFonts
{
constexpr double DotsPerInch = 96.0;
constexpr int32 AsciiEnd = 128;

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

double ToUnits(int Pango)
{
	return static_cast<double>(Pango) / PANGO_SCALE;
}
}

struct FPangoFonts::FFace
{
	FFace(FName InTypeface, float InSize)
		: Typeface(InTypeface)
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

	const FName Typeface;
	const float Size;
	PangoFontDescription* const Description;
	float LineHeight = 0.0f;
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
	FString Shown(Text);
	// The library's own tab stops know nothing of where in its widget a text begins.
	Shown.ReplaceInline(TEXT("\t"), TEXT("    "), ESearchCase::CaseSensitive);
	const FTCHARToUTF8 Utf8(*Shown);
	pango_layout_set_font_description(Layout.get(), Face.Description);
	pango_layout_set_text(Layout.get(), Utf8.Get(), Utf8.Length());
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
	FFace& Face = *Faces[Faces.Add(MakeUnique<FFace>(FontInfo.TypefaceFontName, FontInfo.Size))];
	for (TCHAR C = u' '; C < PangoFonts::AsciiEnd - 1; ++C)
	{
		Face.AsciiWidths[C] = MeasureByLayout(FStringView(&C, 1), Face).X;
	}
	// A tab is drawn as blanks, see SetText.
	Face.AsciiWidths[u'\t'] = 4.0 * Face.AsciiWidths[u' '];
	Face.LineHeight = static_cast<float>(FMath::CeilToInt(MeasureByLayout(TEXT("Xg"), Face).Y));
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

PangoLayout* FPangoFonts::LayOut(FStringView Text, const FSlateFontInfo& FontInfo) const
{
	SetText(Text, FindFace(FontInfo));
	return Layout.get();
}
