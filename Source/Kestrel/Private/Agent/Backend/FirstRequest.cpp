#include "Agent/Backend/FirstRequest.h"

#include "Agent/Files/TreeWork.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "KestrelSettings.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"

TSharedRef<FKestrelTreeWork> KestrelFirstRequest::Begin(const FString& Prompt)
{
	const TSharedRef<FJsonObject> First = MakeShared<FJsonObject>();
	First->SetStringField(TEXT("message"), Prompt);
	const TSharedRef<FJsonObject> Last = MakeShared<FJsonObject>();
	Last->SetBoolField(TEXT("is_confirmation_mode"), !GetDefault<UKestrelSettings>()->bAutoApprove);
	const FString Before = KestrelJson::ToCondensedText(First).LeftChop(1) + TEXT(",");
	const FString After = KestrelJson::ToCondensedText(Last).RightChop(1);
	return MakeShared<FKestrelTreeWork>(FPaths::ProjectDir(), [Before, After](const FString& Tree) {
		TArray<uint8> Body = KestrelJson::ToUtf8(Before);
		if (!KestrelJson::IsTooDeep(Tree))
		{
			// A text already, and the largest part of it all.
			Body += KestrelJson::ToUtf8(TEXT("\"file_structure\":"));
			Body += KestrelJson::ToUtf8(Tree);
			Body += KestrelJson::ToUtf8(TEXT(","));
		}
		Body += KestrelJson::ToUtf8(After);
		return Body;
	});
}
