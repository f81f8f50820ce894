#include "Agent/Approval/ToolNames.h"

namespace ToolNames
{
struct FKindName
{
	EKestrelToolKind Kind;
	const TCHAR* Name;
};

const FKindName KindNames[] = {
	{ EKestrelToolKind::Finish, TEXT("finish") },
	{ EKestrelToolKind::Read, TEXT("read") },
	{ EKestrelToolKind::Create, TEXT("create") },
	{ EKestrelToolKind::Change, TEXT("change") },
	{ EKestrelToolKind::Delete, TEXT("delete") },
	{ EKestrelToolKind::Run, TEXT("run") },
	{ EKestrelToolKind::Compile, TEXT("compile") },
};
}

const TCHAR* KestrelToolNames::GetKindName(EKestrelToolKind Kind)
{
	for (const ToolNames::FKindName& Each : ToolNames::KindNames)
	{
		if (Each.Kind == Kind)
		{
			return Each.Name;
		}
	}
	return TEXT("");
}
