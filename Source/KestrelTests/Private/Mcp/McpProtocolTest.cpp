#include "Agent/Text/JsonText.h"
#include "Agent/Tools/ToolTable.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "KestrelSettings.h"
#include "Mcp/McpAccess.h"
#include "Mcp/McpMessage.h"
#include "Mcp/McpResources.h"
#include "Mcp/McpSecret.h"
#include "Mcp/McpTools.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "Support/TestMcpClient.h"
#include "UObject/Class.h"

namespace McpProtocolTest
{
struct FMessageCase
{
	const TCHAR* What;
	const TCHAR* Json;
	int32 Code; // 0: it is a message
};

const FMessageCase MessageCases[] = {
	{ TEXT("a request with a number"), TEXT("{'jsonrpc':'2.0','id':1,'method':'ping'}"), 0 },
	{ TEXT("a request with a string"), TEXT("{'jsonrpc':'2.0','id':'1','method':'ping','params':{}}"), 0 },
	{ TEXT("a notification"), TEXT("{'jsonrpc':'2.0','method':'notifications/initialized'}"), 0 },
	{ TEXT("a response"), TEXT("{'jsonrpc':'2.0','id':1,'result':{}}"), 0 },
	{ TEXT("no JSON"), TEXT("{'jsonrpc'"), KestrelMcpError::Parse },
	{ TEXT("nothing"), TEXT(""), KestrelMcpError::Parse },
	{ TEXT("a batch"), TEXT(" [{'jsonrpc':'2.0','id':1,'method':'ping'}]"), KestrelMcpError::Parse },
	{ TEXT("another version"), TEXT("{'jsonrpc':'1.0','id':1,'method':'ping'}"), KestrelMcpError::InvalidRequest },
	{ TEXT("no version"), TEXT("{'id':1,'method':'ping'}"), KestrelMcpError::InvalidRequest },
	{ TEXT("an id of null"), TEXT("{'jsonrpc':'2.0','id':null,'method':'ping'}"), KestrelMcpError::InvalidRequest },
	{ TEXT("a fraction"), TEXT("{'jsonrpc':'2.0','id':1.5,'method':'ping'}"), KestrelMcpError::InvalidRequest },
	{ TEXT("a huge number"), TEXT("{'jsonrpc':'2.0','id':1e300,'method':'ping'}"), KestrelMcpError::InvalidRequest },
	{ TEXT("a list as id"), TEXT("{'jsonrpc':'2.0','id':[1],'method':'ping'}"), KestrelMcpError::InvalidRequest },
	{ TEXT("true as id"), TEXT("{'jsonrpc':'2.0','id':true,'method':'ping'}"), KestrelMcpError::InvalidRequest },
	{ TEXT("a number as method"), TEXT("{'jsonrpc':'2.0','id':1,'method':1}"), KestrelMcpError::InvalidRequest },
	{ TEXT("no method"), TEXT("{'jsonrpc':'2.0','id':1}"), KestrelMcpError::InvalidRequest },
	{ TEXT("a list of parameters"), TEXT("{'jsonrpc':'2.0','id':1,'method':'ping','params':[]}"),
		KestrelMcpError::InvalidRequest },
};

/** An object in an object, and so on. */
FString Nest(int32 Depth)
{
	FString Text = TEXT("{'jsonrpc':'2.0','id':1,'method':'ping','params':");
	for (int32 Level = 0; Level < Depth; ++Level)
	{
		Text += TEXT("{'a':");
	}
	return Text + TEXT("1") + FString::ChrN(Depth, TEXT('}')) + TEXT("}");
}

TSharedPtr<FKestrelMcpMessage> Parse(const FString& Json, FKestrelMcpFault& OutFault)
{
	return FKestrelMcpMessage::Parse(KestrelTest::ToBytes(Json), OutFault);
}
}

