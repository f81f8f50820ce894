#pragma once

#include "Misc/EnumClassFlags.h"
#include "Templates/IsUEnumClass.h"
#include "UObject/ReflectedTypeAccessors.h"
#include "UObject/Script.h"

// What HeaderTool reads. The compiler sees nothing of it but GENERATED_BODY(), which stands for the lines that the tool
// has written for this place into the generated header.
#define UCLASS(...)
#define USTRUCT(...)
#define UENUM(...)
#define UINTERFACE(...)
#define UPROPERTY(...)
#define UFUNCTION(...)
#define UPARAM(...)
#define UMETA(...)

#define UE_BODY_MACRO_COMBINE_INNER(A, B, C, D) A##B##C##D
#define UE_BODY_MACRO_COMBINE(A, B, C, D) UE_BODY_MACRO_COMBINE_INNER(A, B, C, D)
#define GENERATED_BODY(...) UE_BODY_MACRO_COMBINE(CURRENT_FILE_ID, _, __LINE__, _GENERATED_BODY)

/** What each class of objects has. Objects are made by NewObject alone. */
#define DECLARE_REFLECTED_CLASS(TClass, TSuperClass)                                                                   \
	using ThisClass = TClass;                                                                                          \
	using Super = TSuperClass;                                                                                         \
	static UClass* StaticClass();

#define STRUCT_OFFSET(Struct, Member) __builtin_offsetof(Struct, Member)
#define CPP_ARRAY_DIM(ArrayName, ClassName) (sizeof(ClassName::ArrayName) / sizeof(ClassName::ArrayName[0]))

/** The body of a virtual function that every child has to override: objects of abstract classes must be constructible.
 */
