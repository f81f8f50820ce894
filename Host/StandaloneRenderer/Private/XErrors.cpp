#include "XErrors.h"

#include <X11/Xlib.h>
#include <X11/Xproto.h>

namespace XErrors
{
static XErrorHandler Previous = nullptr;

static int Handle(Display* Connection, XErrorEvent* Error)
{
	const bool bWaking = Error->error_code == BadWindow && Error->request_code == X_SendEvent;
	return bWaking || !Previous ? 0 : Previous(Connection, Error);
}
}

void IgnoreWakingOfClosedWindows()
{
	const XErrorHandler Replaced = XSetErrorHandler(&XErrors::Handle);
	XErrors::Previous = Replaced == &XErrors::Handle ? XErrors::Previous : Replaced;
}
