#include "BlueprintTestSupport.h"
#include "Kismet/GameplayStatics.h"

TEST_F(BlueprintTest, NewBlueprintOfAnActorHasHintsConstructionScriptAndRoot)
{
	UBlueprint* const Blueprint = Make(TEXT("/Game/Folder/BP_Door"));
	EXPECT_EQ(Blueprint->Status, BS_UpToDate);
	EXPECT_EQ(ToUtf8(Blueprint->GeneratedClass->GetPathName()), "/Game/Folder/BP_Door.BP_Door_C");
	EXPECT_EQ(ToUtf8(Blueprint->GeneratedClass->GetDefaultObject()->GetPathName()),
		"/Game/Folder/BP_Door.Default__BP_Door_C");
	EXPECT_EQ(Blueprint->GeneratedClass->GetSuperClass(), AActor::StaticClass());
	EXPECT_TRUE(Blueprint->GeneratedClass->HasAnyClassFlags(CLASS_CompiledFromBlueprint));

	ASSERT_EQ(Blueprint->UbergraphPages.Num(), 1);
	std::vector<std::string> Titles;
	for (const UEdGraphNode* const Node : Blueprint->UbergraphPages[0]->Nodes)
	{
		Titles.push_back(GetTitle(*Node));
		EXPECT_EQ(ToUtf8(Node->NodeComment),
			"This node is disabled and will not be called.\nDrag off pins to build functionality.");
	}
	EXPECT_EQ(Titles, (std::vector<std::string>{ "Event BeginPlay", "Event ActorBeginOverlap", "Event Tick" }));
	ASSERT_EQ(Blueprint->FunctionGraphs.Num(), 1);
	EXPECT_EQ(GetTitle(*Blueprint->FunctionGraphs[0]->Nodes[0]), "Construction Script");
	// Ghost events are not compiled, the construction script is.
	EXPECT_EQ(GetOwnProperties(Blueprint->GeneratedClass), (std::vector<std::string>{ "DefaultSceneRoot" }));
	const UFunction* const Construction =
		Blueprint->GeneratedClass->FindFunctionByName(TEXT("UserConstructionScript"), EIncludeSuperFlag::ExcludeSuper);
	ASSERT_TRUE(Construction);
	EXPECT_TRUE(Construction->HasAllFunctionFlags(
		static_cast<EFunctionFlags>(FUNC_Event | FUNC_Public | FUNC_BlueprintCallable | FUNC_BlueprintEvent)));

	UBlueprint* const Plain = Make(TEXT("/Game/Folder/BP_Plain"), UObject::StaticClass());
	EXPECT_EQ(Plain->UbergraphPages[0]->Nodes.Num(), 0);
	EXPECT_FALSE(Plain->SimpleConstructionScript);
	EXPECT_EQ(Plain->FunctionGraphs.Num(), 0);
}

/** The members of a class of its own, with where they lie and what they are. */
static std::vector<std::string> DescribeMembers(const UClass* Class)
{
	std::vector<std::string> Members;
	for (TFieldIterator<FProperty> It(Class, EFieldIterationFlags::None); It; ++It)
	{
		Members.push_back(ToUtf8(
			FString::Printf(TEXT("%s %s at %d"), *It->GetCPPType(), *It->GetName(), It->GetOffset_ForInternal())));
	}
	for (TFieldIterator<UFunction> It(Class, EFieldIterationFlags::None); It; ++It)
	{
		Members.push_back(ToUtf8(FString::Printf(TEXT("%s of %d bytes"), *It->GetName(), It->PropertiesSize)));
	}
	std::sort(Members.begin(), Members.end());
	return Members;
}

