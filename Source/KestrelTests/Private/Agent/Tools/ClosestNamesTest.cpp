#include "Agent/Text/ClosestNames.h"
#include "Support/KestrelTest.h"

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelClosestNamesTest, "Kestrel.ClosestNames.OffersWhatMayHaveBeenMeant", KestrelTest::Flags)
bool FKestrelClosestNamesTest::RunTest(const FString& Parameters)
{
	struct FEdits
	{
		const TCHAR* A;
		const TCHAR* B;
		int32 NumEdits;
	};
	for (const FEdits& Case : { FEdits{ TEXT(""), TEXT("abc"), 3 }, FEdits{ TEXT("BP_Door"), TEXT("bp_door"), 0 },
			 FEdits{ TEXT("Dorr"), TEXT("Door"), 1 }, FEdits{ TEXT("Door"), TEXT("Doro"), 1 },
			 FEdits{ TEXT("kitten"), TEXT("sitting"), 3 } })
	{
		TestEqual(Case.B, KestrelClosestNames::CountEdits(Case.A, Case.B), Case.NumEdits);
		TestEqual(Case.A, KestrelClosestNames::CountEdits(Case.B, Case.A), Case.NumEdits);
	}
	const TArray<FString> Names = { TEXT("BP_Gate"), TEXT("BP_Door"), TEXT("BP_Doors"), TEXT("BP_DoorOfTheTower"),
		TEXT("BP_Warden"), TEXT("BP_Dior"), FString::ChrN(5000, TEXT('x')) };
	const auto Test = [this, &Names](const TCHAR* Name, const TCHAR* Expected) {
		KestrelTest::TestSameText(
			*this, Name, FString::Join(KestrelClosestNames::Find(Name, Names), TEXT(" ")), Expected);
	};
	Test(TEXT("BP_Dor"), TEXT("BP_Dior BP_Door BP_Doors"));
	Test(TEXT("bp_warden2"), TEXT("BP_Warden"));
	Test(TEXT("Tower"), TEXT("BP_DoorOfTheTower"));
	Test(TEXT("Elephant"), TEXT(""));
	Test(TEXT(""), TEXT(""));
	Test(*FString::ChrN(5000, TEXT('x')), TEXT(""));
	return true;
}
