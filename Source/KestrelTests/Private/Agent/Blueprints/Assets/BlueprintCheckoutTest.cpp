#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Engine/Blueprint.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "ISourceControlState.h"
#include "Misc/FileHelper.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "Support/TestLocking.h"
#include "UObject/Package.h"

namespace BlueprintCheckoutTest
{
using FUtils = FKestrelBlueprintUtils;

using FLocking = FKestrelTestLocking;

/** A saved Blueprint with the variable Health, whose file is read-only as a checked in one. */
class FCheckedIn
{
public:
	FCheckedIn(const FKestrelTestContent& Content, const TCHAR* Name)
		: File(Content.GetFile(Name))
		, Blueprint(Content.CreateBlueprint(Name))
	{
		FUtils::ModifyBlueprint(Name, TEXT("{\"Variables\":{\"Health\":{\"Type\":{\"Category\":\"int\"}}}}"));
		SetReadOnly(true);
		Text = Read();
	}
	~FCheckedIn() { SetReadOnly(false); }
	UE_NONCOPYABLE(FCheckedIn)

	FString Read() const
	{
		FString Contents;
		FFileHelper::LoadFileToString(Contents, *File);
		return Contents;
	}
	bool IsAsBefore() const
	{
		return Read().Equals(Text) && !Blueprint->GetOutermost()->IsDirty() && Blueprint->NewVariables.Num() == 1;
	}

	const FString File;
	UBlueprint* const Blueprint;

private:
	void SetReadOnly(bool bReadOnly) const
	{
		FPlatformFileManager::Get().GetPlatformFile().SetReadOnly(*File, bReadOnly);
	}

	FString Text;
};

const TCHAR* const AddSpeed = TEXT("{\"Variables\":{\"Speed\":{\"Type\":{\"Category\":\"int\"}}}}");

FString GetMember(const FString& Json, const TCHAR* Field)
{
	FString Text;
	KestrelJson::ParseObject(Json)->TryGetStringField(Field, Text);
	return Text;
}
}

DEFINE_SPEC(FKestrelBlueprintCheckoutSpec, "Kestrel.BlueprintCheckout", KestrelTest::Flags)
void FKestrelBlueprintCheckoutSpec::Define()
{
	using namespace BlueprintCheckoutTest;

	It("marks the file of a new Blueprint for add", [this]() {
		const FKestrelTestContent Content;
		const FLocking Locking;
		if (!Locking.IsThere())
		{
			return;
		}
		FUtils::SaveBlueprint(Content.CreateBlueprint(TEXT("BP_New")));
		TestTrue(TEXT("added"), FLocking::GetState(Content.GetFile(TEXT("BP_New")))->IsAdded());
	});

	It("checks a file out before the Blueprint is changed", [this]() {
		const FKestrelTestContent Content;
		const FCheckedIn CheckedIn(Content, TEXT("BP_Locked"));
		const FLocking Locking;
		if (!Locking.IsThere())
		{
			return;
		}
		FUtils::ModifyBlueprint(TEXT("BP_Locked"), TEXT("{\"Other\":1}"));
		TestFalse(TEXT("for nothing"), FLocking::GetState(CheckedIn.File)->IsCheckedOut());
		TestFalse(TEXT("modified"),
			GetMember(FUtils::ModifyBlueprint(TEXT("BP_Locked"), AddSpeed), TEXT("Success")).IsEmpty());
		TestTrue(TEXT("checked out"), FLocking::GetState(CheckedIn.File)->IsCheckedOut());
		TestTrue(TEXT("saved"), CheckedIn.Read().Contains(TEXT("Speed")));
	});

	It("changes nothing when the file may not be checked out, and says why", [this]() {
		const FKestrelTestContent Content;
		const FCheckedIn Refused(Content, TEXT("BP_Refused"));
		const FCheckedIn Taken(Content, TEXT("BP_Taken"));
		const FLocking Locking;
		if (!Locking.IsThere())
		{
			return;
		}
		const FString Answer = GetMember(FUtils::ModifyBlueprint(TEXT("BP_Refused"), AddSpeed), TEXT("Error"));
		TestTrue(Answer, Answer.StartsWith(TEXT("Blueprint 'BP_Refused' was not modified. Failed to check out ")));
		TestTrue(TEXT("refused"), Refused.IsAsBefore());
		TestTrue(TEXT("by whom"), GetMember(FUtils::ModifyBlueprint(TEXT("BP_Taken"), AddSpeed), TEXT("Error"))
									  .EndsWith(TEXT("it is checked out by ann.")));
		TestTrue(TEXT("taken"), Taken.IsAsBefore());

		Refused.Blueprint->MarkPackageDirty();
		const FString All = FUtils::SaveAndCompileAllDirtyBlueprints();
		TestTrue(All, All.Contains(TEXT("\"SaveError\":\"Failed to save Blueprint asset: BP_Refused\"")) &&
						  All.Contains(TEXT("\"Reason\":\"Failed to check out ")));
		TestTrue(TEXT("stays dirty"), Refused.Blueprint->GetOutermost()->IsDirty());
	});

	It("tells the service why a Blueprint was not saved", [this]() {
		const FKestrelTestContent Content;
		const FCheckedIn ReadOnly(Content, TEXT("BP_ReadOnly")); // nobody to ask for a checkout
		const auto Modify = [](const TCHAR* Updates) {
			return KestrelTest::UseTool(TEXT("modify_blueprint_variables"),
				{ TEXT("blueprint_name"), TEXT("BP_ReadOnly"), TEXT("updates"), Updates });
		};
		const FString Answer = Modify(AddSpeed);
		const FString Begin = TEXT("Error: Failed to save modified Blueprint. ");
		TestTrue(Answer, Answer.StartsWith(Begin) && Answer.Len() > Begin.Len());
		for (const TCHAR* Updates : { TEXT("{\"Variables\":{\"Spe\\u0000ed\":{\"Type\":{\"Category\":\"int\"}}}}"),
				 TEXT("{\"Variables\":{\"Speed\":{\"Description\":\"\\\\\\u0000\"}}}") })
		{
			KestrelTest::TestSameText(
				*this, Updates, Modify(Updates), TEXT("Error: The field 'updates' holds a NUL character"));
		}
		TestFalse(TEXT("an escaped backslash before it"),
			Modify(TEXT("{\"Variables\":{\"Speed\":{\"Description\":\"\\\\u0000\"}}}")).Contains(TEXT("NUL")));
	});
}
