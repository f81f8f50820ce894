#pragma once

#include "UObject/UnrealType.h"

/** A value of an enum class. Its text is the enumerator's short name. */
class FEnumProperty : public FProperty
{
public:
	DECLARE_FIELD_CLASS(FEnumProperty, FProperty)
	using FProperty::FProperty;
	~FEnumProperty() override;

	UEnum* GetEnum() const { return Enum; }
	void SetEnum(UEnum* InEnum) { Enum = InEnum; }
	FNumericProperty* GetUnderlyingProperty() const { return UnderlyingProp; }
	/** Takes the property over. */
	void AddCppProperty(FProperty* Property);

	FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const override;
	void CollectTypes(FReferenceCollector& Collector) const override;
	bool SameType(const FProperty* Other) const override;
	int32 GetMinAlignment() const override { return UnderlyingProp->GetMinAlignment(); }
	void LinkInternal() override;
	void InitializeElement(void* Dest) const override { UnderlyingProp->InitializeElement(Dest); }
	void DestroyElement(void* Dest) const override {}
	void CopySingleValue(void* Dest, const void* Src) const override { UnderlyingProp->CopySingleValue(Dest, Src); }
	bool Identical(const void* A, const void* B, uint32 PortFlags = 0) const override
	{
		return UnderlyingProp->Identical(A, B, PortFlags);
	}

protected:
	uint32 GetValueTypeHashInternal(const void* Src) const override { return UnderlyingProp->GetValueTypeHash(Src); }
	void ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent,
		int32 PortFlags, UObject* ExportRootScope) const override;
	const TCHAR* ImportText_Internal(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
		FOutputDevice* ErrorText) const override;

private:
	FNumericProperty* UnderlyingProp = nullptr;
	UEnum* Enum = nullptr;
};
