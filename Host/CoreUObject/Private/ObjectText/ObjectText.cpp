#include "UObject/ObjectText.h"

#include "Misc/FeedbackContext.h"
#include "Misc/StringOutputDevice.h"
#include "Properties/PropertyText.h"
#include "UObject/Class.h"
#include "UObject/Package.h"
#include "UObject/UnrealType.h"

namespace ObjectText
{
namespace
{
FObjectReferences* Current = nullptr;
const FStringView CustomPrefix = TEXT("CustomProperties ");

bool IsWritten(const FProperty& Property, EExtent Extent)
{
	switch (Extent)
	{
	case EExtent::SavedDifferences:
		return !Property.HasAnyPropertyFlags(CPF_Transient | CPF_SkipSerialization);
	case EExtent::CopiedDifferences:
		return !Property.HasAnyPropertyFlags(CPF_Transient | CPF_DuplicateTransient | CPF_SkipSerialization);
	case EExtent::Transaction:
		break;
	}
	return !Property.HasAnyPropertyFlags(CPF_NonTransactional | CPF_SkipSerialization);
}

/** What the property is compared with; the value itself to have it written whatever it is. */
const void* GetDelta(
	const FProperty& Property, const void* Value, const UObject* Archetype, int32 Index, EExtent Extent)
{
	const UClass* const Owner = Property.GetOwnerClass();
	if (Extent == EExtent::Transaction || !Archetype || !Archetype->IsA(Owner))
	{
		return Value;
	}
	return Property.ContainerPtrToValuePtr<void>(Archetype, Index);
}

/** A reference to what is not written reads as none, which may be the default. */
bool ReadsTheSame(const FProperty& Property, const FString& Text, const void* Delta)
{
	FString DefaultText;
	if (Property.ContainsObjectReference() && !Property.IsA<FStructProperty>())
	{
		Property.ExportTextItem_Direct(DefaultText, Delta, Delta, nullptr, PPF_Delimited | PPF_RoundTrip);
	}
	return DefaultText.Equals(Text) && !Text.IsEmpty();
}

void WriteProperty(const FProperty& Property, const UObject& Object, const UObject* Archetype, EExtent Extent,
	const FString& Spaces, FString& Out)
{
	for (int32 Index = 0; Index < Property.ArrayDim; ++Index)
	{
		const void* const Value = Property.ContainerPtrToValuePtr<void>(&Object, Index);
		const void* const Delta = GetDelta(Property, Value, Archetype, Index, Extent);
		FString Text;
		if (!Property.ExportText_Direct(
				Text, Value, Delta, const_cast<UObject*>(&Object), PPF_Delimited | PPF_RoundTrip) ||
			(Value != Delta && ReadsTheSame(Property, Text, Delta)))
		{
			continue;
		}
		Out += Spaces;
		Property.GetFName().AppendString(Out);
		if (Property.ArrayDim > 1)
		{
			Out += FString::Printf(TEXT("(%d)"), Index);
		}
		((Out += TEXT("=")) += Text) += TEXT("\n");
	}
}

void WriteCustomProperties(const UObject& Object, int32 Indent, FString& Out)
{
	FStringOutputDevice Custom; // ends lines itself; those that end in a line break already are followed by empty ones
	const_cast<UObject&>(Object).ExportCustomProperties(Custom, static_cast<uint32>(Indent));
	const FString Spaces = FString::ChrN(Indent, u' ');
	for (FStringView Rest = Custom; !Rest.IsEmpty();)
	{
		int32 Length = INDEX_NONE;
		const bool bLast = !Rest.FindChar(u'\n', Length);
		const FStringView Line = (bLast ? Rest : Rest.Left(Length)).TrimStartAndEnd();
		Rest = bLast ? FStringView() : Rest.RightChop(Length + 1);
		if (Line.IsEmpty())
		{
			continue;
		}
		checkf(Line.StartsWith(CustomPrefix), TEXT("%s writes '%s', which is no custom property"),
			*Object.GetFullName(), *FString(Line));
		((Out += Spaces) += Line) += TEXT("\n");
	}
}

FString ReadProperty(UObject& Object, const FString& Line)
{
	FString Name;
	const TCHAR* Text = PropertyText::ReadToken(*Line, Name);
	int32 Index = 0;
	if (Text && *Text == u'(')
	{
		Index = FCString::Atoi(Text + 1);
		while (*Text && *Text != u'=')
		{
			++Text;
		}
	}
	if (!Text || *Text != u'=')
	{
		return TEXT("it is neither a property nor the beginning or end of an object");
	}
	const FProperty* const Property = Object.GetClass()->FindPropertyByName(PropertyText::FindName(Name));
	if (!Property || Index < 0 || Index >= Property->ArrayDim)
	{
		return FString::Printf(TEXT("%s has no property %s"), *Object.GetClass()->GetName(), *Name);
	}
	// A value that turns out to be wrong half way must not leave half of it behind.
	const FPropertyValueBuffer Buffer(*Property);
	void* const Value = Property->ContainerPtrToValuePtr<void>(&Object, Index);
	Property->CopySingleValue(Buffer.Get(), Value);
	const TCHAR* const End = Property->ImportText_Direct(Text + 1, Buffer.Get(), &Object, PPF_Delimited, GWarn);
	if (!End || *PropertyText::SkipBlanks(End))
	{
		return FString::Printf(TEXT("the value of %s cannot be read"), *Name);
	}
	Property->CopySingleValue(Value, Buffer.Get());
	return FString();
}
}

void WriteState(const UObject& Object, EExtent Extent, int32 Indent, FString& Out)
{
	const FString Spaces = FString::ChrN(Indent, u' ');
	const UObject* const Archetype = Object.GetArchetype();
	// The parents' properties first, as they are declared first.
	TArray<const UStruct*> Structs;
	for (const UStruct* Struct = Object.GetClass(); Struct; Struct = Struct->GetSuperStruct())
	{
		Structs.Insert(Struct, 0);
	}
	for (const UStruct* Struct : Structs)
	{
		for (TFieldIterator<FProperty> It(Struct, EFieldIterationFlags::IncludeDeprecated); It; ++It)
		{
			if (IsWritten(**It, Extent))
			{
				WriteProperty(**It, Object, Archetype, Extent, Spaces, Out);
			}
		}
	}
	WriteCustomProperties(Object, Indent, Out);
}

FString ReadLine(UObject& Object, const FString& Line)
{
	const FString Text = Line.TrimStart();
	if (FStringView(Text).StartsWith(CustomPrefix))
	{
		Object.ImportCustomProperties(*Text + CustomPrefix.Len(), GWarn);
		return FString();
	}
	return ReadProperty(Object, Text);
}

void ReadState(UObject& Object, const FString& Text, TArray<FString>* OutProblems)
{
	TArray<FString> Lines;
	Text.ParseIntoArray(Lines, TEXT("\n"));
	for (const FString& Line : Lines)
	{
		const FString Problem = ReadLine(Object, Line);
		if (!Problem.IsEmpty() && OutProblems)
		{
			OutProblems->Add(Problem);
		}
	}
}

FString DescribeReference(const UObject* Object)
{
	if (FObjectReferences* const References = FObjectReferences::GetCurrent())
	{
		return References->Describe(Object);
	}
	return Object ? Object->GetExportPath() : TEXT("None");
}

UObject* FindReference(const FString& Text)
{
	if (Text.IsEmpty() || Text == TEXT("None"))
	{
		return nullptr;
	}
	FObjectReferences* const References = FObjectReferences::GetCurrent();
	return References ? References->Find(Text)
					  : StaticFindObject(nullptr, nullptr, *PropertyText::StripExportPath(Text));
}
}

FObjectReferences::FObjectReferences()
	: Enclosing(ObjectText::Current)
{
	ObjectText::Current = this;
}

FObjectReferences::~FObjectReferences()
{
	ObjectText::Current = Enclosing;
}

FObjectReferences* FObjectReferences::GetCurrent()
{
	return ObjectText::Current;
}
