using System;
using UnrealBuildTool;

public class Kestrel : ModuleRules
{
	public Kestrel(ReadOnlyTargetRules Target) : base(Target)
	{
		PCHUsage = PCHUsageMode.UseExplicitOrSharedPCHs;
		IncludeOrderVersion = EngineIncludeOrderVersion.Latest;

		PublicDependencyModuleNames.AddRange(new string[]
		{
			"Core",
			"CoreUObject",
		});

		PrivateDependencyModuleNames.AddRange(new string[]
		{
			"AIModule",
			"ApplicationCore",
			"AssetRegistry",
			"AssetTools",
			"BlueprintGraph",
			"ContentBrowser",
			"Engine",
			"HTTP",
			"HTTPServer",
			"InputCore",
			"Json",
			"LevelEditor",
			"Projects",
			"PythonScriptPlugin",
			"Settings",
			"Slate",
			"SlateCore",
			"Sockets",
			"SourceControl",
			"ToolMenus",
			"UnrealEd",
		});

		// Host and stage path of the production service, without scheme and trailing slash.
		string ApiUrl = Environment.GetEnvironmentVariable("KESTREL_API_URL");
		if (!String.IsNullOrEmpty(ApiUrl))
		{
			PrivateDefinitions.Add(String.Format("KESTREL_API_URL=TEXT(\"{0}\")", ApiUrl));
		}
	}
}
