#include "ObjectText/ObjectTextWriter.h"

#include "ObjectText/ObjectTextImport.h"
#include "Objects/ObjectTable.h"
#include "UObject/Class.h"

void FObjectTextWriter::Write(const UObject& Object, int32 Indent)
{
	Written.Add(&Object);
	const FString Spaces = FString::ChrN(Indent, u' ');
	Text += FString::Printf(
		TEXT("%sBegin Object Class=%s Name=\"%s\""), *Spaces, *Object.GetClass()->GetPathName(), *Object.GetName());
	const FString Flags = DescribeObjectFlags(Object.GetFlags());
	Text += (Flags.IsEmpty() ? TEXT("") : TEXT(" Flags=")) + Flags + TEXT("\n");
	for (const UObject* Part : FObjectTable::Get().GetChildren(Object))
	{
		if (Wanted.Contains(Part))
		{
			Write(*Part, Indent + ObjectText::IndentWidth);
		}
	}
	ObjectText::WriteState(Object, Extent, Indent + ObjectText::IndentWidth, Text);
	Text += Spaces + TEXT("End Object\n");
}

bool IsMadeByCompiler(const UObject& Object)
{
	return Object.IsA(UField::StaticClass()) && !Object.IsA(UClass::StaticClass()) &&
		   Object.GetTypedOuter(UStruct::StaticClass());
}
