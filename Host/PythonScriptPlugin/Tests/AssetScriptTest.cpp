#include "EditorAssetLibrary.h"
#include "PythonTestSupport.h"
#include "PythonTestTypes.h"
#include "UObject/Package.h"

namespace
{
/** Assets of the one project that all tests share, each test in a folder of its own. */
class FAssetScriptTest : public FPythonTest
{
protected:
	FAssetScriptTest()
	{
		UEditorAssetLibrary::StaticClass(); // links the library
		FModuleManager::Get().LoadModuleChecked(TEXT("EditorScriptingUtilities"));
	}

	void RunAll(const FString& Script)
	{
		EXPECT_TRUE(Run(TEXT("import unreal\nlib = unreal.EditorAssetLibrary\n") + Script)) << GetResult();
	}
};
}

TEST_F(FAssetScriptTest, MakesSavesCopiesMovesAndDeletesAssets)
{
	RunAll(TEXT("tools = unreal.AssetToolsHelpers.get_asset_tools()\n"
				"factory = unreal.ScriptTestFactory()\n"
				"made = tools.create_asset('Thing', '/Game/Scripted', None, factory)\n"
				"made.set_editor_property('count', 5)\n"
				"print(lib.does_asset_exist('/Game/Scripted/Thing'), lib.save_loaded_asset(made))\n"
				"copy = lib.duplicate_asset('/Game/Scripted/Thing', '/Game/Scripted/Sub/Copy')\n"
				"print(copy.get_path_name(), copy.get_editor_property('count'))\n"
				"print(lib.save_asset('/Game/Scripted/Sub/Copy'), lib.rename_asset('/Game/Scripted/Thing', "
				"'/Game/Scripted/Moved'))\n"
				"print(lib.list_assets('/Game/Scripted/'))\n"
				"print(lib.delete_asset('/Game/Scripted/Moved'), lib.does_asset_exist('/Game/Scripted/Moved'))\n"
				"data = lib.find_asset_data('/Game/Scripted/Sub/Copy.Copy')\n"
				"print(data.get_editor_property('asset_name'))\n"
				"print(unreal.load_asset('/Game/Scripted/Sub/Copy') == copy)\n"));
	EXPECT_EQ(GetOutput(), "Info: True True\n"
						   "Info: /Game/Scripted/Sub/Copy.Copy 5\n"
						   "Info: True True\n"
						   "Info: ['/Game/Scripted/Moved.Moved', '/Game/Scripted/Sub/Copy.Copy']\n"
						   "Info: True False\n"
						   "Info: Copy\n"
						   "Info: True\n");
	EXPECT_FALSE(FPaths::FileExists(GetProjectDir() / TEXT("Content/Scripted/Thing.uasset")));
	EXPECT_TRUE(FPaths::FileExists(GetProjectDir() / TEXT("Content/Scripted/Sub/Copy.uasset")));
}

TEST_F(FAssetScriptTest, AnswersWhatCannotBeDone)
{
	RunAll(TEXT(
		"print(lib.load_asset('/Game/Missing'), lib.does_asset_exist('nonsense'), lib.delete_asset('/Game/A'))\n"
		"print(lib.make_directory('/Game/Made/Deep'), lib.does_directory_exist('/Game/Made'))\n"
		"print(lib.does_directory_exist('/Nowhere'), lib.make_directory('/Nowhere/A'))\n"
		"print(lib.save_loaded_asset(unreal.new_object(unreal.ScriptTestAsset)), unreal.load_asset('/Game/No'))\n"));
	const std::string Output = GetOutput();
	for (const char* Line :
		{ "Info: None False False\n", "Info: True True\n", "Info: False False\n", "Info: False None\n" })
	{
		EXPECT_NE(Output.find(Line), std::string::npos) << Line << Output;
	}
}