TEST_F(BlueprintTest, MembersThatAreAddedOneByOneAreThoseOfASkeletonBuiltAsAWhole)
{
	UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Many"));
	UBlueprint* const Child = Make(TEXT("/Game/BP_ManyChild"), Blueprint->GeneratedClass);
	for (UBlueprint* const Each : { Child, Blueprint }) // one without children, then one with some
	{
		for (const FName Category :
			{ UEdGraphSchema_K2::PC_Boolean, UEdGraphSchema_K2::PC_Int64, UEdGraphSchema_K2::PC_String })
		{
			const FString Name = Each->GetName() + Category.ToString();
			EXPECT_TRUE(FBlueprintEditorUtils::AddMemberVariable(Each, FName(*Name), MakeType(Category)));
			UEdGraph* const Graph = FBlueprintEditorUtils::CreateNewGraph(
				Each, FName(*(TEXT("Do") + Name)), UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
			FBlueprintEditorUtils::AddFunctionGraph<UClass>(Each, Graph, false, nullptr);
		}
	}
	for (UBlueprint* const Each : { Child, Blueprint })
	{
		const std::vector<std::string> Extended = DescribeMembers(Each->SkeletonGeneratedClass);
		EXPECT_GT(Extended.size(), 6u);
		FBlueprintEditorUtils::MarkBlueprintAsStructurallyModified(Each);
		EXPECT_EQ(DescribeMembers(Each->SkeletonGeneratedClass), Extended);
	}
}

TEST_F(BlueprintTest, VariableIsInTheSkeletonAtOnceAndInTheClassAfterCompiling)
{
	UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Vars"));
	EXPECT_TRUE(FBlueprintEditorUtils::AddMemberVariable(
		Blueprint, TEXT("Health"), MakeType(UEdGraphSchema_K2::PC_Real, UEdGraphSchema_K2::PC_Double), TEXT("75.5")));
	EXPECT_FALSE(
		FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("health"), MakeType(UEdGraphSchema_K2::PC_Int)));
	EXPECT_FALSE(FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("Tags"), MakeType(UEdGraphSchema_K2::PC_Int)))
		<< "a parent has the name";
	EXPECT_TRUE(Blueprint->SkeletonGeneratedClass->FindPropertyByName(TEXT("Health")));
	EXPECT_FALSE(Blueprint->GeneratedClass->FindPropertyByName(TEXT("Health")));
	EXPECT_EQ(Blueprint->Status, BS_Dirty);

	UClass* const Class = Blueprint->GeneratedClass;
	EXPECT_EQ(Compile(Blueprint), BS_UpToDate);
	EXPECT_EQ(Class, Blueprint->GeneratedClass);
	const FDoubleProperty* const Health = FindFProperty<FDoubleProperty>(Class, TEXT("Health"));
	ASSERT_TRUE(Health);
	EXPECT_TRUE(Health->HasAllPropertyFlags(CPF_Edit | CPF_BlueprintVisible | CPF_DisableEditOnInstance));
	EXPECT_EQ(Health->GetPropertyValue_InContainer(Class->GetDefaultObject()), 75.5);

	// A changed default stays over further compiles, whatever the description says.
	Health->SetPropertyValue_InContainer(Class->GetDefaultObject(), 12.0);
	Blueprint->NewVariables[0].DefaultValue = TEXT("1.0");
	FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("Other"), MakeType(UEdGraphSchema_K2::PC_Boolean));
	Compile(Blueprint);
	EXPECT_EQ(
		FindFProperty<FDoubleProperty>(Class, TEXT("Health"))->GetPropertyValue_InContainer(Class->GetDefaultObject()),
		12.0);
}

