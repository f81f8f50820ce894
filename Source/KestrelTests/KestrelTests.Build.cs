using System.IO;
using UnrealBuildTool;

// The plugin's automation tests: for editors that are built for development, never part of a game.
public class KestrelTests : ModuleRules
{
	public KestrelTests(ReadOnlyTargetRules Target) : base(Target)
	{
		PCHUsage = PCHUsageMode.UseExplicitOrSharedPCHs;
		IncludeOrderVersion = EngineIncludeOrderVersion.Latest;
		OptimizeCode = CodeOptimization.Never; // it runs once from top to bottom

		// Tests reach behind the plugin's public headers.
		PrivateIncludePaths.Add(Path.Combine(ModuleDirectory, "..", "Kestrel", "Private"));

		PrivateDependencyModuleNames.AddRange(new string[]
		{
			"Kestrel",
			"AIModule",
			"ApplicationCore",
			"AssetRegistry",
			"AssetTools",
			"BlueprintGraph",
			"Core",
			"CoreUObject",
			"Engine",
			"HTTP",
			"HTTPServer",
			"InputCore",
			"Json",
			"Projects",
			"PythonScriptPlugin",
			"Settings",
			"Slate",
			"SlateCore",
			"SourceControl",
			"ToolMenus",
			"UnrealEd",
		});
	}
}
