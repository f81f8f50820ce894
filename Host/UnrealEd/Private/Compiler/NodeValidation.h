#pragma once

class FCompilerResultsLog;
class UEdGraph;

/** Reports what would keep the graph's nodes from running, and what is merely suspicious, on the nodes. */
void ValidateGraph(const UEdGraph& Graph, FCompilerResultsLog& Log);
