#include "NinjaFile.h"

void FNinjaFile::Variable(const TCHAR* Name, const FString& Value)
{
	Text += FString(Name) + TEXT(" = ") + Value + TEXT("\n");
}

void FNinjaFile::Rule(const TCHAR* Name, std::initializer_list<FString> Lines)
{
	Text += FString(TEXT("\nrule ")) + Name + TEXT("\n");
	for (const FString& Line : Lines)
	{
		Text += TEXT("  ") + Line + TEXT("\n");
	}
}

void FNinjaFile::Step(const FStep& Step)
{
	Text += TEXT("\nbuild");
	AddPaths(TEXT(""), Step.Outputs);
	Text += TEXT(": ") + Step.Rule;
	AddPaths(TEXT(""), Step.Inputs);
	AddPaths(TEXT(" |"), Step.ImplicitInputs);
	AddPaths(TEXT(" ||"), Step.OrderOnly);
	Text += TEXT("\n");
	for (const auto& Pair : Step.Variables)
	{
		Text += TEXT("  ") + Pair.Key + TEXT(" = ") + Pair.Value + TEXT("\n");
	}
}

FString FNinjaFile::Quote(const FString& Word)
{
	return Escape(TEXT("'") + Word.Replace(TEXT("'"), TEXT("'\\''")) + TEXT("'"));
}

FString FNinjaFile::Quote(const TArray<FString>& Words)
{
	return FString::JoinBy(Words, TEXT(" "), [](const FString& Word) { return Quote(Word); });
}

FString FNinjaFile::EscapePath(const FString& Path)
{
	return Escape(Path).Replace(TEXT(" "), TEXT("$ ")).Replace(TEXT(":"), TEXT("$:"));
}

void FNinjaFile::AddPaths(const TCHAR* Separator, const TArray<FString>& Paths)
{
	Text += Paths.IsEmpty() ? TEXT("") : Separator;
	for (const FString& Path : Paths)
	{
		Text += TEXT(" ") + EscapePath(Path);
	}
}