TEST_F(BlueprintTest, DefaultsAreReadAsPinsHaveThem)
{
	const struct
	{
		UScriptStruct* Struct;
		const TCHAR* Text;
		const char* Value; // null when the compiler warns
	} Cases[] = {
		{ TBaseStructure<FVector>::Get(), TEXT("1, -2.5,3"), "(X=1.000000,Y=-2.500000,Z=3.000000)" },
		{ TBaseStructure<FVector>::Get(), TEXT("(X=1,Y=2,Z=3)"), nullptr },
		{ TBaseStructure<FVector>::Get(), TEXT("1,2"), nullptr },
		{ TBaseStructure<FVector>::Get(), TEXT("1,2,1e5"), nullptr },
		{ TBaseStructure<FRotator>::Get(), TEXT("1,2,3"), "(Pitch=1.000000,Yaw=2.000000,Roll=3.000000)" },
		{ TBaseStructure<FRotator>::Get(), TEXT("(Pitch=1,Yaw=2,Roll=3)"), nullptr },
		{ TBaseStructure<FTransform>::Get(), TEXT("1,2,3|0,0,0|1,1,2"),
			"(Rotation=(X=0.000000,Y=0.000000,Z=0.000000,W=1.000000),Translation=(X=1.000000,Y=2.000000,Z=3.000000),"
			"Scale3D=(X=1.000000,Y=1.000000,Z=2.000000))" },
		{ TBaseStructure<FTransform>::Get(), TEXT("(Translation=(X=1,Y=2,Z=3))"), nullptr },
		{ TBaseStructure<FLinearColor>::Get(), TEXT("(R=1,G=0.5,B=0,A=1)"),
			"(R=1.000000,G=0.500000,B=0.000000,A=1.000000)" },
		{ TBaseStructure<FLinearColor>::Get(), TEXT("(R=1)"), nullptr },
		{ TBaseStructure<FVector2D>::Get(), TEXT("(X=1,Y=2)"), "(X=1.000000,Y=2.000000)" },
	};
	for (const auto& Case : Cases)
	{
		UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Defaults"));
		FBlueprintEditorUtils::AddMemberVariable(
			Blueprint, TEXT("Value"), MakeType(UEdGraphSchema_K2::PC_Struct, NAME_None, Case.Struct), Case.Text);
		EXPECT_EQ(Compile(Blueprint), Case.Value ? BS_UpToDate : BS_UpToDateWithWarnings) << ToUtf8(Case.Text);
		const FProperty* const Property = Blueprint->GeneratedClass->FindPropertyByName(TEXT("Value"));
		FString Text;
		Property->ExportText_InContainer(0, Text, Blueprint->GeneratedClass->GetDefaultObject(),
			Blueprint->GeneratedClass->GetDefaultObject(), nullptr, PPF_None);
		EXPECT_TRUE(!Case.Value || ToUtf8(Text) == Case.Value) << ToUtf8(Text);
		ForgetAll();
	}
}

TEST_F(BlueprintTest, TypesThatNoPropertyCanHaveAreErrors)
{
	const FEdGraphPinType Enum = MakeType(UEdGraphSchema_K2::PC_Enum, NAME_None, StaticEnum<ETickingGroup>());
	const FEdGraphPinType Interface = MakeType(UEdGraphSchema_K2::PC_Interface, NAME_None, AActor::StaticClass());
	FEdGraphPinType Set = MakeType(UEdGraphSchema_K2::PC_Struct, NAME_None, TBaseStructure<FTransform>::Get());
	EXPECT_FALSE(FBlueprintEditorUtils::HasGetTypeHash(Set));
	Set.ContainerType = EPinContainerType::Set;
	FEdGraphPinType Names = MakeType(UEdGraphSchema_K2::PC_Name);
	EXPECT_TRUE(FBlueprintEditorUtils::HasGetTypeHash(Names));
	Names.ContainerType = EPinContainerType::Array;
	EXPECT_FALSE(FBlueprintEditorUtils::HasGetTypeHash(Names));
	for (const FEdGraphPinType& Type : { Enum, Interface, Set })
	{
		UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Types"));
		FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("Value"), Type);
		EXPECT_EQ(Compile(Blueprint), BS_Error) << ToUtf8(Type.PinCategory.ToString());
		ForgetAll();
	}
}

