#pragma once

#include "Containers/UnrealString.h"

class FProperty;
class ISettingsSection;
class UObject;

/**
 * Edits a property the way the rows of a details panel do: PreEditChange, the new value, PostEditChangeProperty with an
 * event that tells what was changed. Only properties that a person can edit are touched.
 *
 * A path names the property: "bShow", "Extensions[2]" for an element, "Point.X" for a struct's member. Each call
 * returns an empty text, or what is wrong; then nothing has been changed.
 */
class FHostPropertyEdit
{
public:
	static FString SetValue(UObject& Object, const FString& Path, const FString& ValueText);
	/** Appends an element; with no text, an empty one. */
	static FString AddElement(UObject& Object, const FString& Path, const FString& ValueText = FString());
	/** Puts an empty element in front of another. */
	static FString InsertElement(UObject& Object, const FString& Path, int32 Index);
	static FString RemoveElement(UObject& Object, const FString& Path, int32 Index);
	static FString ClearElements(UObject& Object, const FString& Path);

	/** The value as text, without quotes at the outside; an error text stays in OutError. */
	static FString GetValue(UObject& Object, const FString& Path, FString& OutError);

	/** SetValue on a section's object, and what the settings page does then: the section saves it. */
	static FString SetSectionValue(ISettingsSection& Section, const FString& Path, const FString& ValueText);
	/** Saves the section's object after an edit, unless the section's OnModified says no. */
	static void NotifySection(ISettingsSection& Section);

	/** Whether a person sees the property; and whether it can be changed there. */
	static bool IsShown(const FProperty& Property);
	static bool IsEditable(const FProperty& Property);
};
