#include "HostPropertyEdit.h"

#include "ISettingsSection.h"
#include "UObject/UnrealType.h"

namespace HostPropertyEdit
{
/** A value that a path leads to. */
struct FPlace
{
	FProperty* Member = nullptr;   // the object's own property
	FProperty* Property = nullptr; // the innermost: an element's or a struct member's
	void* Value = nullptr;
};

/** Takes "Name" or "Name[3]" off a path. The index is INDEX_NONE when there is none. */
FString TakeStep(FString& Path, int32& OutIndex)
{
	FString Step = Path;
	if (!Path.Split(TEXT("."), &Step, &Path, ESearchCase::CaseSensitive))
	{
		Path.Empty();
	}
	FString IndexText;
	OutIndex = INDEX_NONE;
	if (Step.EndsWith(TEXT("]")) && FString(Step).Split(TEXT("["), &Step, &IndexText))
	{
		OutIndex = FCString::Atoi(*IndexText);
	}
	return Step;
}

/** Goes from an array to its element. False when the index is out of range or the property no array. */
bool EnterElement(FPlace& Place, int32 Index)
{
	if (const FArrayProperty* ArrayProperty = CastField<FArrayProperty>(Place.Property))
	{
		const FScriptArrayHelper Array(ArrayProperty, Place.Value);
		if (!Array.IsValidIndex(Index))
		{
			return false;
		}
		Place.Property = ArrayProperty->Inner;
		Place.Value = Array.GetRawPtr(Index);
		return true;
	}
	if (Index < 0 || Index >= Place.Property->ArrayDim)
	{
		return false;
	}
	Place.Value = static_cast<uint8*>(Place.Value) + static_cast<SIZE_T>(Index) * Place.Property->ElementSize;
	return true;
}

FString FindPlace(UObject& Object, const FString& Path, FPlace& OutPlace)
{
	FString Rest = Path;
	const UStruct* Struct = Object.GetClass();
	void* Container = &Object;
	while (!Rest.IsEmpty())
	{
		int32 Index = INDEX_NONE;
		const FString Name = TakeStep(Rest, Index);
		FProperty* const Property =
			Struct && Name.Len() < NAME_SIZE ? Struct->FindPropertyByName(FName(*Name)) : nullptr;
		if (!Property || (!OutPlace.Member && !FHostPropertyEdit::IsShown(*Property)))
		{
			return FString::Printf(
				TEXT("%s has no property that can be seen as '%s'"), *Object.GetClass()->GetName(), *Path);
		}
		OutPlace.Member = OutPlace.Member ? OutPlace.Member : Property;
		OutPlace.Property = Property;
		OutPlace.Value = Property->ContainerPtrToValuePtr<void>(Container);
		if (Index != INDEX_NONE && !EnterElement(OutPlace, Index))
		{
			return FString::Printf(TEXT("'%s' has no element %d"), *Name, Index);
		}
		const FStructProperty* const StructProperty = CastField<FStructProperty>(OutPlace.Property);
		Struct = StructProperty ? StructProperty->Struct : nullptr;
		Container = OutPlace.Value;
	}
	return OutPlace.Property ? FString() : FString(TEXT("The path is empty"));
}

FString FindEditable(UObject& Object, const FString& Path, FPlace& OutPlace)
{
	const FString Error = FindPlace(Object, Path, OutPlace);
	if (Error.IsEmpty() && !FHostPropertyEdit::IsEditable(*OutPlace.Member))
	{
		return FString::Printf(TEXT("'%s' cannot be changed"), *Path);
	}
	return Error;
}

void NotifyChanged(UObject& Object, const FPlace& Place, EPropertyChangeType::Type ChangeType)
{
	const UObject* const Objects[] = { &Object };
	FPropertyChangedEvent Event(Place.Property, ChangeType, Objects);
	Event.SetActiveMemberProperty(Place.Member);
	Object.PostEditChangeProperty(Event);
}

/** Reads the text into a value of the property that is not part of any object yet. */
bool Parse(const FPropertyValueBuffer& Buffer, const FProperty& Property, const FString& Text, UObject& Object)
{
	const TCHAR* const End = Property.ImportText_Direct(*Text, Buffer.Get(), &Object, PPF_None);
	return End && *End == u'\0';
}

FString FindArray(UObject& Object, const FString& Path, FPlace& OutPlace, const FArrayProperty*& OutProperty)
{
	const FString Error = FindEditable(Object, Path, OutPlace);
	OutProperty = Error.IsEmpty() ? CastField<FArrayProperty>(OutPlace.Property) : nullptr;
	return Error.IsEmpty() && !OutProperty ? FString::Printf(TEXT("'%s' is no array"), *Path) : Error;
}

/** The same for an array that must have an element of this index. */
FString FindElement(
	UObject& Object, const FString& Path, int32 Index, FPlace& OutPlace, const FArrayProperty*& OutProperty)
{
	const FString Error = FindArray(Object, Path, OutPlace, OutProperty);
	if (Error.IsEmpty() && !FScriptArrayHelper(OutProperty, OutPlace.Value).IsValidIndex(Index))
	{
		return FString::Printf(TEXT("'%s' has no element %d"), *Path, Index);
	}
	return Error;
}
}

bool FHostPropertyEdit::IsShown(const FProperty& Property)
{
	return Property.HasAnyPropertyFlags(CPF_Edit);
}

