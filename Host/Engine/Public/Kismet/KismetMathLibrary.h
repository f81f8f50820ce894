#pragma once

#include "Kismet/BlueprintFunctionLibrary.h"
#include "UObject/NoExportTypes.h"
#include "KismetMathLibrary.generated.h"

/** Arithmetic for Blueprints and scripts. The names tell the types: an operation, then what it works on. */
UCLASS(meta = (BlueprintThreadSafe, ScriptName = "MathLibrary"))
class ENGINE_API UKismetMathLibrary : public UBlueprintFunctionLibrary
{
	GENERATED_BODY()

public:
	UFUNCTION(BlueprintPure, meta = (DisplayName = "NOT Boolean", CompactNodeTitle = "NOT"), Category = "Math|Boolean")
	static bool Not_PreBool(bool A) { return !A; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "AND Boolean", CompactNodeTitle = "AND"), Category = "Math|Boolean")
	static bool BooleanAND(bool A, bool B) { return A && B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "OR Boolean", CompactNodeTitle = "OR"), Category = "Math|Boolean")
	static bool BooleanOR(bool A, bool B) { return A || B; }
	UFUNCTION(
		BlueprintPure, meta = (DisplayName = "Equal (Boolean)", CompactNodeTitle = "=="), Category = "Math|Boolean")
	static bool EqualEqual_BoolBool(bool A, bool B) { return A == B; }

	/** Wraps around at the limits of 32 bits. */
	UFUNCTION(BlueprintPure, meta = (DisplayName = "int + int", CompactNodeTitle = "+"), Category = "Math|Integer")
	static int32 Add_IntInt(int32 A, int32 B = 1);
	UFUNCTION(BlueprintPure, meta = (DisplayName = "int - int", CompactNodeTitle = "-"), Category = "Math|Integer")
	static int32 Subtract_IntInt(int32 A, int32 B = 1);
	UFUNCTION(BlueprintPure, meta = (DisplayName = "int * int", CompactNodeTitle = "*"), Category = "Math|Integer")
	static int32 Multiply_IntInt(int32 A, int32 B);
	/** 0, and a warning in the log, for a division by 0. */
	UFUNCTION(BlueprintPure, meta = (DisplayName = "int / int", CompactNodeTitle = "/"), Category = "Math|Integer")
	static int32 Divide_IntInt(int32 A, int32 B = 1);
	UFUNCTION(BlueprintPure, meta = (DisplayName = "% (integer)", CompactNodeTitle = "%"), Category = "Math|Integer")
	static int32 Percent_IntInt(int32 A, int32 B = 1);
	UFUNCTION(BlueprintPure, meta = (DisplayName = "int < int", CompactNodeTitle = "<"), Category = "Math|Integer")
	static bool Less_IntInt(int32 A, int32 B) { return A < B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "int > int", CompactNodeTitle = ">"), Category = "Math|Integer")
	static bool Greater_IntInt(int32 A, int32 B) { return A > B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "int <= int", CompactNodeTitle = "<="), Category = "Math|Integer")
	static bool LessEqual_IntInt(int32 A, int32 B) { return A <= B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "int >= int", CompactNodeTitle = ">="), Category = "Math|Integer")
	static bool GreaterEqual_IntInt(int32 A, int32 B) { return A >= B; }
	UFUNCTION(
		BlueprintPure, meta = (DisplayName = "Equal (Integer)", CompactNodeTitle = "=="), Category = "Math|Integer")
	static bool EqualEqual_IntInt(int32 A, int32 B) { return A == B; }
	UFUNCTION(
		BlueprintPure, meta = (DisplayName = "Not Equal (Integer)", CompactNodeTitle = "!="), Category = "Math|Integer")
	static bool NotEqual_IntInt(int32 A, int32 B) { return A != B; }
	UFUNCTION(
		BlueprintPure, meta = (DisplayName = "Min (Integer)", CompactNodeTitle = "MIN"), Category = "Math|Integer")
	static int32 Min(int32 A, int32 B) { return FMath::Min(A, B); }
	UFUNCTION(
		BlueprintPure, meta = (DisplayName = "Max (Integer)", CompactNodeTitle = "MAX"), Category = "Math|Integer")
	static int32 Max(int32 A, int32 B) { return FMath::Max(A, B); }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "Clamp (Integer)"), Category = "Math|Integer")
	static int32 Clamp(int32 Value, int32 Min, int32 Max) { return FMath::Clamp(Value, Min, Max); }

	UFUNCTION(BlueprintPure, meta = (DisplayName = "float + float", CompactNodeTitle = "+"), Category = "Math|Float")
	static double Add_DoubleDouble(double A, double B = 1.0) { return A + B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "float - float", CompactNodeTitle = "-"), Category = "Math|Float")
	static double Subtract_DoubleDouble(double A, double B = 1.0) { return A - B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "float * float", CompactNodeTitle = "*"), Category = "Math|Float")
	static double Multiply_DoubleDouble(double A, double B) { return A * B; }
	/** 0, and a warning in the log, for a division by 0. */
	UFUNCTION(BlueprintPure, meta = (DisplayName = "float / float", CompactNodeTitle = "/"), Category = "Math|Float")
	static double Divide_DoubleDouble(double A, double B = 1.0);
	UFUNCTION(BlueprintPure, meta = (DisplayName = "float < float", CompactNodeTitle = "<"), Category = "Math|Float")
	static bool Less_DoubleDouble(double A, double B) { return A < B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "float > float", CompactNodeTitle = ">"), Category = "Math|Float")
	static bool Greater_DoubleDouble(double A, double B) { return A > B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "float <= float", CompactNodeTitle = "<="), Category = "Math|Float")
	static bool LessEqual_DoubleDouble(double A, double B) { return A <= B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "float >= float", CompactNodeTitle = ">="), Category = "Math|Float")
	static bool GreaterEqual_DoubleDouble(double A, double B) { return A >= B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "Clamp (Float)"), Category = "Math|Float")
	static double FClamp(double Value, double Min, double Max) { return FMath::Clamp(Value, Min, Max); }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "Lerp"), Category = "Math|Float")
	static double Lerp(double A, double B, double Alpha) { return A + (B - A) * Alpha; }

	UFUNCTION(BlueprintPure, meta = (DisplayName = "vector + vector", CompactNodeTitle = "+"), Category = "Math|Vector")
	static FVector Add_VectorVector(FVector A, FVector B) { return A + B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "vector - vector", CompactNodeTitle = "-"), Category = "Math|Vector")
	static FVector Subtract_VectorVector(FVector A, FVector B) { return A - B; }
	UFUNCTION(BlueprintPure, meta = (DisplayName = "Vector Length", Keywords = "magnitude"), Category = "Math|Vector")
	static double VSize(FVector A) { return A.Size(); }
	UFUNCTION(BlueprintPure, Category = "Math|Vector", meta = (Keywords = "construct build", NativeMakeFunc))
	static FVector MakeVector(double X, double Y, double Z) { return FVector(X, Y, Z); }
	UFUNCTION(BlueprintPure, Category = "Math|Vector", meta = (NativeBreakFunc))
	static void BreakVector(FVector InVec, double& X, double& Y, double& Z);
	UFUNCTION(BlueprintPure, Category = "Math|Rotator", meta = (Keywords = "construct build", NativeMakeFunc))
	static FRotator MakeRotator(float Roll, float Pitch, float Yaw) { return FRotator(Pitch, Yaw, Roll); }
	UFUNCTION(BlueprintPure, Category = "Math|Rotator", meta = (DisplayName = "Get Forward Vector"))
	static FVector GetForwardVector(FRotator InRot) { return InRot.Vector(); }

	UFUNCTION(BlueprintPure, meta = (DisplayName = "To Float (Integer)", CompactNodeTitle = "->", BlueprintAutocast),
		Category = "Math|Conversions")
	static double Conv_IntToDouble(int32 InInt) { return InInt; }
	/** Towards 0; beyond 32 bits, the nearest number that there is. */
	UFUNCTION(BlueprintPure, meta = (DisplayName = "Truncate", CompactNodeTitle = "->"), Category = "Math|Float")
	static int32 FTrunc(double A);
};
