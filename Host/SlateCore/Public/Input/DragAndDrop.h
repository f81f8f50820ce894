#pragma once

#include "CoreMinimal.h"
#include "Input/Events.h"

class FDragDropEvent;
class SWidget;

/** Gives a kind of operation its name, by which FDragDropEvent::GetOperationAs knows it; without RTTI there is no
 * other. */
#define DRAG_DROP_OPERATOR_TYPE(TYPE, BASE)                                                                            \
	static const FString& GetTypeId()                                                                                  \
	{                                                                                                                  \
		static const FString Type = TEXT(#TYPE);                                                                       \
		return Type;                                                                                                   \
	}                                                                                                                  \
	virtual bool IsOfTypeImpl(const FString& Type) const override                                                      \
	{                                                                                                                  \
		return GetTypeId().Equals(Type) || BASE::IsOfTypeImpl(Type);                                                   \
	}

/** What is being dragged. */
class FDragDropOperation : public TSharedFromThis<FDragDropOperation>
{
public:
	virtual ~FDragDropOperation() = default;

	/** The button was let go; over something that took it, or not. */
	virtual void OnDrop(bool bDropWasHandled, const FPointerEvent& MouseEvent) {}
	/** Shown at the pointer; null for nothing. */
	virtual TSharedPtr<SWidget> GetDefaultDecorator() const { return nullptr; }

	template <typename T>
	bool IsOfType() const
	{
		return IsOfTypeImpl(T::GetTypeId());
	}

protected:
	virtual bool IsOfTypeImpl(const FString& Type) const { return false; }
};

/** Files or text from another program. */
class FExternalDragOperation : public FDragDropOperation
{
public:
	DRAG_DROP_OPERATOR_TYPE(FExternalDragOperation, FDragDropOperation)

	static TSharedRef<FExternalDragOperation> NewText(FString InText);
	/** @param InFileNames  absolute; may be folders */
	static TSharedRef<FExternalDragOperation> NewFiles(TArray<FString> InFileNames);

	bool HasText() const { return !Text.IsEmpty(); }
	bool HasFiles() const { return !Files.IsEmpty(); }
	const FString& GetText() const { return Text; }
	const TArray<FString>& GetFiles() const { return Files; }

private:
	FString Text;
	TArray<FString> Files;
};

/** Something is dragged over a widget, or dropped on it. */
class FDragDropEvent : public FPointerEvent
{
public:
	FDragDropEvent(const FPointerEvent& InMouseEvent, const TSharedPtr<FDragDropOperation> InContent)
		: FPointerEvent(InMouseEvent)
		, Content(InContent)
	{
	}

	TSharedPtr<FDragDropOperation> GetOperation() const { return Content; }
	/** Null for an operation of another kind. */
	template <typename OperationType>
	TSharedPtr<OperationType> GetOperationAs() const
	{
		return Content.IsValid() && Content->IsOfType<OperationType>() ? StaticCastSharedPtr<OperationType>(Content)
																	   : nullptr;
	}

private:
	TSharedPtr<FDragDropOperation> Content;
};
