#pragma once

#include "CoreMinimal.h"
#include "KestrelApprovalRule.h"
#include "UObject/Object.h"
#include "UObject/UnrealType.h"

#include "KestrelSettings.generated.h"

/** What the assistant is meant to do with a prompt. */
UENUM()
enum class EKestrelMode : uint8
{
	ExplainerMode UMETA(DisplayName = "Explainer Mode"),
	ExplainerAndImplementerMode UMETA(DisplayName = "Explainer And Implementer Mode")
};

/** Enum defining filtering options for Blueprint content usage */
UENUM()
enum class EKestrelBlueprintContentFilter : uint8
{
	UseAllContent UMETA(DisplayName = "Use All Content"),
	UseOnlyBlueprintVisibleContent UMETA(DisplayName = "Use Only Blueprint Visible Content"),
	UseOnlyBlueprintClassContent UMETA(DisplayName = "Use Only Blueprint Class Content")
};

/** How long the prompt logs and the records for undo are kept; applied when the editor starts. */
UENUM()
enum class EKestrelLogDeletionPolicy : uint8
{
	DeleteAllOnStart UMETA(DisplayName = "Always Delete All Logs"),
	KeepLast30Days UMETA(DisplayName = "Keep Last 30 Days"),
	KeepAll UMETA(DisplayName = "Keep All Logs")
};

/** Asset group categories for filtering in file tree */
UENUM(BlueprintType)
enum class EAssetGroupCategory : uint8
{
	CoreEngine UMETA(DisplayName = "Core Engine Assets"),
	Rendering UMETA(DisplayName = "Rendering Assets"),
	Textures UMETA(DisplayName = "Texture Assets"),
	Mesh UMETA(DisplayName = "Mesh Assets"),
	Animation UMETA(DisplayName = "Animation Assets"),
	Physics UMETA(DisplayName = "Physics Assets"),
	Blueprint UMETA(DisplayName = "Blueprint Assets"),
	Sound UMETA(DisplayName = "Sound Assets"),
	Media UMETA(DisplayName = "Media Assets"),
	FX UMETA(DisplayName = "FX Assets"),
	Data UMETA(DisplayName = "Data Assets"),
	AI UMETA(DisplayName = "AI Assets"),
	Gameplay UMETA(DisplayName = "Gameplay Assets"),
	UI UMETA(DisplayName = "User Interface Assets"),
	Landscape UMETA(DisplayName = "Landscape and Foliage Assets"),
	Cinematics UMETA(DisplayName = "Cinematics and Sequencer Assets"),
	Paper2D UMETA(DisplayName = "Paper 2D Assets"),
	Networking UMETA(DisplayName = "Networking Assets"),
	Development UMETA(DisplayName = "Development & Tools Assets"),
	VR_AR UMETA(DisplayName = "VR/AR Assets"),
	PhysicsSimulation UMETA(DisplayName = "Physics Simulation Assets"),
	Miscellaneous UMETA(DisplayName = "Miscellaneous Assets"),
	Custom UMETA(DisplayName = "Custom Assets")
};

/** How a file is saved that a tool creates or inserts text into. */
UENUM()
enum class EKestrelFileEncoding : uint8
{
	/** Plain bytes for ASCII, otherwise UTF-16 with a byte order mark: the engine's own choice. */
	Automatic UMETA(DisplayName = "Automatic"),
	Utf8 UMETA(DisplayName = "UTF-8")
};

