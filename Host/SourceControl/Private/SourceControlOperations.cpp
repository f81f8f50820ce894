#include "SourceControlOperations.h"

#define LOCTEXT_NAMESPACE "SourceControlOperations"

#undef LOCTEXT_NAMESPACE
