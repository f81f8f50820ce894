#include "Widgets/DeclarativeSyntaxSupport.h"

#include "Brushes/SlateColorBrush.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/SNullWidget.h"

#include <gtest/gtest.h>
#include <utility>

namespace DeclarativeSyntaxTest
{

class SExample : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SExample)
		: _Number(3)
	{
	}
	SLATE_ARGUMENT(int32, Number)
	SLATE_ATTRIBUTE(FText, Caption)
	SLATE_EVENT(FPointerEventHandler, OnPointer)
	SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_NAMED_SLOT(FArguments, Header)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, int32 InRequired = 0)
	{
		Number = InArgs._Number;
		Required = InRequired;
		Caption = InArgs._Caption;
		Header = InArgs._Header.Widget;
		ChildSlot[InArgs._Content.Widget];
	}

	int32 Number = 0;
	int32 Required = 0;
	TAttribute<FText> Caption;
	TSharedPtr<SWidget> Header;
};

class FOwner : public TSharedFromThis<FOwner>
{
public:
	FText GetCaption() const { return Text; }
	FText GetCaptionNotConst() { return Text; }
	FText GetCaptionWith(int32 Value) const { return FText::FromString(FString::FromInt(Value)); }
	bool IsOn() const { return bIsOn; }
	EVisibility GetShown() const { return Shown; }

	FText Text = INVTEXT("from the owner");
	bool bIsOn = false;
	EVisibility Shown = EVisibility::Collapsed;
};

class SAsksForItselfTooEarly : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SAsksForItselfTooEarly) {}
	SLATE_END_ARGS()

	SAsksForItselfTooEarly() { AsShared(); }
	void Construct(const FArguments& InArgs) {}
};

// What the engine refuses to compile.
template <typename WidgetType>
concept CCanBeMadeByNew = requires
{
	new WidgetType();
};
template <typename WidgetType>
concept CCanBeMadeByMakeShared = requires
{
	MakeShared<WidgetType>();
};
template <typename MethodType>
concept CIsGetter = requires(SExample::FArguments& Arguments, FOwner* Owner, MethodType Method)
{
	Arguments.Caption(Owner, Method);
};
template <typename ValueType>
concept CIsCaption = requires(SExample::FArguments& Arguments, ValueType Value)
{
	Arguments.Caption(Value);
};

static_assert(!CCanBeMadeByNew<SExample> && !CCanBeMadeByMakeShared<SExample>);
static_assert(CCanBeMadeByMakeShared<FOwner>);
static_assert(CIsGetter<decltype(&FOwner::GetCaption)> && !CIsGetter<decltype(&FOwner::GetCaptionNotConst)>);
static_assert(!CIsGetter<decltype(&FOwner::IsOn)>);
static_assert(CIsCaption<FText> && !CIsCaption<FString> && !CIsCaption<const TCHAR*>);
static_assert(!std::is_default_constructible_v<FReply>);
static_assert(!std::is_enum_v<EVisibility> && !std::is_convertible_v<EVisibility, int>);
static_assert(!std::is_reference_v<decltype(std::declval<SVerticalBox&>().AddSlot())>);
static_assert(!std::is_copy_constructible_v<SVerticalBox::FSlot::FSlotArguments>);
static_assert(!std::is_convertible_v<UE::Slate::FDeprecateVector2DResult, float>);

TEST(DeclarativeSyntax, TakesArgumentsSlotsAndFurtherParameters)
{
	TSharedPtr<SExample> Example;
	TSharedPtr<SWidget> Inner;
	SAssignNew(Example, SExample, 7).Number(5)[SAssignNew(Inner, SImage)];
	EXPECT_EQ(Example->Number, 5);
	EXPECT_EQ(Example->Required, 7);
	EXPECT_EQ(Example->GetChildren()->GetChildAt(0).Get().GetTypeAsString(), FString("SImage"));
	EXPECT_EQ(Inner->GetParentWidget(), Example);
	EXPECT_TRUE(Example->Header == SNullWidget::NullWidget) << "a slot that is left empty is never null";
}

TEST(DeclarativeSyntax, AssignsTheVariableAfterItsChildrenExist)
{
	TSharedPtr<SExample> Outer;
	bool bWasSetBefore = true;
	const auto MakeChild = [&]() -> TSharedRef<SWidget> {
		bWasSetBefore = Outer.IsValid();
		return SNew(SImage);
	};
	SAssignNew(Outer, SExample)[MakeChild()];
	EXPECT_FALSE(bWasSetBefore);
}

