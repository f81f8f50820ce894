#include "Interpreter/PyOutput.h"

DEFINE_LOG_CATEGORY(LogPython);

namespace PyOutput
{
/** The innermost command that is running. */
FPyOutputCapture* Current = nullptr;

/** The line that a stream has begun. One for each stream of the game thread, one for those of all other threads. */
struct FBegunLines
{
	FString Info;
	FString Error;
};

FString& GetBegunLine(EPythonLogOutputType Type)
{
	static FBegunLines OfGameThread;
	static FBegunLines OfOtherThreads;
	FBegunLines& Lines = IsInGameThread() ? OfGameThread : OfOtherThreads;
	return Type == EPythonLogOutputType::Error ? Lines.Error : Lines.Info;
}

FPyOutputCapture* GetCapture()
{
	return IsInGameThread() ? Current : nullptr;
}

void LogLine(EPythonLogOutputType Type, const FString& Line)
{
	switch (Type)
	{
	case EPythonLogOutputType::Info:
		UE_LOG(LogPython, Display, TEXT("%s"), *Line);
		break;
	case EPythonLogOutputType::Warning:
		UE_LOG(LogPython, Warning, TEXT("%s"), *Line);
		break;
	case EPythonLogOutputType::Error:
		UE_LOG(LogPython, Error, TEXT("%s"), *Line);
		break;
	}
}

/** A NUL would end the line for whoever reads the log. */
FString MakeVisible(FStringView Text)
{
	FString Result(Text);
	for (int32 Index = 0; Index < Result.Len(); ++Index)
	{
		if (Result[Index] == u'\0')
		{
			Result[Index] = u'\u2400';
		}
	}
	return Result;
}

void CompleteLine(EPythonLogOutputType Type)
{
	FString& Line = GetBegunLine(Type);
	const FString Complete = MoveTemp(Line);
	Line.Empty();
	FPyOutput::Log(Type, Complete);
}
}

int32 FPyOutput::GetRoom()
{
	const FPyOutputCapture* const Capture = PyOutput::GetCapture();
	return Capture ? Capture->Room : MaxCommandUnits;
}

void FPyOutput::CountLeftOut(int64 Units)
{
	if (FPyOutputCapture* const Capture = PyOutput::GetCapture())
	{
		Capture->LeftOut += Units;
	}
}

void FPyOutput::Log(EPythonLogOutputType Type, FStringView Message)
{
	const FString Text = PyOutput::MakeVisible(Message.Left(GetRoom()));
	CountLeftOut(Message.Len() - Text.Len());
	if (FPyOutputCapture* const Capture = PyOutput::GetCapture())
	{
		if (Capture->Room == 0)
		{
			return;
		}
		Capture->Room -= FMath::Max(1, Text.Len()); // empty lines fill the memory, too
		FPythonLogOutputEntry& Entry = Capture->Entries.AddDefaulted_GetRef();
		Entry.Type = Type;
		Entry.Output = Text;
	}
	TArray<FString> Lines;
	Text.ParseIntoArrayLines(Lines, false);
	if (Lines.IsEmpty())
	{
		Lines.AddDefaulted();
	}
	for (const FString& Line : Lines)
	{
		PyOutput::LogLine(Type, Line);
	}
}

void FPyOutput::Write(EPythonLogOutputType Type, FStringView Text)
{
	while (!Text.IsEmpty())
	{
		FString& Line = PyOutput::GetBegunLine(Type);
		int32 End = Text.Len();
		const bool bCompletes = Text.FindChar(u'\n', End);
		const FStringView Part = Text.Left(bCompletes ? End : Text.Len()).Left(MaxLineUnits - Line.Len());
		Line += Part;
		const bool bWhole = bCompletes && Part.Len() == End;
		Text = Text.RightChop(Part.Len() + (bWhole ? 1 : 0));
		if (bWhole || Line.Len() >= MaxLineUnits)
		{
			PyOutput::CompleteLine(Type);
		}
	}
}

FPyOutputCapture::FPyOutputCapture(TArray<FPythonLogOutputEntry>& InEntries)
	: Entries(InEntries)
	, Enclosing(PyOutput::Current)
{
	PyOutput::Current = this;
}

FPyOutputCapture::~FPyOutputCapture()
{
	for (const EPythonLogOutputType Type : { EPythonLogOutputType::Info, EPythonLogOutputType::Error })
	{
		if (!PyOutput::GetBegunLine(Type).IsEmpty())
		{
			PyOutput::CompleteLine(Type);
		}
	}
	if (LeftOut > 0)
	{
		Room = FMath::Max(Room, 256);
		FPyOutput::Log(EPythonLogOutputType::Warning,
			FString::Printf(TEXT("%lld more characters of output were left out"), LeftOut));
	}
	PyOutput::Current = Enclosing;
}
