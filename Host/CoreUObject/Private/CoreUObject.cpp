#include "Interfaces/IPluginManager.h"
#include "Misc/Guid.h"
#include "Misc/PackageName.h"
#include "Modules/ModuleManager.h"
#include "UObject/Class.h"
#include "UObject/SoftObjectPath.h"
#include "UObject/UObjectBase.h"

IMPLEMENT_MODULE(FDefaultModuleImpl, CoreUObject)

static const FDelegateHandle ProcessLoadedObjectsHandle =
	FModuleManager::Get().OnProcessLoadedObjectsCallback().AddStatic(&ProcessNewlyLoadedUObjects);

static const bool bPluginsMountTheirContent = [] {
	IPluginManager::Get().SetRegisterMountPointDelegate(
		IPluginManager::FRegisterMountPointDelegate::CreateStatic(&FPackageName::RegisterMountPoint));
	return true;
}();

#define IMPLEMENT_BASE_STRUCTURE(StructType, ReflectedName)                                                            \
	UScriptStruct* ReflectedType_##ReflectedName();                                                                    \
	UScriptStruct* TBaseStructure<StructType>::Get()                                                                   \
	{                                                                                                                  \
		return ReflectedType_##ReflectedName();                                                                        \
	}

IMPLEMENT_BASE_STRUCTURE(FColor, FColor)
IMPLEMENT_BASE_STRUCTURE(FLinearColor, FLinearColor)
IMPLEMENT_BASE_STRUCTURE(FVector2D, FVector2D)
IMPLEMENT_BASE_STRUCTURE(FIntPoint, FIntPoint)
IMPLEMENT_BASE_STRUCTURE(FVector, FVector)
IMPLEMENT_BASE_STRUCTURE(FRotator, FRotator)
IMPLEMENT_BASE_STRUCTURE(FQuat, FQuat)
IMPLEMENT_BASE_STRUCTURE(FTransform, FTransform)
IMPLEMENT_BASE_STRUCTURE(FGuid, FGuid)
IMPLEMENT_BASE_STRUCTURE(FSoftObjectPath, FSoftObjectPath)
IMPLEMENT_BASE_STRUCTURE(FSoftClassPath, FSoftClassPath)
