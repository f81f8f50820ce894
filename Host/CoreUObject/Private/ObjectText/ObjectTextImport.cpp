#include "ObjectText/ObjectTextImport.h"

#include "CoreGlobals.h"
#include "Misc/PackageName.h"
#include "Objects/ObjectTable.h"
#include "Properties/PropertyText.h"
#include "UObject/Class.h"
#include "UObject/ObjectText.h"
#include "UObject/Package.h"

DEFINE_LOG_CATEGORY_STATIC(LogLinker, Log, All);

namespace ObjectTextImport
{
struct FFlagName
{
	EObjectFlags Flag;
	const TCHAR* Name;
};

// In this order in files. What else an object has for flags follows from where it lies and how it came to be.
constexpr FFlagName FlagNames[] = {
	{ RF_Public, TEXT("Public") },
	{ RF_Standalone, TEXT("Standalone") },
	{ RF_Transactional, TEXT("Transactional") },
	{ RF_ArchetypeObject, TEXT("ArchetypeObject") },
	{ RF_TextExportTransient, TEXT("TextExportTransient") },
	{ RF_DuplicateTransient, TEXT("DuplicateTransient") },
};

bool IsName(const FString& Text)
{
	if (Text.IsEmpty() || Text.Len() >= NAME_SIZE || Text == TEXT("None"))
	{
		return false;
	}
	for (const TCHAR C : Text)
	{
		if (C <= u' ' || FStringView(TEXT(".:/\\\"',")).Contains(FStringView(&C, 1)))
		{
			return false;
		}
	}
	return true;
}

/** A class without a native parent has not been compiled yet. */
bool IsComplete(const UClass& Class)
{
	const UStruct* Struct = &Class;
	while (Struct && !static_cast<const UClass*>(Struct)->IsNative())
	{
		Struct = Struct->GetSuperStruct();
	}
	return Struct != nullptr;
}

/** The parts that reflection is made of are never in a file, and packages have files of their own. */
bool CanBeInFile(const UClass& Class)
{
	return !Class.HasAnyClassFlags(CLASS_Intrinsic | CLASS_Interface);
}

bool IsNameOfDefaultObject(const FString& Name, const FString& ClassPath)
{
	int32 Dot = INDEX_NONE;
	ClassPath.FindLastChar(u'.', Dot);
	return Name == TEXT("Default__") + ClassPath.RightChop(Dot + 1);
}
}

FString DescribeObjectFlags(EObjectFlags Flags)
{
	FString Text;
	for (const ObjectTextImport::FFlagName& Each : ObjectTextImport::FlagNames)
	{
		if (Flags & Each.Flag)
		{
			Text += (Text.IsEmpty() ? TEXT("") : TEXT(",")) + FString(Each.Name);
		}
	}
	return Text;
}

EObjectFlags ReadObjectFlags(const FString& Text)
{
	TArray<FString> Names;
	Text.ParseIntoArray(Names, TEXT(","));
	EObjectFlags Flags = RF_NoFlags;
	for (const ObjectTextImport::FFlagName& Each : ObjectTextImport::FlagNames)
	{
		Flags |= Names.Contains(Each.Name) ? Each.Flag : RF_NoFlags;
	}
	return Flags;
}

FObjectTextImport::FObjectTextImport(
	FString&& InText, UObject* InRoot, const FString& InSourceName, int32 FirstLineNumber)
	: Source(MoveTemp(InText))
	, Root(InRoot)
	, SourceName(InSourceName)
	, Parser(Source, FirstLineNumber)
{
	Objects.SetNumZeroed(Parser.Objects.Num());
	States.SetNumZeroed(Parser.Objects.Num());
	for (const FObjectTextProblem& Problem : Parser.Problems)
	{
		Warn(Problem.LineNumber, Problem.Text);
	}
}

void FObjectTextImport::Warn(int32 LineNumber, const FString& Message) const
{
	UE_LOG(LogLinker, Warning, TEXT("%s(%d): %s"), *SourceName, LineNumber, *Message);
}

