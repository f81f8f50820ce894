#include "DelegateTestTypes.h"
#include "UObject/Package.h"
#include "UObject/StrongObjectPtr.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>
#include <string>

namespace
{
class FDelegateTest : public testing::Test
{
protected:
	const TStrongObjectPtr<UTestBell> Bell{ NewObject<UTestBell>() };
	const TStrongObjectPtr<UTestListener> Listener{ NewObject<UTestListener>(GetTransientPackage(), TEXT("Listener")) };

	std::string Heard() const { return TCHAR_TO_UTF8(*Listener->Heard); }
	std::string Export(const TCHAR* Name) const
	{
		FString Text;
		UTestBell::StaticClass()->FindPropertyByName(Name)->ExportTextItem_InContainer(
			Text, Bell.Get(), nullptr, nullptr, PPF_None);
		return TCHAR_TO_UTF8(*Text);
	}
};
}

TEST_F(FDelegateTest, AFunctionIsCalledByItsNameWithTheParametersOfTheBroadcast)
{
	Bell->OnHeard.AddDynamic(Listener.Get(), &UTestListener::Listen);
	Bell->OnHeard.Broadcast(200, TEXT("owl"), FVector(1, 2, 3));
	EXPECT_EQ(Heard(), "200 owl X=1.000 Y=2.000 Z=3.000 ");

	FString Note;
	EXPECT_FALSE(Bell->CountPeals.IsBound());
	Bell->CountPeals.BindDynamic(Listener.Get(), &UTestListener::Count);
	EXPECT_EQ(Bell->CountPeals.Execute(4, Note), 8);
	EXPECT_TRUE(Note.Equals(TEXT("counted")));
	EXPECT_DEATH(FCountPeals().Execute(1, Note), "no object bound");

	Bell->OnCast.AddDynamic(Listener.Get(), &UTestListener::Cast);
	Bell->OnCast.Broadcast(EBellMetal::Iron);
	EXPECT_TRUE(Listener->Heard.EndsWith(TEXT("iron ")));
}

TEST_F(FDelegateTest, FunctionsComeInTheOrderInWhichTheyWereAddedAndEachOnce)
{
	const TStrongObjectPtr<UTestLoudListener> Loud(NewObject<UTestLoudListener>());
	Bell->OnRung.AddDynamic(Listener.Get(), &UTestListener::RingTwice);
	Bell->OnRung.AddDynamic(Listener.Get(), &UTestListener::Ring);
	Bell->OnRung.AddUniqueDynamic(Listener.Get(), &UTestListener::Ring);
	Bell->OnRung.AddDynamic(static_cast<UTestListener*>(Loud.Get()), &UTestListener::Ring);
	EXPECT_TRUE(Bell->OnRung.IsAlreadyBound(Listener.Get(), &UTestListener::Ring));
	Bell->OnRung.Broadcast();
	EXPECT_EQ(Heard(), "ring-ring ring ");
	EXPECT_TRUE(Loud->Heard.Equals(TEXT("RING "))) << "an override is called";

	// A second time is a mistake.
	const int32 Failures = FDebug::GetNumEnsureFailures();
	Bell->OnRung.AddDynamic(Listener.Get(), &UTestListener::Ring);
	EXPECT_EQ(FDebug::GetNumEnsureFailures(), Failures + 1);

	Bell->OnRung.RemoveDynamic(Listener.Get(), &UTestListener::RingTwice);
	Listener->Heard.Empty();
	Bell->OnRung.Broadcast();
	EXPECT_EQ(Heard(), "ring ");
	Bell->OnRung.RemoveAll(Listener.Get());
	EXPECT_FALSE(Bell->OnRung.IsAlreadyBound(Listener.Get(), &UTestListener::Ring));
	Bell->OnRung.Clear();
	EXPECT_FALSE(Bell->OnRung.IsBound());
}

TEST_F(FDelegateTest, AFunctionThatIsNotReflectedCannotBeBound)
{
	const int32 Failures = FDebug::GetNumEnsureFailures();
	Bell->OnRung.AddDynamic(Listener.Get(), &UTestListener::NotReflected);
	EXPECT_EQ(FDebug::GetNumEnsureFailures(), Failures + 1);
	Bell->OnRung.Broadcast();
	EXPECT_DEATH(DynamicDelegate::GetFunctionName(TEXT("Ring")), "does not look like a member function");
}

TEST_F(FDelegateTest, AnObjectIsNotKept)
{
	UTestListener* const Gone = NewObject<UTestListener>();
	const TWeakObjectPtr<UTestListener> Weak(Gone);
	Bell->OnRung.AddDynamic(Gone, &UTestListener::Ring);
	CollectGarbage(RF_NoFlags);
	EXPECT_FALSE(Weak.IsValid());
	EXPECT_TRUE(Bell->OnRung.IsBound()) << "the list is only cleaned up when it is changed";
	Bell->OnRung.Broadcast();
	EXPECT_EQ(Export(TEXT("OnRung")), "()");
}

