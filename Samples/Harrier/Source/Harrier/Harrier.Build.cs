using UnrealBuildTool;

public class Harrier : ModuleRules
{
	public Harrier(ReadOnlyTargetRules Target) : base(Target)
	{
		PCHUsage = PCHUsageMode.UseExplicitOrSharedPCHs;

		PublicDependencyModuleNames.AddRange(new string[]
		{
			"Core",
			"CoreUObject",
			"Engine",
		});

		PrivateDependencyModuleNames.AddRange(new string[]
		{
			"AIModule",
		});

		// Headers are named from the module's folder: "Combat/HealthComponent.h".
		PublicIncludePaths.Add(ModuleDirectory);
	}
}
