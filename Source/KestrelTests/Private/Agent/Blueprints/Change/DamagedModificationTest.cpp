#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "EdGraphSchema_K2.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Editor/Transactor.h"
#include "Engine/Blueprint.h"
#include "Misc/FileHelper.h"
#include "Support/Dice.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"

namespace DamagedModificationTest
{
const TCHAR* const Names[] = { TEXT("Health"), TEXT("health"), TEXT("Speed"), TEXT("Measure"), TEXT("EventGraph"),
	TEXT("OnRep_Health"), TEXT("Owner"), TEXT("ReceiveTick"), TEXT("a.b"), TEXT(""), TEXT("None"), TEXT("x"),
	TEXT("Two words"), TEXT("execute"), TEXT("then"), TEXT("\u00E4\u4E2D"), TEXT("SKEL_BP_Target_C"),
	TEXT("ExecuteUbergraph_BP_Target"), TEXT("UserConstructionScript"), TEXT("Default__BP_Target_C") };
const TCHAR* const Categories[] = { TEXT("bool"), TEXT("byte"), TEXT("int"), TEXT("int64"), TEXT("real"), TEXT("name"),
	TEXT("string"), TEXT("text"), TEXT("struct"), TEXT("object"), TEXT("class"), TEXT("softobject"), TEXT("softclass"),
	TEXT("interface"), TEXT("enum"), TEXT("delegate"), TEXT("mcdelegate"), TEXT("exec"), TEXT("wildcard"),
	TEXT("fieldpath"), TEXT("float"), TEXT("") };
const TCHAR* const Objects[] = { TEXT("/Script/CoreUObject.Vector"), TEXT("/Script/Engine.Actor"),
	TEXT("/Script/Engine.Pawn"), TEXT("/Script/CoreUObject.Interface"), TEXT("/Script/Engine.ECollisionChannel"),
	TEXT("/Game/No.No"), TEXT("Vector"), TEXT("//"), TEXT("/Script/CoreUObject.Transform") };
const TCHAR* const Values[] = { TEXT("5"), TEXT("-1e300"), TEXT("0.5"), TEXT("true"), TEXT("null"), TEXT("\"\""),
	TEXT("\"text\""), TEXT("\"(X=1,Y=(\""), TEXT("[]"), TEXT("{}"), TEXT("[1,[2,{\"X\":3}]]"),
	TEXT("{\"X\":1,\"Y\":\"2\"}"), TEXT("[\"a\",\"b\\n\\\"\"]"), TEXT("9007199254740993") };
const TCHAR* const Kinds[] = { TEXT("IntProperty"), TEXT("StructProperty"), TEXT("ObjectProperty"),
	TEXT("EnumProperty"), TEXT("ArrayProperty"), TEXT("TextProperty"), TEXT("ClassProperty"), TEXT("Nothing") };
const TCHAR* const Classes[] = { TEXT("UK2Node_VariableGet"), TEXT("UK2Node_VariableSet"), TEXT("UK2Node_CallFunction"),
	TEXT("K2Node_Event") };
const TCHAR* const Pins[] = { TEXT("execute"), TEXT("then"), TEXT("self"), TEXT("InString"), TEXT("Health"),
	TEXT("Output_Get"), TEXT("ReturnValue"), TEXT("By"), TEXT("") };
const TCHAR* const Titles[] = { TEXT("Print String"), TEXT("Get Health"), TEXT("Set Health"), TEXT("Measure"),
	TEXT("Return Node"), TEXT("x"), TEXT("None") };
const TCHAR* const Functions[] = { TEXT("PrintString"), TEXT("MakeLiteralInt"), TEXT("IsValid"), TEXT("No") };
const TCHAR* const Containers[] = { TEXT("None"), TEXT("Array"), TEXT("Set"), TEXT("Map") };
const TCHAR* const Replications[] = { TEXT("Replicated"), TEXT("RepNotify"), TEXT("None") };

/** Writes documents that are right in most places, and of a wrong type in any. */
class FDocument
{
public:
	explicit FDocument(FKestrelDice& InDice)
		: Dice(InDice)
	{
	}

