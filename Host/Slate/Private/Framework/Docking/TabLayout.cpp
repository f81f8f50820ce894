#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Framework/Docking/LayoutExtender.h"
#include "Framework/Docking/TabManager.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"

namespace TabLayout
{
/** A file that was made by hand, or damaged, must not cost the stack. */
constexpr int32 MaxDepth = 32;

static TSharedRef<FJsonObject> ToJson(FTabManager::FLayoutNode& Node)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetNumberField(TEXT("SizeCoefficient"), Node.GetSizeCoefficient());
	TArray<TSharedPtr<FJsonValue>> Values;
	if (const TSharedPtr<FTabManager::FStack> Stack = Node.AsStack())
	{
		Object->SetStringField(TEXT("Type"), TEXT("Stack"));
		Object->SetStringField(TEXT("ForegroundTab"), Stack->GetForegroundTabId().ToString());
		for (const FTabManager::FTab& Tab : Stack->GetTabs())
		{
			const TSharedRef<FJsonObject> TabObject = MakeShared<FJsonObject>();
			TabObject->SetStringField(TEXT("TabId"), Tab.TabId.ToString());
			TabObject->SetStringField(
				TEXT("TabState"), Tab.TabState == ETabState::OpenedTab ? TEXT("OpenedTab") : TEXT("ClosedTab"));
			Values.Add(MakeShared<FJsonValueObject>(TabObject));
		}
		Object->SetArrayField(TEXT("Tabs"), Values);
		return Object;
	}
	FTabManager::FSplitter& Splitter = *Node.AsSplitter();
	Object->SetStringField(TEXT("Type"), TEXT("Splitter"));
	Object->SetStringField(TEXT("Orientation"),
		Splitter.GetOrientation() == Orient_Horizontal ? TEXT("Orient_Horizontal") : TEXT("Orient_Vertical"));
	for (const TSharedRef<FTabManager::FLayoutNode>& Child : Splitter.GetChildNodes())
	{
		Values.Add(MakeShared<FJsonValueObject>(ToJson(*Child)));
	}
	Object->SetArrayField(TEXT("Nodes"), Values);
	return Object;
}

static float ReadCoefficient(const FJsonObject& Object)
{
	constexpr double Least = 0.01;
	constexpr double Most = 100.0;
	double Coefficient = 1.0;
	Object.TryGetNumberField(TEXT("SizeCoefficient"), Coefficient);
	return static_cast<float>(FMath::Clamp(Coefficient, Least, Most));
}

static TSharedRef<FTabManager::FStack> ReadStack(const FJsonObject& Object)
{
	const TSharedRef<FTabManager::FStack> Stack = FTabManager::NewStack();
	Stack->SetSizeCoefficient(ReadCoefficient(Object));
	FString Foreground;
	Object.TryGetStringField(TEXT("ForegroundTab"), Foreground);
	Stack->SetForegroundTab(FTabId(FName(*Foreground)));
	const TArray<TSharedPtr<FJsonValue>>* Tabs = nullptr;
	Object.TryGetArrayField(TEXT("Tabs"), Tabs);
	for (int32 Index = 0; Tabs && Index < Tabs->Num(); ++Index)
	{
		const TSharedPtr<FJsonObject>* Tab = nullptr;
		FString Id;
		FString State;
		if ((*Tabs)[Index]->TryGetObject(Tab) && (*Tab)->TryGetStringField(TEXT("TabId"), Id) && Id.Len() < NAME_SIZE)
		{
			(*Tab)->TryGetStringField(TEXT("TabState"), State);
			Stack->AddTab(FName(*Id), State.Equals(TEXT("OpenedTab")) ? ETabState::OpenedTab : ETabState::ClosedTab);
		}
	}
	return Stack;
}

