#pragma once

#include "Internationalization/Text.h"
#include "UObject/UnrealType.h"

/** A text for people. With a key its text form is NSLOCTEXT(…), without one the bare letters. */
class FTextProperty : public TProperty<FText, FProperty>
{
public:
	DECLARE_FIELD_CLASS(FTextProperty, FProperty)
	using TProperty<FText, FProperty>::TProperty;

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const override;

protected:
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;
};
