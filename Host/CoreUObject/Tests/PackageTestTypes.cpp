#include "PackageTestTypes.h"

#include "Misc/FeedbackContext.h"
#include "UObject/AssetRegistryTagsContext.h"
#include "UObject/ObjectText.h"
#include "UObject/UnrealType.h"

void UTestNode::PostLoad()
{
	Super::PostLoad();
	++NumLoads;
	bLinkWasThere = Link.IsValid();
}

void UTestNode::PostDuplicate(bool bDuplicateForPIE)
{
	Super::PostDuplicate(bDuplicateForPIE);
	++NumDuplicates;
}

void UTestNode::ExportCustomProperties(FOutputDevice& Out, uint32 Indent)
{
	if (Link.IsValid())
	{
		Out.Logf(TEXT("%sCustomProperties Link %s\r\n"), *FString::ChrN(static_cast<int32>(Indent), u' '),
			*ObjectText::DescribeReference(Link.Get()));
	}
}

void UTestNode::ImportCustomProperties(const TCHAR* SourceText, FFeedbackContext*)
{
	FString Text(SourceText);
	if (Text.RemoveFromStart(TEXT("Link ")))
	{
		UObject* const Found = ObjectText::FindReference(Text);
		Link = Found && Found->IsA<UTestNode>() ? static_cast<UTestNode*>(Found) : nullptr;
	}
}

void UTestRecipe::PostLoad()
{
	Super::PostLoad();
	if (HasAnyFlags(RF_WasLoaded))
	{
		Compile();
	}
}

void UTestRecipe::GetAssetRegistryTags(FAssetRegistryTagsContext Context) const
{
	Super::GetAssetRegistryTags(Context);
	const FString Path = GeneratedClass ? GeneratedClass->GetExportPath() : FString();
	Context.AddTag(FAssetRegistryTag(TEXT("GeneratedClass"), Path, FAssetRegistryTag::TT_Hidden));
}

void UTestRecipe::Compile()
{
	if (ParentRecipe)
	{
		ParentRecipe->ConditionalPostLoad();
	}
	if (!GeneratedClass)
	{
		GeneratedClass = NewObject<UTestRecipeClass>(GetOuter(), FName(*(GetName() + TEXT("_C"))), RF_Public);
	}
	if (GeneratedClass->ClassDefaultObject || !ParentClass)
	{
		return;
	}
	GeneratedClass->SetSuperStruct(ParentClass);
	for (const FName Variable : Variables)
	{
		GeneratedClass->AddCppProperty(new FIntProperty(GeneratedClass.Get(), Variable, RF_Public));
	}
	GeneratedClass->StaticLink(true);
	GeneratedClass->GetDefaultObject();
}
