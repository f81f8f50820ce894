#include "Containers/Ticker.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Text/TextLayout.h"
#include "InputCoreTypes.h"
#include "Types/SlateEnums.h"
#include "Widget/Prompt/ProjectNames.h"
#include "Widget/Prompt/SKestrelCompletionList.h"
#include "Widget/Prompt/SKestrelPromptBox.h"
#include "Widgets/Input/SMenuAnchor.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace KestrelCompletion
{
constexpr int32 MaxRows = 10;
/** Of a frame, for reading folders. */
constexpr double ReadSeconds = 0.004;
constexpr TCHAR Sign = TEXT('@');

/** An "@" in the middle of a word belongs to an address. */
bool BeginsWord(const FString& Line, int32 Index)
{
	return Index == 0 || !(FChar::IsAlnum(Line[Index - 1]) || Line[Index - 1] == Sign);
}
}

TOptional<SKestrelPromptBox::FToken> SKestrelPromptBox::FindToken() const
{
	const FTextLocation Cursor = Text->GetCursorLocation();
	const TArray<FString> Lines = GetLines();
	if (!Lines.IsValidIndex(Cursor.GetLineIndex()))
	{
		return TOptional<FToken>();
	}
	const FString& Line = Lines[Cursor.GetLineIndex()];
	const int32 End = FMath::Min(Cursor.GetOffset(), Line.Len());
	for (int32 Begin = End - 1; Begin >= 0 && !FChar::IsWhitespace(Line[Begin]); --Begin)
	{
		if (Line[Begin] == KestrelCompletion::Sign)
		{
			return KestrelCompletion::BeginsWord(Line, Begin)
					   ? FToken{ Cursor.GetLineIndex(), Begin, Line.Mid(Begin + 1, End - Begin - 1) }
					   : TOptional<FToken>();
		}
	}
	return TOptional<FToken>();
}

void SKestrelPromptBox::OnTextChanged(const FText& NewText)
{
	bIsCompleting = true;
	UpdateList();
}

void SKestrelPromptBox::OnCursorMoved(const FTextLocation& Location)
{
	if (!bIsCompleting)
	{
		return;
	}
	// Each letter that is typed moves the cursor, too.
	const TOptional<FToken> Token = FindToken();
	if (!Token.IsSet() || !Listed.IsSet() || !Token->IsSame(Listed.GetValue()))
	{
		UpdateList();
	}
}

void SKestrelPromptBox::OnTextCommitted(const FText& NewText, ETextCommit::Type Reason)
{
	StopCompleting();
}

void SKestrelPromptBox::OnListOpenChanged(bool bIsOpen)
{
	// Something beside it was clicked.
	if (!bIsOpen && bIsCompleting && !List->GetNames().IsEmpty())
	{
		StopCompleting();
	}
}

TSharedRef<SWidget> SKestrelPromptBox::GetList() const
{
	return List.ToSharedRef();
}

void SKestrelPromptBox::UpdateList()
{
	const TOptional<FToken> Token = FindToken();
	if (!Token.IsSet())
	{
		Dismissed.Reset();
	}
	if (!Token.IsSet() || (Dismissed.IsSet() && Token->BeginsWhere(Dismissed.GetValue())))
	{
		StopCompleting();
		return;
	}
	Listed = Token;
	Names.Refresh();
	if (!bIsReading)
	{
		// Not a timer of the widget: those run while it is painted, when it is too late for new rows.
		bIsReading = true;
		ReadTicker =
			FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateSP(this, &SKestrelPromptBox::ReadNames));
	}
	TArray<FString> Found;
	for (const int32 Index : Names.GetIndex().Find(Token->Letters, KestrelCompletion::MaxRows))
	{
		Found.Add(Names.GetIndex().GetName(Index));
	}
	List->SetNames(Found);
	// The text keeps the focus: the user types on.
	constexpr bool bFocusMenu = false;
	ListAnchor->SetIsOpen(!Found.IsEmpty(), bFocusMenu);
}

bool SKestrelPromptBox::ReadNames(float DeltaTime)
{
	const int32 NumBefore = Names.GetIndex().Num();
	const bool bMore = Names.ReadOn(KestrelCompletion::ReadSeconds);
	if (bIsCompleting && Names.GetIndex().Num() > NumBefore)
	{
		UpdateList();
	}
	bIsReading = bMore;
	return bMore;
}

void SKestrelPromptBox::StopCompleting()
{
	bIsCompleting = false;
	ListAnchor->SetIsOpen(false);
	// The next one begins with its first name.
	List->SetNames(TArray<FString>());
}

bool SKestrelPromptBox::HandleListKey(const FKey& Key)
{
	if (Key == EKeys::Up || Key == EKeys::Down)
	{
		List->MoveSelection(Key == EKeys::Down ? 1 : -1);
		return true;
	}
	if (Key == EKeys::Enter || Key == EKeys::Tab)
	{
		Complete(List->GetSelected());
		return true;
	}
	if (Key == EKeys::Escape)
	{
		Dismissed = FindToken();
		StopCompleting();
		return true;
	}
	return false;
}

void SKestrelPromptBox::Complete(const FString& Name)
{
	const TOptional<FToken> Token = FindToken();
	if (!Token.IsSet())
	{
		return;
	}
	TArray<FString> Lines = GetLines();
	FString& Line = Lines[Token->LineIndex];
	const FString Rest = Line.Mid(Token->Begin + 1 + Token->Letters.Len());
	const bool bHasSpace = !Rest.IsEmpty() && FChar::IsWhitespace(Rest[0]);
	const FString Start = Line.Left(Token->Begin) + Names.GetInsertion(Name);
	Line = Start + (bHasSpace ? TEXT("") : TEXT(" ")) + Rest;
	SetTextWithoutList(FString::Join(Lines, TEXT("\n")));
	Text->GoTo(FTextLocation(Token->LineIndex, Start.Len() + 1));
	FSlateApplication::Get().SetKeyboardFocus(Text, EFocusCause::SetDirectly);
}

void SKestrelPromptBox::SetTextWithoutList(const FString& NewText)
{
	Text->SetText(FText::FromString(NewText));
	Dismissed.Reset();
	StopCompleting();
}
