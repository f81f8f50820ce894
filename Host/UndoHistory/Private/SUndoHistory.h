#pragma once

#include "CoreMinimal.h"
#include "Misc/Guid.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/Views/SListView.h"

class UTransBuffer;

/** A line of the history: where one gets by going there, as the number of transactions that are then done. */
struct FUndoHistoryLine
{
	FGuid TransactionId; // not valid for the line before the first transaction
	FText Title;
	int32 Position = 0;
};

/**
 * All transactions that can be undone or done again, the newest at the bottom. A double click or Enter goes to a line:
 * what stands below it is then undone, the line and what stands above it done.
 *
 * Transactions are known by their ids: they may leave the editor's list at any time.
 */
class SUndoHistory : public SCompoundWidget
{
public:
	using FLine = TSharedPtr<FUndoHistoryLine>;

	SLATE_BEGIN_ARGS(SUndoHistory) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	/** From the line before the first transaction on. */
	const TArray<FLine>& GetLines() const { return Lines; }
	/** Of the line that tells how things are. */
	int32 GetPosition() const;
	/** Undoes or does again what lies between. Stops where the editor cannot, such as in an open transaction. */
	void GoTo(const FUndoHistoryLine& Line);

private:
	static UTransBuffer* GetBuffer();
	void Refresh();
	TSharedRef<ITableRow> MakeRow(FLine Line, const TSharedRef<STableViewBase>& Owner);
	FReply OnListKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent);
	FSlateColor GetColor(FLine Line) const;
	FText GetMark(FLine Line) const;

	TArray<FLine> Lines;
	TSharedPtr<SListView<FLine>> List;
};
