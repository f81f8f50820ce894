#include "PythonTestSupport.h"
#include "PythonTestTypes.h"
#include "UObject/Package.h"

int32 UPyTestThing::AddUp(int32 A, const TArray<int32>& Others, FString& OutText)
{
	OutText = TEXT("added");
	for (const int32 Each : Others)
	{
		A += Each;
	}
	return A;
}

void UPyTestThing::Grow(FPyTestPoint& Point_, int32 By, bool bLoud, EPyTestPolicy Policy_)
{
	Point_.X += By;
	Point_.Label = bLoud ? TEXT("LOUD") : Policy_ == EPyTestPolicy::HTTPOnly ? TEXT("default") : TEXT("other");
}

FString UPyTestThing::RunCommand(const FString& Text) const
{
	FPythonCommandEx Command;
	Command.Command = Text;
	const bool bSuccess = IPythonScriptPlugin::Get()->ExecPythonCommandEx(Command);
	return FString::Printf(
		TEXT("%s %s %d"), bSuccess ? TEXT("True") : TEXT("False"), *Command.CommandResult, Command.LogOutput.Num());
}

UPyTestThing* UPyTestThing::GetThing(UPyTestThing* Thing, TSubclassOf<UPyTestThing> OfClass) const
{
	return Thing && Thing->IsA(OfClass.Get()) ? Thing : nullptr;
}

int32 UPyTestThing::Ask_Implementation(int32 Question) const
{
	return Question + 1;
}

void UPyTestThing::PreEditChange(FProperty* PropertyAboutToChange)
{
	Changes += TEXT("<") + PropertyAboutToChange->GetName();
}

void UPyTestThing::PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent)
{
	Super::PostEditChangeProperty(PropertyChangedEvent);
	Changes += TEXT(">") + PropertyChangedEvent.GetPropertyName().ToString();
}

/** Each script finds an object of its test as "thing", and "unreal" imported. */
class FUnrealModuleTest : public FPythonTest
{
protected:
	FUnrealModuleTest()
	{
		ProcessNewlyLoadedUObjects();
		Thing = NewObject<UPyTestThing>(GetTransientPackage(), TEXT("PyThing"));
		EXPECT_EQ(RunWithThing(TEXT("pass")), "None");
	}

	/** The command's result: "None", or the error's last line. */
	std::string RunWithThing(const FString& Script)
	{
		Run(TEXT("import unreal\n"
				 "thing = unreal.find_object(None, '/Engine/Transient.PyThing')\n") +
			Script);
		return GetLastResultLine();
	}

	UPyTestThing* Thing = nullptr;
};

TEST_F(FUnrealModuleTest, ObjectsTellWhatTheyAre)
{
	EXPECT_EQ(RunWithThing(TEXT(
				  "assert thing.get_name() == 'PyThing'\n"
				  "assert thing.get_path_name() == '/Engine/Transient.PyThing'\n"
				  "assert thing.get_full_name() == 'PyTestThing /Engine/Transient.PyThing'\n"
				  "assert thing.get_class().get_name() == 'PyTestThing'\n"
				  "assert thing.get_outer() == unreal.get_transient_package() == thing.get_package()\n"
				  "assert type(thing) is unreal.PyTestThing and isinstance(thing, unreal.Object)\n"
				  "assert isinstance(thing.get_class(), unreal.Class)\n"
				  "assert unreal.PyTestThing.static_class() == thing.get_class()\n"
				  "assert thing == unreal.find_object(unreal.get_transient_package(), 'PyThing')\n"
				  "assert len({thing, unreal.find_object(None, '/Engine/Transient.PyThing')}) == 1\n"
				  "default = unreal.PyTestThing.get_default_object()\n"
				  "assert default != thing and default == unreal.get_default_object(thing.get_class())\n"
				  "assert unreal.Object.cast(thing) is thing and 'PyThing' in repr(thing)\n"
				  "assert issubclass(unreal.PyTestChild, unreal.PyTestThing)\n"
				  "assert unreal.find_object(None, 'PyThing') is None\n"
				  "assert unreal.load_class(None, '/Script/PythonScriptPluginTests.PyTestThing') == thing.get_class()\n"
				  "assert 'PyTestThing' in dir(unreal) and unreal.PyTestThing.__doc__ == 'What a script can meet.'\n")),
		"None")
		<< GetResult();
}

