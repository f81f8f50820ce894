#pragma once

#include "HAL/Platform.h"
#include "Misc/EnumClassFlags.h"

enum class EHttpServerRequestVerbs : uint16
{
	VERB_NONE = 0,
	VERB_GET = 1 << 0,
	VERB_POST = 1 << 1,
	VERB_PUT = 1 << 2,
	VERB_PATCH = 1 << 3,
	VERB_DELETE = 1 << 4,
	VERB_OPTIONS = 1 << 5
};
ENUM_CLASS_FLAGS(EHttpServerRequestVerbs)

enum class EHttpServerResponseCodes : uint16
{
	Unknown = 0,
	Ok = 200,
	Accepted = 202,
	NoContent = 204,
	BadRequest = 400,
	Denied = 401,
	Forbidden = 403,
	NotFound = 404,
	BadMethod = 405,
	RequestTooLarge = 413,
	UnsupportedMedia = 415,
	ServerError = 500,
	ServiceUnavail = 503,
};