TEST_F(BlueprintTest, ChildrenFollowTheirParent)
{
	UBlueprint* const Parent = Make(TEXT("/Game/BP_Parent"));
	FBlueprintEditorUtils::AddMemberVariable(Parent, TEXT("Speed"), MakeType(UEdGraphSchema_K2::PC_Int), TEXT("5"));
	Compile(Parent);
	UBlueprint* const Child = Make(TEXT("/Game/BP_Child"), Parent->GeneratedClass);
	UBlueprint* const Grandchild = Make(TEXT("/Game/BP_Grandchild"), Child->GeneratedClass);
	UObject* const Object = NewObject<UObject>(GetTransientPackage(), Grandchild->GeneratedClass.Get(), TEXT("Object"));
	Object->AddToRoot();
	const auto GetSpeed = [](const UObject* Of) {
		return FindFProperty<FIntProperty>(Of->GetClass(), TEXT("Speed"))->GetPropertyValue_InContainer(Of);
	};
	EXPECT_EQ(GetSpeed(Object), 5);
	FindFProperty<FIntProperty>(Child->GeneratedClass, TEXT("Speed"))
		->SetPropertyValue_InContainer(Child->GeneratedClass->GetDefaultObject(), 9);

	FBlueprintEditorUtils::AddMemberVariable(Parent, TEXT("First"), MakeType(UEdGraphSchema_K2::PC_String));
	const FBPVariableDescription Speed = Parent->NewVariables[0]; // another layout
	Parent->NewVariables.RemoveAt(0);
	Parent->NewVariables.Add(Speed);
	Compile(Parent);
	EXPECT_EQ(GetSpeed(Parent->GeneratedClass->GetDefaultObject()), 5);
	EXPECT_EQ(GetSpeed(Child->GeneratedClass->GetDefaultObject()), 9) << "changed values stay";
	EXPECT_TRUE(Grandchild->GeneratedClass->FindPropertyByName(TEXT("First")));
	UObject* const Anew = FindObjectFast<UObject>(GetTransientPackage(), TEXT("Object"));
	ASSERT_TRUE(Anew && Anew != Object);
	EXPECT_EQ(Anew->GetClass(), Grandchild->GeneratedClass);
	EXPECT_EQ(GetSpeed(Anew), 5) << "the object had its own value, which differed from the default";
	Anew->RemoveFromRoot();
}

TEST_F(BlueprintTest, TemplatesFollowTheirClass)
{
	UBlueprint* const Lamp = Make(TEXT("/Game/BP_Lamp"));
	FBlueprintEditorUtils::AddMemberVariable(Lamp, TEXT("Oil"), MakeType(UEdGraphSchema_K2::PC_Int), TEXT("5"));
	Compile(Lamp);
	const auto GetOil = [Lamp](UObject* Of) {
		return FindFProperty<FIntProperty>(Lamp->GeneratedClass, TEXT("Oil"))->ContainerPtrToValuePtr<int32>(Of);
	};
	// As the components that a Blueprint has are kept.
	UObject* const Template = NewObject<UObject>(
		Make(TEXT("/Game/BP_House")), Lamp->GeneratedClass.Get(), TEXT("Lamp"), RF_Public | RF_ArchetypeObject);
	Template->AddToRoot();
	*GetOil(Template) = 9;

	FBlueprintEditorUtils::AddMemberVariable(Lamp, TEXT("Wick"), MakeType(UEdGraphSchema_K2::PC_String));
	Compile(Lamp);
	UObject* const Anew = FindObject<UObject>(nullptr, TEXT("/Game/BP_House.BP_House:Lamp"));
	ASSERT_TRUE(Anew);
	ASSERT_EQ(Anew->GetClass(), Lamp->GeneratedClass) << ToUtf8(Anew->GetClass()->GetName());
	EXPECT_TRUE(Anew->HasAllFlags(RF_Public | RF_ArchetypeObject));
	EXPECT_EQ(*GetOil(Anew), 9);
	Anew->RemoveFromRoot();
}