	FString Make()
	{
		return TEXT("{") + Member(TEXT("Variables"), List(TEXT("{"), TEXT("}"), [this]() { return Variable(); })) +
			   TEXT(",") + Member(TEXT("Functions"), List(TEXT("["), TEXT("]"), [this]() { return Function(); })) +
			   TEXT("}");
	}

private:
	/** One in thirty is of another type than it should be. */
	FString Member(const TCHAR* Key, const FString& Value)
	{
		return FString::Printf(TEXT("\"%s\":"), Key) + (Dice.Roll(30) == 0 ? FString(Dice.Pick(Values)) : Value);
	}

	template <int32 Num>
	FString Text(const TCHAR* const (&Choices)[Num])
	{
		return TEXT("\"") + FString(Dice.Pick(Choices)) + TEXT("\"");
	}

	template <typename MakeType>
	FString List(const TCHAR* Open, const TCHAR* Close, MakeType Make)
	{
		TArray<FString> Elements;
		for (int32 Count = Dice.Roll(4); Count > 0; --Count)
		{
			Elements.Add(Make());
		}
		return Open + FString::Join(Elements, TEXT(",")) + Close;
	}

	FString Boolean() { return Dice.Roll(2) ? TEXT("true") : TEXT("false"); }

	FString PinType()
	{
		return TEXT("{") + Member(TEXT("Category"), Text(Categories)) + TEXT(",") +
			   Member(TEXT("SubCategory"), Text({ TEXT("double"), TEXT("float"), TEXT("self"), TEXT("") })) +
			   TEXT(",") + Member(TEXT("SubCategoryObject"), Text(Objects)) + TEXT(",") +
			   Member(TEXT("Container"), Text(Containers)) + TEXT(",\"ValueType\":{") +
			   Member(TEXT("Category"), Text(Categories)) + TEXT("},\"Flags\":[\"Weak\",\"Reference\",7]}");
	}

	FString Variable()
	{
		TArray<FString> Members;
		const auto Add = [this, &Members](const TCHAR* Key, const FString& Value) {
			if (Dice.Roll(3) != 0)
			{
				Members.Add(Member(Key, Value));
			}
		};
		Add(TEXT("Type"), PinType());
		Add(TEXT("Value"), Dice.Pick(Values));
		Add(TEXT("Replication"), Text(Replications));
		Add(TEXT("Category"), Text(Names));
		Add(TEXT("Tooltip"), Text(Names));
		Add(TEXT("ExposeOnSpawn"), Boolean());
		Add(TEXT("Private"), Boolean());
		Add(TEXT("SaveGame"), Boolean());
		return Text(Names) + TEXT(":{") + FString::Join(Members, TEXT(",")) + TEXT("}");
	}

	FString Parameter()
	{
		return TEXT("{") + Member(TEXT("Name"), Text(Names)) + TEXT(",") + Member(TEXT("Type"), Text(Kinds)) +
			   TEXT(",") + Member(TEXT("StructType"), Text(Objects)) + TEXT(",") +
			   Member(TEXT("PropertyClass"), Text(Objects)) + TEXT(",") +
			   Member(TEXT("InnerType"), TEXT("{\"Type\":\"IntProperty\"}")) + TEXT("}");
	}

	FString Connection()
	{
		return TEXT("{") + Member(TEXT("Node"), Text(Titles)) + TEXT(",") + Member(TEXT("Pin"), Text(Pins)) + TEXT("}");
	}

	FString Pin()
	{
		return TEXT("{") + Member(TEXT("PinName"), Text(Pins)) + TEXT(",") + Member(TEXT("Value"), Text(Names)) +
			   TEXT(",") +
			   (Dice.Roll(4) == 0 ? Member(TEXT("Direction"), Text({ TEXT("Input"), TEXT("Output") })) + TEXT(",")
								  : FString()) +
			   Member(TEXT("Connections"), List(TEXT("["), TEXT("]"), [this]() { return Connection(); })) + TEXT("}");
	}

