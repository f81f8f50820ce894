#include "PackageTestTypes.h"
#include "Templates/Casts.h"
#include "UObject/UnrealType.h"
#include "Utf8.h"

#include <gtest/gtest.h>

namespace
{
FString ListFunctions(EFieldIterationFlags Flags)
{
	FString Names;
	for (TFieldIterator<UFunction> It(UTestRecipe::StaticClass(), Flags); It; ++It)
	{
		Names += It->GetName() + TEXT(" ");
	}
	return Names;
}
}

TEST(Interface, IsFoundInTheClassesThatImplementIt)
{
	UTestRecipe* const Recipe = NewObject<UTestRecipe>();
	const UTestNode* const Node = NewObject<UTestNode>();
	EXPECT_TRUE(Recipe->Implements<UTestTalker>());
	EXPECT_TRUE(Recipe->GetClass()->ImplementsInterface(UInterface::StaticClass()));
	EXPECT_FALSE(Recipe->Implements<UTestSilent>());
	EXPECT_FALSE(Node->Implements<UTestTalker>());
	EXPECT_TRUE(UTestTalker::StaticClass()->HasAllClassFlags(CLASS_Interface | CLASS_Abstract));

	ITestTalker* const Talker = Cast<ITestTalker>(Recipe);
	ASSERT_NE(Talker, nullptr);
	EXPECT_EQ(Talker->GetAge(), 7);
	EXPECT_EQ(Talker->_getUObject(), Recipe);
	EXPECT_EQ(Cast<ITestTalker>(static_cast<const UObject*>(Node)->GetClass()), nullptr);
}

TEST(Interface, CallsWhoeverImplementsAnEvent)
{
	UTestRecipe* const Recipe = NewObject<UTestRecipe>();
	EXPECT_EQ(ToUtf8(ITestTalker::Execute_Answer(Recipe, TEXT("Why"))), "Why?");
	ITestTalker::Execute_Overhear(Recipe, 3); // nobody has a body for it
	EXPECT_DEATH(Cast<ITestTalker>(Recipe)->Answer(TEXT("Why")), "Execute_Answer");
	EXPECT_DEATH(ITestTalker::Execute_Answer(NewObject<UTestNode>(), TEXT("Why")), "implements");
}

TEST(Interface, IsWalkedOnlyWhenAskedFor)
{
	EXPECT_EQ(ToUtf8(ListFunctions(EFieldIterationFlags::Default)), "");
	EXPECT_EQ(ToUtf8(ListFunctions(EFieldIterationFlags::IncludeAll)), "Answer Overhear ");
	EXPECT_NE(UTestRecipe::StaticClass()->FindFunctionByName(TEXT("answer")), nullptr);
	EXPECT_EQ(UTestRecipe::StaticClass()->FindFunctionByName(TEXT("Answer"), EIncludeSuperFlag::ExcludeSuper), nullptr);
}

TEST(Interface, IsAPropertyOfItsOwn)
{
	const FInterfaceProperty* const Property =
		FindFProperty<FInterfaceProperty>(UTestNode::StaticClass(), TEXT("Talker"));
	ASSERT_NE(Property, nullptr);
	FString Extended;
	EXPECT_EQ(ToUtf8(Property->GetCPPType(&Extended) + Extended), "TScriptInterface<ITestTalker>");
	UTestNode* const Node = NewObject<UTestNode>();
	UTestRecipe* const Recipe = NewObject<UTestRecipe>();
	EXPECT_NE(Property->ImportText_InContainer(*Recipe->GetPathName(), Node, nullptr, PPF_None), nullptr);
	EXPECT_EQ(Node->Talker.GetObject(), Recipe);
	EXPECT_EQ(Node->Talker->GetAge(), 7);
	EXPECT_EQ(Property->ImportText_InContainer(*Node->GetPathName(), Node, nullptr, PPF_None), nullptr);
	CollectGarbage(RF_NoFlags);
}