bool FHostPropertyEdit::IsEditable(const FProperty& Property)
{
	return IsShown(Property) && !Property.HasAnyPropertyFlags(CPF_EditConst | CPF_DisableEditOnTemplate);
}

FString FHostPropertyEdit::SetValue(UObject& Object, const FString& Path, const FString& ValueText)
{
	HostPropertyEdit::FPlace Place;
	const FString Error = HostPropertyEdit::FindEditable(Object, Path, Place);
	if (!Error.IsEmpty())
	{
		return Error;
	}
	const FPropertyValueBuffer NewValue(*Place.Property);
	// A struct keeps the members that the text does not name.
	Place.Property->CopySingleValue(NewValue.Get(), Place.Value);
	if (!HostPropertyEdit::Parse(NewValue, *Place.Property, ValueText, Object))
	{
		return FString::Printf(TEXT("'%s' is no value for '%s'"), *ValueText, *Path);
	}
	Object.PreEditChange(Place.Member);
	Place.Property->CopySingleValue(Place.Value, NewValue.Get());
	HostPropertyEdit::NotifyChanged(Object, Place, EPropertyChangeType::ValueSet);
	return FString();
}

FString FHostPropertyEdit::AddElement(UObject& Object, const FString& Path, const FString& ValueText)
{
	HostPropertyEdit::FPlace Place;
	const FArrayProperty* ArrayProperty = nullptr;
	const FString Error = HostPropertyEdit::FindArray(Object, Path, Place, ArrayProperty);
	if (!Error.IsEmpty())
	{
		return Error;
	}
	const FPropertyValueBuffer NewValue(*ArrayProperty->Inner);
	if (!ValueText.IsEmpty() && !HostPropertyEdit::Parse(NewValue, *ArrayProperty->Inner, ValueText, Object))
	{
		return FString::Printf(TEXT("'%s' is no value for an element of '%s'"), *ValueText, *Path);
	}
	Object.PreEditChange(Place.Member);
	const FScriptArrayHelper Array(ArrayProperty, Place.Value);
	ArrayProperty->Inner->CopySingleValue(Array.GetRawPtr(Array.AddValue()), NewValue.Get());
	HostPropertyEdit::NotifyChanged(Object, Place, EPropertyChangeType::ArrayAdd);
	return FString();
}

FString FHostPropertyEdit::InsertElement(UObject& Object, const FString& Path, int32 Index)
{
	HostPropertyEdit::FPlace Place;
	const FArrayProperty* ArrayProperty = nullptr;
	const FString Error = HostPropertyEdit::FindElement(Object, Path, Index, Place, ArrayProperty);
	if (!Error.IsEmpty())
	{
		return Error;
	}
	const FScriptArrayHelper Array(ArrayProperty, Place.Value);
	Object.PreEditChange(Place.Member);
	Array.InsertValues(Index);
	HostPropertyEdit::NotifyChanged(Object, Place, EPropertyChangeType::ArrayAdd);
	return FString();
}

FString FHostPropertyEdit::RemoveElement(UObject& Object, const FString& Path, int32 Index)
{
	HostPropertyEdit::FPlace Place;
	const FArrayProperty* ArrayProperty = nullptr;
	const FString Error = HostPropertyEdit::FindElement(Object, Path, Index, Place, ArrayProperty);
	if (!Error.IsEmpty())
	{
		return Error;
	}
	const FScriptArrayHelper Array(ArrayProperty, Place.Value);
	Object.PreEditChange(Place.Member);
	Array.RemoveValues(Index);
	HostPropertyEdit::NotifyChanged(Object, Place, EPropertyChangeType::ArrayRemove);
	return FString();
}

FString FHostPropertyEdit::ClearElements(UObject& Object, const FString& Path)
{
	HostPropertyEdit::FPlace Place;
	const FArrayProperty* ArrayProperty = nullptr;
	const FString Error = HostPropertyEdit::FindArray(Object, Path, Place, ArrayProperty);
	if (!Error.IsEmpty())
	{
		return Error;
	}
	Object.PreEditChange(Place.Member);
	FScriptArrayHelper(ArrayProperty, Place.Value).EmptyValues();
	HostPropertyEdit::NotifyChanged(Object, Place, EPropertyChangeType::ArrayClear);
	return FString();
}

FString FHostPropertyEdit::GetValue(UObject& Object, const FString& Path, FString& OutError)
{
	HostPropertyEdit::FPlace Place;
	OutError = HostPropertyEdit::FindPlace(Object, Path, Place);
	FString Text;
	if (OutError.IsEmpty())
	{
		Place.Property->ExportTextItem_Direct(Text, Place.Value, Place.Value, &Object, PPF_None);
	}
	return Text;
}

FString FHostPropertyEdit::SetSectionValue(ISettingsSection& Section, const FString& Path, const FString& ValueText)
{
	UObject* const Object = Section.GetSettingsObject().Get();
	if (!Object)
	{
		return TEXT("The section's object is gone");
	}
	const FString Error = SetValue(*Object, Path, ValueText);
	if (Error.IsEmpty())
	{
		NotifySection(Section);
	}
	return Error;
}

void FHostPropertyEdit::NotifySection(ISettingsSection& Section)
{
	if (Section.NotifySectionOnPropertyModified())
	{
		Section.Save();
	}
}
