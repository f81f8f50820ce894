#include "Internationalization/Internationalization.h"

FInternationalization& FInternationalization::Get()
{
	static FInternationalization Instance;
	return Instance;
}
