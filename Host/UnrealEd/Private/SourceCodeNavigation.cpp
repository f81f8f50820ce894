#include "SourceCodeNavigation.h"

#include "HAL/PlatformProcess.h"

bool FSourceCodeNavigation::OpenSourceFile(const FString& AbsoluteSourcePath, int32 LineNumber, int32 ColumnNumber)
{
	return FPlatformProcess::LaunchFileInDefaultExternalApplication(*AbsoluteSourcePath);
}
