#include "WidgetReport.h"

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Framework/Application/SlateApplication.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "HAL/PlatformTime.h"
#include "Misc/CommandLine.h"
#include "Misc/FileHelper.h"
#include "Misc/Parse.h"
#include "Serialization/JsonSerializer.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"

namespace WidgetReport
{
constexpr double PeriodSeconds = 0.05;

const TCHAR* NameOf(EAccessibleWidgetType Type)
{
	switch (Type)
	{
	case EAccessibleWidgetType::Button:
		return TEXT("Button");
	case EAccessibleWidgetType::CheckBox:
		return TEXT("CheckBox");
	case EAccessibleWidgetType::ComboBox:
		return TEXT("ComboBox");
	case EAccessibleWidgetType::Text:
		return TEXT("Text");
	case EAccessibleWidgetType::TextEdit:
		return TEXT("TextEdit");
	case EAccessibleWidgetType::Window:
		return TEXT("Window");
	default:
		return TEXT("Other");
	}
}

TSharedRef<FJsonObject> Describe(IAccessibleWidget& Widget)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TEXT("type"), NameOf(Widget.GetWidgetType()));
	Object->SetStringField(TEXT("name"), Widget.GetWidgetName());
	if (const IAccessibleText* Text = Widget.AsText())
	{
		Object->SetStringField(TEXT("value"), Text->GetText());
	}
	else if (const IAccessibleProperty* Property = Widget.AsProperty())
	{
		Object->SetStringField(TEXT("value"), Property->GetValue());
	}
	Object->SetBoolField(TEXT("enabled"), Widget.IsEnabled());
	Object->SetBoolField(TEXT("focused"), Widget.HasFocus());
	Object->SetBoolField(TEXT("focusable"), Widget.SupportsFocus());
	const FBox2D Bounds = Widget.GetBounds();
	TArray<TSharedPtr<FJsonValue>> Edges;
	for (const double Edge : { Bounds.Min.X, Bounds.Min.Y, Bounds.Max.X, Bounds.Max.Y })
	{
		Edges.Add(MakeShared<FJsonValueNumber>(Edge));
	}
	Object->SetArrayField(TEXT("bounds"), Edges);
	return Object;
}

/** The frame of a text gives its focus to the text, which has the name. */
bool HandsFocusOn(const SWidget& Widget)
{
	return Widget.GetType() == FName("SEditableTextBox");
}

/** What can have the focus without a name: somebody who cannot see it would not know where they are. */
void CollectNameless(const TSharedRef<SWidget>& Widget, TArray<TSharedPtr<FJsonValue>>& OutWidgets)
{
	if (!Widget->GetVisibility().IsVisible())
	{
		return;
	}
	if (Widget->SupportsKeyboardFocus() && !HandsFocusOn(*Widget) && Widget->GetAccessibleText().IsEmpty())
	{
		const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
		Object->SetStringField(TEXT("type"), TEXT("Nameless"));
		Object->SetStringField(TEXT("name"), Widget->GetTypeAsString());
		OutWidgets.Add(MakeShared<FJsonValueObject>(Object));
	}
	FChildren& Children = *Widget->GetChildren();
	for (int32 Index = 0; Index < Children.Num(); ++Index)
	{
		CollectNameless(Children.GetChildAt(Index), OutWidgets);
	}
}
}

FWidgetReport::FWidgetReport()
{
	FParse::Value(FCommandLine::Get(), TEXT("-WidgetReport="), FileName);
}

void FWidgetReport::Collect(const TSharedRef<IAccessibleWidget>& Widget, TArray<TSharedPtr<FJsonValue>>& OutWidgets)
{
	OutWidgets.Add(MakeShared<FJsonValueObject>(WidgetReport::Describe(Widget.Get())));
	const int32 NumChildren = Widget->GetNumberOfChildren();
	for (int32 Index = 0; Index < NumChildren; ++Index)
	{
		Collect(Widget->GetChildAt(Index).ToSharedRef(), OutWidgets);
	}
}

void FWidgetReport::Tick()
{
	const double Now = FPlatformTime::Seconds();
	if (Now < NextTime)
	{
		return;
	}
	NextTime = Now + WidgetReport::PeriodSeconds;
	TArray<TSharedPtr<FJsonValue>> Widgets;
	for (const TSharedRef<SWindow>& Window : FSlateApplication::Get().GetTopLevelWindows())
	{
		Collect(FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(Window), Widgets);
		WidgetReport::CollectNameless(Window, Widgets);
	}
	FString Report;
	FJsonSerializer::Serialize(Widgets, TJsonWriterFactory<>::Create(&Report));
	if (Report.Equals(LastReport))
	{
		return;
	}
	// Moved into place, so that nobody reads half of it.
	const FString Draft = FileName + TEXT(".new");
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	if (FFileHelper::SaveStringToFile(Report, *Draft, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM))
	{
		Files.MoveFile(*FileName, *Draft);
		LastReport = Report;
	}
}
