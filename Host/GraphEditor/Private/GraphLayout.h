#pragma once

#include "CoreMinimal.h"
#include "Layout/SlateRect.h"

class FSlateFontMeasure;
class UEdGraph;
struct FSlateFontInfo;

/** A pin as it is drawn. Places are those of its node. */
struct FGraphPinLayout
{
	FVector2D Place; // the middle of the connector
	FString Label;
	double LabelWidth = 0.0;
	FString Value; // of an input that nothing is linked to
	double ValueWidth = 0.0;
	FLinearColor Color = FLinearColor::White;
	bool bInput = false;
	bool bExec = false;
	bool bConnected = false;
	bool bContainer = false;
	bool bHasValue = false;
	bool bIsSwitch = false; // the value is drawn as a box with a tick or without
	bool bInTitle = false;  // stands at the end of the title bar
};

enum class EGraphNodeShape : uint8
{
	Box,
	Capsule, // without a title: a variable that is read
	Comment,
};

enum class EGraphMessage : uint8
{
	None,
	Note,
	Warning,
	Error,
};

/** A node as it is drawn, in units of the graph. */
struct FGraphNodeLayout
{
	FName Name; // of the node in its graph
	EGraphNodeShape Shape = EGraphNodeShape::Box;
	FVector2D Position;
	FVector2D Size;
	FString Title;
	FString Subtitle;
	double TitleHeight = 0.0;
	float FontSize = 0.0f; // points, of a comment's title
	FLinearColor Color = FLinearColor::White;
	TArray<FString> Bubble;
	double BubbleWidth = 0.0;
	EGraphMessage MessageKind = EGraphMessage::None;
	TArray<FString> Message;
	bool bEnabled = true;
	TArray<FGraphPinLayout> Pins;

	/** With the bubble above it. */
	FSlateRect GetBounds() const;
	double GetBubbleHeight() const;
	double GetMessageHeight() const;
};

struct FGraphWireLayout
{
	/** The ends, and in between the points that pull the curve. */
	FVector2D Points[4];
	FLinearColor Color = FLinearColor::White;
	bool bExec = false;

	FSlateRect GetBounds() const;
};

/** Where everything in a graph lies. It knows no objects, so that it may outlive what it was made of. */
struct FGraphLayout
{
	/** In the order in which they are drawn: comments first. */
	TArray<FGraphNodeLayout> Nodes;
	TArray<FGraphWireLayout> Wires;

	// Measures, in units of the graph.
	static constexpr double BarHeight = 26.0;
	static constexpr double SubtitleHeight = 15.0;
	static constexpr double RowHeight = 24.0;
	static constexpr double BodyPadding = 6.0;
	static constexpr double ConnectorInset = 15.0;
	static constexpr double ConnectorRadius = 5.0;
	static constexpr double LabelGap = 6.0;
	static constexpr double LineHeight = 15.0; // of bubbles and messages
	static constexpr double SwitchSize = 13.0;

	static const FSlateFontInfo& GetTitleFont();
	static const FSlateFontInfo& GetSubtitleFont();
	static const FSlateFontInfo& GetLabelFont();
	static const FSlateFontInfo& GetValueFont();
	static FSlateFontInfo GetCommentFont(float Points);

	static FGraphLayout Of(const UEdGraph& Graph, const FSlateFontMeasure& Measure);

	/** What all nodes take; no size for an empty graph. */
	FSlateRect GetBounds() const;
	/** The foremost node at a place; of a comment only its title counts. INDEX_NONE where there is none. */
	int32 FindNodeAt(const FVector2D& Place) const;
};
