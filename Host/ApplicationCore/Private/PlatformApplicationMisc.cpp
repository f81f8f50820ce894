#include "HAL/PlatformApplicationMisc.h"

#include "Modules/ModuleManager.h"

IMPLEMENT_MODULE(FDefaultModuleImpl, ApplicationCore)

namespace PlatformApplicationMisc
{
static IClipboardBackend* ClipboardBackend = nullptr;

static FString& ProcessClipboard()
{
	static FString Text;
	return Text;
}
}

void FPlatformApplicationMisc::ClipboardCopy(const TCHAR* Str)
{
	using namespace PlatformApplicationMisc;
	if (ClipboardBackend != nullptr)
	{
		ClipboardBackend->SetText(Str);
		return;
	}
	ProcessClipboard() = Str;
}

void FPlatformApplicationMisc::ClipboardPaste(FString& Dest)
{
	using namespace PlatformApplicationMisc;
	Dest = ClipboardBackend != nullptr ? ClipboardBackend->GetText() : ProcessClipboard();
}

void FPlatformApplicationMisc::SetClipboardBackend(IClipboardBackend* Backend)
{
	PlatformApplicationMisc::ClipboardBackend = Backend;
}
