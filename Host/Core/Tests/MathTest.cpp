#include "CoreMinimal.h"
#include "Math/Box2D.h"

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

TEST(Transform, TakesItsPartsOneByOne)
{
	FTransform Transform;
	Transform.SetLocation(FVector(1, 2, 3));
	Transform.SetRotation(FRotator(0, 90, 0).Quaternion());
	Transform.SetScale3D(FVector(2));
	ExpectNear(Transform.TransformPosition(FVector(1, 0, 0)), FVector(1, 4, 3));
	ExpectNear(Transform.TransformVector(FVector(1, 0, 0)), FVector(0, 2, 0));
	Transform.SetTranslation(FVector::ZeroVector);
	ExpectNear(Transform.TransformPosition(FVector(1, 0, 0)), FVector(0, 2, 0));
	EXPECT_FALSE(Transform.GetRotation().IsIdentity());
	EXPECT_TRUE(FQuat::Identity.IsIdentity());
}

TEST(Vector, ProductsAndDistances)
{
	EXPECT_EQ(FVector::DotProduct(FVector(1, 2, 3), FVector(4, -5, 6)), 12.0);
	ExpectNear(FVector::CrossProduct(FVector(1, 0, 0), FVector(0, 1, 0)), FVector(0, 0, 1));
	EXPECT_EQ(FVector::DistSquared(FVector(1, 2, 3), FVector(1, 5, 7)), 25.0);
	EXPECT_TRUE((FBox2D(FVector2D(1, 2), FVector2D(3, 6)).GetCenter() == FVector2D(2, 4)));
}

TEST(Math, NumbersAreRoundedAsTheNamesSay)
{
	EXPECT_EQ(FMath::Max3(1, 3, 2), 3);
	EXPECT_EQ(FMath::Square(-4), 16);
	EXPECT_EQ(FMath::DivideAndRoundUp(9, 4), 3);
	EXPECT_EQ(FMath::TruncToInt(-1.5), -1);
	EXPECT_EQ(FMath::FloorToInt(-1.5), -2);
	EXPECT_EQ(FMath::Pow(2.0f, 10.0f), 1024.0f);
	EXPECT_EQ(FMath::Fmod(7.5f, 2.0f), 1.5f);
}

TEST(Color, HexadecimalTextsComeAndGo)
{
	const TPair<const TCHAR*, FColor> Cases[] = { { TEXT("#F80"), FColor(0xFF, 0x88, 0x00) },
		{ TEXT("0A1B2C"), FColor(0x0A, 0x1B, 0x2C) }, { TEXT("#0A1B2C80"), FColor(0x0A, 0x1B, 0x2C, 0x80) },
		{ TEXT("no colour"), FColor(0, 0, 0, 0) } };
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(FColor::FromHex(Case.Key), Case.Value) << TCHAR_TO_UTF8(Case.Key);
	}
	EXPECT_TRUE(FColor(0x0A, 0x1B, 0x2C, 0x80).ToHex().Equals(TEXT("0A1B2C80")));
	EXPECT_EQ(FLinearColor(FColor(10, 100, 200, 50)).ToFColorSRGB(), FColor(10, 100, 200, 50));
}