TEST_F(FUnrealModuleTest, EachKindOfVariableGoesBothWays)
{
	struct FKindCase
	{
		const TCHAR* Name;
		const TCHAR* Value;    // what is set
		const TCHAR* Expected; // what is read afterwards; null for the same
		const char* Text;      // the variable as the host writes it
	};
	const FKindCase Cases[] = {
		{ TEXT("WalkSpeed"), TEXT("-2147483648"), nullptr, "-2147483648" },
		{ TEXT("bAutoApprove"), TEXT("True"), nullptr, "True" },
		{ TEXT("bSecondBit"), TEXT("True"), nullptr, "True" },
		{ TEXT("Byte"), TEXT("255"), nullptr, "255" },
		{ TEXT("Int8"), TEXT("-128"), nullptr, "-128" },
		{ TEXT("UInt64"), TEXT("2**64 - 1"), nullptr, "18446744073709551615" },
		{ TEXT("Int64"), TEXT("-2**63"), nullptr, "-9223372036854775808" },
		{ TEXT("Float"), TEXT("3"), TEXT("3.0"), "3.000000" },
		{ TEXT("Double"), TEXT("-0.5"), nullptr, "-0.500000" },
		{ TEXT("Title"), TEXT("'\\ud800 \\U0001f600'"), nullptr, "\xef\xbf\xbd \xf0\x9f\x98\x80" },
		{ TEXT("Name"), TEXT("unreal.Name('Some')"), TEXT("'sOME'"), "Some" },
		{ TEXT("Caption"), TEXT("'for people'"), TEXT("unreal.Text('for people')"), nullptr },
		{ TEXT("Policy"), TEXT("unreal.PyTestPolicy.KEEP_LAST30_DAYS"), nullptr, "KeepLast30Days" },
		{ TEXT("OldPolicy"), TEXT("unreal.PyTestOld.PTO_SECOND"), nullptr, "PTO_Second" },
		{ TEXT("Other"), TEXT("thing"), nullptr,
			"/Script/PythonScriptPluginTests.PyTestThing'/Engine/Transient.PyThing'" },
		{ TEXT("Weak"), TEXT("thing"), nullptr, nullptr },
		{ TEXT("Soft"), TEXT("thing"), nullptr, "/Engine/Transient.PyThing" },
		{ TEXT("ThingClass"), TEXT("unreal.PyTestChild"), TEXT("unreal.PyTestChild.static_class()"),
			"/Script/CoreUObject.Class'/Script/PythonScriptPluginTests.PyTestChild'" },
		{ TEXT("Point"), TEXT("unreal.PyTestPoint(4, label='four')"), nullptr, "(X=4,Label=\"four\",Owner=None)" },
		{ TEXT("Vector"), TEXT("unreal.Vector2D(1, y=2)"), nullptr, "(X=1.000000,Y=2.000000)" },
		{ TEXT("Titles"), TEXT("('a', 'b')"), TEXT("['a', 'b']"), "(\"a\",\"b\")" },
		{ TEXT("Titles"), TEXT("unreal.Array(str)"), TEXT("[]"), "" },
		{ TEXT("Points"), TEXT("[unreal.PyTestPoint(1)]"), nullptr, "((X=1))" },
		{ TEXT("Names"), TEXT("{'one'}"), TEXT("{unreal.Name('ONE')}"), "(\"one\")" },
		{ TEXT("Counts"), TEXT("{'a': 1, 'b': 2}"), nullptr, "((\"a\", 1),(\"b\", 2))" },
		{ TEXT("Fixed"), TEXT("[7, 8, 9]"), nullptr, nullptr },
	};
	for (const FKindCase& Case : Cases)
	{
		const FString Script = FString::Printf(TEXT("thing.set_editor_property('%s', %s)\n"
													"value = thing.get_editor_property('%s')\n"
													"assert value == %s, repr(value)\n"),
			Case.Name, Case.Value, Case.Name, Case.Expected ? Case.Expected : Case.Value);
		EXPECT_EQ(RunWithThing(Script), "None") << ToUtf8(Case.Name);
		FString Text;
		const FProperty* const Property = Thing->GetClass()->FindPropertyByName(Case.Name);
		const void* const Value = Property->ContainerPtrToValuePtr<void>(Thing);
		Property->ExportTextItem_Direct(Text, Value, Value, nullptr, PPF_None);
		EXPECT_TRUE(!Case.Text || ToUtf8(Text) == Case.Text) << ToUtf8(Case.Name) << ToUtf8(Text);
	}
	EXPECT_EQ(Thing->Fixed[2], 9);
	EXPECT_FALSE(Thing->bFirstBit);
}

