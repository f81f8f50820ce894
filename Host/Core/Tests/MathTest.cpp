#include "CoreMinimal.h"

#include <gtest/gtest.h>

namespace MathTest
{
void ExpectNear(const FVector& A, const FVector& B)
{
	EXPECT_TRUE(A.Equals(B)) << TCHAR_TO_UTF8(*A.ToString()) << " is not " << TCHAR_TO_UTF8(*B.ToString());
}

void ExpectNear(const FRotator& A, const FRotator& B)
{
	EXPECT_TRUE(A.Equals(B)) << TCHAR_TO_UTF8(*A.ToString()) << " is not " << TCHAR_TO_UTF8(*B.ToString());
}
}

using namespace MathTest;

TEST(Rotation, TurnsAsThePictureOfTheAxesSays)
{
	const FVector Forward = FVector::ForwardVector;
	const FVector Right = FVector::RightVector;
	const FVector Up = FVector::UpVector;
	ExpectNear(FRotator(90, 0, 0).Vector(), Up);
	ExpectNear(FRotator(0, 90, 0).Vector(), Right);
	ExpectNear(FRotator(0, 0, 90).RotateVector(Right), -Up);
	ExpectNear(FRotator(0, 90, 0).UnrotateVector(Right), Forward);
	ExpectNear(Up.Rotation(), FRotator(90, 0, 0));
	ExpectNear((Forward + Right).Rotation(), FRotator(0, 45, 0));

	for (const FRotator& Turn : { FRotator(10, 20, 30), FRotator(-80, 170, -120), FRotator(0, -90, 0),
			 FRotator(90, 25, 0), FRotator(-90, 25, 0) })
	{
		ExpectNear(Turn.Quaternion().Rotator(), Turn);
	}
	ExpectNear(FRotator(0, 720 + 30, 0).GetNormalized(), FRotator(0, 30, 0));
	EXPECT_TRUE(FRotator(0, 360, 0).Equals(FRotator::ZeroRotator));
	EXPECT_FALSE(FRotator(0, 360, 0) == FRotator::ZeroRotator);
}

TEST(Transform, ScalesThenTurnsThenMovesAndComesBack)
{
	const FTransform Parent(FRotator(0, 90, 0), FVector(100, 0, 0), FVector(2));
	const FTransform Child(FRotator(0, 45, 0), FVector(10, 0, 5));
	ExpectNear(Parent.TransformPosition(FVector(1, 2, 3)), FVector(96, 2, 6));
	const FTransform World = Child * Parent;
	ExpectNear(World.GetLocation(), FVector(100, 20, 10));
	ExpectNear(World.Rotator(), FRotator(0, 135, 0));
	EXPECT_TRUE(World.GetRelativeTransform(Parent).Equals(Child));
	EXPECT_TRUE((Parent * Parent.Inverse()).Equals(FTransform::Identity));
	EXPECT_TRUE(FTransform(FVector(10, 0, 5)).ToString().StartsWith(TEXT("10.000000,0.000000,5.000000|0.000000,")));
}

TEST(Vector, IsNormalizedUnlessItIsTooShort)
{
	ExpectNear(FVector(3, 0, 4).GetSafeNormal(), FVector(0.6, 0, 0.8));
	EXPECT_TRUE(FVector(1e-5, 0, 0).GetSafeNormal().IsZero());
	ExpectNear(FVector(30, 40, 0).GetClampedToMaxSize(5), FVector(3, 4, 0));
	EXPECT_EQ(FVector::Dist(FVector(1, 2, 3), FVector(1, 5, 7)), 5.0);
	EXPECT_TRUE(FVector(1, 2.5, -3).ToString().Equals(TEXT("X=1.000 Y=2.500 Z=-3.000")));
}
