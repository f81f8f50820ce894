#pragma once

#include "CoreMinimal.h"

/** Until when a window asks for attention. */
enum class EWindowDrawAttentionRequestType
{
	UntilActivated,
	/** No more. */
	Stop,
};

struct FWindowDrawAttentionParameters
{
	FWindowDrawAttentionParameters(
		EWindowDrawAttentionRequestType InRequestType = EWindowDrawAttentionRequestType::UntilActivated)
		: RequestType(InRequestType)
	{
	}

	EWindowDrawAttentionRequestType RequestType;
};

/** A window of the operating system. An SWindow without one exists all the same: it is laid out, but not shown. */
class FGenericWindow
{
public:
	virtual ~FGenericWindow() = default;

	/** How many pixels a Slate unit is wide and high. */
	virtual float GetDPIScaleFactor() const { return 1.0f; }
	/** Asks for attention in the way of the platform; some have none. */
	virtual void DrawAttention(const FWindowDrawAttentionParameters& Parameters) {}
};
