#include "Styling/SlateTypes.h"

#define SLATE_IMPLEMENT_STYLE_TYPE(StyleType)                                                                          \
	const FName StyleType::TypeName(TEXT(#StyleType));                                                                 \
	const StyleType& StyleType::GetDefault()                                                                           \
	{                                                                                                                  \
		static const StyleType Default;                                                                                \
		return Default;                                                                                                \
	}

SLATE_IMPLEMENT_STYLE_TYPE(FTextBlockStyle)
SLATE_IMPLEMENT_STYLE_TYPE(FButtonStyle)
SLATE_IMPLEMENT_STYLE_TYPE(FScrollBarStyle)
