#include "Widget/Prompt/DroppedNames.h"

#include "Agent/Text/DisplayText.h"
#include "AssetRegistry/AssetData.h"
#include "DragAndDrop/AssetDragDropOp.h"
#include "Input/DragAndDrop.h"
#include "Misc/Paths.h"

namespace KestrelDroppedNames
{
namespace
{
void Add(TArray<FString>& Names, const FString& Name)
{
	if (Names.Num() < MaxNames && !Name.IsEmpty() && KestrelDisplayText::EscapeLine(Name).Equals(Name))
	{
		Names.AddUnique(Name);
	}
}

FString ShortenPath(const FString& File)
{
	FString Path = FPaths::ConvertRelativePathToFull(File);
	FPaths::NormalizeFilename(Path);
	const FString Root = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	return Path.StartsWith(Root, ESearchCase::CaseSensitive) ? Path.Mid(Root.Len()) : Path;
}
}

bool HasNames(const FDragDropEvent& Event)
{
	const TSharedPtr<FExternalDragOperation> External = Event.GetOperationAs<FExternalDragOperation>();
	return Event.GetOperationAs<FAssetDragDropOp>().IsValid() || (External.IsValid() && External->HasFiles());
}

TArray<FString> Find(const FDragDropEvent& Event)
{
	if (const TSharedPtr<FAssetDragDropOp> Assets = Event.GetOperationAs<FAssetDragDropOp>())
	{
		TArray<FString> Names = OfAssets(Assets->GetAssets());
		for (const FString& Folder : Assets->GetAssetPaths())
		{
			Add(Names, Folder);
		}
		return Names;
	}
	TArray<FString> Names;
	const TSharedPtr<FExternalDragOperation> External = Event.GetOperationAs<FExternalDragOperation>();
	for (const FString& File : External.IsValid() ? External->GetFiles() : TArray<FString>())
	{
		Add(Names, ShortenPath(File));
	}
	return Names;
}

TArray<FString> OfAssets(const TArray<FAssetData>& Assets)
{
	TArray<FString> Names;
	for (const FAssetData& Asset : Assets)
	{
		Add(Names, Asset.PackageName.ToString());
	}
	return Names;
}

FString Join(const TArray<FString>& Names)
{
	TArray<FString> Words;
	for (const FString& Name : Names)
	{
		Words.Add(Name.Contains(TEXT(" ")) ? TEXT("\"") + Name + TEXT("\"") : Name);
	}
	return FString::Join(Words, TEXT(" "));
}
}