static void ReadChildren(const FJsonObject& Object, FTabManager::FSplitter& Splitter, int32 Depth)
{
	FString Orientation;
	Object.TryGetStringField(TEXT("Orientation"), Orientation);
	Splitter.SetOrientation(Orientation.Equals(TEXT("Orient_Vertical")) ? Orient_Vertical : Orient_Horizontal);
	const TArray<TSharedPtr<FJsonValue>>* Nodes = nullptr;
	Object.TryGetArrayField(TEXT("Nodes"), Nodes);
	for (int32 Index = 0; Nodes && Index < Nodes->Num() && Depth < MaxDepth; ++Index)
	{
		const TSharedPtr<FJsonObject>* Node = nullptr;
		FString Type;
		if (!(*Nodes)[Index]->TryGetObject(Node) || !(*Node)->TryGetStringField(TEXT("Type"), Type))
		{
			continue;
		}
		if (Type.Equals(TEXT("Stack")))
		{
			Splitter.Split(ReadStack(**Node));
			continue;
		}
		const TSharedRef<FTabManager::FSplitter> Inner = FTabManager::NewSplitter();
		Inner->SetSizeCoefficient(ReadCoefficient(**Node));
		ReadChildren(**Node, *Inner, Depth + 1);
		Splitter.Split(Inner);
	}
}

static bool HasTab(FTabManager::FLayoutNode& Node, const FTabId& Id)
{
	if (const TSharedPtr<FTabManager::FStack> Stack = Node.AsStack())
	{
		return Stack->GetTabs().ContainsByPredicate([&Id](const FTabManager::FTab& Tab) { return Tab.TabId == Id; });
	}
	return Node.AsSplitter()->GetChildNodes().ContainsByPredicate(
		[&Id](const TSharedRef<FTabManager::FLayoutNode>& Child) { return HasTab(*Child, Id); });
}

/** @param Index  of the stack among the children */
static void Extend(FTabManager::FSplitter& Parent, int32 Index, const FLayoutExtender::FExtension& Extension)
{
	const TSharedRef<FTabManager::FStack> Stack = Parent.GetChildNodes()[Index]->AsStack().ToSharedRef();
	const int32 Place = Stack->GetTabs().IndexOfByPredicate(
		[&Extension](const FTabManager::FTab& Tab) { return Tab.TabId == Extension.PredicateTabId; });
	const bool bBefore = Extension.Position == ELayoutExtensionPosition::Before;
	if (bBefore || Extension.Position == ELayoutExtensionPosition::After)
	{
		Stack->AddTab(Extension.TabToAdd, bBefore ? Place : Place + 1);
		return;
	}
	const TSharedRef<FTabManager::FStack> NewStack = FTabManager::NewStack()->AddTab(Extension.TabToAdd, 0);
	const int32 Offset = Extension.Position == ELayoutExtensionPosition::Above ? 0 : 1;
	if (Parent.GetOrientation() == Orient_Vertical)
	{
		Parent.InsertChild(Index + Offset, NewStack);
		return;
	}
	const TSharedRef<FTabManager::FSplitter> Inner = FTabManager::NewSplitter();
	Inner->SetOrientation(Orient_Vertical)->SetSizeCoefficient(Stack->GetSizeCoefficient());
	Parent.ReplaceChild(Index, Inner);
	Inner->Split(Stack);
	Inner->InsertChild(Offset, NewStack);
}

/** False where there is no place for the tab beside which the other wants to be. */
static bool ExtendBelow(FTabManager::FSplitter& Splitter, const FLayoutExtender::FExtension& Extension)
{
	for (int32 Index = 0; Index < Splitter.GetChildNodes().Num(); ++Index)
	{
		const TSharedRef<FTabManager::FLayoutNode> Child = Splitter.GetChildNodes()[Index];
		if (!HasTab(*Child, Extension.PredicateTabId))
		{
			continue;
		}
		if (!Child->AsStack().IsValid())
		{
			return ExtendBelow(*Child->AsSplitter(), Extension);
		}
		Extend(Splitter, Index, Extension);
		return true;
	}
	return false;
}
}

TSharedRef<FTabManager::FStack> FTabManager::FStack::AddTab(const FName TabType, ETabState::Type InTabState)
{
	return AddTab(FTab(FTabId(TabType), InTabState), Tabs.Num());
}

