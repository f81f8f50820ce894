#pragma once

#include "CoreMinimal.h"

class FTextLayout;

/** Makes lines and runs of a text, and a text of them. */
class ITextLayoutMarshaller
{
public:
	virtual ~ITextLayoutMarshaller() = default;

	/** @param TargetTextLayout  without lines; those of the text are added */
	virtual void SetText(const FString& SourceString, FTextLayout& TargetTextLayout) = 0;
	/** What the widget's GetText answers, and what is marshalled again when this is dirty. */
	virtual void GetText(FString& TargetString, const FTextLayout& SourceTextLayout) = 0;
	/** Whether SetText is to be called for each change that the user makes. */
	virtual bool RequiresLiveUpdate() const = 0;
	/** SetText is to be called again, at the widget's next tick. */
	virtual void MakeDirty() = 0;
	virtual void ClearDirty() = 0;
	virtual bool IsDirty() const = 0;
};