TEST_F(BlueprintTest, FunctionsGetParametersFlagsAndTemporaries)
{
	UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Functions"));
	UEdGraph* const Graph = AddFunction(Blueprint, TEXT("Measure"), true);
	UK2Node_EditablePinBase* const Entry = FBlueprintEditorUtils::GetEntryNode(Graph);
	ASSERT_TRUE(Entry);
	EXPECT_EQ(GetPins(*Entry), (std::vector<std::string>{ "then" }));
	EXPECT_EQ(Graph->Nodes.Num(), 1) << "no result without outputs";
	Entry->CreateUserDefinedPin(TEXT("Count"), MakeType(UEdGraphSchema_K2::PC_Int), EGPD_Input);
	const UEdGraphPin* const Second =
		Entry->CreateUserDefinedPin(TEXT("then"), MakeType(UEdGraphSchema_K2::PC_String), EGPD_Output);
	EXPECT_EQ(ToUtf8(Second->PinName.ToString()), "then_0");
	EXPECT_EQ(Entry->Pins[1]->Direction, EGPD_Output) << "the entry has output pins alone";
	UK2Node_FunctionResult* const Result = FBlueprintEditorUtils::FindOrCreateFunctionResultNode(Entry);
	Result->CreateUserDefinedPin(TEXT("ReturnValue"), MakeType(UEdGraphSchema_K2::PC_Boolean), EGPD_Input);
	Result->CreateUserDefinedPin(TEXT("Total"), MakeType(UEdGraphSchema_K2::PC_Int), EGPD_Input);
	EXPECT_EQ(GetTitle(*Result), "Return Node");
	AddCall(*Graph, UKismetSystemLibrary::StaticClass(), TEXT("GetGameName"));

	ASSERT_EQ(Compile(Blueprint), BS_UpToDate);
	const UFunction* const Function = Blueprint->GeneratedClass->FindFunctionByName(TEXT("Measure"));
	ASSERT_TRUE(Function);
	EXPECT_EQ(Function->FunctionFlags, FUNC_Public | FUNC_BlueprintCallable | FUNC_BlueprintEvent | FUNC_HasOutParms);
	EXPECT_EQ(GetOwnProperties(Function),
		(std::vector<std::string>{ "Count", "then_0", "ReturnValue", "Total", "CallFunc_GetGameName_ReturnValue" }));
	ASSERT_TRUE(Function->GetReturnProperty());
	EXPECT_EQ(ToUtf8(Function->GetReturnProperty()->GetName()), "ReturnValue");
	EXPECT_FALSE(Function->FindPropertyByName(TEXT("CallFunc_GetGameName_ReturnValue"))->HasAnyPropertyFlags(CPF_Parm));
	EXPECT_TRUE(Function->FindPropertyByName(TEXT("Count"))
					->HasAllPropertyFlags(CPF_Parm | CPF_BlueprintVisible | CPF_BlueprintReadOnly));

	AddFunction(Blueprint, TEXT("OnRep_Health"), false);
	Compile(Blueprint);
	EXPECT_EQ(Blueprint->GeneratedClass->FindFunctionByName(TEXT("OnRep_Health"))->FunctionFlags,
		FUNC_BlueprintCallable | FUNC_BlueprintEvent);
}

