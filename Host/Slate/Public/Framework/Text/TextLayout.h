#pragma once

#include "CoreMinimal.h"
#include "Framework/Text/IRun.h"
#include "Framework/Text/TextLineHighlight.h"
#include "Framework/Text/TextRange.h"

namespace ETextJustify
{
enum Type : int
{
	Left,
	Center,
	Right,
};
}

/** A place in a text: between two characters of a line. */
class FTextLocation
{
public:
	FTextLocation() = default;
	/** @param InLineIndex  from 0  @param InOffset  how many UTF-16 units of the line lie before the place */
	FTextLocation(const int32 InLineIndex, const int32 InOffset = 0)
		: LineIndex(InLineIndex)
		, Offset(InOffset)
	{
	}

	int32 GetLineIndex() const { return LineIndex; }
	int32 GetOffset() const { return Offset; }

	bool operator==(const FTextLocation& Other) const = default;
	bool operator<(const FTextLocation& Other) const
	{
		return LineIndex != Other.LineIndex ? LineIndex < Other.LineIndex : Offset < Other.Offset;
	}

private:
	int32 LineIndex = 0;
	int32 Offset = 0;
};

enum class ETextLocation : uint8
{
	BeginningOfDocument,
	EndOfDocument,
	BeginningOfLine,
	EndOfLine,
};

/** What becomes of a word that is wider than the space for a line. */
enum class ETextWrappingPolicy : uint8
{
	/** It stays whole, and reaches out of the space. */
	DefaultWrapping,
	/** It is broken where the space ends. */
	AllowPerCharacterWrapping,
};

/** The lines of a text, each made of runs. */
class FTextLayout : public TSharedFromThis<FTextLayout>
{
public:
	/** A line to be added, without what ended it. */
	struct FNewLineData
	{
		/**
		 * @param InText  without line breaks; not to be changed once the line was added
		 * @param InRuns  in order, of that very string; together they cover it without a gap. None is empty, except for
		 *                the one of an empty line
		 */
		FNewLineData(TSharedRef<FString> InText, TArray<TSharedRef<IRun>> InRuns)
			: Text(MoveTemp(InText))
			, Runs(MoveTemp(InRuns))
		{
		}

		TSharedRef<FString> Text;
		TArray<TSharedRef<IRun>> Runs;
	};

	class FRunModel
	{
	public:
		explicit FRunModel(const TSharedRef<IRun>& InRun)
			: Run(InRun)
		{
		}

		TSharedRef<IRun> GetRun() const { return Run; }
		FTextRange GetTextRange() const { return Run->GetTextRange(); }
		void AppendTextTo(FString& OutText) const { Run->AppendTextTo(OutText); }

	private:
		friend class FWrappedText;
		TSharedRef<IRun> Run;
	};

	struct FLineModel
	{
		TSharedRef<FString> Text;
		TArray<FRunModel> Runs;
		TArray<FTextLineHighlight> LineHighlights;
	};

	virtual ~FTextLayout() = default;
	UE_NONCOPYABLE(FTextLayout)

	void AddLine(const FNewLineData& NewLine);
	void AddLines(const TArray<FNewLineData>& NewLines);
	void ClearLines() { LineModels.Empty(); }
	const TArray<FLineModel>& GetLineModels() const { return LineModels; }
	/** The text of the runs, the lines joined by LINE_TERMINATOR. */
	void GetAsText(FString& DisplayText) const;
	/** The line has been added before. */
	void AddLineHighlight(const FTextLineHighlight& Highlight);

protected:
	FTextLayout() = default;

private:
	TArray<FLineModel> LineModels;
};