TEST_F(FUnrealModuleTest, ValuesOfAnotherTypeAreRefusedAndNothingChanges)
{
	struct FCase
	{
		const TCHAR* Statement;
		const char* Error;
	};
	const FCase Cases[] = {
		{ TEXT("thing.set_editor_property('walk_speed', '7')"),
			"TypeError: NativizeProperty: Cannot nativize 'str' as 'WalkSpeed' (IntProperty)" },
		{ TEXT("thing.set_editor_property('walk_speed', 7.0)"),
			"TypeError: NativizeProperty: Cannot nativize 'float' as 'WalkSpeed' (IntProperty)" },
		{ TEXT("thing.set_editor_property('walk_speed', 2**31)"),
			"OverflowError: NativizeProperty: Cannot nativize the value as 'WalkSpeed' (IntProperty): it is out of range" },
		{ TEXT("thing.set_editor_property('byte', -1)"),
			"OverflowError: NativizeProperty: Cannot nativize the value as 'Byte' (ByteProperty): it is out of range" },
		{ TEXT("thing.set_editor_property('float', 1e300)"),
			"OverflowError: NativizeProperty: Cannot nativize the value as 'Float' (FloatProperty): it is out of range" },
		{ TEXT("thing.set_editor_property('auto_approve', 1)"),
			"TypeError: NativizeProperty: Cannot nativize 'int' as 'bAutoApprove' (BoolProperty)" },
		{ TEXT("thing.set_editor_property('policy', 7)"),
			"TypeError: NativizeProperty: Cannot nativize 'int' as 'Policy' (EnumProperty)" },
		{ TEXT("thing.set_editor_property('other', unreal.get_transient_package())"),
			"TypeError: NativizeProperty: Cannot nativize 'Package' as 'Other' (ObjectProperty)" },
		{ TEXT("thing.set_editor_property('thing_class', unreal.Object)"),
			"TypeError: NativizeProperty: Cannot nativize 'type' as 'ThingClass' (ClassProperty)" },
		{ TEXT("thing.set_editor_property('point', unreal.Vector2D())"),
			"TypeError: NativizeProperty: Cannot nativize 'Vector2D' as 'Point' (StructProperty)" },
		{ TEXT("thing.set_editor_property('titles', 'ab')"),
			"TypeError: NativizeProperty: Cannot nativize 'str' as 'Titles' (ArrayProperty)" },
		{ TEXT("thing.set_editor_property('titles', ['a', 1])"),
			"TypeError: NativizeProperty: Cannot nativize 'int' as 'Titles' (StrProperty)" },
		{ TEXT("thing.set_editor_property('title', 'a\\0b')"),
			"ValueError: NativizeProperty: Cannot nativize the value as 'Title' (StrProperty): it has a NUL character" },
		{ TEXT("thing.set_editor_property('name', 'x' * 1024)"),
			"ValueError: NativizeProperty: Cannot nativize the value as 'Name' (NameProperty): it is too long for a name" },
		{ TEXT("thing.set_editor_property('fixed', [1])"),
			"ValueError: NativizeProperty: Cannot nativize the value as 'Fixed' (IntProperty): the number of elements is "
			"fixed" },
		{ TEXT("thing.walk_speed = None"),
			"TypeError: NativizeProperty: Cannot nativize 'NoneType' as 'WalkSpeed' (IntProperty)" },
		{ TEXT("thing.walkspeed = 1"), "AttributeError: 'PyTestThing' object has no attribute 'walkspeed'" },
		{ TEXT("unreal.PyTestPoint(1, 'a', None, 4)"), "TypeError: PyTestPoint has only 3 fields" },
		{ TEXT("unreal.PyTestPoint(z=1)"), "TypeError: PyTestPoint has no field 'z'" },
		{ TEXT("unreal.Nothing"), "AttributeError: module 'unreal' has no attribute 'Nothing'" },
	};
	for (const FCase& Case : Cases)
	{
		EXPECT_EQ(RunWithThing(Case.Statement), Case.Error);
	}
	EXPECT_EQ(Thing->WalkSpeed, 600);
	EXPECT_EQ(Thing->Titles.Num(), 0);
	EXPECT_EQ(ToUtf8(Thing->Changes), "");
}

