#pragma once

#include "CoreMinimal.h"
#include "Framework/Text/BaseTextLayoutMarshaller.h"

/** Each line is one run in the widget's own style. */
class FPlainTextLayoutMarshaller : public FBaseTextLayoutMarshaller
{
public:
	static TSharedRef<FPlainTextLayoutMarshaller> Create();

	/** @param TargetTextLayout  an FSlateTextLayout, as widgets have them */
	virtual void SetText(const FString& SourceString, FTextLayout& TargetTextLayout) override;
	virtual void GetText(FString& TargetString, const FTextLayout& SourceTextLayout) override;
};