#define PURE_VIRTUAL(Function, ...)                                                                                    \
	{                                                                                                                  \
		checkf(false, TEXT("Pure virtual function called: %s"), TEXT(#Function));                                      \
		__VA_ARGS__                                                                                                    \
	}

#define GET_MEMBER_NAME_CHECKED(ClassName, MemberName)                                                                 \
	((void)sizeof(decltype(static_cast<ClassName*>(nullptr)->MemberName)), FName(TEXT(#MemberName)))
#define GET_MEMBER_NAME_STRING_CHECKED(ClassName, MemberName)                                                          \
	((void)sizeof(decltype(static_cast<ClassName*>(nullptr)->MemberName)), FString(TEXT(#MemberName)))
#define GET_FUNCTION_NAME_CHECKED(ClassName, FunctionName)                                                             \
	((void)sizeof(&ClassName::FunctionName), FName(TEXT(#FunctionName)))

enum EObjectFlags : uint32
{
	RF_NoFlags = 0x00000000,
	RF_Public = 0x00000001,
	RF_Standalone = 0x00000002, // kept in the editor even when nothing refers to it
	RF_MarkAsNative = 0x00000004,
	RF_Transactional = 0x00000008,
	RF_ClassDefaultObject = 0x00000010,
	RF_ArchetypeObject = 0x00000020,
	RF_Transient = 0x00000040, // never saved
	RF_MarkAsRootSet = 0x00000080,
	RF_NeedLoad = 0x00000400,
	RF_NeedPostLoad = 0x00001000,
	RF_BeginDestroyed = 0x00008000,
	RF_FinishDestroyed = 0x00010000,
	RF_BeingRegenerated = 0x00020000,
	RF_DefaultSubObject = 0x00040000,
	RF_WasLoaded = 0x00080000,
	RF_TextExportTransient = 0x00100000,
	RF_LoadCompleted = 0x00200000,
	RF_DuplicateTransient = 0x00800000,
};
ENUM_CLASS_FLAGS(EObjectFlags)

constexpr EObjectFlags RF_AllFlags = static_cast<EObjectFlags>(0x0fffffff);
constexpr EObjectFlags RF_Load = RF_Public | RF_Standalone | RF_Transactional | RF_ClassDefaultObject |
								 RF_ArchetypeObject | RF_DefaultSubObject | RF_TextExportTransient |
								 RF_DuplicateTransient;

/** How UObject::Rename goes about it. */
using ERenameFlags = uint32;
#define REN_None 0x0000u
#define REN_Test 0x0002u                  // only asks whether it would be possible
#define REN_DoNotDirty 0x0004u            // neither package becomes dirty
#define REN_DontCreateRedirectors 0x0010u // there are no redirectors here
#define REN_NonTransactional 0x0020u      // not recorded for undo

enum ELoadFlags : uint32
{
	LOAD_None = 0x00000000,
	LOAD_NoWarn = 0x00000002, // nothing is said of what is not there
	LOAD_Quiet = 0x00002000,  // the same
};
ENUM_CLASS_FLAGS(ELoadFlags)

/** How UPackage::Save goes about it. */
enum ESaveFlags : uint32
{
	SAVE_None = 0x00000000,
	SAVE_NoError = 0x00000001,   // nothing is said of a failure
	SAVE_KeepDirty = 0x00000008, // the package stays dirty
};
ENUM_CLASS_FLAGS(ESaveFlags)

/** What the editor's garbage collection keeps though nothing refers to it. */
constexpr EObjectFlags GARBAGE_COLLECTION_KEEPFLAGS = RF_Standalone;

enum EClassFlags : uint32
{
	CLASS_None = 0x00000000,
	CLASS_Abstract = 0x00000001,
	CLASS_DefaultConfig = 0x00000002, // configuration goes to Config/Default<Name>.ini
	CLASS_Config = 0x00000004,
	CLASS_Transient = 0x00000008,
	CLASS_ProjectUserConfig = 0x00000040,
	CLASS_Native = 0x00000080,
	CLASS_NotPlaceable = 0x00000200,
	CLASS_PerObjectConfig = 0x00000400,
	CLASS_EditInlineNew = 0x00001000,
	CLASS_CollapseCategories = 0x00002000,
	CLASS_Interface = 0x00004000,
	CLASS_Const = 0x00010000,
	CLASS_CompiledFromBlueprint = 0x00040000,
	CLASS_MinimalAPI = 0x00080000,
	CLASS_RequiredAPI = 0x00100000,
	CLASS_DefaultToInstanced = 0x00200000,
	CLASS_HasInstancedReference = 0x00800000,
	CLASS_Hidden = 0x01000000,
	CLASS_Deprecated = 0x02000000,
	CLASS_HideDropDown = 0x04000000,
	CLASS_GlobalUserConfig = 0x08000000,
	CLASS_Intrinsic = 0x10000000,
	CLASS_Constructed = 0x20000000,
	CLASS_NewerVersionExists = 0x80000000,
};
ENUM_CLASS_FLAGS(EClassFlags)

/** What a class takes over from its parent. */
constexpr EClassFlags CLASS_Inherit = CLASS_Transient | CLASS_DefaultConfig | CLASS_Config | CLASS_PerObjectConfig |
									  CLASS_NotPlaceable | CLASS_Const | CLASS_HasInstancedReference |
									  CLASS_Deprecated | CLASS_DefaultToInstanced | CLASS_GlobalUserConfig |
									  CLASS_ProjectUserConfig;

enum EStructFlags : uint32
{
	STRUCT_NoFlags = 0x00000000,
	STRUCT_Native = 0x00000001,
	STRUCT_Atomic = 0x00000010, // written to text with all members or not at all
	STRUCT_Immutable = 0x00000020,
	STRUCT_NoExport = 0x00001000,
};
ENUM_CLASS_FLAGS(EStructFlags)

enum class EEnumFlags : uint32
{
	None = 0,
	Flags = 1,
	NewerVersionExists = 2,
};
ENUM_CLASS_FLAGS(EEnumFlags)

enum EPropertyFlags : uint64
{
	CPF_None = 0,
	CPF_Edit = 0x0000000000000001,
	CPF_ConstParm = 0x0000000000000002,
	CPF_BlueprintVisible = 0x0000000000000004,
	CPF_ExportObject = 0x0000000000000008,
	CPF_BlueprintReadOnly = 0x0000000000000010,
	CPF_Net = 0x0000000000000020,
	CPF_EditFixedSize = 0x0000000000000040,
	CPF_Parm = 0x0000000000000080,
	CPF_OutParm = 0x0000000000000100,
	CPF_ZeroConstructor = 0x0000000000000200,
	CPF_ReturnParm = 0x0000000000000400,
	CPF_DisableEditOnTemplate = 0x0000000000000800,
	CPF_NonNullable = 0x0000000000001000,
	CPF_Transient = 0x0000000000002000,
	CPF_Config = 0x0000000000004000,
	CPF_RequiredParm = 0x0000000000008000,
	CPF_DisableEditOnInstance = 0x0000000000010000,
	CPF_EditConst = 0x0000000000020000,
	CPF_GlobalConfig = 0x0000000000040000,
	CPF_InstancedReference = 0x0000000000080000,
	CPF_DuplicateTransient = 0x0000000000200000,
	CPF_SaveGame = 0x0000000001000000,
	CPF_NoClear = 0x0000000002000000,
	CPF_ReferenceParm = 0x0000000008000000,
	CPF_BlueprintAssignable = 0x0000000010000000,
	CPF_Deprecated = 0x0000000020000000,
	CPF_IsPlainOldData = 0x0000000040000000,
	CPF_RepSkip = 0x0000000080000000,
	CPF_RepNotify = 0x0000000100000000,
	CPF_Interp = 0x0000000200000000,
	CPF_NonTransactional = 0x0000000400000000,
	CPF_EditorOnly = 0x0000000800000000,
	CPF_NoDestructor = 0x0000001000000000,
	CPF_AutoWeak = 0x0000004000000000,
	CPF_ContainsInstancedReference = 0x0000008000000000,
	CPF_AssetRegistrySearchable = 0x0000010000000000,
	CPF_SimpleDisplay = 0x0000020000000000,
	CPF_AdvancedDisplay = 0x0000040000000000,
	CPF_Protected = 0x0000080000000000,
	CPF_BlueprintCallable = 0x0000100000000000,
	CPF_BlueprintAuthorityOnly = 0x0000200000000000,
	CPF_TextExportTransient = 0x0000400000000000,
	CPF_NonPIEDuplicateTransient = 0x0000800000000000,
	CPF_ExposeOnSpawn = 0x0001000000000000,
	CPF_PersistentInstance = 0x0002000000000000,
	CPF_UObjectWrapper = 0x0004000000000000,
	CPF_HasGetValueTypeHash = 0x0008000000000000,
	CPF_NativeAccessSpecifierPublic = 0x0010000000000000,
	CPF_NativeAccessSpecifierProtected = 0x0020000000000000,
	CPF_NativeAccessSpecifierPrivate = 0x0040000000000000,
	CPF_SkipSerialization = 0x0080000000000000,
};
ENUM_CLASS_FLAGS(EPropertyFlags)

/** The flags that a function's parameter can have for being one. */
constexpr EPropertyFlags CPF_ParmFlags =
	CPF_Parm | CPF_OutParm | CPF_ReturnParm | CPF_RequiredParm | CPF_ReferenceParm | CPF_ConstParm;
