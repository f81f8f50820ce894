#include "Values/PyText.h"

namespace PyText
{
/** FString counts in 32 bits. */
constexpr Py_ssize_t MaxLength = 1 << 29;

void AppendCodePoint(FString& Text, Py_UCS4 CodePoint)
{
	if (CodePoint > 0xffff)
	{
		Text.AppendChar(static_cast<TCHAR>(0xd7c0 + (CodePoint >> 10)));
		Text.AppendChar(static_cast<TCHAR>(0xdc00 + (CodePoint & 0x3ff)));
		return;
	}
	Text.AppendChar(static_cast<TCHAR>(CodePoint));
}

FPyRef ToPython(FStringView Text)
{
	int ByteOrder = -1;
	return FPyRef::Steal(PyUnicode_DecodeUTF16(reinterpret_cast<const char*>(Text.GetData()),
		static_cast<Py_ssize_t>(Text.Len()) * static_cast<Py_ssize_t>(sizeof(TCHAR)), "surrogatepass", &ByteOrder));
}

FString ToText(PyObject* Str, Py_ssize_t MaxChars)
{
	const Py_ssize_t Length = FMath::Min(PyUnicode_GET_LENGTH(Str), FMath::Min(MaxChars, MaxLength));
	const int Kind = PyUnicode_KIND(Str);
	const void* const Data = PyUnicode_DATA(Str);
	FString Text;
	Text.Reserve(static_cast<int32>(Length));
	for (Py_ssize_t Index = 0; Index < Length; ++Index)
	{
		AppendCodePoint(Text, PyUnicode_READ(Kind, Data, Index));
	}
	return Text;
}

FString Describe(PyObject* Object)
{
	const FPyRef Str = FPyRef::Steal(PyObject_Str(Object));
	if (!Str)
	{
		PyErr_Clear();
		return FString(Py_TYPE(Object)->tp_name);
	}
	return ToText(Str.Get());
}
}
