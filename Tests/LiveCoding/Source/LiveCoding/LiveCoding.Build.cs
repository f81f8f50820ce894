using UnrealBuildTool;

public class LiveCoding : ModuleRules
{
	public LiveCoding(ReadOnlyTargetRules Target) : base(Target)
	{
		PrivateDependencyModuleNames.AddRange(new string[] { "Core" });
	}
}
