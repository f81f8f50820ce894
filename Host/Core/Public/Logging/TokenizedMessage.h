#pragma once

#include "Internationalization/Text.h"
#include "Templates/SharedPointer.h"

namespace EMessageSeverity
{
/** The worst has the smallest number. */
enum Type : int
{
	Error = 1,
	PerformanceWarning = 2,
	Warning = 3,
	Info = 4,
};
}

/** A message with its severity, as logs of messages hold it. */
class FTokenizedMessage : public TSharedFromThis<FTokenizedMessage>
{
public:
	static TSharedRef<FTokenizedMessage> Create(EMessageSeverity::Type InSeverity, const FText& InMessageText = FText())
	{
		const TSharedRef<FTokenizedMessage> Message = MakeShared<FTokenizedMessage>();
		Message->Severity = InSeverity;
		Message->Text = InMessageText;
		return Message;
	}

	EMessageSeverity::Type GetSeverity() const { return Severity; }
	FText ToText() const { return Text; }

private:
	EMessageSeverity::Type Severity = EMessageSeverity::Info;
	FText Text;
};
