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
	return MakeShared<FKestrelTreeWork>(FPaths::ProjectDir(), [Before, After](const FKestrelTreeText& Tree) {
		const TArray<uint8> Start = KestrelJson::ToUtf8(Before + TEXT("\"file_structure\":"));
		const TArray<uint8> End = KestrelJson::ToUtf8(TEXT(",") + After);
		TArray<uint8> Body;
		Body.Reserve(Start.Num() + Tree.Utf8.Num() + End.Num());
		Body += Start;
		Body += Tree.Utf8;
		Body += End;
		return Body;
	});
}