TEST_F(BlueprintTest, NodesHaveTheEnginesPinsAndTitles)
{
	UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Nodes"), ACharacter::StaticClass());
	FBlueprintEditorUtils::AddMemberVariable(
		Blueprint, TEXT("Health"), MakeType(UEdGraphSchema_K2::PC_Real, UEdGraphSchema_K2::PC_Double));
	UEdGraph& Graph = *Blueprint->UbergraphPages[0];

	const UEdGraphNode* const Get = AddVariableNode<UK2Node_VariableGet>(Graph, TEXT("Health"));
	EXPECT_EQ(GetPins(*Get), (std::vector<std::string>{ "Health", "self" }));
	EXPECT_EQ(GetTitle(*Get), "Get Health");
	const UEdGraphNode* const Set = AddVariableNode<UK2Node_VariableSet>(Graph, TEXT("Health"));
	EXPECT_EQ(GetPins(*Set), (std::vector<std::string>{ "execute", "then", "Health", "self", "Output_Get" }));
	EXPECT_EQ(GetTitle(*Set), "Set Health");
	EXPECT_EQ(GetTitle(*AddVariableNode<UK2Node_VariableGet>(Graph, TEXT("Missing"))), "Get");

	const UEdGraphNode* const Print = AddCall(Graph, UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
	EXPECT_EQ(GetPins(*Print), (std::vector<std::string>{ "execute", "then", "self", "WorldContextObject", "InString",
								   "bPrintToScreen", "bPrintToLog", "TextColor", "Duration", "Key" }));
	EXPECT_EQ(GetTitle(*Print), "Print String");
	EXPECT_EQ(ToUtf8(Print->FindPin(TEXT("instring"))->DefaultValue), "Hello");
	EXPECT_EQ(ToUtf8(Print->GetClass()->GetName()), "K2Node_CallFunction");
	EXPECT_EQ(
		GetTitle(*AddCall(Graph, ACharacter::StaticClass(), TEXT("SetLifeSpan"))), "Set Life Span\nTarget is Actor");
	EXPECT_EQ(GetTitle(*AddCall(Graph, ACharacter::StaticClass(), TEXT("K2_DestroyActor"))),
		"Destroy Actor\nTarget is Actor");
	const UEdGraphNode* const Unbound = AddCall(Graph, ACharacter::StaticClass(), TEXT("NoSuchFunction"));
	EXPECT_EQ(GetTitle(*Unbound), "None");
	EXPECT_EQ(Unbound->Pins.Num(), 0);

	FGraphNodeCreator<UK2Node_CustomEvent> Creator(Graph);
	UK2Node_CustomEvent* const Custom = Creator.CreateNode();
	Custom->CustomFunctionName = TEXT("Foo");
	Creator.Finalize();
	EXPECT_EQ(GetTitle(*Custom), "Foo\nCustom Event");
	EXPECT_EQ(GetPins(*Custom), (std::vector<std::string>{ "OutputDelegate", "then" }));
}

TEST_F(BlueprintTest, CompilerReportsOnTheNodes)
{
	UBlueprint* const Blueprint = Make(TEXT("/Game/BP_Broken"), ACharacter::StaticClass());
	UEdGraph& Graph = *Blueprint->UbergraphPages[0];
	UEdGraphNode* const Print = AddCall(Graph, UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
	UEdGraphNode* const Other = AddCall(Graph, UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
	UEdGraphNode* const Begin = Graph.Nodes[0];
	Begin->FindPin(TEXT("then"))->MakeLinkTo(Print->FindPin(TEXT("execute")));
	EXPECT_TRUE(Begin->IsNodeEnabled()) << "a link enables a ghost";
	EXPECT_EQ(ToUtf8(Begin->NodeComment), "");
	EXPECT_EQ(Compile(Blueprint), BS_UpToDate);
	EXPECT_EQ(GetOwnProperties(Blueprint->GeneratedClass)[0], "UberGraphFrame");
	EXPECT_TRUE(Blueprint->GeneratedClass->FindFunctionByName(TEXT("ExecuteUbergraph_BP_Broken")));

	Begin->FindPin(TEXT("then"))->MakeLinkTo(Other->FindPin(TEXT("execute")));
	FCompilerResultsLog Log;
	Log.bSilentMode = true;
	EXPECT_EQ(Compile(Blueprint, &Log), BS_Error) << "two ways out of one exec pin";
	EXPECT_TRUE(Begin->bHasCompilerMessage);
	EXPECT_EQ(ToUtf8(Begin->ErrorMsg), "The pin then of Event BeginPlay has more than one link");
	Begin->FindPin(TEXT("then"))->BreakLinkTo(Other->FindPin(TEXT("execute")));
	EXPECT_EQ(Compile(Blueprint), BS_UpToDate);
	EXPECT_FALSE(Begin->bHasCompilerMessage);

	Print->FindPin(TEXT("Duration"))->DefaultValue = TEXT("soon");
	EXPECT_EQ(Compile(Blueprint), BS_Error);
	Print->FindPin(TEXT("Duration"))->DefaultValue = TEXT("2.5");

	UEdGraphNode* const Child = AddCall(Graph, UGameplayStatics::StaticClass(), TEXT("GetAllActorsOfClass"));
	UEdGraphPin& ClassPin = *Child->FindPinChecked(TEXT("ActorClass"));
	ClassPin.DefaultValue = TEXT("/Script/Engine.Actor");
	EXPECT_EQ(Compile(Blueprint), BS_Error) << "the value of such a pin is an object";
	GetDefault<UEdGraphSchema_K2>()->TrySetDefaultValue(ClassPin, TEXT("/Script/Engine.Actor"));
	EXPECT_EQ(ClassPin.DefaultObject, AActor::StaticClass());
	EXPECT_EQ(ToUtf8(ClassPin.DefaultValue), "");
	EXPECT_EQ(Compile(Blueprint), BS_UpToDate);

	// A warning: the linked pin of a variable whose type has changed its name is orphaned.
	FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("Line"), MakeType(UEdGraphSchema_K2::PC_String));
	UK2Node_VariableGet* const Get = AddVariableNode<UK2Node_VariableGet>(Graph, TEXT("Line"));
	Get->FindPin(TEXT("Line"))->MakeLinkTo(Print->FindPin(TEXT("InString")));
	EXPECT_EQ(Compile(Blueprint), BS_UpToDate);
	FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("Renamed"), MakeType(UEdGraphSchema_K2::PC_String));
	Get->VariableReference.SetSelfMember(TEXT("Renamed"));
	Get->ReconstructNode();
	EXPECT_EQ(Compile(Blueprint), BS_UpToDateWithWarnings);
}

TEST_F(BlueprintTest, SavedBlueprintReadsTheSame)
{
	UBlueprint* Blueprint = Make(TEXT("/Game/Folder/BP_Saved"), ACharacter::StaticClass());
	FBlueprintEditorUtils::AddMemberVariable(
		Blueprint, TEXT("Health"), MakeType(UEdGraphSchema_K2::PC_Real, UEdGraphSchema_K2::PC_Double), TEXT("75.5"));
	FEdGraphPinType Map = MakeType(UEdGraphSchema_K2::PC_Name);
	Map.ContainerType = EPinContainerType::Map;
	Map.PinValueType.TerminalCategory = UEdGraphSchema_K2::PC_Object;
	Map.PinValueType.TerminalSubCategoryObject = AActor::StaticClass();
	FBlueprintEditorUtils::AddMemberVariable(Blueprint, TEXT("Friends"), Map);
	USCS_Node* const Component =
		Blueprint->SimpleConstructionScript->CreateNode(USceneComponent::StaticClass(), TEXT("Lantern"));
	Blueprint->SimpleConstructionScript->AddNode(Component);
	UEdGraph& Graph = *Blueprint->UbergraphPages[0];
	UEdGraphNode* const Print = AddCall(Graph, UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
	Graph.Nodes[0]->FindPin(TEXT("then"))->MakeLinkTo(Print->FindPin(TEXT("execute")));
	UEdGraph* const Function = AddFunction(Blueprint, TEXT("Measure"), true);
	FBlueprintEditorUtils::GetEntryNode(Function)->CreateUserDefinedPin(
		TEXT("Count"), MakeType(UEdGraphSchema_K2::PC_Int), EGPD_Output);
	AddVariableNode<UK2Node_VariableGet>(Graph, TEXT("Health"));
	AddCall(Graph, Blueprint->SkeletonGeneratedClass, TEXT("Measure"));
	AddCall(Graph, ACharacter::StaticClass(), TEXT("SetLifeSpan"));
	const std::vector<std::string> Targets = GetTargets(Graph);
	EXPECT_EQ(Targets, (std::vector<std::string>{ "KismetSystemLibrary", "BP_Saved_C", "self", "Actor" }));
	ASSERT_EQ(Compile(Blueprint), BS_UpToDate);
	FindFProperty<FDoubleProperty>(Blueprint->GeneratedClass, TEXT("Health"))
		->SetPropertyValue_InContainer(Blueprint->GeneratedClass->GetDefaultObject(), 33.25);
	ASSERT_TRUE(Save(Blueprint));
	EXPECT_FALSE(Blueprint->GetOutermost()->IsDirty());
	const FString Text = ReadFile(TEXT("/Game/Folder/BP_Saved"));

	ForgetAll();
	ASSERT_FALSE(FindObject<UBlueprint>(nullptr, TEXT("/Game/Folder/BP_Saved.BP_Saved")));
	Blueprint = LoadObject<UBlueprint>(nullptr, TEXT("/Game/Folder/BP_Saved.BP_Saved"));
	ASSERT_TRUE(Blueprint);
	EXPECT_EQ(Blueprint->Status, BS_UpToDate);
	EXPECT_FALSE(Blueprint->GetOutermost()->IsDirty());
	UClass* const Class = Blueprint->GeneratedClass;
	EXPECT_EQ(Class->GetSuperClass(), ACharacter::StaticClass());
	EXPECT_EQ(
		FindFProperty<FDoubleProperty>(Class, TEXT("Health"))->GetPropertyValue_InContainer(Class->GetDefaultObject()),
		33.25);
	EXPECT_EQ(Blueprint->NewVariables[1].VarType, Map);
	ASSERT_TRUE(Class->FindFunctionByName(TEXT("Measure")));
	EXPECT_EQ(GetOwnProperties(Class->FindFunctionByName(TEXT("Measure"))), (std::vector<std::string>{ "Count" }));
	const UEdGraph& Loaded = *Blueprint->UbergraphPages[0];
	ASSERT_GE(Loaded.Nodes.Num(), 2);
	EXPECT_EQ(GetTargets(Loaded), Targets);
	ASSERT_EQ(Loaded.Nodes[0]->FindPin(TEXT("then"))->LinkedTo.Num(), 1);
	EXPECT_EQ(GetTitle(*Loaded.Nodes[0]->FindPin(TEXT("then"))->LinkedTo[0]->GetOwningNode()), "Print String");
	ASSERT_TRUE(Blueprint->SimpleConstructionScript->FindSCSNode(TEXT("Lantern")));
	EXPECT_TRUE(Blueprint->SimpleConstructionScript->FindSCSNode(TEXT("Lantern"))->ComponentTemplate);

	ASSERT_TRUE(Save(Blueprint));
	EXPECT_EQ(ToUtf8(ReadFile(TEXT("/Game/Folder/BP_Saved"))), ToUtf8(Text)) << "same content, same bytes";
}

TEST_F(BlueprintTest, BlueprintsThatUseEachOtherLoad)
{
	UBlueprint* const First = Make(TEXT("/Game/BP_First"));
	UBlueprint* const Second = Make(TEXT("/Game/BP_Second"));
	AddFunction(First, TEXT("Ping"), true);
	AddFunction(Second, TEXT("Pong"), true);
	Compile(First);
	Compile(Second);
	for (const auto& [From, To, Name] :
		{ std::tuple(First, Second, TEXT("Pong")), std::tuple(Second, First, TEXT("Ping")) })
	{
		FBlueprintEditorUtils::AddMemberVariable(
			From, TEXT("Other"), MakeType(UEdGraphSchema_K2::PC_Object, NAME_None, To->GeneratedClass));
		UEdGraph& Graph = *From->UbergraphPages[0];
		UEdGraphNode* const Call = AddCall(Graph, To->GeneratedClass, Name);
		AddVariableNode<UK2Node_VariableGet>(Graph, TEXT("Other"))
			->FindPin(TEXT("Other"))
			->MakeLinkTo(Call->FindPin(TEXT("self")));
		Graph.Nodes[0]->FindPin(TEXT("then"))->MakeLinkTo(Call->FindPin(TEXT("execute")));
		ASSERT_EQ(Compile(From), BS_UpToDate);
		ASSERT_TRUE(Save(From));
	}
	ASSERT_TRUE(Save(First));
	ForgetAll();
	const UBlueprint* const Loaded = LoadObject<UBlueprint>(nullptr, TEXT("/Game/BP_First.BP_First"));
	ASSERT_TRUE(Loaded);
	EXPECT_EQ(Loaded->Status, BS_UpToDate);
	const UBlueprint* const Other = FindObject<UBlueprint>(nullptr, TEXT("/Game/BP_Second.BP_Second"));
	ASSERT_TRUE(Other);
	EXPECT_EQ(Other->Status, BS_UpToDate);
}

TEST_F(BlueprintTest, NoneIsMadeOverAnother)
{
	Make(TEXT("/Game/BP_Once"));
	EXPECT_DEATH(Make(TEXT("/Game/BP_Once")), "There is a Blueprint named BP_Once");
}