	FString Node()
	{
		return TEXT("{") + Member(TEXT("Class"), Text(Classes)) + TEXT(",") +
			   (Dice.Roll(2) ? Member(TEXT("Location"), TEXT("{\"X\":1e99,\"Y\":-7.5}")) + TEXT(",") : FString()) +
			   TEXT("\"Properties\":{") + Member(TEXT("VariableName"), Text(Names)) + TEXT(",") +
			   Member(TEXT("FunctionName"), Text(Functions)) + TEXT(",") + Member(TEXT("Comment"), Text(Names)) +
			   TEXT(",") + Member(TEXT("Pins"), List(TEXT("["), TEXT("]"), [this]() { return Pin(); })) + TEXT("}}");
	}

	FString Function()
	{
		return TEXT("{") + Member(TEXT("Name"), Text(Names)) + TEXT(",") +
			   Member(TEXT("InParams"), List(TEXT("["), TEXT("]"), [this]() { return Parameter(); })) + TEXT(",") +
			   Member(TEXT("OutParams"), List(TEXT("["), TEXT("]"), [this]() { return Parameter(); })) +
			   TEXT(",\"EdGraph\":{") + Member(TEXT("Nodes"), List(TEXT("["), TEXT("]"), [this]() { return Node(); })) +
			   TEXT("}}");
	}

	FKestrelDice& Dice;
};

FString Damage(FString Document, FKestrelDice& Dice)
{
	const int32 At = Dice.Roll(Document.Len());
	switch (Dice.Roll(12)) // most stay as they are
	{
	case 0:
		return Document.Left(At);
	case 1:
		Document[At] = TEXT("{}[]\",:\\0")[Dice.Roll(9)];
		return Document;
	case 2:
		return Document.Left(At) + FString::ChrN(2000, u'[') + Document.Mid(At);
	default:
		return Document;
	}
}

FString LoadFile(const FString& File)
{
	FString Text;
	FFileHelper::LoadFileToString(Text, *File);
	return Text;
}
}

DEFINE_SPEC(FKestrelDamagedModificationsSpec, "Kestrel.DamagedModifications", KestrelTest::Flags)
void FKestrelDamagedModificationsSpec::Define()
{
	using namespace DamagedModificationTest;

	It("end in an answer, and can be undone whatever they did", [this]() {
		const int32 NumRounds = KestrelTest::GetNumFuzzRounds();
		if (NumRounds == 0)
		{
			return;
		}
		AddExpectedError(TEXT("[Compiler]"), EAutomationExpectedErrorFlags::Contains, 0); // about what was described
		const FKestrelTestContent Content;
		UBlueprint* Blueprint = Content.CreateBlueprint(TEXT("BP_Target"), TEXT("Character"));
		FKestrelBlueprintUtils::ModifyBlueprint(
			TEXT("BP_Target"), TEXT("{\"Variables\":{\"Health\":{\"Type\":{\"Category\":\"int\"},\"Value\":100}},"
									"\"Functions\":[{\"Name\":\"Measure\"}]}"));
		const FString Whole = LoadFile(Content.GetFile(TEXT("BP_Target")));
		FKestrelDice Dice;
		for (int32 Round = 0; Round < NumRounds; ++Round)
		{
			GEditor->ResetTransaction(FText());
			const FString Document = Damage(FDocument(Dice).Make(), Dice);
			const FString Answer = FKestrelBlueprintUtils::ModifyBlueprint(TEXT("BP_Target"), Document);
			if (!Answer.StartsWith(TEXT("{")))
			{
				AddError(FString::Printf(TEXT("Round %d: %s"), Round, *Answer));
			}
			if (GEditor->Trans->GetQueueLength() == 0)
			{
				continue;
			}
			GEditor->UndoTransaction();
			FKestrelBlueprintUtils::CompileBlueprint(Blueprint);
			FKestrelBlueprintUtils::SaveBlueprint(Blueprint);
			if (!LoadFile(Content.GetFile(TEXT("BP_Target"))).Equals(Whole))
			{
				AddError(FString::Printf(TEXT("Round %d leaves something behind: %s"), Round, *Document));
				return;
			}
		}
		GEditor->ResetTransaction(FText());
	});
}
