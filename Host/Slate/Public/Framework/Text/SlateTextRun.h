#pragma once

#include "CoreMinimal.h"
#include "Framework/Text/IRun.h"
#include "Styling/SlateTypes.h"

/** A run of text in a style of its own, which is copied. */
class FSlateTextRun final : public IRun
{
public:
	/** A run of the whole line. */
	static TSharedRef<FSlateTextRun> Create(
		const FRunInfo& InRunInfo, const TSharedRef<const FString>& InText, const FTextBlockStyle& Style);
	/** @param InRange  in the line; it is checked when the line is added */
	static TSharedRef<FSlateTextRun> Create(const FRunInfo& InRunInfo, const TSharedRef<const FString>& InText,
		const FTextBlockStyle& Style, const FTextRange& InRange);

	virtual FTextRange GetTextRange() const override { return Range; }
	virtual const FRunInfo& GetRunInfo() const override { return RunInfo; }
	virtual void AppendTextTo(FString& AppendToText) const override { AppendTextTo(AppendToText, Range); }
	virtual void AppendTextTo(FString& AppendToText, const FTextRange& PartOfRange) const override;

private:
	FSlateTextRun(const FRunInfo& InRunInfo, const TSharedRef<const FString>& InText, const FTextBlockStyle& InStyle,
		const FTextRange& InRange);
	virtual const TSharedRef<const FString>& GetLineText() const override { return Text; }
	virtual const FTextBlockStyle& GetStyle() const override { return Style; }

	const FRunInfo RunInfo;
	const TSharedRef<const FString> Text;
	const FTextBlockStyle Style;
	const FTextRange Range;
};
