#include "Widget/SKestrelFold.h"

#include "Types/SlateEnums.h"
#include "Widgets/Input/SButton.h"

#define LOCTEXT_NAMESPACE "SKestrelFold"

void SKestrelFold::Construct(const FArguments& InArgs)
{
	OnMakeFolded = InArgs._OnMakeFolded;
	// clang-format off
	ChildSlot
	.HAlign(HAlign_Left)
	[
		SNew(SButton)
		.Text(InArgs._NumChanges > 0
				  ? FText::Format(LOCTEXT("FoldedChanges", "\u22EF {0} more lines, {1} of them changed"),
						InArgs._NumLines, InArgs._NumChanges)
				  : FText::Format(LOCTEXT("Folded", "\u22EF {0} unchanged {0}|plural(one=line,other=lines)"),
						InArgs._NumLines))
		.ToolTipText(LOCTEXT("FoldedToolTip", "Show these lines"))
		.OnClicked(this, &SKestrelFold::OnClicked)
	];
	// clang-format on
}

FReply SKestrelFold::OnClicked()
{
	// clang-format off
	ChildSlot
	.HAlign(HAlign_Fill)
	[
		OnMakeFolded.Execute()
	];
	// clang-format on
	return FReply::Handled();
}

#undef LOCTEXT_NAMESPACE
