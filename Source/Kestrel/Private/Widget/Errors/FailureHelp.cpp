#include "Widget/Errors/FailureHelp.h"

#include "Kestrel.h"

#define LOCTEXT_NAMESPACE "KestrelFailureHelp"

namespace KestrelFailureHelp
{
namespace
{
/** What has to hold besides the text. */
enum class ECondition : uint8
{
	None,
	KeyOfProject,
	StageRefused,
};

/** A failure's message, and what helps. The first row that fits is taken. */
struct FRow
{
	const TCHAR* Message;
	bool bWhole; // otherwise something follows
	ECondition Condition;
	FText Sentence;
	EKestrelRemedy Remedy;
};

const TArray<FRow>& GetRows()
{
	using enum ECondition;
	static const TArray<FRow> Rows = {
		{ TEXT(" [ Cancelled ]\n\n"), false, StageRefused,
			LOCTEXT("StageRefused", "Correct the address in the project's Config/DefaultPlugin.ini and start again."),
			EKestrelRemedy::OpenServiceFile },
		{ TEXT(" [ Cancelled ]\n\nRequest Failed\n"), true, None, LOCTEXT("NoAnswer", "The service gave no answer."),
			EKestrelRemedy::TestConnection },
		{ TEXT(" [ Cancelled ]\n\nMake sure you have a valid API key.\n"), true, KeyOfProject,
			LOCTEXT("ProjectKey", "The service refused the key that the project sets in Config/DefaultPlugin.ini."),
			EKestrelRemedy::OpenServiceFile },
		{ TEXT(" [ Cancelled ]\n\nMake sure you have a valid API key.\n"), true, None,
			LOCTEXT("Key", "The service refused your key, or you have not entered one yet."),
			EKestrelRemedy::OpenSettings },
		{ TEXT(" [ Cancelled ]\n\nFailed to parse initial response\n"), true, None,
			LOCTEXT("NoService", "Something answered, but not as a Kestrel service does."),
			EKestrelRemedy::TestConnection },
		{ TEXT(" [ Cancelled ]\n\nFailed to get request ID from response\n"), true, None,
			LOCTEXT("NoId", "The service answered without taking the request on."), EKestrelRemedy::TestConnection },
		{ TEXT(" [ Cancelled ]\n\nRequest failed: "), false, None,
			LOCTEXT("ServiceFailed", "The service could not finish this request; if it gave a reason, it is above."),
			EKestrelRemedy::TestConnection },
		{ TEXT(" [ Cancelled ]\n\nFailed to parse API response\n"), true, None,
			LOCTEXT("NoSense", "The service took the request on, but its replies made no sense."),
			EKestrelRemedy::ShowLog },
		{ TEXT("Compilation failed, processing error..."), true, None,
			LOCTEXT("Compilation", "The compiler's messages are in the output log."), EKestrelRemedy::ShowLog },
	};
	return Rows;
}

bool Holds(ECondition Condition)
{
	switch (Condition)
	{
	case ECondition::KeyOfProject:
		return FKestrelModule::IsKeyOfProject();
	case ECondition::StageRefused:
		return FKestrelModule::IsStageRefused();
	case ECondition::None:
		break;
	}
	return true;
}

bool Fits(const FRow& Row, const FString& Message)
{
	const bool bIsText = Row.bWhole ? Message.Equals(Row.Message, ESearchCase::CaseSensitive)
									: Message.StartsWith(Row.Message, ESearchCase::CaseSensitive);
	return bIsText && Holds(Row.Condition);
}
}

TOptional<FKestrelFailureHelp> Find(const FString& Message)
{
	const FRow* Row = GetRows().FindByPredicate([&Message](const FRow& Each) { return Fits(Each, Message); });
	return Row ? FKestrelFailureHelp{ Row->Sentence, Row->Remedy } : TOptional<FKestrelFailureHelp>();
}
}

#undef LOCTEXT_NAMESPACE
