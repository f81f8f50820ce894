#include "GraphFingerprint.h"

#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"

namespace GraphFingerprint
{
class FSum
{
public:
	void Add(uint64 Value) { Sum = (Sum ^ Value) * 0x9E3779B97F4A7C15ull + (Sum >> 29); }
	void Add(const void* Address) { Add(reinterpret_cast<UPTRINT>(Address)); }
	void Add(FName Name) { Add(static_cast<uint64>(GetTypeHash(Name))); }
	void Add(const FString& Text)
	{
		Add(static_cast<uint64>(Text.Len()));
		for (const TCHAR Letter : Text)
		{
			Add(static_cast<uint64>(Letter));
		}
	}
	uint64 Get() const { return Sum; }

private:
	uint64 Sum = 0xCBF29CE484222325ull;
};

void AddPin(FSum& Sum, const UEdGraphPin& Pin)
{
	Sum.Add(&Pin);
	Sum.Add(Pin.PinName);
	Sum.Add(Pin.PinType.PinCategory);
	Sum.Add(Pin.PinType.PinSubCategoryObject.Get());
	Sum.Add(static_cast<uint64>(Pin.PinType.ContainerType));
	Sum.Add((Pin.bHidden ? 1ull : 0ull) + (Pin.bDefaultValueIsIgnored ? 2ull : 0ull));
	Sum.Add(Pin.DefaultValue);
	Sum.Add(Pin.DefaultObject.Get());
	Sum.Add(Pin.DefaultTextValue.ToString());
	for (const UEdGraphPin* const Linked : Pin.LinkedTo)
	{
		Sum.Add(Linked);
	}
}

void AddNode(FSum& Sum, const UEdGraphNode& Node)
{
	Sum.Add(&Node);
	for (const int32 Number : { Node.NodePosX, Node.NodePosY, Node.NodeWidth, Node.NodeHeight, Node.ErrorType })
	{
		Sum.Add(static_cast<uint64>(Number));
	}
	Sum.Add((Node.bHasCompilerMessage ? 1ull : 0ull) + (Node.IsNodeEnabled() ? 2ull : 0ull) +
			(Node.bCommentBubbleVisible ? 4ull : 0ull));
	Sum.Add(Node.NodeComment);
	Sum.Add(Node.ErrorMsg);
	for (const UEdGraphPin* const Pin : Node.Pins)
	{
		AddPin(Sum, *Pin);
	}
}
}

uint64 FGraphFingerprint::Of(const UEdGraph& Graph)
{
	GraphFingerprint::FSum Sum;
	Sum.Add(&Graph);
	for (const UEdGraphNode* const Node : Graph.Nodes)
	{
		if (Node)
		{
			GraphFingerprint::AddNode(Sum, *Node);
		}
	}
	return Sum.Get();
}
