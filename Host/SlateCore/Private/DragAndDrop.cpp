#include "Input/DragAndDrop.h"

TSharedRef<FExternalDragOperation> FExternalDragOperation::NewText(FString InText)
{
	const TSharedRef<FExternalDragOperation> Operation = MakeShared<FExternalDragOperation>();
	Operation->Text = MoveTemp(InText);
	return Operation;
}

TSharedRef<FExternalDragOperation> FExternalDragOperation::NewFiles(TArray<FString> InFileNames)
{
	const TSharedRef<FExternalDragOperation> Operation = MakeShared<FExternalDragOperation>();
	Operation->Files = MoveTemp(InFileNames);
	return Operation;
}
