#include "InputCoreTypes.h"

#include "Modules/ModuleManager.h"

IMPLEMENT_MODULE(FDefaultModuleImpl, InputCore)

const FKey EKeys::AnyKey(TEXT("AnyKey"));
const FKey EKeys::MouseX(TEXT("MouseX"));
const FKey EKeys::MouseY(TEXT("MouseY"));
const FKey EKeys::MouseScrollUp(TEXT("MouseScrollUp"));
const FKey EKeys::MouseScrollDown(TEXT("MouseScrollDown"));
const FKey EKeys::MouseWheelAxis(TEXT("MouseWheelAxis"));
const FKey EKeys::LeftMouseButton(TEXT("LeftMouseButton"));
const FKey EKeys::RightMouseButton(TEXT("RightMouseButton"));
const FKey EKeys::MiddleMouseButton(TEXT("MiddleMouseButton"));
const FKey EKeys::BackSpace(TEXT("BackSpace"));
const FKey EKeys::Tab(TEXT("Tab"));
const FKey EKeys::Enter(TEXT("Enter"));
const FKey EKeys::Pause(TEXT("Pause"));
const FKey EKeys::CapsLock(TEXT("CapsLock"));
const FKey EKeys::Escape(TEXT("Escape"));
const FKey EKeys::SpaceBar(TEXT("SpaceBar"));
const FKey EKeys::PageUp(TEXT("PageUp"));
const FKey EKeys::PageDown(TEXT("PageDown"));
const FKey EKeys::End(TEXT("End"));
const FKey EKeys::Home(TEXT("Home"));
const FKey EKeys::Left(TEXT("Left"));
const FKey EKeys::Up(TEXT("Up"));
const FKey EKeys::Right(TEXT("Right"));
const FKey EKeys::Down(TEXT("Down"));
const FKey EKeys::Insert(TEXT("Insert"));
const FKey EKeys::Delete(TEXT("Delete"));
const FKey EKeys::Zero(TEXT("Zero"));
const FKey EKeys::One(TEXT("One"));
const FKey EKeys::Two(TEXT("Two"));
const FKey EKeys::Three(TEXT("Three"));
const FKey EKeys::Four(TEXT("Four"));
const FKey EKeys::Five(TEXT("Five"));
const FKey EKeys::Six(TEXT("Six"));
const FKey EKeys::Seven(TEXT("Seven"));
const FKey EKeys::Eight(TEXT("Eight"));
const FKey EKeys::Nine(TEXT("Nine"));
const FKey EKeys::A(TEXT("A"));
const FKey EKeys::B(TEXT("B"));
const FKey EKeys::C(TEXT("C"));
const FKey EKeys::D(TEXT("D"));
const FKey EKeys::E(TEXT("E"));
const FKey EKeys::F(TEXT("F"));
const FKey EKeys::G(TEXT("G"));
const FKey EKeys::H(TEXT("H"));
const FKey EKeys::I(TEXT("I"));
const FKey EKeys::J(TEXT("J"));
const FKey EKeys::K(TEXT("K"));
const FKey EKeys::L(TEXT("L"));
const FKey EKeys::M(TEXT("M"));
const FKey EKeys::N(TEXT("N"));
const FKey EKeys::O(TEXT("O"));
const FKey EKeys::P(TEXT("P"));
const FKey EKeys::Q(TEXT("Q"));
const FKey EKeys::R(TEXT("R"));
const FKey EKeys::S(TEXT("S"));
const FKey EKeys::T(TEXT("T"));
const FKey EKeys::U(TEXT("U"));
const FKey EKeys::V(TEXT("V"));
const FKey EKeys::W(TEXT("W"));
const FKey EKeys::X(TEXT("X"));
const FKey EKeys::Y(TEXT("Y"));
const FKey EKeys::Z(TEXT("Z"));
const FKey EKeys::F1(TEXT("F1"));
const FKey EKeys::F2(TEXT("F2"));
const FKey EKeys::F3(TEXT("F3"));
const FKey EKeys::F4(TEXT("F4"));
const FKey EKeys::F5(TEXT("F5"));
const FKey EKeys::F6(TEXT("F6"));
const FKey EKeys::F7(TEXT("F7"));
const FKey EKeys::F8(TEXT("F8"));
const FKey EKeys::F9(TEXT("F9"));
const FKey EKeys::F10(TEXT("F10"));
const FKey EKeys::F11(TEXT("F11"));
const FKey EKeys::F12(TEXT("F12"));
const FKey EKeys::LeftShift(TEXT("LeftShift"));
const FKey EKeys::RightShift(TEXT("RightShift"));
const FKey EKeys::LeftControl(TEXT("LeftControl"));
const FKey EKeys::RightControl(TEXT("RightControl"));
const FKey EKeys::LeftAlt(TEXT("LeftAlt"));
const FKey EKeys::RightAlt(TEXT("RightAlt"));
const FKey EKeys::LeftCommand(TEXT("LeftCommand"));
const FKey EKeys::RightCommand(TEXT("RightCommand"));
const FKey EKeys::Semicolon(TEXT("Semicolon"));
const FKey EKeys::Equals(TEXT("Equals"));
const FKey EKeys::Comma(TEXT("Comma"));
const FKey EKeys::Hyphen(TEXT("Hyphen"));
const FKey EKeys::Period(TEXT("Period"));
const FKey EKeys::Slash(TEXT("Slash"));
const FKey EKeys::Tilde(TEXT("Tilde"));
const FKey EKeys::LeftBracket(TEXT("LeftBracket"));
const FKey EKeys::Backslash(TEXT("Backslash"));
const FKey EKeys::RightBracket(TEXT("RightBracket"));
const FKey EKeys::Apostrophe(TEXT("Apostrophe"));
const FKey EKeys::Virtual_Accept(TEXT("Virtual_Accept"));
const FKey EKeys::Virtual_Back(TEXT("Virtual_Back"));
const FKey EKeys::Invalid(NAME_None);

bool FKey::IsModifierKey() const
{
	return *this == EKeys::LeftShift || *this == EKeys::RightShift || *this == EKeys::LeftControl ||
		   *this == EKeys::RightControl || *this == EKeys::LeftAlt || *this == EKeys::RightAlt ||
		   *this == EKeys::LeftCommand || *this == EKeys::RightCommand;
}

FText FKey::GetDisplayName() const
{
	// "SpaceBar" and "PageUp" are read as two words.
	FString Words;
	const FString Name = ToString();
	for (int32 Index = 0; Index < Name.Len(); ++Index)
	{
		if (Index > 0 && FChar::IsUpper(Name[Index]) && FChar::IsLower(Name[Index - 1]))
		{
			Words.AppendChar(TEXT(' '));
		}
		Words.AppendChar(Name[Index]);
	}
	return FText::FromString(Words);
}
