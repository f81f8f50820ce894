using UnrealBuildTool;

public class LockingSourceControl : ModuleRules
{
	public LockingSourceControl(ReadOnlyTargetRules Target) : base(Target)
	{
		PrivateDependencyModuleNames.AddRange(new string[] { "Core", "SourceControl" });
	}
}
