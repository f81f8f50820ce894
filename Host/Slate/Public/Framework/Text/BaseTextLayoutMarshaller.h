#pragma once

#include "CoreMinimal.h"
#include "Framework/Text/ITextLayoutMarshaller.h"
#include "Framework/Text/TextLayout.h"

/** A marshaller but for what it does with the text. */
class FBaseTextLayoutMarshaller : public ITextLayoutMarshaller
{
public:
	virtual bool RequiresLiveUpdate() const override { return false; }
	virtual void MakeDirty() override { bIsDirty = true; }
	virtual void ClearDirty() override { bIsDirty = false; }
	virtual bool IsDirty() const override { return bIsDirty; }

protected:
	bool bIsDirty = false;
};
