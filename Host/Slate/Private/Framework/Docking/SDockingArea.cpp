#include "Framework/Docking/SDockingArea.h"

#include "Framework/Docking/SDockingTabStack.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/Layout/SSplitter.h"

namespace DockingArea
{
using FStacks = TArray<TSharedRef<SDockingTabStack>>;

static bool IsStack(const TSharedRef<SWidget>& Widget)
{
	return Widget->GetType() == FName("SDockingTabStack");
}

static void CollectStacks(SSplitter& Splitter, FStacks& OutStacks)
{
	FChildren& Children = *Splitter.GetChildren();
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		const TSharedRef<SWidget> Child = Children.GetChildAt(Index);
		if (IsStack(Child))
		{
			OutStacks.Add(StaticCastSharedRef<SDockingTabStack>(Child));
		}
		else
		{
			CollectStacks(*StaticCastSharedRef<SSplitter>(Child), OutStacks);
		}
	}
}

static bool HasTabs(SSplitter& Splitter)
{
	FStacks Stacks;
	CollectStacks(Splitter, Stacks);
	return Stacks.ContainsByPredicate(
		[](const TSharedRef<SDockingTabStack>& Stack) { return Stack->GetTabs().Num() > 0; });
}

static TSharedRef<SSplitter> NewSplitter(EOrientation Orientation)
{
	const TSharedRef<SSplitter> Splitter = SNew(SSplitter).Orientation(Orientation);
	const TWeakPtr<SSplitter> Weak = Splitter;
	Splitter->SetVisibility(MakeAttributeLambda([Weak] {
		const TSharedPtr<SSplitter> Pinned = Weak.Pin();
		return Pinned.IsValid() && HasTabs(*Pinned) ? EVisibility::Visible : EVisibility::Collapsed;
	}));
	return Splitter;
}

static int32 FindSlot(SSplitter& Splitter, const SWidget& Child)
{
	FChildren& Children = *Splitter.GetChildren();
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		if (&Children.GetChildAt(Index).Get() == &Child)
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

static TSharedRef<FTabManager::FStack> PersistStack(const SDockingTabStack& Stack, float Share)
{
	const TSharedRef<FTabManager::FStack> Layout = FTabManager::NewStack();
	Layout->SetSizeCoefficient(Share);
	for (const FName Place : Stack.GetPlaces())
	{
		const bool bOpen = Stack.GetTabs().ContainsByPredicate(
			[Place](const TSharedRef<SDockTab>& Tab) { return Tab->GetLayoutIdentifier().TabType == Place; });
		Layout->AddTab(Place, bOpen ? ETabState::OpenedTab : ETabState::ClosedTab);
	}
	if (const TSharedPtr<SDockTab> Foreground = Stack.GetForegroundTab())
	{
		Layout->SetForegroundTab(Foreground->GetLayoutIdentifier());
	}
	return Layout;
}

static void PersistChildren(SSplitter& Splitter, FTabManager::FSplitter& Layout)
{
	FChildren& Children = *Splitter.GetChildren();
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		const TSharedRef<SWidget> Child = Children.GetChildAt(Index);
		const float Share = Splitter.SlotAt(Index).GetSizeValue();
		if (IsStack(Child))
		{
			Layout.Split(PersistStack(*StaticCastSharedRef<SDockingTabStack>(Child), Share));
			continue;
		}
		SSplitter& Inner = *StaticCastSharedRef<SSplitter>(Child);
		const TSharedRef<FTabManager::FSplitter> InnerLayout = FTabManager::NewSplitter();
		InnerLayout->SetOrientation(Inner.GetOrientation())->SetSizeCoefficient(Share);
		PersistChildren(Inner, *InnerLayout);
		Layout.Split(InnerLayout);
	}
}
}

void SDockingArea::Construct(const FArguments& InArgs)
{
	RestoreFrom(*FTabManager::NewPrimaryArea()->Split(FTabManager::NewStack()));
}

void SDockingArea::RestoreFrom(const FTabManager::FArea& Layout)
{
	checkf(!Root.IsValid() || GetTabs().IsEmpty(), TEXT("Open tabs would be lost with their stacks"));
	Root = MakeSplitter(Layout);
	if (GetStacks().IsEmpty())
	{
		Root->AddSlot()[SNew(SDockingTabStack, SharedThis(this))];
	}
	ChildSlot[Root.ToSharedRef()];
}

TSharedRef<SDockingTabStack> SDockingArea::MakeStack(const FTabManager::FStack& Layout)
{
	const TSharedRef<SDockingTabStack> Stack = SNew(SDockingTabStack, SharedThis(this));
	for (const FTabManager::FTab& Tab : Layout.GetTabs())
	{
		Stack->AddPlace(Tab.TabId.TabType);
	}
	return Stack;
}