TEST(DeclarativeSyntax, BindsGettersInAllForms)
{
	const TSharedRef<FOwner> Owner = MakeShared<FOwner>();
	const auto CaptionOf = [](const TSharedRef<SExample>& Example) { return Example->Caption.Get().ToString(); };
	EXPECT_EQ(CaptionOf(SNew(SExample).Caption(INVTEXT("value"))), FString("value"));
	EXPECT_EQ(CaptionOf(SNew(SExample).Caption(Owner, &FOwner::GetCaption)), FString("from the owner"));
	EXPECT_EQ(CaptionOf(SNew(SExample).Caption(&Owner.Get(), &FOwner::GetCaptionWith, 12)), FString("12"));
	EXPECT_EQ(CaptionOf(SNew(SExample).Caption_Raw(&Owner.Get(), &FOwner::GetCaption)), FString("from the owner"));
	EXPECT_EQ(CaptionOf(SNew(SExample).Caption_Lambda([] { return INVTEXT("lambda"); })), FString("lambda"));
	EXPECT_EQ(
		CaptionOf(SNew(SExample).Caption_Static([](int32 Value) { return FText::AsNumber(Value); }, 4)), FString("4"));
}

TEST(DeclarativeSyntax, KeepsTheLastAnswerOfADeadOwner)
{
	TSharedPtr<FOwner> Owner = MakeShared<FOwner>();
	const TSharedRef<SExample> Example = SNew(SExample).Caption(Owner.Get(), &FOwner::GetCaption);
	EXPECT_EQ(Example->Caption.Get().ToString(), FString("from the owner"));
	Owner.Reset();
	EXPECT_TRUE(Example->Caption.IsSet());
	EXPECT_EQ(Example->Caption.Get().ToString(), FString("from the owner"));
}

TEST(DeclarativeSyntax, CachesBoundStateUntilThePrepass)
{
	const TSharedRef<FOwner> Owner = MakeShared<FOwner>();
	// clang-format off
	const TSharedRef<SExample> Example = SNew(SExample)
		.IsEnabled(Owner, &FOwner::IsOn)
		.Visibility(Owner, &FOwner::GetShown);
	// clang-format on
	EXPECT_TRUE(Example->IsEnabled()) << "not asked yet";
	EXPECT_TRUE(Example->GetVisibility() == EVisibility::Visible);
	Example->SlatePrepass();
	EXPECT_TRUE(Example->GetVisibility() == EVisibility::Collapsed);
	EXPECT_TRUE(Example->IsEnabled()) << "nothing else of a collapsed widget is asked";

	Owner->Shown = EVisibility::Visible;
	Example->SlatePrepass();
	EXPECT_FALSE(Example->IsEnabled());
	Owner->bIsOn = true;
	EXPECT_FALSE(Example->IsEnabled()) << "a read does not ask";
	Example->SlatePrepass();
	EXPECT_TRUE(Example->IsEnabled());
}

TEST(DeclarativeSyntax, AddsAStoredSlotOnlyWhenItGoesOutOfScope)
{
	const TSharedRef<SVerticalBox> Box = SNew(SVerticalBox);
	{
		auto Stored = Box->AddSlot();
		Stored[SNew(SImage)];
		EXPECT_EQ(Box->NumSlots(), 0);
	}
	EXPECT_EQ(Box->NumSlots(), 1);
	SVerticalBox::FSlot* Kept = nullptr;
	Box->AddSlot().AutoHeight().Padding(2.0f).Expose(Kept)[SNew(SImage)];
	EXPECT_EQ(Box->NumSlots(), 2);
	EXPECT_EQ(&Box->GetSlot(1), Kept);
	EXPECT_TRUE(Kept->GetSizeRule() == ESlotSizeRule::Auto);
	EXPECT_TRUE(Box->GetSlot(0).GetSizeRule() == ESlotSizeRule::Stretch);
}

TEST(DeclarativeSyntax, LetsGoOfARemovedChild)
{
	const TSharedRef<SImage> Image = SNew(SImage);
	const TSharedRef<SVerticalBox> Box = SNew(SVerticalBox) + SVerticalBox::Slot()[Image];
	EXPECT_EQ(Box->RemoveSlot(SNew(SImage)), INDEX_NONE);
	EXPECT_EQ(Box->RemoveSlot(Image), 0);
	EXPECT_FALSE(Image->GetParentWidget().IsValid());
	EXPECT_EQ(Image.GetSharedReferenceCount(), 1);
}

TEST(DeclarativeSyntaxDeathTest, AssertsOnMisuse)
{
	EXPECT_DEATH(SNew(SAsksForItselfTooEarly), "AsShared");
	const TSharedRef<SExample> Example = SNew(SExample);
	EXPECT_DEATH(Example->GetChildren()->GetChildAt(1), "one child");
	const TSharedRef<SImage> Image = SNew(SImage);
	EXPECT_DEATH(Image->GetChildren()->GetChildAt(0), "no children");
}

}