TEST_F(FDelegateTest, ReflectionKnowsTheSignature)
{
	const FMulticastInlineDelegateProperty* OnHeard =
		FindFProperty<FMulticastInlineDelegateProperty>(UTestBell::StaticClass(), TEXT("OnHeard"));
	ASSERT_TRUE(OnHeard);
	EXPECT_TRUE(OnHeard->HasAnyPropertyFlags(CPF_BlueprintAssignable));
	EXPECT_TRUE(OnHeard->GetCPPType().Equals(TEXT("FOnHeard")));
	const UFunction* Signature = OnHeard->SignatureFunction;
	EXPECT_TRUE(Signature->GetPathName().Equals(TEXT("/Script/CoreUObjectTests.OnHeard__DelegateSignature")));
	EXPECT_TRUE(Signature->HasAllFunctionFlags(FUNC_Delegate | FUNC_MulticastDelegate | FUNC_Public));
	EXPECT_EQ(Signature->NumParms, 3);
	EXPECT_TRUE(
		Signature->FindPropertyByName(TEXT("Who"))->HasAllPropertyFlags(CPF_Parm | CPF_OutParm | CPF_ConstParm));
	EXPECT_EQ(Signature->GetReturnProperty(), nullptr);

	const FDelegateProperty* CountPeals =
		FindFProperty<FDelegateProperty>(UTestBell::StaticClass(), TEXT("CountPeals"));
	ASSERT_TRUE(CountPeals && CountPeals->SignatureFunction->GetReturnProperty());
	EXPECT_FALSE(CountPeals->SignatureFunction->HasAnyFunctionFlags(FUNC_MulticastDelegate));

	const FMulticastDelegateProperty* OnCast =
		FindFProperty<FMulticastDelegateProperty>(UTestBell::StaticClass(), TEXT("OnCast"));
	EXPECT_TRUE(OnCast->SignatureFunction->GetPathName().Equals(
		TEXT("/Script/CoreUObjectTests.TestBell:OnCast__DelegateSignature")));
	const FByteProperty* Metal = FindFProperty<FByteProperty>(OnCast->SignatureFunction, TEXT("Metal"));
	ASSERT_TRUE(Metal && Metal->Enum);
	EXPECT_EQ(Metal->Enum, StaticEnum<EBellMetal::Type>());
	EXPECT_TRUE(Metal->Enum->GetName().Equals(TEXT("EBellMetal")));
	EXPECT_TRUE(Metal->Enum->GetNameStringByValue(EBellMetal::Iron).Equals(TEXT("Iron")));
	EXPECT_EQ(Metal->Enum->GetNameByValue(EBellMetal::Iron), FName(TEXT("EBellMetal::Iron")));
}

TEST_F(FDelegateTest, IsWrittenAsTextAndReadBack)
{
	EXPECT_EQ(Export(TEXT("CountPeals")), "(null).None");
	FProperty* const Property = UTestBell::StaticClass()->FindPropertyByName(TEXT("OnRung"));
	const TCHAR* const Text = TEXT("(/Engine/Transient.Listener.Ring,/Engine/Transient.Listener.RingTwice)");
	ASSERT_TRUE(Property->ImportText_InContainer(Text, Bell.Get(), Bell.Get(), PPF_None));
	Bell->OnRung.Broadcast();
	EXPECT_EQ(Heard(), "ring ring-ring ");
	EXPECT_EQ(Export(TEXT("OnRung")), std::string(TCHAR_TO_UTF8(Text)));
	EXPECT_FALSE(Property->ImportText_InContainer(
		TEXT("(/Engine/Transient.Listener.NotReflected)"), Bell.Get(), Bell.Get(), PPF_None));
	EXPECT_EQ(Export(TEXT("OnRung")), std::string(TCHAR_TO_UTF8(Text)));
}

TEST(MathStructs, AreReflectedAndHaveTheEnginesText)
{
	struct FCase
	{
		UScriptStruct* Struct;
		const char* Path;
		const char* Text;
	};
	const FCase Cases[] = {
		{ TBaseStructure<FVector>::Get(), "/Script/CoreUObject.Vector", "(X=1.000000,Y=-2.500000,Z=0.000000)" },
		{ TBaseStructure<FRotator>::Get(), "/Script/CoreUObject.Rotator",
			"(Pitch=0.000000,Yaw=90.000000,Roll=0.000000)" },
		{ TBaseStructure<FQuat>::Get(), "/Script/CoreUObject.Quat", "(X=0.000000,Y=0.000000,Z=0.500000,W=1.000000)" },
		{ TBaseStructure<FIntPoint>::Get(), "/Script/CoreUObject.IntPoint", "(X=3,Y=-4)" },
		{ TBaseStructure<FTransform>::Get(), "/Script/CoreUObject.Transform",
			"(Rotation=(X=0.000000,Y=0.000000,Z=0.000000,W=1.000000),Translation=(X=1.000000,Y=2.000000,Z=3.000000),"
			"Scale3D=(X=1.000000,Y=1.000000,Z=1.000000))" },
	};
	for (const FCase& Case : Cases)
	{
		EXPECT_STREQ(TCHAR_TO_UTF8(*Case.Struct->GetPathName()), Case.Path);
		alignas(16) uint8 Value[sizeof(FTransform)];
		ASSERT_LE(Case.Struct->GetStructureSize(), static_cast<int32>(sizeof(Value)));
		Case.Struct->InitializeStruct(Value);
		EXPECT_TRUE(Case.Struct->ImportText(
			*FString(UTF8_TO_TCHAR(Case.Text)), Value, nullptr, PPF_None, nullptr, Case.Struct->GetName()));
		FString Text;
		Case.Struct->ExportText(Text, Value, Value, nullptr, PPF_None, nullptr);
		EXPECT_STREQ(TCHAR_TO_UTF8(*Text), Case.Text);
		Case.Struct->DestroyStruct(Value);
	}
	EXPECT_EQ(TBaseStructure<FTransform>::Get()->GetStructureSize(), static_cast<int32>(sizeof(FTransform)));
}