TEST_F(FUnrealModuleTest, EditorPropertiesFollowTheRulesOfADetailsPanel)
{
	struct FCase
	{
		const TCHAR* Statement;
		const char* Error;
	};
	const FCase Cases[] = {
		{ TEXT("thing.get_editor_property('nothing')"),
			"Exception: PyTestThing: Failed to find property 'nothing' for attribute 'nothing' on 'PyTestThing'" },
		{ TEXT("thing.get_editor_property('hidden')"),
			"Exception: PyTestThing: Property 'Hidden' for attribute 'hidden' on 'PyTestThing' is protected and cannot be "
			"read" },
		{ TEXT("thing.set_editor_property('seen', 1)"),
			"Exception: PyTestThing: Property 'Seen' for attribute 'seen' on 'PyTestThing' is read-only and cannot be set" },
		{ TEXT("thing.seen = 1"),
			"Exception: PyTestThing: Property 'Seen' for attribute 'seen' on 'PyTestThing' is read-only and cannot be set" },
		{ TEXT("del thing.walk_speed"),
			"Exception: PyTestThing: Property 'WalkSpeed' for attribute 'walk_speed' on 'PyTestThing' is read-only and "
			"cannot be set" },
		{ TEXT("thing.set_editor_property('only_default', 1)"),
			"Exception: PyTestThing: Property 'OnlyDefault' for attribute 'only_default' on 'PyTestThing' cannot be edited "
			"on instances" },
		{ TEXT("unreal.PyTestThing.get_default_object().set_editor_property('only_instance', 1)"),
			"Exception: PyTestThing: Property 'OnlyInstance' for attribute 'only_instance' on 'PyTestThing' cannot be edited "
			"on templates" },
		{ TEXT("thing.title"), "AttributeError: 'PyTestThing' object has no attribute 'title'" },
	};
	for (const FCase& Case : Cases)
	{
		EXPECT_EQ(RunWithThing(Case.Statement), Case.Error);
	}
	EXPECT_EQ(RunWithThing(TEXT("assert thing.get_editor_property('Seen') == thing.seen == 5\n"
								"thing.set_editor_property('only_instance', 8)\n"
								"thing.set_editor_properties({'walk_speed': 1, 'bAutoApprove': True, 'title': 'T'})\n"
								"thing.set_editor_property('WalkSpeed', 1)\n"
								"thing.walk_speed += 1\n")),
		"None")
		<< GetResult();
	// The attribute tells nobody, and neither does a value that was there already.
	EXPECT_EQ(
		ToUtf8(Thing->Changes), "<OnlyInstance>OnlyInstance<WalkSpeed>WalkSpeed<bAutoApprove>bAutoApprove<Title>Title");
	EXPECT_EQ(Thing->WalkSpeed, 2);
	EXPECT_TRUE(Thing->bAutoApprove);
}

