#include "Kismet/KismetMathLibrary.h"

DEFINE_LOG_CATEGORY_STATIC(LogKismetMath, Log, All);

namespace KismetMathLibrary
{
/** Two's complement, which is defined for unsigned numbers only. */
int32 Wrap(uint32 Value)
{
	return static_cast<int32>(Value);
}

bool CanDivide(double Divisor, const TCHAR* Function)
{
	UE_CLOG(Divisor == 0.0, LogKismetMath, Warning, TEXT("Divide by zero: %s"), Function);
	return Divisor != 0.0;
}
}

int32 UKismetMathLibrary::Add_IntInt(int32 A, int32 B)
{
	return KismetMathLibrary::Wrap(static_cast<uint32>(A) + static_cast<uint32>(B));
}

int32 UKismetMathLibrary::Subtract_IntInt(int32 A, int32 B)
{
	return KismetMathLibrary::Wrap(static_cast<uint32>(A) - static_cast<uint32>(B));
}

int32 UKismetMathLibrary::Multiply_IntInt(int32 A, int32 B)
{
	return KismetMathLibrary::Wrap(static_cast<uint32>(A) * static_cast<uint32>(B));
}

int32 UKismetMathLibrary::Divide_IntInt(int32 A, int32 B)
{
	if (!KismetMathLibrary::CanDivide(B, TEXT("Divide_IntInt")))
	{
		return 0;
	}
	return B == -1 ? Subtract_IntInt(0, A) : A / B;
}

int32 UKismetMathLibrary::Percent_IntInt(int32 A, int32 B)
{
	return KismetMathLibrary::CanDivide(B, TEXT("Percent_IntInt")) && B != -1 ? A % B : 0;
}

double UKismetMathLibrary::Divide_DoubleDouble(double A, double B)
{
	return KismetMathLibrary::CanDivide(B, TEXT("Divide_DoubleDouble")) ? A / B : 0.0;
}

void UKismetMathLibrary::BreakVector(FVector InVec, double& X, double& Y, double& Z)
{
	X = InVec.X;
	Y = InVec.Y;
	Z = InVec.Z;
}

int32 UKismetMathLibrary::FTrunc(double A)
{
	return A != A ? 0
				  : static_cast<int32>(FMath::Clamp(A, static_cast<double>(MIN_int32), static_cast<double>(MAX_int32)));
}