DEFINE_SPEC(FKestrelMcpProtocolSpec, "Kestrel.McpProtocol", KestrelTest::Flags)
void FKestrelMcpProtocolSpec::Define()
{
	using namespace McpProtocolTest;
	using KestrelTest::TestSameText;

	for (const FMessageCase& Case : MessageCases)
	{
		It(FString::Printf(TEXT("reads or refuses %s"), Case.What), [this, &Case]() {
			FKestrelMcpFault Fault;
			TestEqual(TEXT("a message"), Parse(Case.Json, Fault).IsValid(), Case.Code == 0);
			TestEqual(TEXT("code"), Fault.Code, Case.Code);
		});
	}

	It("refuses what is nested deeper than any message", [this]() {
		FKestrelMcpFault Fault;
		TestTrue(TEXT("deep"), Parse(Nest(100), Fault).IsValid());
		TestFalse(TEXT("too deep"), Parse(Nest(100000), Fault).IsValid());
		TestEqual(TEXT("code"), Fault.Code, KestrelMcpError::Parse);
	});

	It("gives an id back as it came", [this]() {
		for (const TCHAR* Id : { TEXT("1"), TEXT("-7"), TEXT("\"1\""), TEXT("9007199254740991"), TEXT("\"\\u00e9\"") })
		{
			FKestrelMcpFault Fault;
			const TSharedPtr<FKestrelMcpMessage> Message =
				Parse(FString::Printf(TEXT("{'jsonrpc':'2.0','id':%s,'method':'ping'}"), Id), Fault);
			const FString Text =
				FKestrelMcpMessage::MakeText(Message->Id, FKestrelMcpAnswer::Of(MakeShared<FJsonObject>()));
			const FString Expected = FString(Id).Replace(TEXT("\\u00e9"), TEXT("\u00e9"));
			TestSameText(*this, Id, Text, TEXT("{\"jsonrpc\":\"2.0\",\"id\":") + Expected + TEXT(",\"result\":{}}"));
		}
		const TSharedPtr<FJsonValue> Number = MakeShared<FJsonValueNumber>(1.0);
		TestFalse(
			TEXT("1 is not \"1\""), FKestrelMcpMessage::IsSameId(Number, MakeShared<FJsonValueString>(TEXT("1"))));
	});

	It("agrees on a version that both know", [this]() {
		FKestrelTestMcpServer Server;
		for (const TCHAR* Version : { TEXT("2025-11-25"), TEXT("2025-06-18"), TEXT("2025-03-26") })
		{
			TestSameText(
				*this, Version, FKestrelTestMcpClient(Server, TEXT("a"), Version).Client->ProtocolVersion, Version);
		}
		for (const TCHAR* Version : { TEXT("1999-01-01"), TEXT("2024-11-05") })
		{
			TestSameText(*this, Version, FKestrelTestMcpClient(Server, TEXT("a"), Version).Client->ProtocolVersion,
				TEXT("2025-11-25"));
		}
	});

	It("lists each tool but the one that ends a turn, with hints that tell what it does", [this]() {
		const TArray<TSharedPtr<FJsonValue>> Listed =
			KestrelMcpTools::MakeList(/*bStateless*/ false)->GetArrayField(TEXT("tools"));
		TestEqual(TEXT("how many"), Listed.Num(), KestrelTools::GetAll().Num() - 1 + 3);
		for (const TSharedPtr<FJsonValue>& Value : Listed)
		{
			const TSharedPtr<FJsonObject> Tool = Value->AsObject();
			const FString Name = Tool->GetStringField(TEXT("name"));
			const TSharedPtr<FJsonObject> Hints = Tool->GetObjectField(TEXT("annotations"));
			TestTrue(Name + TEXT(" is short"), Name.Len() <= 64 && !Name.Contains(TEXT(".")));
			TestFalse(Name + TEXT(" ends no turn"), Name.Equals(TEXT("finish")));
			TestSameText(
				*this, Name, Tool->GetObjectField(TEXT("inputSchema"))->GetStringField(TEXT("type")), TEXT("object"));
			const bool bReads =
				Name.StartsWith(TEXT("read_")) || Name.StartsWith(TEXT("get_")) || Name.StartsWith(TEXT("find_"));
			TestTrue(Name + TEXT(" reads"), Hints->GetBoolField(TEXT("readOnlyHint")) == bReads);
			const bool bDestroys = !bReads && !Name.Equals(TEXT("compile"));
			TestTrue(Name + TEXT(" destroys"), Hints->GetBoolField(TEXT("destructiveHint")) == bDestroys);
			for (const TCHAR* Hint : { TEXT("idempotentHint"), TEXT("openWorldHint") })
			{
				TestTrue(Name + TEXT(" ") + Hint, Hints->HasField(Hint));
			}
		}
	});

	It("tells mistakes of the protocol from failures of a tool", [this]() {
		FKestrelTestMcpServer Server;
		FKestrelTestMcpClient Client(Server, TEXT("a"));
		TestSameText(*this, TEXT("method"), Client.GetAnswer(Client.Request(TEXT("logging/setLevel"))),
			TEXT("-32601 Method not found"));
		TestSameText(*this, TEXT("of the other version"), Client.GetAnswer(Client.Request(TEXT("server/discover"))),
			TEXT("-32601 Method not found"));
		TestSameText(*this, TEXT("tool"), Client.GetAnswer(Client.Call(TEXT("no_such_tool"), TEXT("{}"))),
			TEXT("-32602 Unknown tool"));
		TestSameText(*this, TEXT("finish"), Client.GetAnswer(Client.Call(TEXT("finish"), TEXT("{}"))),
			TEXT("-32602 Unknown tool"));
		TestSameText(*this, TEXT("arguments"), Client.GetAnswer(Client.Call(TEXT("read_file"), TEXT("[]"))),
			TEXT("-32602 arguments must be an object"));
		TestSameText(*this, TEXT("cursor"),
			Client.GetAnswer(Client.Request(TEXT("tools/list"), TEXT("{'cursor':'x'}"))),
			TEXT("-32602 Unknown cursor"));
		TestSameText(*this, TEXT("resource"),
			Client.GetAnswer(Client.Request(TEXT("resources/read"), TEXT("{'uri':'kestrel://project/files/No.h'}"))),
			TEXT("-32002 Error: File not found"));
		const int32 Missing = Client.Call(TEXT("read_file"), TEXT("{'path':null}"));
		TestSameText(*this, TEXT("argument"), Client.GetText(Missing), TEXT("Error: Missing required path field"));
		TestSameText(*this, TEXT("a failure"), Client.GetMember(Missing, TEXT("isError")), TEXT("true"));
	});

	It("reads resources and completes their names, within the project alone", [this]() {
		const FKestrelTestContent Content;
		Content.CreateBlueprint(TEXT("BP_McpResource"));
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("A b.txt"), TEXT("text"));
		FString Error;
		const auto Contents = [&Error](const FString& Uri) {
			const TSharedPtr<FJsonObject> Result = KestrelMcpResources::Read(Uri, Error);
			return Result.IsValid()
					   ? Result->GetArrayField(TEXT("contents"))[0]->AsObject()->GetStringField(TEXT("text"))
					   : TEXT("none");
		};
		const FString Files = TEXT("kestrel://project/files/");
		const FString Encoded = Folder.Name.Replace(TEXT(" "), TEXT("%20"));
		TestSameText(*this, TEXT("file"), Contents(Files + Encoded + TEXT("/A%20b.txt")), TEXT("text"));
		TestTrue(TEXT("tree"), Contents(TEXT("kestrel://project/tree")).Contains(TEXT(".uproject")));
		TestFalse(TEXT("compiler"), Contents(TEXT("kestrel://compile/output")).Equals(TEXT("none")));
		TestTrue(TEXT("Blueprint"),
			KestrelJson::ParseObject(Contents(TEXT("kestrel://blueprints/BP_McpResource"))).IsValid());
		for (const TCHAR* Outside :
			{ TEXT("/etc/passwd"), TEXT("%2Fetc%2Fpasswd"), TEXT("../../../../../etc/passwd"), TEXT("") })
		{
			TestSameText(*this, Outside, Contents(Files + Outside), TEXT("none"));
		}
		TestSameText(*this, TEXT("files"),
			FString::Join(*KestrelMcpResources::Complete(TEXT("path"), Folder.Name + TEXT("/A")), TEXT("|")),
			Folder.Name + TEXT("/A b.txt"));
		TestTrue(TEXT("Blueprints"),
			KestrelMcpResources::Complete(TEXT("blueprint_name"), TEXT("bp_mcpres"))->Contains(TEXT("BP_McpResource")));
		TestTrue(TEXT("all Blueprints"),
			KestrelMcpResources::Complete(TEXT("blueprint_name"), FString())->Contains(TEXT("BP_McpResource")));
		for (const TCHAR* Outside : { TEXT("/et"), TEXT("../"), TEXT("Source/../../") })
		{
			TestEqual(Outside, KestrelMcpResources::Complete(TEXT("path"), Outside)->Num(), 0);
		}
		TestFalse(TEXT("unknown"), KestrelMcpResources::Complete(TEXT("no"), FString()).IsSet());
	});

	It("tells no names of what rules keep from being read", [this]() {
		const FKestrelTestContent Content;
		Content.CreateBlueprint(TEXT("BP_McpKept"));
		Content.CreateBlueprint(TEXT("BP_McpOpen"));
		const FKestrelTestFolder Folder;
		for (const TCHAR* Name : { TEXT("Kept/A.h"), TEXT("Kept.h"), TEXT("Keyring.h"), TEXT("Asked.cpp") })
		{
			Folder.Write(Name, TEXT("x"));
		}
		FKestrelTestMcpServer Server;
		FKestrelTestMcpClient Client(Server, TEXT("a"));
		UKestrelSettings& Settings = *GetMutableDefault<UKestrelSettings>();
		const TGuardValue<TArray<FKestrelApprovalRule>> Rules(Settings.ApprovalRules, {});
		const auto Seen = [&]() {
			const FString InFolder = Folder.Name + TEXT("/");
			FString Error;
			const TSharedPtr<FJsonObject> Tree = KestrelMcpResources::Read(TEXT("kestrel://project/tree"), Error);
			const int32 Listing =
				Client.Call(TEXT("get_filesystem_tree"), FString::Printf(TEXT("{'dir_path':'%s'}"), *Folder.Name));
			const FString Names =
				FString::Join(*KestrelMcpResources::Complete(TEXT("path"), InFolder), TEXT(" ")) +
				FString::Join(*KestrelMcpResources::Complete(TEXT("blueprint_name"), TEXT("BP_Mcp")), TEXT(" ")) +
				Client.GetText(Listing) +
				Tree->GetArrayField(TEXT("contents"))[0]->AsObject()->GetStringField(TEXT("text"));
			FString Found;
			for (const TCHAR* Name : { TEXT("Kept/"), TEXT("A.h"), TEXT("Kept.h"), TEXT("Keyring.h"), TEXT("Asked.cpp"),
					 TEXT("BP_McpKept"), TEXT("BP_McpOpen") })
			{
				Found += Names.Contains(Name, ESearchCase::CaseSensitive) ? FString(Name) + TEXT(" ") : FString();
			}
			return Found;
		};
		TestSameText(
			*this, TEXT("without rules"), Seen(), TEXT("Kept/ A.h Kept.h Keyring.h Asked.cpp BP_McpKept BP_McpOpen "));
		Settings.ApprovalRules.SetNum(2);
		Settings.ApprovalRules[0].Decision = EKestrelApproval::Deny;
		Settings.ApprovalRules[0].Path = Folder.Name + TEXT("/Kept/**");
		Settings.ApprovalRules[1].Path = TEXT("Asked.*"); // Ask
		FKestrelApprovalRule& Rule = Settings.ApprovalRules.AddDefaulted_GetRef();
		Rule.Decision = EKestrelApproval::Deny;
		Rule.Tool = TEXT("read");
		Rule.Path = TEXT("*Kept.*");
		TestSameText(*this, TEXT("with rules"), Seen(), TEXT("Keyring.h BP_McpOpen "));
	});

	It("knows its own address, and a secret only as a whole", [this]() {
		for (const TCHAR* Own : { TEXT("127.0.0.1:5000"), TEXT("LocalHost:5000"), TEXT("[::1]:5000") })
		{
			TestTrue(Own, KestrelMcpAccess::IsOwnAuthority(Own, 5000));
		}
		for (const TCHAR* Foreign : { TEXT("127.0.0.1"), TEXT("127.0.0.1:5001"), TEXT("evil.example:5000"),
				 TEXT("127.0.0.1:5000.evil.example"), TEXT("localhost.evil.example:5000"), TEXT("") })
		{
			TestFalse(Foreign, KestrelMcpAccess::IsOwnAuthority(Foreign, 5000));
		}
		for (const TCHAR* Foreign : { TEXT("10.0.0.1"), TEXT("12.7.0.1"), TEXT("::2"), TEXT(""), TEXT("0.0.0.0") })
		{
			TestFalse(Foreign, KestrelMcpAccess::IsLoopback(Foreign));
		}
		TestTrue(TEXT("mapped"), KestrelMcpAccess::IsLoopback(TEXT("::ffff:127.0.0.1")));
		const FString Secret = KestrelMcpSecret::Make();
		TestTrue(TEXT("same"), KestrelMcpSecret::IsSame(Secret, FString(*Secret)));
		TestFalse(TEXT("upper case"), KestrelMcpSecret::IsSame(TEXT("ab"), TEXT("AB")));
		TestFalse(TEXT("start"), KestrelMcpSecret::IsSame(Secret, Secret.Left(10)));
		TestFalse(TEXT("longer"), KestrelMcpSecret::IsSame(Secret, Secret + TEXT("0")));
		TestFalse(TEXT("none"), KestrelMcpSecret::IsSame(FString(), FString()));
	});
}
