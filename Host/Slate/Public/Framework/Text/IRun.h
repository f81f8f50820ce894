#pragma once

#include "CoreMinimal.h"
#include "Framework/Text/TextRange.h"

struct FTextBlockStyle;

/** What a run stands for, as its maker says: what kind it is, and values of it by their names. */
struct FRunInfo
{
	FRunInfo() = default;
	explicit FRunInfo(FString InName)
		: Name(MoveTemp(InName))
	{
	}

	FString Name;
	TMap<FString, FString> MetaData;
};

/** A stretch of a line that is shown in one style. */
class IRun
{
public:
	virtual ~IRun() = default;

	/** In the line, not in the whole text. */
	virtual FTextRange GetTextRange() const = 0;
	virtual const FRunInfo& GetRunInfo() const = 0;
	virtual void AppendTextTo(FString& Text) const = 0;
	/** @param Range  within the run's own range */
	virtual void AppendTextTo(FString& Text, const FTextRange& Range) const = 0;

private:
	friend class FTextLayout;
	friend class FWrappedText;

	/** The line that the run belongs to. */
	virtual const TSharedRef<const FString>& GetLineText() const = 0;
	virtual const FTextBlockStyle& GetStyle() const = 0;
};
