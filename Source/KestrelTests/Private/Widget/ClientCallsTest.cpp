#include "Agent/Tools/ToolPlan.h"
#include "Dom/JsonObject.h"
#include "HAL/PlatformProcess.h"
#include "Input/Events.h"
#include "InputCoreTypes.h"
#include "Mcp/McpServer.h"
#include "Support/KestrelTest.h"
#include "Widget/SKestrelClientCalls.h"
#include "Widgets/Text/STextBlock.h"

namespace ClientCallsTest
{
/** The innermost widget that handles clicks around a text. */
TSharedPtr<SWidget> FindButton(const TSharedRef<SWidget>& Widget, const TCHAR* Label, TSharedPtr<SWidget> Button = {})
{
	if (Widget->GetType() == FName("STextBlock"))
	{
		return StaticCastSharedRef<STextBlock>(Widget)->GetText().ToString().Equals(Label) ? Button : nullptr;
	}
	Button = Widget->GetType().ToString().EndsWith(TEXT("Button")) ? Widget.ToSharedPtr() : Button;
	TSharedPtr<SWidget> Found;
	FChildren* Children = Widget->GetChildren();
	for (int32 Index = 0; Index < Children->Num() && !Found.IsValid(); ++Index)
	{
		Found = FindButton(Children->GetChildAt(Index), Label, Button);
	}
	return Found;
}
}

IMPLEMENT_SIMPLE_AUTOMATION_TEST(
	FKestrelClientCallsTest, "Kestrel.ClientCalls.AllowNothingThatNobodyCanHaveRead", KestrelTest::Flags)
bool FKestrelClientCallsTest::RunTest(const FString& Parameters)
{
	const TSharedRef<SKestrelClientCalls> Widget = SNew(SKestrelClientCalls);
	FKestrelMcpCallQueue& Calls = FKestrelMcpServer::Get().GetCalls();
	const auto Ask = [&Calls](const TSharedRef<FKestrelMcpClient>& Client) {
		const TSharedRef<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("path"), TEXT("/etc/hostname"));
		FKestrelToolPlanner Planner(EKestrelLookAhead::Limited);
		Calls.Add(Client, nullptr, *Planner.Plan(TEXT("read_file"), FString(), Arguments)->Tool, Arguments, nullptr,
			[](const FKestrelMcpAnswer&) {});
	};
	const TSharedRef<FKestrelMcpClient> First = MakeShared<FKestrelMcpClient>(TEXT("a"), TEXT("2025-11-25"));
	const TSharedRef<FKestrelMcpClient> Second = MakeShared<FKestrelMcpClient>(TEXT("b"), TEXT("2025-11-25"));
	Ask(First);
	const TSharedPtr<SWidget> Allow = ClientCallsTest::FindButton(Widget, TEXT("Allow this call"));
	const auto CountAfterPress = [&Calls, &Allow]() {
		const FKeyEvent Enter(EKeys::Enter, FModifierKeysState(), 0, false, 0, 0);
		Allow->OnKeyDown(FGeometry(), Enter);
		Allow->OnKeyUp(FGeometry(), Enter);
		return Calls.GetAwaitingApproval().Num();
	};
	if (TestTrue(TEXT("there"), Allow.IsValid()))
	{
		TestEqual(TEXT("at once"), CountAfterPress(), 1);
		FPlatformProcess::Sleep(0.6f);
		Ask(Second);
		Calls.WithdrawAllOf(*First);
		TestEqual(TEXT("another one in its place"), CountAfterPress(), 1);
		FPlatformProcess::Sleep(0.6f);
		TestTrue(TEXT("the second press of a double click"),
			Allow->OnMouseButtonDoubleClick(FGeometry(), FPointerEvent()).IsEventHandled());
		TestEqual(TEXT("once it can have been read"), CountAfterPress(), 0);
	}
	Calls.WithdrawAllOf(*First);
	Calls.WithdrawAllOf(*Second);
	return true;
}
