#include "UObject/SoftObjectPath.h"

#include "Properties/PropertyText.h"
#include "UObject/Class.h"
#include "UObject/SoftObjectPtr.h"

FSoftObjectPath::FSoftObjectPath(const UObject* Object)
{
	if (Object)
	{
		AssetPath = Object->GetPathName();
	}
}

void FSoftObjectPath::SetPath(const FString& Path)
{
	AssetPath = Path.Equals(TEXT("None")) ? FString() : PropertyText::StripExportPath(Path);
}

FString FSoftObjectPath::GetLongPackageName() const
{
	int32 Dot = INDEX_NONE;
	return AssetPath.FindChar(u'.', Dot) ? AssetPath.Left(Dot) : AssetPath;
}

FString FSoftObjectPath::GetAssetName() const
{
	FString Name;
	if (!AssetPath.Split(TEXT("."), nullptr, &Name))
	{
		return FString();
	}
	int32 Colon = INDEX_NONE;
	return Name.FindChar(u':', Colon) ? Name.Left(Colon) : Name;
}

UObject* FSoftObjectPath::ResolveObject() const
{
	return IsNull() ? nullptr : StaticFindObject(nullptr, nullptr, *AssetPath);
}

UObject* FSoftObjectPath::TryLoad() const
{
	return IsNull() ? nullptr : StaticLoadObject(UObject::StaticClass(), nullptr, *AssetPath);
}

UClass* FSoftClassPath::ResolveClass() const
{
	UObject* Object = ResolveObject();
	return Object && Object->IsA(UClass::StaticClass()) ? static_cast<UClass*>(Object) : nullptr;
}

bool FSoftObjectPath::ExportTextItem(
	FString& ValueStr, const FSoftObjectPath&, UObject* Parent, int32 PortFlags, UObject* ExportRootScope) const
{
	const FString Text = IsNull() ? FString(TEXT("None")) : AssetPath;
	ValueStr += (PortFlags & PPF_Delimited) && !IsNull() ? PropertyText::Quote(Text) : Text;
	return true;
}

bool FSoftObjectPath::ImportTextItem(const TCHAR*& Buffer, int32 PortFlags, UObject* Parent, FOutputDevice* ErrorText)
{
	FString Text;
	const TCHAR* End = PropertyText::ReadPath(Buffer, Text);
	if (!End)
	{
		return false;
	}
	SetPath(Text);
	Buffer = End;
	return true;
}

FSoftObjectPtr& FSoftObjectPtr::operator=(const UObject* Object)
{
	Path = FSoftObjectPath(Object);
	Cached = Object;
	return *this;
}

UObject* FSoftObjectPtr::Get() const
{
	if (!Cached.IsValid())
	{
		Cached = Path.ResolveObject();
	}
	return Cached.Get();
}
