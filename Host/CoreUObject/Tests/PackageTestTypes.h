#pragma once

#include "CoreMinimal.h"
#include "ReflectedTestTypes.h"
#include "UObject/Class.h"
#include "UObject/Interface.h"
#include "UObject/Object.h"
#include "PackageTestTypes.generated.h"

UINTERFACE(BlueprintType)
class UTestTalker : public UInterface
{
	GENERATED_BODY()
};

/** What can be talked to. */
class ITestTalker
{
	GENERATED_BODY()

public:
	UFUNCTION(BlueprintNativeEvent, Category = "Test")
	FString Answer(const FString& Question) const;

	UFUNCTION(BlueprintImplementableEvent, Category = "Test")
	void Overhear(int32 Count);

	virtual int32 GetAge() const { return 7; }
};

UINTERFACE()
class UTestSilent : public UInterface
{
	GENERATED_BODY()
};

class ITestSilent
{
	GENERATED_BODY()
};

/** A thing of a graph: what it is linked to is no property. */
UCLASS()
class UTestNode : public UObject
{
	GENERATED_BODY()

public:
	void PostLoad() override;
	void PostDuplicate(bool bDuplicateForPIE) override;
	void ExportCustomProperties(FOutputDevice& Out, uint32 Indent) override;
	void ImportCustomProperties(const TCHAR* SourceText, FFeedbackContext* Warn) override;

	UPROPERTY(EditAnywhere, Category = "Test")
	int32 X = 5;

	UPROPERTY()
	FString Note;

	UPROPERTY(Transient)
	int32 Forgotten = 0;

	UPROPERTY(DuplicateTransient)
	int32 OwnNumber = 0;

	UPROPERTY()
	TObjectPtr<UObject> Other;

	UPROPERTY()
	TScriptInterface<ITestTalker> Talker;

	TWeakObjectPtr<UTestNode> Link;
	int32 NumLoads = 0;
	int32 NumDuplicates = 0;
	bool bLinkWasThere = false; // at PostLoad
};

/** A class that comes to be when its recipe is compiled. */
UCLASS()
class UTestRecipeClass : public UClass
{
	GENERATED_BODY()
};

/** As a Blueprint: it makes a class of its parent's and of a list of numbers. */
UCLASS()
class UTestRecipe : public UTestNode, public ITestTalker
{
	GENERATED_BODY()

public:
	void PostLoad() override;
	void GetAssetRegistryTags(FAssetRegistryTagsContext Context) const override;
	void Compile();
	FString Answer_Implementation(const FString& Question) const override { return Question + TEXT("?"); }

	UPROPERTY()
	TObjectPtr<UClass> ParentClass;

	UPROPERTY()
	TObjectPtr<UTestRecipeClass> GeneratedClass;

	UPROPERTY()
	TArray<FName> Variables;

	UPROPERTY()
	TArray<TObjectPtr<UTestNode>> Nodes;

	UPROPERTY()
	TObjectPtr<UTestRecipe> ParentRecipe;
};