TSharedRef<SSplitter> SDockingArea::MakeSplitter(const FTabManager::FSplitter& Layout)
{
	const TSharedRef<SSplitter> Splitter = DockingArea::NewSplitter(Layout.GetOrientation());
	for (const TSharedRef<FTabManager::FLayoutNode>& Node : Layout.GetChildNodes())
	{
		const TSharedRef<SWidget> Child = Node->AsStack().IsValid()
											  ? TSharedRef<SWidget>(MakeStack(*Node->AsStack()))
											  : TSharedRef<SWidget>(MakeSplitter(*Node->AsSplitter()));
		Splitter->AddSlot().Value(Node->GetSizeCoefficient())[Child];
	}
	return Splitter;
}

TSharedRef<FTabManager::FArea> SDockingArea::Persist() const
{
	const TSharedRef<FTabManager::FArea> Layout = FTabManager::NewPrimaryArea();
	Layout->SetOrientation(Root->GetOrientation());
	DockingArea::PersistChildren(*Root, *Layout);
	return Layout;
}

TArray<TSharedRef<SDockingTabStack>> SDockingArea::GetStacks() const
{
	TArray<TSharedRef<SDockingTabStack>> Stacks;
	DockingArea::CollectStacks(*Root, Stacks);
	return Stacks;
}

TSharedRef<SDockingTabStack> SDockingArea::FindStackFor(FName TabType) const
{
	const TArray<TSharedRef<SDockingTabStack>> Stacks = GetStacks();
	const TSharedRef<SDockingTabStack>* const Found = Stacks.FindByPredicate(
		[TabType](const TSharedRef<SDockingTabStack>& Stack) { return Stack->GetPlaces().Contains(TabType); });
	return Found ? *Found : Stacks[0];
}

void SDockingArea::AddTab(const TSharedRef<SDockTab>& Tab, bool bBringToFront)
{
	FindStackFor(Tab->GetLayoutIdentifier().TabType)->AddTab(Tab, bBringToFront);
}

void SDockingArea::AddTabBeside(const TSharedRef<SDockTab>& Tab, FName OtherTab, bool bBringToFront)
{
	FindStackFor(OtherTab)->AddTab(Tab, bBringToFront);
}

void SDockingArea::MoveTab(
	const TSharedRef<SDockTab>& Tab, const TSharedRef<SDockingTabStack>& Stack, EDockingSide Side)
{
	const TSharedPtr<SDockingTabStack> From = Tab->GetParentDockTabStack();
	// There is nothing left that it could stand beside.
	const bool bIsAlone = From == Stack && Stack->GetTabs().Num() == 1;
	if (!From.IsValid() || bIsAlone || (From == Stack && Side == EDockingSide::Into))
	{
		return;
	}
	const TSharedRef<SDockingTabStack> To = Side == EDockingSide::Into ? Stack : AddStackBeside(Stack, Side);
	From->RemoveTab(Tab);
	From->RemovePlace(Tab->GetLayoutIdentifier().TabType);
	To->AddTab(Tab, true);
	RemoveUnusedStacks();
	Tab->ActivateInParent(ETabActivationCause::UserClickedOnTab);
}

TSharedRef<SDockingTabStack> SDockingArea::AddStackBeside(const TSharedRef<SDockingTabStack>& Stack, EDockingSide Side)
{
	const bool bHorizontal = Side == EDockingSide::Left || Side == EDockingSide::Right;
	const bool bBefore = Side == EDockingSide::Left || Side == EDockingSide::Above;
	const EOrientation Orientation = bHorizontal ? Orient_Horizontal : Orient_Vertical;
	const TSharedRef<SDockingTabStack> NewStack = SNew(SDockingTabStack, SharedThis(this));
	TSharedRef<SSplitter> Parent = StaticCastSharedRef<SSplitter>(Stack->GetParentWidget().ToSharedRef());
	int32 Index = DockingArea::FindSlot(*Parent, *Stack);
	if (Parent->GetOrientation() != Orientation)
	{
		const TSharedRef<SSplitter> Inner = DockingArea::NewSplitter(Orientation);
		Parent->SlotAt(Index).AttachWidget(Inner);
		Inner->AddSlot()[Stack];
		Parent = Inner;
		Index = 0;
	}
	// The two share what the one had.
	const float Share = Parent->SlotAt(Index).GetSizeValue() / 2.0f;
	Parent->SlotAt(Index).SetSizeValue(Share);
	Parent->AddSlot(bBefore ? Index : Index + 1).Value(Share)[NewStack];
	return NewStack;
}

void SDockingArea::RemoveUnusedStacks()
{
	TArray<TSharedRef<SDockingTabStack>> Stacks = GetStacks();
	for (const TSharedRef<SDockingTabStack>& Stack : Stacks)
	{
		const TSharedRef<SSplitter> Parent = StaticCastSharedRef<SSplitter>(Stack->GetParentWidget().ToSharedRef());
		if (Stack->GetTabs().IsEmpty() && Stack->GetPlaces().IsEmpty() && GetStacks().Num() > 1)
		{
			Parent->RemoveAt(DockingArea::FindSlot(*Parent, *Stack));
		}
	}
}

TArray<TSharedRef<SDockTab>> SDockingArea::GetTabs() const
{
	TArray<TSharedRef<SDockTab>> Tabs;
	for (const TSharedRef<SDockingTabStack>& Stack : GetStacks())
	{
		Tabs.Append(Stack->GetTabs());
	}
	return Tabs;
}