/** What the user can choose, kept in the user's own editor settings and not in the project. */
UCLASS(config = EditorPerUserSettings)
class KESTREL_API UKestrelSettings : public UObject
{
	GENERATED_BODY()

public:
	UKestrelSettings();

	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Authentication",
		meta = (DisplayName = "API Key", ToolTip = "Authentication key required to access Kestrel AI services",
			PasswordField = true))
	FString ApiKey;

	/** An EKestrelMode. */
	UPROPERTY()
	uint8 ModeFlag = 1;

	/** What of a Blueprint the service is told. */
	UPROPERTY()
	EKestrelBlueprintContentFilter BlueprintContentFilter =
		EKestrelBlueprintContentFilter::UseOnlyBlueprintVisibleContent;

	/** Lets the agent run the tools of an answer without asking, even where a rule says to ask; denied is denied. */
	UPROPERTY()
	bool bAutoApprove = false;

	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Interface",
		meta = (DisplayName = "Display File Changes In Chat",
			ToolTip =
				"Enables or disables the display of file modifications, creations, and deletions in the chat interface"))
	bool bDisplayFileChangesInChat = true;

	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Interface",
		meta = (DisplayName = "Formatted Answers",
			ToolTip =
				"Shows the headings, lists, tables and code of answers as such; otherwise answers are shown as they are written"))
	bool bFormattedAnswers = true;

	/** Points. What has another size, a heading for instance, grows and shrinks with it. */
	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Interface",
		meta = (DisplayName = "Text Size", ClampMin = 6, ClampMax = 32,
			ToolTip = "Size of the text of answers, prompts and code in the panel, in points"))
	int32 TextSize = DefaultTextSize;

	static constexpr int32 DefaultTextSize = 10;
	/** The user has chosen another size. */
	static FSimpleMulticastDelegate& OnTextSizeChanged();

	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Approval",
		meta = (DisplayName = "Approval Rules",
			ToolTip = "Your own rules for this project: what runs without asking, what asks, and what never runs"))
	TArray<FKestrelApprovalRule> ApprovalRules;

	/** Whether a server listens for assistants in terminals and code editors. */
	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Other Assistants",
		meta = (DisplayName = "Let Other Assistants In",
			ToolTip =
				"Lets assistants in terminals and code editors of this machine use Kestrel's tools (Model Context Protocol); what changes something waits for your approval"))
	bool bLetOtherAssistantsIn = false;

	/** A button in the shape of a box: ticking it puts the default extensions back. */
	UPROPERTY(EditAnywhere, Category = "Kestrel|Filtering|File|Extensions",
		meta = (DisplayName = "Reset Supported File Extensions"))
	bool bResetSupportedFileExtensions = false;

	/** Without a leading dot. */
	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Filtering|File|Extensions",
		meta = (DisplayName = "Supported File Extensions",
			ToolTip =
				"Additional file extensions beyond UE4's default types (py, cs, json, cpp, h, uasset, umap, ini, uproject, csv)"))
	TArray<FString> SupportedFileExtensions;

	/** A button in the shape of a box: ticking it puts the default directories back. */
	UPROPERTY(EditAnywhere, Category = "Kestrel|Filtering|File|Directories",
		meta = (DisplayName = "Reset Excluded Directories"))
	bool bResetExcludedDirectories = false;

	/** Names of single directories; a name excludes the directory wherever it lies. */
	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Filtering|File|Directories",
		meta = (DisplayName = "Excluded Directories", ToolTip = "Directories to exclude from the file tree"))
	TArray<FString> ExcludedDirectories;

	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Files",
		meta = (DisplayName = "Encoding of created and inserted files",
			ToolTip =
				"Automatic saves text beyond ASCII as UTF-16, which not every compiler accepts; UTF-8 saves without a byte order mark"))
	EKestrelFileEncoding NewFileEncoding = EKestrelFileEncoding::Automatic;

	/** Kept for settings of earlier versions; nothing reads it. */
	UPROPERTY()
	bool bReservedFlag = true;

	UPROPERTY(config, EditAnywhere, Category = "Kestrel|Logs",
		meta = (DisplayName = "Log Retention Policy",
			ToolTip = "Defines how long log files should be kept before automatic deletion"))
	EKestrelLogDeletionPolicy LogRetentionPolicy = EKestrelLogDeletionPolicy::KeepLast30Days;

	/** Kept for settings of earlier versions; nothing reads it. */
	UPROPERTY()
	float ReservedNumber = 10.0f;

	void ResetSupportedFileExtensions();
	void ResetExcludedDirectories();
	/** Asset groups have no stored selection, so there is nothing to put back. */
	void ResetAssetGroups();

	/** Adds the rule that lets tools read the project's files and assets without asking, and saves. */
	void AllowReading();

	/** Class-name patterns of the assets that the file tree keeps; empty, so that it keeps them all. */
	TSet<FString> GetEnabledAssetClassPatterns() const;

#if WITH_EDITOR
	virtual void PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent) override;
#endif

private:
#if WITH_EDITOR
	/** Unticks the box, puts the defaults back and saves. */
	void RunResetButton(bool& bButton, void (UKestrelSettings::*Reset)());
#endif
};
