#include "SUndoHistory.h"

#include "Editor.h"
#include "Editor/TransBuffer.h"
#include "InputCoreTypes.h"
#include "Styling/AppStyle.h"
#include "Templates/Casts.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "UndoHistory"

namespace UndoHistory
{
constexpr float RowHeight = 22.0f;
constexpr float MarkWidth = 16.0f;

FText GetTextOf(const FTransaction& Transaction)
{
	return Transaction.GetTitle().IsEmpty() ? LOCTEXT("Untitled", "Untitled change") : Transaction.GetTitle();
}
}

void SUndoHistory::Construct(const FArguments& InArgs)
{
	// clang-format off
	ChildSlot
	[
		SNew(SBorder).BorderImage(FAppStyle::GetBrush("Brushes.Recessed")).Padding(4.0f)
		[
			SAssignNew(List, SListView<FLine>)
			.AccessibleText(LOCTEXT("History", "Undo History"))
			.ListItemsSource(&Lines)
			.ItemHeight(UndoHistory::RowHeight)
			.OnGenerateRow(this, &SUndoHistory::MakeRow)
			.OnMouseButtonDoubleClick_Lambda([this](FLine Line) { GoTo(*Line); })
			.OnKeyDownHandler(this, &SUndoHistory::OnListKeyDown)
		]
	];
	// clang-format on
	if (UTransBuffer* const Buffer = GetBuffer())
	{
		Buffer->OnUndoBufferChanged().AddSP(this, &SUndoHistory::Refresh);
	}
	Refresh();
}

UTransBuffer* SUndoHistory::GetBuffer()
{
	return GEditor ? Cast<UTransBuffer>(GEditor->Trans.Get()) : nullptr;
}

int32 SUndoHistory::GetPosition() const
{
	const UTransBuffer* const Buffer = GetBuffer();
	return Buffer ? Buffer->GetQueueLength() - Buffer->GetUndoCount() : 0;
}

void SUndoHistory::Refresh()
{
	TMap<FGuid, FLine> Known;
	for (const FLine& Line : Lines)
	{
		Known.Add(Line->TransactionId, Line);
	}
	const UTransBuffer* const Buffer = GetBuffer();
	const int32 NumTransactions = Buffer ? Buffer->GetQueueLength() : 0;
	Lines.Empty();
	for (int32 Position = 0; Position <= NumTransactions; ++Position)
	{
		const FTransaction* const Transaction = Position > 0 ? Buffer->GetTransaction(Position - 1) : nullptr;
		const FGuid Id = Transaction ? Transaction->GetId() : FGuid();
		// A line that was there keeps its identity, and so the selection.
		const FLine Line = Known.Contains(Id) ? Known[Id] : MakeShared<FUndoHistoryLine>();
		Line->TransactionId = Id;
		Line->Title = Transaction ? UndoHistory::GetTextOf(*Transaction) : LOCTEXT("Start", "Before all changes");
		Line->Position = Position;
		Lines.Add(Line);
	}
	List->RequestListRefresh();
	List->RequestScrollIntoView(Lines[GetPosition()]);
}

void SUndoHistory::GoTo(const FUndoHistoryLine& Line)
{
	const int32 Wanted = Line.Position;
	while (GetPosition() > Wanted && GEditor->UndoTransaction())
	{
	}
	while (GetPosition() < Wanted && GEditor->RedoTransaction())
	{
	}
}

TSharedRef<ITableRow> SUndoHistory::MakeRow(FLine Line, const TSharedRef<STableViewBase>& Owner)
{
	// clang-format off
	return SNew(STableRow<FLine>, Owner)
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)
			[
				SNew(SBox).WidthOverride(UndoHistory::MarkWidth)
				[
					SNew(STextBlock).Text(this, &SUndoHistory::GetMark, Line)
				]
			]
			+ SHorizontalBox::Slot().FillWidth(1.0f).VAlign(VAlign_Center)
			[
				SNew(STextBlock).Text(Line->Title).ColorAndOpacity(this, &SUndoHistory::GetColor, Line)
			]
		];
	// clang-format on
}

FText SUndoHistory::GetMark(FLine Line) const
{
	return Line->Position == GetPosition() ? INVTEXT("\u25B8") : FText::GetEmpty();
}

FSlateColor SUndoHistory::GetColor(FLine Line) const
{
	return Line->Position > GetPosition() ? FSlateColor::UseSubduedForeground() : FSlateColor::UseForeground();
}

FReply SUndoHistory::OnListKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const TArray<FLine> Selected = List->GetSelectedItems();
	if (InKeyEvent.GetKey() != EKeys::Enter || Selected.Num() == 0)
	{
		return FReply::Unhandled();
	}
	GoTo(*Selected[0]);
	return FReply::Handled();
}

#undef LOCTEXT_NAMESPACE