TEST_F(FUnrealModuleTest, FunctionsTakeArgumentsAndGiveBackTheirOutputs)
{
	EXPECT_EQ(
		RunWithThing(TEXT("assert thing.add_up(1, [20, 300]) == (321, 'added')\n"
						  "assert thing.add_up(others=[], a=4) == (4, 'added')\n"
						  "assert thing.split('left|right') == ('left', 'right') and thing.split('none') is None\n"
						  "assert unreal.PyTestThing.shout('hi') == thing.shout('hi') == 'hi!'\n"
						  "assert unreal.PyTestThing.shout('hi', end='?') == 'hi?'\n"
						  "point = unreal.PyTestPoint(1)\n"
						  "grown = thing.grow(point)\n"
						  "assert (grown.x, grown.label, point.x) == (11, 'default', 1)\n"
						  "assert thing.grow(point, 1, True).label == 'LOUD'\n"
						  "assert thing.get_thing(thing, unreal.PyTestThing) == thing\n"
						  "assert thing.get_thing(thing, unreal.PyTestChild) is None\n"
						  "assert thing.call_method('NotForBlueprints') == 12\n"
						  "assert thing.call_method('add_up', (1, []), {}) == (1, 'added')\n"
						  "child = unreal.new_object(unreal.PyTestChild)\n"
						  "assert (thing.ask(3), child.ask(3), unreal.PyTestThing.ask(child, 3)) == (4, 300, 300)\n")),
		"None")
		<< GetResult();
	struct FCase
	{
		const TCHAR* Statement;
		const char* Error;
	};
	const FCase Cases[] = {
		{ TEXT("thing.add_up(1)"), "TypeError: add_up() required argument 'others' (pos 2) not found" },
		{ TEXT("thing.add_up(1, [], 3)"), "TypeError: add_up() takes at most 2 arguments (3 given)" },
		{ TEXT("thing.ask(1, question=1)"),
			"TypeError: ask() got an unexpected keyword argument, or one that was given by position too" },
		{ TEXT("thing.add_up('1', [])"), "TypeError: NativizeProperty: Cannot nativize 'str' as 'A' (IntProperty)" },
		{ TEXT("thing.not_for_blueprints()"),
			"AttributeError: 'PyTestThing' object has no attribute 'not_for_blueprints'" },
		{ TEXT("unreal.PyTestThing.ask(3)"), "TypeError: 'ask' needs an object that has it" },
		{ TEXT("unreal.PyTestChild.ask()"), "TypeError: 'ask' needs an object that has it" },
		{ TEXT("thing.call_method('gone')"),
			"Exception: PyTestThing: Failed to find function 'gone' on 'PyTestThing'" },
	};
	for (const FCase& Case : Cases)
	{
		EXPECT_EQ(RunWithThing(Case.Statement), Case.Error);
	}
}

TEST_F(FUnrealModuleTest, StructsAreValuesOfTheScript)
{
	EXPECT_EQ(RunWithThing(TEXT("point = thing.point\n"
								"point.x = 40\n"
								"assert thing.point.x == 3 and point != thing.point\n"
								"copy = point.copy()\n"
								"copy.set_editor_property('label', 'copied')\n"
								"assert (point.label, copy.to_tuple()) == ('origin', (40, 'copied', None))\n"
								"assert len({point, point.copy()}) == 1\n"
								"assert point.export_text() == '(X=40,Label=\"origin\",Owner=None)'\n"
								"point.import_text('(X=8)')\n"
								"assert point == unreal.PyTestPoint(8) and 'PyTestPoint' in repr(point)\n"
								"thing.point = point\n")),
		"None")
		<< GetResult();
	EXPECT_EQ(Thing->Point.X, 8);
	EXPECT_EQ(RunWithThing(TEXT("thing.point.import_text('nonsense')")),
		"ValueError: 'nonsense' is no value for the struct 'PyTestPoint'");
	EXPECT_EQ(RunWithThing(TEXT("unreal.StructBase()")), "TypeError: This type has no struct");
}

