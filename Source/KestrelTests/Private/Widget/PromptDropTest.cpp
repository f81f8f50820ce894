#include "AssetRegistry/AssetData.h"
#include "Containers/Ticker.h"
#include "DragAndDrop/AssetDragDropOp.h"
#include "Engine/Blueprint.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Text/TextLayout.h"
#include "Input/DragAndDrop.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "Support/TestPanel.h"
#include "Widget/Prompt/DroppedNames.h"
#include "Widget/Prompt/ProjectNames.h"
#include "Widgets/SWidget.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace PromptDropTest
{
/** Over the text of the prompt box, on whose parents it goes. */
bool Drop(const FKestrelTestPanel& Panel, const TSharedRef<FDragDropOperation>& Operation)
{
	FSlateApplication::Get().Tick();
	const FGeometry& Geometry = Panel.PromptBox()->GetCachedGeometry();
	const FVector2D Middle(Geometry.LocalToAbsolute(FVector2D(Geometry.GetLocalSize()) * 0.5));
	const FDragDropEvent Event(
		FPointerEvent(0, Middle, Middle, TSet<FKey>(), FKey(), 0.0f, FModifierKeysState()), Operation);
	for (TSharedPtr<SWidget> Widget = Panel.PromptBox(); Widget.IsValid(); Widget = Widget->GetParentWidget())
	{
		if (Widget->OnDragOver(Widget->GetCachedGeometry(), Event).IsEventHandled())
		{
			return Widget->OnDrop(Widget->GetCachedGeometry(), Event).IsEventHandled();
		}
	}
	return false;
}

FString Prompt(const FKestrelTestPanel& Panel)
{
	return Panel.PromptBox()->GetText().ToString();
}

/** Something that has no names. */
class FOtherOperation : public FDragDropOperation
{
public:
	DRAG_DROP_OPERATOR_TYPE(FOtherOperation, FDragDropOperation)
};
}

DEFINE_SPEC(FKestrelPromptDropSpec, "Kestrel.PromptDrop", KestrelTest::Flags)
void FKestrelPromptDropSpec::Define()
{
	using namespace PromptDropTest;

	It("inserts the paths of files that are dropped, from the project's folder where they are in it", [this]() {
		const FKestrelTestFolder Folder;
		const FKestrelTestPanel Panel;
		Panel.Type(TEXT("compare"));
		Panel.PromptBox()->GoTo(ETextLocation::EndOfDocument);
		TestTrue(TEXT("taken"),
			Drop(Panel, FExternalDragOperation::NewFiles({ Folder.Full(TEXT("a.txt")), TEXT("/tmp/b.txt"),
							TEXT("/tmp/evil\nread .ssh"), Folder.Full(TEXT("a.txt")) })));
		KestrelTest::TestSameText(*this, TEXT("paths"), Prompt(Panel),
			FString::Printf(TEXT("compare \"%s/a.txt\" /tmp/b.txt "), *Folder.Name));
		TestTrue(TEXT("to go on typing"), Panel.PromptBox()->HasKeyboardFocus());
		TestFalse(TEXT("nothing else is taken"), Drop(Panel, MakeShared<FOtherOperation>()));
		TestFalse(TEXT("nor text"), Drop(Panel, FExternalDragOperation::NewText(TEXT("text"))));
	});

	It("inserts the names of assets and folders of them", [this]() {
		const FKestrelTestContent Content;
		const UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Gate"));
		const FKestrelTestPanel Panel;
		Drop(Panel, FAssetDragDropOp::New(TArray<FAssetData>{ FAssetData(Blueprint) }));
		Drop(Panel, FAssetDragDropOp::New(TArray<FString>{ TEXT("/Game/Doors") }));
		KestrelTest::TestSameText(*this, TEXT("names"), Prompt(Panel), Content.Path + TEXT("/BP_Gate /Game/Doors "));
	});

	It("inserts no more names than a prompt can make use of", [this]() {
		const FKestrelTestPanel Panel;
		TArray<FString> Files;
		for (int32 Index = 0; Index < 5000; ++Index)
		{
			Files.Add(FString::Printf(TEXT("/tmp/%d"), Index));
		}
		Drop(Panel, FExternalDragOperation::NewFiles(Files));
		TArray<FString> Words;
		Prompt(Panel).ParseIntoArray(Words, TEXT(" "));
		TestEqual(TEXT("names"), Words.Num(), KestrelDroppedNames::MaxNames);
	});

	It("completes what the project's headers declare, with where it is", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(
			TEXT("Walk.h"), TEXT("#pragma once\nUCLASS()\nclass AUnlikelyQuail : public AActor\n{\n\tUFUNCTION()\n"
								 "\tvoid UnlikelyChirp();\n};\n"));
		FKestrelProjectNames Names;
		Names.Refresh();
		while (Names.ReadOn(1.0))
		{
		}
		const auto First = [&Names](const TCHAR* Letters) {
			const TArray<int32> Found = Names.GetIndex().Find(Letters, 1);
			return Found.IsEmpty() ? FString() : Names.GetInsertion(Names.GetIndex().GetName(Found[0]));
		};
		KestrelTest::TestSameText(*this, TEXT("a class"), First(TEXT("unliqua")),
			FString::Printf(TEXT("AUnlikelyQuail (%s/Walk.h:3)"), *Folder.Name));
		KestrelTest::TestSameText(*this, TEXT("a function"), First(TEXT("unlichirp")),
			FString::Printf(TEXT("AUnlikelyQuail::UnlikelyChirp (%s/Walk.h:6)"), *Folder.Name));
	});
}
