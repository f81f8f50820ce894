#include "KestrelSettings.h"

#include "Mcp/McpServer.h"
#include "UObject/ObjectMacros.h"
#include "UObject/UnrealType.h"

UKestrelSettings::UKestrelSettings()
{
	ResetAssetGroups();
	ResetSupportedFileExtensions();
	ResetExcludedDirectories();
}

void UKestrelSettings::ResetSupportedFileExtensions()
{
	SupportedFileExtensions = { TEXT("py"), TEXT("cs"), TEXT("json"), TEXT("cpp"), TEXT("h"), TEXT("uasset"),
		TEXT("umap"), TEXT("ini"), TEXT("uproject"), TEXT("csv") };
}

void UKestrelSettings::ResetExcludedDirectories()
{
	ExcludedDirectories = { TEXT("__ExternalObjects__"), TEXT("__ExternalActors__"), TEXT("Binaries"),
		TEXT("Intermediate"), TEXT("Saved"), TEXT("Build"), TEXT("DerivedDataCache"), TEXT("Engine"), TEXT("Shared"),
		TEXT(".git") };
}

void UKestrelSettings::ResetAssetGroups()
{
}

TSet<FString> UKestrelSettings::GetEnabledAssetClassPatterns() const
{
	return TSet<FString>();
}

void UKestrelSettings::AllowReading()
{
	FKestrelApprovalRule Rule;
	Rule.Decision = EKestrelApproval::Allow;
	Rule.Tool = TEXT("read");
	ApprovalRules.Add(Rule);
	SaveConfig(CPF_Config);
}

FSimpleMulticastDelegate& UKestrelSettings::OnTextSizeChanged()
{
	static FSimpleMulticastDelegate TextSizeChanged;
	return TextSizeChanged;
}

#if WITH_EDITOR
void UKestrelSettings::PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent)
{
	Super::PostEditChangeProperty(PropertyChangedEvent);

	const FName Changed = PropertyChangedEvent.GetPropertyName();
	if (Changed == GET_MEMBER_NAME_CHECKED(UKestrelSettings, bResetSupportedFileExtensions))
	{
		RunResetButton(bResetSupportedFileExtensions, &UKestrelSettings::ResetSupportedFileExtensions);
	}
	else if (Changed == GET_MEMBER_NAME_CHECKED(UKestrelSettings, bResetExcludedDirectories))
	{
		RunResetButton(bResetExcludedDirectories, &UKestrelSettings::ResetExcludedDirectories);
	}
	else if (Changed == GET_MEMBER_NAME_CHECKED(UKestrelSettings, bLetOtherAssistantsIn))
	{
		FKestrelMcpServer::Get().ApplySettings();
	}
	else if (Changed == GET_MEMBER_NAME_CHECKED(UKestrelSettings, TextSize))
	{
		OnTextSizeChanged().Broadcast();
	}
}

void UKestrelSettings::RunResetButton(bool& bButton, void (UKestrelSettings::*Reset)())
{
	if (!bButton)
	{
		return;
	}
	(this->*Reset)();
	bButton = false;
	SaveConfig(CPF_Config);
}
#endif