TEST_F(FUnrealModuleTest, WrappersKeepTheirObjectsUntilTheyAreDestroyed)
{
	EXPECT_EQ(
		Evaluate(TEXT("exec('kept = unreal.new_object(unreal.PyTestThing, name=\"Kept\"); "
					  "inside = unreal.PyTestPoint(owner=unreal.new_object(unreal.PyTestThing, name=\"Inside\"))')")),
		"None");
	CollectGarbage(RF_NoFlags);
	UObject* const Kept = StaticFindObject(UObject::StaticClass(), nullptr, TEXT("/Engine/Transient.Kept"));
	ASSERT_TRUE(Kept);
	EXPECT_TRUE(StaticFindObject(UObject::StaticClass(), nullptr, TEXT("/Engine/Transient.Inside")));
	EXPECT_EQ(Evaluate(TEXT("kept.walk_speed")), "600");

	Kept->MarkAsGarbage();
	CollectGarbage(RF_NoFlags);
	for (const TCHAR* Use : { TEXT("kept.walk_speed"), TEXT("kept.get_name()"), TEXT("kept.ask(1)"),
			 TEXT("unreal.SystemLibrary.is_valid(kept)"), TEXT("unreal.PyTestThing.cast(kept)") })
	{
		Evaluate(Use);
		EXPECT_EQ(GetLastResultLine(), "ReferenceError: PyTestThing: the object has been destroyed") << ToUtf8(Use);
	}
	EXPECT_EQ(Evaluate(TEXT("(hash(kept) == hash(kept), kept == kept, kept == inside.owner)")), "(True, True, False)");
	EXPECT_EQ(Evaluate(TEXT("kept")), "<Object destroyed, Type 'PyTestThing'>");
	EXPECT_EQ(Evaluate(TEXT("exec('del kept, inside')")), "None");
	CollectGarbage(RF_NoFlags);
	EXPECT_FALSE(StaticFindObject(UObject::StaticClass(), nullptr, TEXT("/Engine/Transient.Inside")));
}

