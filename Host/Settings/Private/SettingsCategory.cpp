#include "SettingsCategory.h"

#include "SettingsSection.h"

FSettingsCategory::FSettingsCategory(const FName& InName)
	: Name(InName)
	, DisplayName(FText::FromString(FName::NameToDisplayString(InName.ToString(), false)))
{
}

int32 FSettingsCategory::FindSection(const FName& SectionName) const
{
	return Sections.IndexOfByPredicate(
		[&SectionName](const TSharedPtr<ISettingsSection>& Section) { return Section->GetName() == SectionName; });
}

TSharedRef<ISettingsSection> FSettingsCategory::AddSection(const FName& SectionName, const FText& InDisplayName,
	const FText& InDescription, const TWeakObjectPtr<UObject>& SettingsObject)
{
	const TSharedRef<ISettingsSection> Section =
		MakeShared<FSettingsSection>(AsShared(), SectionName, InDisplayName, InDescription, SettingsObject);
	const int32 Existing = FindSection(SectionName);
	if (Existing == INDEX_NONE)
	{
		Sections.Add(Section);
	}
	else
	{
		Sections[Existing] = Section;
	}
	return Section;
}

TSharedPtr<ISettingsSection> FSettingsCategory::RemoveSection(const FName& SectionName)
{
	const int32 Existing = FindSection(SectionName);
	if (Existing == INDEX_NONE)
	{
		return nullptr;
	}
	const TSharedPtr<ISettingsSection> Section = Sections[Existing];
	Sections.RemoveAt(Existing);
	return Section;
}

void FSettingsCategory::Describe(const FText& InDisplayName, const FText& InDescription)
{
	DisplayName = InDisplayName;
	Description = InDescription;
}

TSharedPtr<ISettingsSection> FSettingsCategory::GetSection(const FName& SectionName) const
{
	const int32 Existing = FindSection(SectionName);
	return Existing == INDEX_NONE ? nullptr : Sections[Existing];
}

int32 FSettingsCategory::GetSections(TArray<TSharedPtr<ISettingsSection>>& OutSections) const
{
	OutSections = Sections;
	return OutSections.Num();
}