TSharedRef<FTabManager::FStack> FTabManager::FStack::AddTab(const FTab& Tab, int32 Index)
{
	Tabs.Insert(Tab, Index);
	return AsStack().ToSharedRef();
}

TSharedRef<FTabManager::FStack> FTabManager::FStack::SetForegroundTab(const FTabId& TabId)
{
	ForegroundTabId = TabId;
	return AsStack().ToSharedRef();
}

TSharedRef<FTabManager::FStack> FTabManager::FStack::SetSizeCoefficient(const float InSizeCoefficient)
{
	SizeCoefficient = InSizeCoefficient;
	return AsStack().ToSharedRef();
}

TSharedRef<FTabManager::FSplitter> FTabManager::FSplitter::SetSizeCoefficient(const float InSizeCoefficient)
{
	SizeCoefficient = InSizeCoefficient;
	return AsSplitter().ToSharedRef();
}

TSharedRef<FTabManager::FSplitter> FTabManager::FSplitter::Split(TSharedRef<FLayoutNode> InNode)
{
	ChildNodes.Add(InNode);
	return AsSplitter().ToSharedRef();
}

TSharedRef<FTabManager::FSplitter> FTabManager::FSplitter::SetOrientation(const EOrientation InOrientation)
{
	Orientation = InOrientation;
	return AsSplitter().ToSharedRef();
}

TSharedRef<FTabManager::FArea> FTabManager::FArea::Split(TSharedRef<FLayoutNode> InNode)
{
	return StaticCastSharedRef<FArea>(FSplitter::Split(InNode));
}

TSharedRef<FTabManager::FArea> FTabManager::FArea::SetOrientation(const EOrientation InOrientation)
{
	return StaticCastSharedRef<FArea>(FSplitter::SetOrientation(InOrientation));
}

TSharedRef<FTabManager::FLayout> FTabManager::NewLayout(const FName LayoutName)
{
	return MakeShared<FLayout>(LayoutName);
}

TSharedRef<FTabManager::FArea> FTabManager::NewPrimaryArea()
{
	return MakeShared<FArea>();
}

TSharedRef<FTabManager::FSplitter> FTabManager::NewSplitter()
{
	return MakeShared<FSplitter>();
}

TSharedRef<FTabManager::FStack> FTabManager::NewStack()
{
	return MakeShared<FStack>();
}

TSharedRef<FTabManager::FLayout> FTabManager::FLayout::AddArea(const TSharedRef<FArea>& InArea)
{
	checkf(!PrimaryArea.IsValid(), TEXT("There is one window here"));
	PrimaryArea = InArea;
	return AsShared();
}

void FTabManager::FLayout::ProcessExtensions(const FLayoutExtender& Extender)
{
	for (const FLayoutExtender::FExtension& Extension : Extender.GetExtensions())
	{
		if (PrimaryArea.IsValid() && !TabLayout::HasTab(*PrimaryArea, Extension.TabToAdd.TabId))
		{
			TabLayout::ExtendBelow(*PrimaryArea, Extension);
		}
	}
}

FString FTabManager::FLayout::ToString() const
{
	FString Text;
	const TSharedRef<FJsonObject> Object = TabLayout::ToJson(*PrimaryArea);
	Object->SetStringField(TEXT("Name"), LayoutName.ToString());
	FJsonSerializer::Serialize(Object, TJsonWriterFactory<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>::Create(&Text));
	return Text;
}

TSharedPtr<FTabManager::FLayout> FTabManager::FLayout::NewFromString(const FString& LayoutAsText)
{
	TSharedPtr<FJsonObject> Object;
	FString Name;
	const bool bIsLayout = FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(LayoutAsText), Object) &&
						   Object.IsValid() && Object->TryGetStringField(TEXT("Name"), Name);
	if (!bIsLayout || Name.Len() >= NAME_SIZE)
	{
		return nullptr;
	}
	const TSharedRef<FArea> Area = NewPrimaryArea();
	TabLayout::ReadChildren(*Object, *Area, 0);
	return NewLayout(FName(*Name))->AddArea(Area);
}
