#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Engine/Blueprint.h"
#include "K2Node_CallFunction.h"
#include "K2Node_VariableGet.h"
#include "Kismet/KismetSystemLibrary.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Misc/FileHelper.h"
#include "Support/Dice.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"

namespace DamagedAssetTest
{
/** Something of everything that a package can hold. */
void Fill(UBlueprint& Blueprint)
{
	using FSchema = UEdGraphSchema_K2;
	FBlueprintEditorUtils::AddMemberVariable(
		&Blueprint, TEXT("Line"), KestrelTest::MakePinType(FSchema::PC_String), TEXT("text"));
	FEdGraphPinType Map = KestrelTest::MakePinType(FSchema::PC_Name);
	Map.ContainerType = EPinContainerType::Map;
	Map.PinValueType.TerminalCategory = FSchema::PC_Int;
	FBlueprintEditorUtils::AddMemberVariable(&Blueprint, TEXT("Counts"), Map, TEXT("((a, 1),(b, 2))"));
	UEdGraph* Function = FBlueprintEditorUtils::CreateNewGraph(
		&Blueprint, TEXT("Measure"), UEdGraph::StaticClass(), FSchema::StaticClass());
	FBlueprintEditorUtils::AddFunctionGraph<UClass>(&Blueprint, Function, true, nullptr);
	FGraphNodeCreator<UK2Node_CallFunction> Creator(*Blueprint.UbergraphPages[0]);
	UK2Node_CallFunction* Print = Creator.CreateNode();
	Print->SetFromFunction(UKismetSystemLibrary::StaticClass()->FindFunctionByName(TEXT("PrintString")));
	Creator.Finalize();
	FGraphNodeCreator<UK2Node_VariableGet> GetCreator(*Blueprint.UbergraphPages[0]);
	UK2Node_VariableGet* Get = GetCreator.CreateNode();
	Get->VariableReference.SetSelfMember(TEXT("Line"));
	GetCreator.Finalize();
	Get->FindPinChecked(TEXT("Line"))->MakeLinkTo(Print->FindPinChecked(TEXT("InString")));
	Blueprint.UbergraphPages[0]
		->Nodes[0]
		->FindPinChecked(FSchema::PN_Then)
		->MakeLinkTo(Print->FindPinChecked(FSchema::PN_Execute));
}

void DamageBytes(TArray<uint8>& Bytes, FKestrelDice& Dice)
{
	const int32 At = Dice.Roll(Bytes.Num());
	switch (Dice.Roll(4))
	{
	case 0:
		Bytes[At] = static_cast<uint8>(Dice.Roll(256));
		break;
	case 1:
		Bytes.RemoveAt(At, FMath::Min(Dice.Roll(40), Bytes.Num() - At));
		break;
	case 2:
		Bytes.Insert(static_cast<uint8>("(){}\",='0"[Dice.Roll(9)]), At);
		break;
	default:
		Bytes.SetNum(FMath::Max(At, 1));
		break;
	}
}

/** Whole lines: what is there is well formed, and in the wrong place. */
void DamageLines(TArray<uint8>& Bytes, FKestrelDice& Dice)
{
	TArray<FString> Lines;
	FString Text;
	FFileHelper::BufferToString(Text, Bytes.GetData(), Bytes.Num());
	Text.ParseIntoArrayLines(Lines, false);
	const int32 From = Dice.Roll(Lines.Num());
	const FString Line = Lines[From];
	if (Dice.Roll(2) == 0)
	{
		Lines.RemoveAt(From);
	}
	Lines.Insert(Line, Dice.Roll(Lines.Num() + 1));
	const FTCHARToUTF8 Utf8(*FString::Join(Lines, TEXT("\n")));
	Bytes = TArray<uint8>(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
}

TArray<uint8> Damage(TArray<uint8> Bytes, FKestrelDice& Dice)
{
	for (int32 Count = Dice.Roll(4) + 1; Count > 0 && Bytes.Num() > 1; --Count)
	{
		Dice.Roll(3) == 0 ? DamageLines(Bytes, Dice) : DamageBytes(Bytes, Dice);
	}
	return Bytes;
}
}

DEFINE_SPEC(FKestrelDamagedAssetsSpec, "Kestrel.DamagedAssets", KestrelTest::Flags)
void FKestrelDamagedAssetsSpec::Define()
{
	It("end in an answer, whatever is in the file", [this]() {
		const int32 NumRounds = KestrelTest::GetNumFuzzRounds();
		if (NumRounds == 0)
		{
			return;
		}
		AddExpectedError(
			TEXT("[Compiler]"), EAutomationExpectedErrorFlags::Contains, 0); // the compiler's, about what is left
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Damaged"), TEXT("Character"));
		DamagedAssetTest::Fill(*Blueprint);
		FKestrelBlueprintUtils::CompileBlueprint(Blueprint);
		FKestrelBlueprintUtils::SaveBlueprint(Blueprint);
		const FString File = Content.GetFile(TEXT("BP_Damaged"));
		TArray<uint8> Whole;
		FFileHelper::LoadFileToArray(Whole, *File);
		FKestrelDice Dice;
		for (int32 Round = 0; Round < NumRounds; ++Round)
		{
			Content.Unload();
			FFileHelper::SaveArrayToFile(DamagedAssetTest::Damage(Whole, Dice), *File);
			IAssetRegistry::Get()->ScanPathsSynchronous({ Content.Path }, true);
			const FString Answer = FKestrelBlueprintUtils::ReadBlueprint(TEXT("BP_Damaged"), TEXT("All"));
			if (!Answer.StartsWith(TEXT("{")))
			{
				AddError(FString::Printf(TEXT("Round %d: %s"), Round, *Answer));
			}
		}
		Content.Unload();
		FFileHelper::SaveArrayToFile(Whole, *File);
		IAssetRegistry::Get()->ScanPathsSynchronous({ Content.Path }, true);
		TestTrue(TEXT("the whole file reads again"),
			FKestrelBlueprintUtils::ReadBlueprint(TEXT("BP_Damaged"), TEXT("All")).Contains(TEXT("\"Measure\"")));
	});
}