void FObjectTextImport::CreateObjects(EObjectFlags InFlagMask, EObjectFlags InExtraFlags)
{
	FlagMask = InFlagMask;
	ExtraFlags = InExtraFlags;
	for (int32 Index = 0; Index < Parser.Objects.Num(); ++Index)
	{
		const FObjectRecord& Record = Parser.Objects[Index];
		UClass* const Class = FindObject<UClass>(nullptr, *Record.ClassPath);
		const bool bOuterDeferred = Record.Parent != INDEX_NONE && States[Record.Parent] == EState::Deferred;
		const bool bNative = FPackageName::IsScriptPackage(Record.ClassPath);
		if (bOuterDeferred || (Class ? !ObjectTextImport::IsComplete(*Class) : !bNative))
		{
			DeferredPaths.Add(GetPathInRoot(Index));
			continue;
		}
		CreateObject(Index, Class);
	}
}

UObject* FObjectTextImport::GetOuterOf(const FObjectRecord& Record) const
{
	return Record.Parent == INDEX_NONE ? Root : Objects[Record.Parent];
}

EObjectFlags FObjectTextImport::GetFlags(const FObjectRecord& Record) const
{
	return (ReadObjectFlags(Record.Flags) & FlagMask) | ExtraFlags;
}

FString FObjectTextImport::GetPathInRoot(int32 Index) const
{
	TArray<FString> Names;
	for (; Index != INDEX_NONE; Index = Parser.Objects[Index].Parent)
	{
		Names.Insert(Parser.Objects[Index].Name, 0);
	}
	FString Path = Names[0];
	for (int32 Each = 1; Each < Names.Num(); ++Each)
	{
		Path += (Each == 1 ? TEXT(":") : TEXT(".")) + Names[Each];
	}
	return Path;
}

bool FObjectTextImport::IsDeferred(const FString& PathInRoot) const
{
	return DeferredPaths.Contains(PathInRoot);
}

void FObjectTextImport::GiveUp(int32 Index, const FString& Reason)
{
	States[Index] = EState::GivenUp;
	if (!Reason.IsEmpty())
	{
		Warn(Parser.Objects[Index].LineNumber, Reason);
	}
}

void FObjectTextImport::CreateObject(int32 Index, UClass* Class)
{
	const FObjectRecord& Record = Parser.Objects[Index];
	UObject* const Outer = GetOuterOf(Record);
	if (!Outer)
	{
		GiveUp(Index, FString()); // the outer has been told of
		return;
	}
	if (!Class || !ObjectTextImport::IsComplete(*Class))
	{
		GiveUp(
			Index, FString::Printf(TEXT("%s is left out: its class %s is missing"), *Record.Name, *Record.ClassPath));
		return;
	}
	Objects[Index] = FindOrMake(Record, *Class, *Outer);
	if (!Objects[Index])
	{
		GiveUp(Index, FString::Printf(TEXT("%s is left out: there can be no %s of this name here"), *Record.Name,
						  *Record.ClassPath));
		return;
	}
	States[Index] = EState::Made;
}

