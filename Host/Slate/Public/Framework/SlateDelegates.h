#pragma once

#include "CoreMinimal.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/Geometry.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"

class ITableRow;
class STableViewBase;
class SWidget;

DECLARE_DELEGATE_RetVal(FReply, FOnClicked);
DECLARE_DELEGATE_OneParam(FOnTextChanged, const FText&);
DECLARE_DELEGATE_TwoParams(FOnTextCommitted, const FText&, ETextCommit::Type);
DECLARE_DELEGATE_RetVal_TwoParams(FReply, FOnKeyDown, const FGeometry&, const FKeyEvent&);
DECLARE_DELEGATE_RetVal_TwoParams(FReply, FOnKeyChar, const FGeometry&, const FCharacterEvent&);
DECLARE_DELEGATE_RetVal_TwoParams(FReply, FOnDragDetected, const FGeometry&, const FPointerEvent&);
DECLARE_DELEGATE_RetVal(TSharedRef<SWidget>, FOnGetContent);
DECLARE_DELEGATE_OneParam(FOnIsOpenChanged, bool);
DECLARE_DELEGATE_OneParam(FOnCheckStateChanged, ECheckBoxState);

/** The delegates of views that show items of a type. */
template <typename ItemType>
struct TSlateDelegates
{
	using FOnGenerateRow = TDelegate<TSharedRef<ITableRow>(ItemType, const TSharedRef<STableViewBase>&)>;
	/** The item is null when nothing is selected any more. */
	using FOnSelectionChanged = TDelegate<void(ItemType, ESelectInfo::Type)>;
	using FOnMouseButtonDoubleClick = TDelegate<void(ItemType)>;
};
