#include "ToolMenus.h"

#include "Framework/Application/SlateApplication.h"
#include "Misc/CoreDelegates.h"
#include "Modules/ModuleManager.h"
#include "SToolMenuWidget.h"

DEFINE_LOG_CATEGORY_STATIC(LogToolMenus, Log, All);

UToolMenus* UToolMenus::Singleton = nullptr;

namespace ToolMenus
{

static bool bIsEngineUp = false;

static FSimpleMulticastDelegate& StartupCallbacks()
{
	static FSimpleMulticastDelegate Callbacks;
	return Callbacks;
}

static void OnPostEngineInit()
{
	bIsEngineUp = true;
	const FSimpleMulticastDelegate Callbacks = StartupCallbacks();
	StartupCallbacks().Clear();
	if (UToolMenus::IsToolMenuUIEnabled())
	{
		Callbacks.Broadcast();
	}
}

// From the start of the process: the module itself may be loaded after the event.
static const FDelegateHandle PostEngineInitHandle =
	FCoreDelegates::GetOnPostEngineInit().AddStatic(&ToolMenus::OnPostEngineInit);

/** Puts an element where its position says, among those that are there already. */
template <typename ElementType>
static void InsertSorted(TArray<ElementType>& Elements, const ElementType& Element)
{
	const FToolMenuInsert& Insert = Element.InsertPosition;
	const int32 Neighbour =
		Elements.IndexOfByPredicate([&Insert](const ElementType& Other) { return Other.Name == Insert.Name; });
	int32 Index = Elements.Num();
	if (Insert.Position == EToolMenuInsertType::First)
	{
		Index = 0;
	}
	else if (Insert.IsBeforeOrAfter() && Neighbour != INDEX_NONE)
	{
		Index = Insert.Position == EToolMenuInsertType::Before ? Neighbour : Neighbour + 1;
	}
	Elements.Insert(Element, Index);
}

/** Elements in the order of their positions; those that refer to a neighbour come after the rest have found their
 * place. */
template <typename ElementType>
static TArray<ElementType> Sort(const TArray<ElementType>& Elements)
{
	TArray<ElementType> Sorted;
	for (const bool bRelative : { false, true })
	{
		for (const ElementType& Element : Elements)
		{
			if (Element.InsertPosition.IsBeforeOrAfter() == bRelative)
			{
				InsertSorted(Sorted, Element);
			}
		}
	}
	return Sorted;
}

class FToolMenusModule final : public IModuleInterface
{
public:
	virtual void StartupModule() override { UToolMenus::CreateSingleton(); }
	virtual void ShutdownModule() override { UToolMenus::DestroySingleton(); }
};

}

IMPLEMENT_MODULE(ToolMenus::FToolMenusModule, ToolMenus)

UToolMenus* UToolMenus::Get()
{
	if (Singleton == nullptr)
	{
		FModuleManager::Get().LoadModuleChecked(TEXT("ToolMenus"));
	}
	return Singleton;
}

UToolMenus* UToolMenus::TryGet()
{
	return Singleton;
}

void UToolMenus::CreateSingleton()
{
	checkf(Singleton == nullptr, TEXT("Internal error: there are tool menus already"));
	Singleton = NewObject<UToolMenus>();
	Singleton->AddToRoot();
}

void UToolMenus::DestroySingleton()
{
	if (Singleton != nullptr)
	{
		Singleton->RemoveFromRoot();
		Singleton = nullptr;
	}
}

bool UToolMenus::IsToolMenuUIEnabled()
{
	return GIsEditor && FSlateApplication::IsInitialized();
}

FDelegateHandle UToolMenus::RegisterStartupCallback(const FSimpleMulticastDelegate::FDelegate& InDelegate)
{
	if (!ToolMenus::bIsEngineUp)
	{
		return ToolMenus::StartupCallbacks().Add(InDelegate);
	}
	if (IsToolMenuUIEnabled())
	{
		InDelegate.ExecuteIfBound();
	}
	return FDelegateHandle();
}

void UToolMenus::UnRegisterStartupCallback(const void* UserPointer)
{
	ToolMenus::StartupCallbacks().RemoveAll(UserPointer);
}

void UToolMenus::UnRegisterStartupCallback(FDelegateHandle InHandle)
{
	ToolMenus::StartupCallbacks().Remove(InHandle);
}