TEST_F(FUnrealModuleTest, NoScriptMakesWhatWouldEndTheEditor)
{
	struct FCase
	{
		const TCHAR* Statement;
		const char* Error;
	};
	const FCase Cases[] = {
		{ TEXT("unreal.new_object(unreal.PyTestAbstract)"),
			"TypeError: PyTestAbstract cannot be made: the class is abstract" },
		{ TEXT("unreal.PyTestAbstract()"), "TypeError: PyTestAbstract cannot be made: the class is abstract" },
		{ TEXT("unreal.Class()"), "TypeError: Class cannot be made: objects of this class are not made by scripts" },
		{ TEXT("unreal.PyTestThing(name='PyThing')"),
			"ValueError: PyTestThing cannot be made: there is a 'PyThing' in '/Engine/Transient' already" },
		{ TEXT("unreal.PyTestThing(thing, 'a.b')"),
			"ValueError: PyTestThing cannot be made: the name 'a.b' has a character that no name has" },
		{ TEXT("unreal.new_object(unreal.PyTestThing, name='x' * 2000)"),
			"ValueError: PyTestThing cannot be made: the name is too long" },
		{ TEXT("unreal.new_object(3)"), "TypeError: new_object: 'type' must be a class" },
		{ TEXT("unreal.new_object(unreal.PyTestThing, 3)"), "TypeError: outer must be an object or None" },
		{ TEXT("unreal._ObjectBase()"), "TypeError: This type has no class" },
		{ TEXT("unreal._ObjectBase.__new__(unreal.PyTestThing).walk_speed"),
			"ReferenceError: PyTestThing: the object has been destroyed" },
		{ TEXT("unreal.PyTestThing.__dict__['walk_speed'].__get__(3)"),
			"TypeError: This is neither an object nor a struct" },
		{ TEXT("unreal.PyTestThing.__dict__['walk_speed'].__get__(unreal.get_transient_package())"),
			"Exception: Package: Failed to find property 'WalkSpeed' for attribute 'WalkSpeed' on 'Package'" },
		{ TEXT("unreal.PyTestChild.cast(thing)"), "TypeError: Cannot cast type 'PyTestThing' to 'PyTestChild'" },
	};
	for (const FCase& Case : Cases)
	{
		EXPECT_EQ(RunWithThing(Case.Statement), Case.Error);
	}
	EXPECT_EQ(RunWithThing(TEXT("made = unreal.PyTestThing(thing, 'Made')\n"
								"assert made.get_path_name() == '/Engine/Transient.PyThing:Made'\n"
								"class Mine(unreal.PyTestThing): pass\n"
								"mine = Mine()\n"
								"mine.note = 1\n"
								"assert mine.get_class() == thing.get_class()\n")),
		"None")
		<< GetResult();
	EXPECT_EQ(RunWithThing(TEXT(
				  "import threading\n"
				  "caught = []\n"
				  "point_type = unreal.PyTestPoint\n"
				  "def work():\n"
				  "  for use in (lambda: thing.walk_speed, lambda: unreal.PyTestThing, point_type):\n"
				  "    try: use()\n"
				  "    except RuntimeError as error: caught.append(str(error))\n"
				  "thread = threading.Thread(target=work)\nthread.start()\nthread.join()\n"
				  "assert caught == ['The editor\\'s objects can be used on the game thread alone'] * 3, caught\n")),
		"None")
		<< GetResult();
}

TEST_F(FUnrealModuleTest, ACommandCanRunInsideAnother)
{
	EXPECT_EQ(RunWithThing(TEXT("print('outer')\n"
								"assert thing.run_command('print(\"inner\")') == 'True None 1'\n"
								"assert thing.run_command('1/0').startswith('False Traceback')\n"
								"print('still outer')\n")),
		"None")
		<< GetResult();
	EXPECT_EQ(GetOutput(), "Info: outer\nInfo: still outer\n");
}

TEST_F(FUnrealModuleTest, LibrariesAnswerAsTheHostDoes)
{
	EXPECT_EQ(RunWithThing(
				  TEXT("import os\n"
					   "project = unreal.SystemLibrary.get_project_directory()\n"
					   "assert os.path.isdir(project) and unreal.Paths.directory_exists(unreal.Paths.project_dir())\n"
					   "full = unreal.Paths.convert_relative_path_to_full(unreal.Paths.project_content_dir())\n"
					   "assert full == unreal.Paths.combine([project, 'Content/'])\n"
					   "assert unreal.Paths.get_extension('a/b.txt', include_dot=True) == '.txt'\n"
					   "assert unreal.Paths.get_base_filename('a/b.txt') == 'b'\n"
					   "assert unreal.Paths.normalize_filename('a\\\\b') == 'a/b'\n"
					   "assert unreal.Paths.collapse_relative_directories('/../b') is None\n"
					   "assert unreal.Paths.make_path_relative_to('/p/a/b', '/p/c/') == '../a/b'\n"
					   "assert unreal.SystemLibrary.get_game_name() == 'Game'\n"
					   "assert unreal.SystemLibrary.get_engine_version().startswith('5.')\n"
					   "assert unreal.SystemLibrary.get_object_name(thing) == 'PyThing'\n"
					   "assert not unreal.SystemLibrary.is_valid(None)\n"
					   "unreal.SystemLibrary.print_string(None, 'printed')\n")),
		"None")
		<< GetResult();
	EXPECT_NE(LogLines.find("LogBlueprintUserMessages Log: printed\n"), std::string::npos);
}
