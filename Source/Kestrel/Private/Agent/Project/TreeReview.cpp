#include "Agent/Project/TreeReview.h"

#include "Agent/Files/FolderWalk.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Project/SearchReview.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Misc/Paths.h"

namespace TreeReview
{
void LeaveOut(FJsonObject& Tree, FKestrelFolder& Folder, const FKestrelSearchReview& Review)
{
	TArray<FString> Names;
	Tree.Values.GenerateKeyArray(Names);
	for (const FString& Name : Names)
	{
		const TSharedPtr<FJsonObject>* SubTree = nullptr;
		if (Tree.TryGetObjectField(Name, SubTree))
		{
			FKestrelFolder Sub(Folder, Name);
			LeaveOut(**SubTree, Sub, Review);
		}
		const bool bMayTell = SubTree ? !(*SubTree)->Values.IsEmpty()
									  : Review.MayReadByRules(Folder.GetPath() / Name, Folder.ResolveFile(Name));
		if (!bMayTell)
		{
			Tree.RemoveField(Name);
		}
	}
}
}

FString KestrelTreeReview::LeaveOutRestricted(const FString& Folder, const FString& Tree)
{
	const FKestrelSearchReview Review;
	const TSharedPtr<FJsonObject> Object = Review.HasRestrictions() ? KestrelJson::ParseObject(Tree) : nullptr;
	if (!Object.IsValid())
	{
		return Review.HasRestrictions() ? FString(TEXT("{}")) : Tree;
	}
	FKestrelFolder Root(FPaths::ConvertRelativePathToFull(Folder));
	TreeReview::LeaveOut(*Object, Root, Review);
	return KestrelJson::ToCondensedText(Object.ToSharedRef());
}

bool KestrelTreeReview::MayTell(const FKestrelSearchReview& Review, const FString& FullPath, bool bIsFolder)
{
	const TCHAR* const AnyName = TEXT("_");
	const FString Judged = bIsFolder ? FullPath / AnyName : FullPath;
	return !Review.HasRestrictions() || Review.MayReadByRules(Judged, KestrelNativeFile::ResolveLinks(Judged));
}