void UToolMenus::UnregisterOwner(FToolMenuOwner Owner)
{
	if (Singleton == nullptr || !Owner.IsSet())
	{
		return;
	}
	for (const auto& Named : Singleton->Menus)
	{
		TArray<FToolMenuSection>& Sections = Named.Value->Sections;
		for (FToolMenuSection& Section : Sections)
		{
			Section.RemoveEntriesByOwner(Owner);
		}
		// Somebody else may have put entries into a section of this owner.
		Sections.RemoveAll(
			[&Owner](const FToolMenuSection& Section) { return Section.Owner == Owner && Section.Blocks.Num() == 0; });
	}
	Singleton->RefreshAllWidgets();
}

UToolMenu* UToolMenus::RegisterMenu(
	const FName Name, const FName InParent, EMultiBoxType InType, bool bWarnIfAlreadyRegistered)
{
	UToolMenu* const Menu = ExtendMenu(Name);
	if (Menu->bRegistered)
	{
		if (bWarnIfAlreadyRegistered)
		{
			UE_LOG(LogToolMenus, Warning, TEXT("The menu '%s' is registered already"), *Name.ToString());
		}
		return Menu;
	}
	Menu->bRegistered = true;
	Menu->MenuParent = InParent;
	Menu->MenuType = InType;
	Menu->MenuOwner = CurrentOwner();
	RefreshAllWidgets();
	return Menu;
}

UToolMenu* UToolMenus::ExtendMenu(const FName Name)
{
	UToolMenu* Menu = FindMenu(Name);
	if (Menu == nullptr)
	{
		Menu = NewObject<UToolMenu>(this);
		Menu->MenuName = Name;
		Menus.Add(Name, Menu);
	}
	return Menu;
}

UToolMenu* UToolMenus::FindMenu(const FName Name) const
{
	const TObjectPtr<UToolMenu>* const Found = Menus.Find(Name);
	return Found != nullptr ? Found->Get() : nullptr;
}

bool UToolMenus::IsMenuRegistered(const FName Name) const
{
	const UToolMenu* const Menu = FindMenu(Name);
	return Menu != nullptr && Menu->bRegistered;
}

void UToolMenus::RemoveSection(const FName MenuName, const FName Section)
{
	UToolMenu* const Menu = FindMenu(MenuName);
	if (Menu != nullptr)
	{
		Menu->RemoveSection(Section);
	}
}

void UToolMenus::RemoveEntry(const FName MenuName, const FName Section, const FName Name)
{
	UToolMenu* const Menu = FindMenu(MenuName);
	FToolMenuSection* const Found = Menu != nullptr ? Menu->FindSection(Section) : nullptr;
	if (Found != nullptr)
	{
		Found->RemoveEntry(Name);
		RefreshAllWidgets();
	}
}

FToolMenuOwner UToolMenus::CurrentOwner() const
{
	return OwnerStack.Num() > 0 ? OwnerStack.Last() : FToolMenuOwner();
}

void UToolMenus::PopOwner(const FToolMenuOwner InOwner)
{
	checkf(CurrentOwner() == InOwner, TEXT("Owners of menu entries must end in the reverse order of their beginning"));
	OwnerStack.RemoveAt(OwnerStack.Num() - 1);
}

TArray<FToolMenuSection> UToolMenus::CollectSections(const FName Name) const
{
	const UToolMenu* const Menu = FindMenu(Name);
	if (Menu == nullptr)
	{
		return {};
	}
	TArray<FToolMenuSection> All =
		Menu->MenuParent.IsNone() ? TArray<FToolMenuSection>() : CollectSections(Menu->MenuParent);
	for (FToolMenuSection Section : ToolMenus::Sort(Menu->Sections))
	{
		Section.Blocks = ToolMenus::Sort(Section.Blocks);
		ToolMenus::InsertSorted(All, Section);
	}
	return All;
}

FName UToolMenus::JoinMenuPaths(const FName Base, const FName Child)
{
	return FName(*(Base.ToString() + TEXT(".") + Child.ToString()));
}

TSharedRef<SWidget> UToolMenus::GenerateWidget(const FName Name, const FToolMenuContext& InMenuContext)
{
	return SNew(SToolMenuWidget).MenuName(Name);
}