UObject* FObjectTextImport::FindOrMake(const FObjectRecord& Record, UClass& Class, UObject& Outer)
{
	if (!ObjectTextImport::IsName(Record.Name) || !ObjectTextImport::CanBeInFile(Class))
	{
		return nullptr;
	}
	if (&Outer == Root && !Class.IsNative() && ObjectTextImport::IsNameOfDefaultObject(Record.Name, Record.ClassPath))
	{
		UObject* const DefaultObject = Class.GetDefaultObject();
		DefaultObject->SetFlags(RF_WasLoaded);
		return DefaultObject;
	}
	if (Class.HasAnyClassFlags(CLASS_Abstract))
	{
		return nullptr;
	}
	const FName Name(*Record.Name);
	UObject* const Existing = FObjectTable::Get().Find(&Outer, Name);
	if (!Existing)
	{
		return StaticConstructObject(&Class, &Outer, Name, GetFlags(Record));
	}
	if (!IsValid(Existing))
	{
		UObject* const Away = GetTransientPackage();
		FObjectTable::Get().SetIdentity(
			*Existing, Existing->GetClass(), Away, MakeUniqueObjectName(Away, Existing->GetClass()));
		return StaticConstructObject(&Class, &Outer, Name, GetFlags(Record));
	}
	// A part that the outer's constructor has made; anything else of this name is another object of the file.
	if (Existing->GetClass() != &Class || !Existing->IsDefaultSubobject() || Existing->HasAnyFlags(RF_NeedLoad))
	{
		return nullptr;
	}
	Existing->SetFlags(GetFlags(Record));
	return Existing;
}

void FObjectTextImport::ReadValues()
{
	for (int32 Index = 0; Index < Objects.Num(); ++Index)
	{
		ReadLines(Index);
	}
}

void FObjectTextImport::ReadLines(int32 Index)
{
	for (int32 Line = 0; Objects[Index] && Line < Parser.Objects[Index].Lines.Num(); ++Line)
	{
		ReadLine(Index, Parser.Objects[Index].Lines[Line]);
		if (bReadLineAgain)
		{
			LinesAgain.Emplace(Index, Line);
		}
	}
	if (Objects[Index])
	{
		Objects[Index]->ClearFlags(RF_NeedLoad);
	}
}

void FObjectTextImport::ReadLine(int32 Index, const FObjectRecord::FLine& Line)
{
	LineNumberHere = Line.Number;
	bReadLineAgain = false;
	const FString Problem = ObjectText::ReadLine(*Objects[Index], FString(Line.Text));
	if (!Problem.IsEmpty())
	{
		WarnHere(Problem);
	}
}

TArray<int32> FObjectTextImport::GetPartsFirst() const
{
	TArray<int32> Order;
	TArray<int32> Open;
	for (int32 Index = 0; Index <= Parser.Objects.Num(); ++Index)
	{
		const int32 Parent = Index < Parser.Objects.Num() ? Parser.Objects[Index].Parent : INDEX_NONE;
		while (!Open.IsEmpty() && Open.Last() != Parent)
		{
			Order.Add(Open.Pop(EAllowShrinking::No));
		}
		Open.Add(Index);
	}
	return Order;
}

void FObjectTextImport::PostLoad()
{
	for (const int32 Index : GetPartsFirst())
	{
		UObject* const Object = Objects[Index];
		if (IsValid(Object) && Object->HasAnyFlags(RF_NeedPostLoad))
		{
			Object->ClearFlags(RF_NeedPostLoad);
			Object->PostLoad();
		}
	}
}

void FObjectTextImport::CreateDeferred(TFunctionRef<void(UClass&)> Prepare)
{
	for (int32 Index = 0; Index < Objects.Num(); ++Index)
	{
		if (States[Index] != EState::Deferred)
		{
			continue;
		}
		UClass* const Class = FindObject<UClass>(nullptr, *Parser.Objects[Index].ClassPath);
		if (Class)
		{
			Prepare(*Class);
		}
		CreateObject(Index, Class);
		if (Objects[Index])
		{
			MadeLate.Add(Index);
		}
	}
	DeferredPaths.Empty();
}

void FObjectTextImport::ReadDeferredValues()
{
	const TArray<TPair<int32, int32>> Again = MoveTemp(LinesAgain);
	LinesAgain.Empty();
	for (const TPair<int32, int32>& Each : Again)
	{
		if (IsValid(Objects[Each.Key]))
		{
			ReadLine(Each.Key, Parser.Objects[Each.Key].Lines[Each.Value]);
		}
	}
	for (const int32 Index : MadeLate)
	{
		ReadLines(Index);
	}
	MadeLate.Empty();
	PostLoad();
}
