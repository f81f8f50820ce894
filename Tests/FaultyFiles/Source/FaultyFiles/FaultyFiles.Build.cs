using UnrealBuildTool;

public class FaultyFiles : ModuleRules
{
	public FaultyFiles(ReadOnlyTargetRules Target) : base(Target)
	{
		PrivateDependencyModuleNames.AddRange(new string[] { "Core", "CoreUObject", "Json", "Kestrel" });
	}
}
