#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "Widget/Answer/KestrelLink.h"

namespace LinkTest
{
FString Describe(const FKestrelLink& Link, const FString& Folder)
{
	const FString File = Link.File.Replace(*Folder, TEXT("*"), ESearchCase::CaseSensitive);
	return Link.Address + File + (Link.Line > 0 ? FString::Printf(TEXT("@%d"), Link.Line) : FString());
}

/** "text->where it leads" for each link, joined by blanks. */
FString DescribeLinksIn(const FString& Text, const FString& Folder, int32 NumFiles = KestrelLinks::MaxFiles)
{
	TArray<FString> Found;
	for (const FKestrelFoundLink& Each : KestrelLinks::FindIn(Text, NumFiles))
	{
		Found.Add(Text.Mid(Each.Begin, Each.End - Each.Begin) + TEXT("->") + Describe(Each.Link, Folder));
	}
	return FString::Join(Found, TEXT(" "));
}
}

BEGIN_DEFINE_SPEC(FKestrelLinkSpec, "Kestrel.Links", KestrelTest::Flags)
	FKestrelTestFolder Folder;
END_DEFINE_SPEC(FKestrelLinkSpec)

void FKestrelLinkSpec::Define()
{
	It("lead to pages and to files of the project, and to nothing else", [this]() {
		Folder.Write(TEXT("Door.cpp"), TEXT("int A;\n"));
		Folder.Write(TEXT("secret.pem"), TEXT("x"));
		const FString Door = Folder.Name / TEXT("Door.cpp");
		const auto Test = [this](const FString& Address, const TCHAR* Expected) {
			int32 NumFiles = KestrelLinks::MaxFiles;
			const FString Actual = LinkTest::Describe(KestrelLinks::FromAddress(Address, NumFiles), Folder.Path);
			KestrelTest::TestSameText(*this, Address, Actual, Expected);
		};
		Test(TEXT("https://a.example/b?c=d#e"), TEXT("https://a.example/b?c=d#e"));
		Test(TEXT("HTTP://a.example"), TEXT("HTTP://a.example"));
		Test(Door, TEXT("*/Door.cpp"));
		Test(Door + TEXT("#L12"), TEXT("*/Door.cpp@12"));
		Test(Door.Replace(TEXT("/"), TEXT("\\")) + TEXT(":3"), TEXT("*/Door.cpp@3"));
		for (const TCHAR* Other : { TEXT("javascript:alert(1)"), TEXT("file:///etc/passwd"), TEXT("ftp://a.example"),
				 TEXT("/etc/hosts.txt"), TEXT("../../../etc/hosts.txt"), TEXT("mailto:a@b.example"), TEXT("") })
		{
			Test(Other, TEXT(""));
		}
		Test(Folder.Name / TEXT("secret.pem"), TEXT(""));
		Test(Folder.Name / TEXT("Missing.cpp"), TEXT(""));
	});

	It("are found in texts", [this]() {
		// A blank ends a name in a text, and the folder of a test has one.
		const FString Parent = FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir() / TEXT("KestrelLinkTest"));
		FFileHelper::SaveStringToFile(TEXT("int A;\n"), *(Parent / TEXT("Door.cpp")));
		const FString Door = TEXT("Saved/KestrelLinkTest/Door.cpp");
		const auto Test = [this, &Parent](const FString& Text, const FString& Expected) {
			KestrelTest::TestSameText(*this, Text, LinkTest::DescribeLinksIn(Text, Parent), Expected);
		};
		Test(TEXT("See ") + Door + TEXT(":7, and Other.cpp:2."), Door + TEXT(":7->*/Door.cpp@7"));
		Test(TEXT("(") + Door + TEXT(")."), Door + TEXT("->*/Door.cpp"));
		Test(TEXT("Read https://a.example/x_(y)."), TEXT("https://a.example/x_(y)->https://a.example/x_(y)"));
		Test(TEXT("(https://a.example/x), \"http://b.example\"!"),
			TEXT("https://a.example/x->https://a.example/x http://b.example->http://b.example"));
		Test(TEXT("https://a.example\u202Egnp.exe"), TEXT("https://a.example->https://a.example"));
		Test(TEXT("no links: a.b, x/y, 1.5, e.g."), TEXT(""));
		TestTrue(TEXT("no more files than may be looked for"),
			LinkTest::DescribeLinksIn(Door + TEXT(" Missing.cpp ") + Door, Parent, 1)
				.Equals(Door + TEXT("->*/Door.cpp")));
		IFileManager::Get().DeleteDirectory(*Parent, false, true);
	});
}
